// Chain lists, sorted lists and the threaded AVL tree behind them.
// Covered by tests/unit/foundation/ListeTest.cpp.
#include "foundation/Liste.h"

#include <cstdlib>
#include <iostream>
#include <vector>

#include "foundation/Kollation.h"
#include "reporting/Fehler.h"

std::int32_t anzahlListen = 0;

namespace {

// A violated programming precondition ends the program like a C assertion.
[[noreturn]] void zusicherungVerletzt(const char* ausdruck, const char* datei, int zeile) {
    std::cerr << "Assertion failed: " << ausdruck << ", file " << datei << ", line " << zeile
              << std::endl;
    std::abort();
}

// Stand-in element for searches by name.
class NamensSchluessel : public ListenElement {
public:
    explicit NamensSchluessel(const String& name) : name_(name) {}
    String liefereName() const override { return name_; }

private:
    String name_;
};

constexpr std::uint8_t BAL = BasisNode::BALANCIERT;
constexpr std::uint8_t LINKS = BasisNode::LINKSLASTIG;
constexpr std::uint8_t RECHTS = BasisNode::RECHTSLASTIG;

// Rotations. A link that would receive an empty subtree keeps pointing at
// the neighbouring node as a thread.

void rotiereRechts(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    BasisNode* l = a->links;
    if (l->rechtsFaden()) {
        a->links = l;
        a->setzeLinksFaden(true);
    } else {
        a->links = l->rechts;
        a->setzeLinksFaden(false);
    }
    l->rechts = a;
    l->setzeRechtsFaden(false);
    teilbaum = l;
}

void rotiereLinks(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    BasisNode* r = a->rechts;
    if (r->linksFaden()) {
        a->rechts = r;
        a->setzeRechtsFaden(true);
    } else {
        a->rechts = r->links;
        a->setzeRechtsFaden(false);
    }
    r->links = a;
    r->setzeLinksFaden(false);
    teilbaum = r;
}

// Left child's right child g becomes the subtree root.
void doppeltRechts(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    BasisNode* l = a->links;
    BasisNode* g = l->rechts;
    if (g->linksFaden()) {
        l->rechts = g;
        l->setzeRechtsFaden(true);
    } else {
        l->rechts = g->links;
        l->setzeRechtsFaden(false);
    }
    if (g->rechtsFaden()) {
        a->links = g;
        a->setzeLinksFaden(true);
    } else {
        a->links = g->rechts;
        a->setzeLinksFaden(false);
    }
    g->links = l;
    g->rechts = a;
    g->setzeLinksFaden(false);
    g->setzeRechtsFaden(false);
    a->setzeBalance(g->balance() == LINKS ? RECHTS : BAL);
    l->setzeBalance(g->balance() == RECHTS ? LINKS : BAL);
    g->setzeBalance(BAL);
    teilbaum = g;
}

// Right child's left child g becomes the subtree root.
void doppeltLinks(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    BasisNode* r = a->rechts;
    BasisNode* g = r->links;
    if (g->rechtsFaden()) {
        r->links = g;
        r->setzeLinksFaden(true);
    } else {
        r->links = g->rechts;
        r->setzeLinksFaden(false);
    }
    if (g->linksFaden()) {
        a->rechts = g;
        a->setzeRechtsFaden(true);
    } else {
        a->rechts = g->links;
        a->setzeRechtsFaden(false);
    }
    g->links = a;
    g->rechts = r;
    g->setzeLinksFaden(false);
    g->setzeRechtsFaden(false);
    a->setzeBalance(g->balance() == RECHTS ? LINKS : BAL);
    r->setzeBalance(g->balance() == LINKS ? RECHTS : BAL);
    g->setzeBalance(BAL);
    teilbaum = g;
}

String gefaltet(const String& name, std::int32_t modus) {
    String n = name;
    if (modus == 0) n.gross();
    else if (modus == 1) n.klein();
    return n;
}

}  // namespace

// ---------------------------------------------------------------------------
// Elements and comparator

std::ostream& ListenElement::ausgabe(std::ostream& strom) const {
    return strom << liefereName() << '\n';
}

int ListenKomparator::vergleiche(const ListenElement& a, const ListenElement& b) const {
    return kollation::vergleiche(a.liefereName(), b.liefereName());
}

ListenKomparator* ListenKomparator::standard() {
    static ListenKomparator komparator(0, 1);
    return &komparator;
}

// ---------------------------------------------------------------------------
// Tree

std::ostream& BasisNode::ausgabe(std::ostream& strom) const {
    static const char* const balanceText[] = {"BALANCED", "LEFT-HEAVY", "RIGHT-HEAVY", "BALANCED"};
    strom << "BasisNode:" << static_cast<const void*>(this) << " (lt=" << static_cast<const void*>(links)
          << "  rt=" << static_cast<const void*>(rechts) << "  LT:" << (linksFaden() ? 1 : 0)
          << "  RT:" << (rechtsFaden() ? 1 : 0) << "  " << balanceText[balance()] << ")";
    return strom;
}

std::ostream& Collection::ausgabe(std::ostream& strom) const {
    return strom << "--> Collection: " << static_cast<const void*>(this) << "\tcount = " << anzahl_;
}

std::ostream& SortedCltn::ausgabe(std::ostream& strom) const {
    strom << "--> SortedCltn: " << static_cast<const void*>(this) << "\tcount = " << anzahl_
          << "\n\troot = " << static_cast<const void*>(wurzel_) << '\n';
    for (const BasisNode* k = erstes(); k; k = nachfolger(k)) {
        k->ausgabe(strom);
        strom << '\n';
    }
    return strom << "<-- end SortedCltn\n";
}

BasisNode* SortedCltn::erstes() const {
    BasisNode* k = wurzel_;
    if (!k) return nullptr;
    while (!k->linksFaden()) k = k->links;
    return k;
}

BasisNode* SortedCltn::nachfolger(const BasisNode* knoten) {
    if (knoten->rechtsFaden()) return knoten->rechts;
    BasisNode* k = knoten->rechts;
    while (!k->linksFaden()) k = k->links;
    return k;
}

BasisNode* SortedCltn::vorgaenger(const BasisNode* knoten) {
    if (knoten->linksFaden()) return knoten->links;
    BasisNode* k = knoten->links;
    while (!k->rechtsFaden()) k = k->rechts;
    return k;
}

BasisNode* SortedCltn::suche() const {
    BasisNode* k = wurzel_;
    while (k) {
        const int c = vergleiche(*k);
        if (c == 0) return k;
        if (c < 0) {
            if (k->linksFaden()) return nullptr;
            k = k->links;
        } else {
            if (k->rechtsFaden()) return nullptr;
            k = k->rechts;
        }
    }
    return nullptr;
}

void SortedCltn::leere() {
    std::vector<BasisNode*> offen;
    if (wurzel_) offen.push_back(wurzel_);
    while (!offen.empty()) {
        BasisNode* k = offen.back();
        offen.pop_back();
        if (!k->linksFaden()) offen.push_back(k->links);
        if (!k->rechtsFaden()) offen.push_back(k->rechts);
        delete k;
    }
    wurzel_ = nullptr;
    anzahl_ = 0;
    treffer_ = nullptr;
}

BasisNode* SortedCltn::inhalt(const Position& position) const {
    // Programmer errors, deliberately kept away from the message reporter.
    if (anzahl_ <= 0) {
        std::cerr << "Sorted Collection is empty\n";
        std::exit(1);
    }
    if (position.cltn != this || !position.knoten) {
        std::cerr << "Illegal Sorted Collection Position" << std::flush;
        std::exit(1);
    }
    return position.knoten;
}

int SortedCltn::fuegeEin() {
    treffer_ = nullptr;
    if (!wurzel_) {
        wurzel_ = neuerKnoten();
        wurzel_->links = nullptr;
        wurzel_->rechts = nullptr;
        wurzel_->zustand = BasisNode::LINKS_FADEN | BasisNode::RECHTS_FADEN;
        ++anzahl_;
        return 1;
    }
    hoeheGeaendert_ = false;
    return fuegeEinUnter(wurzel_) ? 1 : 0;
}

// Recursion depth is the tree height, at most about 1.44 log2(count).
bool SortedCltn::fuegeEinUnter(BasisNode*& teilbaum) {
    BasisNode* k = teilbaum;
    const int c = vergleiche(*k);
    if (c == 0) {
        if (ersetzen_) {
            treffer_ = k;
            ersetzeInhalt(*k);
        }
        return false;
    }
    bool neu = false;
    if (c < 0) {
        if (k->linksFaden()) {
            BasisNode* q = neuerKnoten();
            q->zustand = BasisNode::LINKS_FADEN | BasisNode::RECHTS_FADEN;
            q->links = k->links;
            q->rechts = k;
            k->links = q;
            k->setzeLinksFaden(false);
            ++anzahl_;
            hoeheGeaendert_ = true;
            neu = true;
        } else {
            neu = fuegeEinUnter(k->links);
        }
        if (hoeheGeaendert_) {
            switch (k->balance()) {
            case BAL:
                k->setzeBalance(LINKS);
                break;
            case RECHTS:
                k->setzeBalance(BAL);
                hoeheGeaendert_ = false;
                break;
            default:
                if (k->links->balance() == LINKS) {
                    BasisNode* l = k->links;
                    rotiereRechts(teilbaum);
                    k->setzeBalance(BAL);
                    l->setzeBalance(BAL);
                } else {
                    doppeltRechts(teilbaum);
                }
                hoeheGeaendert_ = false;
            }
        }
    } else {
        if (k->rechtsFaden()) {
            BasisNode* q = neuerKnoten();
            q->zustand = BasisNode::LINKS_FADEN | BasisNode::RECHTS_FADEN;
            q->rechts = k->rechts;
            q->links = k;
            k->rechts = q;
            k->setzeRechtsFaden(false);
            ++anzahl_;
            hoeheGeaendert_ = true;
            neu = true;
        } else {
            neu = fuegeEinUnter(k->rechts);
        }
        if (hoeheGeaendert_) {
            switch (k->balance()) {
            case BAL:
                k->setzeBalance(RECHTS);
                break;
            case LINKS:
                k->setzeBalance(BAL);
                hoeheGeaendert_ = false;
                break;
            default:
                if (k->rechts->balance() == RECHTS) {
                    BasisNode* r = k->rechts;
                    rotiereLinks(teilbaum);
                    k->setzeBalance(BAL);
                    r->setzeBalance(BAL);
                } else {
                    doppeltLinks(teilbaum);
                }
                hoeheGeaendert_ = false;
            }
        }
    }
    return neu;
}

int SortedCltn::entferne() {
    if (!wurzel_) return 0;
    hoeheGeaendert_ = false;
    nachfolgerModus_ = false;
    treffer_ = nullptr;
    entferneUnter(nullptr, true);
    if (!treffer_) return 0;
    delete treffer_;
    treffer_ = nullptr;
    --anzahl_;
    if (anzahl_ == 0) wurzel_ = nullptr;
    return 1;
}

BasisNode*& SortedCltn::zweig(BasisNode* eltern, bool linkerZweig) {
    if (!eltern) return wurzel_;
    return linkerZweig ? eltern->links : eltern->rechts;
}

void SortedCltn::entferneUnter(BasisNode* eltern, bool linkerZweig) {
    BasisNode*& teilbaum = zweig(eltern, linkerZweig);
    BasisNode* k = teilbaum;
    int richtung;
    if (nachfolgerModus_) {
        // Looking for the rightmost node of the subtree.
        richtung = k->rechtsFaden() ? 0 : 1;
    } else {
        const int c = vergleiche(*k);
        richtung = c < 0 ? -1 : (c > 0 ? 1 : 0);
    }

    if (richtung < 0) {
        if (k->linksFaden()) return;
        entferneUnter(k, true);
        if (hoeheGeaendert_) nachLinksEntfernt(teilbaum);
    } else if (richtung > 0) {
        if (k->rechtsFaden()) return;
        entferneUnter(k, false);
        if (hoeheGeaendert_) nachRechtsEntfernt(teilbaum);
    } else if (k->linksFaden() && k->rechtsFaden()) {
        // A leaf: the parent's link becomes a thread again, taking the
        // leaf's own thread on that side.
        treffer_ = k;
        if (!eltern) {
            wurzel_ = nullptr;
        } else if (linkerZweig) {
            eltern->links = k->links;
            eltern->setzeLinksFaden(true);
        } else {
            eltern->rechts = k->rechts;
            eltern->setzeRechtsFaden(true);
        }
        hoeheGeaendert_ = true;
    } else if (k->linksFaden()) {
        treffer_ = k;
        BasisNode* nach = k->rechts;
        while (!nach->linksFaden()) nach = nach->links;
        nach->links = k->links;
        teilbaum = k->rechts;
        hoeheGeaendert_ = true;
    } else if (k->rechtsFaden()) {
        treffer_ = k;
        BasisNode* vor = k->links;
        while (!vor->rechtsFaden()) vor = vor->rechts;
        vor->rechts = k->rechts;
        teilbaum = k->links;
        hoeheGeaendert_ = true;
    } else {
        // Two children: the predecessor's payload moves up here and its node,
        // now holding the key, is removed from the left subtree.
        BasisNode* vor = k->links;
        while (!vor->rechtsFaden()) vor = vor->rechts;
        k->tausche(*vor);
        nachfolgerModus_ = true;
        entferneUnter(k, true);
        if (hoeheGeaendert_) nachLinksEntfernt(teilbaum);
    }
}

void SortedCltn::nachLinksEntfernt(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    switch (a->balance()) {
    case BAL:
        a->setzeBalance(RECHTS);
        hoeheGeaendert_ = false;
        break;
    case LINKS:
        a->setzeBalance(BAL);
        break;
    default: {
        BasisNode* r = a->rechts;
        switch (r->balance()) {
        case BAL:
            rotiereLinks(teilbaum);
            a->setzeBalance(RECHTS);
            r->setzeBalance(LINKS);
            hoeheGeaendert_ = false;
            break;
        case RECHTS:
            rotiereLinks(teilbaum);
            a->setzeBalance(BAL);
            r->setzeBalance(BAL);
            break;
        default:
            doppeltLinks(teilbaum);
        }
    }
    }
}

void SortedCltn::nachRechtsEntfernt(BasisNode*& teilbaum) {
    BasisNode* a = teilbaum;
    switch (a->balance()) {
    case BAL:
        a->setzeBalance(LINKS);
        hoeheGeaendert_ = false;
        break;
    case RECHTS:
        a->setzeBalance(BAL);
        break;
    default: {
        BasisNode* l = a->links;
        switch (l->balance()) {
        case BAL:
            rotiereRechts(teilbaum);
            a->setzeBalance(LINKS);
            l->setzeBalance(RECHTS);
            hoeheGeaendert_ = false;
            break;
        case LINKS:
            rotiereRechts(teilbaum);
            a->setzeBalance(BAL);
            l->setzeBalance(BAL);
            break;
        default:
            doppeltRechts(teilbaum);
        }
    }
    }
}

void ElementNode::tausche(BasisNode& anderer) {
    std::swap(element, static_cast<ElementNode&>(anderer).element);
}

int ElementCltn::vergleiche(const BasisNode& knoten) const {
    return komparator_->vergleiche(*schluessel_, *element(&knoten));
}

// Only insertion creates or fills nodes, and insertion keys are the
// caller's modifiable elements.
BasisNode* ElementCltn::neuerKnoten() {
    return new ElementNode(const_cast<ListenElement*>(schluessel_));
}

void ElementCltn::ersetzeInhalt(BasisNode& knoten) {
    static_cast<ElementNode&>(knoten).element = const_cast<ListenElement*>(schluessel_);
}

BasisNode* ElementCltn::sucheKnoten(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    return suche();
}

BasisNode* ElementCltn::sucheKleiner(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    BasisNode* kandidat = nullptr;
    BasisNode* k = wurzel();
    while (k) {
        if (vergleiche(*k) > 0) {
            kandidat = k;
            if (k->rechtsFaden()) break;
            k = k->rechts;
        } else {
            if (k->linksFaden()) break;
            k = k->links;
        }
    }
    return kandidat;
}

BasisNode* ElementCltn::sucheGroesser(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    BasisNode* kandidat = nullptr;
    BasisNode* k = wurzel();
    while (k) {
        if (vergleiche(*k) < 0) {
            kandidat = k;
            if (k->linksFaden()) break;
            k = k->links;
        } else {
            if (k->rechtsFaden()) break;
            k = k->rechts;
        }
    }
    return kandidat;
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
        const Liste::Glied* g = stand_ == Stand::Anfang
                                    ? liste_->kopf_
                                    : static_cast<const Liste::Glied*>(letztes_)->naechstes;
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

Liste::Liste(std::int32_t besitzer, const String& name)
    : name_(name), besitzer_(besitzer), iterator_(*this) {
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
    if (ende_) ende_->naechstes = g;
    else kopf_ = g;
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
    if (glied->vorher) glied->vorher->naechstes = glied->naechstes;
    else kopf_ = glied->naechstes;
    if (glied->naechstes) glied->naechstes->vorher = glied->vorher;
    else ende_ = glied->vorher;
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
        if (melde) Fehler("LIST-ELEDOUBLE", "Liste::anfuegeElement", name + " in " + name_, 'E');
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

ListenElement* Liste::entferne(const String& name) {
    return entferne(name.c_str());
}

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
        if (melde) Fehler("LIST-NOSUCHELE", "Liste::sucheElementF", name + " in " + name_, 'W');
        return nullptr;
    }
    // Only the first name match counts; a second element of the same name
    // is not looked for.
    if (typ == 0 || gefunden->auswahl == typ) return gefunden;
    if (melde) Fehler("LIST-NOSUCHELEBEA", auswahlFunktion, name + " nicht in Auswahl enthalten", 'W');
    return nullptr;
}

ListenElement* Liste::sucheElement(const ListenElement* element, std::uint32_t typ,
                                   std::int32_t melde, std::int32_t modus) {
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

ListenElement* Liste::sucheElement(const ListenElement* element, std::uint32_t typ,
                                   std::int32_t melde, std::int32_t modus) const {
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
    if (!komparator) zusicherungVerletzt("cmp != NULL", "colsrtxx", 52);
    sortiert_ = 1;
}

ListeSort::~ListeSort() {
    baum_.leere();
    if (komparator_->besitz == 1) delete komparator_;
    komparator_ = nullptr;
}

void ListeSort::setzeKomparator(ListenKomparator* einKomparator) {
    if (!einKomparator) zusicherungVerletzt("einKomparator != NULL", "liste", 691);
    loesche();
    if (komparator_ != einKomparator && komparator_->besitz == 1) delete komparator_;
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
        if (vor) baumIterator_.letztes_ = ElementCltn::element(vor);
        else baumIterator_.zurueck();
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
            Fehler("LIST-ELEDOUBLE", "ListeSort::anfuegeElement",
                   element->liefereName() + " in " + name_, 'E');
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

ListenElement* ListeSort::entferne(const String& name) {
    return entferne(name.c_str());
}

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

ListenElement* ListeSort::sucheElement(const ListenElement* element, std::uint32_t typ,
                                       std::int32_t melde, std::int32_t modus) {
    if (!element) return nullptr;
    if (modus != 2 || !komparator_->baumSuche)
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
    ListenElement* gefunden;
    if (modus == 2 && komparator_->baumSuche) {
        NamensSchluessel schluessel(name);
        gefunden = baumSuche(&schluessel);
    } else {
        Glied* g = kettenSuche(name, modus);
        gefunden = g ? g->element : nullptr;
    }
    ListenElement* ergebnis = pruefeTreffer(gefunden, name, typ, melde, "ListeSort::sucheElementF");
    // The chain's own `aktuell` is not used by a sorted list; the tree
    // position takes its place.
    baumPosition_ = ergebnis;
    aktuell_ = nullptr;
    return ergebnis;
}

ListenElement* ListeSort::sucheElement(const ListenElement* element, std::uint32_t typ,
                                       std::int32_t melde, std::int32_t modus) const {
    if (!element) return nullptr;
    if (modus != 2 || !komparator_->baumSuche)
        return sucheElementF(element->liefereName(), typ, melde, modus);
    return pruefeTreffer(baumSuche(element), element->liefereName(), typ, melde,
                         "ListeSort::sucheElementF");
}

ListenElement* ListeSort::sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                        std::int32_t modus) const {
    ListenElement* gefunden;
    if (modus == 2 && komparator_->baumSuche) {
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

std::ostream& operator<<(std::ostream& strom, const ListeSort& liste) {
    return liste.ausgabe(strom);
}
