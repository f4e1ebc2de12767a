// Format statements: every construct run against a small value provider,
// the variable parser's fields, the index cache, and a
// random-input robustness run of the parser.
#include "reporting/FmtAnweisung.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "AufnahmeTest.h"

namespace {

class TestObjekt : public FmtObjekt {
public:
    int ersetzeVariable(FmtVariable& v) override {
        static const String namen("Name\nBytes\nLeer\nChksum\nText\nVier\n ");
        const int i = v.liefereIndex(namen);
        if (i < 0 || i >= static_cast<int>(werte.size()))
            return v.unbekannteVariable("TestObjekt::ersetzeVariable", *this);
        for (const std::string& w : werte[static_cast<size_t>(i)]) v.ausgabe(String(w));
        return 1;
    }
    String liefereName() const override { return "Testobjekt"; }

    std::vector<std::vector<std::string>> werte = {{"hallo Welt"}, {"1", "2", "3"}, {},
                                                   {"1A2B"},       {"a<b&\"c"},     {"1", "2", "3", "4"}};
};

class FmtTest : public AufnahmeTest {
protected:
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

struct Fall {
    const char* anweisung;
    const char* erwartet;
    const char* meldung;  // expected report, "" for none
    int ok;
};

TEST_F(FmtTest, Statements) {
    const Fall faelle[] = {
        // literal text and its escapes
        {"", "", "", 1},
        {R"(a\<b)", "a<b", "", 1},
        {R"(a\nb)", "a\nb", "", 1},
        {R"(a\\b\>)", "a\\b>", "", 1},
        {R"(ab\)", "ab", "", 1},
        {"a>b\"c", "a>b\"c", "", 1},
        // plain variables
        {"<Chksum>", "1A2B", "", 1},
        {"x<Chksum>y<Name>z", "x1A2Byhallo Weltz", "", 1},
        {"<Bytes>", "123", "", 1},
        {"<Leer>", "", "", 1},
        // unclosed variables stand as stars
        {"<", "********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege||E", 0},
        {R"(<Bytes\"ab>c)", "********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege|Bytes\\\"ab>c|E", 0},
        {"a<Chksum>b<Name", "a1A2Bb********\n", "ERRFMTVARIABLE|FmtAnweisung::initUndZerlege|Name|E", 0},
        // separators: before each value, between values, cycling parts
        {R"(<Bytes\"<> ">)", "1 2 3", "", 1},
        {R"(<Bytes\"-">)", "-1-2-3", "", 1},
        {R"(<Bytes\"a<>b">)", "a1ba2ba3", "", 1},
        {R"(<Vier\"a<>b<>c">)", "a1b2ca3b4", "", 1},
        {R"(<Leer\"<> ">)", "", "", 1},
        // text before and after the values, only when there are values
        {R"(<Bytes\"[\<, \>]">)", "[, 1, 2, 3]", "", 1},
        {R"(<Bytes\"[\<<>, \>]">)", "[1, 2, 3]", "", 1},
        {R"(<Leer\"[\<, \>]">)", "", "", 1},
        {R"(<Bytes\"(\<">)", "(123", "", 1},
        {R"x(<Bytes\"\>)">)x", "123)", "", 1},
        // quoted part: \n, escaped quotes and > inside quotes
        {R"(<Bytes\"\n">)", "\n1\n2\n3", "", 1},
        {R"(<Bytes\"\">\"">)", "\">\"1\">\"2\">\"3", "", 1},
        {R"(<Bytes\"\\">)", "\\1\\2\\3", "", 1},
        // value decoration
        {R"(<Name\upp\quote>)", "\"HALLO WELT\"", "", 1},
        {R"(<Name\cap>)", "Hallo Welt", "", 1},
        {R"(<Name\low\cap>)", "hallo welt", "", 1},  // cap comes first
        {R"(<Text\sgml>)", "a&lt;b&amp;\"c", "", 1},
        {R"(<Text\quote\sgml>)", "\"a&lt;b&amp;\\\"c\"", "", 1},
        {R"(<Bytes\?\"<>,">)", ",,", "", 1},
        {R"(<Name\upper\lowercase>)", "hallo welt", "", 1},
        {R"(<Chksum\hex>)", "1A2B", "", 1},
        {R"(<Name\"upp">)", "upphallo Welt", "", 1},  // the quoted part is no option
        // tag rule
        {R"(<Chksum\tag\"wert">)", "<wert>1A2B</wert>", "", 1},
        {R"(<Bytes\tag\"b\<x\>y">)", "<x>b123y</x>", "", 1},
        {R"(<Leer\tag\"wert">)", "", "", 1},
        // arguments
        {"<Name(arg)>", "hallo Welt", "", 1},
        {"<Name()>", "hallo Welt",
         "FMTVAR-NOAGRINTOBRACKETS|FmtVariable::FmtVariable|Format-Variable: <Name()>|W", 1},
        {"<Name(>", "hallo Welt", "", 1},
        // unknown names stand in the output
        {"<Foo>", "Foo", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: Foo|E", 1},
        {"<>", "", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: |E", 1},
        {R"(<Foo\upp\"[\<\>]">)", "[FOO]", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: Foo|E", 1},
        // conditions
        {R"(<(Bytes\?>x<:>y<)>)", "x", "", 1},
        {R"(<(Leer\?>x<:>y<)>)", "y", "", 1},
        {"<(Bytes>x<:>y<)>", "123x", "", 1},
        {R"(<(Chksum\?>[<Chksum>]<)>!)", "[1A2B]!", "", 1},
        {R"(<(Leer\?>[<Chksum>]<)>!)", "!", "", 1},
        {R"(<(Leer\?>a<(Bytes\?>b<:>c<)>d<:>e<(Bytes\?>f<:>g<)><)>)", "ef", "", 1},
        {R"(<(Bytes\?>a<(Leer\?>b<:>c<)>d<:>e<)>)", "acd", "", 1},
        {R"(<(Leer\?>a<(Leer\?>b<:>c<)>d<:>e<)>)", "e", "", 1},
        {R"(<(Foo\?>t<:>f<)>)", "t", "RPL-NO-SUCH-SW|TestObjekt::ersetzeVariable|Testobjekt: Foo|E", 1},
        // else and end without a condition
        {"a<:>b<Chksum>", "a", "", 1},
        {"a<)>b<)>c", "abc", "", 1},
        {"<)><:>x", "", "", 1},
        {"<:ignoriert>x<)egal>y", "y", "", 1},
    };
    for (const Fall& f : faelle) {
        meldungen.clear();
        int ok = -1;
        EXPECT_EQ(lauf(f.anweisung, &ok), f.erwartet) << f.anweisung;
        EXPECT_EQ(ok, f.ok) << f.anweisung;
        const std::string gemeldet = meldungen.empty() ? "" : meldungen.front();
        EXPECT_EQ(gemeldet, f.meldung) << f.anweisung;
        EXPECT_LE(meldungen.size(), 1u) << f.anweisung;
    }
}

TEST_F(FmtTest, StartAndStopNames) {
    struct {
        const char* anweisung;
        const char* start;
        const char* stop;
        const char* erwartet;
    } const faelle[] = {
        {"a<Name>b<Chksum>c", "Chksum", "", "1A2Bc"},
        {"a<Name>b<Chksum>c", "", "Chksum", "ahallo Weltb"},
        {"a<Name>b<Chksum>c", "Name", "Chksum", "hallo Weltb"},
        {"a<Name>b", "Fehlt", "", ""},
        {"a<Name>b", "", "Fehlt", "ahallo Weltb"},
        // a condition that is the start name pops back to the state below
        {R"(<(Bytes\?>x<)>y)", "Bytes", "", "xy"},
    };
    for (const auto& f : faelle)
        EXPECT_EQ(lauf(f.anweisung, nullptr, f.start, f.stop), f.erwartet)
            << f.anweisung << " start " << f.start << " stop " << f.stop;
}

TEST_F(FmtTest, ArgumentAndNumberStyles) {
    // Only a provider sees the argument; of the number styles the later one
    // in table order wins.
    EXPECT_EQ(FmtVariable(R"(Name(a b)\upp\"v<>n")").liefereArgument(), "a b");
    const std::pair<const char*, int> formate[] = {
        {"X", 0},
        {R"(X\dec)", 0x10},
        {R"(X\hex)", 0x240},
        {R"(X\float\hex)", 0x1110},
        {R"(X\dec\hex)", 0x10},
        {R"(X\hexdec)", 0x10},
    };
    for (const auto& [text, format] : formate)
        EXPECT_EQ(FmtVariable(text).liefereZahlenFormat(), format) << text;
}

TEST_F(FmtTest, IndexLookupAndCache) {
    FmtVariable v("Chksum");
    EXPECT_EQ(v.liefereIndex("AnfAdr\nEndAdr\nChksum\nChksumTyp\n "), 2);
    EXPECT_EQ(v.liefereIndex("AnfAdr\nEndAdr\nChksum\nChksumTyp\n "), 2);
    EXPECT_EQ(v.liefereIndex("Chksum\n "), 0);
    // the last name needs the closing blank to count as a line
    EXPECT_EQ(v.liefereIndex("AnfAdr\nChksum"), -1);
    EXPECT_EQ(v.liefereIndex("ChksumTyp\n "), -1);
    EXPECT_EQ(v.liefereIndex(""), -1);
    // names are compared on at most 19 bytes a line
    FmtVariable lang("ABCDEFGHIJKLMNOPQRS");
    EXPECT_EQ(lang.liefereIndex("x\nABCDEFGHIJKLMNOPQRSTUV\n "), 1);
    FmtVariable zuLang("ABCDEFGHIJKLMNOPQRST");
    EXPECT_EQ(zuLang.liefereIndex("ABCDEFGHIJKLMNOPQRST\n "), -1);
}

TEST_F(FmtTest, ValuesOutsideARunAndFromStreams) {
    FmtVariable v("Name");
    EXPECT_EQ(v.ausgabe(String("x")), 0);
    EXPECT_EQ(v.liefereWertAnzahl(), 0);

    struct StromObjekt : FmtObjekt {
        int ersetzeVariable(FmtVariable& var) override {
            for (int i = 10; i < 13; ++i) {
                std::ostringstream s;
                s << std::hex << std::uppercase << i;
                var.ausgabe(s);
            }
            return 1;
        }
        String liefereName() const override { return "Strom"; }
    } strom;
    FmtVariable b(R"(Bytes\low\"<>:">)");
    std::ostringstream o;
    EXPECT_EQ(b.ausgeben(strom, o), 1);
    EXPECT_EQ(o.str(), "a:b:c");
    EXPECT_EQ(b.liefereWertAnzahl(), 3);
    // a second run starts afresh
    o.str("");
    b.ausgeben(strom, o);
    EXPECT_EQ(o.str(), "a:b:c");
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
    mitschreiben = false;
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
    EXPECT_GT(anzahl, 0);
}

}  // namespace
