// The Compiler's run of lines and procedures, its definitions and the error
// control. The help texts and displays are in CompilerHilfe.cpp, the
// translation statements in CompilerTrans.cpp.
// Covered by tests/unit/language/CompilerTest.cpp.
#include "language/Compiler.h"

#include <climits>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "language/KdoKommando.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

String aktuelleZeile;

dataInteger Compiler::compilerStatus = Compiler::STATUS_KEIN;
dataInteger Compiler::funktionswertStatus = Compiler::STATUS_KEIN;
dataInteger Compiler::laufStatus = Compiler::LAUF_NORMAL;
PromptEingabe* Compiler::promptEingabe = nullptr;

namespace {

// `wort` is a fixed buffer of this size, NUL included, in the procedures'
// original form; longer words are cut.
constexpr int WORT_GROESSE = 1024;

KdoObjektBasis* aktuellesObjekt() { return kdoBaum ? kdoBaum->liefereAktuelles() : nullptr; }

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
    : definitionen(1), neueParameter(std::make_unique<DynArray<String>>()) {
    if (!p || anzahl < 0) anzahl = 0;
    for (int i = 0; i < anzahl; ++i) parameter[i] = (*p)[i];
    for (int i = anzahl; i <= 9; ++i) parameter[i] = String();
    anzahlParameter = anzahl < 11 ? 10 : anzahl;

    compilerStatus = STATUS_KEIN;
    funktionswertStatus = STATUS_KEIN;
    laufStatus = LAUF_NORMAL;

    // The same path as the statement `pN=holeParameter(N)`.
    for (dataInteger i = 0; i < anzahlParameter; ++i) {
        wort = String("p") + String(i);
        zahl = i;
        insertParam();
    }
}

Compiler::~Compiler() = default;

int Compiler::definiere(const String& wert) {
    auto definition = std::make_unique<KdoDefinition>(String("'") + wort + "'", wert);
    if (!definitionen.anfuegeElement(definition.get(), 0)) {
        Fehler("CMD-PARAM-NUM", "Compiler::insertParam", aktuelleZeile, 'W');
        return 0;
    }
    definition.release();   // the list owns it now
    return 1;
}

const String* Compiler::liefereDefinition(const String& schluessel) const {
    const auto* d = static_cast<const KdoDefinition*>(definitionen.sucheElementF(schluessel, 0, 0, 2));
    return d ? &d->wert : nullptr;
}

// anweisung -> NAME "=" HOLEPARAMETER "(" ZAHL ")" ZEILENENDE
void Compiler::insertParam() {
    String wert;
    if (zahl >= 0 && zahl < anzahlParameter) {
        wert = parameter[zahl];
    } else {
        Fehler("CMD-PARAM-NUM", "Compiler::insertParam", aktuelleZeile, 'E');
        std::cerr << "Zu grosser Wert: " << zahl << " Kein Parameter verfuegbar" << std::endl;
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
    ListenIterator it(static_cast<const Liste&>(definitionen));
    while (ListenElement* e = it.naechstes()) {
        const auto* d = static_cast<const KdoDefinition*>(e);
        const std::string schluessel = d->liefereName().str();
        for (std::string& teil : teile) ersetzeAlle(teil, schluessel, d->wert.str());
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

int Compiler::ausfuehreBatch(const String& dateiName, DynArray<String>* p, int anzahl) {
    static const char* const funktion = "Compiler::ausfuehreBatch";
    // Every nested procedure runs on the C++ stack; a procedure that calls
    // itself must end with a message instead of a crash.
    static int tiefe = 0;
    if (tiefe >= MAX_SCHACHTELUNG) {
        Fehler("CMD-KDOOBJ-BATCH-TOODEEP", funktion, dateiName, 'E');
        return compilerStatus;
    }
    struct Ebene {
        Ebene() { ++tiefe; }
        ~Ebene() { --tiefe; }
    } ebene;

    compilerStatus = STATUS_KEIN;
    laufStatus = LAUF_NORMAL;
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
    while (strom->good() && compilerStatus == STATUS_KEIN) {
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
                    promptEingabe->zeigePrompt((String(praefix) + "<" + typVon(o) + ">" + nameVon(o) + "> ").str());
                else
                    std::cout << praefix << '<' << typVon(o) << '>' << nameVon(o) << "> " << std::flush;
            }
            praefix = "_";
            const bool zeilenEnde = liesPhysischeZeile(*strom, physisch);
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
        if (!mitDatei && (compilerStatus == STATUS_RETURN || compilerStatus == STATUS_RETURN_MAIN))
            compilerStatus = STATUS_KEIN;
    }
    // `return` ends this procedure only; `returnMain` and `exit` go on up.
    if (compilerStatus == STATUS_RETURN) compilerStatus = STATUS_KEIN;

    if (geoeffnet) {
        Fehler("CMD-KDOOBJ-BATCH-CLOSED", funktion, dateiName, 'S');
        datei.close();
    }
    return compilerStatus;
}

int Compiler::ausfuehreZeile(const String& zeile) {
    compilerStatus = STATUS_KEIN;
    laufStatus = LAUF_NORMAL;
    Compiler c(nullptr, 0);
    aktuelleZeile = zeile;
    std::istringstream eingabe(zeile.str());
    c.compileStream(String(), eingabe, 0);
    return compilerStatus;
}

int Compiler::compileStream(const String& name, std::istream& strom, dataInteger zeile) {
    laufStatus = LAUF_NORMAL;
    oeffne(name, strom, zeile);
    const int syntaxFehler = parse();
    const int status = Fehler::holeStatus();
    if (status > compilerStatus) {
        Fehler("CMD-ABORT-PROC", "Compiler::compileStream", String(), 'S');
        compilerStatus = status;
        laufStatus = LAUF_ABGEBROCHEN;
    }
    return syntaxFehler;
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
        objekt = kdoBaum ? kdoBaum->suche(name, setzeAktuell) : nullptr;
        anw = std::make_unique<AnwKommando>(aktuelleZeile.teil(doppelpunkt + 1, aktuelleZeile.laenge()));
    } else {
        anw = std::make_unique<AnwKommando>(aktuelleZeile);
        objekt = aktuellesObjekt();
    }

    if (objekt) {
        auto* kdoObjekt = dynamic_cast<KdoObjekt*>(objekt);
        const int ergebnis = kdoObjekt ? kdoObjekt->fuehreAus(*anw) : 0;
        if (ergebnis == 0 && funktionswertStatus > compilerStatus) {
            Fehler("CMD-ABORT-PROC", funktion, String(), 'S');
            laufStatus = LAUF_ABGEBROCHEN;
            compilerStatus = funktionswertStatus;
        }
        // The command may have closed its own object: ask the tree again.
        if (const KdoObjektBasis* o = aktuellesObjekt()) letztesObjekt = o->liefereVollenNamen();
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
    if (!kdoBaum || !kdoBaum->suche(name, 1))
        Fehler("CMD-KDOOBJ-NOTEX", "Compiler::setzeAktKdoObjekt", name, 'E');
}

// kommandoZeile -> MINUS ZEILENENDE | VATER "(" ")" ZEILENENDE
void Compiler::kdooVater() {
    // At the root this is silent on purpose.
    if (!kdoBaum || !kdoBaum->vater()) compilerStatus = STATUS_KEIN;
}

// kommandoZeile -> ":" ZEILENENDE | SOHN "(" ")" ZEILENENDE
void Compiler::kdooSohn() {
    if (!kdoBaum || !kdoBaum->sohn())
        Fehler("CMD-KDOOBJ-NOSUCCESSOR", "Compiler::kdooSohn", nameVon(aktuellesObjekt()), 'W');
}

// kommandoZeile -> ">" ZEILENENDE | NAECHSTER "(" ")" ZEILENENDE
void Compiler::kdooGeschwister() {
    if (!kdoBaum || !kdoBaum->geschwister())
        Fehler("CMD-KDOOBJ-NOBROTHER", "Compiler::kdooGeschwister", nameVon(aktuellesObjekt()), 'W');
}

// anweisung -> ausfuehreStart "(" prozedurName optParameter ")" ZEILENENDE
void Compiler::ausfuehre() {
    // The nested run leaves its outcome in compilerStatus.
    ausfuehreBatch(dateiName, neueParameter.get(), anzahlNeueParameter);
}

// ---------------------------------------------------------------------------
// Error control

// anweisung -> KDOOTYPCHECK "(" NAME "," steuerung ")" ZEILENENDE
void Compiler::ausfuehreKdoOTypCheck() {
    if (liefereQuellName().istLeer() || typVon(aktuellesObjekt()) == wort) {
        compilerStatus = STATUS_KEIN;
        return;
    }
    // The token in hand stands behind the line end, on the next line.
    const String detail = liefereQuellName() + ":" + String(liefereTokenPosition().zeile - 1);
    Fehler("KDO-WRONG-TYP", "Compiler::ausfuehreKdoOTypCheck", detail, 'E');
    laufStatus = LAUF_ABGEBROCHEN;
}

// anweisung -> IMFEHLERFALL "(" TEXT "," steuerung ")" ZEILENENDE
void Compiler::imFehlerfallSetzen() {
    Fehler::setzeStatus(wort, compilerStatus);
    compilerStatus = STATUS_KEIN;
}

// anweisung -> IMFEHLERFALL "(" TEXT ")" ZEILENENDE | IMFEHLERFALL "(" TEXT "," ")" ZEILENENDE
void Compiler::imFehlerfallLoeschen() {
    Fehler::setzeStatus(wort, STATUS_KEIN);
    compilerStatus = STATUS_KEIN;
}

// anweisung -> IMFEHLERFALL "(" "," steuerung ")" ZEILENENDE
void Compiler::funktionswertSetzen() {
    funktionswertStatus = compilerStatus;
    compilerStatus = STATUS_KEIN;
}

// anweisung -> IMFEHLERFALL "(" "," ")" ZEILENENDE | IMFEHLERFALL "(" ")" ZEILENENDE
void Compiler::funktionswertLoeschen() {
    funktionswertStatus = STATUS_KEIN;
    compilerStatus = STATUS_KEIN;
}

// steuerung -> EXIT | RETURN | RETURNMAIN. As a statement of its own the
// status makes the loop leave; as an argument the enclosing statement takes
// it over and clears it.
void Compiler::statusExit() { compilerStatus = STATUS_EXIT; }
void Compiler::statusExitDirekt() { compilerStatus = STATUS_EXIT; }
void Compiler::statusReturn() { compilerStatus = STATUS_RETURN; }
void Compiler::statusReturnMain() { compilerStatus = STATUS_RETURN_MAIN; }

// ---------------------------------------------------------------------------
// Token memory and scanner modes

void Compiler::modusNormal() { KdoParser::modusNormal(); }
void Compiler::modusText() { KdoParser::modusText(); }
void Compiler::modusZahl() { KdoParser::modusZahl(); }

void Compiler::merkeWort() { wort = liefereTokenText().links(WORT_GROESSE - 1); }
void Compiler::merkeZahl() { zahl = alsZahl(liefereTokenText()); }
void Compiler::merkeDatei() { dateiName = getrimmt(liefereTokenText()); }
void Compiler::merkeGrammatik() { grammatikName = getrimmt(liefereTokenText()); }
void Compiler::merkeZiel() { zielName = getrimmt(liefereTokenText()); }

void Compiler::merkeParameter() {
    (*neueParameter)[anzahlNeueParameter] = getrimmt(liefereTokenText());
    ++anzahlNeueParameter;
}

// ausfuehreStart -> AUSFUEHRE; transStart -> AUSFUEHRETRANS
void Compiler::parameterLoeschen() {
    neueParameter = std::make_unique<DynArray<String>>();
    anzahlNeueParameter = 0;
    dateiName = String();
}
