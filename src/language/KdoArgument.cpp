// KdoArgument: accessor defaults, the parsing frame and its helpers.
#include "language/KdoArgument.h"

#include <cstdlib>
#include <sstream>
#include <string>

#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

KdoArgument::KdoArgument(const String& argName) : name_(argName) {}

void KdoArgument::ausgabe(std::ostream& strom) const { strom << liefereTypName(); }

String KdoArgument::liefereTypName() const { return kdoTypWort(liefereTyp()); }

String KdoArgument::typText() const {
    std::ostringstream s;
    ausgabe(s);
    return String(s.str());
}

const TextFeld* KdoArgument::liefereEnumWerte() {
    Fehler("NOFUNC", "KdoArgument::liefereEnumWerte", "NULL", 'W');
    return nullptr;
}

// ---------------------------------------------------------------------------
// Accessors of the wrong type

void KdoArgument::falscheMethode(const char* operation, const char* typWort) const {
    Fehler("CMD-WRONGARGMETHOD", String("KdoArgument::") + operation,
           name_ + " (" + typText() + ") <-> " + typWort + " ", 'E');
}

namespace {
// Shared dummies handed out by the accessors of the wrong type.
template <class T>
T& dummy() {
    static T wert{};
    return wert;
}
}  // namespace

dataInteger& KdoArgument::liefereArgWertInt() {
    falscheMethode("liefereArgWertInt", "dataInteger");
    return dummy<dataInteger>();
}
adrInteger& KdoArgument::liefereArgWertIntHex() {
    falscheMethode("liefereArgWertIntHex", "adrInteger");
    return dummy<adrInteger>();
}
unsigned char KdoArgument::liefereArgWertCharHex() {
    falscheMethode("liefereArgWertCharHex", "unsigned char");
    return 0;
}
dataPhys& KdoArgument::liefereArgWertPhys() {
    falscheMethode("liefereArgWertPhys", "dataPhys");
    return dummy<dataPhys>();
}
YesNo& KdoArgument::liefereArgWertBool() {
    falscheMethode("liefereArgWertBool", "YesNo");
    return dummy<YesNo>();
}
String& KdoArgument::liefereArgWertStr() {
    falscheMethode("liefereArgWertStr", "String");
    return dummy<String>();
}
int KdoArgument::liefereArgWertListe() {
    falscheMethode("liefereArgWertListe", "Liste");
    return 0;
}
DateiName& KdoArgument::liefereArgWertDatei() {
    falscheMethode("liefereArgWertDatei", "DateiName");
    return dummy<DateiName>();
}
KdoObjekt* KdoArgument::liefereArgWertKdoObjekt() {
    falscheMethode("liefereArgWertKdoObjekt", "KdoObjekt");
    return nullptr;
}
WertePaar* KdoArgument::liefereArgWertWP(std::uint16_t) {
    falscheMethode("liefereArgWertWP", "WPListe");
    return nullptr;
}
WertePaarStr* KdoArgument::liefereArgWertWPStr(std::uint16_t) {
    falscheMethode("liefereArgWertWPStr", "WPStrListe");
    return nullptr;
}
DynArray<String>& KdoArgument::liefereArgWertDynArrStr() {
    falscheMethode("liefereArgWertDynArrStr", "ParameterListe");
    return dummy<DynArray<String>>();
}
void KdoArgument::setzeArgWertInt(const dataInteger&) { falscheMethode("setzeArgWertInt", "dataInteger"); }
void KdoArgument::setzeArgWertIntHex(const adrInteger&) {
    falscheMethode("setzeArgWertIntHex", "adrInteger");
}
void KdoArgument::setzeArgWertCharHex(const unsigned char&) {
    falscheMethode("setzeArgWertCharHex", "unsigned char");
}
void KdoArgument::setzeArgWertPhys(const dataPhys&) { falscheMethode("setzeArgWertPhys", "dataPhys"); }
void KdoArgument::setzeArgWertBool(const YesNo&) { falscheMethode("setzeArgWertBool", "YesNo"); }
void KdoArgument::setzeArgWertStr(const String&) { falscheMethode("setzeArgWertStr", "String"); }
void KdoArgument::setzeArgWertListe(const String&) { falscheMethode("setzeArgWertListe", "Liste"); }
void KdoArgument::setzeArgWertDatei(const DateiName&) { falscheMethode("setzeArgWertDatei", "DateiName"); }
void KdoArgument::setzeArgWertKdoObjekt(KdoObjekt*) { falscheMethode("setzeArgWertKdoObjekt", "KdoObjekt"); }
void KdoArgument::setzeArgWertWP(std::uint16_t, const WertePaar&) {
    falscheMethode("setzeArgWertWP", "WPListe");
}
void KdoArgument::setzeArgWertWPStr(std::uint16_t, const WertePaarStr&) {
    falscheMethode("setzeArgWertWPStr", "WPStrListe");
}
void KdoArgument::initWPListe() { falscheMethode("initWPListe", "WPListe"); }
std::int32_t KdoArgument::liefereAnzahlWP() {
    falscheMethode("liefereAnzahlWP", "WPListe");
    return 0;
}
void KdoArgument::initWPStrListe() { falscheMethode("initWPStrListe", "WPStrListe"); }
std::int32_t KdoArgument::liefereAnzahlWPStr() {
    falscheMethode("liefereAnzahlWPStr", "WPStrListe");
    return 0;
}

// ---------------------------------------------------------------------------
// Stream helpers

bool KdoArgument::istLeerzeichen(int c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool KdoArgument::istWortZeichen(int c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '$' ||
           c == '%' || c == '.' || c == '_';
}

void KdoArgument::ueberspringe(std::istream& strom) {
    for (;;) {
        const int c = strom.peek();
        if (c == EOF || !istLeerzeichen(c)) return;
        strom.get();
    }
}

int KdoArgument::istLeer(std::istream& strom) {
    int c = strom.get();
    if (c == '(' || c == ',') {
        ueberspringe(strom);
        c = strom.peek();
        return (c == ',' || c == ')') ? 1 : 0;
    }
    if (c == EOF) return 0;
    strom.putback(static_cast<char>(c));
    return c == ')' ? 1 : 0;
}

int KdoArgument::folgtEnde(std::istream& strom) {
    const int c = strom.get();
    if (c == ',' || c == ')') {
        strom.putback(static_cast<char>(c));
        return 1;
    }
    return 0;
}

// The buffer answers positions whatever state the stream is in.
std::streampos KdoArgument::position(std::istream& strom) {
    if (!strom.rdbuf()) return std::streampos(-1);
    return strom.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
}

void KdoArgument::setzeZurueck(std::istream& strom, std::streampos pos) {
    strom.clear();
    if (pos != std::streampos(-1) && strom.rdbuf()) strom.rdbuf()->pubseekpos(pos, std::ios::in);
}

// ---------------------------------------------------------------------------
// Number readers

namespace {
bool istHexZiffer(int c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool istDezimalZiffer(int c) { return c >= '0' && c <= '9'; }

constexpr std::size_t maxZeichen = 15;

// Sign, then (hexadecimal only) an optional 0x, then digits; at most 15
// characters in all. `ziffern` receives the digits only.
bool liesZahlText(std::istream& strom, bool hex, bool& negativ, std::string& ziffern) {
    std::size_t gelesen = 0;
    negativ = false;
    ziffern.clear();
    int c = strom.peek();
    if (c == '+' || c == '-') {
        negativ = c == '-';
        strom.get();
        ++gelesen;
    }
    if (hex && gelesen < maxZeichen && strom.peek() == '0') {
        strom.get();
        ++gelesen;
        c = gelesen < maxZeichen ? strom.peek() : EOF;
        if (c == 'x' || c == 'X') {
            strom.get();
            ++gelesen;
            // "0x" needs digits behind it.
            if (gelesen >= maxZeichen || !istHexZiffer(strom.peek())) return false;
        } else {
            ziffern += '0';
        }
    }
    while (gelesen < maxZeichen) {
        c = strom.peek();
        if (c == EOF || !(hex ? istHexZiffer(c) : istDezimalZiffer(c))) break;
        ziffern += static_cast<char>(strom.get());
        ++gelesen;
    }
    return !ziffern.empty();
}

// A signed 32-bit number, decimal or hexadecimal; at most 15 digits, so the
// magnitude always fits a long long before the range check.
int liesMitVorzeichen(std::istream& strom, bool hex, dataInteger& wert) {
    bool negativ = false;
    std::string ziffern;
    if (!liesZahlText(strom, hex, negativ, ziffern)) {
        strom.setstate(std::ios::failbit);
        return 0;
    }
    long long v = std::strtoll(ziffern.c_str(), nullptr, hex ? 16 : 10);
    if (negativ) v = -v;
    if (v < INT32_MIN || v > INT32_MAX) {
        strom.setstate(std::ios::failbit);
        return 0;
    }
    wert = static_cast<dataInteger>(v);
    return 1;
}
}  // namespace

int KdoArgument::liesDezimal(std::istream& strom, dataInteger& wert) {
    return liesMitVorzeichen(strom, false, wert);
}

int KdoArgument::liesHex(std::istream& strom, adrInteger& wert) {
    bool negativ = false;
    std::string ziffern;
    if (!liesZahlText(strom, true, negativ, ziffern)) {
        strom.setstate(std::ios::failbit);
        return 0;
    }
    const unsigned long long v = std::strtoull(ziffern.c_str(), nullptr, 16);
    if (v > 0xFFFFFFFFULL) {
        strom.setstate(std::ios::failbit);
        return 0;
    }
    // A sign negates modulo 2^32, so -1 is FFFFFFFF.
    wert = negativ ? static_cast<adrInteger>(0u - static_cast<adrInteger>(v)) : static_cast<adrInteger>(v);
    return 1;
}

int KdoArgument::liesHexMitVorzeichen(std::istream& strom, dataInteger& wert) {
    return liesMitVorzeichen(strom, true, wert);
}

int KdoArgument::liesPhys(std::istream& strom, dataPhys& wert) {
    dataPhys v = 0;
    strom >> std::dec >> v;
    if (strom.fail()) return 0;
    wert = v;
    return 1;
}

// ---------------------------------------------------------------------------
// Messages and the frame

String KdoArgument::falschDetail(const String& kommandoText, const String& text, const char* einzug,
                                 const char* trenner) const {
    return kommandoText + "\n" + einzug + typText() + trenner + name_ + ": " + text;
}

void KdoArgument::meldeFalsch(AnwKommando& anw, std::streampos pos, const char* funktion) {
    std::istream& strom = anw.liefereStrom();
    setzeZurueck(strom, pos);
    std::string text;
    for (;;) {
        const int c = strom.get();
        if (c == EOF || c == ',' || c == ')') break;
        text += static_cast<char>(c);
    }
    Fehler("CMD-WRONGARG", funktion, falschDetail(anw.liefereText(), String(text)), 'E');
}

void KdoArgument::meldeKlammer(AnwKommando& anw, const char* funktion) {
    Fehler("CMD-ARGPARENTHESIS", funktion, anw.liefereText(), 'E');
}

KdoArgument::Token KdoArgument::liesToken(AnwKommando&, std::istream&) { return Fehlgeschlagen; }

bool KdoArgument::oeffne(AnwKommando& anw, const char* funktion) {
    std::istream& strom = anw.liefereStrom();
    ueberspringe(strom);
    if (strom.good()) return true;
    meldeKlammer(anw, funktion);
    return false;
}

KdoArgument::Anfang KdoArgument::beginne(AnwKommando& anw, int definition, const char* funktion) {
    if (!oeffne(anw, funktion)) return Anfang::Gemeldet;
    std::istream& strom = anw.liefereStrom();
    if (istLeer(strom)) {
        ladeVorgabe();
        if (definition == 1) merkeVorgabe();
        return Anfang::Vorgabe;
    }
    return Anfang::Wert;
}

int KdoArgument::rahmen(AnwKommando& anw, int definition, const char* funktion) {
    const Anfang a = beginne(anw, definition, funktion);
    if (a != Anfang::Wert) return a == Anfang::Vorgabe ? 1 : 0;
    return rahmenAbToken(anw, definition, funktion);
}

int KdoArgument::rahmenAbToken(AnwKommando& anw, int definition, const char* funktion) {
    std::istream& strom = anw.liefereStrom();
    const std::streampos pos = position(strom);
    const Token t = liesToken(anw, strom);
    if (t == Gemeldet) return 0;
    if (t == Fehlgeschlagen) {
        strom.clear();
        meldeFalsch(anw, pos, funktion);
        return 0;
    }
    return abschluss(anw, definition, pos, funktion);
}

int KdoArgument::abschluss(AnwKommando& anw, int definition, std::streampos pos, const char* funktion) {
    std::istream& strom = anw.liefereStrom();
    ueberspringe(strom);
    if (folgtEnde(strom)) {
        if (definition == 1) merkeVorgabe();
        return 1;
    }
    if (!strom.good()) {
        meldeKlammer(anw, funktion);
    } else {
        meldeFalsch(anw, pos, funktion);
    }
    return 0;
}
