// The LALR(1) generator: conflict resolution and default reductions on small
// grammars with known answers, the tables of the command language, and a
// cross-check of those tables against random derivations of the grammar.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>

#include "language/KdoGrammatik.h"
#include "language/Lalr.h"

namespace {

// Small grammars: terminals 0..99 (0 end, 1 error), non-terminals from 100.
enum { END = 0, ERR = 1, X = 10, Y, Z, IF, ELSE, S = 100, A, B, C, D, ANZAHL };

LalrGrammatik grammatik(std::vector<LalrRegel> regeln) {
    LalrGrammatik g;
    g.ersteNichtTerminal = 100;
    g.anzahlSymbole = ANZAHL;
    g.startSymbol = S;
    g.endeSymbol = END;
    g.fehlerSymbol = ERR;
    g.regeln = std::move(regeln);
    return g;
}

const LalrEintrag* eintrag(const LalrZustand& z, int token) {
    for (const LalrEintrag& e : z.aktionen)
        if (e.token == token) return &e;
    return nullptr;
}

int ziel(const LalrTabelle& t, int zustand, int symbol) {
    if (const LalrEintrag* e = eintrag(t.zustaende[zustand], symbol); e && e->art == LALR_SCHIEBE)
        return e->ziel;
    for (const LalrGoto& g : t.zustaende[zustand].gotos)
        if (g.nichtTerminal == symbol) return g.ziel;
    return -1;
}

// Runs the tables over a token sequence (which must end in the end token),
// as YParser does without recovery; returns the rules reduced, or -1 at the
// end for a rejection.
std::vector<int> reduktionen(const LalrTabelle& t, const std::vector<int>& eingabe) {
    std::vector<int> stapel{0}, aus;
    std::size_t i = 0;
    while (i < eingabe.size()) {
        const LalrZustand& z = t.zustaende[stapel.back()];
        const LalrEintrag* e = eintrag(z, eingabe[i]);
        int art = e ? e->art : z.defaultArt;
        int regel = e ? e->ziel : z.defaultRegel;
        if (art == LALR_SCHIEBE) {
            stapel.push_back(e->ziel);
            ++i;
        } else if (art == LALR_REDUZIERE) {
            aus.push_back(regel);
            stapel.resize(stapel.size() - t.regeln[regel].laenge);
            stapel.push_back(ziel(t, stapel.back(), t.regeln[regel].links));
        } else if (art == LALR_AKZEPTIERE) {
            return aus;
        } else {
            break;
        }
    }
    aus.push_back(-1);
    return aus;
}

}  // namespace

TEST(LalrTest, ShiftWinsOverReduceAndIsReported) {
    // s -> i s | i s e s | x: the dangling else binds to the nearest if.
    LalrTabelle t = erzeugeLalrTabelle(grammatik({{S, {IF, S}}, {S, {IF, S, ELSE, S}}, {S, {X}}}));
    ASSERT_EQ(t.konflikte.size(), 1u);
    EXPECT_NE(t.konflikte[0].find("schiebe/reduziere"), std::string::npos);
    // i i x e x: the else is shifted, so the inner if gets it.
    EXPECT_EQ(reduktionen(t, {IF, IF, X, ELSE, X, END}), (std::vector<int>{3, 3, 2, 1}));
}

TEST(LalrTest, EarlierRuleWinsBetweenReductions) {
    // s -> a z | b z ; a -> x ; b -> x
    LalrTabelle t = erzeugeLalrTabelle(grammatik({{S, {A, Z}}, {S, {B, Z}}, {A, {X}}, {B, {X}}}));
    ASSERT_EQ(t.konflikte.size(), 1u);
    EXPECT_NE(t.konflikte[0].find("reduziere/reduziere Regeln 3 und 4"), std::string::npos);
    EXPECT_EQ(reduktionen(t, {X, Z, END}), (std::vector<int>{3, 1}));
}

TEST(LalrTest, DefaultIsTheMostFrequentReduction) {
    // After x: a -> x on y or z, b -> x on x only. After e y: c -> y on z,
    // d -> y on x, a tie, in which the earlier rule wins although its token
    // comes later.
    LalrTabelle t = erzeugeLalrTabelle(grammatik({{S, {A, Y}},
                                                  {S, {A, Z}},
                                                  {S, {B, X}},
                                                  {A, {X}},
                                                  {B, {X}},
                                                  {S, {ELSE, D, X}},
                                                  {S, {ELSE, C, Z}},
                                                  {C, {Y}},
                                                  {D, {Y}}}));
    EXPECT_TRUE(t.konflikte.empty());
    const LalrZustand& z = t.zustaende[ziel(t, 0, X)];
    EXPECT_EQ(z.defaultArt, LALR_REDUZIERE);
    EXPECT_EQ(z.defaultRegel, 4);
    ASSERT_EQ(z.aktionen.size(), 1u);
    EXPECT_EQ(z.aktionen[0].token, X);
    EXPECT_EQ(z.aktionen[0].ziel, 5);

    const LalrZustand& tie = t.zustaende[ziel(t, ziel(t, 0, ELSE), Y)];
    EXPECT_EQ(tie.defaultRegel, 8);
    ASSERT_EQ(tie.aktionen.size(), 1u);
    EXPECT_EQ(tie.aktionen[0].token, X);
    EXPECT_EQ(tie.aktionen[0].ziel, 9);
    // A state without reductions has no default.
    EXPECT_EQ(t.zustaende[0].defaultArt, LALR_FEHLER);
}

TEST(LalrTest, ShiftActionsAndErrorEntries) {
    // s -> x! y | x! z | error y ; the error pseudo-token appears only as a
    // shift, never as a reduce lookahead.
    LalrTabelle t = erzeugeLalrTabelle(grammatik({{S, {{X, 7}, Y}}, {S, {{X, 7}, Z}}, {S, {ERR, Y}, 3}}));
    EXPECT_TRUE(t.konflikte.empty());
    const LalrEintrag* e = eintrag(t.zustaende[0], X);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->aktion, 7);
    ASSERT_NE(eintrag(t.zustaende[0], ERR), nullptr);
    EXPECT_EQ(eintrag(t.zustaende[0], ERR)->art, LALR_SCHIEBE);
    for (const LalrZustand& z : t.zustaende)
        for (const LalrEintrag& a : z.aktionen) EXPECT_FALSE(a.token == ERR && a.art != LALR_SCHIEBE);

    LalrTabelle zwei = erzeugeLalrTabelle(grammatik({{S, {{X, 7}, Y}}, {S, {{X, 8}, Z}}}));
    ASSERT_EQ(zwei.konflikte.size(), 1u);
    EXPECT_NE(zwei.konflikte[0].find("verschiedene Aktionen"), std::string::npos);
}

TEST(LalrTest, CommandLanguageTables) {
    const LalrTabelle& t = kdoTabelle();
    EXPECT_TRUE(t.konflikte.empty()) << t.konflikte.front();

    // `error` is expected in exactly four places: at the start of a line,
    // behind "object:", behind "object: command" and behind "(" of an
    // argument list.
    std::vector<std::string> hinterFehler;
    for (const LalrZustand& z : t.zustaende) {
        const LalrEintrag* e = eintrag(z, KdoSymbol::FEHLER);
        if (!e) continue;
        const LalrZustand& danach = t.zustaende[e->ziel];
        if (danach.defaultArt == LALR_REDUZIERE) {
            hinterFehler.push_back(kdoRegelText(danach.defaultRegel));
        } else {
            const LalrEintrag* zu = eintrag(danach, ')');
            ASSERT_NE(zu, nullptr);
            hinterFehler.push_back(kdoRegelText(t.zustaende[zu->ziel].defaultRegel));
        }
    }
    std::sort(hinterFehler.begin(), hinterFehler.end());
    EXPECT_EQ(hinterFehler, (std::vector<std::string>{
                                "argumentListe -> '(' error ')'  {modusNormal}",
                                "kommandoZeile -> objektAngabe ':' error  {modusNormal}",
                                "kommandoZeile -> objektAngabe ':' kommando error  {modusNormal}",
                                "zeile -> error  {modusNormal}",
                            }));
    // Numbers outside the rules name none.
    EXPECT_EQ(kdoRegelText(-1), "?");
    EXPECT_EQ(kdoRegelText(1 << 20), "?");
}

// Random derivations of the grammar, parsed with the generated tables: every
// sentence is accepted, and the reductions are the derivation tree in
// post-order, which is what a correct LR parser must produce.
TEST(LalrTest, CommandLanguageParsesRandomDerivations) {
    const LalrGrammatik& g = kdoGrammatik();
    const LalrTabelle& t = kdoTabelle();
    std::vector<std::vector<int>> regelnVon(KdoSymbol::ANZAHL);
    for (std::size_t r = 0; r < g.regeln.size(); ++r) {
        bool mitFehler = false;
        for (const LalrSymbol& s : g.regeln[r].rechts) mitFehler |= s.nummer == KdoSymbol::FEHLER;
        if (!mitFehler) regelnVon[g.regeln[r].links].push_back(static_cast<int>(r));
    }
    // The rule of each non-terminal that ends a derivation soonest.
    std::vector<int> hoehe(KdoSymbol::ANZAHL, 1000), kurz(KdoSymbol::ANZAHL, -1);
    for (int runde = 0; runde < 30; ++runde)
        for (int n = KdoSymbol::ERSTES_NICHTTERMINAL; n < KdoSymbol::ANZAHL; ++n)
            for (int r : regelnVon[n]) {
                int h = 0;
                for (const LalrSymbol& s : g.regeln[r].rechts)
                    h = std::max(h, s.nummer < KdoSymbol::ERSTES_NICHTTERMINAL ? 0 : hoehe[s.nummer]);
                if (h + 1 < hoehe[n]) {
                    hoehe[n] = h + 1;
                    kurz[n] = r;
                }
            }

    std::mt19937 zufall(17);
    for (int n = 0; n < 2000; ++n) {
        std::vector<int> saetze, erwartet;
        std::function<void(int, int)> leite = [&](int symbol, int tiefe) {
            if (symbol < KdoSymbol::ERSTES_NICHTTERMINAL) {
                saetze.push_back(symbol);
                return;
            }
            const auto& wahl = regelnVon[symbol];
            int r = tiefe > 6 ? kurz[symbol] : wahl[zufall() % wahl.size()];
            for (const LalrSymbol& s : g.regeln[r].rechts) leite(s.nummer, tiefe + 1);
            erwartet.push_back(r + 1);
        };
        leite(KdoSymbol::programm, 0);
        saetze.push_back(KdoToken::ENDE);
        ASSERT_EQ(reduktionen(t, saetze), erwartet) << "derivation " << n;
    }
}
