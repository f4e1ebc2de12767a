#include "foundation/DynArray.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include "support/Meldungsaufnahme.h"

// The first access fixes the base; growth either way keeps every value.
TEST(DynArray, GrowthBothWaysKeepsEveryValue) {
    std::mt19937 zufall(3);
    DynArray<std::uint16_t> feld;
    std::map<int, std::uint16_t> soll;
    for (int n = 0; n < 2000; ++n) {
        const int index = static_cast<int>(zufall() % 4000) - 2000;
        soll[index] = feld[index] = static_cast<std::uint16_t>(zufall());
    }
    EXPECT_EQ(feld.basis(), soll.begin()->first);
    EXPECT_EQ(feld.obergrenze(), soll.rbegin()->first + 1);
    for (int index = -2000; index < 2000; ++index) {
        auto it = soll.find(index);
        ASSERT_EQ(feld[index], it == soll.end() ? 0 : it->second) << index;
    }
}

// Upward, element 65535 is the last: an access beyond lands on it and warns
// once. Downward, growth stops one short of the limit.
TEST(DynArray, LimitsWarnOnceAndHandOutTheLastElement) {
    Meldungsaufnahme auf;
    DynArray<char*> feld;
    char a = 'a', b = 'b';
    feld[0] = nullptr;
    feld[65535] = &a;
    EXPECT_EQ(auf.anzahl(), 0u);
    feld[65536] = &b;
    EXPECT_EQ(auf.letzte().satz(), "FELDZUGROSS|DynArray::[]+|65536|W");
    EXPECT_EQ(feld[65535], &b);
    EXPECT_EQ(feld.obergrenze(), 65537);  // moved although the access failed

    auf.leere();
    DynArray<String> runter;
    runter[65535] = "oben";
    runter[1] = "unten";  // 65535 elements: allowed
    EXPECT_EQ(auf.anzahl(), 0u);
    runter[0] = "zuviel";  // would need 65536
    EXPECT_EQ(auf.letzte().satz(), "FELDZUGROSS|DynArray::[]-|65536|W");
    EXPECT_EQ(runter.basis(), 1);
    EXPECT_EQ(runter[65535], "zuviel");
    EXPECT_EQ(runter[1], "unten");

    auf.leere();
    DynArray<std::uint16_t> extrem;
    extrem[-5] = 1;
    extrem[INT32_MAX] = 2;
    extrem[INT32_MIN] = 3;
    EXPECT_EQ(auf.anzahl(), 1u);
    EXPECT_EQ(auf.letzte().detail, std::to_string(static_cast<std::int64_t>(INT32_MAX) + 5));
    EXPECT_EQ(extrem[-5], 3);
}

TEST(DynArray, SizedByteArray) {
    Meldungsaufnahme auf;
    DynArray<unsigned char> muster(20, 0xAA);
    EXPECT_EQ(muster[-1], 0xAA);
    DynArray<unsigned char> voll(262144, 0);
    EXPECT_EQ(auf.anzahl(), 0u);
    DynArray<unsigned char> zuGross(262145, 7);
    EXPECT_EQ(auf.letzte().satz(), "FELDZUGROSS|DynArray::DynArray()|262145|W");
    zuGross[262144] = 1;  // already warned: silent
    EXPECT_EQ(auf.anzahl(), 1u);
    EXPECT_EQ(zuGross[262143], 1);
}

TEST(TextFeld, PrivateCopiesAndIteration) {
    TextFeld feld;
    EXPECT_EQ(feld.erstes(), 0);
    char puffer[] = "Intel";
    EXPECT_EQ(feld.haengeAn(puffer), 0);
    EXPECT_EQ(feld.haengeAn("Motorola"), 1);
    puffer[0] = 'X';
    EXPECT_STREQ(feld.text(0), "Intel");
    EXPECT_EQ(feld.text(-1), nullptr);
    // Iteration repeats the last entry when exhausted.
    ASSERT_EQ(feld.erstes(), 1);
    EXPECT_STREQ(feld.naechstes(), "Intel");
    EXPECT_STREQ(feld.naechstes(), "Motorola");
    EXPECT_EQ(feld.hatAktuelle(), 0);
    EXPECT_STREQ(feld.naechstes(), "Motorola");
}
