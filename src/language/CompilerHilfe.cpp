// The Compiler's help texts and its two displays: the sons of the current
// object and the settings of the error control.
#include <iostream>
#include <sstream>

#include "foundation/Tabulator.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

namespace {

void zeilen(std::initializer_list<const char*> texte) {
    for (const char* t : texte) std::cout << t << '\n';
    std::cout.flush();
}

std::ostream& anzeigeStrom() { return kdoAnzeigeStream ? *kdoAnzeigeStream : std::cout; }

}  // namespace

void Compiler::hilfe(int mitObjekt) {
    zeilen({
        "?                  Hilfe",
        "<Kommandoname> ?   Hilfe fuer Kommando <Kommandoname>",
        "- bzw. vater()     Gehe zu Vater-KdoObjekt",
        ": bzw. sohn()      Gehe zu Sohn-KdoObjekt (aeltester Sohn)",
        "> bzw. naechster() Gehe zu Geschwister-KdoObjekt (naechst aeltestes)",
        // The one line of the program in Latin-1: kept as it always was.
        // clang-format off
        "kdoOTypCheck       \xDC" "berpr\xFC" "fen des Kommando-Objekt-Typs",
        // clang-format on
        "imFehlerfall       Steuerung bei Auftreten eines Fehlers",
        "anzeigeImFehlerfall Anzeige der fuer Fehlerfall definierten Steuerung",
        "<id>=holeParameter(<num>) weist <id> den <num>-ten Parameter zu",
        "<id>=liefereName() weist <id> den Namen des aktuellen Kommando-Objekts zu",
        "exit bzw. exit()   Verlassen des Programms",
        "",
        "<KdoObjekt-Name>:  <KdoObjekt-Name> wird zum aktuellen KdoObjekt",
        "anzeigeKdoObjekte  anzeigen der direkten Nachfolger",
        "ausfuehre          ausfuehren einer VOREX++-Kommandoprozedur",
        "ausfuehreTrans     umsetzen einer Datei mit Hilfe einer",
        "                   Grammatik in VOREX++-Kommandos und Ausfuehrung",
        "umsetze            umsetzen einer Datei mit Hilfe einer",
        "                   Grammatik. Ausgabe wird in Datei geschrieben",
        "",
    });
    const KdoObjektBasis* o = kdoBaum() ? kdoBaum()->liefereAktuelles() : nullptr;
    std::cout << (o ? o->liefereVollenNamen() : String()) << std::endl;
    // The line is "?": the object lists its commands.
    ausfuehreExeKommando(mitObjekt, 0);
}

// kommandoZeile -> "?" ZEILENENDE
void Compiler::hilfeAllgemein() { hilfe(0); }
void Compiler::hilfeMitListe() { hilfe(1); }

// hilfeWort -> ANZEIGEKDOOBJEKTE | EXIT | ... , each followed by "?"
void Compiler::hilfeAnzeigeKdoObjekte() { zeilen({"anzeigeKdoObjekte"}); }
void Compiler::hilfeExit() { zeilen({"exit"}); }
void Compiler::hilfeAnzeigeImFehlerfall() { zeilen({"anzeigeImFehlerfall"}); }

void Compiler::hilfeAusfuehre() {
    zeilen({"ausfuehre", "        DateiName       dateiName", "        Parameterliste", ""});
}

void Compiler::hilfeAusfuehreTrans() {
    zeilen({"ausfuehreTrans", "        DateiName       umzusetzende Datei", "        DAT oder SYSOSP",
            "        DateiName oder Objekt   Grammatik-Datei oder -Objekt", "        Parameterliste", ""});
}

void Compiler::hilfeUmsetze() {
    zeilen({"umsetze", "        DateiName       umzusetzende Datei", "        DAT oder SYSOSP",
            "        DateiName oder Objekt   Grammatik-Datei oder -Objekt",
            "        DateiName       Ausgabedatei", ""});
}

// The two enum lines name the same three words in different orders: kept.
void Compiler::hilfeKdoOTypCheck() {
    zeilen({"kdoOTypCheck", "        KdoOTyp         typ", "        enum{exit,returnMain,return} exitStatus",
            ""});
}

void Compiler::hilfeImFehlerfall() {
    zeilen({"imFehlerfall", "        String         fehlername",
            "        Enum{exit,return,returnMain} exitStatus", ""});
}

// anweisung -> ANZEIGEKDOOBJEKTE "(" ")" ZEILENENDE
void Compiler::anzeigeKdoObjekte() {
    std::ostream& strom = anzeigeStrom();
    strom << "Das aktuelle Kommando-Objekt hat folgende direkte Nachfolger:\n";
    if (kdoBaum()) {
        KdoBaumKnoten* iterator = nullptr;
        while (KdoObjektBasis* sohn = kdoBaum()->naechsterSohn(iterator))
            strom << sohn->liefereVollenNamen() << '\n';
    }
    strom.flush();
}

// anweisung -> ANZEIGEIMFEHLERFALL "(" ")" ZEILENENDE
void Compiler::anzeigeImFehlerfall() {
    static const String statusTexte[4] = {String(), String("return"), String("returnMain"), String("exit")};
    // The columns are measured on a memory stream, whose positions are
    // always known, and the table is written out in one piece.
    std::ostringstream text;
    Tabulator tab;
    tab.setzeStops(17, {26, 40, 53, 70, 84});
    tab.setzeUmbruch(1);
    tab.setzeMindestensEins(1);
    tab.beginneZeile(text);
    if (lz().funktionswertStatus != KdoStatus::Kein) {
        const int wert = static_cast<int>(lz().funktionswertStatus);
        const int s = wert >= 0 && wert <= 3 ? wert : 0;
        text << "Funktionswert" << tab << "Status";
        tab.zeilenEnde(text);
        tab.strich(text, 1);
        tab.zeilenEnde(text);
        text << "NO" << tab << statusTexte[s];
        tab.zeilenEnde(text);
    }
    Fehler::anzeigeStatus(text, tab, statusTexte);
    anzeigeStrom() << text.str() << std::flush;
}
