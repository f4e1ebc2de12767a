// The lenient checksum kinds over an image: check values, lanes by absolute
// address, holes read as zeros, the stricter target rule, field byte order,
// and the 16-bit display of the widened CRC-16.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "checksums/ChecksumCRC16.h"
#include "checksums/ChecksumCRC32.h"
#include "checksums/ChecksumSiemens.h"
#include "foundation/DateiName.h"
#include "foundation/MeldungsFaenger.h"
#include "image/Eprom.h"

namespace {

void schreibeText(Eprom& eprom, adrInteger adr, const char* text)
{
    for (std::size_t i = 0; i < std::strlen(text); ++i)
        eprom.setzeByte(adr + static_cast<adrInteger>(i), static_cast<std::uint8_t>(text[i]));
}

std::string bytes(Eprom& eprom, adrInteger adr, int anzahl)
{
    std::string text;
    char teil[4];
    for (int i = 0; i < anzahl; ++i) {
        std::uint8_t b = 0;
        eprom.liefereByte(adr + static_cast<adrInteger>(i), b, 0);
        std::snprintf(teil, sizeof teil, i ? " %02X" : "%02X", b);
        text += teil;
    }
    return text;
}

adrInteger summe(Checksumme& c, Eprom& eprom)
{
    adrInteger s = 0xDEADBEEF;
    EXPECT_EQ(c.bildeSumme(eprom, &s), 1);
    return s;
}

TEST(ChecksumCrc, CheckWerteUndNamen)
{
    Eprom eprom;
    schreibeText(eprom, 0, "123456789");
    ChecksumSiemens siemens(0, 8);
    ChecksumCRC32 crc32(0, 8, 0);
    ChecksumCRC16 ccitt(0, 8, 0, 0x1021);
    ChecksumCRC16 a001(0, 8, 0, 0xA001);
    EXPECT_EQ(summe(siemens, eprom), 0xD0353B41u);
    EXPECT_EQ(summe(crc32, eprom), 0xCBF43926u);
    EXPECT_EQ(summe(ccitt, eprom), 0x31C3u);
    // Bit 15 set: widened with ones.
    EXPECT_EQ(summe(a001, eprom), 0xFFFFA47Bu);

    EXPECT_EQ(siemens.liefereName(), "Checksumme Siemens");
    EXPECT_EQ(crc32.liefereName(), "Checksumme CRC32");
    EXPECT_EQ(ccitt.liefereName(), "Checksumme CRC16 CCITT");
    EXPECT_EQ(a001.liefereName(), "Checksumme CRC16");
    EXPECT_EQ(siemens.liefereGroesse(), 4);
    EXPECT_EQ(a001.liefereGroesse(), 2);

    // Lanes follow the absolute address.
    Eprom versetzt;
    schreibeText(versetzt, 1, "123456789");
    ChecksumSiemens ab1(1, 9);
    EXPECT_EQ(summe(ab1, versetzt), 0x41D0353Bu);
}

TEST(ChecksumCrc, LeererBereich)
{
    Eprom eprom;
    schreibeText(eprom, 0x100, "abc");
    // Start above end, and a range beside the image; no reordering.
    for (auto [anf, end] : {std::pair<adrInteger, adrInteger>{0x102, 0x100}, {0x200, 0x300}}) {
        ChecksumSiemens siemens(anf, end);
        ChecksumCRC32 crc32(anf, end, 0);
        ChecksumCRC16 crc16(anf, end, 0, 0xA001);
        EXPECT_EQ(summe(siemens, eprom), 0u);
        EXPECT_EQ(summe(crc32, eprom), 0u);
        EXPECT_EQ(summe(crc16, eprom), 0u);
    }
}

TEST(ChecksumCrc, LueckeZaehltAlsNullen)
{
    Eprom mitLuecke;
    mitLuecke.definiereBereich(0x1000, 0x10FF);
    mitLuecke.definiereBereich(0x1200, 0x12FF);
    Eprom gefuellt;
    gefuellt.definiereBereich(0x1000, 0x12FF);
    for (adrInteger a = 0; a < 0x100; ++a) {
        auto b = static_cast<std::uint8_t>(a * 7 + 1);
        mitLuecke.setzeByte(0x1000 + a, b);
        gefuellt.setzeByte(0x1000 + a, b);
        mitLuecke.setzeByte(0x1200 + a, static_cast<std::uint8_t>(~b));
        gefuellt.setzeByte(0x1200 + a, static_cast<std::uint8_t>(~b));
    }
    MeldungsFaenger faenger;
    auto kinds = [](adrInteger anf, adrInteger end) {
        std::vector<std::unique_ptr<Checksumme>> v;
        v.push_back(std::make_unique<ChecksumSiemens>(anf, end));
        v.push_back(std::make_unique<ChecksumCRC32>(anf, end, 0));
        v.push_back(std::make_unique<ChecksumCRC16>(anf, end, 0, 0x1021));
        v.push_back(std::make_unique<ChecksumCRC16>(anf, end, 0, 0xA001));
        return v;
    };
    auto a = kinds(0x1003, 0x1234);
    auto b = kinds(0x1003, 0x1234);
    for (std::size_t i = 0; i < a.size(); ++i)
        EXPECT_EQ(summe(*a[i], mitLuecke), summe(*b[i], gefuellt)) << a[i]->liefereName();
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(ChecksumCrc, ZielFeldByteFolge)
{
    struct Fall {
        int art;   // 0 CRC32, 1 CCITT
        int swap;
        const char* feld;
    } faelle[] = {
        {0, 0, "CB F4 39 26"}, {0, 1, "26 39 F4 CB"}, {1, 0, "31 C3"}, {1, 1, "C3 31"},
    };
    for (const Fall& f : faelle) {
        Eprom eprom;
        schreibeText(eprom, 0x100, "123456789");
        eprom.setzeByte(0x200, 0xEE);
        std::unique_ptr<Checksumme> c;
        if (f.art == 0)
            c = std::make_unique<ChecksumCRC32>(0x100, 0x108, f.swap);
        else
            c = std::make_unique<ChecksumCRC16>(0x100, 0x108, f.swap, 0x1021);
        c->setzeZielAdr(0x1F0);
        summe(*c, eprom);
        EXPECT_EQ(bytes(eprom, 0x1F0, f.art == 0 ? 4 : 2), f.feld);
    }
}

TEST(ChecksumCrc, ZielDarfBereichNichtBeruehren)
{
    struct Fall {
        int breite;
        adrInteger ziel;
        bool abgelehnt;
    } faelle[] = {
        {2, 0x0FF, true},  {2, 0x0FE, false}, {2, 0x108, true}, {2, 0x109, false},
        {4, 0x0FD, true},  {4, 0x0FC, false}, {4, 0x104, true}, {4, 0x109, false},
    };
    for (const Fall& f : faelle) {
        Eprom eprom;
        for (adrInteger a = 0xF0; a < 0x120; ++a)
            eprom.setzeByte(a, 0x55);
        schreibeText(eprom, 0x100, "123456789");
        MeldungsFaenger faenger;
        std::unique_ptr<Checksumme> c;
        if (f.breite == 4)
            c = std::make_unique<ChecksumCRC32>(0x100, 0x108, 0);
        else
            c = std::make_unique<ChecksumCRC16>(0x100, 0x108, 0, 0x1021);
        c->setzeZielAdr(f.ziel);
        const std::string vorher = bytes(eprom, 0xF0, 0x30);
        // The sum is delivered either way, before any field is written.
        EXPECT_EQ(summe(*c, eprom), f.breite == 4 ? 0xCBF43926u : 0x31C3u) << std::hex << f.ziel;
        if (f.abgelehnt) {
            ASSERT_EQ(faenger.anzahl(), 1u) << std::hex << f.ziel;
            EXPECT_EQ(faenger.letzte().label, "CHK-TARGET-ADDRESS-NOT-VALID");
            EXPECT_EQ(faenger.letzte().funktion, f.breite == 4 ? "ChecksumCRC32::bilde" : "ChecksumCRC16::bilde");
            EXPECT_EQ(bytes(eprom, 0xF0, 0x30), vorher);
        } else {
            EXPECT_EQ(faenger.anzahl(), 0u) << std::hex << f.ziel;
            EXPECT_NE(bytes(eprom, 0xF0, 0x30), vorher);
        }
    }
}

TEST(ChecksumCrc, SchreibfehlerDesFeldesBleibtStumm)
{
    Eprom eprom;
    eprom.definiereBereich(0x100, 0x10A);
    schreibeText(eprom, 0x100, "123456789");
    MeldungsFaenger faenger;
    ChecksumCRC32 crc(0x100, 0x108, 0);
    crc.setzeZielAdr(0x109);   // two bytes fit, two do not
    EXPECT_EQ(summe(crc, eprom), 0xCBF43926u);
    EXPECT_EQ(bytes(eprom, 0x109, 2), "CB F4");
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(ChecksumCrc, FormatZeigtSechzehnBit)
{
    Eprom eprom;
    schreibeText(eprom, 0, "123456789");
    ChecksumCRC16 a001(0, 8, 0, 0xA001);
    adrInteger s = a001.liefereSumme(eprom);
    std::string name = ::testing::TempDir() + "chk_crc16_format.txt";
    EXPECT_EQ(a001.anzeigeErgebnis(eprom, s, DateiName(name.c_str()), 0, "<Chksum> <ChksumTyp>"), 1);
    std::ifstream ein(name);
    std::stringstream inhalt;
    inhalt << ein.rdbuf();
    EXPECT_EQ(inhalt.str(), "A47B Checksumme CRC16");
    std::remove(name.c_str());

    std::ostringstream bericht;
    a001.zeigeBericht(eprom, bericht);
    EXPECT_EQ(bericht.str(), "Checksumme CRC16\nvon 000000 bis 000008\nErgebnis: A47B\n");
    ChecksumSiemens siemens(0, 8);
    std::ostringstream kurz;
    siemens.zeigeKurz(kurz, eprom, 1);
    EXPECT_EQ(kurz.str(), "");
}

TEST(ChecksumCrc, FreiesBildUeberFenstergrenzen)
{
    // A free image with bytes on both sides of a 16 MiB window border and
    // an empty window between: the walk crosses them all.
    Eprom eprom;
    eprom.setzeByte(0xFFFFFE, 0x11);
    eprom.setzeByte(0x1000001, 0x22);
    eprom.setzeByte(0x3000000, 0x33);
    ChecksumSiemens siemens(0xFFFFFE, 0x1000001);
    // Lanes 2, 3 | 0, 1: 0x11 then 0, then 0, then 0x22.
    EXPECT_EQ(summe(siemens, eprom), 0x00442200u);

    ChecksumCRC16 ccitt(0, 0xFFFFFFFF, 0, 0x1021);
    summe(ccitt, eprom);
    // The walk into the untouched window gave it its empty region, as a
    // read there always does.
    const EpromSegment& seg = eprom.liefereSegment(0);
    ASSERT_EQ(seg.anzahlBereiche(), 4);
    bool leeresFenster = false;
    for (const auto& b : seg.bereiche)
        leeresFenster |= b->basisAdr == 0x2000000 && b->anfAdr == 0xFFFFFFFF && b->endAdr == 0;
    EXPECT_TRUE(leeresFenster);
}

} // namespace
