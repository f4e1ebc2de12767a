#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>

#include "foundation/String.h"

// First match zero-based, last one-based; parts clipped to the text.
TEST(String, IndexingSearchAndParts) {
    String s("hello");
    const std::pair<int, char> zeichen[] = {{0, 'h'}, {5, 0}, {99, 0}, {-1, 'o'}, {-5, 'h'}, {-6, 0}};
    for (const auto& [i, c] : zeichen) EXPECT_EQ(s[i], c) << i;
    EXPECT_EQ(String()[-1], 0);
    String p("a.b.c");
    EXPECT_EQ(p.suche("."), 1);
    EXPECT_EQ(p.suchePosition('.'), 4);
    EXPECT_EQ(p.suche("x"), -1);
    const std::tuple<String, const char*> teile[] = {
        {s.teil(1, 3), "ell"},       {s.teil(-5, 2), "he"},   {s.teil(4, 99), "o"},
        {s.teil(9, 2), ""},          {s.links(99), "hello"},  {s.links(-1), ""},
        {s.rechts(99), "hello"},     {s.rechts(2), "lo"},     {s.rechts(-1), ""},
        {String("ab", 3), "ababab"}, {String('-', 3), "---"}, {String(dataInteger(-42)), "-42"}};
    for (const auto& [ist, soll] : teile) EXPECT_EQ(ist, soll);
    EXPECT_EQ(String(std::string("a\0b", 3)).laenge(), 1);  // never holds a NUL
}

TEST(String, CaseWhiteSpaceAndReplacingTouchOnlyAscii) {
    String g(" \t\344Ab z\r\n");
    EXPECT_EQ(g.gross(), " \t\344AB Z\r\n");
    EXPECT_EQ(g.trimme(), "\344AB Z");
    EXPECT_EQ(String(" \t\n\v\f\r").trimme(), "");
    String e("abc");
    EXPECT_EQ(e.ersterGross(3), "abc");
    EXPECT_EQ(e.ersterGross(1), "aBc");
    String t("aaa");
    EXPECT_EQ(t.ersetze("a", "aa"), 3);  // scans on behind the inserted text
    EXPECT_EQ(t, "aaaaaa");
    EXPECT_EQ(String("a<b&c").sgml(), "a&lt;b&amp;c");
}

TEST(String, SplitKeepsEmptyParts) {
    // text, separator, the parts joined by '|'
    const char* const faelle[][3] = {{"a,,b", ",", "a||b"}, {"", ",", ""}, {"a--b--", "--", "a|b|"}};
    for (const auto& f : faelle) {
        int n = 0;
        std::unique_ptr<String[]> teile(String(f[0]).zerlege(f[1], n));
        std::string verbunden = n > 0 ? teile[0].str() : "<none>";
        for (int i = 1; i < n; ++i) verbunden += "|" + teile[i].str();
        EXPECT_EQ(verbunden, f[2]) << f[0];
    }
}

TEST(StringReader, WordStopsAfter32BytesAndAtForeignBytesUntilAtItsStop) {
    std::istringstream in(std::string(33, 'w') + " rest");
    String w;
    EXPECT_EQ(w.liesWort(in), 32);
    EXPECT_EQ(in.get(), 'w');
    std::istringstream in2("$a.b_9%(x");
    EXPECT_EQ(w.liesWort(in2), 7);
    EXPECT_EQ(w, "$a.b_9%");
    EXPECT_EQ(in2.get(), '(');
    // Reading up to a stop byte puts it back; quotes may protect it.
    std::istringstream in4("abc,def");
    EXPECT_EQ(w.liesBis(in4, ","), 3);
    EXPECT_EQ(in4.get(), ',');
    std::istringstream in3("x\"a)b\"y)z");
    EXPECT_EQ(w.liesBisMitQuotes(in3, ")", 1), 5);
    EXPECT_EQ(w, "xa)by");
    EXPECT_EQ(in3.get(), ')');
}

TEST(StringReader, QuotedTextDecodesEscapesAndCountsLines) {
    struct Fall {
        std::string ein;
        int ergebnis;
        std::string text;
        int zeilen;
    };
    const Fall faelle[] = {
        {"\"a\"\"b\"", 3, "a\"b", 0}, {"\"a\\\"b\"", 3, "a\"b", 0}, {"\"a\\nb\"", 3, "a\nb", 0},
        {"\"a\\xb\"", 4, "a\\xb", 0}, {"\"a\\\nb\"", 2, "ab", 1},   {"\"a\nb\"", 3, "a\nb", 1},
        {"\"\"", 0, "", 0},           {"\"open", -1, "", 0},        {"x\"", -1, "", 0},
    };
    for (const auto& f : faelle) {
        std::istringstream in(f.ein);
        String s("junk");
        int zeilen = 0;
        EXPECT_EQ(s.liesQuotiert(in, &zeilen), f.ergebnis) << f.ein;
        EXPECT_EQ(s.str(), f.text) << f.ein;
        EXPECT_EQ(zeilen, f.zeilen) << f.ein;
    }
}

TEST(StringReader, QuoteThenReadGivesEveryTextBack) {
    std::mt19937 zufall(7);
    const char alphabet[] = "ab\"\\\n n";
    for (int runde = 0; runde < 500; ++runde) {
        std::string t;
        int n = zufall() % 12;
        for (int i = 0; i < n; ++i) t += alphabet[zufall() % (sizeof alphabet - 1)];
        int geschrieben = 0, gelesen = 0;
        String q = String(t).quotiere(&geschrieben);
        std::istringstream in(q.str() + "tail");
        String back;
        ASSERT_EQ(back.liesQuotiert(in, &gelesen), static_cast<int>(t.size())) << q;
        EXPECT_EQ(back.str(), t);
        EXPECT_EQ(geschrieben, gelesen);
        EXPECT_EQ(in.get(), 't');
    }
    EXPECT_EQ(String().quotiere(), "\"\"");
}

TEST(StringPuffer, HandsItsTextOverAndStartsAfresh) {
    StringPuffer p(2, 3);
    p << 'a' << 'b' << 'c' << '\0';
    String s(p);
    EXPECT_EQ(s, "abc");
    EXPECT_TRUE(p.abgegeben());
    p.haengeAn('d');
    EXPECT_FALSE(p.abgegeben());
    EXPECT_EQ(String(p), "d");
}

TEST(WertePaar, PhysicalValueChoosesFixedOrScientificNotation) {
    const char* const soll[] = {"0.00",          "1.0000000", "1234567.0", "1.235E+07",
                                "0.00010000000", "1.000E-05", "-2.5000000"};
    const double werte[] = {0.0, 1.0, 1234567.0, 12345678.0, 0.0001, 0.00001, -2.5};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(waehleFormat(8, werte[i], 10), soll[i]) << werte[i];
    std::ostringstream o;
    o << WertePaar(10, 1.0) << ' ' << WertePaarStr(255, "x y");
    EXPECT_EQ(o.str(), "( 0A / 1.0000000 ) ( FF / \"x y\" )");
}
