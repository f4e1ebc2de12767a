// The three checksum commands, declared with their signatures and default
// lines and run through the argument machinery: defaults, the messages that
// close each run, letzteChecksumme, geaendert, and result files.
#include <gtest/gtest.h>

#include <unistd.h>

#include <fstream>
#include <sstream>

#include "BildHilfen.h"
#include "checksums/ChecksumKommandos.h"
#include "language/KdoKommando.h"

namespace {

using namespace checksumKommando;

// A command object as the image's table declares it, defaults included.
struct Befehl {
    Befehl(const char* name, std::uint16_t anzahl, const char* signatur, const char* vorgabe)
        : kommando(name, anzahl, signatur, nullptr)
    {
        AnwKommando definition(vorgabe);
        ok = Kommando::interpretiere(kommando, definition, 1);
    }
    KdoKommando kommando;
    int ok = 0;
};

class ChecksumKommando : public ::testing::Test {
protected:
    void SetUp() override
    {
        schreibe(eprom, 0x1000, "\x12\x34\x56\x78\x9A\xBC\xDE\xF0");
        schreibe(eprom, 0x2000, "123456789");
    }
    int lauf(Befehl& befehl, const std::string& zeile)
    {
        AnwKommando aufruf{String(zeile)};
        EXPECT_EQ(Kommando::interpretiere(befehl.kommando, aufruf, 0), 1) << zeile;
        if (&befehl == &standard)
            return kdoCheckSumme(eprom, letzteChecksumme, geaendert, befehl.kommando);
        if (&befehl == &siemens)
            return kdoCheckSummeSiemens(eprom, befehl.kommando);
        return kdoCheckSummeCRC(eprom, geaendert, befehl.kommando);
    }
    // Label and detail of the closing report.
    std::string schluss() const { return faenger.letzte().label + " " + faenger.letzte().detail; }

    MeldungsFaenger faenger;
    Eprom eprom;
    adrInteger letzteChecksumme = 0;
    std::int32_t geaendert = 0;
    Befehl standard{checksummeName, checksummeAnzahl, checksummeSignatur, checksummeVorgabe};
    Befehl siemens{siemensName, siemensAnzahl, siemensSignatur, siemensVorgabe};
    Befehl crc{crcName, crcAnzahl, crcSignatur, crcVorgabe};
};

TEST_F(ChecksumKommando, StandardSumme)
{
    EXPECT_EQ(standard.ok + siemens.ok + crc.ok, 3);
    EXPECT_EQ(labels(faenger), "");
    // No addresses: the whole image, 1-byte addends, 2-byte result.
    EXPECT_EQ(lauf(standard, "checksumme()"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 0615");   // 0x438 + 0x1DD, zeros between
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSumme ");
    EXPECT_EQ(geaendert, 0);

    EXPECT_EQ(lauf(standard, "checksumme(1000, 1007, 1004, YES)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 0312");
    EXPECT_EQ(geaendert, 1);
    EXPECT_EQ(lauf(standard, "checksumme(1000, 1003, /, NO, NO, 1, 4)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 00000114");
    // The other kinds leave letzteChecksumme alone.
    lauf(siemens, "checksummeSiemens(2000, 2008)");
    lauf(crc, "checksummeCRC(2000, 2008)");
    EXPECT_EQ(lauf(standard, "checksumme(1000, 1001, /, NO, YES, 2, 1)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 48");   // 0x1234 + 0x114, one byte
}

TEST_F(ChecksumKommando, FehlschlagMeldetUngekappteTeilsumme)
{
    Eprom fest;
    fest.definiereBereich(0x1000, 0x1003);
    fest.definiereBereich(0x1010, 0x1013);
    schreibe(fest, 0x1000, "\xFF\xFF\xFF\xFF");
    eprom = fest;
    faenger.leere();
    EXPECT_EQ(lauf(standard, "checksumme(/, /, /, NO, NO, 1, 1)"), 0);
    EXPECT_EQ(labels(faenger), "EPR-ADR-NOT-IN-EPROM,CHK-ADR-NOT-OK,CHECKSUM");
    EXPECT_EQ(schluss(), "CHECKSUM 3FC");
}

TEST_F(ChecksumKommando, CrcUndSiemens)
{
    EXPECT_EQ(lauf(siemens, "checksummeSiemens(2000, 2008)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_SIEMENS D0353B41");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSummeSiemens ");
    EXPECT_EQ(lauf(crc, "checksummeCRC(2000, 2008)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC32 CBF43926");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSummeCRC ");
    EXPECT_EQ(lauf(crc, "checksummeCRC(2000, 2008, /, CRC16)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC16 A47B");
    EXPECT_EQ(lauf(crc, "checksummeCRC(2000, 2008, /, CRC16CCITT)"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC16_CCITT 31C3");
    EXPECT_EQ(geaendert, 0);

    EXPECT_EQ(lauf(crc, "checksummeCRC(2000, 2008, 3000, CRC32, YES)"), 1);
    EXPECT_EQ(bytes(eprom, 0x3000, 4), "26 39 F4 CB");
    EXPECT_EQ(geaendert, 1);
    // A refused field still marks the image as changed.
    geaendert = 0;
    faenger.leere();
    EXPECT_EQ(lauf(crc, "checksummeCRC(2000, 2008, 2008, CRC16CCITT)"), 1);
    EXPECT_EQ(labels(faenger), "CHK-TARGET-ADDRESS-NOT-VALID,CHECKSUM_CRC16_CCITT");
    EXPECT_EQ(geaendert, 1);
}

TEST_F(ChecksumKommando, ErgebnisDateien)
{
    const std::string name = ::testing::TempDir() + "chk_kdo_" + std::to_string(::getpid()) + ".txt";
    std::remove(name.c_str());
    lauf(standard, "checksumme(1000, 1007, /, NO, NO, 1, 2, NO, " + name + ")");
    lauf(siemens, "checksummeSiemens(2000, 2008, " + name + R"(, anhaengen, "<ChksumTyp>: <Chksum>\\n"))");
    lauf(crc, "checksummeCRC(2000, 2008, /, CRC16, NO, " + name + R"(, anhaengen, " <AnfAdr>-<EndAdr> <Chksum>"))");
    std::ifstream ein(name);
    std::stringstream inhalt;
    inhalt << ein.rdbuf();
    // The default statement has no line feed at its end.
    EXPECT_EQ(inhalt.str(), "0438Checksumme Siemens: D0353B41\n 002000-002008 A47B");
    std::remove(name.c_str());
}

} // namespace
