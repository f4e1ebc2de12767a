// The lenient checksum kinds over an image: check values, lanes by absolute
// address, holes read as zeros, the stricter target rule and field byte
// order, and walks across the windows of a free image.
#include <gtest/gtest.h>

#include <memory>

#include "BildHilfen.h"
#include "checksums/ChecksumCRC16.h"
#include "checksums/ChecksumCRC32.h"
#include "checksums/ChecksumSiemens.h"

namespace {

adrInteger summe(Checksumme& c, Eprom& eprom) {
    adrInteger s = 0xDEADBEEF;
    EXPECT_EQ(c.bildeSumme(eprom, &s), 1);
    return s;
}

// 0 Siemens, 1 CRC32, 2 CRC16 CCITT, 3 CRC16 0xA001.
std::unique_ptr<Checksumme> art(int nr, adrInteger anf, adrInteger end, int swap = 0) {
    switch (nr) {
    case 0: return std::make_unique<ChecksumSiemens>(anf, end);
    case 1: return std::make_unique<ChecksumCRC32>(anf, end, swap);
    case 2: return std::make_unique<ChecksumCRC16>(anf, end, swap, 0x1021);
    default: return std::make_unique<ChecksumCRC16>(anf, end, swap, 0xA001);
    }
}

TEST(ChecksumCrc, CheckWerteNamenUndLeereBereiche) {
    Eprom eprom;
    schreibe(eprom, 1, "123456789");
    const adrInteger werte[] = {0x41D0353B, 0xCBF43926, 0x31C3, 0xFFFFA47B};  // lanes moved by one
    const char* namen[] = {"Checksumme Siemens", "Checksumme CRC32", "Checksumme CRC16 CCITT",
                           "Checksumme CRC16"};
    for (int nr = 0; nr < 4; ++nr) {
        EXPECT_EQ(summe(*art(nr, 1, 9), eprom), werte[nr]) << nr;
        EXPECT_EQ(art(nr, 1, 9)->liefereName(), namen[nr]);
        // Start above end, or beside the image: nothing is walked.
        EXPECT_EQ(summe(*art(nr, 5, 4), eprom), 0u);
        EXPECT_EQ(summe(*art(nr, 0x200, 0x300), eprom), 0u);
    }
}

TEST(ChecksumCrc, LueckeZaehltAlsNullen) {
    Eprom mitLuecke, gefuellt;
    mitLuecke.definiereBereich(0x1000, 0x10FF);
    mitLuecke.definiereBereich(0x1200, 0x12FF);
    gefuellt.definiereBereich(0x1000, 0x12FF);
    for (adrInteger a = 0; a < 0x100; ++a)
        for (Eprom* e : {&mitLuecke, &gefuellt}) {
            e->setzeByte(0x1000 + a, static_cast<std::uint8_t>(a * 7 + 1));
            e->setzeByte(0x1200 + a, static_cast<std::uint8_t>(a * 3));
        }
    MeldungsFaenger faenger;
    for (int nr = 0; nr < 4; ++nr)
        EXPECT_EQ(summe(*art(nr, 0x1003, 0x1234), mitLuecke), summe(*art(nr, 0x1003, 0x1234), gefuellt))
            << nr;
    EXPECT_EQ(labels(faenger), "");
}

TEST(ChecksumCrc, ZielFeld) {
    // Field bytes, and the bounds of the rule that the field must not touch
    // the range 100 to 108 at all.
    struct {
        int nr, swap;
        adrInteger ziel;
        const char* feld;  // null: refused
    } faelle[] = {
        {1, 0, 0x1F0, "CB F4 39 26"}, {1, 1, 0x1F0, "26 39 F4 CB"}, {2, 0, 0x1F0, "31 C3"},
        {2, 1, 0x1F0, "C3 31"},       {2, 0, 0x0FF, nullptr},       {2, 0, 0x0FE, "31 C3"},
        {2, 0, 0x108, nullptr},       {2, 0, 0x109, "31 C3"},       {1, 0, 0x0FD, nullptr},
        {1, 0, 0x0FC, "CB F4 39 26"}, {1, 0, 0x105, nullptr},
    };
    for (const auto& f : faelle) {
        Eprom eprom;
        schreibe(eprom, 0xF0, std::string(0x30, '\x55').c_str());
        schreibe(eprom, 0x100, "123456789");
        MeldungsFaenger faenger;
        auto c = art(f.nr, 0x100, 0x108, f.swap);
        c->setzeZielAdr(f.ziel);
        const int breite = f.nr == 1 ? 4 : 2;
        const std::string vorher = bytes(eprom, 0xF0, 0x30);
        // The sum is delivered either way.
        EXPECT_EQ(summe(*c, eprom), f.nr == 1 ? 0xCBF43926u : 0x31C3u);
        if (f.feld) {
            EXPECT_EQ(bytes(eprom, f.ziel, breite), f.feld) << std::hex << f.ziel;
            EXPECT_EQ(labels(faenger), "");
        } else {
            EXPECT_EQ(bytes(eprom, 0xF0, 0x30), vorher) << std::hex << f.ziel;
            EXPECT_EQ(labels(faenger), "CHK-TARGET-ADDRESS-NOT-VALID");
            EXPECT_EQ(faenger.letzte().funktion,
                      breite == 4 ? "ChecksumCRC32::bilde" : "ChecksumCRC16::bilde");
        }
    }
    // A field that runs out of a fixed image is written as far as it goes.
    Eprom fest;
    fest.definiereBereich(0x100, 0x10A);
    schreibe(fest, 0x100, "123456789");
    MeldungsFaenger faenger;
    auto c = art(1, 0x100, 0x108);
    c->setzeZielAdr(0x109);
    EXPECT_EQ(summe(*c, fest), 0xCBF43926u);
    EXPECT_EQ(bytes(fest, 0x109, 2), "CB F4");
    EXPECT_EQ(labels(faenger), "");
}

TEST(ChecksumCrc, FreiesBildUeberFenstergrenzen) {
    Eprom eprom;
    eprom.setzeByte(0xFFFFFE, 0x11);
    eprom.setzeByte(0x1000001, 0x22);
    eprom.setzeByte(0x3000000, 0x33);
    // Lanes 2, 3 | 0, 1 across the border: 0x11, 0, 0, 0x22, each rotated.
    EXPECT_EQ(summe(*art(0, 0xFFFFFE, 0x1000001), eprom), 0x00442200u);

    summe(*art(2, 0, 0xFFFFFFFF), eprom);
    // The walk gave the untouched window between its empty region, as a
    // read there always does.
    const EpromSegment& seg = eprom.liefereSegment(0);
    ASSERT_EQ(seg.anzahlBereiche(), 4);
    bool leeresFenster = false;
    for (const auto& b : seg.bereiche)
        leeresFenster |= b->basisAdr == 0x2000000 && b->anfAdr == 0xFFFFFFFF && b->endAdr == 0;
    EXPECT_TRUE(leeresFenster);
}

}  // namespace
