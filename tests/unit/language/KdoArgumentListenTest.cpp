// Arguments that refer to lists and objects: names selected in an object's
// list, command-object paths resolved through the tree, value-pair lists and
// parameter lists.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "KdoTestHilfe.h"
#include "foundation/Liste.h"
#include "language/KdoArgumente.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"

namespace {

class Element : public ListenElement {
public:
    explicit Element(const char* name) : name_(name) {}
    String liefereName() const override { return name_; }

private:
    String name_;
};

// An object with one list of names for its arguments.
class ListenObjekt : public KdoObjekt {
public:
    ListenObjekt() : KdoObjekt("o"), namen(1, "Namen") {
        for (const char* n : {"a", "b", "c"}) namen.haengeAn(new Element(n));
    }
    Liste* liefereListeFuerKdoArg(const String&) override { return &namen; }
    std::string auswahl() {
        std::string t;
        namen.zurueckSetzen();
        while (ListenElement* e = namen.naechstes()) t += std::to_string(e->auswahl);
        return t;
    }
    Liste namen;
};

class NamenTest : public ::testing::Test {
protected:
    KdoKommando& kommando(const char* signatur) {
        auto* k = new KdoKommando("f", 1, signatur, nullptr);
        liste.fuegeEin(k);
        liste.setzeAktuellesObjekt(&objekt);
        return *k;
    }
    KdoListe liste{"L"};
    ListenObjekt objekt;
};

TEST_F(NamenTest, NamesSelectElementsOfTheObjectsList) {
    KdoKommando& k = kommando("NamenInListe n");
    struct {
        const char* aufruf;
        int ergebnis;
        const char* auswahl;
        const char* labels;
    } faelle[] = {
        {"f(\"a, c\")", 1, "212", ""},
        {"f(b)", 1, "121", ""},
        {"f(\"a,zz\")", 0, "211", "LIST-NOSUCHELE"},
        {"f()", 1, "222", ""},   // no names: all selected
    };
    for (const auto& f : faelle) {
        ASSERT_EQ(kdoLauf(k, f.aufruf).ergebnis, 1) << f.aufruf;
        MeldungsFaenger faenger;
        EXPECT_EQ(k[0].liefereArgWertListe(), f.ergebnis) << f.aufruf;
        EXPECT_EQ(objekt.auswahl(), f.auswahl) << f.aufruf;
        EXPECT_EQ(kdoLabels(faenger.meldungen()), f.labels) << f.aufruf;
    }
}

TEST_F(NamenTest, BoolFormTakesTheQuotedPlaceholder) {
    KdoKommando& k = kommando("BoolNamenInListe n");
    struct {
        const char* aufruf;
        int gesetzt;
        const char* auswahl;
    } faelle[] = {
        {"f(\"/\")", 0, "111"},   // nothing selected
        {"f( \" / \")", 0, "111"},
        {"f(\"b\")", 1, "121"},
        {"f(c)", 1, "112"},
        {"f(\"\")", 1, "222"},
    };
    for (const auto& f : faelle) {
        ASSERT_EQ(kdoLauf(k, f.aufruf).ergebnis, 1) << f.aufruf;
        EXPECT_EQ(k[0].liefereArgWertBool(), f.gesetzt) << f.aufruf;
        EXPECT_EQ(k[0].liefereArgWertListe(), 1) << f.aufruf;
        EXPECT_EQ(objekt.auswahl(), f.auswahl) << f.aufruf;
    }
    // The bare placeholder reaches the word reader.
    EXPECT_EQ(kdoLauf(k, "f(/)").labels, "CMD-WRONGARG");
    EXPECT_EQ(kdoLauf(k, "f(\"-\")").labels, "CMD-WRONGARG");
}

TEST(KdoArgumentListen, ObjectWithoutListReports) {
    KdoListe liste("L");
    auto* k = new KdoKommando("f", 1, "NamenInListe namen", nullptr);
    liste.fuegeEin(k);
    KdoObjekt ohne("obj");
    liste.setzeAktuellesObjekt(&ohne);
    MeldungsFaenger faenger;
    EXPECT_EQ((*k)[0].liefereArgWertListe(), 0);
    EXPECT_EQ(kdoLabels(faenger.meldungen()), "INT-METHOD-IN-SUBCLASS-MISSING,INT-CMD-ARG-LIST-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().detail, "Obj: obj  Liste: namen");
    EXPECT_EQ(faenger.letzte().funktion, "KdoArgumentNamenInListe::liefereListe");
}

class TypObjekt : public KdoObjekt {
public:
    TypObjekt(const char* typ, const char* name) : KdoObjekt(name), typ_(typ) {}
    const String& liefereKdoOTyp() const override { return typ_; }

private:
    String typ_;
};

class ObjektArgumentTest : public ::testing::Test {
protected:
    void SetUp() override {
        wurzel.setzeVollenNamen("<Kiv>Kiv");
        kdoBaum = new KdoBaum(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche);
        kdoBaum->fuegeEin(&a);
        kdoBaum->vater();
        kdoBaum->fuegeEin(&k);
        kdoBaum->vater();
    }
    void TearDown() override {
        delete kdoBaum;
        kdoBaum = nullptr;
    }
    TypObjekt wurzel{"Kiv", "Kiv"};
    TypObjekt a{"Eprom", "a"};
    TypObjekt k{"Other", "k"};
};

TEST_F(ObjektArgumentTest, PathsResolveWhenDelivered) {
    auto kdo = kdoKommando("KdoObjekt{Eprom} o");
    std::ostringstream s;
    (*kdo)[0].ausgabe(s);
    EXPECT_EQ(s.str(), "KdoObjekt(Eprom)");

    EXPECT_EQ(kdoLauf(*kdo, "f(<Eprom>a)").ergebnis, 1);
    EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), &a);
    EXPECT_EQ(kdoLauf(*kdo, "f( <Eprom> a )").werte, "<Eprom>a");   // blanks dropped
    EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), &a);

    struct {
        const char* aufruf;
        const char* label;
        const char* detail;
    } fehler[] = {
        {"f(zz)", "CMD-KDOOBJ-NOTEX", "f(zz)\n\t     KdoObjekt(Eprom)  o: zz"},
        {"f(k )", "CMD-KDOOBJ-TYPINV", "f(k )\n\tKdoObjekt(Eprom) o: k"},
        {"f()", "CMD-KDOOBJ-REQUIRED", ""},
    };
    for (const auto& f : fehler) {
        ASSERT_EQ(kdoLauf(*kdo, f.aufruf).ergebnis, 1) << f.aufruf;   // nothing checked while parsing
        MeldungsFaenger faenger;
        EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), nullptr);
        ASSERT_EQ(faenger.anzahl(), 1u) << f.aufruf;
        EXPECT_EQ(faenger.letzte().label, f.label);
        EXPECT_EQ(faenger.letzte().detail, f.detail);
        EXPECT_EQ(faenger.letzte().funktion, "KdoArgumentKdoObjekt::liefereArgWertKdoObjekt");
    }
}

TEST_F(ObjektArgumentTest, AnyTypeAndTheBoolForm) {
    auto kdo = kdoKommando("KdoObjekt{Eprom,Other} o BoolKdoObjekt p");
    std::ostringstream s;
    (*kdo)[0].ausgabe(s);
    (*kdo)[1].ausgabe(s);
    EXPECT_EQ(s.str(), "KdoObjekt(Eprom,Other)BoolKdoObjekt()");

    EXPECT_EQ(kdoLauf(*kdo, "f(k)").ergebnis, 1);
    MeldungsFaenger faenger;
    EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), &k);
    EXPECT_EQ((*kdo)[1].liefereArgWertKdoObjekt(), nullptr);   // empty: no message
    EXPECT_EQ((*kdo)[1].liefereArgWertBool(), 0);
    EXPECT_EQ(faenger.anzahl(), 0u);

    kdoLauf(*kdo, "f(k, a)");
    EXPECT_EQ((*kdo)[1].liefereArgWertKdoObjekt(), &a);
    EXPECT_EQ((*kdo)[1].liefereArgWertBool(), 1);

    (*kdo)[0].setzeArgWertKdoObjekt(&a);
    EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), &a);
}

TEST(KdoArgumentListen, ValuePairs) {
    auto k = kdoKommando("WPListe w");
    ASSERT_EQ(kdoLauf(*k, "f(100/1.5 200/ 2.5 -10/3)").ergebnis, 1);
    KdoArgument& w = (*k)[0];
    ASSERT_EQ(w.liefereAnzahlWP(), 3);
    EXPECT_EQ(w.liefereArgWertWP(0)->iWert(), 0x100);
    EXPECT_DOUBLE_EQ(w.liefereArgWertWP(1)->liefereWert(), 2.5);
    EXPECT_EQ(w.liefereArgWertWP(2)->iWert(), -16);

    std::ostringstream s;
    w.zeigeWert(s);
    std::istringstream zeilen(s.str());
    std::string zeile;
    std::getline(zeilen, zeile);
    EXPECT_EQ(zeile.rfind("( 100 / ", 0), 0u) << zeile;
    std::getline(zeilen, zeile);
    EXPECT_EQ(zeile.rfind(std::string(45, ' ') + "( 200 / ", 0), 0u) << zeile;

    struct {
        const char* aufruf;
        const char* labels;
    } fehler[] = {
        {"f(100 1.5)", "CMD-WRONGARG"},
        {"f(100/x)", "CMD-WRONGARG"},
        {"f(x/1)", "CMD-WRONGARG"},
        {"f(100/1.5", "CMD-ARGPARENTHESIS"},
        {"f(100/", "CMD-ARGPARENTHESIS"},
    };
    for (const auto& f : fehler) {
        const KdoLauf l = kdoLauf(*k, f.aufruf);
        EXPECT_EQ(l.ergebnis, 0) << f.aufruf;
        EXPECT_EQ(l.labels, f.labels) << f.aufruf;
        EXPECT_EQ(w.liefereAnzahlWP(), 3) << f.aufruf;   // the old list stays
    }
}

TEST(KdoArgumentListen, EmptyPlaceEmptiesThePairListDespiteItsDefault) {
    auto k = kdoKommando("WPListe w");
    kdoLauf(*k, "f(1/1.5)", 1);
    EXPECT_EQ(kdoLauf(*k, "f()").ergebnis, 1);
    EXPECT_EQ((*k)[0].liefereAnzahlWP(), 0);
    std::ostringstream s;
    (*k)[0].zeigeWert(s);
    EXPECT_EQ(s.str(), "");
    (*k)[0].zeigeVorgabe(s);
    EXPECT_NE(s.str(), "");
    kdoLauf(*k, "f()", 1);
    std::ostringstream t;
    (*k)[0].zeigeVorgabe(t);
    EXPECT_EQ(t.str(), "");
}

TEST(KdoArgumentListen, PairAccessors) {
    KdoArgumentWPListe w("w");
    {
        MeldungsFaenger faenger;
        EXPECT_EQ(w.liefereArgWertWP(0), nullptr);
        EXPECT_EQ(faenger.letzte().label, "CMD-LISTEMPTY");
        EXPECT_EQ(faenger.letzte().funktion, "KdoArgummentWPListe::liefereArgWertWP");
        EXPECT_EQ(faenger.letzte().detail, "w");
    }
    w.setzeArgWertWP(9, WertePaar(1, 1.0));   // appended, not placed at 9
    w.setzeArgWertWP(9, WertePaar(2, 2.0));
    w.setzeArgWertWP(0, WertePaar(3, 3.0));
    ASSERT_EQ(w.liefereAnzahlWP(), 2);
    EXPECT_EQ(w.liefereArgWertWP(0)->iWert(), 3);
    {
        MeldungsFaenger faenger;
        EXPECT_EQ(w.liefereArgWertWP(12)->iWert(), 2);   // the last pair
        EXPECT_EQ(faenger.letzte().label, "CMD-INDEXCEEDED");
        EXPECT_EQ(faenger.letzte().detail, "12");
        EXPECT_EQ(faenger.letzte().level, 'W');
    }
    w.initWPListe();
    EXPECT_EQ(w.liefereAnzahlWP(), 0);

    KdoArgumentWPStrListe t("t");
    MeldungsFaenger faenger;
    EXPECT_EQ(t.liefereArgWertWPStr(0), nullptr);
    EXPECT_EQ(faenger.letzte().funktion, "KdoArgummentWPStrListe::liefereArgWertWPStr");
    t.setzeArgWertWPStr(5, WertePaarStr(1, "x"));
    EXPECT_EQ(faenger.letzte().label, "CMD-INDEXINVALID");
    EXPECT_EQ(faenger.letzte().detail, "5");
    EXPECT_EQ(t.liefereAnzahlWPStr(), 1);   // appended all the same
}

TEST(KdoArgumentListen, TextPairs) {
    auto k = kdoKommando("WPStrListe t");
    ASSERT_EQ(kdoLauf(*k, "f(1000/\"Text\" 20/\"a, b)\")").ergebnis, 1);
    KdoArgument& t = (*k)[0];
    ASSERT_EQ(t.liefereAnzahlWPStr(), 2);
    EXPECT_EQ(t.liefereArgWertWPStr(0)->iwert, 0x1000);
    EXPECT_EQ(t.liefereArgWertWPStr(1)->text, "a, b)");
    EXPECT_EQ(kdoLauf(*k, "f(1000/Text)").labels, "CMD-WRONGARG");
    EXPECT_EQ(kdoLauf(*k, "f(1000/\"Text").labels, "CMD-ARGPARENTHESIS");
}

TEST(KdoArgumentListen, ParameterListSharesItsDefaultArray) {
    auto k = kdoKommando("ParameterListe p");
    KdoArgument& p = (*k)[0];
    kdoLauf(*k, "f(erster)", 1);
    kdoLauf(*k, "f()");
    // The same array as the default: a change shows in both.
    p.liefereArgWertDynArrStr()[0] = "geaendert";
    std::ostringstream s;
    p.zeigeVorgabe(s);
    EXPECT_EQ(s.str(), "geaendert");

    p.setzeArgWertStr("a, b,c");
    EXPECT_EQ(p.liefereArgWertStr(), "a,b,c");
    EXPECT_EQ(p.liefereArgWertDynArrStr()[1], "b");
    std::ostringstream t;
    p.zeigeVorgabe(t);
    EXPECT_EQ(t.str(), "geaendert");
}

}  // namespace
