// Argument classes that refer to lists or objects: names in a list, command
// objects, value-pair lists and parameter lists.
#include <ostream>
#include <sstream>
#include <string>

#include "foundation/Hex.h"
#include "foundation/Liste.h"
#include "language/KdoArgumente.h"
#include "language/KdoKommando.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

// ---------------------------------------------------------------------------
// NamenInListe, BoolNamenInListe

int KdoArgumentNamenInListe::interpretiere(AnwKommando& anw, int definition) {
    const Anfang a = beginne(anw, definition, "KdoArgumentNamenInListe::interpretiere");
    if (a != Anfang::Wert) return a == Anfang::Vorgabe ? 1 : 0;
    std::istream& strom = anw.liefereStrom();
    ueberspringe(strom);
    // The messages name the reader that the first byte chose.
    const char* funktion =
        strom.peek() == '"' ? "KdoArgumentString::interpretiere" : "KdoArgumentWort::interpretiere";
    return rahmenAbToken(anw, definition, funktion);
}

KdoArgument::Token KdoArgumentNamenInListe::liesToken(AnwKommando& anw, std::istream& strom) {
    if (strom.peek() == '"') return liesEinzeiligToken(anw, strom);
    return liesWortToken(strom);
}

Liste* KdoArgumentNamenInListe::liefereListe() {
    KdoObjekt* objekt = kommando_ ? kommando_->liefereAktuellesObjekt() : nullptr;
    Liste* liste = objekt ? objekt->liefereListeFuerKdoArg(name_) : nullptr;
    if (!liste) {
        Fehler("INT-CMD-ARG-LIST-NOT-EXIST", "KdoArgumentNamenInListe::liefereListe",
               String("Obj: ") + (objekt ? objekt->liefereName() : String()) + "  " + "Liste: " + name_, 'E');
    }
    return liste;
}

int KdoArgumentNamenInListe::waehleAus(Liste& liste) {
    if (aktuell_.istLeer()) {
        liste.setzeAuswahl(2);
        return 1;
    }
    liste.setzeAuswahl(1);
    int anzahl = 0;
    String* teile = aktuell_.zerlege(",", anzahl);
    int alle = 1;
    for (int i = 0; i < anzahl; ++i) {
        teile[i].trimme();
        if (ListenElement* e = liste.sucheElementF(teile[i], ListenSuche::JEDE_AUSWAHL, ListenSuche::MELDEN,
                                                   ListenSuche::EXAKT)) {
            e->auswahl = 2;
        } else {
            alle = 0;
        }
    }
    delete[] teile;
    return alle;
}

int KdoArgumentNamenInListe::liefereArgWertListe() {
    Liste* liste = liefereListe();
    if (!liste) return 0;
    return waehleAus(*liste);
}

int KdoArgumentBoolNamenInListe::interpretiere(AnwKommando& anw, int definition) {
    const char* funktion = "KdoArgumentBoolNamenInListe::interpretiere";
    const Anfang a = beginne(anw, definition, funktion);
    if (a != Anfang::Wert) return a == Anfang::Vorgabe ? 1 : 0;
    std::istream& strom = anw.liefereStrom();
    const std::streampos pos = position(strom);
    ueberspringe(strom);
    if (strom.get() == '"') {
        ueberspringe(strom);
        const int c2 = strom.get();
        if (c2 == platzhalter_) {
            ueberspringe(strom);
            strom.get();  // the closing quote
            if (folgtEnde(strom)) {
                gesetzt_ = 0;
                aktuell_ = String();
                if (definition == 1) merkeVorgabe();
                return 1;
            }
            if (!strom.good())
                meldeKlammer(anw, funktion);
            else
                meldeFalsch(anw, pos, funktion);
            return 0;
        }
        if (c2 != '"' && !istWortZeichen(c2)) {
            meldeFalsch(anw, pos, funktion);
            return 0;
        }
    }
    // A bare "/" reaches the word reader and is refused there: the
    // placeholder of this class must be quoted. Intended.
    setzeZurueck(strom, pos);
    ueberspringe(strom);
    const char* leser =
        strom.peek() == '"' ? "KdoArgumentString::interpretiere" : "KdoArgumentWort::interpretiere";
    if (!rahmenAbToken(anw, definition, leser)) return 0;
    gesetzt_ = 1;
    if (definition == 1) merkeVorgabe();
    return 1;
}

int KdoArgumentBoolNamenInListe::liefereArgWertListe() {
    Liste* liste = liefereListe();
    if (!liste) return 0;
    if (aktuell_.istLeer() && gesetzt_ != 1) {
        liste->setzeAuswahl(1);  // nothing selected
        return 1;
    }
    return waehleAus(*liste);
}

void KdoArgumentBoolNamenInListe::setzeArgWertListe(const String& namen) {
    aktuell_ = namen;
    gesetzt_ = 1;
}

// ---------------------------------------------------------------------------
// KdoObjekt, BoolKdoObjekt

KdoArgumentKdoObjekt::KdoArgumentKdoObjekt(const String& argName, const String& erlaubteTypen)
    : KdoArgument(argName) {
    if (erlaubteTypen.istLeer()) return;
    int anzahl = 0;
    String* teile = erlaubteTypen.zerlege(",", anzahl);
    for (int i = 0; i < anzahl; ++i) typen_.push_back(teile[i]);
    delete[] teile;
}

void KdoArgumentKdoObjekt::ausgabe(std::ostream& strom) const {
    strom << liefereTypName() << '(';
    for (std::size_t i = 0; i < typen_.size(); ++i) {
        if (i > 0) strom << ',';
        strom << typen_[i];
    }
    strom << ')';
}

int KdoArgumentKdoObjekt::interpretiere(AnwKommando& anw, int definition) {
    const char* funktion = "KdoArgumentKdoObjekt::interpretiere";
    if (!oeffne(anw, funktion)) return 0;
    std::istream& strom = anw.liefereStrom();
    if (istLeer(strom)) {
        // Unlike the other classes an empty place empties the value.
        pfad_ = String();
        rohText_ = String();
        if (definition == 1) merkeVorgabe();
        return 1;
    }
    return rahmenAbToken(anw, definition, funktion);
}

// Tokens up to "," or ")" are joined: blanks inside a path are dropped.
KdoArgument::Token KdoArgumentKdoObjekt::liesToken(AnwKommando& anw, std::istream& strom) {
    const std::streampos anfang = position(strom);
    String sammler;
    for (;;) {
        eingabe_.liesBis(strom, ",)");
        const int c = strom.peek();
        if (eingabe_.istLeer() || c == ',' || c == ')') break;
        sammler += eingabe_;
        ueberspringe(strom);
    }
    sammler += eingabe_;
    std::streampos ende = position(strom);
    const String& text = anw.liefereText();
    if (anfang == std::streampos(-1) || ende == std::streampos(-1)) ende = anfang;
    const auto von = static_cast<std::streamoff>(anfang);
    rohText_ = text.teil(static_cast<int>(von), static_cast<int>(static_cast<std::streamoff>(ende) - von));
    rohText_.entferneHinten();
    pfad_ = sammler;
    kommandoText_ = text;
    return Gelesen;
}

KdoObjekt* KdoArgumentKdoObjekt::loese() {
    const char* funktion = "KdoArgumentKdoObjekt::liefereArgWertKdoObjekt";
    KdoObjektBasis* gefunden = kdoBaum() ? kdoBaum()->suche(pfad_, 0) : nullptr;
    auto* objekt = dynamic_cast<KdoObjekt*>(gefunden);
    if (!objekt) {
        Fehler("CMD-KDOOBJ-NOTEX", funktion, falschDetail(kommandoText_, rohText_), 'E');
        return nullptr;
    }
    if (!typen_.empty()) {
        bool erlaubt = false;
        for (const String& t : typen_) erlaubt = erlaubt || objekt->liefereKdoOTyp() == t;
        if (!erlaubt) {
            // One tab and one blank here, unlike the other layouts: intended.
            Fehler("CMD-KDOOBJ-TYPINV", funktion, falschDetail(kommandoText_, rohText_, "\t", " "), 'E');
            return nullptr;
        }
    }
    return objekt;
}

KdoObjekt* KdoArgumentKdoObjekt::liefereArgWertKdoObjekt() {
    if (pfad_.istLeer()) {
        Fehler("CMD-KDOOBJ-REQUIRED", "KdoArgumentKdoObjekt::liefereArgWertKdoObjekt", "", 'E');
        return nullptr;
    }
    return loese();
}

// Stored as the path below the root, so that it resolves from anywhere.
void KdoArgumentKdoObjekt::setzeArgWertKdoObjekt(KdoObjekt* objekt) {
    if (!objekt) {
        pfad_ = String();
        rohText_ = String();
        return;
    }
    String voll = objekt->liefereVollenNamen();
    if (kdoBaum() && kdoBaum()->liefereWurzel()) {
        const String vorn = kdoBaum()->liefereWurzel()->liefereVollenNamen() + ".";
        if (voll.links(vorn.laenge()) == vorn) voll = voll.teil(vorn.laenge(), voll.laenge());
    }
    pfad_ = voll;
    rohText_ = voll;
}

int KdoArgumentBoolKdoObjekt::interpretiere(AnwKommando& anw, int definition) {
    std::istream& strom = anw.liefereStrom();
    ueberspringe(strom);
    // No placeholder, and no complaint about a missing argument.
    if (!strom.good()) return 1;
    if (istLeer(strom)) {
        ladeVorgabe();
        if (definition == 1) merkeVorgabe();
        return 1;
    }
    if (!rahmenAbToken(anw, definition, "KdoArgumentKdoObjekt::interpretiere")) return 0;
    gesetzt_ = 1;
    if (definition == 1) merkeVorgabe();
    return 1;
}

KdoObjekt* KdoArgumentBoolKdoObjekt::liefereArgWertKdoObjekt() {
    if (pfad_.istLeer()) return nullptr;
    return loese();
}

void KdoArgumentBoolKdoObjekt::setzeArgWertKdoObjekt(KdoObjekt* objekt) {
    KdoArgumentKdoObjekt::setzeArgWertKdoObjekt(objekt);
    gesetzt_ = 1;
}

// ---------------------------------------------------------------------------
// WPListe, WPStrListe

namespace {
// Continuation lines of a pair list line up under the first pair, which the
// help text places at its third stop.
constexpr int paarSpalte = 45;

template <class Paar>
void zeigePaare(std::ostream& strom, const std::vector<Paar>& paare) {
    for (std::size_t i = 0; i < paare.size(); ++i) {
        if (i > 0) strom << '\n' << std::string(paarSpalte, ' ');
        strom << paare[i];
    }
}
}  // namespace

template <class Paar>
void KdoArgumentPaarListe<Paar>::zeigeWert(std::ostream& strom) const {
    zeigePaare(strom, aktuell_);
}

template <class Paar>
void KdoArgumentPaarListe<Paar>::zeigeVorgabe(std::ostream& strom) const {
    zeigePaare(strom, vorgabe_);
}

template <class Paar>
int KdoArgumentPaarListe<Paar>::liesPaare(AnwKommando& anw, int definition, const char* funktion) {
    if (!oeffne(anw, funktion)) return 0;
    std::istream& strom = anw.liefereStrom();
    if (istLeer(strom)) {
        aktuell_.clear();
        if (definition == 1) vorgabe_.clear();
        return 1;
    }
    const std::streampos pos = position(strom);
    std::vector<Paar> neu;
    for (;;) {
        ueberspringe(strom);
        dataInteger iwert = 0;
        liesHexMitVorzeichen(strom, iwert);
        ueberspringe(strom);
        if (strom.fail()) {
            meldeFalsch(anw, pos, funktion);
            return 0;
        }
        if (strom.get() != '/') {
            meldeFalsch(anw, pos, funktion);
            return 0;
        }
        ueberspringe(strom);
        if (!liesWert(strom, iwert, neu)) {
            strom.clear();
            strom.get();
            if (!strom.good())
                meldeKlammer(anw, funktion);
            else
                meldeFalsch(anw, pos, funktion);
            return 0;
        }
        ueberspringe(strom);
        const int c = strom.get();
        if (!strom.good()) {
            meldeKlammer(anw, funktion);
            return 0;
        }
        strom.putback(static_cast<char>(c));
        if (c == ',' || c == ')') break;
    }
    aktuell_ = neu;
    if (definition == 1) vorgabe_ = neu;
    return 1;
}

template <class Paar>
Paar* KdoArgumentPaarListe<Paar>::paarAn(std::uint16_t i, const char* leerFunktion,
                                         const char* indexFunktion) {
    if (aktuell_.empty()) {
        Fehler("CMD-LISTEMPTY", leerFunktion, name_, 'E');
        return nullptr;
    }
    if (i >= aktuell_.size()) {
        Fehler("CMD-INDEXCEEDED", indexFunktion, String(std::to_string(i)), 'W');
        return &aktuell_.back();
    }
    return &aktuell_[i];
}

template class KdoArgumentPaarListe<WertePaar>;
template class KdoArgumentPaarListe<WertePaarStr>;

int KdoArgumentWPListe::interpretiere(AnwKommando& anw, int definition) {
    return liesPaare(anw, definition, "KdoArgumentWPListe::interpretiere");
}

bool KdoArgumentWPListe::liesWert(std::istream& strom, dataInteger iwert, std::vector<WertePaar>& neu) {
    dataPhys phys = 0;
    if (!liesPhys(strom, phys)) return false;
    neu.emplace_back(iwert, phys, Genauigkeit(8));
    return true;
}

// The doubled m in the empty-list reports is the reporter's established name.
WertePaar* KdoArgumentWPListe::liefereArgWertWP(std::uint16_t i) {
    return paarAn(i, "KdoArgummentWPListe::liefereArgWertWP", "KdoArgumentWPListe::liefereArgWertWP");
}

void KdoArgumentWPListe::setzeArgWertWP(std::uint16_t i, const WertePaar& paar) {
    if (i >= aktuell_.size())
        aktuell_.push_back(paar);  // appended at the end, not at i
    else
        aktuell_[i] = paar;
}

int KdoArgumentWPStrListe::interpretiere(AnwKommando& anw, int definition) {
    return liesPaare(anw, definition, "KdoArgumentWPStrListe::interpretiere");
}

bool KdoArgumentWPStrListe::liesWert(std::istream& strom, dataInteger iwert, std::vector<WertePaarStr>& neu) {
    String text;
    if (text.liesQuotiert(strom, nullptr) < 0) return false;
    neu.emplace_back(iwert, text);
    return true;
}

WertePaarStr* KdoArgumentWPStrListe::liefereArgWertWPStr(std::uint16_t i) {
    return paarAn(i, "KdoArgummentWPStrListe::liefereArgWertWPStr",
                  "KdoArgumentWPStrListe::liefereArgWertWPStr");
}

void KdoArgumentWPStrListe::setzeArgWertWPStr(std::uint16_t i, const WertePaarStr& paar) {
    if (i >= aktuell_.size()) {
        Fehler("CMD-INDEXINVALID", "KdoArgumentWPStrListe::setzeArgWertWPStr", String(hex::text(i)), 'W');
        aktuell_.push_back(paar);
        return;
    }
    aktuell_[i] = paar;
}

// ---------------------------------------------------------------------------
// ParameterListe

KdoArgumentParameterListe::KdoArgumentParameterListe(const String& argName)
    : KdoArgument(argName), aktuell_(std::make_shared<DynArray<String>>()), vorgabe_(aktuell_) {}

namespace {
String verbinde(DynArray<String>& feld) {
    String text;
    for (std::int32_t i = feld.basis(); i < feld.obergrenze(); ++i) {
        if (i > feld.basis()) text += ',';
        text += feld[i];
    }
    return text;
}
}  // namespace

void KdoArgumentParameterListe::zeigeWert(std::ostream& strom) const { strom << verbinde(*aktuell_); }

void KdoArgumentParameterListe::zeigeVorgabe(std::ostream& strom) const { strom << verbinde(*vorgabe_); }

int KdoArgumentParameterListe::interpretiere(AnwKommando& anw, int definition) {
    const char* funktion = "KdoArgumentParameterListe::interpretiere";
    if (!oeffne(anw, funktion)) return 0;
    std::istream& strom = anw.liefereStrom();
    if (istLeer(strom)) {
        aktuell_ = vorgabe_;  // the same array
        return 1;
    }
    const std::streampos pos = position(strom);
    auto neu = std::make_shared<DynArray<String>>();
    std::int32_t index = 0;
    int ergebnis = 1;
    // The comma that ends a parameter also ends this argument: the command
    // syntax hands over one parameter. Intended.
    for (;;) {
        if (eingabe_.liesBis(strom, ",)") == 0) break;
        (*neu)[index++] = eingabe_;
        ueberspringe(strom);
        if (!folgtEnde(strom)) {
            if (!strom.good())
                meldeKlammer(anw, funktion);
            else
                meldeFalsch(anw, pos, funktion);
            ergebnis = 0;
        }
    }
    if (ergebnis == 0) return 0;
    aktuell_ = neu;
    if (definition == 1) merkeVorgabe();
    return 1;
}

String& KdoArgumentParameterListe::liefereArgWertStr() {
    eingabe_ = verbinde(*aktuell_);
    return eingabe_;
}

void KdoArgumentParameterListe::setzeArgWertStr(const String& wert) {
    auto neu = std::make_shared<DynArray<String>>();
    std::istringstream strom(wert.str());
    std::int32_t index = 0;
    String teil;
    for (;;) {
        teil.liesBisMitQuotes(strom, ",)", 0);
        if (teil.istLeer() && !strom.good()) break;
        (*neu)[index++] = teil;
        strom.get();  // the separator
        ueberspringe(strom);
        if (!strom.good()) break;
    }
    aktuell_ = neu;
}
