// The argument base: accessors of the wrong type, the stream helpers of the
// parsing frame, and the accessors with their own messages.
#include <gtest/gtest.h>

#include <sstream>

#include "KdoTestHilfe.h"
#include "foundation/DynArray.h"
#include "language/KdoArgumente.h"

namespace {

TEST(KdoArgument, WrongAccessorReportsWithTypeWords) {
    KdoArgumentWort w("w");
    KdoArgumentEnum e("e", "a,b");
    struct {
        const char* funktion;
        const char* detail;
        void (*ruf)(KdoArgument&);
    } faelle[] = {
        {"KdoArgument::liefereArgWertInt", "w (Wort) <-> dataInteger ", [](KdoArgument& a) { a.liefereArgWertInt(); }},
        {"KdoArgument::liefereArgWertIntHex", "w (Wort) <-> adrInteger ", [](KdoArgument& a) { a.liefereArgWertIntHex(); }},
        {"KdoArgument::liefereArgWertCharHex", "w (Wort) <-> unsigned char ", [](KdoArgument& a) { a.liefereArgWertCharHex(); }},
        {"KdoArgument::setzeArgWertPhys", "w (Wort) <-> dataPhys ", [](KdoArgument& a) { a.setzeArgWertPhys(1.0); }},
        {"KdoArgument::liefereArgWertBool", "w (Wort) <-> YesNo ", [](KdoArgument& a) { a.liefereArgWertBool(); }},
        {"KdoArgument::liefereArgWertListe", "w (Wort) <-> Liste ", [](KdoArgument& a) { a.liefereArgWertListe(); }},
        {"KdoArgument::setzeArgWertDatei", "w (Wort) <-> DateiName ", [](KdoArgument& a) { a.setzeArgWertDatei(DateiName("a")); }},
        {"KdoArgument::liefereArgWertKdoObjekt", "w (Wort) <-> KdoObjekt ", [](KdoArgument& a) { a.liefereArgWertKdoObjekt(); }},
        {"KdoArgument::initWPListe", "w (Wort) <-> WPListe ", [](KdoArgument& a) { a.initWPListe(); }},
        {"KdoArgument::liefereAnzahlWPStr", "w (Wort) <-> WPStrListe ", [](KdoArgument& a) { a.liefereAnzahlWPStr(); }},
        {"KdoArgument::liefereArgWertDynArrStr", "w (Wort) <-> ParameterListe ", [](KdoArgument& a) { a.liefereArgWertDynArrStr(); }},
    };
    for (const auto& f : faelle) {
        MeldungsFaenger faenger;
        f.ruf(w);
        ASSERT_EQ(faenger.anzahl(), 1u) << f.funktion;
        EXPECT_EQ(faenger.letzte().label, "CMD-WRONGARGMETHOD");
        EXPECT_EQ(faenger.letzte().funktion, f.funktion);
        EXPECT_EQ(faenger.letzte().detail, f.detail);
        EXPECT_EQ(faenger.letzte().level, 'E');
    }
    // The type text of a class with its own `ausgabe` shows in the detail.
    MeldungsFaenger faenger;
    e.liefereArgWertStr();
    EXPECT_EQ(faenger.letzte().detail, "e (Enum{a,b}) <-> String ");
}

TEST(KdoArgument, EnumValuesOnlyFromAnEnumeration) {
    MeldungsFaenger faenger;
    KdoArgumentInteger i("i");
    EXPECT_EQ(i.liefereEnumWerte(), nullptr);
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "NOFUNC");
    EXPECT_EQ(faenger.letzte().funktion, "KdoArgument::liefereEnumWerte");
    EXPECT_EQ(faenger.letzte().detail, "NULL");
    EXPECT_EQ(faenger.letzte().level, 'W');

    KdoArgumentEnum e("e", "hex,ascii");
    const TextFeld* namen = e.liefereEnumWerte();
    ASSERT_NE(namen, nullptr);
    EXPECT_EQ(namen->fuellstand(), 2);
    EXPECT_STREQ(namen->text(1), "ascii");
}

TEST(KdoArgument, EmptyPlaceAndEndOfPlace) {
    struct {
        const char* text;
        int leer;
        const char* rest;   // what the stream holds afterwards
    } leerFaelle[] = {
        {"(,x)", 1, ",x)"},
        {"( )", 1, ")"},
        {",  ,", 1, ","},
        {")", 1, ")"},
        {"(5)", 0, "5)"},
        {", 5", 0, "5"},
        {"5", 0, "5"},
    };
    for (const auto& f : leerFaelle) {
        std::istringstream s(f.text);
        EXPECT_EQ(KdoArgument::istLeer(s), f.leer) << f.text;
        s.clear();
        std::string rest((std::istreambuf_iterator<char>(s)), std::istreambuf_iterator<char>());
        EXPECT_EQ(rest, f.rest) << f.text;
    }
    struct {
        const char* text;
        int ende;
        const char* rest;
    } endeFaelle[] = {{",a", 1, ",a"}, {")", 1, ")"}, {"ab", 0, "b"}, {"", 0, ""}};
    for (const auto& f : endeFaelle) {
        std::istringstream s(f.text);
        EXPECT_EQ(KdoArgument::folgtEnde(s), f.ende) << f.text;
        s.clear();
        std::string rest((std::istreambuf_iterator<char>(s)), std::istreambuf_iterator<char>());
        EXPECT_EQ(rest, f.rest) << f.text;
    }
}

TEST(KdoArgument, CharHexWarnsAboveAByte) {
    auto k = kdoKommando("IntegerHex h");
    kdoLauf(*k, "f(FF)");
    {
        MeldungsFaenger faenger;
        EXPECT_EQ((*k)[0].liefereArgWertCharHex(), 0xFF);
        EXPECT_EQ(faenger.anzahl(), 0u);
    }
    kdoLauf(*k, "f(0x100)");
    MeldungsFaenger faenger;
    EXPECT_EQ((*k)[0].liefereArgWertCharHex(), 0);   // 256 cut to the byte
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "CMD-VALTOOBIG");
    EXPECT_EQ(faenger.letzte().funktion, "KdoArgument::liefereArgWertCharHex");
    EXPECT_EQ(faenger.letzte().detail, "h (IntegerHex) <-> dataInteger ");
}

TEST(KdoArgument, BoolFormSettersMarkTheValueGiven) {
    KdoArgumentBoolIntegerHex h("h");
    std::ostringstream s;
    h.zeigeWert(s);
    EXPECT_EQ(s.str(), "/");   // untouched: the placeholder
    h.setzeArgWertIntHex(0x1A);
    EXPECT_EQ(h.liefereArgWertBool(), 1);
    h.zeigeWert(s);
    EXPECT_EQ(s.str(), "/1A");
    h.setzeArgWertBool(0);
    h.zeigeWert(s);
    EXPECT_EQ(s.str(), "/1A/");

    KdoArgumentBoolWort w("w");
    w.setzeArgWertStr("abc");
    EXPECT_EQ(w.liefereArgWertBool(), 1);
    EXPECT_EQ(w.liefereArgWertStr(), "abc");
}

TEST(KdoArgument, EnumSetterTakesOnlyKnownIndexes) {
    KdoArgumentEnum e("e", "a,b,c");
    MeldungsFaenger faenger;
    e.setzeArgWertInt(2);
    EXPECT_EQ(e.liefereArgWertInt(), 2);
    EXPECT_EQ(faenger.anzahl(), 0u);
    e.setzeArgWertInt(3);
    EXPECT_EQ(e.liefereArgWertInt(), 2);
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "CMD-INDEXINVALID");
    EXPECT_EQ(faenger.letzte().funktion, "KdoArgumentEnum::setzeArgWertInt");
    EXPECT_EQ(faenger.letzte().detail, "3");
    EXPECT_EQ(faenger.letzte().level, 'W');
    e.setzeArgWertInt(-1);
    EXPECT_EQ(e.liefereArgWertInt(), 2);
    EXPECT_EQ(faenger.anzahl(), 2u);
}

TEST(KdoArgument, TypeNamesAndCodesFollowTheTable) {
    const char* namen[] = {"Integer", "BoolInteger", "IntegerHex", "BoolIntegerHex", "Phys", "Bool",
                           "Wort", "BoolWort", "NameInListe", "BoolNameInListe", "LString", "String",
                           "NamenInListe", "BoolNamenInListe", "DateiName", "DateiPfad", "KdoObjekt",
                           "BoolKdoObjekt", "RegExpr", "Enum", "WPListe", "WPStrListe", "ParameterListe"};
    for (int code = 0; code < static_cast<int>(KdoArgTyp::Anzahl); ++code) {
        auto a = erzeugeKdoArgument(namen[code], "x", nullptr);
        ASSERT_NE(a, nullptr) << namen[code];
        EXPECT_EQ(static_cast<int>(a->liefereTyp()), code) << namen[code];
        EXPECT_EQ(a->liefereTypName(), namen[code]);
    }
}

}  // namespace
