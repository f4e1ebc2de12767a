#include "language/YParser.h"

#include <iostream>

#include "foundation/Abbruch.h"

namespace {

// A fault of the tables, not of the input: the process can not go on.
[[noreturn]] void tabellenFehler(const char* text) { brichAb(std::cerr, text); }

}  // namespace

YParser::YParser(Scanner& s, const YTabelle& t) : scanner_(&s), tabelle_(&t) { stapel_.reserve(1024); }

YParser::~YParser() = default;

void YParser::errorMessage() {
    StringPuffer zeile;
    StringPuffer marke;
    scanner_->liefereQuelle().zeilenText(tokenPosition_, zeile);
    scanner_->liefereQuelle().marke(tokenPosition_, marke);
    std::cerr << quellName_ << ':' << tokenPosition_.zeile << ':' << tokenPosition_.spalte
              << ": syntax error:\n"
              << zeile << '\n'
              << marke << std::endl;
}

void YParser::initParser() {
    stapel_.clear();
    stapel_.push_back(0);
    tokenDa_ = false;
    syntaxFehler_ = 0;
    erholung_ = false;
}

int YParser::beiFehlerToken(dataInteger t) { return t == KdoToken::ENDE ? 1 : 0; }

void YParser::nachVerschieben() {}

void YParser::nachGoto() {}

void YParser::vorReduktion(dataInteger) {}

dataInteger YParser::holeToken() { return token_ = scanner_->naechstesToken(tokenText_, tokenPosition_); }

void YParser::fuehreAus(YAktion aktion) {
    if (aktion) (this->*aktion)();
}

int YParser::parse() {
    initParser();
    laeuft_ = true;
    while (laeuft_) {
        if (!tokenDa_) {
            holeToken();
            tokenDa_ = true;
        }
        const YZustand& zustand = tabelle_->zustaende[stapel_.back()];
        const YAktionsEintrag* eintrag = nullptr;
        for (const YAktionsEintrag& e : zustand.aktionen) {
            if (!e.fehlerToken && e.token == token_) {
                eintrag = &e;
                break;
            }
        }
        if (eintrag) {
            switch (eintrag->art) {
            case Y_REDUZIERE: reduziere(eintrag->ziel, eintrag->aktion); break;
            case Y_SCHIEBE:
                erholung_ = false;
                tokenDa_ = false;
                stapel_.push_back(eintrag->ziel);
                nachVerschieben();
                fuehreAus(eintrag->aktion);
                break;
            case Y_AKZEPTIERE: laeuft_ = false; break;
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
    return syntaxFehler_;
}

void YParser::reduziere(dataInteger regelNummer, YAktion aktion) {
    const YRegel& regel = tabelle_->regeln[regelNummer];
    vorReduktion(regel.laenge);
    fuehreAus(aktion);
    if (regel.laenge < 0 || static_cast<std::size_t>(regel.laenge) >= stapel_.size())
        tabellenFehler("Stack::reduce(): fatal error #1");
    stapel_.resize(stapel_.size() - regel.laenge);
    const YZustand& oben = tabelle_->zustaende[stapel_.back()];
    if (oben.gotos.empty()) tabellenFehler("YParser::searchNontermAction(): fatal error #1.");
    for (const YGotoEintrag& g : oben.gotos) {
        if (g.nichtTerminal == regel.links) {
            stapel_.push_back(g.ziel);
            nachGoto();
            return;
        }
    }
    tabellenFehler("YParser::searchNontermAction(): fatal error #2.");
}

void YParser::behandleFehler() {
    if (erholung_) {
        if (beiFehlerToken(token_))
            laeuft_ = false;
        else
            tokenDa_ = false;
        return;
    }
    for (;;) {
        for (const YAktionsEintrag& e : tabelle_->zustaende[stapel_.back()].aktionen) {
            if (e.fehlerToken) {
                erholung_ = true;
                fuehreAus(e.aktion);
                meldeSyntaxFehler();
                stapel_.push_back(e.ziel);
                return;
            }
        }
        if (stapel_.size() <= 1) {
            meldeSyntaxFehler();
            laeuft_ = false;
            return;
        }
        stapel_.pop_back();
    }
}

void YParser::meldeSyntaxFehler() {
    syntaxFehler_ = 1;
    errorMessage();
}
