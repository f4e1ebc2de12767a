// The object tree: relations of full names, path parsing, insertion,
// removal with the current object moving up, and the search rules.
#include "KdoTestHilfe.h"

namespace {

std::string voll(KdoObjektBasis* o) { return o ? o->liefereVollenNamen().str() : "(null)"; }

TEST(KdoRelation, JudgesFullNames) {
    struct Fall {
        const char* a;
        const char* b;
        int erwartet;
    } faelle[] = {
        {"<Kiv>Kiv", "<Kiv>Kiv.<Eprom>a", 0},
        {"<Kiv>Kiv.<Eprom>a", "<Kiv>Kiv.<Eprom>b", 1},
        {"<Kiv>Kiv.<Eprom>a", "<Kiv>Kiv.<Eprom>a", 1},  // equal non-root names count as brothers
        {"<Kiv>Kiv.<Eprom>a", "<Kiv>Kiv", 2},
        {"<Kiv>Kiv.<Eprom>a", "<Kiv>Kiv.<Eprom>b.<Eprom>c", 3},
        // plain substring search: containing counts as descending
        {"<Eprom>a", "<Kiv>Kiv.<Eprom>ab.<Eprom>c", 0},
    };
    for (const Fall& f : faelle) {
        KdoObjekt a("", f.a), b("", f.b);
        EXPECT_EQ(kdoRelation(&a, &b), f.erwartet) << f.a << " / " << f.b;
    }
}

TEST(KdoObjektPfad, ParsesPathsAndStopsSilently) {
    struct Fall {
        const char* text;
        std::vector<std::pair<std::string, std::string>> elemente;  // (typ, name)
    } faelle[] = {
        {"<Kiv>Kiv.<Eprom>a", {{"Kiv", "Kiv"}, {"Eprom", "a"}}},
        {" a . b.c ", {{"", "a"}, {"", "b"}, {"", "c"}}},
        {"< Ep rom >x", {{"Eprom", "x"}}},
        {"$x%_1", {{"", "$x%_1"}}},
        {"<Eprom>", {}},       // a type alone adds no element
        {"a-b", {{"", "a"}}},  // stray character ends the parse
        {"<E-x>a", {}},
    };
    for (const Fall& f : faelle) {
        KdoObjektPfad p(f.text);
        ASSERT_EQ(p.anzahl(), static_cast<int>(f.elemente.size())) << f.text;
        for (int i = 0; i < p.anzahl(); ++i) {
            EXPECT_EQ(p[i].typ.str(), f.elemente[i].first) << f.text;
            EXPECT_EQ(p[i].name.str(), f.elemente[i].second) << f.text;
        }
        EXPECT_EQ(p[p.anzahl()].name, "");
        EXPECT_EQ(p[-1].typ, "");
    }
}

// A tree with the root "<Kiv>Kiv" as the tree in force.
class KdoBaumTest : public ::testing::Test {
protected:
    void SetUp() override {
        wurzel = std::make_unique<TypObjekt>("Kiv", "Kiv");
        wurzel->setzeVollenNamen("<Kiv>Kiv");
        laufzeit.setzeBaum(std::make_unique<KdoBaum>(wurzel.get(), kdoRelation, kdoVergleich,
                                                     kdoNamensVergleich, kdoLoesche));
    }
    // Inserts below the current object; the new one becomes current.
    TypObjekt* neu(const char* typ, const char* name) {
        objekte.push_back(std::make_unique<TypObjekt>(typ, name));
        EXPECT_EQ(kdoBaum()->fuegeEin(objekte.back().get()), 1);
        return objekte.back().get();
    }
    // To the root, then down by the full name.
    void gehe(KdoObjektBasis* o) {
        while (kdoBaum()->vater()) {}
        if (o != wurzel.get()) {
            ASSERT_EQ(kdoBaum()->suche(o->liefereVollenNamen(), 1), o);
        }
    }

    std::unique_ptr<TypObjekt> wurzel;
    std::vector<std::unique_ptr<TypObjekt>> objekte;
    KdoLaufzeit laufzeit;  // after the objects: its tree goes first
};

TEST_F(KdoBaumTest, RemovalMovesTheCurrentObjectUp) {
    TypObjekt* a = neu("Eprom", "a");
    TypObjekt* x = neu("Eprom", "x");
    TypObjekt* y = neu("Eprom", "y");
    // Removing the father of the current object: current goes to its father.
    EXPECT_EQ(kdoBaum()->entferne(x), 1);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), a);
    EXPECT_EQ(voll(x), "");
    EXPECT_EQ(voll(y), "");  // the subtree went with it
    EXPECT_EQ(kdoBaum()->entferne(x), 0);
    EXPECT_EQ(kdoBaum()->sohn(), 0);

    kdoBaum()->vater();
    TypObjekt* b = neu("Eprom", "b");
    // Removing an object outside the current path leaves the current one.
    EXPECT_EQ(kdoBaum()->entferne(a), 1);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), b);
    // Removing the current object itself.
    EXPECT_EQ(kdoBaum()->entferne(b), 1);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), wurzel.get());
    KdoBaumKnoten* it = nullptr;
    EXPECT_EQ(kdoBaum()->naechsterSohn(it), nullptr);

    // A destroyed object leaves the tree by itself.
    auto o = std::make_unique<TypObjekt>("Eprom", "weg");
    kdoBaum()->fuegeEin(o.get());
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), o.get());
    o.reset();
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), wurzel.get());
    EXPECT_EQ(kdoBaum()->suche("weg", 0), nullptr);
}

TEST_F(KdoBaumTest, SearchRulesEachFindTheirCase) {
    TypObjekt* a = neu("Eprom", "a");
    TypObjekt* x = neu("Eprom", "x");
    TypObjekt* y = neu("Eprom", "y");
    kdoBaum()->vater();
    kdoBaum()->vater();
    kdoBaum()->vater();
    TypObjekt* b = neu("Eprom", "b");
    kdoBaum()->vater();
    TypObjekt* c = neu("Eprom", "c");

    gehe(wurzel.get());
    EXPECT_EQ(kdoBaum()->suche("a", 0), a);                    // son by short name
    EXPECT_EQ(kdoBaum()->suche("<Eprom>a.<Eprom>x", 0), x);    // relative path
    EXPECT_EQ(kdoBaum()->suche("<Kiv>Kiv.<Eprom>a", 0), a);    // full name
    EXPECT_EQ(kdoBaum()->suche("x", 0), nullptr);              // grandson by bare name
    EXPECT_EQ(kdoBaum()->suche("<Kiv>Kiv", 0), wurzel.get());  // the root by its full name

    gehe(a);
    EXPECT_EQ(kdoBaum()->suche(".<Eprom>a", 0), a);          // rule 1: itself
    EXPECT_EQ(kdoBaum()->suche("b", 0), b);                  // rule 5: brother
    EXPECT_EQ(kdoBaum()->suche("<Kiv>Kiv.<Eprom>c", 0), c);  // rule 4: later brother by full name
    EXPECT_EQ(kdoBaum()->suche("<Eprom>x.<Eprom>y", 0), y);

    gehe(y);
    EXPECT_EQ(kdoBaum()->suche("<Eprom>x", 0), x);                 // rule 6: ancestor
    EXPECT_EQ(kdoBaum()->suche("<Eprom>x.<Eprom>q", 0), nullptr);  // only one step finds an ancestor
    EXPECT_EQ(kdoBaum()->suche("<Eprom>c", 0), c);                 // rule 3: from the root
    EXPECT_EQ(kdoBaum()->suche("<Kiv>Kiv", 0), nullptr);           // the root is not an ancestor match
    EXPECT_EQ(kdoBaum()->suche("<Other>x", 0), nullptr);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), y);

    EXPECT_EQ(kdoBaum()->suche("<Eprom>a", 1), a);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), a);
}

TEST_F(KdoBaumTest, DeepTreeDoesNotRecurse) {
    for (int i = 0; i < 1000; ++i) neu("Eprom", "n");
    // From the deepest node the root-relative rule comes first.
    EXPECT_EQ(kdoBaum()->suche("<Eprom>n", 0), objekte.front().get());
    EXPECT_EQ(kdoBaum()->entferne(objekte.front().get()), 1);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), wurzel.get());
}

}  // namespace
