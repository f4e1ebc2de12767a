// Matching and translation with a subject in memory; plain matching of groups
// and suffixes is left to the cross-check against the reference matcher.
#include "MmTestHilfe.h"

namespace {

const MmFall kFaelle[] = {
    {"\\x41\\X4a\\x4A\\n\\T", "AJJ\n\t", "AJJ\n\t"},
    {"\\e\\b\\c\\f\\q", "\x1b\b\r\fq", "\x1b\b\r\fq"},
    {"[z-a]+", "abcz", "abcz"},
    {"[a-z/aeiou]", "a", {}},
    {"[a-z/aeiou/e]", "e", "e"},
    {"[]/a", "a", "a"},
    {"[\\]\\/]+", "]/", "]/"},
    {"^[a-c]", "b", {}},
    {"^\\n@", "xy", "xy"},
    {"^(abc)", "aBc", "aBc"},
    {"^(a(b))", "AB", {}},
    {"^(a[b])", "AB", {}},
    {"^(x)+", "xXx", "xXx"},
    {"(!a)b|ac", "ac", {}},
    {"(?a*)a", "aaa", {}},
    {"(?a|ab)c", "abc", {}},
    {"(?a)*b", "aab", "aab"},
    {"<r>*#<r>=?a", "aa", "aa"},
    {"(a+).{x}-{x}", "aa-a", {}},
    {"(a+).{x}-{x}+", "a-aaa", "a-aaa"},
    {"a+.{x}-{x}", "aaa-aaa", "aaa-aaa"},
    {"{$v}*a", "a", "a"},
    {"(a.{$v})b{$v}", "aba", "aba"},
    {"<r>{$v}#<r>=b.{$v}", "bb", "bb"},
    {"(a.{x}b)*", "abab", "abab"},
    {"(ab).{v}[{v}]+", "abc", {}},
    {"[{$u}x]", "x", "x"},
    {"(a).{ab}(b).{a}{ab}{a}", "abab", "abab"},
    {"(b.{$g}|c.{$g})+{$g}", "bcb", {}},
    {"<r>#<r>=a<r>/", "aaaa", "aaaa"},
    {"<ab>#<a>=x#<ab>=y", "y", "y"},
    {"<a>#<ab>=y#<a>=x", "x", "x"},
    {"<b>#<abc>=1#<abd>=2#<b>=<abd><abc>", "21", "21"},
    {"a#c1#c2#<r>=b", "a", "a"},
    {"a|<nirgends>", "a", "a"},
    {"b|\\xZZ", "b", "b"},
    {"a|(b", "a", "a"},
    {"[a/-]", "b", {}},
    {"a+.{x}a%{x}", "aaa", "aa"},
    {"(a%)+", "aaa", ""},
    {"b*.{v}(a%1)*%[{v}]", "bbaa", "[bb]"},
    {"(a%1).{v}%{v}{v}", "a", "11"},
    {"a%\\(\\x41\\)", "a", "(A)"},
    {"%a\\(b", "", "a(b"},
    {"(a/%x)/c", "c", "c"},
    {"(a/%x)c", "c", "xc"},
    {"(a%x|ab%y)c", "abc", "yc"},
    {"<r>.{v}%<{v}>#<r>=(a%A)b", "ab", "<Ab>"},
    {"(a.{$g}%1)(b%{$g})", "ab", "1a"},
    {"x.{$g}%{$g}{$nie}", "x", "x"},
};

TEST(MmparseMatcher, Table) { pruefeFaelle(kFaelle); }

TEST(MmparseMatcher, SubjectWithNul) {
    const std::string mitNul("a\0b", 3);
    EXPECT_EQ(mmLauf("a\\zb%ok", mitNul).ausgabe, "ok");
    EXPECT_EQ(mmLauf("@+", mitNul).ausgabe, mitNul);
}

}  // namespace
