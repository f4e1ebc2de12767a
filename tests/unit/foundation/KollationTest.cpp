// German collation: the orderings names rely on, and the consistency a
// sorted tree needs from it.
#include "foundation/Kollation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

String text(const std::string& s) { return String(s); }

}  // namespace

TEST(Kollation, PairsInOrder) {
    struct Fall {
        const char* a;
        const char* b;
        int erwartet;
        const char* warum;
    };
    const Fall faelle[] = {
        {"aa", "Ab", -1, "primary ranks decide before case"},
        {"Ab", "ab", -1, "same primary, same length: upper case first"},
        {"a", "\x84", -1, "a before a-umlaut"},
        {"\x84", "b", -1, "a-umlaut before b"},
        {"\x8E", "\x84", -1, "upper before lower umlaut"},
        {"\x84", "a", 1, "a-umlaut after lower a"},
        {"o", "\x94", -1, "o before o-umlaut"},
        {"s", "\xE1", -1, "s before sharp s"},
        {"\xE1", "t", -1, "sharp s before t"},
        {"T", "t", -1, "T before t"},
        {"b", "aa", 1, "ranks before length"},
        {"a", "ab", -1, "shorter first when the common part ties"},
        {"AB", "ab", -1, "secondary only after lengths tie"},
        {" ", "0", -1, "blank before digits"},
        {"9", "A", -1, "digits before letters"},
        {"z", "\x01", -1, "control bytes after letters"},
        {"@", "[", -1, "punctuation blocks follow one another"},
        {"`", "{", -1, "punctuation blocks follow one another"},
        {"\x0F", "\x10", -1, "rank 101 skipped but order kept"},
        {"\xFF", "\xFE", 1, "high bytes rank by value"},
        {"abc", "abc", 0, "equal"},
        {"", "a", -1, "empty first"},
        {"\x10", "\x11", 0, "bytes 0x10 and 0x11 tie: intended"},
        {"\xD0", "\x18", 0, "byte 0xD0 ranks with 0x18: intended"},
    };
    for (const Fall& f : faelle) {
        EXPECT_EQ(kollation::vergleiche(text(f.a), text(f.b)), f.erwartet) << f.warum;
        EXPECT_EQ(kollation::vergleiche(text(f.b), text(f.a)), -f.erwartet) << f.warum;
    }
}

TEST(Kollation, PrimaryComparisonIgnoresCaseButNotLength) {
    EXPECT_EQ(kollation::vergleichePrimaer(text("Ab"), text("ab")), 0);
    EXPECT_EQ(kollation::vergleichePrimaer(text("\x8E"), text("\x84")), 0);
    EXPECT_EQ(kollation::vergleichePrimaer(text("ab"), text("abc")), -1);
    EXPECT_EQ(kollation::vergleichePrimaer(text("b"), text("Aa")), 1);
}

// A sorted tree needs a strict weak order: sorting random names and checking
// every adjacent and random pair catches an asymmetric or intransitive table.
TEST(Kollation, IsATotalOrderOnRandomTexts) {
    std::mt19937 zufall(17);
    const std::string alphabet = "aAbBsStTuU\x84\x8E\x81\x9A\xE1 09_\x10\x11\x18\xD0\xFF";
    std::vector<String> texte;
    for (int i = 0; i < 400; ++i) {
        std::string s;
        const int laenge = static_cast<int>(zufall() % 5);
        for (int j = 0; j < laenge; ++j) s += alphabet[zufall() % alphabet.size()];
        texte.emplace_back(s);
    }
    std::sort(texte.begin(), texte.end(),
              [](const String& a, const String& b) { return kollation::vergleiche(a, b) < 0; });
    for (std::size_t i = 1; i < texte.size(); ++i)
        ASSERT_LE(kollation::vergleiche(texte[i - 1], texte[i]), 0)
            << texte[i - 1].str() << " / " << texte[i].str();
    for (int n = 0; n < 5000; ++n) {
        const std::size_t i = zufall() % texte.size();
        const std::size_t j = zufall() % texte.size();
        const int r = kollation::vergleiche(texte[i], texte[j]);
        ASSERT_EQ(r, -kollation::vergleiche(texte[j], texte[i]));
        if (i < j) {
            ASSERT_LE(r, 0) << texte[i].str() << " / " << texte[j].str();
        }
    }
}
