// Matching and translation with a subject in memory: one table per feature.
// A null `ausgabe` means the subject must not match.
#include <gtest/gtest.h>

#include "MmTestHilfe.h"

namespace {

struct Fall {
    const char* grammatik;
    const char* subjekt;
    const char* ausgabe;
    std::int32_t position;   // checked when not -1
};

void pruefe(const Fall* faelle, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        const Fall& f = faelle[i];
        MmLauf l = mmLauf(f.grammatik, f.subjekt);
        SCOPED_TRACE(std::string("grammar '") + f.grammatik + "' subject '" + f.subjekt + "'");
        if (f.ausgabe) {
            EXPECT_EQ(l.ergebnis, static_cast<std::int32_t>(std::string(f.ausgabe).size()) + 1);
            EXPECT_EQ(l.ausgabe, f.ausgabe);
        } else {
            EXPECT_EQ(l.ergebnis, 0);
        }
        if (f.position != -1) {
            EXPECT_EQ(l.position, f.position);
        }
    }
}

#define PRUEFE(tabelle) pruefe(tabelle, sizeof(tabelle) / sizeof(tabelle[0]))

TEST(MmparseMatcher, BytesSetsAndNegation) {
    static const Fall faelle[] = {
        {"", "", "", 0},
        {"", "a", nullptr, 0},
        {"abc", "abc", "abc", 3},
        {"abc", "abd", nullptr, 2},
        {"@@", "x", nullptr, 1},
        {"@*", "xyz", "xyz", 3},
        {"a\\.b", "a.b", "a.b", -1},
        {"\\x41\\X4a\\n\\T", "AJ\n\t", "AJ\n\t", -1},
        {"\\e\\b\\c\\f\\q", "\x1b\b\r\fq", "\x1b\b\r\fq", -1},
        {"[z-a]+", "abcz", "abcz", -1},
        {"[a-z/aeiou]+", "bcd", "bcd", -1},
        {"[a-z/aeiou]", "a", nullptr, -1},
        {"[a-z/aeiou/e]", "e", "e", -1},
        {"[a-z/aeiou/e]", "i", nullptr, -1},
        {"[]", "a", nullptr, -1},
        {"[]/a", "a", "a", -1},
        {"[\\]\\/]+", "]/", "]/", -1},
        {"[\\x30-\\x39]+", "0189", "0189", -1},
        {"^a+", "bcd", "bcd", -1},
        {"^a", "a", nullptr, -1},
        {"^[a-c]+", "xyz", "xyz", -1},
        {"^[a-c]", "b", nullptr, -1},
        {"^\\n@", "xy", "xy", -1},
        {"^(abc)", "ABC", "ABC", -1},
        {"^(abc)", "aBc", "aBc", -1},
        {"^(a(b))", "Ab", "Ab", -1},
        {"^(a(b))", "AB", nullptr, -1},
        {"^(a[b])", "AB", nullptr, -1},
        {"^(x)+", "xXx", "xXx", -1},
    };
    PRUEFE(faelle);
}

TEST(MmparseMatcher, SuffixesAndBacktracking) {
    static const Fall faelle[] = {
        {"a*", "aaab", nullptr, 3},
        {"a/b", "b", "b", -1},
        {"a/b", "ab", "ab", -1},
        {"a+", "", nullptr, 0},
        {"a+a", "aa", "aa", -1},
        {"a+a", "a", nullptr, -1},
        {"a*a", "aaa", "aaa", -1},
        {"[a-c]!c", "abc", nullptr, -1},
        {"[a-c]+c", "abc", "abc", -1},
        {"a!", "", nullptr, -1},
        {"a?a", "aaa", nullptr, -1},
        {"a?b", "aab", "aab", -1},
        {"a?", "", "", -1},
        {"a?aaa", "aaa", "aaa", -1},
        {"(a|ab)c", "abc", "abc", -1},
        {"a|ab", "ab", "ab", -1},
        {"(ab)+", "abab", "abab", -1},
        {"(ab)+", "", nullptr, -1},
        {"(ab)*c", "c", "c", -1},
        {"(ab)/ab", "ab", "ab", -1},
        {"(a*)*", "aaa", "aaa", -1},
        {"(a/)+", "", "", -1},
        {"(a|)*b", "aab", "aab", -1},
        {"(a*b)*", "abbaab", "abbaab", -1},
        {"(a|b)*(ab)+", "babab", "babab", -1},
    };
    PRUEFE(faelle);
}

TEST(MmparseMatcher, CommitAndAtomic) {
    static const Fall faelle[] = {
        {"(!a)b|ac", "ac", nullptr, -1},
        {"(a)b|ac", "ac", "ac", -1},
        {"(?a*)a", "aaa", nullptr, -1},
        {"(?a*)/a", "aaa", nullptr, -1},
        {"(a*)a", "aaa", "aaa", -1},
        {"(?a|ab)c", "abc", nullptr, -1},
        {"(a|ab)c", "abc", "abc", -1},
        {"(?ab|a)b", "ab", nullptr, -1},
        {"(?a)*b", "aab", "aab", -1},
        {"<r>*#<r>=?a", "aa", "aa", -1},
    };
    PRUEFE(faelle);
}

TEST(MmparseMatcher, Variables) {
    static const Fall faelle[] = {
        {"(a+).{x}-{x}", "aa-aa", "aa-aa", -1},
        {"(a+).{x}-{x}", "aa-a", nullptr, -1},
        {"(a+).{x}-{x}+", "a-aaa", "a-aaa", -1},
        {"a+.{x}-{x}", "aaa-aaa", "aaa-aaa", -1},
        {"[ab]+.{x}{x}", "abab", "abab", -1},
        {"{$v}a", "a", "a", -1},
        {"{$v}*a", "a", "a", -1},
        {"(a.{$v})b{$v}", "aba", "aba", -1},
        {"<r>{$v}#<r>=b.{$v}", "bb", "bb", -1},
        {"(a.{x}b)*", "abab", "abab", -1},
        {"(ab).{v}[{v}]+", "abba", "abba", -1},
        {"(ab).{v}[{v}]+", "abc", nullptr, -1},
        {"[{$u}x]", "x", "x", -1},
        {"x.{v}.{w}{v}{w}", "xx", "xx", -1},
        {"(a).{ab}(b).{a}{ab}{a}", "abab", "abab", -1},
        {"(b.{$g}|c.{$g})+{$g}", "bcc", "bcc", -1},
        {"(b.{$g}|c.{$g})+{$g}", "bcb", nullptr, -1},
    };
    PRUEFE(faelle);
}

TEST(MmparseMatcher, RulesAndComments) {
    static const Fall faelle[] = {
        {"<a>#<a>=x<b>#<b>=y", "xy", "xy", -1},
        {"<d>+#<d>=[0-9]", "123", "123", -1},
        {"<r>#<r>=a<r>/", "aaaa", "aaaa", -1},
        {"<ab>#<a>=x#<ab>=y", "y", "y", -1},
        {"<a>#<ab>=y#<a>=x", "x", "x", -1},
        {"<b>#<abc>=1#<abd>=2#<b>=<abd><abc>", "21", "21", -1},
        {"a# a comment #", "a", "a", -1},
        {"a#c1#c2#<r>=b", "a", "a", -1},
        {"a|<nirgends>", "a", "a", -1},
        {"b|\\xZZ", "b", "b", -1},
        {"a|(b", "a", "a", -1},
        {"<s>#<s>=(a|b)<t>#<t>=c|d", "bd", "bd", -1},
    };
    PRUEFE(faelle);
}

TEST(MmparseMatcher, Replacements) {
    static const Fall faelle[] = {
        {"(a%x)+", "aaa", "xxx", -1},
        {"a+.{x}a%{x}", "aaa", "aa", -1},
        {"(a%)+", "aaa", "", -1},
        {"a%", "a", "", -1},
        {"b*.{v}(a%1)*%[{v}]", "bbaa", "[bb]", -1},
        {"(a%1).{v}%{v}{v}", "a", "11", -1},
        {"a(b%x)c", "abc", "axc", -1},
        {"a%\\(\\x41\\)", "a", "(A)", -1},
        {"%a\\(b", "", "a(b", -1},
        {"(a|b%B)+", "abab", "aBaB", -1},
        {"(a%x)/c", "c", "c", -1},
        {"(a/%x)/c", "c", "c", -1},
        {"(a/%x)c", "c", "xc", -1},
        {"(a%x|ab%y)c", "abc", "yc", -1},
        {"<r>.{v}%<{v}>#<r>=(a%A)b", "ab", "<Ab>", -1},
        {"(a.{$g}%1)(b%{$g})", "ab", "1a", -1},
        {"x.{$g}%{$g}{$nie}", "x", "x", -1},
    };
    PRUEFE(faelle);
}

const char* const kBeispiel =
    "<zeile># Uebersetzt eine Zeile #"
    "#<zeile>=<_ws>(<setze>|<loesche>)<_ws>"
    "#<setze>=^(set)<_ws><adr>.{a}<_ws>[,=]<_ws><wert>.{w}%setzeByte\\({a}, {w}\\)"
    "#<loesche>=^(del)<_ws><adr>.{a}%loescheByte\\({a}\\)"
    "#<adr>=[0-9a-fA-F]+"
    "#<wert>=[0-9]+"
    "#<_ws>=[ \\t]*";

TEST(MmparseMatcher, CommandLineGrammar) {
    MmLauf l = mmLauf(kBeispiel, "  SET 1000, 12 ");
    EXPECT_EQ(l.ergebnis, 23);
    EXPECT_EQ(l.ausgabe, "  setzeByte(1000, 12) ");
    EXPECT_EQ(l.position, 15);

    l = mmLauf(kBeispiel, "del ff");
    EXPECT_EQ(l.ausgabe, "loescheByte(ff)");

    l = mmLauf(kBeispiel, "put 1");
    EXPECT_EQ(l.ergebnis, 0);
    EXPECT_EQ(l.position, 0);

    l = mmLauf(kBeispiel, "set 1g, 2");
    EXPECT_EQ(l.ergebnis, 0);
    EXPECT_EQ(l.position, 5);
}

TEST(MmparseMatcher, NulInSubject) {
    std::string subjekt("a\0b", 3);
    MmLauf l = mmLauf("a\\zb%ok", subjekt);
    EXPECT_EQ(l.ausgabe, "ok");
    l = mmLauf("@+", subjekt);
    EXPECT_EQ(l.ausgabe, subjekt);
}

}  // namespace
