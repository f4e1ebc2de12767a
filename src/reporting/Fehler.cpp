#include "reporting/Fehler.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>

#include "foundation/Hex.h"
#include "foundation/Kollation.h"
#include "foundation/Meldung.h"
#include "reporting/FehlerListen.h"

String Fehler::fehlerPrefix("VOR-");
std::int32_t Fehler::anzahlF = 0, Fehler::anzahlE = 0, Fehler::anzahlW = 0, Fehler::anzahlI = 0,
             Fehler::anzahlS = 0;
std::int32_t Fehler::statusF = 0, Fehler::statusE = 0, Fehler::statusW = 0, Fehler::statusI = 0,
             Fehler::statusS = 0;
std::int32_t Fehler::anstehenderStatus = 0;
Fehler::AusgabeRoutine Fehler::fehlerAusgabeRoutine = nullptr;
Fehler::ZusatzZeile Fehler::zusatzZeile = nullptr;
std::int32_t Fehler::debugAusgabe = 0;
std::int32_t Fehler::einrueckung = 0, Fehler::eingerueckt = 0;
char Fehler::begrenzungGlobalLevel = 0;
std::int32_t Fehler::begrenzungGlobalArt = 0;

namespace {

// Foundation reports through its hook; this reporter takes the hook as soon
// as it is part of the program, before main and before any foundation code
// can report.
void alsFehler(const String& label, const String& funktion, const String& detail, char level) {
    Fehler(label, funktion, detail, level);
}
const bool melderInstalliert = (setzeMelder(&alsFehler), true);

const char* const kRegel = "+---------------------------------------------------";

// Detail of "FHL-INT-LEVEL": the letter, optionally a blank, its code in hex.
String levelDetail(char level, bool mitBlank) {
    std::string d(1, level);
    if (mitBlank) d += ' ';
    d += hex::text(static_cast<unsigned char>(level));
    return String(d);
}

// Whether a limit set at level `g` applies to a message of level `l`; the
// same table serves the global limit.
bool grenzeGilt(char l, char g) {
    switch (l) {
    case 'E': return g == 'E';
    case 'W': return g == 'E' || g == 'W';
    case 'I': return g == 'E' || g == 'I' || g == 'W';
    case 'S': return g == 'E' || g == 'I' || g == 'S' || g == 'W';
    default: return false;
    }
}

int ausgabeNoetigLevel(char l) {
    switch (l) {
    case 'D': return 0;
    case 'E':
    case 'W':
    case 'I':
    case 'S': return grenzeGilt(l, Fehler::begrenzungGlobalLevel) ? Fehler::begrenzungGlobalArt : 0;
    default:
        Fehler("FHL-INT-LEVEL", "Fehler::FehlerAusgabeBegrenzung::ausgabeNoetigLevel", levelDetail(l, false),
               'W');
        return 0;
    }
}

}  // namespace

// ------------------------------------------------------- per-label elements

void FehlerStatistik::increment(char l) {
    switch (l) {
    case 'D': break;
    case 'E': ++anzahlE; break;
    case 'W': ++anzahlW; break;
    case 'I': ++anzahlI; break;
    case 'S': ++anzahlS; break;
    default:
        // One colon in the function text, and F is unknown here: both intended.
        Fehler("FHL-INT-LEVEL", "FehlerStatistik:increment", levelDetail(l, true), 'W');
    }
}

void FehlerStatistik::anzeige(std::ostream& strom, const String& label) const {
    const std::pair<char, std::int32_t> zeilen[] = {
        {'E', anzahlE}, {'W', anzahlW}, {'I', anzahlI}, {'S', anzahlS}};
    for (auto [l, n] : zeilen) {
        if (n <= 0) continue;
        char puffer[16];
        std::snprintf(puffer, sizeof puffer, "%3d", n);
        strom << puffer << "  " << Fehler::fehlerPrefix << '-' << l << '-' << label << '\n';
    }
}

void FehlerAusgabeBegrenzung::setzeAusgabeBegrenzung(std::uint16_t n, char l, std::int32_t art) {
    anzahl = n;
    level = l;
    ausgabeArt = art;
    zaehler = 0;
    if (l != 'E' && l != 'I' && l != 'S' && l != 'W')
        Fehler("FHL-INT-LEVEL", "FehlerAusgabeBegrenzung::setzeAusgabeBegrenzung", levelDetail(l, true), 'W');
}

int FehlerAusgabeBegrenzung::decrement(char l) {
    if (l != 'E' && l != 'W' && l != 'I' && l != 'S') {
        Fehler("FHL-INT-LEVEL", "FehlerAusgabeBegrenzung::decrement", levelDetail(l, false), 'W');
        return 1;
    }
    if (!grenzeGilt(l, level)) return 1;
    ++zaehler;
    if (anzahl == 0) return 0;
    --anzahl;
    return 1;
}

bool FehlerLabelKleiner::operator()(const std::string& a, const std::string& b) const {
    return kollation::vergleiche(String(a), String(b)) < 0;
}

FehlerListen& FehlerListen::instanz() {
    // Created on first use and deliberately never destroyed: messages may
    // still arrive from other objects' destructors at process end.
    static FehlerListen* listen = new FehlerListen;
    return *listen;
}

// ------------------------------------------------------------------ Fehler

Fehler::Fehler(const String& label, const String& funktion, const String& detail, char level)
    : label_(label), funktion_(funktion), detail_(detail), level_(level) {
    melde();
}

Fehler::Fehler(const String& label, const String& funktion, std::ostringstream& textStrom, char level)
    : label_(label), funktion_(funktion), detail_(textStrom.str()), level_(level) {
    textStrom.str(std::string());
    melde();
}

void Fehler::melde() {
    int sichtbar = 0;
    std::int32_t* anzahl = nullptr;
    std::int32_t status = 0;
    switch (level_) {
    case 'E':
        anzahl = &anzahlE;
        status = statusE;
        break;
    case 'F':
        anzahl = &anzahlF;
        status = statusF;
        break;
    case 'I':
        anzahl = &anzahlI;
        status = statusI;
        break;
    case 'S':
        anzahl = &anzahlS;
        status = statusS;
        break;
    case 'W':
        anzahl = &anzahlW;
        status = statusW;
        break;
    case 'D': sichtbar = debugAusgabe == 1; break;
    default: break;
    }
    if (anzahl) {
        sichtbar = 1;
        ++*anzahl;
        if (status > anstehenderStatus) anstehenderStatus = status;
    }

    FehlerListen& listen = FehlerListen::instanz();
    listen.statistik[label_.str()].increment(level_);
    auto st = listen.status.find(label_.str());
    if (st != listen.status.end() && st->second > anstehenderStatus) anstehenderStatus = st->second;

    int art = 1;
    if (sichtbar) {
        art = ausgabeNoetigLevel(level_);
        if (art == 0) {
            auto b = listen.begrenzung.find(label_.str());
            if (b != listen.begrenzung.end() && b->second.decrement(level_) <= 0) art = b->second.ausgabeArt;
        }
    }

    if (!fehlerAusgabeRoutine) {
        std::cerr << "VOREX-fataler Fehler: Keine Fehlerausgaberoutine gesetzt!" << std::endl;
        std::exit(0);
    }
    fehlerAusgabeRoutine(*this, art);

    if (einrueckung > 0 && (level_ == 'E' || level_ == 'F' || level_ == 'I' || level_ == 'W'))
        eingerueckt = 1;
}

std::ostream& Fehler::ausgabe(std::ostream& strom) const {
    const std::string n =
        (einrueckung >= 1 && eingerueckt == 1) ? std::string(2 * static_cast<size_t>(einrueckung), ' ') : "";
    switch (level_) {
    case 'D':
        if (debugAusgabe == 1)
            strom << fehlerPrefix << "D-" << label_ << ' ' << detail_ << ' ' << funktion_ << std::endl;
        return strom;
    case 'S':
        strom << fehlerPrefix << "S-" << label_ << ' ' << detail_ << ' ';
        if (debugAusgabe == 1) strom << funktion_;
        strom << std::endl;
        return strom;
    case 'E':
    case 'F':
    case 'I':
    case 'W': break;
    default: return strom;
    }

    std::string box;
    if (!(einrueckung > 0 && eingerueckt)) box += n + kRegel + "\n";
    box += n + "| " + fehlerPrefix.str() + level_ + "-" + label_.str() + "\n";
    if (zusatzZeile) box += n + "|   " + zusatzZeile().str() + "\n";
    std::string text = detail_.str();
    bool ersetzt = false;
    if (text.find('\n', 1) != std::string::npos) {
        std::string neu;
        for (char c : text) {
            if (c == '\n')
                neu += "\n" + n + "|   ";
            else
                neu += c;
        }
        text.swap(neu);
        ersetzt = true;
    }
    if (ersetzt || !text.empty()) box += n + "|   " + text + " \n";
    if (debugAusgabe == 1) box += n + "|   " + funktion_.str() + "\n";
    box += n + kRegel + "\n";
    strom << box << std::flush;
    return strom;
}

void Fehler::init() {
    setzeMelder(&alsFehler);
    anzahlF = anzahlE = anzahlW = anzahlI = anzahlS = 0;
    statusF = statusE = statusW = statusI = statusS = 0;
    anstehenderStatus = 0;
    fehlerAusgabeRoutine = nullptr;
    zusatzZeile = nullptr;
    debugAusgabe = 0;
    einrueckung = eingerueckt = 0;
    begrenzungGlobalLevel = 0;
    begrenzungGlobalArt = 0;
}

int Fehler::holeStatus() {
    int s = anstehenderStatus;
    anstehenderStatus = 0;
    return s;
}

void Fehler::anzeigeStatistik() {
    const char* f = "Fehler::anzeigeStatistik";
    Fehler("FEHLSTAT", f, "  Fehlerstatistik:", 'S');
    Fehler("ANZFEHL-F", f, " " + String(anzahlF), 'S');
    Fehler("ANZFEHL-E", f, " " + String(anzahlE), 'S');
    Fehler("ANZFEHL-W", f, " " + String(anzahlW), 'S');
    Fehler("ANZFEHL-I", f, " " + String(anzahlI), 'S');
}

void Fehler::setzeStatus(const String& name, int status) {
    if (name.laenge() == 1) {
        switch (name[0]) {
        case 'E': statusE = status; return;
        case 'F': statusF = status; return;
        case 'I': statusI = status; return;
        case 'S': statusS = status; return;
        case 'W': statusW = status; return;
        default: break;
        }
    }
    auto& liste = FehlerListen::instanz().status;
    if (status != 0)
        liste[name.str()] = status;
    else
        liste.erase(name.str());
}

int Fehler::liefereLevelStatus(char level) {
    switch (level) {
    case 'E': return statusE;
    case 'F': return statusF;
    case 'I': return statusI;
    case 'S': return statusS;
    case 'W': return statusW;
    default: return 0;
    }
}

void Fehler::begrenzeAusgabe(const String& label, std::uint16_t anzahl, char level, int ausgabeArt) {
    FehlerListen::instanz().begrenzung[label.str()].setzeAusgabeBegrenzung(anzahl, level, ausgabeArt);
}

void Fehler::hebeBegrenzungAuf(const String& label) { FehlerListen::instanz().begrenzung.erase(label.str()); }

std::int64_t Fehler::liefereBegrenzungsZaehler(const String& label) {
    const auto& liste = FehlerListen::instanz().begrenzung;
    const auto it = liste.find(label.str());
    return it == liste.end() ? -1 : static_cast<std::int64_t>(it->second.zaehler);
}

void Fehler::anzeigeLabelStatistik(std::ostream& strom, const String& label) {
    auto& liste = FehlerListen::instanz().statistik;
    auto it = liste.find(label.str());
    if (it != liste.end()) it->second.anzeige(strom, label);
}
