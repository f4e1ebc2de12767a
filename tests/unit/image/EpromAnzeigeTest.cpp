// The text displays of an image: region counts, byte dump in both forms,
// runs of write counts, and the comparison of two images.
#include <sstream>

#include "Meldungen.h"
#include "image/Eprom.h"
#include "support/EpromDifferenzen.h"

using bildtest::MitMeldungen;

namespace {

class EpromAnzeigeTest : public MitMeldungen {};

// The layout itself is checked with the fixed-image message.
TEST_F(EpromAnzeigeTest, RegionListingCountsInHex) {
    Eprom f;
    for (adrInteger a = 0; a < 11; ++a) f.definiereBereich(a * 0x10, a * 0x10 + 1);
    std::ostringstream p;
    f.anzeigeBereiche(p);
    EXPECT_NE(p.str().find("Anzahl Eprombereiche: B\n"), std::string::npos);
    EXPECT_NE(p.str().find("[A]  SegNr=0 AnfAdr=A0 EndAdr=A1\n"), std::string::npos);
    p.str("");
    p << 255;
    EXPECT_EQ(p.str(), "FF") << "the stream stays in upper-case hex";
}

TEST_F(EpromAnzeigeTest, ByteDumpInHexAndText) {
    Eprom e;
    for (adrInteger a = 0x100; a <= 0x112; ++a)
        if (a != 0x102) e.setzeByte(a, static_cast<std::uint8_t>(a == 0x110 ? 'A' : a));
    std::ostringstream o;
    e.anzeigeBytes(0x112, 0x100, "Kopf", o, 1);
    EXPECT_EQ(o.str(),
              "\nKopf\n"
              "Daten [00100]\t = 00 01 -- 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F \n"
              "Daten [00110]\t = 41 11 12 \n\n");
    EXPECT_TRUE(meldungen.empty());

    std::ostringstream t;
    e.anzeigeBytes(0x10E, 0x111, "", t, 0);
    EXPECT_EQ(t.str(), "\n\nDaten [0010E]\t = ..A.\n\n");
}

TEST_F(EpromAnzeigeTest, ByteDumpOutsideTheImageReportsAndCuts) {
    Eprom e;
    e.definiereBereich(0x100, 0x103);
    e.definiereBereich(0x200, 0x201);
    e.setzeByte(0x200, 0xAB);
    std::ostringstream o;
    e.anzeigeBytes(0x50, 0x300, "K", o, 1);
    ASSERT_EQ(meldungen.size(), 1u);
    EXPECT_EQ(meldungen[0].label, "EPR-ADR-NOT-IN-EPROM");
    EXPECT_EQ(meldungen[0].funktion, "Eprom::anzeigeBytes");
    EXPECT_EQ(meldungen[0].detail.substr(0, meldungen[0].detail.find("Eprom AnfAdr")),
              "Anfadr.: 50 (anfEpr:100)  Endadr.: 300 (endEpr:201) \n");
    EXPECT_EQ(o.str(),
              "\nK\n"
              "Daten [00100]\t = -- -- -- -- \n\n"
              "Daten [00200]\t = AB -- \n\n");

    Eprom leer;
    std::ostringstream p;
    leer.anzeigeBytes(0x10, 0x20, "K", p, 1);
    EXPECT_EQ(p.str(), "\nK\n");
    EXPECT_NE(meldungen.back().detail.find("Endadr.: 10 "), std::string::npos)
        << "an empty image shows one address";
}

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
