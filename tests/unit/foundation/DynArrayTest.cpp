// Growing arrays: first access, both growth directions, the limits with their
// one-time warning, the sized byte instance, and TextFeld.
#include "foundation/DynArray.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>

#include "MeldungsFaenger.h"

TEST(DynArray, GrowthBothWaysKeepsEveryValue) {
    DynArray<String> texte;
    texte[1000000] = "x";  // the first access fixes the base
    EXPECT_EQ(texte.basis(), 1000000);
    EXPECT_EQ(texte.obergrenze(), 1000001);
    EXPECT_EQ(texte[1000002], "0");
    texte.setzeVorgabe(String("leer"));
    EXPECT_EQ(texte[1000009], "leer");

    // Upward doubles, downward grows exactly; reading below the base does
    // not lower the upper mark.
    DynArray<std::uint16_t> hoch;
    hoch[0];
    hoch[5];
    EXPECT_EQ(hoch.anzahl(), 8);
    EXPECT_EQ(hoch.obergrenze(), 6);
    DynArray<std::uint16_t> runter;
    runter[5] = 55;
    runter[3] = 33;
    EXPECT_EQ(runter.basis(), 3);
    EXPECT_EQ(runter.anzahl(), 3);
    EXPECT_EQ(runter.obergrenze(), 6);

    // Any sequence of growth steps in both directions.
    std::mt19937 zufall(3);
    DynArray<std::uint16_t> feld;
    std::map<int, std::uint16_t> soll;
    for (int n = 0; n < 2000; ++n) {
        const int index = static_cast<int>(zufall() % 4000) - 2000;
        const auto wert = static_cast<std::uint16_t>(zufall());
        feld[index] = wert;
        soll[index] = wert;
    }
    EXPECT_EQ(feld.basis(), soll.begin()->first);
    EXPECT_EQ(feld.obergrenze(), soll.rbegin()->first + 1);
    for (int index = -2000; index < 2000; ++index) {
        auto it = soll.find(index);
        ASSERT_EQ(feld[index], it == soll.end() ? 0 : it->second) << index;
    }
}

TEST(DynArray, UpperLimitWarnsOnceAndHandsOutTheLastElement) {
    MeldungsFaenger faenger;
    DynArray<char*> feld;
    char a = 'a', b = 'b';
    feld[0] = nullptr;
    feld[65535] = &a;
    EXPECT_EQ(faenger.anzahl(), 0u);
    EXPECT_EQ(feld.anzahl(), 65536);

    feld[65536] = &b;  // lands on element 65535
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "FELDZUGROSS");
    EXPECT_EQ(faenger.letzte().funktion, "DynArray::[]+");
    EXPECT_EQ(faenger.letzte().detail, "65536");
    EXPECT_EQ(faenger.letzte().level, 'W');
    EXPECT_EQ(feld[65535], &b);
    EXPECT_EQ(feld.obergrenze(), 65537);  // moved although the access failed
    EXPECT_EQ(feld.gewarnt(), 1);

    feld[100000];
    EXPECT_EQ(faenger.anzahl(), 1u);
    // Unlike the image array, an in-range access still works after the warning.
    feld[7] = &a;
    EXPECT_EQ(feld[7], &a);
}

TEST(DynArray, DownwardStopsOneShortOfTheLimit) {
    MeldungsFaenger faenger;
    DynArray<String> feld;
    feld[65535] = "oben";
    feld[1] = "unten";  // 65535 elements: allowed
    EXPECT_EQ(feld.anzahl(), 65535);
    EXPECT_EQ(faenger.anzahl(), 0u);

    feld[0] = "zuviel";  // would need 65536
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().funktion, "DynArray::[]-");
    EXPECT_EQ(faenger.letzte().detail, "65536");
    EXPECT_EQ(feld.basis(), 1);
    EXPECT_EQ(feld[65535], "zuviel");
    EXPECT_EQ(feld[1], "unten");
}

TEST(DynArray, ExtremeIndicesWarnWithoutOverflow) {
    MeldungsFaenger faenger;
    DynArray<std::uint16_t> feld;
    feld[-5] = 1;
    feld[INT32_MAX] = 2;
    feld[INT32_MIN] = 3;
    EXPECT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().detail, std::to_string(static_cast<std::int64_t>(INT32_MAX) + 5));
    EXPECT_EQ(feld.obergrenze(), INT32_MAX);
    EXPECT_EQ(feld[-5], 3);
}

TEST(DynArray, SizedByteArray) {
    MeldungsFaenger faenger;
    DynArray<unsigned char> muster(20, 0xAA);
    EXPECT_EQ(muster.anzahl(), 20);
    EXPECT_EQ(muster.basis(), 0);
    EXPECT_EQ(muster.obergrenze(), 0);
    EXPECT_EQ(muster[19], 0xAA);
    EXPECT_EQ(muster.anzahl(), 20);
    EXPECT_EQ(muster[-1], 0xAA);  // downward from the preset base 0
    EXPECT_EQ(muster.basis(), -1);
    EXPECT_EQ(faenger.anzahl(), 0u);

    DynArray<unsigned char> voll(262144, 0);
    EXPECT_EQ(faenger.anzahl(), 0u);
    DynArray<unsigned char> zuGross(262145, 7);
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "FELDZUGROSS");
    EXPECT_EQ(faenger.letzte().funktion, "DynArray::DynArray()");
    EXPECT_EQ(faenger.letzte().detail, "262145");
    EXPECT_EQ(zuGross.anzahl(), 262144);
    // Already warned: a later overflow stays silent.
    zuGross[262144] = 1;
    EXPECT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(zuGross[262143], 1);

    DynArray<unsigned char> leer(0, 5);
    leer[10] = 1;
    EXPECT_EQ(leer.basis(), 10);
}

TEST(TextFeld, PrivateCopiesAndIteration) {
    TextFeld feld;
    EXPECT_EQ(feld.erstes(), 0);
    EXPECT_EQ(feld.hatAktuelle(), 0);
    char puffer[] = "Intel";
    EXPECT_EQ(feld.haengeAn(puffer), 0);
    EXPECT_EQ(feld.haengeAn("Motorola"), 1);
    puffer[0] = 'X';
    EXPECT_STREQ(feld.text(0), "Intel");
    EXPECT_EQ(feld.text(-1), nullptr);
    EXPECT_EQ(feld.text(2), nullptr);

    // Iteration repeats the last entry when exhausted.
    ASSERT_EQ(feld.erstes(), 1);
    EXPECT_STREQ(feld.naechstes(), "Intel");
    EXPECT_EQ(feld.hatAktuelle(), 1);
    EXPECT_STREQ(feld.naechstes(), "Motorola");
    EXPECT_EQ(feld.hatAktuelle(), 0);
    EXPECT_STREQ(feld.naechstes(), "Motorola");

    feld.gibFrei(0);
    EXPECT_EQ(feld.text(0), nullptr);
    EXPECT_STREQ(feld.text(1), "Motorola");
    feld.leere();
    EXPECT_EQ(feld.fuellstand(), 0);
    EXPECT_EQ(feld.haengeAn("neu"), 0);
}
