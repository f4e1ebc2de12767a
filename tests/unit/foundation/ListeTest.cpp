// Chain lists and sorted lists: duplicate rules, the three search modes and
// their messages, removal and ownership, both iterators, and the threaded AVL
// tree checked node by node against a reference set.
#include "foundation/Liste.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "MeldungsFaenger.h"
#include "foundation/Kollation.h"

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

std::vector<std::string> kette(Liste& liste, std::uint32_t typ = 0) {
    std::vector<std::string> namen;
    liste.zurueckSetzen();
    while (ListenElement* e = liste.naechstes(typ)) namen.push_back(nameVon(e));
    return namen;
}

std::vector<std::string> sortiert(ListeSort& liste, std::uint32_t typ = 0) {
    std::vector<std::string> namen;
    liste.zurueckSetzen();
    while (ListenElement* e = liste.naechstesSortiert(typ)) namen.push_back(nameVon(e));
    return namen;
}

using Namen = std::vector<std::string>;

}  // namespace

// --------------------------------------------------------------------------
// Liste

// Every message of both list kinds, and the calls that stay silent.
TEST(Liste, MessagesNameTheirFunctions) {
    MeldungsFaenger faenger;
    Liste kette(1, "L");
    ListeSort baum(1, ListenKomparator::standard(), "S");
    kette.haengeAn(new Element("n", 1));
    kette.haengeAn(new Element("n", 2));  // same name, other selection
    baum.anfuegeElement(new Element("n", 1));
    Element doppelt("n", 1);
    struct Fall {
        std::function<ListenElement*()> tu;
        const char* label;  // nullptr: silent
        const char* funktion;
        const char* detail;
        char level;
    };
    const Fall faelle[] = {
        {[&] { return kette.anfuegeElement(&doppelt); }, "LIST-ELEDOUBLE", "Liste::anfuegeElement", "n in L",
         'E'},
        {[&] { return baum.anfuegeElement(&doppelt); }, "LIST-ELEDOUBLE", "ListeSort::anfuegeElement",
         "n in S", 'E'},
        {[&] { return kette.anfuegeElement(&doppelt, 0); }, nullptr, "", "", 0},
        {[&] { return kette.sucheElementF("y", 0, 2); }, "LIST-NOSUCHELE", "Liste::sucheElementF", "y in L",
         'W'},
        {[&] { return baum.sucheElementF("N", 0, 2); }, "LIST-NOSUCHELE", "Liste::sucheElementF", "N in S",
         'W'},
        {[&] { return baum.sucheElementF("N", 0, 1); }, "LIST-NOSUCHELE", "Liste::sucheElementF", "N in S",
         'W'},
        {[&] { return kette.sucheElementF("n", 4, 2); }, "LIST-NOSUCHELEBEA", "Liste::sucheElementF",
         "n nicht in Auswahl enthalten", 'W'},
        {[&] { return baum.sucheElementF("n", 2, 2); }, "LIST-NOSUCHELEBEA", "ListeSort::sucheElementF",
         "n nicht in Auswahl enthalten", 'W'},
        {[&] { return kette.entferne("weg"); }, "LIST-NOSUCHELE", "Liste::sucheElementF", "weg in L", 'W'},
        {[&] { return baum.entferne("weg"); }, nullptr, "", "", 0},
    };
    for (const Fall& f : faelle) {
        faenger.leere();
        EXPECT_EQ(f.tu(), nullptr);
        if (!f.label) {
            EXPECT_EQ(faenger.anzahl(), 0u);
            continue;
        }
        ASSERT_EQ(faenger.anzahl(), 1u) << f.label << f.detail;
        EXPECT_EQ(faenger.letzte().label, f.label);
        EXPECT_EQ(faenger.letzte().funktion, f.funktion) << f.label;
        EXPECT_EQ(faenger.letzte().detail, f.detail);
        EXPECT_EQ(faenger.letzte().level, f.level) << f.label;
    }
    // A wrong selection stops at the first name match, the list's own
    // selection widens it; the sorted list folds the element name.
    EXPECT_EQ(nameVon(kette.sucheElementF("n", 1, 2)), "n");
    EXPECT_EQ(kette.sucheElementF("n", 2, 2), nullptr);
    kette.setzeAuswahl(2);
    EXPECT_NE(kette.sucheElementF("n", 2, 2), nullptr);
    EXPECT_EQ(nameVon(baum.sucheElementF("N", 0, 0)), "n");
}

TEST(Liste, SearchModesAndTheCurrentElement) {
    MeldungsFaenger faenger;
    Liste liste(1, "L");
    liste.haengeAn(new Element("AbC"));
    liste.anfuegeElement(new Element("abC"));  // case makes a different name
    EXPECT_EQ(kette(liste), (Namen{"AbC", "abC"}));
    // Mode 0 folds the element name, 1 the searched text, 2 neither.
    EXPECT_EQ(nameVon(liste.sucheElementF("ABC", 0, 0, 0)), "AbC");
    EXPECT_EQ(liste.sucheElementF("abc", 0, 0, 0), nullptr);
    EXPECT_EQ(nameVon(liste.sucheElementF("abc", 0, 0, 1)), "AbC");
    EXPECT_EQ(liste.sucheElementF("ABC", 0, 0, 1), nullptr);
    EXPECT_EQ(nameVon(liste.sucheElementF("abC", 0, 0, 2)), "abC");
    EXPECT_EQ(liste.sucheElementF("abc", 0, 0, 2), nullptr);
    EXPECT_EQ(faenger.anzahl(), 0u);

    // A failed search forgets the current element; the read-only form leaves it.
    ASSERT_NE(liste.sucheElementF("abC", 0, 2), nullptr);
    EXPECT_EQ(nameVon(liste.aktuellesElement()), "abC");
    liste.sucheElementF("y", 0, 2);
    EXPECT_EQ(liste.aktuellesElement(), nullptr);
    EXPECT_EQ(liste.entferneAktuell(), nullptr);
    EXPECT_EQ(liste.elementAnzahl(), 2);
    liste.sucheElementF("AbC", 0, 2);
    const Liste& lesend = liste;
    EXPECT_EQ(lesend.sucheElementF("z", 0, 0, 2), nullptr);
    EXPECT_EQ(nameVon(liste.aktuellesElement()), "AbC");
}

// Removal hands the element back; an owning list deletes what it holds,
// a lending one does not.
TEST(Liste, RemovalAndOwnership) {
    MeldungsFaenger faenger;
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
        EXPECT_EQ(besitzend.elementAnzahl(), 0);
        EXPECT_EQ(Element::lebende, vorher + 2);
        delete e;

        for (const char* n : {"a", "b", "c"}) besitzend.haengeAn(new Element(n));
        delete besitzend.entferne(String("b"));
        EXPECT_EQ(kette(besitzend), (Namen{"a", "c"}));
        leihend.haengeAn(&fremd);
        besitzend.loesche();
        EXPECT_EQ(Element::lebende, vorher + 1);
        besitzend.haengeAn(new Element("z"));
        EXPECT_EQ(besitzend.elementAnzahl(), 1);
    }
    EXPECT_EQ(anzahlListen, listen);
    EXPECT_EQ(Element::lebende, vorher + 1);  // only `fremd` is left
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(Liste, ChainIteratorFiltersStaysAtEndAndSurvivesRemoval) {
    Liste liste(1);
    for (const char* n : {"a", "b", "c", "d"}) liste.haengeAn(new Element(n, n[0] % 2 ? 1 : 2));
    EXPECT_EQ(kette(liste, 1), (Namen{"a", "c"}));
    EXPECT_EQ(kette(liste, 2), (Namen{"b", "d"}));
    EXPECT_EQ(liste.iteriert(), 1);
    EXPECT_EQ(liste.naechstes(), nullptr);  // stays at the end until rewound

    // Removing the element just delivered does not derail the walk.
    Namen gesehen;
    liste.zurueckSetzen();
    while (ListenElement* e = liste.naechstes()) {
        gesehen.push_back(nameVon(e));
        delete liste.entferne(e->liefereName());
    }
    EXPECT_EQ(gesehen, (Namen{"a", "b", "c", "d"}));
    EXPECT_EQ(liste.elementAnzahl(), 0);
}

// --------------------------------------------------------------------------
// ListeSort

TEST(ListeSort, TreeInCollationOrderChainInInsertionOrder) {
    ListeSort liste(1, ListenKomparator::standard(), "Kommandos");
    for (const char* n : {"b", "ab", "\x84", "Ab", "aa", "B"}) liste.anfuegeElement(new Element(n));
    EXPECT_EQ(sortiert(liste), (Namen{"aa", "Ab", "ab", "\x84", "B", "b"}));
    EXPECT_EQ(kette(liste), (Namen{"b", "ab", "\x84", "Ab", "aa", "B"}));
    EXPECT_EQ(liste.sortiert(), 1);

    std::ostringstream aus;
    aus << liste;
    EXPECT_EQ(aus.str(), "Kommandos\naa\nAb\nab\n\x84\nB\nb\n");
}

TEST(ListeSort, RemoveCurrentTakesTheLastSearchHit) {
    ListeSort liste(1);
    for (const char* n : {"m", "c", "x", "a"}) liste.anfuegeElement(new Element(n));
    EXPECT_EQ(liste.entferneAktuell(), nullptr);  // no search yet

    ASSERT_NE(liste.sucheElementF("c", 0, 0, 2), nullptr);
    ListenElement* e = liste.entferneAktuell();
    EXPECT_EQ(nameVon(e), "c");
    delete e;
    EXPECT_EQ(liste.entferneAktuell(), nullptr);  // the position went with it
    EXPECT_EQ(sortiert(liste), (Namen{"a", "m", "x"}));
    EXPECT_EQ(kette(liste), (Namen{"m", "x", "a"}));

    // A position found through the chain (folded search) works too.
    ASSERT_NE(liste.sucheElementF("X", 0, 0, 0), nullptr);
    delete liste.entferneAktuell();
    EXPECT_EQ(sortiert(liste), (Namen{"a", "m"}));

    // A stale position is dropped when its element leaves by name.
    ASSERT_NE(liste.sucheElementF("m", 0, 0, 2), nullptr);
    delete liste.entferne("m");
    EXPECT_EQ(liste.entferneAktuell(), nullptr);
    EXPECT_EQ(liste.elementAnzahl(), 1);
}

TEST(ListeSort, TreeWalkStartsOverAndSurvivesRemovingWhatItDelivered) {
    ListeSort liste(1);
    const Namen alle = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"};
    for (auto it = alle.rbegin(); it != alle.rend(); ++it) liste.anfuegeElement(new Element(*it, *it == "b"));
    EXPECT_EQ(sortiert(liste, 1), (Namen{"b"}));
    EXPECT_EQ(nameVon(liste.naechstesSortiert()), "a") << "intended: starts over behind its end";
    Namen gesehen;
    liste.zurueckSetzen();
    int n = 0;
    while (ListenElement* e = liste.naechstesSortiert()) {
        gesehen.push_back(nameVon(e));
        if (n++ % 2 == 0) delete liste.entferne(e->liefereName());
    }
    EXPECT_EQ(gesehen, alle);
    EXPECT_EQ(sortiert(liste), (Namen{"b", "d", "f", "h", "j"}));
}

TEST(ListeSort, OwnedComparatorAndChainOnlySearch) {
    struct Umgekehrt : ListenKomparator {
        Umgekehrt() : ListenKomparator(1, 0) {}
        int vergleiche(const ListenElement& a, const ListenElement& b) const override {
            return -ListenKomparator::vergleiche(a, b);
        }
    };
    MeldungsFaenger faenger;
    ListeSort liste(1, new Umgekehrt, "U");
    for (const char* n : {"a", "c", "b"}) liste.anfuegeElement(new Element(n));
    EXPECT_EQ(sortiert(liste), (Namen{"c", "b", "a"}));
    EXPECT_EQ(nameVon(liste.sucheElementF("b", 0, 2)), "b");
    EXPECT_EQ(faenger.anzahl(), 0u);

    liste.setzeKomparator(ListenKomparator::standard());
    EXPECT_EQ(liste.elementAnzahl(), 0);
    liste.anfuegeElement(new Element("z"));
    liste.anfuegeElement(new Element("y"));
    EXPECT_EQ(sortiert(liste), (Namen{"y", "z"}));
}

TEST(ListeSortDeathTest, ProgrammingErrorsEndTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ListeSort(0, nullptr), "cmp != NULL.*colsrtxx.*52");
    EXPECT_DEATH(ListeSort(0).setzeKomparator(nullptr), "einKomparator != NULL.*liste.*691");
    EXPECT_EXIT(ListeSort(0).baum().inhalt(Position{}), ::testing::ExitedWithCode(1),
                "Sorted Collection is empty");
    ListeSort liste(1);
    liste.anfuegeElement(new Element("a"));
    EXPECT_EXIT(liste.baum().inhalt(Position{}), ::testing::ExitedWithCode(1),
                "Illegal Sorted Collection Position");
    const Position gut{&liste.baum(), liste.baum().wurzel()};
    EXPECT_EQ(liste.baum().inhalt(gut), liste.baum().wurzel());
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

// Walks the child links (never the threads) and collects the in-order
// sequence; returns the height, or -1 after recording a fault.
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
    const int erwartet = differenz == 0    ? BasisNode::BALANCIERT
                         : differenz == -1 ? BasisNode::LINKSLASTIG
                         : differenz == 1  ? BasisNode::RECHTSLASTIG
                                           : -1;
    if (erwartet < 0) return fehler = "height difference " + std::to_string(differenz), -1;
    if (k->balance() != erwartet)
        return fehler = "balance bits " + std::to_string(k->balance()) + " for difference " +
                        std::to_string(differenz),
               -1;
    return 1 + std::max(links, rechts);
}

::testing::AssertionResult baumStimmt(const ListeSort& liste, const Referenz& soll) {
    const ElementCltn& baum = liste.baum();
    std::vector<const BasisNode*> folge;
    std::string fehler;
    if (baum.wurzel() && pruefeTeilbaum(baum.wurzel(), folge, fehler) < 0)
        return ::testing::AssertionFailure() << fehler;
    if (static_cast<std::size_t>(baum.anzahl()) != soll.size() || folge.size() != soll.size())
        return ::testing::AssertionFailure()
               << "count " << baum.anzahl() << ", nodes " << folge.size() << ", expected " << soll.size();
    auto it = soll.begin();
    for (std::size_t i = 0; i < folge.size(); ++i, ++it) {
        const BasisNode* k = folge[i];
        if (nameVon(ElementCltn::element(k)) != *it)
            return ::testing::AssertionFailure()
                   << "in-order " << i << ": " << nameVon(ElementCltn::element(k)) << " expected " << *it;
        const BasisNode* vor = i > 0 ? folge[i - 1] : nullptr;
        const BasisNode* nach = i + 1 < folge.size() ? folge[i + 1] : nullptr;
        if (k->linksFaden() && k->links() != vor)
            return ::testing::AssertionFailure() << "left thread of " << *it;
        if (k->rechtsFaden() && k->rechts() != nach)
            return ::testing::AssertionFailure() << "right thread of " << *it;
        if (SortedCltn::nachfolger(k) != nach || SortedCltn::vorgaenger(k) != vor)
            return ::testing::AssertionFailure() << "stepping from " << *it;
    }
    if (baum.erstes() != (folge.empty() ? nullptr : folge.front()))
        return ::testing::AssertionFailure() << "erstes";
    if (liste.elementAnzahl() != static_cast<std::int32_t>(soll.size()))
        return ::testing::AssertionFailure() << "chain count " << liste.elementAnzahl();
    return ::testing::AssertionSuccess();
}

}  // namespace

TEST(SortedCltn, RemovingATwoChildRootKeepsTheTreeSound) {
    ListeSort liste(1);
    Referenz soll;
    for (const char* n : {"d", "b", "f", "a", "c", "e", "g"}) {
        liste.anfuegeElement(new Element(n));
        soll.insert(n);
    }
    ASSERT_TRUE(baumStimmt(liste, soll));
    ASSERT_EQ(nameVon(ElementCltn::element(liste.baum().wurzel())), "d");
    for (int runde = 0; runde < 7; ++runde) {
        const std::string wurzel = nameVon(ElementCltn::element(liste.baum().wurzel()));
        delete liste.entferne(wurzel);
        soll.erase(wurzel);
        ASSERT_TRUE(baumStimmt(liste, soll)) << "after removing root " << wurzel;
    }
    EXPECT_EQ(liste.baum().wurzel(), nullptr);
}

// Random inserts and removals through every entry point of ListeSort, with
// the whole tree checked after each step.
TEST(SortedCltn, RandomOperationsMatchAReferenceSet) {
    MeldungsFaenger faenger;  // duplicate and missing-name reports are expected
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
