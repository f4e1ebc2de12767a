// Argument classes read through whole command texts: the token each class
// accepts, empty places and defaults, the Bool forms' placeholder, and the
// messages of wrong arguments.
#include <gtest/gtest.h>

#include "KdoTestHilfe.h"
#include "language/KdoArgumente.h"

namespace {

struct Fall {
    const char* signatur;
    const char* aufruf;
    int ergebnis;
    const char* werte;    // null: not checked
    const char* labels;
};

void pruefe(const Fall* faelle, std::size_t anzahl) {
    for (std::size_t i = 0; i < anzahl; ++i) {
        const Fall& f = faelle[i];
        auto k = kdoKommando(f.signatur);
        ASSERT_EQ(k->pruefeOk(), 1) << f.signatur;
        const KdoLauf l = kdoLauf(*k, f.aufruf);
        EXPECT_EQ(l.ergebnis, f.ergebnis) << f.signatur << "  " << f.aufruf;
        if (f.werte) {
            EXPECT_EQ(l.werte, f.werte) << f.signatur << "  " << f.aufruf;
        }
        EXPECT_EQ(l.labels, f.labels) << f.signatur << "  " << f.aufruf;
    }
}

const Fall zahlen[] = {
    {"Integer i", "f(12)", 1, "12", ""},
    {"Integer i", "f( -5 )", 1, "-5", ""},
    {"Integer i", "f(+7)", 1, "7", ""},
    {"Integer i", "f()", 1, "0", ""},
    {"Integer i", "f( )", 1, "0", ""},
    {"Integer i", "f(2147483647)", 1, "2147483647", ""},
    {"Integer i", "f(-2147483648)", 1, "-2147483648", ""},
    {"Integer i", "f(2147483648)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(12abc)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(0x10)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(/)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(1 2)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(-)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(1234567890123456)", 0, nullptr, "CMD-WRONGARG"},
    {"Integer i", "f(1", 0, nullptr, "CMD-ARGPARENTHESIS"},
    {"Integer i", "f(1,2)", 0, "1", "CMD-TOOMANYARG"},
    {"Integer a Integer b", "f(,7)", 1, "0|7", ""},
    {"Integer a Integer b", "f(3)", 1, "3|0", ""},
    {"Integer a Integer b", "f(3,)", 1, "3|0", ""},
    {"Integer a Integer b", "f(3,", 0, nullptr, "CMD-WRONGARG"},

    {"IntegerHex h", "f(1F)", 1, "1F", ""},
    {"IntegerHex h", "f(0x1F)", 1, "1F", ""},
    {"IntegerHex h", "f(0X1f)", 1, "1F", ""},
    {"IntegerHex h", "f(-1)", 1, "FFFFFFFF", ""},
    {"IntegerHex h", "f(FFFFFFFF)", 1, "FFFFFFFF", ""},
    {"IntegerHex h", "f(00000000000001F)", 1, "1F", ""},   // 15 characters
    {"IntegerHex h", "f(000000000000001F)", 0, nullptr, "CMD-WRONGARG"},
    {"IntegerHex h", "f(100000000)", 0, nullptr, "CMD-WRONGARG"},
    {"IntegerHex h", "f(0x)", 0, nullptr, "CMD-WRONGARG"},
    {"IntegerHex h", "f(G)", 0, nullptr, "CMD-WRONGARG"},

    {"BoolInteger i", "f(12)", 1, "12", ""},
    {"BoolInteger i", "f(/)", 1, "/", ""},
    {"BoolInteger i", "f(-1)", 0, nullptr, "CMD-WRONGARG"},   // no sign in the Bool form
    {"BoolInteger i", "f(F)", 0, nullptr, "CMD-WRONGARG"},

    {"BoolIntegerHex h", "f(/)", 1, "/", ""},
    {"BoolIntegerHex h", "f( / )", 1, "/", ""},
    {"BoolIntegerHex h", "f()", 1, "/", ""},
    {"BoolIntegerHex h", "f(F)", 1, "F", ""},
    {"BoolIntegerHex h", "f(0x10)", 1, "10", ""},
    {"BoolIntegerHex h", "f(-)", 0, nullptr, "CMD-WRONGARG"},
    {"BoolIntegerHex h", "f(/x)", 0, nullptr, "CMD-WRONGARG"},
    {"BoolIntegerHex h", "f(1G)", 0, nullptr, "CMD-WRONGARG"},
    {"BoolIntegerHex h", "f(/", 0, nullptr, "CMD-ARGPARENTHESIS"},

    {"Phys p", "f(1.5)", 1, "1.5", ""},
    {"Phys p", "f(-2e3)", 1, "-2000", ""},
    {"Phys p", "f(abc)", 0, nullptr, "CMD-WRONGARG"},
    {"Phys p", "f(1.5x)", 0, nullptr, "CMD-WRONGARG"},
};

TEST(KdoArgumente, Numbers) {
    pruefe(zahlen, std::size(zahlen));
}

const Fall wahrheitUndTexte[] = {
    {"Bool b", "f(YES)", 1, "y", ""},
    {"Bool b", "f(Ja)", 1, "y", ""},
    {"Bool b", "f(j)", 1, "y", ""},
    {"Bool b", "f(y)", 1, "y", ""},
    {"Bool b", "f(NEIN)", 1, "n", ""},
    {"Bool b", "f(no)", 1, "n", ""},
    {"Bool b", "f(N)", 1, "n", ""},
    {"Bool b", "f(maybe)", 0, nullptr, "CMD-WRONGARG"},
    {"Bool b", "f(/)", 0, nullptr, "CMD-WRONGARG"},

    {"Wort w", "f(abc.d_1$%)", 1, "abc.d_1$%", ""},
    {"Wort w", "f(aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa)", 1, "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", ""},
    {"Wort w", "f(aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa)", 0, nullptr, "CMD-WRONGARG"},   // 33 bytes
    {"Wort w", "f(a b)", 0, nullptr, "CMD-WRONGARG"},
    {"Wort w", "f(\"x\")", 0, nullptr, "CMD-WRONGARG"},
    {"BoolWort w", "f(/)", 1, "/", ""},
    {"BoolWort w", "f(name)", 1, "name", ""},
    {"BoolWort w", "f(-x)", 0, nullptr, "CMD-WRONGARG"},
    {"NameInListe n", "f(abc)", 1, "abc", ""},
    {"BoolNameInListe n", "f(/)", 1, "/", ""},
    {"BoolNameInListe n", "f(abc)", 1, "abc", ""},

    {"LString s", "f(\"a,b)\")", 1, "a,b)", ""},
    {"LString s", "f(\"\")", 1, "", ""},   // a value, not an empty place
    {"LString s", "f(\"a\nb\")", 1, "a\nb", ""},
    {"LString s", "f(\"a\\\"b\")", 1, "a\"b", ""},
    {"LString s", "f(abc)", 0, nullptr, "CMD-WRONGARG"},
    {"LString s", "f(\"abc)", 0, nullptr, "CMD-WRONGARG"},
    {"String s", "f(\"a b\")", 1, "a b", ""},
    {"String s", "f(\"a\nb\")", 0, "", "CMD-WRONGARG-TOOLONG"},
    {"String s", "f(\"a\\\nb\")", 1, "ab", ""},
    // A default written over two lines: backslash and line end vanish.
    {"String format", "f(\"<Bytes\\\\\\\"<> \\\">\\\n\")", 1, "<Bytes\\\"<> \">", ""},
    {"RegExpr r", "f(\"[a-z]*\")", 1, "[a-z]*", ""},
    {"RegExpr r", "f([a-z]*)", 0, nullptr, "CMD-WRONGARG"},

    {"DateiName d", "f(c:\\x\\a.hex)", 1, "c:\\x\\a.hex", ""},
    {"DateiName d", "f(/)", 1, "/", ""},
    {"DateiName d", "f()", 1, "x.x", ""},
    {"DateiName d", "f( a.hex )", 1, "a.hex", ""},
    {"DateiName d", "f(\"a b\")", 0, nullptr, "CMD-WRONGARG"},
    {"DateiPfad d", "f(dir/a)", 1, "dir/a", ""},

    {"Enum{Intel,Motorola,Binaer} t", "f(Motorola)", 1, "Motorola", ""},
    {"Enum{Intel,Motorola,Binaer} t", "f()", 1, "Intel", ""},
    {"Enum{Intel,Motorola,Binaer} t", "f(intel)", 0, nullptr, "CMD-WRONGARG"},
    {"Enum{Intel,Motorola,Binaer} t", "f(", 0, nullptr, ""},   // empty token: no message

    {"ParameterListe p", "f(abc)", 1, "abc", ""},
    {"ParameterListe p", "f()", 1, "", ""},
    {"ParameterListe p", "f(a b)", 0, nullptr, "CMD-WRONGARG"},
    {"ParameterListe p", "f(a,b)", 0, nullptr, "CMD-TOOMANYARG"},   // one parameter only
};

TEST(KdoArgumente, TruthValuesTextsFilesEnumerations) {
    pruefe(wahrheitUndTexte, std::size(wahrheitUndTexte));
}

TEST(KdoArgumente, WrongArgumentLayoutShowsTheWholeToken) {
    struct {
        const char* signatur;
        const char* aufruf;
        const char* label;
        const char* detail;
        const char* funktion;
    } faelle[] = {
        {"Integer i", "f(12abc)", "CMD-WRONGARG", "f(12abc)\n\t     Integer  i: 12abc",
         "KdoArgumentInteger::interpretiere"},
        {"Integer a Integer b", "f(1, 2 3)", "CMD-WRONGARG", "f(1, 2 3)\n\t     Integer  b: 2 3",
         "KdoArgumentInteger::interpretiere"},
        {"Enum{a,b} e", "f(c)", "CMD-WRONGARG", "f(c)\n\t     Enum{a,b}  e: c",
         "KdoArgumentEnum::interpretiere"},
        {"BoolIntegerHex h", "f(-5)", "CMD-WRONGARG", "f(-5)\n\t     BoolIntegerHex  h: -5",
         "KdoArgumentBoolIntegerHex::interpretiere"},
        {"String s", "f(\"a\nb\")", "CMD-WRONGARG-TOOLONG", "f(\"a\nb\")\n\t     String  s: a\nb",
         "KdoArgumentString::interpretiere"},
        {"Integer i", "f(1", "CMD-ARGPARENTHESIS", "f(1", "KdoArgumentInteger::interpretiere"},
    };
    for (const auto& f : faelle) {
        auto k = kdoKommando(f.signatur);
        const KdoLauf l = kdoLauf(*k, f.aufruf);
        ASSERT_EQ(l.meldungen.size(), 1u) << f.aufruf;
        EXPECT_EQ(l.meldungen[0].label, f.label);
        EXPECT_EQ(l.meldungen[0].detail, f.detail);
        EXPECT_EQ(l.meldungen[0].funktion, f.funktion);
        EXPECT_EQ(l.meldungen[0].level, 'E');
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
}

TEST(KdoArgumente, DefaultLineWithEmptyPlaceKeepsNeutralValue) {
    auto k = kdoKommando("Wort epromName Bool schliesseImmer DateiName d", "schliesse");
    EXPECT_EQ(kdoLauf(*k, "schliesse( , NO, /)", 1).ergebnis, 1);
    EXPECT_EQ(kdoWerte(*k, true), "|n|/");
    EXPECT_EQ(kdoLauf(*k, "schliesse(a)").werte, "a|n|/");
    EXPECT_EQ(kdoLauf(*k, "schliesse(,yes, b.hex)").werte, "|y|b.hex");
}

TEST(KdoArgumente, DefinitionKeepsWhatWasReadBeforeAFailure) {
    auto k = kdoKommando("Integer i BoolIntegerHex h");
    kdoLauf(*k, "f(5, 10)", 1);
    EXPECT_EQ(kdoLauf(*k, "f(6, x)", 1).ergebnis, 0);
    EXPECT_EQ(kdoWerte(*k, true), "6|10");
    EXPECT_EQ(kdoLauf(*k, "f()").werte, "6|10");
    EXPECT_EQ((*k)[1].liefereArgWertBool(), 1);
}

TEST(KdoArgumente, EnumDeliversTheIndex) {
    auto k = kdoKommando("Enum{Intel,Motorola_S3S7,Binaer} t");
    kdoLauf(*k, "f(Binaer)");
    EXPECT_EQ((*k)[0].liefereArgWertInt(), 2);
    std::ostringstream s;
    (*k)[0].ausgabe(s);
    EXPECT_EQ(s.str(), "Enum{Intel,Motorola_S3S7,Binaer}");
}

TEST(KdoArgumente, StringsDeliverTheirText) {
    auto k = kdoKommando("String s LString l Wort w DateiName d");
    ASSERT_EQ(kdoLauf(*k, "f(\"x y\", \"a\"\"b\", w1, dir/n.ext;2)").ergebnis, 1);
    EXPECT_EQ((*k)[0].liefereArgWertStr(), "x y");
    EXPECT_EQ((*k)[1].liefereArgWertStr(), "a\"b");
    EXPECT_EQ((*k)[2].liefereArgWertStr(), "w1");
    EXPECT_EQ((*k)[3].liefereArgWertDatei().liefereName(), "n");
    EXPECT_EQ((*k)[3].liefereArgWertDatei().liefereExtension(), "ext");
}

}  // namespace
