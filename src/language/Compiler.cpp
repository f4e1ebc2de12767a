// The Compiler's run of lines and procedures, its definitions and the error
// control. The help texts and displays are in CompilerHilfe.cpp; the
// translation statements are handed to the installed Uebersetzer.
#include "language/Compiler.h"

#include <climits>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "language/KdoKommando.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

String aktuelleZeile;

PromptEingabe* Compiler::promptEingabe = nullptr;

namespace {

// `wort` is a fixed buffer of this size, NUL included, in the procedures'
// original form; longer words are cut.
constexpr int WORT_GROESSE = 1024;

KdoObjektBasis* aktuellesObjekt() { return kdoBaum() ? kdoBaum()->liefereAktuelles() : nullptr; }

String typVon(const KdoObjektBasis* objekt) { return objekt ? objekt->liefereKdoOTyp() : String(); }
String nameVon(const KdoObjektBasis* objekt) { return objekt ? objekt->liefereName() : String(); }

// Replaces every occurrence of `alt`, left to right; an inserted text is not
// searched again, so a value that holds its own key can not loop.
void ersetzeAlle(std::string& text, const std::string& alt, const std::string& neu) {
    if (alt.empty()) return;
    std::size_t pos = text.find(alt);
    if (pos == std::string::npos) return;
    std::string ergebnis;
    ergebnis.reserve(text.size());
    std::size_t von = 0;
    while (pos != std::string::npos) {
        ergebnis.append(text, von, pos - von);
        ergebnis += neu;
        von = pos + alt.size();
        pos = text.find(alt, von);
    }
    ergebnis.append(text, von, std::string::npos);
    text.swap(ergebnis);
}

// Reads one physical line of at most MAX_ZEILENLAENGE bytes into `text`.
// Returns true if a line end was consumed; a longer line leaves its rest in
// the stream for the next read.
bool liesPhysischeZeile(std::istream& strom, std::string& text) {
    using Traits = std::char_traits<char>;
    text.clear();
    while (static_cast<int>(text.size()) < Compiler::MAX_ZEILENLAENGE) {
        const Traits::int_type c = strom.get();
        if (Traits::eq_int_type(c, Traits::eof())) return false;
        if (c == '\n') return true;
        text += Traits::to_char_type(c);
    }
    // A line end right behind the last byte still belongs to this line.
    if (strom.peek() == '\n') {
        strom.get();
        return true;
    }
    return false;
}

// Whether a physical line asks for a continuation. Without a line end (the
// last line of a file, or a line cut at the limit) the test looks at the
// next-to-last byte instead of the last one: intended, procedures rely on
// the old reading.
bool verlangtFortsetzung(const std::string& text, bool zeilenEnde) {
    const std::size_t n = text.size();
    if (zeilenEnde) return n >= 1 && text[n - 1] == '\\';
    return n >= 2 && text[n - 2] == '\\';
}

dataInteger alsZahl(const String& text) {
    const long long wert = std::strtoll(text.c_str(), nullptr, 10);
    if (wert > INT32_MAX) return INT32_MAX;
    if (wert < INT32_MIN) return INT32_MIN;
    return static_cast<dataInteger>(wert);
}

String getrimmt(const String& text) {
    String t(text);
    t.trimme();
    return t;
}

}  // namespace

// ---------------------------------------------------------------------------
// Construction and definitions

Compiler::Compiler(DynArray<String>* p, int anzahl)
    : definitionen_(1), neueParameter_(std::make_unique<DynArray<String>>()) {
    if (!p || anzahl < 0) anzahl = 0;
    for (int i = 0; i < anzahl; ++i) parameter_[i] = (*p)[i];
    for (int i = anzahl; i <= 9; ++i) parameter_[i] = String();
    anzahlParameter_ = anzahl < 11 ? 10 : anzahl;

    lz().compilerStatus = KdoStatus::Kein;
    lz().funktionswertStatus = KdoStatus::Kein;
    lz().laufStatus = LaufStatus::Normal;

    // The same path as the statement `pN=holeParameter(N)`.
    for (dataInteger i = 0; i < anzahlParameter_; ++i) {
        wort_ = String("p") + String(i);
        zahl_ = i;
        insertParam();
    }
}

Compiler::~Compiler() = default;

int Compiler::definiere(const String& wert) {
    auto definition = std::make_unique<KdoDefinition>(String("'") + wort_ + "'", wert);
    if (!definitionen_.anfuegeElement(definition.get(), ListenSuche::STILL)) {
        Fehler("CMD-PARAM-NUM", "Compiler::insertParam", aktuelleZeile, 'W');
        return 0;
    }
    definition.release();  // the list owns it now
    return 1;
}

const String* Compiler::liefereDefinition(const String& schluessel) const {
    const auto* d = static_cast<const KdoDefinition*>(definitionen_.sucheElementF(
        schluessel, ListenSuche::JEDE_AUSWAHL, ListenSuche::STILL, ListenSuche::EXAKT));
    return d ? &d->wert() : nullptr;
}

// anweisung -> NAME "=" HOLEPARAMETER "(" ZAHL ")" ZEILENENDE
void Compiler::insertParam() {
    String wert;
    if (zahl_ >= 0 && zahl_ < anzahlParameter_) {
        wert = parameter_[zahl_];
    } else {
        Fehler("CMD-PARAM-NUM", "Compiler::insertParam", aktuelleZeile, 'E');
        std::cerr << "Zu grosser Wert: " << zahl_ << " Kein Parameter verfuegbar" << std::endl;
        wert = "?XX?";
    }
    definiere(wert);
    modusZahl();
}

// anweisung -> NAME "=" LIEFERENAME "(" ")" ZEILENENDE
void Compiler::setzeName() {
    const String name = nameVon(aktuellesObjekt());
    if (definiere(name)) Fehler("CMD-NAME-ASS", "Compiler::setzeName", name, 'S');
    modusZahl();
}

String Compiler::ersetzeDefinitionen(const String& zeile) const {
    static const std::string schutz = "\\^'";
    std::vector<std::string> teile;
    const std::string& text = zeile.str();
    std::size_t von = 0;
    for (std::size_t pos = text.find(schutz); pos != std::string::npos; pos = text.find(schutz, von)) {
        teile.emplace_back(text, von, pos - von);
        von = pos + schutz.size();
    }
    teile.emplace_back(text, von, std::string::npos);

    // Definitions in the order they were made.
    ListenIterator it(static_cast<const Liste&>(definitionen_));
    while (ListenElement* e = it.naechstes()) {
        const auto* d = static_cast<const KdoDefinition*>(e);
        const std::string schluessel = d->liefereName().str();
        for (std::string& teil : teile) ersetzeAlle(teil, schluessel, d->wert().str());
    }

    std::string ergebnis;
    ergebnis.reserve(text.size());
    for (std::size_t i = 0; i < teile.size(); ++i) {
        if (i > 0) ergebnis += '\'';
        ergebnis += teile[i];
    }
    return String(ergebnis);
}

// ---------------------------------------------------------------------------
// Running lines and procedures

KdoStatus Compiler::ausfuehreBatch(const String& dateiName, DynArray<String>* p, int anzahl) {
    static const char* const funktion = "Compiler::ausfuehreBatch";
    // Every nested procedure runs on the C++ stack; a procedure that calls
    // itself must end with a message instead of a crash.
    int& tiefe = lz().prozedurTiefe;
    if (tiefe >= MAX_SCHACHTELUNG) {
        Fehler("CMD-KDOOBJ-BATCH-TOODEEP", funktion, dateiName, 'E');
        return lz().compilerStatus;
    }
    struct Ebene {
        int& tiefe;
        explicit Ebene(int& t) : tiefe(t) { ++tiefe; }
        ~Ebene() { --tiefe; }
    } ebene(tiefe);

    lz().compilerStatus = KdoStatus::Kein;
    lz().laufStatus = LaufStatus::Normal;
    Compiler c(p, anzahl);

    const bool mitDatei = !dateiName.istLeer();
    std::ifstream datei;
    std::istream* strom = promptEingabe ? &promptEingabe->strom() : &std::cin;
    bool geoeffnet = false;
    if (mitDatei) {
        datei.open(dateiName.c_str(), std::ios::in | std::ios::binary);
        geoeffnet = datei.is_open();
        if (!geoeffnet)
            Fehler("CMD-KDOOBJ-BATCH-NOTEX", funktion, dateiName, 'W');
        else
            Fehler("CMD-KDOOBJ-BATCH-OPENED", funktion, dateiName, 'S');
        strom = &datei;
    }

    dataInteger zaehler = 0;
    std::string physisch;
    while (strom->good() && lz().compilerStatus == KdoStatus::Kein) {
        if (zaehler < INT32_MAX) ++zaehler;
        std::string zeile;
        String echo;
        if (mitDatei) {
            const KdoObjektBasis* o = aktuellesObjekt();
            echo = String(zaehler) + ": " + "<" + typVon(o) + ">" + nameVon(o) + "> " + " ";
        }
        const char* praefix = "";
        bool weiter = false;
        do {
            if (!mitDatei) {
                const KdoObjektBasis* o = aktuellesObjekt();
                if (promptEingabe)
                    promptEingabe->zeigePrompt(
                        (String(praefix) + "<" + typVon(o) + ">" + nameVon(o) + "> ").str());
                else
                    std::cout << praefix << '<' << typVon(o) << '>' << nameVon(o) << "> " << std::flush;
            }
            praefix = "_";
            const bool zeilenEnde = liesPhysischeZeile(*strom, physisch);
            // A NUL ends the text of its line, but the line end stays, so
            // that the damage stays in this line and the next starts clean.
            if (const std::size_t nul = physisch.find('\0'); nul != std::string::npos) physisch.resize(nul);
            zeile += physisch;
            zeile += '\n';
            weiter = verlangtFortsetzung(physisch, zeilenEnde);
        } while (weiter);
        ersetzeAlle(zeile, "\\\n", "");

        aktuelleZeile = c.ersetzeDefinitionen(String(zeile));
        if (mitDatei) Fehler("CMD", funktion, echo + aktuelleZeile, 'S');

        std::istringstream eingabe(aktuelleZeile.str());
        c.compileStream(dateiName, eingabe, zaehler);

        // At the prompt there is nothing to return from.
        if (!mitDatei &&
            (lz().compilerStatus == KdoStatus::Return || lz().compilerStatus == KdoStatus::ReturnMain))
            lz().compilerStatus = KdoStatus::Kein;
    }
    // `return` ends this procedure only; `returnMain` and `exit` go on up.
    if (lz().compilerStatus == KdoStatus::Return) lz().compilerStatus = KdoStatus::Kein;

    if (geoeffnet) {
        Fehler("CMD-KDOOBJ-BATCH-CLOSED", funktion, dateiName, 'S');
        datei.close();
    }
    return lz().compilerStatus;
}

KdoStatus Compiler::ausfuehreZeile(const String& zeile) {
    lz().compilerStatus = KdoStatus::Kein;
    lz().laufStatus = LaufStatus::Normal;
    Compiler c(nullptr, 0);
    aktuelleZeile = zeile;
    std::istringstream eingabe(zeile.str());
    c.compileStream(String(), eingabe, 0);
    return lz().compilerStatus;
}

namespace {

// One long logical line must not flood the console and the log with boxes
// that each repeat the whole line: the first few show, the rest are counted.
// A nested run inside the line shares the outer line's limit.
constexpr std::uint16_t syntaxBoxenJeZeile = 5;
const char* const syntaxLabel = "CMD-SYNTAX-ERROR";

class SyntaxFehlerGrenze {
public:
    SyntaxFehlerGrenze() : eigene_(Fehler::liefereBegrenzungsZaehler(syntaxLabel) < 0) {
        if (eigene_) Fehler::begrenzeAusgabe(syntaxLabel, syntaxBoxenJeZeile, 'E', 1);
    }
    ~SyntaxFehlerGrenze() {
        if (!eigene_) return;
        const std::int64_t gesehen = Fehler::liefereBegrenzungsZaehler(syntaxLabel);
        Fehler::hebeBegrenzungAuf(syntaxLabel);
        if (gesehen > syntaxBoxenJeZeile) {
            std::ostringstream detail;
            detail << "COUNT: " << std::hex << gesehen << ", " << gesehen - syntaxBoxenJeZeile
                   << " nicht gezeigt";
            Fehler("CMD-SYNTAX-ERROR-COUNT", "Compiler::compileStream", String(detail.str()), 'S');
        }
    }
    SyntaxFehlerGrenze(const SyntaxFehlerGrenze&) = delete;
    SyntaxFehlerGrenze& operator=(const SyntaxFehlerGrenze&) = delete;

private:
    bool eigene_;
};

}  // namespace

int Compiler::compileStream(const String& name, std::istream& strom, dataInteger zeile) {
    lz().laufStatus = LaufStatus::Normal;
    oeffne(name, strom, zeile);
    int fehler;
    {
        const SyntaxFehlerGrenze grenze;
        // Commands catch their own shortage of memory; this catches that of
        // the statements, so that the line fails alone.
        try {
            fehler = parse();
        } catch (const std::bad_alloc&) {
            Fehler::zusatzZeile = nullptr;
            Fehler("CMD-NOMEMORY", "Compiler::compileStream", "zu wenig Speicher, die Zeile ist abgebrochen",
                   'E');
            fehler = 1;
        }
    }
    const int status = Fehler::holeStatus();
    if (status > static_cast<int>(lz().compilerStatus)) {
        Fehler("CMD-ABORT-PROC", "Compiler::compileStream", String(), 'S');
        lz().compilerStatus = static_cast<KdoStatus>(status);
        lz().laufStatus = LaufStatus::Abgebrochen;
    }
    return fehler;
}

void Compiler::errorMessage() {
    const QuellPosition& p = liefereTokenPosition();
    StringPuffer zeilenText;
    StringPuffer marke;
    liefereKdoScanner().liefereQuelle().zeilenText(p, zeilenText);
    liefereKdoScanner().liefereQuelle().marke(p, marke);
    String detail = liefereQuellName() + ":" + String(p.zeile) + ":" + String(p.spalte) + "\n";
    detail += zeilenText.c_str();
    detail += "\n";
    detail += marke.c_str();
    Fehler("CMD-SYNTAX-ERROR", "Compiler::errorMessage", detail, 'E');
}

// ---------------------------------------------------------------------------
// User commands and the object tree

void Compiler::ausfuehreExeKommando(int mitObjekt, int setzeAktuell) {
    static const char* const funktion = "Compiler::ausfuehreExeKommando";
    // Cut even inside quotes: "//" always begins a comment here.
    const int kommentar = aktuelleZeile.suche("//");
    if (kommentar >= 0) aktuelleZeile = aktuelleZeile.links(kommentar);

    String name;
    KdoObjektBasis* objekt = nullptr;
    std::unique_ptr<AnwKommando> anw;
    const int doppelpunkt = aktuelleZeile.suche(":");
    if (mitObjekt == 1 && doppelpunkt >= 0) {
        name = aktuelleZeile.links(doppelpunkt);
        name.entferneHinten();
        objekt = kdoBaum() ? kdoBaum()->suche(name, setzeAktuell) : nullptr;
        anw = std::make_unique<AnwKommando>(aktuelleZeile.teil(doppelpunkt + 1, aktuelleZeile.laenge()));
    } else {
        anw = std::make_unique<AnwKommando>(aktuelleZeile);
        objekt = aktuellesObjekt();
    }

    if (objekt) {
        auto* kdoObjekt = dynamic_cast<KdoObjekt*>(objekt);
        const int ergebnis = kdoObjekt ? kdoObjekt->fuehreAus(*anw) : 0;
        if (ergebnis == 0 && lz().funktionswertStatus > lz().compilerStatus) {
            Fehler("CMD-ABORT-PROC", funktion, String(), 'S');
            lz().laufStatus = LaufStatus::Abgebrochen;
            lz().compilerStatus = lz().funktionswertStatus;
        }
        // The command may have closed its own object: ask the tree again.
        if (const KdoObjektBasis* o = aktuellesObjekt()) letztesObjekt_ = o->liefereVollenNamen();
    } else {
        Fehler("CMD-KDOOBJ-NOTEX", funktion, name, 'W');
    }
}

// kommandoZeile -> kommando argumentListe ZEILENENDE
void Compiler::exeOhneObjekt() { ausfuehreExeKommando(0, 1); }
// kommandoZeile -> objektAngabe ":" kommando argumentListe ZEILENENDE
//                | objektAngabe ":" "?" ZEILENENDE
void Compiler::exeMitObjekt() { ausfuehreExeKommando(1, 1); }
// kommandoZeile -> kommando "?" ZEILENENDE
void Compiler::hilfeOhneObjekt() { ausfuehreExeKommando(0, 0); }
// kommandoZeile -> objektAngabe ":" kommando "?" ZEILENENDE
void Compiler::hilfeMitObjekt() { ausfuehreExeKommando(1, 0); }

// kommandoZeile -> objektAngabe ":" ZEILENENDE
void Compiler::setzeAktKdoObjekt() {
    const int doppelpunkt = aktuelleZeile.suche(":");
    const String name = doppelpunkt >= 0 ? aktuelleZeile.links(doppelpunkt) : aktuelleZeile;
    if (!kdoBaum() || !kdoBaum()->suche(name, 1))
        Fehler("CMD-KDOOBJ-NOTEX", "Compiler::setzeAktKdoObjekt", name, 'E');
}

// kommandoZeile -> MINUS ZEILENENDE | VATER "(" ")" ZEILENENDE
void Compiler::kdooVater() {
    // At the root this is silent on purpose.
    if (!kdoBaum() || !kdoBaum()->vater()) lz().compilerStatus = KdoStatus::Kein;
}

// kommandoZeile -> ":" ZEILENENDE | SOHN "(" ")" ZEILENENDE
void Compiler::kdooSohn() {
    if (!kdoBaum() || !kdoBaum()->sohn())
        Fehler("CMD-KDOOBJ-NOSUCCESSOR", "Compiler::kdooSohn", nameVon(aktuellesObjekt()), 'W');
}

// kommandoZeile -> ">" ZEILENENDE | NAECHSTER "(" ")" ZEILENENDE
void Compiler::kdooGeschwister() {
    if (!kdoBaum() || !kdoBaum()->geschwister())
        Fehler("CMD-KDOOBJ-NOBROTHER", "Compiler::kdooGeschwister", nameVon(aktuellesObjekt()), 'W');
}

// anweisung -> ausfuehreStart "(" prozedurName optParameter ")" ZEILENENDE
void Compiler::ausfuehre() {
    // The nested run leaves its outcome in compilerStatus.
    ausfuehreBatch(dateiName_, neueParameter_.get(), anzahlNeueParameter_);
}

// ---------------------------------------------------------------------------
// Error control

// anweisung -> KDOOTYPCHECK "(" NAME "," steuerung ")" ZEILENENDE
void Compiler::ausfuehreKdoOTypCheck() {
    if (liefereQuellName().istLeer() || typVon(aktuellesObjekt()) == wort_) {
        lz().compilerStatus = KdoStatus::Kein;
        return;
    }
    // The token in hand stands behind the line end, on the next line.
    const String detail = liefereQuellName() + ":" + String(liefereTokenPosition().zeile - 1);
    Fehler("KDO-WRONG-TYP", "Compiler::ausfuehreKdoOTypCheck", detail, 'E');
    lz().laufStatus = LaufStatus::Abgebrochen;
}

// anweisung -> IMFEHLERFALL "(" TEXT "," steuerung ")" ZEILENENDE
void Compiler::imFehlerfallSetzen() {
    Fehler::setzeStatus(wort_, static_cast<int>(lz().compilerStatus));
    lz().compilerStatus = KdoStatus::Kein;
}

// anweisung -> IMFEHLERFALL "(" TEXT ")" ZEILENENDE | IMFEHLERFALL "(" TEXT "," ")" ZEILENENDE
void Compiler::imFehlerfallLoeschen() {
    Fehler::setzeStatus(wort_, static_cast<int>(KdoStatus::Kein));
    lz().compilerStatus = KdoStatus::Kein;
}

// anweisung -> IMFEHLERFALL "(" "," steuerung ")" ZEILENENDE
void Compiler::funktionswertSetzen() {
    lz().funktionswertStatus = lz().compilerStatus;
    lz().compilerStatus = KdoStatus::Kein;
}

// anweisung -> IMFEHLERFALL "(" "," ")" ZEILENENDE | IMFEHLERFALL "(" ")" ZEILENENDE
void Compiler::funktionswertLoeschen() {
    lz().funktionswertStatus = KdoStatus::Kein;
    lz().compilerStatus = KdoStatus::Kein;
}

// steuerung -> EXIT | RETURN | RETURNMAIN. As a statement of its own the
// status makes the loop leave; as an argument the enclosing statement takes
// it over and clears it.
void Compiler::statusExit() { lz().compilerStatus = KdoStatus::Exit; }
void Compiler::statusExitDirekt() { lz().compilerStatus = KdoStatus::Exit; }
void Compiler::statusReturn() { lz().compilerStatus = KdoStatus::Return; }
void Compiler::statusReturnMain() { lz().compilerStatus = KdoStatus::ReturnMain; }

// ---------------------------------------------------------------------------
// Token memory and scanner modes

void Compiler::modusNormal() { KdoParser::modusNormal(); }
void Compiler::modusText() { KdoParser::modusText(); }
void Compiler::modusZahl() { KdoParser::modusZahl(); }

void Compiler::merkeWort() { wort_ = liefereTokenText().links(WORT_GROESSE - 1); }
void Compiler::merkeZahl() { zahl_ = alsZahl(liefereTokenText()); }
void Compiler::merkeDatei() { dateiName_ = getrimmt(liefereTokenText()); }
void Compiler::merkeGrammatik() { grammatikName_ = getrimmt(liefereTokenText()); }
void Compiler::merkeZiel() { zielName_ = getrimmt(liefereTokenText()); }

void Compiler::merkeParameter() {
    (*neueParameter_)[anzahlNeueParameter_] = getrimmt(liefereTokenText());
    ++anzahlNeueParameter_;
}

// ausfuehreStart -> AUSFUEHRE; transStart -> AUSFUEHRETRANS
void Compiler::parameterLoeschen() {
    neueParameter_ = std::make_unique<DynArray<String>>();
    anzahlNeueParameter_ = 0;
    dateiName_ = String();
}

// The translation statements, carried out by the grammar layer.
// anweisung -> transStart "(" quellDatei "," DAT "," grammatikDatei optParameter ")" ZEILENENDE
void Compiler::ausfuehreTransDat() {
    if (uebersetzer_) uebersetzer_->ausfuehreTransDat(*this);
}

// anweisung -> transStart "(" quellDatei "," SYSOSP "," grammatikObjekt optParameter ")" ZEILENENDE
void Compiler::ausfuehreTransOSp() {
    if (uebersetzer_) uebersetzer_->ausfuehreTransOSp(*this);
}

// anweisung -> umsetzeStart "(" quellDatei "," DAT "," grammatikDatei "," zielDatei ")" ZEILENENDE
void Compiler::umsetzeDat() {
    if (uebersetzer_) uebersetzer_->umsetzeDat(*this);
}

// anweisung -> umsetzeStart "(" quellDatei "," SYSOSP "," objektAngabe "," zielDatei ")" ZEILENENDE
void Compiler::umsetzeOSp() {
    if (uebersetzer_) uebersetzer_->umsetzeOSp(*this);
}
