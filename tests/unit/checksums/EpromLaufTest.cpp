// The stretch walker against byte-by-byte reads of a copy of the same image:
// free and fixed images, gaps, storage edges, and a region over its limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "BildHilfen.h"
#include "checksums/EpromLauf.h"

namespace {

// Each address as its byte, or -1 when it is not in the image.
std::vector<int> perAbschnitt(Eprom& eprom, adrInteger von, adrInteger bis)
{
    std::vector<int> g;
    EpromAbschnitt abschnitt;
    for (adrInteger a = von;; a = static_cast<adrInteger>(a + abschnitt.anzahl)) {
        liefereAbschnitt(eprom, a, bis, abschnitt);
        EXPECT_TRUE(abschnitt.adr == a && abschnitt.anzahl >= 1 && abschnitt.anzahl <= std::uint64_t(bis) - a + 1);
        for (std::uint64_t i = 0; i < abschnitt.anzahl; ++i)
            g.push_back(!abschnitt.imEprom ? -1 : abschnitt.daten ? abschnitt.daten[i] : 0);
        if (a + abschnitt.anzahl - 1 >= bis)
            return g;
    }
}

std::vector<int> proByte(Eprom& eprom, adrInteger von, adrInteger bis)
{
    std::vector<int> g;
    for (adrInteger a = von;; ++a) {
        std::uint8_t b = 0;
        g.push_back(eprom.liefereByte(a, b, 0) ? b : -1);
        if (a == bis)
            return g;
    }
}

void vergleiche(Eprom& eprom, adrInteger von, adrInteger bis)
{
    Eprom kopie(eprom);
    std::vector<int> schnell = perAbschnitt(eprom, von, bis), langsam = proByte(kopie, von, bis);
    auto abweichung = std::mismatch(schnell.begin(), schnell.end(), langsam.begin(), langsam.end());
    EXPECT_TRUE(abweichung.first == schnell.end() && abweichung.second == langsam.end())
        << "first difference at " << std::hex << von + (abweichung.first - schnell.begin());
}

TEST(EpromLauf, FreiesBildGleichEinzelnGelesen)
{
    std::mt19937 zufall(99);
    for (int runde = 0; runde < 20; ++runde) {
        Eprom eprom;
        adrInteger basis = (runde % 3 == 0) ? 0x5000000 : 0x100;
        for (int i = 0; i < 200; ++i)
            eprom.setzeByte(basis + zufall() % 0x30000, static_cast<std::uint8_t>(zufall()));
        adrInteger von = basis + zufall() % 0x1000;
        vergleiche(eprom, von, von + zufall() % 0x40000);
    }
}

TEST(EpromLauf, FestesBildMitLuecken)
{
    std::mt19937 zufall(7);
    for (int runde = 0; runde < 20; ++runde) {
        Eprom eprom;
        adrInteger a = zufall() % 0x100;
        for (int r = 0; r < 4; ++r) {
            adrInteger laenge = 1 + zufall() % 0x9000;
            eprom.definiereBereich(a, a + laenge - 1);
            for (int i = 0; i < 50; ++i)
                eprom.setzeByte(a + zufall() % laenge, static_cast<std::uint8_t>(zufall()));
            a += laenge + zufall() % 0x300;
        }
        vergleiche(eprom, 0, a + 0x100);
    }
}

TEST(EpromLauf, AmEndeDesAdressraums)
{
    Eprom eprom;
    eprom.setzeByte(0xFFFFFFF0, 1);
    eprom.setzeByte(0xFFFFFFFF, 2);
    vergleiche(eprom, 0xFFFFFF00, 0xFFFFFFFF);

    Eprom fest;
    fest.definiereBereich(0xFFFFFF80, 0xFFFFFFFF);
    fest.setzeByte(0xFFFFFFFE, 9);
    vergleiche(fest, 0xFFFFFF00, 0xFFFFFFFF);
}

TEST(EpromLauf, BereichUeberSeinerGrenzeFehlt)
{
    // A region wider than its storage may hold is frozen at its definition
    // and from then on counts as not in the image.
    MeldungsFaenger faenger;
    Eprom eprom;
    eprom.definiereBereich(0x0, 0x1FFFFFF);
    eprom.definiereBereich(0x3000000, 0x3000FFF);
    eprom.setzeByte(0x3000010, 5);
    std::uint8_t b = 0;
    EXPECT_EQ(eprom.liefereByte(0x1000, b, 0), 0);
    faenger.leere();
    vergleiche(eprom, 0x1FFFF00, 0x2000100);
    vergleiche(eprom, 0x2FFFF00, 0x3001100);
    EXPECT_EQ(faenger.anzahl(), 0u);
}

} // namespace
