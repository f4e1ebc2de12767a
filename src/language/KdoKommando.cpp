// KdoKommando, AnwKommando, Kommando::interpretiere and the table of type
// words.
#include "language/KdoKommando.h"

#include <array>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string>
#include <string_view>

#include "foundation/Abbruch.h"
#include "foundation/Tabulator.h"
#include "language/KdoArgumente.h"
#include "language/KdoGlobal.h"
#include "language/KdoListe.h"
#include "reporting/Fehler.h"

// ---------------------------------------------------------------------------
// The type words of a signature

namespace {
using Erzeuger = std::unique_ptr<KdoArgument> (*)(const String& name, const String& klammer,
                                                  KdoKommando* kommando);

template <class T>
std::unique_ptr<KdoArgument> mitName(const String& name, const String&, KdoKommando*) {
    return std::make_unique<T>(name);
}
template <class T>
std::unique_ptr<KdoArgument> mitKommando(const String& name, const String&, KdoKommando* kommando) {
    return std::make_unique<T>(name, kommando);
}
template <class T>
std::unique_ptr<KdoArgument> mitKlammer(const String& name, const String& klammer, KdoKommando*) {
    return std::make_unique<T>(name, klammer);
}

struct TypWort {
    KdoArgTyp typ;
    const char* wort;
    bool klammer;  // compared up to the first "{", the brace text goes along
    Erzeuger erzeuge;
};

// Compared in this order; the first match wins.
constexpr std::array<TypWort, static_cast<std::size_t>(KdoArgTyp::Anzahl)> typWorte{{
    {KdoArgTyp::Integer, "Integer", false, mitName<KdoArgumentInteger>},
    {KdoArgTyp::BoolInteger, "BoolInteger", false, mitName<KdoArgumentBoolInteger>},
    {KdoArgTyp::IntegerHex, "IntegerHex", false, mitName<KdoArgumentIntegerHex>},
    {KdoArgTyp::BoolIntegerHex, "BoolIntegerHex", false, mitName<KdoArgumentBoolIntegerHex>},
    {KdoArgTyp::Phys, "Phys", false, mitName<KdoArgumentPhys>},
    {KdoArgTyp::Bool, "Bool", false, mitName<KdoArgumentBool>},
    {KdoArgTyp::Wort, "Wort", false, mitName<KdoArgumentWort>},
    {KdoArgTyp::BoolWort, "BoolWort", false, mitName<KdoArgumentBoolWort>},
    {KdoArgTyp::NameInListe, "NameInListe", false, mitKommando<KdoArgumentNameInListe>},
    {KdoArgTyp::BoolNameInListe, "BoolNameInListe", false, mitKommando<KdoArgumentBoolNameInListe>},
    {KdoArgTyp::LString, "LString", false, mitName<KdoArgumentLString>},
    {KdoArgTyp::String, "String", false, mitName<KdoArgumentString>},
    {KdoArgTyp::NamenInListe, "NamenInListe", false, mitKommando<KdoArgumentNamenInListe>},
    {KdoArgTyp::BoolNamenInListe, "BoolNamenInListe", false, mitKommando<KdoArgumentBoolNamenInListe>},
    {KdoArgTyp::DateiName, "DateiName", false, mitName<KdoArgumentDateiName>},
    {KdoArgTyp::DateiPfad, "DateiPfad", false, mitName<KdoArgumentDateiPfad>},
    {KdoArgTyp::RegExpr, "RegExpr", false, mitName<KdoArgumentRegExpr>},
    {KdoArgTyp::Enum, "Enum", true, mitKlammer<KdoArgumentEnum>},
    {KdoArgTyp::WPListe, "WPListe", false, mitName<KdoArgumentWPListe>},
    {KdoArgTyp::WPStrListe, "WPStrListe", false, mitName<KdoArgumentWPStrListe>},
    {KdoArgTyp::ParameterListe, "ParameterListe", false, mitName<KdoArgumentParameterListe>},
    {KdoArgTyp::KdoObjekt, "KdoObjekt", true, mitKlammer<KdoArgumentKdoObjekt>},
    {KdoArgTyp::BoolKdoObjekt, "BoolKdoObjekt", true, mitKlammer<KdoArgumentBoolKdoObjekt>},
}};

constexpr bool jederTypEinmal() {
    for (std::size_t t = 0; t < typWorte.size(); ++t) {
        int n = 0;
        for (const TypWort& w : typWorte) n += static_cast<std::size_t>(w.typ) == t ? 1 : 0;
        if (n != 1) return false;
    }
    return true;
}
static_assert(jederTypEinmal(), "every argument type needs exactly one type word");
}  // namespace

const char* kdoTypWort(KdoArgTyp typ) {
    for (const TypWort& w : typWorte)
        if (w.typ == typ) return w.wort;
    return "";
}

std::unique_ptr<KdoArgument> erzeugeKdoArgument(const String& typWort, const String& name,
                                                KdoKommando* kommando) {
    const std::string& wort = typWort.str();
    const auto auf = wort.find('{');
    const std::string kopf = wort.substr(0, auf);
    String klammer;
    if (auf != std::string::npos) {
        const auto zu = wort.find('}');
        klammer = String(
            wort.substr(auf + 1, zu == std::string::npos || zu < auf ? std::string::npos : zu - auf - 1));
    }
    for (const TypWort& t : typWorte) {
        if (t.klammer ? kopf == t.wort : wort == t.wort) return t.erzeuge(name, klammer, kommando);
    }
    return nullptr;
}

// ---------------------------------------------------------------------------
// AnwKommando

AnwKommando::AnwKommando(const String& anwText)
    : text_(anwText), strom_(std::make_unique<std::istringstream>(anwText.str())) {
    KdoArgument::ueberspringe(*strom_);
    if (strom_->peek() == '?') {
        strom_->get();
        kommandoName_ = "?";
    } else {
        kommandoName_.liesWort(*strom_);
    }
    KdoArgument::ueberspringe(*strom_);
    const int c = strom_->peek();
    if (strom_->good() && c != '(' && c != '?') {
        ok_ = 0;
        Fehler("CMD-WRONGCMD", "AnwKommando::AnwKommando", text_, 'E');
    }
}

int AnwKommando::pruefeOk() {
    if (!ok_) Fehler("CMD-WRONGCMD", "AnwKommando::pruefeOk", text_, 'E');
    return ok_;
}

// ---------------------------------------------------------------------------
// KdoKommando

namespace {
// A word of the signature: white space first, then at most `max` bytes; the
// rest of a longer word stays for the next read.
std::string liesSignaturWort(std::istream& strom, std::size_t max) {
    KdoArgument::ueberspringe(strom);
    std::string wort;
    while (wort.size() < max) {
        const int c = strom.peek();
        if (c == EOF || c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r') break;
        wort += static_cast<char>(strom.get());
    }
    return wort;
}
}  // namespace

std::uint16_t KdoKommando::zaehleArgumente(const char* signatur) {
    std::istringstream strom(signatur ? signatur : "");
    std::uint16_t anzahl = 0;
    while (anzahl < UINT16_MAX && !liesSignaturWort(strom, 254).empty()) {
        liesSignaturWort(strom, 31);
        ++anzahl;
    }
    return anzahl;
}

KdoKommando::KdoKommando(const String& name, const char* signatur, KdoHandler handler)
    : name_(name),
      anzahlArgumente_(zaehleArgumente(signatur)),
      argumente_(anzahlArgumente_),
      handler_(handler) {
    std::istringstream strom(signatur ? signatur : "");
    std::uint16_t gebaut = 0;
    while (strom.good() && gebaut < anzahlArgumente_) {
        std::string typ = liesSignaturWort(strom, 254);
        const std::string argName = liesSignaturWort(strom, 31);
        if (argName.empty()) typ = "falsche Anzahl Worte";
        auto argument = erzeugeKdoArgument(String(typ), String(argName), this);
        if (!argument) {
            ok_ = 0;
            Fehler("CMD-INTERNAL-WRONGARG", "KdoKommando::KdoKommando", String(typ), 'E');
        } else {
            argumente_[gebaut] = std::move(argument);
        }
        ++gebaut;
    }
}

KdoKommando::~KdoKommando() = default;

int KdoKommando::pruefeOk() const {
    if (!ok_) Fehler("CMD-INTERNAL-WRONGCMD", "KdoKommando::pruefeOk", name_, 'E');
    return ok_;
}

KdoArgument* KdoKommando::argument(std::uint16_t index) const {
    return index < argumente_.size() ? argumente_[index].get() : nullptr;
}

KdoArgument& KdoKommando::operator[](std::uint16_t index) {
    static KdoArgumentRegExpr dummy{String()};
    if (!pruefeOk()) return dummy;
    if (index >= anzahlArgumente_) {
        Fehler("CMD-INDEXCEEDED", "KdoKommando::operator[ ]", String(std::to_string(index)), 'W');
        if (anzahlArgumente_ == 0) return dummy;
        index = static_cast<std::uint16_t>(anzahlArgumente_ - 1);
    }
    KdoArgument* a = argument(index);
    return a ? *a : dummy;
}

void KdoKommando::anzeige(std::ostream& strom) const {
    if (!dokPosition) zusicherungVerletzt("dokPosition != NULL");
    Tabulator& tab = *dokPosition;
    std::ostringstream text;
    tab.beginneZeile(text);
    text << name_;
    tab.zeilenEnde(text);
    for (const auto& a : argumente_) {
        if (!a) continue;
        text << tab;
        a->ausgabe(text);
        text << tab << a->liefereName() << tab;
        a->zeigeVorgabe(text);
        tab.zeilenEnde(text);
    }
    strom << text.str();
}

int KdoKommando::ausfuehre(KdoObjekt& objekt) {
    if (liste_) liste_->setzeAktuellesObjekt(&objekt);
    if (!handler_) return 0;
    // A command that runs out of memory fails alone: the program goes on
    // with its images and ends with its statistics as after any failure.
    try {
        return handler_(objekt, *this);
    } catch (const std::bad_alloc&) {
        Fehler::zusatzZeile = nullptr;
        Fehler("CMD-NOMEMORY", "KdoKommando::ausfuehre ",
               name_ + ": zu wenig Speicher, der Befehl ist abgebrochen", 'E');
        return 0;
    }
}

KdoObjekt* KdoKommando::liefereAktuellesObjekt() const {
    return liste_ ? liste_->liefereAktuellesObjekt() : nullptr;
}

// ---------------------------------------------------------------------------
// Kommando::interpretiere

int Kommando::interpretiere(KdoKommando& kommando, AnwKommando& anw, int definition) {
    const char* funktion = "Kommando::interpretiere ";
    if (!kommando.pruefeOk() || !anw.pruefeOk()) return 0;
    std::istream& strom = anw.liefereStrom();
    const int c = strom.peek();
    if (c == '?') {
        // Help instead of a run: the handler must not see this call.
        kommando.anzeige(std::cout);
        return 0;
    }
    if (c != '(') {
        Fehler("CMD-ARGPARENTHESIS", funktion, anw.liefereText(), 'E');
        return 0;
    }
    const std::uint16_t anzahl = kommando.liefereAnzahlArgumente();
    if (anzahl > 0) {
        for (std::uint16_t i = 0; i < anzahl; ++i) {
            KdoArgument* argument = kommando.argument(i);
            if (!argument) {
                // Too few pairs in the signature: the command is unusable.
                Fehler("CMD-INTERNAL-WRONGCMD", "KdoKommando::pruefeOk", kommando.liefereName(), 'E');
                return 0;
            }
            if (!argument->interpretiere(anw, definition)) return 0;
        }
        if (strom.get() != ')') {
            Fehler("CMD-TOOMANYARG", funktion, anw.liefereText(), 'E');
            return 0;
        }
    } else {
        strom.get();
        KdoArgument::ueberspringe(strom);
        if (strom.get() != ')') {
            Fehler("CMD-TOOMANYARG", funktion, anw.liefereText(), 'E');
            return 0;
        }
    }
    KdoArgument::ueberspringe(strom);
    if (strom.peek() == EOF) return 1;
    const int ende = strom.get();
    if (ende == ';') return 1;
    Fehler("CMD-WRONGENDING", funktion, anw.liefereText(), 'E');
    return 0;
}
