// The text displays of an image: runs of write counts, and the comparison of
// two images.
#include <sstream>

#include "Meldungen.h"
#include "image/Eprom.h"
#include "support/EpromDifferenzen.h"

namespace {

using EpromAnzeigeTest = bildtest::MitMeldungen;

TEST_F(EpromAnzeigeTest, RunsOfWriteCounts) {
    Eprom e;
    e.definiereBereich(0x100, 0x103);
    e.definiereBereich(0x200, 0x201);
    e.setzeByte(0x100, 1);
    e.setzeByte(0x101, 1);
    e.setzeByte(0x103, 1);
    e.setzeByte(0x103, 1);
    std::ostringstream o;
    EXPECT_EQ(e.anzeigeBelegung(o, 0x101, 0x200), 2u);
    EXPECT_EQ(o.str(),
              "[00101 .. 00101] -> 1\n"
              "[00102 .. 00102] -> 0\n"
              "[00103 .. 00103] -> 2\n"
              "[00200 .. 00200] -> 0\n");
    EXPECT_EQ(e.anzeigeBelegung(o, 0x200, 0x100), 0u);
}

TEST_F(EpromAnzeigeTest, DifferencesOfTwoImages) {
    Eprom a, b;
    for (adrInteger x = 0x10; x <= 0x21; ++x) {
        a.setzeByte(x, static_cast<std::uint8_t>(x));
        if (x != 0x15) b.setzeByte(x + 0x100, static_cast<std::uint8_t>(x == 0x12 ? 0xFF : x));
    }
    std::ostringstream o;
    EXPECT_EQ(anzeigeDifferenzen(o, "a.hex", "b.hex", a, b, 0x10, 0x110, 0x21), 2u);
    EXPECT_EQ(o.str(),
              "\nZeile 1: a.hex\nZeile 2: b.hex\n"
              "Daten [000010]\t = 10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F \n"
              "Daten [000110]\t = .. .. FF .. .. -- .. .. .. .. .. .. .. .. .. .. \n");

    // Same start: the second line is indented instead; equal lines are left out.
    Eprom c(a);
    c.setzeByte(0x21, 0x99);
    std::ostringstream p;
    EXPECT_EQ(anzeigeDifferenzen(p, "", "", a, c, 0x10, 0x10, 0x21), 1u);
    EXPECT_EQ(p.str(), "\nDaten [000020]\t = 20 21 \n\t\t   .. 99 \n");
}

}  // namespace
