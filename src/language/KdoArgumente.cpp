// Argument classes: numbers, truth values, texts, file names, enumeration.
#include "language/KdoArgumente.h"

#include <cctype>
#include <ios>
#include <ostream>

#include "foundation/Hex.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

// ---------------------------------------------------------------------------
// Bool forms

template <class Basis>
int KdoBoolForm<Basis>::interpretiereBool(AnwKommando& anw, int definition, const char* funktion) {
    std::istream& strom = anw.liefereStrom();
    KdoArgument::ueberspringe(strom);
    if (!strom.good()) {
        this->meldeKlammer(anw, funktion);
        return 0;
    }
    if (KdoArgument::istLeer(strom)) {
        ladeVorgabe();
        if (definition == 1) merkeVorgabe();
        return 1;
    }
    const std::streampos pos = KdoArgument::position(strom);
    KdoArgument::ueberspringe(strom);
    const int c = strom.get();
    if (c != EOF && kannBeginnen(c)) {
        strom.putback(static_cast<char>(c));
        if (!Basis::interpretiere(anw, definition)) return 0;
        gesetzt_ = 1;
        if (definition == 1) merkeVorgabe();
        return 1;
    }
    if (c == platzhalter_) {
        KdoArgument::ueberspringe(strom);
        if (KdoArgument::folgtEnde(strom)) {
            gesetzt_ = 0;
            if (definition == 1) merkeVorgabe();
            return 1;
        }
        if (!strom.good())
            this->meldeKlammer(anw, funktion);
        else
            this->meldeFalsch(anw, pos, funktion);
        return 0;
    }
    this->meldeFalsch(anw, pos, funktion);
    return 0;
}

// ---------------------------------------------------------------------------
// Integer, BoolInteger

void KdoArgumentInteger::zeige(std::ostream& strom, const dataInteger& wert) const {
    strom << std::dec << wert;
}

int KdoArgumentInteger::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentInteger::interpretiere");
}

KdoArgument::Token KdoArgumentInteger::liesToken(AnwKommando&, std::istream& strom) {
    return liesDezimal(strom, aktuell_) ? Gelesen : Fehlgeschlagen;
}

int KdoArgumentBoolInteger::interpretiere(AnwKommando& anw, int definition) {
    return interpretiereBool(anw, definition, "KdoArgumentBoolInteger::interpretiere");
}

void KdoArgumentBoolInteger::setzeArgWertInt(const dataInteger& wert) {
    aktuell_ = wert;
    gesetzt_ = 1;
}

// No sign: a leading "-" is a wrong argument here.
bool KdoArgumentBoolInteger::kannBeginnen(int c) const { return c >= '0' && c <= '9'; }

// ---------------------------------------------------------------------------
// IntegerHex, BoolIntegerHex

namespace {
void zeigeHex(std::ostream& strom, adrInteger wert) { strom << hex::text(wert); }
}  // namespace

void KdoArgumentIntegerHex::zeige(std::ostream& strom, const adrInteger& wert) const {
    zeigeHex(strom, wert);
}

int KdoArgumentIntegerHex::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentIntegerHex::interpretiere");
}

KdoArgument::Token KdoArgumentIntegerHex::liesToken(AnwKommando&, std::istream& strom) {
    return liesHex(strom, aktuell_) ? Gelesen : Fehlgeschlagen;
}

unsigned char KdoArgumentIntegerHex::liefereArgWertCharHex() {
    if (aktuell_ >= 256) {
        Fehler("CMD-VALTOOBIG", "KdoArgument::liefereArgWertCharHex",
               name_ + " (" + typText() + ") <-> dataInteger ", 'E');
    }
    return static_cast<unsigned char>(aktuell_);
}

int KdoArgumentBoolIntegerHex::interpretiere(AnwKommando& anw, int definition) {
    return interpretiereBool(anw, definition, "KdoArgumentBoolIntegerHex::interpretiere");
}

void KdoArgumentBoolIntegerHex::setzeArgWertIntHex(const adrInteger& wert) {
    aktuell_ = wert;
    gesetzt_ = 1;
}

bool KdoArgumentBoolIntegerHex::kannBeginnen(int c) const {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// ---------------------------------------------------------------------------
// Phys, Bool

void KdoArgumentPhys::zeige(std::ostream& strom, const dataPhys& wert) const { strom << std::dec << wert; }

int KdoArgumentPhys::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentPhys::interpretiere");
}

KdoArgument::Token KdoArgumentPhys::liesToken(AnwKommando&, std::istream& strom) {
    return liesPhys(strom, aktuell_) ? Gelesen : Fehlgeschlagen;
}

void KdoArgumentBool::zeige(std::ostream& strom, const YesNo& wert) const { strom << (wert ? 'y' : 'n'); }

int KdoArgumentBool::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentBool::interpretiere");
}

KdoArgument::Token KdoArgumentBool::liesToken(AnwKommando&, std::istream& strom) {
    if (eingabe_.liesBis(strom, ",)") == 0) return Fehlgeschlagen;
    eingabe_.klein();
    if (eingabe_ == "j" || eingabe_ == "ja" || eingabe_ == "y" || eingabe_ == "yes") {
        aktuell_ = 1;
        return Gelesen;
    }
    if (eingabe_ == "n" || eingabe_ == "nein" || eingabe_ == "no") {
        aktuell_ = 0;
        return Gelesen;
    }
    return Fehlgeschlagen;
}

// ---------------------------------------------------------------------------
// Texts

void KdoArgumentText::zeige(std::ostream& strom, const String& wert) const { strom << wert; }

KdoArgument::Token KdoArgumentText::liesWortToken(std::istream& strom) {
    if (aktuell_.liesWort(strom) == 0) return Fehlgeschlagen;
    return Gelesen;
}

KdoArgument::Token KdoArgumentText::liesQuotiertToken(std::istream& strom) {
    if (aktuell_.liesQuotiert(strom, nullptr) < 0) return Fehlgeschlagen;
    return Gelesen;
}

KdoArgument::Token KdoArgumentText::liesEinzeiligToken(AnwKommando& anw, std::istream& strom) {
    const Token t = liesQuotiertToken(strom);
    if (t != Gelesen) return t;
    if (aktuell_.suche("\n") >= 0) {
        Fehler("CMD-WRONGARG-TOOLONG", "KdoArgumentString::interpretiere",
               falschDetail(anw.liefereText(), aktuell_), 'E');
        aktuell_ = String();
        return Gemeldet;
    }
    return Gelesen;
}

int KdoArgumentWort::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentWort::interpretiere");
}

KdoArgument::Token KdoArgumentWort::liesToken(AnwKommando&, std::istream& strom) {
    return liesWortToken(strom);
}

int KdoArgumentBoolWort::interpretiere(AnwKommando& anw, int definition) {
    return interpretiereBool(anw, definition, "KdoArgumentBoolWort::interpretiere");
}

int KdoArgumentNameInListe::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentNameInListe::interpretiere");
}

int KdoArgumentBoolNameInListe::interpretiere(AnwKommando& anw, int definition) {
    return interpretiereBool(anw, definition, "KdoArgumentBoolNameInListe::interpretiere");
}

int KdoArgumentLString::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentLString::interpretiere");
}

KdoArgument::Token KdoArgumentLString::liesToken(AnwKommando&, std::istream& strom) {
    return liesQuotiertToken(strom);
}

int KdoArgumentString::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentString::interpretiere");
}

KdoArgument::Token KdoArgumentString::liesToken(AnwKommando& anw, std::istream& strom) {
    return liesEinzeiligToken(anw, strom);
}

int KdoArgumentRegExpr::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentRegExpr::interpretiere");
}

KdoArgument::Token KdoArgumentRegExpr::liesToken(AnwKommando&, std::istream& strom) {
    return liesQuotiertToken(strom);
}

// ---------------------------------------------------------------------------
// DateiName, DateiPfad

void KdoArgumentDateiName::zeige(std::ostream& strom, const DateiName& wert) const {
    strom << wert.liefereGanz();
}

int KdoArgumentDateiName::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentDateiName::interpretiere");
}

// Any run of bytes without white space, comma or ")"; quotes are plain bytes.
KdoArgument::Token KdoArgumentDateiName::liesToken(AnwKommando&, std::istream& strom) {
    if (eingabe_.liesBis(strom, ",)") == 0) return Fehlgeschlagen;
    aktuell_ = eingabe_;
    return Gelesen;
}

int KdoArgumentDateiPfad::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentDateiPfad::interpretiere");
}

// ---------------------------------------------------------------------------
// Enum

KdoArgumentEnum::KdoArgumentEnum(const String& argName, const String& namenText)
    : KdoWertArgument(argName), namen_(std::make_unique<TextFeld>()) {
    int anzahl = 0;
    String* teile = namenText.zerlege(",", anzahl);
    for (int i = 0; i < anzahl; ++i) namen_->haengeAn(teile[i].links(127).c_str());
    delete[] teile;
}

KdoArgumentEnum::~KdoArgumentEnum() = default;

void KdoArgumentEnum::ausgabe(std::ostream& strom) const {
    strom << "Enum{";
    for (std::int32_t i = 0; i < namen_->fuellstand(); ++i) {
        if (i > 0) strom << ',';
        if (const char* t = namen_->text(i)) strom << t;
    }
    strom << '}';
}

const TextFeld* KdoArgumentEnum::liefereEnumWerte() { return namen_.get(); }

void KdoArgumentEnum::zeige(std::ostream& strom, const dataInteger& wert) const {
    if (const char* t = namen_->text(wert)) strom << t;
}

int KdoArgumentEnum::interpretiere(AnwKommando& anw, int definition) {
    return rahmen(anw, definition, "KdoArgumentEnum::interpretiere");
}

KdoArgument::Token KdoArgumentEnum::liesToken(AnwKommando&, std::istream& strom) {
    // An empty token fails without a message; the only class that does so.
    if (eingabe_.liesBis(strom, ",)") == 0) return Gemeldet;
    for (std::int32_t i = 0; i < namen_->fuellstand(); ++i) {
        const char* t = namen_->text(i);
        if (t && eingabe_ == t) {
            aktuell_ = i;
            return Gelesen;
        }
    }
    return Fehlgeschlagen;
}

void KdoArgumentEnum::setzeArgWertInt(const dataInteger& wert) {
    if (static_cast<std::uint32_t>(wert) >= static_cast<std::uint32_t>(namen_->fuellstand())) {
        Fehler("CMD-INDEXINVALID", "KdoArgumentEnum::setzeArgWertInt",
               String(hex::text(static_cast<std::uint32_t>(wert))), 'W');
        return;
    }
    aktuell_ = wert;
}
