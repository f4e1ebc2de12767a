// Lalr: a small LALR(1) table generator for grammars written as data.
//
// The command language keeps its grammar as a table of rules in the code
// (KdoGrammatik.cpp); this generator turns such a table into the action and
// goto entries that YParser runs. It works like the classic parser generators
// so that the parser acts at exactly the moments users have always seen:
//
//   - states are the LR(0) item sets, lookaheads are exact LALR(1) sets;
//   - a shift/reduce conflict is resolved for the shift, a reduce/reduce
//     conflict for the rule written first; both are recorded in `konflikte`;
//   - in every state with reductions the reduction that covers the most
//     lookahead tokens becomes the default action (ties: the rule written
//     first), and its explicit entries are dropped;
//   - the `error` pseudo-token only ever gets shift entries, in the states
//     whose items expect it.
//
// A symbol of a rule can carry a shift action, run when the parser shifts it.
// Two items of one state that shift the same token with different actions are
// a conflict, reported like the others (the first item's action is kept).
#pragma once

#include <string>
#include <vector>

struct LalrSymbol {
    int nummer = 0;
    int aktion = 0;                             // run when this symbol is shifted; 0 none
    LalrSymbol(int symbol) : nummer(symbol) {}  // implicit: rules read like the grammar
    LalrSymbol(int symbol, int schiebeAktion) : nummer(symbol), aktion(schiebeAktion) {}
};

struct LalrRegel {
    int links = 0;
    std::vector<LalrSymbol> rechts;
    int aktion = 0;  // run at the reduction; 0 none
};

// Symbols are small non-negative numbers: terminals below `ersteNichtTerminal`
// (token numbers, character codes), non-terminals from there up to
// `anzahlSymbole` - 1. The generator adds rule 0, `$accept -> start ende`;
// the grammar's rule i becomes rule i + 1 of the table.
struct LalrGrammatik {
    int ersteNichtTerminal = 0;
    int anzahlSymbole = 0;
    int startSymbol = 0;
    int endeSymbol = 0;
    int fehlerSymbol = 0;  // the `error` pseudo-token, a terminal number
    std::vector<LalrRegel> regeln;
};

enum LalrArt { LALR_FEHLER = 0, LALR_REDUZIERE = 1, LALR_SCHIEBE = 2, LALR_AKZEPTIERE = 3 };

struct LalrEintrag {
    int token = 0;  // `fehlerSymbol` for the error pseudo-token
    int art = LALR_FEHLER;
    int ziel = 0;    // rule for a reduction, state for a shift
    int aktion = 0;  // shift action or the rule's action
};

struct LalrGoto {
    int nichtTerminal = 0;
    int ziel = 0;
};

struct LalrZustand {
    std::vector<LalrEintrag> aktionen;  // ascending by token
    std::vector<LalrGoto> gotos;        // ascending by non-terminal
    int defaultArt = LALR_FEHLER;       // LALR_FEHLER or LALR_REDUZIERE
    int defaultRegel = 0;
    int defaultAktion = 0;
};

struct LalrTabellenRegel {
    int links = 0;
    int laenge = 0;
    int aktion = 0;
};

struct LalrTabelle {
    std::vector<LalrZustand> zustaende;     // state 0 is the start state
    std::vector<LalrTabellenRegel> regeln;  // rule 0 is the accept rule
    std::vector<std::string> konflikte;     // one line per resolved conflict
};

// Builds the tables. A malformed grammar (symbol out of range, a terminal on a
// left-hand side) yields an empty table with one line in `konflikte`.
LalrTabelle erzeugeLalrTabelle(const LalrGrammatik& grammatik);
