// The argument classes: the token each class accepts, empty places and
// defaults, the Bool forms' placeholder, and the arguments that refer to
// lists, objects and value pairs.
#include "KdoTestHilfe.h"
#include "foundation/Liste.h"
#include "language/KdoArgumente.h"

namespace {

// One call of a command with a one- or two-argument signature: its result,
// the values shown afterwards (null: not checked) and the labels raised.
struct Fall {
    const char* signatur;
    const char* aufruf;
    int ergebnis;
    const char* werte;
    const char* labels;
};

const Fall aufrufe[] = {
    {"Integer i", "f( -5 )", 1, "-5", ""},
    {"Integer i", "f()", 1, "0", ""},
    {"Integer i", "f(2147483647)", 1, "2147483647", ""},
    {"Integer i", "f(-2147483648)", 1, "-2147483648", ""},
    {"Integer i", "f(2147483648)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(12abc)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(1", 0, nullptr, "CMD-ARGPARENTHESIS"},
    {"Integer i", "f(1,2)", 0, "1", "CMD-TOOMANYARG"},
    {"Integer a Integer b", "f(,7)", 1, "0|7", ""},
    {"Integer a Integer b", "f(3)", 1, "3|0", ""},
    {"Integer a Integer b", "f(3,", 0, nullptr, "CMD-WRONGARG"},

    {"IntegerHex h", "f(0x1F)", 1, "1F", ""},
    {"IntegerHex h", "f(-1)", 1, "FFFFFFFF", ""},
    {"IntegerHex h", "f(FFFFFFFF)", 1, "FFFFFFFF", ""},
    {"IntegerHex h", "f(00000000000001F)", 1, "1F", ""},  // 15 characters
    {"IntegerHex h", "f(000000000000001F)", 0, nullptr, "CMD-WRONGARG"},
    {"IntegerHex h", "f(100000000)", 0, nullptr, "CMD-WRONGARG"},
    {"IntegerHex h", "f(0x)", 0, nullptr, "CMD-WRONGARG"},

    {"BoolInteger i", "f(/)", 1, "/", ""},
    {"BoolInteger i", "f(-1)", 0, nullptr, "CMD-WRONGARG"},  // no sign in the Bool form
    {"BoolInteger i", "f(F)", 0, nullptr, "CMD-WRONGARG"},

    {"BoolIntegerHex h", "f(/)", 1, "/", ""},
    {"BoolIntegerHex h", "f()", 1, "/", ""},
    {"BoolIntegerHex h", "f(-)", 0, nullptr, "CMD-WRONGARG"},
    {"BoolIntegerHex h", "f(/x)", 0, nullptr, "CMD-WRONGARG"},
    {"BoolIntegerHex h", "f(/", 0, nullptr, "CMD-ARGPARENTHESIS"},

    {"Phys p", "f(1.5)", 1, "1.5", ""},
    {"Phys p", "f(-2e3)", 1, "-2000", ""},

    {"Bool b", "f(Ja)", 1, "y", ""},
    {"Bool b", "f(no)", 1, "n", ""},
    {"Bool b", "f(maybe)", 0, nullptr, "CMD-WRONGARG"},
    {"Bool b", "f(/)", 0, nullptr, "CMD-WRONGARG"},

    {"Wort w", "f(abc.d_1$%)", 1, "abc.d_1$%", ""},
    {"Wort w", "f(aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa)", 1, "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", ""},
    {"Wort w", "f(aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa)", 0, nullptr, "CMD-WRONGARG"},  // 33 bytes
    {"BoolWort w", "f(/)", 1, "/", ""},
    {"BoolWort w", "f(-x)", 0, nullptr, "CMD-WRONGARG"},
    // Every kind of word character can begin a word.
    {"BoolWort w", "f(Z$)", 1, "Z$", ""},
    {"BoolWort w", "f(9)", 1, "9", ""},
    {"BoolWort w", "f($)", 1, "$", ""},
    {"BoolWort w", "f(%)", 1, "%", ""},
    {"BoolWort w", "f(.)", 1, ".", ""},
    {"BoolWort w", "f(_)", 1, "_", ""},
    {"BoolNameInListe n", "f(abc)", 1, "abc", ""},

    {"LString s", "f(\"a,b)\")", 1, "a,b)", ""},
    {"LString s", "f(\"\")", 1, "", ""},  // a value, not an empty place
    {"LString s", "f(\"a\nb\")", 1, "a\nb", ""},
    {"LString s", "f(\"a\\\"b\")", 1, "a\"b", ""},
    {"LString s", "f(abc)", 0, nullptr, "CMD-WRONGARG"},
    {"LString s", "f(\"abc)", 0, nullptr, "CMD-WRONGARG"},
    {"String s", "f(\"a\nb\")", 0, "", "CMD-WRONGARG-TOOLONG"},
    {"String s", "f(\"a\\\nb\")", 1, "ab", ""},
    // A default written over two lines: backslash and line end vanish.
    {"String format", "f(\"<Bytes\\\\\\\"<> \\\">\\\n\")", 1, "<Bytes\\\"<> \">", ""},
    {"RegExpr r", "f(\"[a-z]*\")", 1, "[a-z]*", ""},
    {"RegExpr r", "f([a-z]*)", 0, nullptr, "CMD-WRONGARG"},

    {"DateiName d", "f(c:\\x\\a.hex)", 1, "c:\\x\\a.hex", ""},
    {"DateiName d", "f(/)", 1, "/", ""},
    {"DateiName d", "f()", 1, "x.x", ""},
    {"DateiName d", "f(\"a b\")", 0, nullptr, "CMD-WRONGARG"},

    {"Enum{Intel,Motorola,Binaer} t", "f()", 1, "Intel", ""},
    {"Enum{Intel,Motorola,Binaer} t", "f(intel)", 0, nullptr, "CMD-WRONGARG"},
    {"Enum{Intel,Motorola,Binaer} t", "f(", 0, nullptr, ""},  // empty token: no message

    {"ParameterListe p", "f(abc)", 1, "abc", ""},
    {"ParameterListe p", "f()", 1, "", ""},
    {"ParameterListe p", "f(a b)", 0, nullptr, "CMD-WRONGARG"},
    {"ParameterListe p", "f(a,b)", 0, nullptr, "CMD-TOOMANYARG"},  // one parameter only
};

TEST(KdoArgumente, EachTypeReadsItsToken) {
    for (const Fall& f : aufrufe) {
        SCOPED_TRACE(std::string(f.signatur) + "  " + f.aufruf);
        auto k = kdoKommando(f.signatur);
        ASSERT_EQ(k->pruefeOk(), 1);
        const KdoLauf l = kdoLauf(*k, f.aufruf);
        EXPECT_EQ(l.ergebnis, f.ergebnis);
        if (f.werte) {
            EXPECT_EQ(l.werte, f.werte);
        }
        EXPECT_EQ(l.labels, f.labels);
    }
}

TEST(KdoArgumente, DefaultLineSetsDefaults) {
    auto k = kdoKommando("IntegerHex s BoolIntegerHex e IntegerHex w", "setze");
    EXPECT_EQ(kdoLauf(*k, "setze(0, /, 0)", 1).ergebnis, 1);
    EXPECT_EQ(kdoWerte(*k, true), "0|/|0");
    EXPECT_EQ(kdoLauf(*k, "setze(1, 2, 3)").werte, "1|2|3");
    EXPECT_EQ((*k)[1].liefereArgWertBool(), 1);
    // Empty places, and missing places at the end, take the defaults again.
    EXPECT_EQ(kdoLauf(*k, "setze(5)").werte, "5|/|0");
    EXPECT_EQ((*k)[1].liefereArgWertBool(), 0);
    EXPECT_EQ(kdoLauf(*k, "setze(5,,FF)").werte, "5|/|FF");
    // A run without definition leaves the defaults alone.
    EXPECT_EQ(kdoWerte(*k, true), "0|/|0");

    // A failed definition keeps what was read before the failure.
    auto d = kdoKommando("Integer i BoolIntegerHex h");
    kdoLauf(*d, "f(5, 10)", 1);
    EXPECT_EQ(kdoLauf(*d, "f(6, x)", 1).ergebnis, 0);
    EXPECT_EQ(kdoWerte(*d, true), "6|10");
    EXPECT_EQ(kdoLauf(*d, "f()").werte, "6|10");
    EXPECT_EQ((*d)[1].liefereArgWertBool(), 1);
}

// ---------------------------------------------------------------------------
// Arguments that refer to lists, objects, value pairs and parameters

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

TEST(KdoArgumentListen, NamesSelectElementsOfTheObjectsList) {
    KdoListe liste("L");
    ListenObjekt objekt;
    auto *namen = new KdoKommando("f", "NamenInListe n", nullptr),
         *boolNamen = new KdoKommando("g", "BoolNamenInListe n", nullptr);
    liste.fuegeEin(namen), liste.fuegeEin(boolNamen);
    liste.setzeAktuellesObjekt(&objekt);
    struct {
        KdoKommando* k;
        const char* aufruf;
        int ergebnis;  // of liefereArgWertListe
        int gesetzt;   // -1: not a Bool form
        const char* auswahl;
        const char* labels;
    } faelle[] = {
        {namen, "f(\"a, c\")", 1, -1, "212", ""},
        {namen, "f(b)", 1, -1, "121", ""},
        {namen, "f(\"a,zz\")", 0, -1, "211", "LIST-NOSUCHELE"},
        {namen, "f()", 1, -1, "222", ""},          // no names: all selected
        {boolNamen, "g(\"/\")", 1, 0, "111", ""},  // the quoted placeholder: nothing selected
        {boolNamen, "g( \" / \")", 1, 0, "111", ""},
        {boolNamen, "g(\"b\")", 1, 1, "121", ""},
        {boolNamen, "g(c)", 1, 1, "112", ""},
        {boolNamen, "g(\"\")", 1, 1, "222", ""},
    };
    for (const auto& f : faelle) {
        ASSERT_EQ(kdoLauf(*f.k, f.aufruf).ergebnis, 1) << f.aufruf;
        Meldungsaufnahme faenger;
        EXPECT_EQ((*f.k)[0].liefereArgWertListe(), f.ergebnis) << f.aufruf;
        if (f.gesetzt >= 0) {
            EXPECT_EQ((*f.k)[0].liefereArgWertBool(), f.gesetzt) << f.aufruf;
        }
        EXPECT_EQ(objekt.auswahl(), f.auswahl) << f.aufruf;
        EXPECT_EQ(kdoLabels(faenger.meldungen()), f.labels) << f.aufruf;
    }
    // A list set from outside counts as given.
    ASSERT_EQ(kdoLauf(*boolNamen, "g(\"/\")").ergebnis, 1);
    (*boolNamen)[0].setzeArgWertListe("a");
    EXPECT_EQ((*boolNamen)[0].liefereArgWertBool(), 1);
    // The bare placeholder reaches the word reader.
    EXPECT_EQ(kdoLauf(*boolNamen, "g(/)").labels, "CMD-WRONGARG");
    EXPECT_EQ(kdoLauf(*boolNamen, "g(\"-\")").labels, "CMD-WRONGARG");

    // An object without lists reports twice.
    KdoObjekt ohne("obj");
    liste.setzeAktuellesObjekt(&ohne);
    Meldungsaufnahme faenger;
    EXPECT_EQ((*namen)[0].liefereArgWertListe(), 0);
    EXPECT_EQ(kdoLabels(faenger.meldungen()), "INT-METHOD-IN-SUBCLASS-MISSING,INT-CMD-ARG-LIST-NOT-EXIST");
}

TEST(KdoArgumentListen, ObjectPathsResolveWhenDelivered) {
    TypObjekt wurzel{"Kiv", "Kiv"}, a{"Eprom", "a"}, k{"Other", "k"};
    wurzel.setzeVollenNamen("<Kiv>Kiv");
    KdoLaufzeit laufzeit;
    laufzeit.setzeBaum(
        std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
    KdoBaum& baum = *laufzeit.baum();
    baum.fuegeEin(&a);
    baum.vater();
    baum.fuegeEin(&k);
    baum.vater();

    auto kdo = kdoKommando("KdoObjekt{Eprom} o KdoObjekt{Eprom,Other} p BoolKdoObjekt q");
    EXPECT_EQ(kdoLauf(*kdo, "f( <Eprom> a , k)").werte, "<Eprom>a|k|/");  // blanks dropped
    {
        Meldungsaufnahme faenger;
        EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), &a);
        EXPECT_EQ((*kdo)[1].liefereArgWertKdoObjekt(), &k);
        EXPECT_EQ((*kdo)[2].liefereArgWertKdoObjekt(), nullptr);  // empty Bool form: no message
        EXPECT_EQ((*kdo)[2].liefereArgWertBool(), 0);
        EXPECT_EQ(faenger.anzahl(), 0u);
    }
    kdoLauf(*kdo, "f(a, k, a)");
    EXPECT_EQ((*kdo)[2].liefereArgWertKdoObjekt(), &a);
    EXPECT_EQ((*kdo)[2].liefereArgWertBool(), 1);

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
        ASSERT_EQ(kdoLauf(*kdo, f.aufruf).ergebnis, 1) << f.aufruf;  // nothing checked while parsing
        Meldungsaufnahme faenger;
        EXPECT_EQ((*kdo)[0].liefereArgWertKdoObjekt(), nullptr);
        ASSERT_EQ(faenger.anzahl(), 1u) << f.aufruf;
        EXPECT_EQ(faenger.letzte().label, f.label);
        EXPECT_EQ(faenger.letzte().detail, f.detail);
    }
}

TEST(KdoArgumentListen, ValuePairs) {
    auto k = kdoKommando("WPListe w WPStrListe t");
    ASSERT_EQ(kdoLauf(*k, "f(100/1.5 200/ 2.5 -10/3, 1000/\"Text\" 20/\"a, b)\")").ergebnis, 1);
    KdoArgument& w = (*k)[0];
    KdoArgument& t = (*k)[1];
    ASSERT_EQ(w.liefereAnzahlWP(), 3);
    EXPECT_EQ(w.liefereArgWertWP(0)->iWert(), 0x100);
    EXPECT_DOUBLE_EQ(w.liefereArgWertWP(1)->liefereWert(), 2.5);
    EXPECT_EQ(w.liefereArgWertWP(2)->iWert(), -16);
    ASSERT_EQ(t.liefereAnzahlWPStr(), 2);
    EXPECT_EQ(t.liefereArgWertWPStr(0)->iwert, 0x1000);
    EXPECT_EQ(t.liefereArgWertWPStr(1)->text, "a, b)");

    // A failure keeps the list of its own place; earlier places were taken.
    struct {
        const char* aufruf;
        const char* labels;
        int paare;
    } fehler[] = {
        {"f(100 1.5)", "CMD-WRONGARG", 3},
        {"f(x/1)", "CMD-WRONGARG", 3},
        {"f(100/1.5", "CMD-ARGPARENTHESIS", 3},
        {"f(1/1, 1000/Text)", "CMD-WRONGARG", 1},
        {"f(1/1, 1000/\"Text", "CMD-ARGPARENTHESIS", 1},
    };
    for (const auto& f : fehler) {
        const KdoLauf l = kdoLauf(*k, f.aufruf);
        EXPECT_EQ(l.ergebnis, 0) << f.aufruf;
        EXPECT_EQ(l.labels, f.labels) << f.aufruf;
        EXPECT_EQ(w.liefereAnzahlWP(), f.paare) << f.aufruf;
        EXPECT_EQ(t.liefereAnzahlWPStr(), 2) << f.aufruf;
    }

    // An empty place empties the list despite its default.
    kdoLauf(*k, "f(1/1.5)", 1);
    EXPECT_EQ(kdoLauf(*k, "f()").ergebnis, 1);
    EXPECT_EQ(w.liefereAnzahlWP(), 0);
    EXPECT_EQ(kdoWerte(*k), "|");
    EXPECT_NE(kdoWerte(*k, true), "|");
    kdoLauf(*k, "f()", 1);
    EXPECT_EQ(kdoWerte(*k, true), "|");
}

}  // namespace
