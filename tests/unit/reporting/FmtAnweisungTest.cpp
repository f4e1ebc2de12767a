#include "reporting/FmtAnweisung.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/Meldungsaufnahme.h"

namespace {

class TestObjekt : public FmtObjekt {
public:
    int ersetzeVariable(FmtVariable& v) override {
        static const String namen("Name\nBytes\nLeer\nChksum\nText\nVier\n ");
        const int i = v.liefereIndex(namen);
        if (i < 0 || i >= static_cast<int>(werte.size()))
            return v.unbekannteVariable("TestObjekt::ersetzeVariable", *this);
        for (const std::string& w : werte[static_cast<size_t>(i)]) {
            std::ostringstream s;  // the way providers hand over numbers
            s << w;
            v.ausgabe(s);
        }
        return 1;
    }
    String liefereName() const override { return "Testobjekt"; }

    std::vector<std::vector<std::string>> werte = {{"hallo Welt"}, {"1", "2", "3"}, {},
                                                   {"1A2B"},       {"a<b&\"c"},     {"1", "2", "3", "4"}};
};

class FmtTest : public ::testing::Test {
protected:
    Meldungsaufnahme auf;
    std::string lauf(const std::string& anweisung, int* ok = nullptr, const String& start = String(),
                     const String& stop = String()) {
        FmtAnweisung a{String(anweisung)};
        std::ostringstream o;
        const int r = a.ausgabe(o, objekt, start, stop);
        if (ok) *ok = r;
        return o.str();
    }

    TestObjekt objekt;
};

TEST_F(FmtTest, Statements) {
    // statement, output, the one report expected ("" for none), result
    const std::tuple<const char*, const char*, const char*, int> faelle[] = {
        {R"(a\<b\nc\\d\>a>b"c\)", "a<b\nc\\d>a>b\"c", "", 1},  // a lone backslash at the end is dropped
        {"x<Chksum>y<Name>z<Leer><Bytes>", "x1A2Byhallo Weltz123", "", 1},
        {"<", "********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege||E", 0},
        {R"(<Bytes\"ab>c)", "********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege|Bytes\\\"ab>c|E", 0},
        {"a<Chksum>b<Name", "a1A2Bb********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege|Name|E", 0},
        {R"(<Bytes\"-"><Bytes\"a<>b">)", "-1-2-3a1ba2ba3", "", 1},
        {R"(<Vier\"a<>b<>c"><Leer\"<> ">)", "a1b2ca3b4", "", 1},
        {R"(<Bytes\"[\<, \>]"><Bytes\"[\<<>, \>]"><Leer\"[\<, \>]">)", "[, 1, 2, 3][1, 2, 3]", "", 1},
        {R"(<Name\upp\quote><Name\low\cap>)", "\"HALLO WELT\"hallo welt", "", 1},  // cap comes first
        {R"(<Text\quote\sgml><Bytes\?\"<>,">)", "\"a&lt;b&amp;\\\"c\",,", "", 1},
        {R"(<Name\upper\lowercase><Name\"upp">)", "hallo weltupphallo Welt", "", 1},
        {R"(<Chksum\tag\"wert"><Bytes\tag\"b\<x\>y"><Leer\tag\"w">)", "<wert>1A2B</wert><x>b123y</x>", "", 1},
        {"<Name(arg)><Name(>", "hallo Welthallo Welt", "", 1},
        {"<Name()>", "hallo Welt",
         "FMTVAR-NOAGRINTOBRACKETS|FmtVariable::FmtVariable|Format-Variable: <Name()>|W", 1},
        {"<>", "", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: |E", 1},
        {R"(<(Bytes\?>x<:>y<)><(Leer\?>x<:>y<)><(Bytes>x<:>y<)>)", "xy123x", "", 1},
        {R"(<(Leer\?>a<(Bytes\?>b<:>c<)>d<:>e<(Bytes\?>f<:>g<)><)>)", "ef", "", 1},
        {R"(<(Foo\?>t<:>f<)>)", "t", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: Foo|E", 1},
        {"a<)>b<)>c<:>d<Chksum>", "abc", "", 1},
        {"<:ignoriert>x<)egal>y", "y", "", 1},
    };
    for (const auto& [anweisung, erwartet, meldung, ergebnis] : faelle) {
        auf.leere();
        int ok = -1;
        EXPECT_EQ(lauf(anweisung, &ok), erwartet) << anweisung;
        EXPECT_EQ(ok, ergebnis) << anweisung;
        EXPECT_EQ(auf.anzahl() ? auf.meldungen().front().satz() : "", meldung) << anweisung;
        EXPECT_LE(auf.anzahl(), 1u) << anweisung;
    }
}

TEST_F(FmtTest, StartStopNamesAndIndexLookup) {
    const struct {
        const char *anweisung, *start, *stop, *erwartet;
    } faelle[] = {
        {"a<Name>b<Chksum>c", "Chksum", "", "1A2Bc"},
        {"a<Name>b<Chksum>c", "Name", "Chksum", "hallo Weltb"},
        {"a<Name>b", "Fehlt", "", ""},
        {"a<Name>b", "", "Fehlt", "ahallo Weltb"},
        {R"(<(Bytes\?>x<)>y)", "Bytes", "", "xy"},  // a condition as start pops back
    };
    for (const auto& f : faelle)
        EXPECT_EQ(lauf(f.anweisung, nullptr, f.start, f.stop), f.erwartet) << f.anweisung << " " << f.start;

    FmtVariable v("Chksum");
    EXPECT_EQ(v.liefereIndex("AnfAdr\nEndAdr\nChksum\nChksumTyp\n "), 2);
    EXPECT_EQ(v.liefereIndex("AnfAdr\nEndAdr\nChksum\nChksumTyp\n "), 2);
    EXPECT_EQ(v.liefereIndex("Chksum\n "), 0);
    EXPECT_EQ(v.liefereIndex("AnfAdr\nChksum"), -1);  // the last name needs the closing blank
    EXPECT_EQ(v.liefereIndex("ChksumTyp\n "), -1);
    // names are compared on at most 19 bytes a line
    EXPECT_EQ(FmtVariable("ABCDEFGHIJKLMNOPQRS").liefereIndex("x\nABCDEFGHIJKLMNOPQRSTUV\n "), 1);
    EXPECT_EQ(FmtVariable("ABCDEFGHIJKLMNOPQRST").liefereIndex("ABCDEFGHIJKLMNOPQRST\n "), -1);
    EXPECT_EQ(FmtVariable(R"(Name(a b)\upp\"v<>n")").liefereArgument(), "a b");
    EXPECT_EQ(v.ausgabe(String("x")), 0);  // a value outside a run goes nowhere
}

TEST_F(FmtTest, ManyValuesAndLongStatements) {
    // Linear work and no deep recursion, also when freeing the chain.
    objekt.werte[1].assign(50000, "7");
    std::string anweisung;
    for (int i = 0; i < 50000; ++i) anweisung += R"(<(Leer\?>x<:>y)";
    anweisung += R"(<Bytes\"<>,">)";
    const std::string aus = lauf(anweisung);
    EXPECT_EQ(aus.size(), 50000u + 2 * 50000 - 1);
}

TEST_F(FmtTest, RandomStatementsNeverBreak) {
    auf.mitschreiben = false;
    std::mt19937 zufall(4711);
    const char zeichen[] = "<>()\\\":?\"n<>abtagupp()\\\\ ";
    for (int runde = 0; runde < 20000; ++runde) {
        std::string anweisung;
        const int laenge = static_cast<int>(zufall() % 40);
        for (int i = 0; i < laenge; ++i) {
            const unsigned r = zufall() % 40;
            anweisung += r < sizeof zeichen - 1 ? zeichen[r] : static_cast<char>(zufall() % 255 + 1);
        }
        // occasionally a known name right after an opening bracket
        if (runde % 3 == 0) anweisung.insert(0, "<Bytes");
        int ok = -1;
        lauf(anweisung, &ok, runde % 7 == 0 ? String("Bytes") : String(),
             runde % 11 == 0 ? String("Name") : String());
        ASSERT_TRUE(ok == 0 || ok == 1) << anweisung;
    }
    EXPECT_GT(auf.gezaehlt, 0);
}

}  // namespace
