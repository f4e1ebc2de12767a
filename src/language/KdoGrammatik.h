// KdoGrammatik: the grammar of the command language, written once as data,
// and the LALR(1) tables made from it on first use.
//
// The parser sees a user command's arguments only as raw text and checks
// their separators; the values are read later from the line itself. The
// statements of the language itself are parsed to their tokens. Actions at
// reductions and at shifts switch the scanner's mode in mid-statement, so
// the moment of every action matters; see KdoGrammatik.cpp.
#pragma once

#include <string>

#include "language/Lalr.h"
#include "language/Scanner.h"

// The semantic actions, in the order of KdoParser's virtual operations.
enum class KdoAktion : int {
    keine = 0,
    anzeigeImFehlerfall,
    anzeigeKdoObjekte,
    ausfuehre,
    exeOhneObjekt,
    exeMitObjekt,
    hilfeAllgemein,
    imFehlerfallSetzen,
    funktionswertSetzen,
    ausfuehreKdoOTypCheck,
    hilfeOhneObjekt,
    hilfeMitObjekt,
    ausfuehreTransDat,
    ausfuehreTransOSp,
    hilfeAnzeigeImFehlerfall,
    hilfeAnzeigeKdoObjekte,
    hilfeAusfuehreTrans,
    hilfeAusfuehre,
    hilfeExit,
    hilfeImFehlerfall,
    hilfeKdoOTypCheck,
    hilfeUmsetze,
    parameterLoeschen,
    insertParam,
    kdooVater,
    kdooGeschwister,
    kdooSohn,
    imFehlerfallLoeschen,
    funktionswertLoeschen,
    modusNormal,
    modusText,
    statusExit,
    statusReturn,
    statusReturnMain,
    modusZahl,
    merkeWort,
    merkeZahl,
    setzeAktKdoObjekt,
    merkeZiel,
    merkeParameter,
    merkeDatei,
    merkeGrammatik,
    setzeName,
    umsetzeDat,
    umsetzeOSp,
    anzahl
};

// Non-terminals of the grammar; the symbols below are terminals (token
// numbers and character codes) and the `error` pseudo-token.
namespace KdoSymbol {
enum : int {
    FEHLER = KdoToken::LETZTES + 1,  // the `error` pseudo-token
    ERSTES_NICHTTERMINAL,
    programm = ERSTES_NICHTTERMINAL,
    zeile,
    kommandoZeile,
    anweisung,
    hilfeAnweisung,
    objektAngabe,
    kommando,
    ausfuehreStart,
    transStart,
    umsetzeStart,
    steuerung,
    hilfeWort,
    objektPfad,
    bezeichner,
    typAngabe,
    argumentListe,
    argumentFolge,
    argument,
    prozedurName,
    quellDatei,
    optParameter,
    parameterFolge,
    parameter,
    grammatikDatei,
    grammatikObjekt,
    zielDatei,
    ANZAHL
};
}

const LalrGrammatik& kdoGrammatik();
// Built once, on the first call.
const LalrTabelle& kdoTabelle();

// Names for listings and tests: "NAME", "'('", "error", "kommandoZeile".
std::string kdoSymbolName(int symbol);
const char* kdoAktionName(int aktion);
// A rule as "bezeichner -> NAME!merkeWort"; rule 0 is the accept rule.
std::string kdoRegelText(int regel);
