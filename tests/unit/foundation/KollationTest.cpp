#include "foundation/Kollation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

// Each row ascends strictly, checked both ways; 0x10 ties with 0x11 and
// 0xD0 with 0x18, as intended.
TEST(Kollation, RowsInOrderAndIntendedTies) {
    const std::vector<std::string> reihen[] = {
        {"",     " ", "0", "9", "A", "a", "\x8E", "\x84", "b", "z", "\x01", "\x0F", "\x10", "\x12",
         "\x1F", ":", ";", "<", "=", ">", "?",    "@",    "[", "`", "{",    "\xFE", "\xFF"},
        {"a", "aa", "Ab", "ab", "b"},
        {"AB", "ab"},
        {"o", "\x94", "s", "\xE1", "T", "t"},
    };
    for (const auto& reihe : reihen) {
        for (std::size_t i = 1; i < reihe.size(); ++i) {
            EXPECT_EQ(kollation::vergleiche(String(reihe[i - 1]), String(reihe[i])), -1)
                << reihe[i - 1] << reihe[i];
            EXPECT_EQ(kollation::vergleiche(String(reihe[i]), String(reihe[i - 1])), 1)
                << reihe[i - 1] << reihe[i];
        }
    }
    for (const auto& [a, b] : {std::pair{"abc", "abc"}, {"\x10", "\x11"}, {"\xD0", "\x18"}})
        EXPECT_EQ(kollation::vergleiche(String(a), String(b)), 0) << a;
}

// A sorted tree needs a strict weak order.
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
    for (int n = 0; n < 5000; ++n) {
        const std::size_t i = zufall() % texte.size();
        const std::size_t j = zufall() % texte.size();
        const int r = kollation::vergleiche(texte[i], texte[j]);
        ASSERT_EQ(r, -kollation::vergleiche(texte[j], texte[i]));
        ASSERT_LE(i < j ? r : 0, 0) << texte[i].str() << " / " << texte[j].str();
    }
}
