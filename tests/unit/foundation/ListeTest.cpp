#include "foundation/Liste.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "foundation/Kollation.h"
#include "support/Meldungsaufnahme.h"

namespace {

struct Element : ListenElement {
    explicit Element(std::string n, std::uint32_t a = 0) : name(std::move(n)) {
        auswahl = a;
        ++lebende;
    }
    ~Element() override { --lebende; }
    String liefereName() const override { return String(name); }
    std::string name;
    static int lebende;
};
int Element::lebende = 0;

std::string nameVon(const ListenElement* e) { return e ? e->liefereName().str() : "<null>"; }

using Namen = std::vector<std::string>;

// The names in chain order, or in tree order for a sorted list.
Namen kette(Liste& liste, std::uint32_t typ = 0, bool baum = false) {
    Namen namen;
    liste.zurueckSetzen();
    while (ListenElement* e =
               baum ? static_cast<ListeSort&>(liste).naechstesSortiert(typ) : liste.naechstes(typ))
        namen.push_back(nameVon(e));
    return namen;
}
Namen sortiert(ListeSort& liste, std::uint32_t typ = 0) { return kette(liste, typ, true); }

}  // namespace

// Every message of both list kinds, and the calls that stay silent.
TEST(Liste, MessagesAndSearchModes) {
    Meldungsaufnahme auf;
    Liste kette(1, "L");
    ListeSort baum(1, ListenKomparator::standard(), "S");
    kette.haengeAn(new Element("n", 1));
    kette.haengeAn(new Element("n", 2));  // same name, other selection
    baum.anfuegeElement(new Element("n", 1));
    Element doppelt("n", 1);
    const std::pair<std::function<ListenElement*()>, const char*> faelle[] = {
        {[&] { return kette.anfuegeElement(&doppelt); }, "LIST-ELEDOUBLE|n in L|E"},
        {[&] { return baum.anfuegeElement(&doppelt); }, "LIST-ELEDOUBLE|n in S|E"},
        {[&] { return kette.anfuegeElement(&doppelt, 0); }, ""},
        {[&] { return kette.sucheElementF("y", 0, 2); }, "LIST-NOSUCHELE|y in L|W"},
        {[&] { return baum.sucheElementF("N", 0, 2); }, "LIST-NOSUCHELE|N in S|W"},
        {[&] { return kette.sucheElementF("n", 4, 2); }, "LIST-NOSUCHELEBEA|n nicht in Auswahl enthalten|W"},
        {[&] { return baum.sucheElementF("n", 2, 2); }, "LIST-NOSUCHELEBEA|n nicht in Auswahl enthalten|W"},
        {[&] { return kette.entferne("weg"); }, "LIST-NOSUCHELE|weg in L|W"},
        {[&] { return baum.entferne("weg"); }, ""},
    };
    for (const auto& [tu, erwartet] : faelle) {
        auf.leere();
        EXPECT_EQ(tu(), nullptr);
        std::string t;
        for (const Meldung& m : auf.meldungen()) t += m.label + "|" + m.detail + "|" + m.level;
        EXPECT_EQ(t, erwartet);
    }
    // A wrong selection stops at the first name match, the list's own
    // selection widens it; the sorted list folds the element name.
    EXPECT_EQ(kette.sucheElementF("n", 2, 2), nullptr);
    kette.setzeAuswahl(2);
    EXPECT_NE(kette.sucheElementF("n", 2, 2), nullptr);
    EXPECT_EQ(nameVon(baum.sucheElementF("N", 0, 0)), "n");

    // Mode 0 folds the element name, 1 the searched text, 2 neither.
    auf.leere();
    Liste liste(1, "L");
    liste.haengeAn(new Element("AbC"));
    liste.anfuegeElement(new Element("abC"));  // case makes a different name
    const std::tuple<const char*, int, const char*> suchen[] = {{"ABC", 0, "AbC"}, {"abc", 0, "<null>"},
                                                                {"abc", 1, "AbC"}, {"ABC", 1, "<null>"},
                                                                {"abC", 2, "abC"}, {"abc", 2, "<null>"}};
    for (const auto& [name, modus, gefunden] : suchen)
        EXPECT_EQ(nameVon(liste.sucheElementF(name, 0, 0, modus)), gefunden) << name << modus;
    EXPECT_EQ(auf.anzahl(), 0u);
    // A failed search forgets the current element; the read-only form leaves it.
    liste.sucheElementF("y", 0, 2);
    EXPECT_EQ(liste.entferneAktuell(), nullptr);
    liste.sucheElementF("AbC", 0, 2);
    EXPECT_EQ(static_cast<const Liste&>(liste).sucheElementF("z", 0, 0, 2), nullptr);
    EXPECT_EQ(nameVon(liste.aktuellesElement()), "AbC");
}

// An owning list deletes what it holds, a lending one does not.
TEST(Liste, RemovalOwnershipAndTheChainWalk) {
    const int listen = anzahlListen;
    const int vorher = Element::lebende;
    Element fremd("fremd");
    {
        Liste besitzend(1, "L");
        Liste leihend(0);
        EXPECT_EQ(anzahlListen, listen + 2);
        besitzend.haengeAn(new Element("nur"));
        ListenElement* e = besitzend.entferne("nur");
        ASSERT_NE(e, nullptr);
        EXPECT_EQ(besitzend.erstesElement(), nullptr);
        EXPECT_EQ(besitzend.letztesElement(), nullptr);
        delete e;
        for (const char* n : {"a", "b", "c", "d"}) besitzend.haengeAn(new Element(n, n[0] % 2 ? 1 : 2));
        EXPECT_EQ(kette(besitzend, 2), (Namen{"b", "d"}));
        EXPECT_EQ(besitzend.naechstes(), nullptr);
        leihend.haengeAn(&fremd);
        besitzend.loesche();
        EXPECT_EQ(Element::lebende, vorher + 1);
        for (const char* n : {"a", "b", "c"}) besitzend.haengeAn(new Element(n));
        Namen gesehen;
        besitzend.zurueckSetzen();
        while (ListenElement* x = besitzend.naechstes()) {
            gesehen.push_back(nameVon(x));
            if (gesehen.size() != 2) delete besitzend.entferne(x->liefereName());
        }
        EXPECT_EQ(gesehen, (Namen{"a", "b", "c"}));
        EXPECT_EQ(kette(besitzend), (Namen{"b"}));
    }
    EXPECT_EQ(anzahlListen, listen);
    EXPECT_EQ(Element::lebende, vorher + 1);  // only `fremd` is left
}

TEST(ListeSort, RemoveCurrentForgetsAHitThatIsGone) {
    ListeSort liste(1);
    for (const char* n : {"m", "c"}) liste.anfuegeElement(new Element(n));
    EXPECT_EQ(liste.entferneAktuell(), nullptr);  // no search yet
    ASSERT_NE(liste.sucheElementF("M", 0, 0, 0), nullptr);
    delete liste.entferneAktuell();
    EXPECT_EQ(liste.entferneAktuell(), nullptr);
    ASSERT_NE(liste.sucheElementF("c", 0, 0, 2), nullptr);
    delete liste.entferne("c");
    EXPECT_EQ(liste.entferneAktuell(), nullptr);
}

// Tree walk in collation order, chain in insertion order.
TEST(ListeSort, TreeWalkAndChain) {
    ListeSort liste(1, ListenKomparator::standard(), "K");
    const Namen alle = {"aa", "Ab", "ab", "\x84", "B", "b", "c", "d", "e", "f"};
    for (auto it = alle.rbegin(); it != alle.rend(); ++it) liste.anfuegeElement(new Element(*it, *it == "b"));
    EXPECT_EQ(kette(liste), Namen(alle.rbegin(), alle.rend()));
    EXPECT_EQ(sortiert(liste, 1), (Namen{"b"}));
    EXPECT_EQ(nameVon(liste.naechstesSortiert()), "aa") << "intended: starts over behind its end";
    Namen gesehen;
    liste.zurueckSetzen();
    int n = 0;
    while (ListenElement* e = liste.naechstesSortiert()) {
        gesehen.push_back(nameVon(e));
        if (n++ % 2 == 0) delete liste.entferne(e->liefereName());
    }
    EXPECT_EQ(gesehen, alle);
    EXPECT_EQ(sortiert(liste), (Namen{"Ab", "\x84", "b", "d", "f"}));
}

// --------------------------------------------------------------------------
// The AVL tree against a reference set

namespace {

struct KollationKleiner {
    bool operator()(const std::string& a, const std::string& b) const {
        return kollation::vergleiche(String(a), String(b)) < 0;
    }
};
using Referenz = std::set<std::string, KollationKleiner>;

// Height of the subtree by its child links, or -1 after recording a fault.
int pruefeTeilbaum(const BasisNode* k, std::vector<const BasisNode*>& folge, std::string& fehler) {
    int links = 0, rechts = 0;
    if (!k->linksFaden()) {
        if (!k->links()) return fehler = "null child link", -1;
        links = pruefeTeilbaum(k->links(), folge, fehler);
        if (links < 0) return -1;
    }
    folge.push_back(k);
    if (!k->rechtsFaden()) {
        if (!k->rechts()) return fehler = "null child link", -1;
        rechts = pruefeTeilbaum(k->rechts(), folge, fehler);
        if (rechts < 0) return -1;
    }
    const int differenz = rechts - links;
    static const int bits[] = {BasisNode::LINKSLASTIG, BasisNode::BALANCIERT, BasisNode::RECHTSLASTIG};
    if (differenz < -1 || differenz > 1 || k->balance() != bits[differenz + 1])
        return fehler = "balance bits at height difference " + std::to_string(differenz), -1;
    return 1 + std::max(links, rechts);
}

::testing::AssertionResult baumStimmt(const ListeSort& liste, const Referenz& soll) {
    const ElementCltn& baum = liste.baum();
    std::vector<const BasisNode*> folge;
    std::string fehler;
    if (baum.wurzel() && pruefeTeilbaum(baum.wurzel(), folge, fehler) < 0)
        return ::testing::AssertionFailure() << fehler;
    if (static_cast<std::size_t>(baum.anzahl()) != soll.size() || folge.size() != soll.size())
        return ::testing::AssertionFailure() << "count " << baum.anzahl() << ", nodes " << folge.size();
    auto it = soll.begin();
    for (std::size_t i = 0; i < folge.size(); ++i, ++it) {
        const BasisNode* k = folge[i];
        if (nameVon(ElementCltn::element(k)) != *it)
            return ::testing::AssertionFailure() << "in-order at " << *it;
        const BasisNode* vor = i > 0 ? folge[i - 1] : nullptr;
        const BasisNode* nach = i + 1 < folge.size() ? folge[i + 1] : nullptr;
        if ((k->linksFaden() && k->links() != vor) || (k->rechtsFaden() && k->rechts() != nach) ||
            SortedCltn::nachfolger(k) != nach || SortedCltn::vorgaenger(k) != vor)
            return ::testing::AssertionFailure() << "threads or stepping at " << *it;
    }
    if (liste.elementAnzahl() != static_cast<std::int32_t>(soll.size()))
        return ::testing::AssertionFailure() << "chain count " << liste.elementAnzahl();
    return ::testing::AssertionSuccess();
}

}  // namespace

TEST(SortedCltn, RandomOperationsMatchAReferenceSet) {
    Meldungsaufnahme auf;  // duplicate and missing-name reports are expected
    const std::string zeichen = "aAbBc\x84\x8E\xE1s";
    for (unsigned saat = 1; saat <= 12; ++saat) {
        std::mt19937 zufall(saat);
        ListeSort liste(1);
        Referenz soll;
        for (int schritt = 0; schritt < 600; ++schritt) {
            std::string name;
            const int laenge = 1 + static_cast<int>(zufall() % 3);
            for (int j = 0; j < laenge; ++j) name += zeichen[zufall() % zeichen.size()];
            const unsigned aktion = zufall() % 5;
            if (aktion < 3) {
                Element* e = new Element(name);
                if (liste.anfuegeElement(e, 0))
                    soll.insert(name);
                else
                    delete e;
            } else if (aktion == 3) {
                delete liste.entferne(name);
                soll.erase(name);
            } else {
                if (liste.sucheElementF(String(name), 0, 0, 2)) {
                    ListenElement* e = liste.entferneAktuell();
                    ASSERT_EQ(nameVon(e), name);
                    delete e;
                    soll.erase(name);
                }
            }
            ASSERT_TRUE(baumStimmt(liste, soll))
                << "seed " << saat << " step " << schritt << " name " << name;
        }
        Namen erwartet(soll.begin(), soll.end());
        EXPECT_EQ(sortiert(liste), erwartet);
    }
}
