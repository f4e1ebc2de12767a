// YParser: a table-driven LR parser with panic-mode recovery.
//
// The parser always has a token in hand before a state acts: the lookahead
// is read before every shift and every reduction, default reductions
// included. Since the semantic actions switch the scanner's mode, this fixes
// in which mode every token is read. A shift runs its action as the token is
// shifted, before the next token is read; a reduction runs its action before
// the states are popped.
//
// On a syntax error the parser pops states until one expects the `error`
// pseudo-token, shifts it and reports (`errorMessage`); then it discards
// tokens until one fits. The recovery ends with the next shift of a real
// token, so one broken line gives one report.
//
// Internal faults of the tables end the process with status 1.
#pragma once

#include <vector>

#include "foundation/String.h"
#include "foundation/Typen.h"
#include "language/Scanner.h"
#include "language/ZeichenQuelle.h"

class YParser;

// A semantic action: a member function of the parser.
using YAktion = void (YParser::*)();

enum YArt : signed char { Y_FEHLER = 0, Y_REDUZIERE = 1, Y_SCHIEBE = 2, Y_AKZEPTIERE = 3 };

struct YAktionsEintrag {
    unsigned char fehlerToken = 0;  // 1: the entry is for the `error` pseudo-token
    dataInteger token = 0;
    signed char art = Y_FEHLER;
    dataInteger ziel = 0;  // rule for Y_REDUZIERE, state for Y_SCHIEBE
    YAktion aktion = nullptr;
};

struct YGotoEintrag {
    dataInteger nichtTerminal = 0;
    dataInteger ziel = 0;
};

struct YZustand {
    std::vector<YAktionsEintrag> aktionen;
    std::vector<YGotoEintrag> gotos;
    signed char defaultArt = Y_FEHLER;  // Y_FEHLER or Y_REDUZIERE
    dataInteger defaultRegel = 0;
    YAktion defaultAktion = nullptr;
};

struct YRegel {
    dataInteger links = 0;
    dataInteger laenge = 0;
};

struct YTabelle {
    std::vector<YZustand> zustaende;  // state 0 is the start state
    std::vector<YRegel> regeln;
};

class YParser {
public:
    // Neither is owned; both must outlive the parser. The scanner is only
    // stored here, so a derived class may pass one of its own members.
    YParser(Scanner& scanner, const YTabelle& tabelle);
    YParser(const YParser&) = delete;
    YParser& operator=(const YParser&) = delete;
    virtual ~YParser();

    // Parses what the scanner delivers up to the accept or an unrecoverable
    // error. Returns 1 after a syntax error, else 0.
    int parse();

    // Writes "name:line:column: syntax error:", the source line and the
    // marker to the error console.
    virtual void errorMessage();
    // Stack with state 0, no token in hand, no error, recovery off.
    virtual void initParser();
    // During recovery: 1 ends the parse at this token (ENDE), 0 discards it.
    virtual int beiFehlerToken(dataInteger token);
    virtual void nachVerschieben();
    virtual void nachGoto();
    virtual void vorReduktion(dataInteger laenge);

    void setzeQuellName(const String& name) { quellName_ = name; }
    const String& liefereQuellName() const { return quellName_; }
    // The token in hand (or last shifted), its text and position.
    dataInteger liefereToken() const { return token_; }
    const String& liefereTokenText() const { return tokenText_; }
    const QuellPosition& liefereTokenPosition() const { return tokenPosition_; }

protected:
    // Fetches the next token from the scanner into the three fields above.
    virtual dataInteger holeToken();
    Scanner& liefereScanner() { return *scanner_; }

private:
    void fuehreAus(YAktion aktion);
    void reduziere(dataInteger regel, YAktion aktion);
    void behandleFehler();
    void meldeSyntaxFehler();

    String quellName_;
    Scanner* scanner_;
    const YTabelle* tabelle_;
    std::vector<dataInteger> stapel_;
    dataInteger token_ = 0;
    String tokenText_;
    QuellPosition tokenPosition_;
    bool tokenDa_ = false;
    bool erholung_ = false;
    bool laeuft_ = false;
    int syntaxFehler_ = 0;
};
