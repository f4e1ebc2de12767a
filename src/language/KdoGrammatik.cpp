#include "language/KdoGrammatik.h"

#include <array>

namespace {

using A = KdoAktion;
using namespace KdoToken;
using namespace KdoSymbol;

// One rule of the grammar: left side, right side, action at the reduction.
// A right-hand symbol written as {TOKEN, action} runs that action when the
// token is shifted, before the next token is read; this is how a token's text
// is kept (merkeWort, merkeDatei, ...) and how a mode switch can take effect
// for the very next token (the comma marked `,!` below).
struct Regel {
    int links;
    std::vector<LalrSymbol> rechts;
    A aktion = A::keine;
};

LalrSymbol mit(int symbol, A aktion) { return LalrSymbol(symbol, static_cast<int>(aktion)); }

// How to read the table. Each group starts with the rule in the form
//     nichtTerminal -> alternative | alternative
// where lower-case words are non-terminals, upper-case words tokens, quoted
// characters single-character tokens, `error` the recovery pseudo-token, and
// an empty alternative is written as nothing. `X!` marks a token with a shift
// action. The rows below it give the alternatives in the same order, each with
// its reduction action (none when left out). The order of the rows matters:
// a reduce/reduce choice, and a tie between default reductions, goes to the
// row written first.
//
// Two actions deserve a word. `modusText` at `kommando -> bezeichner` runs
// when the token behind the command name, "(" or "?", has already been read in
// normal mode: so the text after "(" reaches the parser as raw text. And
// `modusNormal` at the `error` alternatives brings a broken line back to
// normal mode before the parser reads on.
const std::vector<Regel>& regeln() {
    static const std::vector<Regel> tabelle = {
        // programm -> | programm zeile
        {programm, {}},
        {programm, {programm, zeile}},

        // zeile -> kommandoZeile | anweisung | ZEILENENDE | hilfeAnweisung | error
        {zeile, {kommandoZeile}, A::modusNormal},
        {zeile, {anweisung}, A::modusNormal},
        {zeile, {ZEILENENDE}},
        {zeile, {hilfeAnweisung}},
        {zeile, {FEHLER}, A::modusNormal},

        // kommandoZeile -> objektAngabe ':' kommando argumentListe ZEILENENDE
        //   | objektAngabe ':' kommando '?' ZEILENENDE | kommando '?' ZEILENENDE
        //   | kommando argumentListe ZEILENENDE | objektAngabe ':' ZEILENENDE
        //   | objektAngabe ':' '?' ZEILENENDE | '?' ZEILENENDE | MINUS ZEILENENDE
        //   | VATER '(' ')' ZEILENENDE | ':' ZEILENENDE | SOHN '(' ')' ZEILENENDE
        //   | '>' ZEILENENDE | NAECHSTER '(' ')' ZEILENENDE
        //   | objektAngabe ':' error | objektAngabe ':' kommando error
        {kommandoZeile, {objektAngabe, ':', kommando, argumentListe, ZEILENENDE}, A::exeMitObjekt},
        {kommandoZeile, {objektAngabe, ':', kommando, '?', ZEILENENDE}, A::hilfeMitObjekt},
        {kommandoZeile, {kommando, '?', ZEILENENDE}, A::hilfeOhneObjekt},
        {kommandoZeile, {kommando, argumentListe, ZEILENENDE}, A::exeOhneObjekt},
        {kommandoZeile, {objektAngabe, ':', ZEILENENDE}, A::setzeAktKdoObjekt},
        // "a: ?" runs the command path so that the object's list answers.
        {kommandoZeile, {objektAngabe, ':', '?', ZEILENENDE}, A::exeMitObjekt},
        {kommandoZeile, {'?', ZEILENENDE}, A::hilfeAllgemein},
        {kommandoZeile, {MINUS, ZEILENENDE}, A::kdooVater},
        {kommandoZeile, {VATER, '(', ')', ZEILENENDE}, A::kdooVater},
        {kommandoZeile, {':', ZEILENENDE}, A::kdooSohn},
        {kommandoZeile, {SOHN, '(', ')', ZEILENENDE}, A::kdooSohn},
        {kommandoZeile, {'>', ZEILENENDE}, A::kdooGeschwister},
        {kommandoZeile, {NAECHSTER, '(', ')', ZEILENENDE}, A::kdooGeschwister},
        {kommandoZeile, {objektAngabe, ':', FEHLER}, A::modusNormal},
        {kommandoZeile, {objektAngabe, ':', kommando, FEHLER}, A::modusNormal},

        // anweisung -> NAME! '=' HOLEPARAMETER! '(' ZAHL! ')' ZEILENENDE
        //   | NAME! '=' LIEFERENAME! '(' ')' ZEILENENDE
        //   | ausfuehreStart '(' prozedurName optParameter ')' ZEILENENDE
        //   | ANZEIGEKDOOBJEKTE '(' ')' ZEILENENDE
        //   | KDOOTYPCHECK '(' NAME! ',' steuerung ')' ZEILENENDE
        //   | steuerung ZEILENENDE | steuerung '(' ')' ZEILENENDE
        //   | IMFEHLERFALL '(' TEXT! ',' steuerung ')' ZEILENENDE
        //   | IMFEHLERFALL '(' TEXT! ')' ZEILENENDE
        //   | IMFEHLERFALL '(' TEXT! ',' ')' ZEILENENDE
        //   | IMFEHLERFALL '(' ',' steuerung ')' ZEILENENDE
        //   | IMFEHLERFALL '(' ',' ')' ZEILENENDE | IMFEHLERFALL '(' ')' ZEILENENDE
        //   | ANZEIGEIMFEHLERFALL '(' ')' ZEILENENDE
        //   | transStart '(' quellDatei ',' DAT ',!' grammatikDatei optParameter ')' ZEILENENDE
        //   | transStart '(' quellDatei ',' SYSOSP ',' grammatikObjekt optParameter ')' ZEILENENDE
        //   | umsetzeStart '(' quellDatei ',' DAT ',!' grammatikDatei ',' zielDatei ')' ZEILENENDE
        //   | umsetzeStart '(' quellDatei ',' SYSOSP ',' objektAngabe ',!' zielDatei ')' ZEILENENDE
        {anweisung,
         {mit(NAME, A::merkeWort), '=', mit(HOLEPARAMETER, A::modusZahl), '(', mit(ZAHL, A::merkeZahl), ')',
          ZEILENENDE},
         A::insertParam},
        {anweisung,
         {mit(NAME, A::merkeWort), '=', mit(LIEFERENAME, A::modusZahl), '(', ')', ZEILENENDE},
         A::setzeName},
        {anweisung, {ausfuehreStart, '(', prozedurName, optParameter, ')', ZEILENENDE}, A::ausfuehre},
        {anweisung, {ANZEIGEKDOOBJEKTE, '(', ')', ZEILENENDE}, A::anzeigeKdoObjekte},
        {anweisung,
         {KDOOTYPCHECK, '(', mit(NAME, A::merkeWort), ',', steuerung, ')', ZEILENENDE},
         A::ausfuehreKdoOTypCheck},
        {anweisung, {steuerung, ZEILENENDE}},
        {anweisung, {steuerung, '(', ')', ZEILENENDE}},
        {anweisung,
         {IMFEHLERFALL, '(', mit(TEXT, A::merkeWort), ',', steuerung, ')', ZEILENENDE},
         A::imFehlerfallSetzen},
        {anweisung, {IMFEHLERFALL, '(', mit(TEXT, A::merkeWort), ')', ZEILENENDE}, A::imFehlerfallLoeschen},
        {anweisung,
         {IMFEHLERFALL, '(', mit(TEXT, A::merkeWort), ',', ')', ZEILENENDE},
         A::imFehlerfallLoeschen},
        {anweisung, {IMFEHLERFALL, '(', ',', steuerung, ')', ZEILENENDE}, A::funktionswertSetzen},
        {anweisung, {IMFEHLERFALL, '(', ',', ')', ZEILENENDE}, A::funktionswertLoeschen},
        {anweisung, {IMFEHLERFALL, '(', ')', ZEILENENDE}, A::funktionswertLoeschen},
        {anweisung, {ANZEIGEIMFEHLERFALL, '(', ')', ZEILENENDE}, A::anzeigeImFehlerfall},
        {anweisung,
         {transStart, '(', quellDatei, ',', DAT, mit(',', A::modusText), grammatikDatei, optParameter, ')',
          ZEILENENDE},
         A::ausfuehreTransDat},
        {anweisung,
         {transStart, '(', quellDatei, ',', SYSOSP, ',', grammatikObjekt, optParameter, ')', ZEILENENDE},
         A::ausfuehreTransOSp},
        {anweisung,
         {umsetzeStart, '(', quellDatei, ',', DAT, mit(',', A::modusText), grammatikDatei, ',', zielDatei,
          ')', ZEILENENDE},
         A::umsetzeDat},
        {anweisung,
         {umsetzeStart, '(', quellDatei, ',', SYSOSP, ',', objektAngabe, mit(',', A::modusText), zielDatei,
          ')', ZEILENENDE},
         A::umsetzeOSp},

        // hilfeAnweisung -> hilfeWort '?'
        {hilfeAnweisung, {hilfeWort, '?'}},

        // objektAngabe -> objektPfad
        {objektAngabe, {objektPfad}},

        // kommando -> bezeichner
        {kommando, {bezeichner}, A::modusText},

        // ausfuehreStart -> AUSFUEHRE
        {ausfuehreStart, {AUSFUEHRE}, A::parameterLoeschen},

        // transStart -> AUSFUEHRETRANS
        {transStart, {AUSFUEHRETRANS}, A::parameterLoeschen},

        // umsetzeStart -> UMSETZE
        {umsetzeStart, {UMSETZE}, A::modusText},

        // steuerung -> EXIT | RETURN | RETURNMAIN
        {steuerung, {EXIT}, A::statusExit},
        {steuerung, {RETURN}, A::statusReturn},
        {steuerung, {RETURNMAIN}, A::statusReturnMain},

        // hilfeWort -> AUSFUEHRE | ANZEIGEKDOOBJEKTE | EXIT | AUSFUEHRETRANS | UMSETZE
        //   | IMFEHLERFALL | ANZEIGEIMFEHLERFALL | KDOOTYPCHECK
        {hilfeWort, {AUSFUEHRE}, A::hilfeAusfuehre},
        {hilfeWort, {ANZEIGEKDOOBJEKTE}, A::hilfeAnzeigeKdoObjekte},
        {hilfeWort, {EXIT}, A::hilfeExit},
        {hilfeWort, {AUSFUEHRETRANS}, A::hilfeAusfuehreTrans},
        {hilfeWort, {UMSETZE}, A::hilfeUmsetze},
        {hilfeWort, {IMFEHLERFALL}, A::hilfeImFehlerfall},
        {hilfeWort, {ANZEIGEIMFEHLERFALL}, A::hilfeAnzeigeImFehlerfall},
        {hilfeWort, {KDOOTYPCHECK}, A::hilfeKdoOTypCheck},

        // objektPfad -> typAngabe bezeichner | bezeichner
        //   | objektPfad '.' typAngabe bezeichner | objektPfad '.' bezeichner
        {objektPfad, {typAngabe, bezeichner}},
        {objektPfad, {bezeichner}},
        {objektPfad, {objektPfad, '.', typAngabe, bezeichner}},
        {objektPfad, {objektPfad, '.', bezeichner}},

        // bezeichner -> NAME!
        {bezeichner, {mit(NAME, A::merkeWort)}},

        // typAngabe -> '<' bezeichner '>'
        {typAngabe, {'<', bezeichner, '>'}},

        // argumentListe -> '(' argumentFolge ')' | '(' error ')'
        {argumentListe, {'(', argumentFolge, ')'}},
        {argumentListe, {'(', FEHLER, ')'}, A::modusNormal},

        // argumentFolge -> argument | argumentFolge ',' argument
        {argumentFolge, {argument}},
        {argumentFolge, {argumentFolge, ',', argument}},

        // argument -> | objektAngabe | ZAHL | TEXT | '/'
        {argument, {}},
        {argument, {objektAngabe}},
        {argument, {ZAHL}},
        {argument, {TEXT}},
        {argument, {'/'}},

        // prozedurName -> TEXT!
        {prozedurName, {mit(TEXT, A::merkeDatei)}},

        // quellDatei -> TEXT!
        {quellDatei, {mit(TEXT, A::merkeDatei)}, A::modusNormal},

        // optParameter -> | parameterFolge
        {optParameter, {}},
        {optParameter, {parameterFolge}},

        // parameterFolge -> ',' parameter | parameterFolge ',' parameter
        {parameterFolge, {',', parameter}},
        {parameterFolge, {parameterFolge, ',', parameter}},

        // parameter -> TEXT!
        {parameter, {mit(TEXT, A::merkeParameter)}},

        // grammatikDatei -> TEXT!
        {grammatikDatei, {mit(TEXT, A::merkeGrammatik)}, A::modusText},

        // grammatikObjekt -> objektAngabe
        {grammatikObjekt, {objektAngabe}, A::modusText},

        // zielDatei -> TEXT!
        {zielDatei, {mit(TEXT, A::merkeZiel)}},
    };
    return tabelle;
}

constexpr std::array<const char*, static_cast<int>(KdoAktion::anzahl)> aktionsNamen = {
    "",
    "anzeigeImFehlerfall",
    "anzeigeKdoObjekte",
    "ausfuehre",
    "exeOhneObjekt",
    "exeMitObjekt",
    "hilfeAllgemein",
    "imFehlerfallSetzen",
    "funktionswertSetzen",
    "ausfuehreKdoOTypCheck",
    "hilfeOhneObjekt",
    "hilfeMitObjekt",
    "ausfuehreTransDat",
    "ausfuehreTransOSp",
    "hilfeAnzeigeImFehlerfall",
    "hilfeAnzeigeKdoObjekte",
    "hilfeAusfuehreTrans",
    "hilfeAusfuehre",
    "hilfeExit",
    "hilfeImFehlerfall",
    "hilfeKdoOTypCheck",
    "hilfeUmsetze",
    "parameterLoeschen",
    "insertParam",
    "kdooVater",
    "kdooGeschwister",
    "kdooSohn",
    "imFehlerfallLoeschen",
    "funktionswertLoeschen",
    "modusNormal",
    "modusText",
    "statusExit",
    "statusReturn",
    "statusReturnMain",
    "modusZahl",
    "merkeWort",
    "merkeZahl",
    "setzeAktKdoObjekt",
    "merkeZiel",
    "merkeParameter",
    "merkeDatei",
    "merkeGrammatik",
    "setzeName",
    "umsetzeDat",
    "umsetzeOSp",
};

constexpr std::array<const char*, KdoSymbol::ANZAHL - KdoSymbol::ERSTES_NICHTTERMINAL> nichtTerminalNamen = {
    "programm",      "zeile",          "kommandoZeile",  "anweisung",      "hilfeAnweisung",
    "objektAngabe",  "kommando",       "ausfuehreStart", "transStart",     "umsetzeStart",
    "steuerung",     "hilfeWort",      "objektPfad",     "bezeichner",     "typAngabe",
    "argumentListe", "argumentFolge",  "argument",       "prozedurName",   "quellDatei",
    "optParameter",  "parameterFolge", "parameter",      "grammatikDatei", "grammatikObjekt",
    "zielDatei",
};

constexpr std::array<const char*, KdoToken::LETZTES - KdoToken::SCANFEHLER + 1> tokenNamen = {
    "SCANFEHLER",    "ZAHL",           "NAME",
    "REALZAHL",      "TEXT",           "ANZEIGEKDOOBJEKTE",
    "AUSFUEHRE",     "AUSFUEHRETRANS", "DAT",
    "SYSOSP",        "RETURN",         "RETURNMAIN",
    "HOLEPARAMETER", "LIEFERENAME",    "ZEILENENDE",
    "EXIT",          "MINUS",          "PLUS",
    "KDOOTYPCHECK",  "IMFEHLERFALL",   "ANZEIGEIMFEHLERFALL",
    "UMSETZE",       "VATER",          "SOHN",
    "NAECHSTER",
};

constexpr bool vollstaendig(const auto& namen) {
    for (const char* n : namen)
        if (!n) return false;
    return true;
}
static_assert(vollstaendig(aktionsNamen) && vollstaendig(nichtTerminalNamen) && vollstaendig(tokenNamen),
              "every action, non-terminal and token has its name");

}  // namespace

const LalrGrammatik& kdoGrammatik() {
    static const LalrGrammatik grammatik = [] {
        LalrGrammatik g;
        g.ersteNichtTerminal = KdoSymbol::ERSTES_NICHTTERMINAL;
        g.anzahlSymbole = KdoSymbol::ANZAHL;
        g.startSymbol = KdoSymbol::programm;
        g.endeSymbol = KdoToken::ENDE;
        g.fehlerSymbol = KdoSymbol::FEHLER;
        for (const Regel& r : regeln()) g.regeln.push_back({r.links, r.rechts, static_cast<int>(r.aktion)});
        return g;
    }();
    return grammatik;
}

const LalrTabelle& kdoTabelle() {
    static const LalrTabelle tabelle = erzeugeLalrTabelle(kdoGrammatik());
    return tabelle;
}

std::string kdoSymbolName(int symbol) {
    if (symbol == KdoToken::ENDE) return "ENDE";
    if (symbol == KdoSymbol::FEHLER) return "error";
    if (symbol > 0 && symbol < 256) return std::string("'") + static_cast<char>(symbol) + "'";
    if (symbol >= KdoToken::SCANFEHLER && symbol <= KdoToken::LETZTES)
        return tokenNamen[symbol - KdoToken::SCANFEHLER];
    if (symbol >= KdoSymbol::ERSTES_NICHTTERMINAL && symbol < KdoSymbol::ANZAHL)
        return nichtTerminalNamen[symbol - KdoSymbol::ERSTES_NICHTTERMINAL];
    if (symbol == KdoSymbol::ANZAHL) return "$accept";
    return "?" + std::to_string(symbol);
}

const char* kdoAktionName(int aktion) {
    return aktion >= 0 && aktion < static_cast<int>(aktionsNamen.size()) ? aktionsNamen[aktion] : "?";
}

std::string kdoRegelText(int regel) {
    const LalrGrammatik& g = kdoGrammatik();
    if (regel == 0) return "$accept -> programm ENDE";
    if (regel < 0 || regel > static_cast<int>(g.regeln.size())) return "?";
    const LalrRegel& r = g.regeln[regel - 1];
    std::string text = kdoSymbolName(r.links) + " ->";
    for (const LalrSymbol& s : r.rechts) {
        text += " " + kdoSymbolName(s.nummer);
        if (s.aktion) text += std::string("!") + kdoAktionName(s.aktion);
    }
    if (r.aktion) text += std::string("  {") + kdoAktionName(r.aktion) + "}";
    return text;
}
