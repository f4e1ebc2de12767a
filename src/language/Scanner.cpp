#include "language/Scanner.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "foundation/Abbruch.h"

namespace {

// Internal faults of the automaton can only come from a broken state table,
// never from input.
class NilZustand : public ScannerZustand {
public:
    void operator()(Scanner&) const override { brichAb(std::cout, "ERROR! The automaton state is nil!"); }
};
const NilZustand nilZustand;

}  // namespace

// ---------------------------------------------------------------- Scanner

Scanner::Scanner() : text_(64, 64), zustand_(&nilZustand), fehlerText_(64, 64) {
    zustandsStapel_.reserve(1024);
}

Scanner::~Scanner() = default;

void Scanner::oeffne(std::istream& strom, dataInteger zeile) {
    quelle_.oeffne(strom, zeile);
    zustand_ = &nilZustand;
    zustandsStapel_.clear();
    brauchtZeichen_ = 1;
    fehler_ = 0;
    fertig_ = 0;
    text_.leere();
    fehlerText_.leere();
    letztesToken_ = KdoToken::ENDE;
}

dataInteger Scanner::naechstesToken(String& wert, QuellPosition& pos) {
    fertig_ = 0;
    fehler_ = 0;
    start();
    while (!fertig_) {
        if (fehler_) {
            // The place where the scanner gave up, not where the token began.
            pos = quelle_.position();
            letztesToken_ = KdoToken::SCANFEHLER;
            return KdoToken::SCANFEHLER;
        }
        if (brauchtZeichen_) {
            zeichen_ = static_cast<unsigned char>(quelle_.naechstes());
            brauchtZeichen_ = 0;
        }
        (*zustand_)(*this);
    }
    if (fehler_) {
        pos = quelle_.position();
        letztesToken_ = KdoToken::SCANFEHLER;
        return KdoToken::SCANFEHLER;
    }
    wert = String(std::string_view(text_.c_str(), text_.laenge()));
    pos = position_;
    letztesToken_ = token_;
    return token_;
}

void Scanner::liefere(dataInteger tokenNummer, int verbrauche) {
    token_ = tokenNummer;
    brauchtZeichen_ = verbrauche ? 1 : 0;
    fertig_ = 1;
}

void Scanner::beginne() {
    text_.leere();
    position_ = quelle_.position();
}

void Scanner::beginneMit() {
    beginne();
    text_.haengeAn(static_cast<char>(zeichen_));
    brauchtZeichen_ = 1;
}

void Scanner::beginneOhne() {
    beginne();
    brauchtZeichen_ = 1;
}

void Scanner::haengeAn() {
    text_.haengeAn(static_cast<char>(zeichen_));
    brauchtZeichen_ = 1;
}

void Scanner::ueberlies() { brauchtZeichen_ = 1; }

void Scanner::lieferZeichen() {
    beginneMit();
    liefere(zeichen_, 1);
}

bool Scanner::istLeerVon(int c) const { return c == ' ' || c == '\t' || c == '\n'; }

void Scanner::rufe(const ScannerZustand& naechster) {
    zustandsStapel_.push_back(zustand_);
    zustand_ = &naechster;
}

void Scanner::kehreZurueck() {
    if (zustandsStapel_.empty()) brichAb(std::cerr, "Scanner::Stack::pop(): fatal error #1");
    zustand_ = zustandsStapel_.back();
    zustandsStapel_.pop_back();
}

void Scanner::unerwartetesZeichen() {
    fehler_ = 1;
    StringPuffer zeile;
    StringPuffer marke;
    QuellPosition pos = quelle_.position();
    quelle_.zeilenText(pos, zeile);
    quelle_.marke(pos, marke);
    std::cout << "ErrorUnexpectedChar\n" << zeile << '\n' << marke << std::endl;
}

void Scanner::setzeFehler(const char* meldung) {
    fehler_ = 1;
    fehlerText_.setze(meldung);
}

// ------------------------------------------------------------- KdoScanner

class KdoScanner::Zustand : public ScannerZustand {
public:
    using Funktion = void (KdoScanner::*)();
    constexpr explicit Zustand(Funktion f) : funktion(f) {}
    void operator()(Scanner& scanner) const override { (static_cast<KdoScanner&>(scanner).*funktion)(); }

private:
    Funktion funktion;
};

const KdoScanner::Zustand KdoScanner::start_(&KdoScanner::zustandStart);
const KdoScanner::Zustand KdoScanner::rohtext_(&KdoScanner::zustandRohtext);
const KdoScanner::Zustand KdoScanner::rohtextFortsetzung_(&KdoScanner::zustandRohtextFortsetzung);
const KdoScanner::Zustand KdoScanner::schraegstrich_(&KdoScanner::zustandSchraegstrich);
const KdoScanner::Zustand KdoScanner::kommentar_(&KdoScanner::zustandKommentar);
const KdoScanner::Zustand KdoScanner::fortsetzung_(&KdoScanner::zustandFortsetzung);
const KdoScanner::Zustand KdoScanner::zeichenkette_(&KdoScanner::zustandZeichenkette);
const KdoScanner::Zustand KdoScanner::zeichenketteFortsetzung_(&KdoScanner::zustandZeichenketteFortsetzung);
const KdoScanner::Zustand KdoScanner::bezeichner_(&KdoScanner::zustandBezeichner);
const KdoScanner::Zustand KdoScanner::zahl_(&KdoScanner::zustandZahl);
const KdoScanner::Zustand KdoScanner::nachkomma_(&KdoScanner::zustandNachkomma);

namespace {

struct Schluesselwort {
    const char* wort;
    dataInteger token;
};

// The keywords as users write them; the scanner compares upper case.
constexpr std::array<KdoScanner::Schreibweise, 17> schreibweisen{{
    {"anzeigeKdoObjekte", KdoToken::ANZEIGEKDOOBJEKTE},
    {"ausfuehre", KdoToken::AUSFUEHRE},
    {"ausfuehreTrans", KdoToken::AUSFUEHRETRANS},
    {"DAT", KdoToken::DAT},
    {"SYSOSP", KdoToken::SYSOSP},
    {"return", KdoToken::RETURN},
    {"returnMain", KdoToken::RETURNMAIN},
    {"holeParameter", KdoToken::HOLEPARAMETER},
    {"liefereName", KdoToken::LIEFERENAME},
    {"exit", KdoToken::EXIT},
    {"kdoOTypCheck", KdoToken::KDOOTYPCHECK},
    {"imFehlerfall", KdoToken::IMFEHLERFALL},
    {"anzeigeImFehlerfall", KdoToken::ANZEIGEIMFEHLERFALL},
    {"umsetze", KdoToken::UMSETZE},
    {"vater", KdoToken::VATER},
    {"sohn", KdoToken::SOHN},
    {"naechster", KdoToken::NAECHSTER},
}};

// Sorted by byte value once, then searched by halving.
const std::array<Schluesselwort, 17>& schluesselwoerter() {
    static const std::array<std::string, 17> gross = [] {
        std::array<std::string, 17> g;
        for (std::size_t i = 0; i < g.size(); ++i) {
            g[i] = schreibweisen[i].wort;
            for (char& c : g[i])
                if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        }
        return g;
    }();
    static const std::array<Schluesselwort, 17> tabelle = [] {
        std::array<Schluesselwort, 17> t;
        for (std::size_t i = 0; i < t.size(); ++i) t[i] = {gross[i].c_str(), schreibweisen[i].token};
        std::sort(t.begin(), t.end(), [](const Schluesselwort& a, const Schluesselwort& b) {
            return std::strcmp(a.wort, b.wort) < 0;
        });
        return t;
    }();
    return tabelle;
}

}  // namespace

dataInteger KdoScanner::sucheSchluesselwort(const char* wort) {
    std::string gross(wort);
    for (char& c : gross)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    const auto& t = schluesselwoerter();
    std::size_t unten = 0, oben = t.size();
    while (unten < oben) {
        std::size_t mitte = (unten + oben) / 2;
        int v = std::strcmp(gross.c_str(), t[mitte].wort);
        if (v == 0) return t[mitte].token;
        if (v < 0)
            oben = mitte;
        else
            unten = mitte + 1;
    }
    return KdoToken::NAME;
}

const KdoScanner::Schreibweise* KdoScanner::schluesselwortSchreibweisen(std::size_t& anzahl) {
    anzahl = schreibweisen.size();
    return schreibweisen.data();
}

void KdoScanner::fehlerStringEnde() {
    setzeFehler("Das Ende des Doppelt-Hochkomma-Strings wurde nicht gefunden.");
}

bool KdoScanner::istLeerVon(int c) const {
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r' || c == 26;
}

void KdoScanner::start() {
    doppelteHochkommas_ = 0;
    hochkommas_ = 0;
    geheZu(start_);
}

void KdoScanner::zustandStart() {
    if (KdoLaufzeit::aktuelle().scannerModus == ScannerModus::Text)
        zustandStartRohtext();
    else
        zustandStartNormal();
}

// Raw argument text: what the parser sees of a user command's arguments.
void KdoScanner::zustandStartRohtext() {
    using namespace KdoToken;
    // Only a line without its final newline gets here; the raw text would
    // otherwise swallow the end of input forever.
    if (quellEnde()) {
        beginne();
        liefere(ENDE, 0);
        return;
    }
    switch (zeichen_) {
    case '\n':
        beginne();
        liefere(ZEILENENDE, 1);
        KdoLaufzeit::aktuelle().scannerModus = ScannerModus::Normal;
        return;
    case '(': lieferZeichen(); return;
    case ')': KdoLaufzeit::aktuelle().scannerModus = ScannerModus::Normal; [[fallthrough]];
    case ',':
        // An empty place between separators still is an argument.
        if (liefereLetztesToken() == ',' || liefereLetztesToken() == '(') {
            beginne();
            liefere(TEXT, 0);
        } else {
            lieferZeichen();
        }
        return;
    case '"':
        doppelteHochkommas_ = 1;
        beginneMit();
        geheZu(rohtext_);
        return;
    case '\'':
        hochkommas_ = 1;
        beginneMit();
        geheZu(rohtext_);
        return;
    default:
        // Leading blanks belong to the text.
        beginneMit();
        geheZu(rohtext_);
        return;
    }
}

void KdoScanner::zustandRohtext() {
    using namespace KdoToken;
    if (quellEnde()) {
        liefere(TEXT, 0);
        return;
    }
    switch (zeichen_) {
    case '\n': liefere(TEXT, 0); return;
    case '"':
        ++doppelteHochkommas_;
        haengeAn();
        return;
    case '\'':
        ++hochkommas_;
        haengeAn();
        return;
    case ')':
    case ',':
        // Parentheses do not nest: the first one outside quotes ends the text.
        if (doppelteHochkommas_ % 2 == 0 && hochkommas_ % 2 == 0)
            liefere(TEXT, 0);
        else
            haengeAn();
        return;
    case '\\':
        ueberlies();
        geheZu(rohtextFortsetzung_);
        return;
    default: haengeAn(); return;
    }
}

void KdoScanner::zustandRohtextFortsetzung() {
    if (zeichen_ == '\n')
        ueberlies();
    else
        text_.haengeAn('\\');
    geheZu(rohtext_);
}

void KdoScanner::zustandStartNormal() {
    using namespace KdoToken;
    // A byte 255 in the input ends it as well; intended, the source can not
    // tell it from the end of input in this state.
    if (zeichen_ == 255) {
        beginne();
        liefere(ENDE, 0);
        return;
    }
    switch (zeichen_) {
    case '!':
        ueberlies();
        geheZu(kommentar_);
        return;
    case '/':
        beginneMit();
        geheZu(schraegstrich_);
        return;
    case '\n':
        beginne();
        liefere(ZEILENENDE, 1);
        return;
    default: break;
    }
    if (istLeer()) {
        ueberlies();
        return;
    }
    switch (zeichen_) {
    case '-':
        beginneMit();
        liefere(MINUS, 1);
        return;
    case '+':
        beginneMit();
        liefere(PLUS, 1);
        return;
    case '>': lieferZeichen(); return;
    case '\\':
        ueberlies();
        rufe(fortsetzung_);
        return;
    case '"':
        beginneOhne();
        geheZu(zeichenkette_);
        return;
    default: break;
    }
    if (istZiffer()) {
        beginneMit();
        geheZu(KdoLaufzeit::aktuelle().scannerModus == ScannerModus::Zahl ? zahl_ : bezeichner_);
    } else if (istBuchstabe() || zeichen_ == '_') {
        beginneMit();
        geheZu(bezeichner_);
    } else {
        // A NUL byte thus becomes token 0, the end of input; intended.
        lieferZeichen();
    }
}

void KdoScanner::zustandSchraegstrich() {
    if (zeichen_ == '/') {
        ueberlies();
        geheZu(kommentar_);
    } else {
        liefere('/', 0);
    }
}

void KdoScanner::zustandKommentar() {
    // The newline stays current: it still ends the line.
    if (zeichen_ == '\n' || quellEnde())
        geheZu(start_);
    else
        ueberlies();
}

// A backslash-newline continues a token or a line; any other backslash stays.
void KdoScanner::zustandFortsetzung() {
    if (zeichen_ == '\n')
        ueberlies();
    else
        text_.haengeAn('\\');
    kehreZurueck();
}

void KdoScanner::zustandZeichenkette() {
    using namespace KdoToken;
    if (quellEnde()) {
        fehlerStringEnde();
        return;
    }
    switch (zeichen_) {
    case '\n':
    case '\r': setzeFehler("Das Zeichen '\\n' wurde im String gefunden."); return;
    case '"': liefere(TEXT, 1); return;
    case '\\':
        ueberlies();
        geheZu(zeichenketteFortsetzung_);
        return;
    default: haengeAn(); return;
    }
}

// A backslash does not protect a double quote; intended, strings can not
// hold one.
void KdoScanner::zustandZeichenketteFortsetzung() {
    if (zeichen_ == '\n' || zeichen_ == '\r')
        ueberlies();
    else
        text_.haengeAn('\\');
    geheZu(zeichenkette_);
}

void KdoScanner::zustandBezeichner() {
    if (istBuchstabe() || istZiffer() || zeichen_ == '_') {
        haengeAn();
    } else if (zeichen_ == '\\') {
        ueberlies();
        rufe(fortsetzung_);
    } else {
        liefere(sucheSchluesselwort(text_.c_str()), 0);
    }
}

void KdoScanner::zustandZahl() {
    if (istZiffer()) {
        haengeAn();
    } else if (zeichen_ == '.') {
        haengeAn();
        geheZu(nachkomma_);
    } else if (zeichen_ == '\\') {
        ueberlies();
        rufe(fortsetzung_);
    } else {
        liefere(KdoToken::ZAHL, 0);
    }
}

void KdoScanner::zustandNachkomma() {
    if (istZiffer()) {
        haengeAn();
    } else if (zeichen_ == '\\') {
        ueberlies();
        rufe(fortsetzung_);
    } else {
        liefere(KdoToken::REALZAHL, 0);
    }
}
