// The three checksum commands, declared with their signatures and default
// lines and run through the argument machinery: defaults, the messages that
// close each run, letzteChecksumme, geaendert, and result files.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "checksums/ChecksumKommandos.h"
#include "foundation/MeldungsFaenger.h"
#include "image/Eprom.h"
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
    // Reads the arguments of one call; 1 if the handler may run.
    int lies(const std::string& zeile)
    {
        AnwKommando aufruf{String(zeile)};
        return Kommando::interpretiere(kommando, aufruf, 0);
    }
    KdoKommando kommando;
    int ok = 0;
};

class ChecksumKommando : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char text[] = "\x12\x34\x56\x78\x9A\xBC\xDE\xF0";
        for (adrInteger i = 0; i < 8; ++i)
            eprom.setzeByte(0x1000 + i, static_cast<std::uint8_t>(text[i]));
        const char* ziffern = "123456789";
        for (adrInteger i = 0; i < 9; ++i)
            eprom.setzeByte(0x2000 + i, static_cast<std::uint8_t>(ziffern[i]));
    }

    int checksumme(const std::string& argumente)
    {
        EXPECT_EQ(standard.lies("checksumme(" + argumente + ")"), 1) << argumente;
        return kdoCheckSumme(eprom, letzteChecksumme, geaendert, standard.kommando);
    }
    int siemensSumme(const std::string& argumente)
    {
        EXPECT_EQ(siemens.lies("checksummeSiemens(" + argumente + ")"), 1) << argumente;
        return kdoCheckSummeSiemens(eprom, siemens.kommando);
    }
    int crcSumme(const std::string& argumente)
    {
        EXPECT_EQ(crc.lies("checksummeCRC(" + argumente + ")"), 1) << argumente;
        return kdoCheckSummeCRC(eprom, geaendert, crc.kommando);
    }
    std::string schluss() const
    {
        const Meldung& m = faenger.letzte();
        return m.label + " " + m.detail;
    }

    MeldungsFaenger faenger;
    Eprom eprom;
    adrInteger letzteChecksumme = 0;
    std::int32_t geaendert = 0;
    Befehl standard{checksummeName, checksummeAnzahl, checksummeSignatur, checksummeVorgabe};
    Befehl siemens{siemensName, siemensAnzahl, siemensSignatur, siemensVorgabe};
    Befehl crc{crcName, crcAnzahl, crcSignatur, crcVorgabe};
};

TEST_F(ChecksumKommando, VorgabenGeltenOhneMeldung)
{
    EXPECT_EQ(standard.ok, 1);
    EXPECT_EQ(siemens.ok, 1);
    EXPECT_EQ(crc.ok, 1);
    EXPECT_EQ(faenger.anzahl(), 0u);
    // No addresses: the whole image, 1-byte addends, 2-byte result.
    EXPECT_EQ(checksumme(""), 1);
    EXPECT_EQ(faenger.anzahl(), 1u);
    std::uint32_t erwartet = 0x438;
    for (const char* z = "123456789"; *z; ++z)
        erwartet += static_cast<std::uint8_t>(*z);
    EXPECT_EQ(letzteChecksumme, erwartet & 0xFFFF);
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSumme ");
    EXPECT_EQ(faenger.letzte().level, 'S');
    EXPECT_EQ(geaendert, 0);
}

TEST_F(ChecksumKommando, StandardSummeMitZielUndLetzterSumme)
{
    EXPECT_EQ(checksumme("1000, 1007, 1004, YES"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 0312");
    EXPECT_EQ(geaendert, 1);

    EXPECT_EQ(checksumme("1000, 1003, /, NO, NO, 1, 4"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 00000114");
    // The other kinds leave letzteChecksumme alone.
    EXPECT_EQ(siemensSumme("2000, 2008"), 1);
    EXPECT_EQ(crcSumme("2000, 2008"), 1);
    EXPECT_EQ(letzteChecksumme, 0x114u);
    EXPECT_EQ(checksumme("1000, 1001, /, NO, YES, 2, 1"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM 48");   // 0x1234 + 0x114, one byte
}

TEST_F(ChecksumKommando, FehlschlagMeldetUngekappteTeilsumme)
{
    Eprom fest;
    fest.definiereBereich(0x1000, 0x1003);
    fest.definiereBereich(0x1010, 0x1013);
    for (adrInteger i = 0; i < 4; ++i) {
        fest.setzeByte(0x1000 + i, 0xFF);
        fest.setzeByte(0x1010 + i, 0xFF);
    }
    eprom = fest;
    faenger.leere();
    EXPECT_EQ(checksumme("/, /, /, NO, NO, 1, 1"), 0);
    std::string folge;
    for (const auto& m : faenger.meldungen())
        folge += m.label + " ";
    EXPECT_EQ(folge, "EPR-ADR-NOT-IN-EPROM CHK-ADR-NOT-OK CHECKSUM ");
    EXPECT_EQ(schluss(), "CHECKSUM 3FC");
}

TEST_F(ChecksumKommando, CrcUndSiemensMeldungen)
{
    EXPECT_EQ(siemensSumme("2000, 2008"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_SIEMENS D0353B41");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSummeSiemens ");

    EXPECT_EQ(crcSumme("2000, 2008"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC32 CBF43926");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoCheckSummeCRC ");
    EXPECT_EQ(crcSumme("2000, 2008, /, CRC16"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC16 A47B");
    EXPECT_EQ(crcSumme("2000, 2008, /, CRC16CCITT"), 1);
    EXPECT_EQ(schluss(), "CHECKSUM_CRC16_CCITT 31C3");
    EXPECT_EQ(geaendert, 0);

    EXPECT_EQ(crcSumme("2000, 2008, 3000, CRC32, YES"), 1);
    std::uint8_t feld[4];
    for (adrInteger i = 0; i < 4; ++i)
        eprom.liefereByte(0x3000 + i, feld[i], 0);
    EXPECT_EQ(std::memcmp(feld, "\x26\x39\xF4\xCB", 4), 0);
    EXPECT_EQ(geaendert, 1);

    // A refused field still marks the image as changed.
    geaendert = 0;
    EXPECT_EQ(crcSumme("2000, 2008, 2008, CRC16CCITT"), 1);
    EXPECT_EQ(faenger.meldungen()[faenger.anzahl() - 2].label, "CHK-TARGET-ADDRESS-NOT-VALID");
    EXPECT_EQ(schluss(), "CHECKSUM_CRC16_CCITT 31C3");
    EXPECT_EQ(geaendert, 1);
}

TEST_F(ChecksumKommando, ErgebnisDateien)
{
    std::string name = ::testing::TempDir() + "chk_kdo_" + std::to_string(::getpid()) + ".txt";
    std::remove(name.c_str());
    EXPECT_EQ(checksumme("1000, 1007, /, NO, NO, 1, 2, NO, " + name), 1);
    EXPECT_EQ(siemensSumme("2000, 2008, " + name + R"(, anhaengen, "<ChksumTyp>: <Chksum>\\n")"), 1);
    EXPECT_EQ(crcSumme("2000, 2008, /, CRC16, NO, " + name + R"(, anhaengen, " <AnfAdr>-<EndAdr> <Chksum>")"),
              1);
    std::ifstream ein(name);
    std::stringstream inhalt;
    inhalt << ein.rdbuf();
    // The default statement has no line feed at its end.
    EXPECT_EQ(inhalt.str(), "0438Checksumme Siemens: D0353B41\n 002000-002008 A47B");
    std::remove(name.c_str());
}

} // namespace
