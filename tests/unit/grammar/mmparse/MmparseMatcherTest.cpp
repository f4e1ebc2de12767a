// Matching and translation with a subject in memory, one table with a block
// per feature. Plain matching over a, b, '@', [ab], ^a, groups and suffixes
// is left to the cross-check against the reference matcher.
#include <gtest/gtest.h>

#include "MmTestHilfe.h"

namespace {

struct Fall {
    const char* grammatik;
    const char* subjekt;
    const char* ausgabe;    // null: the subject must not match
    std::int32_t position;  // checked when not -1
};

const Fall kFaelle[] = {
    // bytes, escapes, sets, negation
    {"", "", "", 0},
    {"", "a", nullptr, 0},
    {"abc", "abd", nullptr, 2},
    {"@@", "x", nullptr, 1},
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
    {"^[a-c]+", "xyz", "xyz", -1},
    {"^[a-c]", "b", nullptr, -1},
    {"^\\n@", "xy", "xy", -1},
    {"^(abc)", "aBc", "aBc", -1},
    {"^(a(b))", "Ab", "Ab", -1},
    {"^(a(b))", "AB", nullptr, -1},
    {"^(a[b])", "AB", nullptr, -1},
    {"^(x)+", "xXx", "xXx", -1},
    // suffixes: the furthest position and the edge cases of empty loops
    {"a*", "aaab", nullptr, 3},
    {"a+", "", nullptr, 0},
    {"[a-c]!c", "abc", nullptr, -1},
    {"[a-c]+c", "abc", "abc", -1},
    {"(a*)*", "aaa", "aaa", -1},
    {"(a/)+", "", "", -1},
    {"(a|)*b", "aab", "aab", -1},
    // commit and atomic groups
    {"(!a)b|ac", "ac", nullptr, -1},
    {"(a)b|ac", "ac", "ac", -1},
    {"(?a*)a", "aaa", nullptr, -1},
    {"(?a*)/a", "aaa", nullptr, -1},
    {"(?a|ab)c", "abc", nullptr, -1},
    {"(?ab|a)b", "ab", nullptr, -1},
    {"(?a)*b", "aab", "aab", -1},
    {"<r>*#<r>=?a", "aa", "aa", -1},
    // variables
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
    // rules, their index, comments, faults never reached
    {"<a>#<a>=x<b>#<b>=y", "xy", "xy", -1},
    {"<r>#<r>=a<r>/", "aaaa", "aaaa", -1},
    {"<d>+#<d>=[0-9]", "123", "123", -1},
    {"<ab>#<a>=x#<ab>=y", "y", "y", -1},
    {"<a>#<ab>=y#<a>=x", "x", "x", -1},
    {"<b>#<abc>=1#<abd>=2#<b>=<abd><abc>", "21", "21", -1},
    {"a#c1#c2#<r>=b", "a", "a", -1},
    {"a|<nirgends>", "a", "a", -1},
    {"b|\\xZZ", "b", "b", -1},
    {"a|(b", "a", "a", -1},
    {"a|{}", "a", "a", -1},
    {"[a/-]", "b", nullptr, -1},  // the second list is met only by a byte of the first
    {"<s>#<s>=(a|b)<t>#<t>=c|d", "bd", "bd", -1},
    // replacements
    {"(a%x)+", "aaa", "xxx", -1},
    {"a+.{x}a%{x}", "aaa", "aa", -1},
    {"(a%)+", "aaa", "", -1},
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

TEST(MmparseMatcher, Table) {
    for (const Fall& f : kFaelle) {
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

TEST(MmparseMatcher, NulInSubject) {
    const std::string subjekt("a\0b", 3);
    EXPECT_EQ(mmLauf("a\\zb%ok", subjekt).ausgabe, "ok");
    EXPECT_EQ(mmLauf("@+", subjekt).ausgabe, subjekt);
}

}  // namespace
