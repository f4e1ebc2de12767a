// Fuzz target: a format statement [01 start [01 stop]], run against objects
// A, B, A of different variable lists: both runs of A give the same text.
#include <cstring>
#include <sstream>
#include <string>

#include "FuzzUmgebung.h"
#include "reporting/FmtAnweisung.h"

namespace {

struct Werte : FmtObjekt {
    String namen_, name_;

    Werte(const char* namen, const char* name) : namen_(namen), name_(name) {}

    int ersetzeVariable(FmtVariable& v) override {
        std::ostringstream o;
        switch (v.liefereIndex(namen_)) {
        case 0: return v.ausgabe(String("hallo Welt"));
        case 1: return v.ausgabe(String("1")), v.ausgabe(String("2")), v.ausgabe(String("3"));
        case 2: return 1;  // a known variable without values
        case 3: return o << std::hex << std::uppercase << 0x1A2B, v.ausgabe(o);
        case 4: return v.ausgabe(String("a<b&\"c\\d"));
        case 5: return v.ausgabe(v.liefereArgument());
        default: return v.unbekannteVariable("Werte::ersetzeVariable", *this);
        }
    }
    String liefereName() const override { return name_; }
};

}  // namespace

int kivFuzzFmt(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    initUmgebung();
    static Werte a("Name\nBytes\nLeer\nChksum\nText\nArg\n ", "A");
    static Werte b("Chksum\nArg\nName\nText\nLeer\nBytes\nX\n ", "B");

    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    const std::size_t t1 = eingabe.find('\x01');
    const std::size_t t2 = t1 == std::string::npos ? t1 : eingabe.find('\x01', t1 + 1);
    const String text(eingabe.substr(0, t1).c_str());
    const String start(t1 == std::string::npos ? "" : eingabe.substr(t1 + 1, t2 - t1 - 1).c_str());
    const String stop(t2 == std::string::npos ? "" : eingabe.substr(t2 + 1).c_str());

    FmtAnweisung anweisung(text);
    std::ostringstream erste, zweite, dritte;
    const int ok1 = anweisung.ausgabe(erste, a, start, stop), ok2 = anweisung.ausgabe(zweite, b, start, stop),
              ok3 = anweisung.ausgabe(dritte, a, start, stop);
    if (ok1 != anweisung.liefereOk() || ok2 != ok1 || ok3 != ok1)
        verletzt("fmt", "the result of ausgabe changed");
    if (erste.str() != dritte.str())
        verletzt("fmt", "a second run against the same object wrote another text");
    // Each byte out comes from the statement or a value, a few times at most.
    if (erste.str().size() > 64 * (std::strlen(text.c_str()) + 16))
        verletzt("fmt", "output out of proportion");
    Fehler::holeStatus();
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzFmt)
