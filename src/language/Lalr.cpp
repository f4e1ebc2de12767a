// LALR(1) table generator; see Lalr.h for what the tables promise.
//
// The grammars are small (the command language has about a hundred rules and
// two hundred states), so the lookaheads are computed by the plain fixpoint:
// close every state with LR(1) lookahead sets, carry the sets of each item to
// the kernel of its successor, repeat until nothing grows. That gives exactly
// the LALR(1) sets without the bookkeeping of the faster methods.
#include "language/Lalr.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>

namespace {

class BitMenge {
public:
    explicit BitMenge(int groesse = 0) : worte_((groesse + 63) / 64, 0) {}
    bool setze(int i) {
        std::uint64_t bit = std::uint64_t{1} << (i % 64);
        std::uint64_t& wort = worte_[i / 64];
        if (wort & bit) return false;
        wort |= bit;
        return true;
    }
    bool hat(int i) const { return (worte_[i / 64] >> (i % 64)) & 1; }
    bool vereinige(const BitMenge& b) {
        bool neu = false;
        for (std::size_t i = 0; i < worte_.size(); ++i) {
            std::uint64_t w = worte_[i] | b.worte_[i];
            if (w != worte_[i]) {
                worte_[i] = w;
                neu = true;
            }
        }
        return neu;
    }

private:
    std::vector<std::uint64_t> worte_;
};

struct Item {
    int regel;
    int punkt;
    bool operator<(const Item& b) const { return regel != b.regel ? regel < b.regel : punkt < b.punkt; }
    bool operator==(const Item& b) const { return regel == b.regel && punkt == b.punkt; }
};

struct Huelle {
    std::vector<Item> items;
    std::vector<BitMenge> lookahead;
};

class Generator {
public:
    explicit Generator(const LalrGrammatik& g) : g_(g) {}

    LalrTabelle erzeuge() {
        LalrTabelle tabelle;
        std::string fehler = pruefe();
        if (!fehler.empty()) {
            tabelle.konflikte.push_back(fehler);
            return tabelle;
        }
        bereite();
        baueZustaende();
        berechneLookaheads();
        for (const LalrRegel& r : regeln_)
            tabelle.regeln.push_back({r.links, static_cast<int>(r.rechts.size()), r.aktion});
        for (int s = 0; s < static_cast<int>(kerne_.size()); ++s)
            tabelle.zustaende.push_back(baueZustand(s, tabelle.konflikte));
        return tabelle;
    }

private:
    std::string pruefe() const {
        const int nt = g_.ersteNichtTerminal;
        auto gueltig = [&](int s) { return s >= 0 && s < g_.anzahlSymbole; };
        if (nt <= 0 || nt >= g_.anzahlSymbole) return "Grammatik: keine Nichtterminale";
        if (!gueltig(g_.startSymbol) || g_.startSymbol < nt)
            return "Grammatik: Startsymbol ist kein Nichtterminal";
        if (!gueltig(g_.endeSymbol) || g_.endeSymbol >= nt) return "Grammatik: Endesymbol ist kein Terminal";
        if (!gueltig(g_.fehlerSymbol) || g_.fehlerSymbol >= nt) return "Grammatik: error ist kein Terminal";
        for (std::size_t i = 0; i < g_.regeln.size(); ++i) {
            const LalrRegel& r = g_.regeln[i];
            if (!gueltig(r.links) || r.links < nt)
                return "Grammatik: Regel " + std::to_string(i + 1) + " hat links kein Nichtterminal";
            for (const LalrSymbol& s : r.rechts)
                if (!gueltig(s.nummer))
                    return "Grammatik: Regel " + std::to_string(i + 1) + " hat ein ungueltiges Symbol";
        }
        return {};
    }

    bool istTerminal(int s) const { return s < g_.ersteNichtTerminal; }

    void bereite() {
        acceptSymbol_ = g_.anzahlSymbole;
        const int anzahl = g_.anzahlSymbole + 1;
        LalrRegel accept;
        accept.links = acceptSymbol_;
        accept.rechts = {LalrSymbol(g_.startSymbol), LalrSymbol(g_.endeSymbol)};
        regeln_.push_back(accept);
        regeln_.insert(regeln_.end(), g_.regeln.begin(), g_.regeln.end());

        regelnVon_.assign(anzahl, {});
        for (int r = 0; r < static_cast<int>(regeln_.size()); ++r) regelnVon_[regeln_[r].links].push_back(r);

        // Nullable and FIRST sets by fixpoint.
        leerbar_.assign(anzahl, false);
        first_.assign(anzahl, BitMenge(g_.ersteNichtTerminal));
        for (int t = 0; t < g_.ersteNichtTerminal; ++t) first_[t].setze(t);
        bool neu = true;
        while (neu) {
            neu = false;
            for (const LalrRegel& r : regeln_) {
                bool alleLeer = true;
                for (const LalrSymbol& s : r.rechts) {
                    if (first_[r.links].vereinige(first_[s.nummer])) neu = true;
                    if (!leerbar_[s.nummer]) {
                        alleLeer = false;
                        break;
                    }
                }
                if (alleLeer && !leerbar_[r.links]) {
                    leerbar_[r.links] = true;
                    neu = true;
                }
            }
        }
    }

    // Symbol behind the dot, or -1 at the end of the rule.
    int naechstesSymbol(const Item& i) const {
        const auto& rechts = regeln_[i.regel].rechts;
        return i.punkt < static_cast<int>(rechts.size()) ? rechts[i.punkt].nummer : -1;
    }

    bool istAccept(const Item& i) const { return i.regel == 0 && i.punkt == 1; }

    // LR(1) closure of a state's kernel; with `lookaheads` false only the items.
    Huelle huelle(int zustand, bool lookaheads) const {
        Huelle h;
        std::map<Item, int> index;
        std::vector<int> offen;
        auto fuegeHinzu = [&](const Item& item, const BitMenge* la) {
            auto it = index.find(item);
            if (it == index.end()) {
                index.emplace(item, static_cast<int>(h.items.size()));
                h.items.push_back(item);
                h.lookahead.emplace_back(g_.ersteNichtTerminal);
                if (la) h.lookahead.back().vereinige(*la);
                offen.push_back(static_cast<int>(h.items.size()) - 1);
            } else if (la && h.lookahead[it->second].vereinige(*la)) {
                offen.push_back(it->second);
            }
        };
        for (std::size_t k = 0; k < kerne_[zustand].size(); ++k)
            fuegeHinzu(kerne_[zustand][k], lookaheads ? &kernLookahead_[zustand][k] : nullptr);
        while (!offen.empty()) {
            int n = offen.back();
            offen.pop_back();
            Item item = h.items[n];
            int b = naechstesSymbol(item);
            if (b < 0 || istTerminal(b)) continue;
            BitMenge la(g_.ersteNichtTerminal);
            if (lookaheads) {
                const auto& rechts = regeln_[item.regel].rechts;
                bool restLeer = true;
                for (std::size_t p = item.punkt + 1; p < rechts.size(); ++p) {
                    la.vereinige(first_[rechts[p].nummer]);
                    if (!leerbar_[rechts[p].nummer]) {
                        restLeer = false;
                        break;
                    }
                }
                if (restLeer) la.vereinige(h.lookahead[n]);
            }
            for (int r : regelnVon_[b]) fuegeHinzu({r, 0}, lookaheads ? &la : nullptr);
        }
        return h;
    }

    void baueZustaende() {
        std::map<std::vector<Item>, int> kernIndex;
        kerne_.push_back({{0, 0}});
        kernIndex.emplace(kerne_[0], 0);
        for (std::size_t s = 0; s < kerne_.size(); ++s) {
            Huelle h = huelle(static_cast<int>(s), false);
            std::map<int, std::vector<Item>> nachSymbol;
            for (const Item& i : h.items) {
                int x = naechstesSymbol(i);
                if (x < 0 || (i.regel == 0 && x == g_.endeSymbol)) continue;
                nachSymbol[x].push_back({i.regel, i.punkt + 1});
            }
            for (auto& [symbol, kern] : nachSymbol) {
                std::sort(kern.begin(), kern.end());
                kern.erase(std::unique(kern.begin(), kern.end()), kern.end());
                auto [it, neu] = kernIndex.emplace(kern, static_cast<int>(kerne_.size()));
                if (neu) kerne_.push_back(kern);
                uebergaenge_.resize(kerne_.size());
                uebergaenge_[s][symbol] = it->second;
            }
        }
        uebergaenge_.resize(kerne_.size());
    }

    void berechneLookaheads() {
        kernLookahead_.clear();
        for (const auto& kern : kerne_)
            kernLookahead_.emplace_back(kern.size(), BitMenge(g_.ersteNichtTerminal));
        bool neu = true;
        while (neu) {
            neu = false;
            for (int s = 0; s < static_cast<int>(kerne_.size()); ++s) {
                Huelle h = huelle(s, true);
                for (std::size_t n = 0; n < h.items.size(); ++n) {
                    const Item& i = h.items[n];
                    int x = naechstesSymbol(i);
                    if (x < 0 || (i.regel == 0 && x == g_.endeSymbol)) continue;
                    int ziel = uebergaenge_[s].at(x);
                    const auto& kern = kerne_[ziel];
                    auto k =
                        std::lower_bound(kern.begin(), kern.end(), Item{i.regel, i.punkt + 1}) - kern.begin();
                    if (kernLookahead_[ziel][k].vereinige(h.lookahead[n])) neu = true;
                }
            }
        }
    }

    LalrZustand baueZustand(int s, std::vector<std::string>& konflikte) const {
        const int nt = g_.ersteNichtTerminal;
        Huelle h = huelle(s, true);
        std::vector<std::vector<int>> reduktionen(nt);
        std::vector<int> schiebeAktion(nt, 0);
        std::vector<bool> schiebeAktionGesetzt(nt, false);
        bool accept = false;
        auto meldung = [&](int token) {
            return "Zustand " + std::to_string(s) + ", Token " + std::to_string(token) + ": ";
        };
        for (std::size_t n = 0; n < h.items.size(); ++n) {
            const Item& i = h.items[n];
            int x = naechstesSymbol(i);
            if (istAccept(i)) {
                accept = true;
            } else if (x < 0) {
                for (int t = 0; t < nt; ++t)
                    if (h.lookahead[n].hat(t)) reduktionen[t].push_back(i.regel);
            } else if (istTerminal(x)) {
                int aktion = regeln_[i.regel].rechts[i.punkt].aktion;
                if (!schiebeAktionGesetzt[x]) {
                    schiebeAktionGesetzt[x] = true;
                    schiebeAktion[x] = aktion;
                } else if (schiebeAktion[x] != aktion) {
                    konflikte.push_back(meldung(x) + "verschiedene Aktionen beim Schieben");
                }
            }
        }

        LalrZustand z;
        std::vector<int> anzahlJeRegel(regeln_.size(), 0);
        for (int t = 0; t < nt; ++t) {
            auto& red = reduktionen[t];
            std::sort(red.begin(), red.end());
            red.erase(std::unique(red.begin(), red.end()), red.end());
            if (accept && t == g_.endeSymbol) {
                if (!red.empty()) konflikte.push_back(meldung(t) + "akzeptiere/reduziere");
                z.aktionen.push_back({t, LALR_AKZEPTIERE, 0, 0});
                continue;
            }
            auto ue = uebergaenge_[s].find(t);
            if (ue != uebergaenge_[s].end()) {
                if (!red.empty())
                    konflikte.push_back(meldung(t) + "schiebe/reduziere Regel " +
                                        std::to_string(red.front()));
                z.aktionen.push_back({t, LALR_SCHIEBE, ue->second, schiebeAktion[t]});
                continue;
            }
            // The error pseudo-token is only ever looked up for a shift.
            if (red.empty() || t == g_.fehlerSymbol) continue;
            if (red.size() > 1)
                konflikte.push_back(meldung(t) + "reduziere/reduziere Regeln " + std::to_string(red[0]) +
                                    " und " + std::to_string(red[1]));
            z.aktionen.push_back({t, LALR_REDUZIERE, red.front(), regeln_[red.front()].aktion});
            ++anzahlJeRegel[red.front()];
        }

        int standard = -1;
        for (int r = 0; r < static_cast<int>(anzahlJeRegel.size()); ++r)
            if (anzahlJeRegel[r] > 0 && (standard < 0 || anzahlJeRegel[r] > anzahlJeRegel[standard]))
                standard = r;
        if (standard >= 0) {
            z.defaultArt = LALR_REDUZIERE;
            z.defaultRegel = standard;
            z.defaultAktion = regeln_[standard].aktion;
            std::erase_if(z.aktionen, [&](const LalrEintrag& e) {
                return e.art == LALR_REDUZIERE && e.ziel == standard;
            });
        }

        for (const auto& [symbol, ziel] : uebergaenge_[s])
            if (!istTerminal(symbol)) z.gotos.push_back({symbol, ziel});
        return z;
    }

    const LalrGrammatik& g_;
    int acceptSymbol_ = 0;
    std::vector<LalrRegel> regeln_;
    std::vector<std::vector<int>> regelnVon_;
    std::vector<bool> leerbar_;
    std::vector<BitMenge> first_;
    std::vector<std::vector<Item>> kerne_;
    std::vector<std::map<int, int>> uebergaenge_;
    std::vector<std::vector<BitMenge>> kernLookahead_;
};

}  // namespace

LalrTabelle erzeugeLalrTabelle(const LalrGrammatik& grammatik) { return Generator(grammatik).erzeuge(); }
