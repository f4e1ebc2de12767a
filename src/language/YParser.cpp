#include "language/YParser.h"

#include <iostream>

#include "foundation/Abbruch.h"

namespace {

// A fault of the tables, not of the input: the process can not go on.
[[noreturn]] void tabellenFehler(const char* text) { brichAb(std::cerr, text); }

}  // namespace

YParser::YParser(Scanner& s, const YTabelle& t) : scanner(&s), tabelle(&t) { stapel.reserve(1024); }

YParser::~YParser() = default;

void YParser::errorMessage() {
    StringPuffer zeile;
    StringPuffer marke;
    scanner->liefereQuelle().zeilenText(tokenPosition, zeile);
    scanner->liefereQuelle().marke(tokenPosition, marke);
    std::cerr << quellName << ':' << tokenPosition.zeile << ':' << tokenPosition.spalte << ": syntax error:\n"
              << zeile << '\n'
              << marke << std::endl;
}

void YParser::initParser() {
    stapel.clear();
    stapel.push_back(0);
    tokenDa = false;
    syntaxFehler = 0;
    erholung = false;
}

int YParser::beiFehlerToken(dataInteger t) { return t == KdoToken::ENDE ? 1 : 0; }

void YParser::nachVerschieben() {}

void YParser::nachGoto() {}

void YParser::vorReduktion(dataInteger) {}

dataInteger YParser::holeToken() { return token = scanner->naechstesToken(tokenText, tokenPosition); }

void YParser::fuehreAus(YAktion aktion) {
    if (aktion) (this->*aktion)();
}

int YParser::parse() {
    initParser();
    laeuft = true;
    while (laeuft) {
        if (!tokenDa) {
            holeToken();
            tokenDa = true;
        }
        const YZustand& zustand = tabelle->zustaende[stapel.back()];
        const YAktionsEintrag* eintrag = nullptr;
        for (const YAktionsEintrag& e : zustand.aktionen) {
            if (!e.fehlerToken && e.token == token) {
                eintrag = &e;
                break;
            }
        }
        if (eintrag) {
            switch (eintrag->art) {
            case Y_REDUZIERE: reduziere(eintrag->ziel, eintrag->aktion); break;
            case Y_SCHIEBE:
                erholung = false;
                tokenDa = false;
                stapel.push_back(eintrag->ziel);
                nachVerschieben();
                fuehreAus(eintrag->aktion);
                break;
            case Y_AKZEPTIERE: laeuft = false; break;
            default: behandleFehler(); break;
            }
        } else if (zustand.defaultArt == Y_FEHLER) {
            behandleFehler();
        } else if (zustand.defaultArt == Y_REDUZIERE) {
            reduziere(zustand.defaultRegel, zustand.defaultAktion);
        } else {
            // The misspelling is the text users of this parser have always seen.
            tabellenFehler("YParser::performDefaultAction(): faltal error.");
        }
    }
    return syntaxFehler;
}

void YParser::reduziere(dataInteger regelNummer, YAktion aktion) {
    const YRegel& regel = tabelle->regeln[regelNummer];
    vorReduktion(regel.laenge);
    fuehreAus(aktion);
    if (regel.laenge < 0 || static_cast<std::size_t>(regel.laenge) >= stapel.size())
        tabellenFehler("Stack::reduce(): fatal error #1");
    stapel.resize(stapel.size() - regel.laenge);
    const YZustand& oben = tabelle->zustaende[stapel.back()];
    if (oben.gotos.empty()) tabellenFehler("YParser::searchNontermAction(): fatal error #1.");
    for (const YGotoEintrag& g : oben.gotos) {
        if (g.nichtTerminal == regel.links) {
            stapel.push_back(g.ziel);
            nachGoto();
            return;
        }
    }
    tabellenFehler("YParser::searchNontermAction(): fatal error #2.");
}

void YParser::behandleFehler() {
    if (erholung) {
        if (beiFehlerToken(token))
            laeuft = false;
        else
            tokenDa = false;
        return;
    }
    for (;;) {
        for (const YAktionsEintrag& e : tabelle->zustaende[stapel.back()].aktionen) {
            if (e.fehlerToken) {
                erholung = true;
                fuehreAus(e.aktion);
                meldeSyntaxFehler();
                stapel.push_back(e.ziel);
                return;
            }
        }
        if (stapel.size() <= 1) {
            meldeSyntaxFehler();
            laeuft = false;
            return;
        }
        stapel.pop_back();
    }
}

void YParser::meldeSyntaxFehler() {
    syntaxFehler = 1;
    errorMessage();
}
