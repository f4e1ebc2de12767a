// Chain lists and sorted lists; the tree behind ListeSort is in SortedCltn.cpp.
#include "foundation/Liste.h"

#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

#include "foundation/Abbruch.h"
#include "foundation/Kollation.h"
#include "foundation/Meldung.h"

std::int32_t anzahlListen = 0;

namespace {

// Stand-in element for searches by name.
class NamensSchluessel : public ListenElement {
public:
    explicit NamensSchluessel(const String& name) : name_(name) {}
    String liefereName() const override { return name_; }

private:
    String name_;
};

String gefaltet(const String& name, std::int32_t modus) {
    String n = name;
    if (modus == ListenSuche::GROSS)
        n.gross();
    else if (modus == ListenSuche::KLEIN)
        n.klein();
    return n;
}

}  // namespace

// ---------------------------------------------------------------------------
// Elements and comparator

std::ostream& ListenElement::ausgabe(std::ostream& strom) const { return strom << liefereName() << '\n'; }

int ListenKomparator::vergleiche(const ListenElement& a, const ListenElement& b) const {
    return kollation::vergleiche(a.liefereName(), b.liefereName());
}

ListenKomparator* ListenKomparator::standard() {
    static ListenKomparator komparator(0, 1);
    return &komparator;
}

// ---------------------------------------------------------------------------
// Iterator

ListenIterator::ListenIterator(const Liste& liste) : liste_(&liste) {}
ListenIterator::ListenIterator(const ElementCltn& baum) : baum_(&baum) {}

void ListenIterator::zurueck() {
    stand_ = Stand::Anfang;
    letztes_ = nullptr;
}

ListenElement* ListenIterator::naechstes(std::uint32_t typ) {
    if (liste_) {
        if (stand_ == Stand::Ende) return nullptr;
        const Liste::Glied* g =
            stand_ == Stand::Anfang ? liste_->kopf_ : static_cast<const Liste::Glied*>(letztes_)->naechstes;
        while (g && typ != 0 && g->element->auswahl != typ) g = g->naechstes;
        if (!g) {
            stand_ = Stand::Ende;
            letztes_ = nullptr;
            return nullptr;
        }
        stand_ = Stand::Laufend;
        letztes_ = g;
        return g->element;
    }

    const BasisNode* k = stand_ == Stand::Anfang
                             ? baum_->erstes()
                             : baum_->sucheGroesser(static_cast<const ListenElement*>(letztes_));
    while (k && typ != 0 && ElementCltn::element(k)->auswahl != typ) k = SortedCltn::nachfolger(k);
    if (!k) {
        // The tree walk starts over after its end: intended.
        zurueck();
        return nullptr;
    }
    stand_ = Stand::Laufend;
    letztes_ = ElementCltn::element(k);
    return ElementCltn::element(k);
}

// ---------------------------------------------------------------------------
// Liste

Liste::Liste(std::int32_t besitzer, const String& name) : name_(name), besitzer_(besitzer), iterator_(*this) {
    ++anzahlListen;
}

Liste::~Liste() {
    Liste::loesche();
    --anzahlListen;
}

void Liste::initialisiere(std::int32_t besitzer) {
    kopf_ = nullptr;
    ende_ = nullptr;
    aktuell_ = nullptr;
    elementAnzahl_ = 0;
    besitzer_ = besitzer;
    iteriert_ = 0;
    iterator_.zurueck();
}

void Liste::anhaengen(ListenElement* element) {
    Glied* g = new Glied{element, ende_, nullptr};
    if (ende_)
        ende_->naechstes = g;
    else
        kopf_ = g;
    ende_ = g;
    ++elementAnzahl_;
    iteriert_ = 0;
}

void Liste::ausketten(Glied* glied) {
    if (iterator_.stand_ == ListenIterator::Stand::Laufend && iterator_.letztes_ == glied) {
        // The walk goes on behind the removed link.
        iterator_.letztes_ = glied->vorher;
        if (!glied->vorher) iterator_.stand_ = ListenIterator::Stand::Anfang;
    }
    if (aktuell_ == glied) aktuell_ = nullptr;
    if (glied->vorher)
        glied->vorher->naechstes = glied->naechstes;
    else
        kopf_ = glied->naechstes;
    if (glied->naechstes)
        glied->naechstes->vorher = glied->vorher;
    else
        ende_ = glied->vorher;
    delete glied;
    --elementAnzahl_;
    iteriert_ = 0;
}

Liste::Glied* Liste::gliedVon(const ListenElement* element) const {
    for (Glied* g = kopf_; g; g = g->naechstes)
        if (g->element == element) return g;
    return nullptr;
}

ListenElement* Liste::anfuegeElement(ListenElement* element, std::int32_t melde) {
    if (!element) return nullptr;
    const String name = element->liefereName();
    if (sucheElementF(name, 0, 0, 2)) {
        if (melde) ::melde("LIST-ELEDOUBLE", "Liste::anfuegeElement", name + " in " + name_, 'E');
        return nullptr;
    }
    anhaengen(element);
    return element;
}

ListenElement* Liste::haengeAn(ListenElement* element) {
    if (!element) return nullptr;
    anhaengen(element);
    return element;
}

ListenElement* Liste::entferneAktuell() {
    if (!aktuell_) return nullptr;
    ListenElement* element = aktuell_->element;
    ausketten(aktuell_);
    return element;
}

ListenElement* Liste::entferne(const String& name) { return entferne(name.c_str()); }

ListenElement* Liste::entferne(const char* name) {
    ListenElement* element = sucheElementF(String(name), 0, 1, 2) ? entferneAktuell() : nullptr;
    iteriert_ = 0;
    return element;
}

void Liste::zurueckSetzen() {
    iterator_.zurueck();
    iteriert_ = 1;
}

Liste::Glied* Liste::kettenSuche(const String& name, std::int32_t modus) const {
    for (Glied* g = kopf_; g; g = g->naechstes)
        if (gefaltet(g->element->liefereName(), modus) == name) return g;
    return nullptr;
}

ListenElement* Liste::pruefeTreffer(ListenElement* gefunden, const String& name, std::uint32_t typ,
                                    std::int32_t melde, const char* auswahlFunktion) const {
    if (!gefunden) {
        if (melde) ::melde("LIST-NOSUCHELE", "Liste::sucheElementF", name + " in " + name_, 'W');
        return nullptr;
    }
    // Only the first name match counts; a second element of the same name
    // is not looked for.
    if (typ == 0 || gefunden->auswahl == typ) return gefunden;
    if (melde) ::melde("LIST-NOSUCHELEBEA", auswahlFunktion, name + " nicht in Auswahl enthalten", 'W');
    return nullptr;
}

ListenElement* Liste::sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                   std::int32_t modus) {
    if (!element) return nullptr;
    return sucheElementF(element->liefereName(), typ, melde, modus);
}

ListenElement* Liste::sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                    std::int32_t modus) {
    Glied* g = kettenSuche(name, modus);
    ListenElement* ergebnis =
        pruefeTreffer(g ? g->element : nullptr, name, typ, melde, "Liste::sucheElementF");
    aktuell_ = ergebnis ? g : nullptr;
    return ergebnis;
}

ListenElement* Liste::sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                   std::int32_t modus) const {
    if (!element) return nullptr;
    return sucheElementF(element->liefereName(), typ, melde, modus);
}

ListenElement* Liste::sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                    std::int32_t modus) const {
    Glied* g = kettenSuche(name, modus);
    return pruefeTreffer(g ? g->element : nullptr, name, typ, melde, "Liste::sucheElementF");
}

void Liste::setzeAuswahl(std::uint32_t wert) {
    for (Glied* g = kopf_; g; g = g->naechstes) g->element->auswahl = wert;
}

void Liste::loesche() {
    // Detach first, so that an element's destructor that looks at this list
    // finds it empty.
    Glied* g = kopf_;
    const bool besitzt = besitzer_ == 1;
    initialisiere(besitzer_);
    while (g) {
        Glied* weiter = g->naechstes;
        if (besitzt) delete g->element;
        delete g;
        g = weiter;
    }
}

// ---------------------------------------------------------------------------
// ListeSort

ListeSort::ListeSort(std::int32_t besitzer, ListenKomparator* komparator, const String& name)
    : Liste(besitzer, name), baum_(komparator), komparator_(komparator), baumIterator_(baum_) {
    if (!komparator) zusicherungVerletzt("cmp != NULL, file colsrtxx, line 52");
    sortiert_ = 1;
}

ListeSort::~ListeSort() {
    baum_.leere();
    if (komparator_->besitz_ == 1) delete komparator_;
    komparator_ = nullptr;
}

void ListeSort::setzeKomparator(ListenKomparator* einKomparator) {
    if (!einKomparator) zusicherungVerletzt("einKomparator != NULL, file liste, line 691");
    loesche();
    if (komparator_ != einKomparator && komparator_->besitz_ == 1) delete komparator_;
    komparator_ = einKomparator;
    baum_.setzeKomparator(einKomparator);
}

ListenElement* ListeSort::baumSuche(const ListenElement* schluessel) const {
    return ElementCltn::element(baum_.sucheKnoten(schluessel));
}

void ListeSort::ausBaum(ListenElement* element) {
    BasisNode* knoten = baum_.sucheKnoten(element);
    ListenElement* inhalt = ElementCltn::element(knoten);
    const void* letztes = baumIterator_.letztes_;
    if (baumIterator_.stand_ == ListenIterator::Stand::Laufend &&
        (letztes == element || (inhalt && letztes == inhalt))) {
        // The walk goes on behind the removed key.
        BasisNode* vor = baum_.sucheKleiner(static_cast<const ListenElement*>(letztes));
        if (vor)
            baumIterator_.letztes_ = ElementCltn::element(vor);
        else
            baumIterator_.zurueck();
    }
    if (baumPosition_ == element || (inhalt && baumPosition_ == inhalt)) baumPosition_ = nullptr;
    if (knoten) {
        baum_.setzeSchluessel(element);
        baum_.entferne();
    }
}

ListenElement* ListeSort::anfuegeElement(ListenElement* element, std::int32_t melde) {
    if (!element) return nullptr;
    if (baumSuche(element)) {
        if (melde)
            ::melde("LIST-ELEDOUBLE", "ListeSort::anfuegeElement", element->liefereName() + " in " + name_,
                    'E');
        return nullptr;
    }
    anhaengen(element);
    baum_.setzeSchluessel(element);
    baum_.fuegeEin();
    return element;
}

ListenElement* ListeSort::haengeAn(ListenElement* element) {
    if (!element) return nullptr;
    anhaengen(element);
    // An equal key already in the tree gets this element as its payload.
    baum_.setzeSchluessel(element);
    baum_.fuegeEin();
    return element;
}

ListenElement* ListeSort::entferneAktuell() {
    ListenElement* element = baumPosition_;
    if (!element) return nullptr;
    ausBaum(element);
    if (Glied* g = gliedVon(element)) ausketten(g);
    iteriert_ = 0;
    return element;
}

ListenElement* ListeSort::entferne(const String& name) { return entferne(name.c_str()); }

ListenElement* ListeSort::entferne(const char* name) {
    iteriert_ = 0;
    Glied* g = kettenSuche(String(name), 2);
    if (!g) return nullptr;
    ListenElement* element = g->element;
    ausketten(g);
    ausBaum(element);
    return element;
}

void ListeSort::zurueckSetzen() {
    Liste::zurueckSetzen();
    baumIterator_.zurueck();
}

ListenElement* ListeSort::sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                       std::int32_t modus) {
    if (!element) return nullptr;
    if (modus != ListenSuche::EXAKT || !komparator_->baumSuche_)
        return sucheElementF(element->liefereName(), typ, melde, modus);
    ListenElement* gefunden = baumSuche(element);
    ListenElement* ergebnis =
        pruefeTreffer(gefunden, element->liefereName(), typ, melde, "ListeSort::sucheElementF");
    baumPosition_ = ergebnis;
    aktuell_ = nullptr;
    return ergebnis;
}

ListenElement* ListeSort::sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                        std::int32_t modus) {
    ListenElement* ergebnis = std::as_const(*this).sucheElementF(name, typ, melde, modus);
    // The chain's own `aktuell` is not used by a sorted list; the tree
    // position takes its place.
    baumPosition_ = ergebnis;
    aktuell_ = nullptr;
    return ergebnis;
}

ListenElement* ListeSort::sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                       std::int32_t modus) const {
    if (!element) return nullptr;
    if (modus != ListenSuche::EXAKT || !komparator_->baumSuche_)
        return sucheElementF(element->liefereName(), typ, melde, modus);
    return pruefeTreffer(baumSuche(element), element->liefereName(), typ, melde, "ListeSort::sucheElementF");
}

ListenElement* ListeSort::sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                        std::int32_t modus) const {
    ListenElement* gefunden;
    if (modus == ListenSuche::EXAKT && komparator_->baumSuche_) {
        NamensSchluessel schluessel(name);
        gefunden = baumSuche(&schluessel);
    } else {
        Glied* g = kettenSuche(name, modus);
        gefunden = g ? g->element : nullptr;
    }
    return pruefeTreffer(gefunden, name, typ, melde, "ListeSort::sucheElementF");
}

void ListeSort::loesche() {
    baum_.leere();
    baumPosition_ = nullptr;
    baumIterator_.zurueck();
    Liste::loesche();
}

std::ostream& ListeSort::ausgabe(std::ostream& strom) const {
    strom << name_ << '\n';
    for (const BasisNode* k = baum_.erstes(); k; k = SortedCltn::nachfolger(k))
        ElementCltn::element(k)->ausgabe(strom);
    return strom;
}

std::ostream& operator<<(std::ostream& strom, const ListeSort& liste) { return liste.ausgabe(strom); }
