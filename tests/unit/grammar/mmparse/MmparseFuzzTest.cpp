// Random grammars through the fuzz entry, and the matcher cross-checked
// against a simple backtracking one on a subset of the notation.
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "../../../fuzz/mmparse_fuzz.cpp"
#include "MmTestHilfe.h"

namespace {

TEST(MmparseFuzz, RandomGrammarsKeepThePromises) {
    static const char alphabet[] = "ab()|*+/!?^@[]-{}<>.%#=\\x0$_ nab(|)*";
    std::mt19937 zufall(4711);
    for (int fall = 0; fall < 20000; ++fall) {
        std::string e;
        for (int i = zufall() % 14; i > 0; --i) e += alphabet[zufall() % (sizeof alphabet - 1)];
        e += '\0';
        for (int i = zufall() % 10; i > 0; --i) e += "ab\n{"[zufall() % 4];
        const char* gebrochen = mmparseFuzzEinmal(reinterpret_cast<const std::uint8_t*>(e.data()), e.size());
        ASSERT_EQ(gebrochen, nullptr) << gebrochen << ", input: " << e;
    }
}

using Weiter = std::function<bool(std::size_t)>;

// A byte item takes the bytes of "abc" in `nimmt`; a group has alternatives.
struct Knoten {
    std::string nimmt;
    char suffix = 0;  // 0 / + * ! ?
    std::vector<std::vector<std::unique_ptr<Knoten>>> alternativen;
};

struct Referenz {
    const std::string& s;

    bool alternativen(const Knoten& g, std::size_t pos, const Weiter& k) const {
        for (const auto& folge : g.alternativen)
            if (folge_(folge, 0, pos, k)) return true;
        return false;
    }
    bool item(const Knoten& n, std::size_t pos, const Weiter& k) const {
        if (!n.alternativen.empty()) return gruppe(n, pos, k);
        std::size_t max = 0;
        while (pos + max < s.size() && n.nimmt.find(s[pos + max]) != std::string::npos)
            if (++max, n.suffix == 0 || n.suffix == '/') break;
        switch (n.suffix) {
        case 0: return max == 1 && k(pos + 1);
        case '/': return (max == 1 && k(pos + 1)) || k(pos);
        case '!': return max > 0 && k(pos + max);
        case '?': return (max > 0 && k(pos + max)) || k(pos);
        }
        for (std::size_t m = max + 1; m-- > (n.suffix == '+' ? 1u : 0u);)
            if (k(pos + m)) return true;
        return false;
    }
    bool folge_(const std::vector<std::unique_ptr<Knoten>>& f, std::size_t i, std::size_t pos,
                const Weiter& k) const {
        return i == f.size() ? k(pos)
                             : item(*f[i], pos, [&](std::size_t e) { return folge_(f, i + 1, e, k); });
    }
    // A run that consumed nothing ends a repetition.
    bool stern(const Knoten& g, std::size_t pos, const Weiter& k) const {
        return alternativen(g, pos, [&](std::size_t e) { return e == pos ? k(e) : stern(g, e, k); }) ||
               k(pos);
    }
    bool gruppe(const Knoten& g, std::size_t pos, const Weiter& k) const {
        switch (g.suffix) {
        case '/': return alternativen(g, pos, k) || k(pos);
        case '+':
            return alternativen(g, pos, [&](std::size_t e) { return e == pos ? k(e) : stern(g, e, k); });
        case '*': return stern(g, pos, k);
        default: return alternativen(g, pos, k);
        }
    }
};

struct Erzeuger {
    std::mt19937 zufall;

    int wahl(int n) { return static_cast<int>(zufall() % static_cast<unsigned>(n)); }
    // A group body nested up to `tiefe` deep, its text appended to `text`.
    std::unique_ptr<Knoten> koerper(int tiefe, std::string& text) {
        auto g = std::make_unique<Knoten>();
        for (int a = 0, alts = 1 + wahl(3) / 2; a < alts; ++a) {
            if (a) text += '|';
            g->alternativen.emplace_back();
            for (int i = wahl(4); i > 0; --i) g->alternativen.back().push_back(item(tiefe, text));
        }
        return g;
    }
    std::unique_ptr<Knoten> item(int tiefe, std::string& text) {
        static const char* const art[][2] = {
            {"a", "a"}, {"b", "b"}, {"@", "abc"}, {"[ab]", "ab"}, {"^a", "bc"}};
        const int w = wahl(tiefe > 0 ? 6 : 5);
        std::unique_ptr<Knoten> n;
        if (w == 5) {
            text += '(';
            n = koerper(tiefe - 1, text);
            text += ')';
            n->suffix = "\0/+*"[wahl(4)];
        } else {
            n = std::make_unique<Knoten>();
            text += art[w][0];
            n->nimmt = art[w][1];
            n->suffix = "\0\0/+*!?"[wahl(7)];
        }
        if (n->suffix) text += n->suffix;
        return n;
    }
};

TEST(MmparseReferenz, AgreesOnGeneratedCases) {
    int treffer = 0;
    for (unsigned saat = 1; saat <= 4000; ++saat) {
        Erzeuger e{std::mt19937(saat)};
        std::string grammatik;
        const auto wurzel = e.koerper(2, grammatik);
        for (int j = 0; j < 3; ++j) {
            std::string s;
            for (int n = e.wahl(8); n > 0; --n) s += "abc"[e.wahl(3)];
            const bool erwartet =
                Referenz{s}.alternativen(*wurzel, 0, [&](std::size_t p) { return p == s.size(); });
            const MmLauf l = mmLauf(grammatik, s);
            ASSERT_GE(l.ergebnis, 0) << grammatik;
            ASSERT_EQ(l.ergebnis > 0, erwartet) << "grammar '" << grammatik << "' subject '" << s << "'";
            if (erwartet) {
                EXPECT_EQ(l.ausgabe, s);
                ++treffer;
            }
        }
    }
    EXPECT_GT(treffer, 1000);
    EXPECT_LT(treffer, 11000);
}

}  // namespace
