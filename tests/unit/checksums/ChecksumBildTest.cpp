// Sums over an image: holes, windows, the last addend at region and address ends, compare mode.
#include <gtest/gtest.h>

#include <memory>

#include "checksums/ChecksumCRC16.h"
#include "checksums/ChecksumCRC32.h"
#include "checksums/ChecksumSiemens.h"
#include "checksums/ChecksumStandard.h"
#include "image/Eprom.h"
#include "support/Meldungsaufnahme.h"

namespace {

void schreibe(Eprom& eprom, adrInteger adr, const char* bytes, std::size_t anzahl) {
    for (std::size_t i = 0; i < anzahl; ++i)
        eprom.setzeByte(adr + static_cast<adrInteger>(i), static_cast<std::uint8_t>(bytes[i]));
}

adrInteger summe(Checksumme& c, Eprom& eprom, int erwartet = 1) {
    adrInteger s = 0xDEADBEEF;
    EXPECT_EQ(c.bildeSumme(eprom, &s), erwartet);
    return s;
}

// 0 Siemens, 1 CRC32, 2 CRC16 CCITT, 3 CRC16 0xA001.
std::unique_ptr<Checksumme> art(int nr, adrInteger anf, adrInteger end) {
    switch (nr) {
    case 0: return std::make_unique<ChecksumSiemens>(anf, end);
    case 1: return std::make_unique<ChecksumCRC32>(anf, end, 0);
    case 2: return std::make_unique<ChecksumCRC16>(anf, end, 0, 0x1021);
    default: return std::make_unique<ChecksumCRC16>(anf, end, 0, 0xA001);
    }
}

TEST(ChecksumBild, LueckeZaehltAlsNullen) {
    Eprom mitLuecke, gefuellt;
    mitLuecke.definiereBereich(0x1000, 0x10FF);
    mitLuecke.definiereBereich(0x1200, 0x12FF);
    gefuellt.definiereBereich(0x1000, 0x12FF);
    for (adrInteger a = 0; a < 0x100; ++a)
        for (Eprom* e : {&mitLuecke, &gefuellt}) {
            e->setzeByte(0x1000 + a, static_cast<std::uint8_t>(a * 7 + 1));
            e->setzeByte(0x1200 + a, static_cast<std::uint8_t>(a * 3));
        }
    Meldungsaufnahme aufnahme;
    for (int nr = 0; nr < 4; ++nr)
        EXPECT_EQ(summe(*art(nr, 0x1003, 0x1234), mitLuecke), summe(*art(nr, 0x1003, 0x1234), gefuellt))
            << nr;
    EXPECT_EQ(aufnahme.anzahl(), 0u);
}

TEST(ChecksumBild, FreiesBildUeberFenstergrenzen) {
    Eprom eprom;
    eprom.setzeByte(0xFFFFFE, 0x11);
    eprom.setzeByte(0x1000001, 0x22);
    eprom.setzeByte(0x3000000, 0x33);
    // Lanes 2, 3 | 0, 1 across the border: 0x11, 0, 0, 0x22, each rotated.
    EXPECT_EQ(summe(*art(0, 0xFFFFFE, 0x1000001), eprom), 0x00442200u);

    summe(*art(2, 0, 0xFFFFFFFF), eprom);
    // The walk gave the untouched window between its empty region, as a read does.
    const EpromSegment& seg = eprom.liefereSegment(0);
    ASSERT_EQ(seg.anzahlBereiche(), 4);
    bool leeresFenster = false;
    for (const auto& b : seg.bereiche)
        leeresFenster |= b->basisAdr == 0x2000000 && b->anfAdr == 0xFFFFFFFF && b->endAdr == 0;
    EXPECT_TRUE(leeresFenster);
}

TEST(ChecksumBild, StandardLetzterAddendUndVergleich) {
    Meldungsaufnahme aufnahme;
    // The last addend reads past the range: missing at a region's end ...
    Eprom fest;
    fest.definiereBereich(0x1000, 0x1004);
    schreibe(fest, 0x1000, "\x10\x20\x30\x40\x50", 5);
    ChecksumStandard rand(0, 0x1000, 0x1004, nullptr, 0x100, 2, 0, 2);
    EXPECT_EQ(summe(rand, fest, 0), 0x1020u + 0x3040u);
    EXPECT_EQ(aufnahme.labels(), (std::vector<std::string>{"EPR-ADR-NOT-IN-EPROM", "CHK-ADR-NOT-OK"}));
    // ... counted inside the image, and short at the top of the addresses.
    Eprom eprom;
    schreibe(eprom, 0x1000, "\x12\x34\x56\x78", 4);
    ChecksumStandard innen(0, 0x1000, 0x1002, nullptr, 0, 2, 0, 2);
    EXPECT_EQ(summe(innen, eprom), 0x1234u + 0x5678u);
    Eprom oben;
    schreibe(oben, 0xFFFFFFFD, "\x01\x02\x03", 3);
    ChecksumStandard ganzOben(0, 0xFFFFFFFD, 0xFFFFFFFF, nullptr, 0, 2, 0, 4);
    EXPECT_EQ(summe(ganzOben, oben), 0x0102u + 0x03u);

    // A difference to the field is reported but does not fail; nothing is written.
    aufnahme.leere();
    schreibe(eprom, 0x2000, "\x00\xAB", 2);
    ChecksumStandard vorn(0, 0x1000, 0x1001, nullptr, 0, 1, 0, 2);
    ChecksumStandard hinten(0, 0x1002, 0x1003, &vorn, 0, 1, 0, 2);
    hinten.setzeZielAdr(0x2000);
    adrInteger s = 0;
    EXPECT_EQ(hinten.bilde(0, eprom, &s), 1);
    EXPECT_EQ(s, 0x114u);
    EXPECT_EQ(aufnahme.letzte().label + aufnahme.letzte().detail, "CHK-DIFFERENTSoll: 114 != Ist: AB");
    std::uint8_t b = 0;
    eprom.liefereByte(0x2001, b, 0);
    EXPECT_EQ(b, 0xAB);
    // A field of four bytes that holds the sum is no difference.
    aufnahme.leere();
    schreibe(eprom, 0x3000, "\x00\x00\x68\xAC", 4);
    ChecksumStandard vier(0, 0x1000, 0x1003, nullptr, 0, 2, 0, 4);
    vier.setzeZielAdr(0x3000);
    EXPECT_EQ(vier.bilde(0, eprom, &s), 1);
    EXPECT_EQ(aufnahme.mit("CHK-DIFFERENT").size(), 0u);
}

}  // namespace
