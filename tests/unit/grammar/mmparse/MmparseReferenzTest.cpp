// Cross-check of the matcher against a deliberately simple recursive
// backtracking matcher, on generated grammars of a small subset (bytes, '@',
// sets, '^', groups with alternatives, all suffixes) and short subjects.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "MmTestHilfe.h"

namespace {

using Weiter = std::function<bool(std::size_t)>;

struct Knoten {
    enum Art { Byte, Gruppe } art = Byte;
    std::string menge;     // accepted bytes of a byte item ("" with `alle`)
    bool alle = false;
    bool negiert = false;
    char suffix = 0;       // 0 / + * ! ?
    std::vector<std::vector<std::unique_ptr<Knoten>>> alternativen;
};

class Referenz {
public:
    explicit Referenz(const std::string& s) : s_(s) {}

    bool alternativen(const Knoten& g, std::size_t pos, const Weiter& k) const {
        for (const auto& folge : g.alternativen)
            if (folge_(folge, 0, pos, k)) return true;
        return false;
    }

    bool item(const Knoten& n, std::size_t pos, const Weiter& k) const {
        if (n.art == Knoten::Gruppe) return gruppe(n, pos, k);
        std::size_t max = 0;
        const bool einzeln = n.suffix == 0 || n.suffix == '/';
        while (pos + max < s_.size() && nimmt(n, s_[pos + max])) {
            ++max;
            if (einzeln) break;
        }
        switch (n.suffix) {
        case 0: return max == 1 && k(pos + 1);
        case '/': return (max == 1 && k(pos + 1)) || k(pos);
        case '+':
        case '*':
            for (std::size_t m = max + 1; m-- > (n.suffix == '+' ? 1u : 0u);)
                if (k(pos + m)) return true;
            return false;
        case '!': return max > 0 && k(pos + max);
        case '?': return (max > 0 && k(pos + max)) || k(pos);
        default: return false;
        }
    }

private:
    bool nimmt(const Knoten& n, char c) const {
        bool drin = n.alle || n.menge.find(c) != std::string::npos;
        return drin != n.negiert;
    }

    bool folge_(const std::vector<std::unique_ptr<Knoten>>& f, std::size_t i, std::size_t pos,
                const Weiter& k) const {
        if (i == f.size()) return k(pos);
        return item(*f[i], pos, [&](std::size_t e) { return folge_(f, i + 1, e, k); });
    }

    // A run that consumed nothing ends a repetition.
    bool stern(const Knoten& g, std::size_t pos, const Weiter& k) const {
        return alternativen(g, pos, [&](std::size_t e) { return e == pos ? k(e) : stern(g, e, k); }) || k(pos);
    }

    bool gruppe(const Knoten& g, std::size_t pos, const Weiter& k) const {
        switch (g.suffix) {
        case '/': return alternativen(g, pos, k) || k(pos);
        case '+': return alternativen(g, pos, [&](std::size_t e) { return e == pos ? k(e) : stern(g, e, k); });
        case '*': return stern(g, pos, k);
        default: return alternativen(g, pos, k);
        }
    }

    const std::string& s_;
};

class Erzeuger {
public:
    explicit Erzeuger(unsigned saat) : zufall_(saat) {}

    // Builds a group body of up to `tiefe` nesting and writes its text.
    std::unique_ptr<Knoten> koerper(int tiefe, std::string& text) {
        auto g = std::make_unique<Knoten>();
        g->art = Knoten::Gruppe;
        int alts = 1 + wahl(3) / 2;
        for (int a = 0; a < alts; ++a) {
            if (a) text += '|';
            g->alternativen.emplace_back();
            int items = wahl(4);
            for (int i = 0; i < items; ++i) g->alternativen.back().push_back(item(tiefe, text));
        }
        return g;
    }

    std::string subjekt() {
        std::string s;
        int n = wahl(8);
        for (int i = 0; i < n; ++i) s += "abc"[wahl(3)];
        return s;
    }

private:
    int wahl(int n) { return static_cast<int>(zufall_() % static_cast<unsigned>(n)); }

    std::unique_ptr<Knoten> item(int tiefe, std::string& text) {
        int art = wahl(tiefe > 0 ? 6 : 5);
        if (art == 5) {
            text += '(';
            auto g = koerper(tiefe - 1, text);
            text += ')';
            g->suffix = "\0/+*"[wahl(4)];
            if (g->suffix) text += g->suffix;
            return g;
        }
        auto n = std::make_unique<Knoten>();
        switch (art) {
        case 0: n->menge = "a"; text += 'a'; break;
        case 1: n->menge = "b"; text += 'b'; break;
        case 2: n->alle = true; text += '@'; break;
        case 3: n->menge = "ab"; text += "[ab]"; break;
        default: n->menge = "a"; n->negiert = true; text += "^a"; break;
        }
        n->suffix = "\0\0/+*!?"[wahl(7)];
        if (n->suffix) text += n->suffix;
        return n;
    }

    std::mt19937 zufall_;
};

TEST(MmparseReferenz, AgreesOnGeneratedCases) {
    int treffer = 0;
    for (unsigned saat = 1; saat <= 4000; ++saat) {
        Erzeuger e(saat);
        std::string grammatik;
        auto wurzel = e.koerper(2, grammatik);
        for (int j = 0; j < 3; ++j) {
            std::string s = e.subjekt();
            Referenz ref(s);
            bool erwartet = ref.alternativen(*wurzel, 0, [&](std::size_t p) { return p == s.size(); });
            MmLauf l = mmLauf(grammatik, s);
            ASSERT_GE(l.ergebnis, 0) << grammatik;
            ASSERT_EQ(l.ergebnis > 0, erwartet) << "grammar '" << grammatik << "' subject '" << s << "'";
            if (erwartet) {
                ++treffer;
                EXPECT_EQ(l.ausgabe, s);
            }
        }
    }
    // The generator must give both outcomes in fair numbers.
    EXPECT_GT(treffer, 1000);
    EXPECT_LT(treffer, 11000);
}

}  // namespace
