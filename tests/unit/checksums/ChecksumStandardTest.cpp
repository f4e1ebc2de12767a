// The standard sum over an image: widths and byte order, target field and
// compensation, the refusals and their messages, gaps, the compare mode, and
// the result file with its format variables.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <string>

#include "checksums/ChecksumStandard.h"
#include "foundation/DateiName.h"
#include "foundation/MeldungsFaenger.h"
#include "image/Eprom.h"

namespace {

const std::uint8_t acht[] = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0};

void schreibe(Eprom& eprom, adrInteger adr, std::initializer_list<std::uint8_t> bytes)
{
    for (std::uint8_t b : bytes)
        eprom.setzeByte(adr++, b);
}

Eprom achtBytes()
{
    Eprom eprom;
    for (adrInteger i = 0; i < 8; ++i)
        eprom.setzeByte(0x1000 + i, acht[i]);
    return eprom;
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

std::string labels(const MeldungsFaenger& faenger)
{
    std::string text;
    for (const auto& m : faenger.meldungen())
        text += (text.empty() ? "" : ",") + m.label;
    return text;
}

struct Fall {
    adrInteger anf, end;
    std::uint16_t anzahlBytes;
    int swap;
    std::uint16_t groesse;
    adrInteger erwartet;
};

TEST(ChecksumStandard, BreitenUndByteFolge)
{
    const Fall faelle[] = {
        {0x1000, 0x1007, 1, 0, 2, 0x0438},     {0x1000, 0x1007, 2, 0, 2, 0xE258},
        {0x1000, 0x1007, 2, 1, 2, 0x59E0},     {0x1000, 0x1007, 4, 0, 4, 0xACF13568},
        {0x1000, 0x1007, 4, 1, 4, 0x6934F0AC}, {0x1007, 0x1000, 2, 0, 2, 0xE258},  // reversed pair
        {0x1000, 0x1007, 1, 0, 1, 0x38},       {0x1000, 0x1007, 4, 0, 3, 0xF13568},
        {0x1000, 0x1007, 4, 0, 5, 0},          {0x0000, 0xFFFFFFFF, 1, 0, 2, 0x0438},  // cut to the image
    };
    for (const Fall& f : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        ChecksumStandard summe(0, f.anf, f.end, nullptr, 0, f.anzahlBytes, f.swap, f.groesse);
        adrInteger ergebnis = 0xDEAD;
        EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 1);
        EXPECT_EQ(ergebnis, f.erwartet) << std::hex << f.anf << " " << f.anzahlBytes << " " << f.swap;
        EXPECT_EQ(faenger.anzahl(), 0u) << labels(faenger);
    }
}

TEST(ChecksumStandard, KompensierungHaeltDieSummeFest)
{
    Eprom eprom = achtBytes();
    MeldungsFaenger faenger;
    ChecksumStandard summe(1, 0x1000, 0x1007, nullptr, 0, 1, 0, 2);
    summe.setzeZielAdr(0x1004);
    adrInteger ergebnis = 0;
    EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 1);
    EXPECT_EQ(ergebnis, 0x0312u);
    EXPECT_EQ(bytes(eprom, 0x1000, 8), "12 34 56 78 03 12 FC ED");
    EXPECT_EQ(faenger.anzahl(), 0u);

    ChecksumStandard nochmal(0, 0x1000, 0x1007, nullptr, 0, 1, 0, 2);
    EXPECT_EQ(nochmal.liefereSumme(eprom), 0x0312u);
}

TEST(ChecksumStandard, ZielFeldMitTauschUndBreiten)
{
    // Two-byte field swapped with the addends; three-byte fields are always
    // big-endian; three-byte addends give up the swap, field included.
    struct ZielFall {
        std::uint16_t anzahlBytes;
        int swap;
        std::uint16_t groesse;
        const char* feld;
        const char* meldungen;
    } faelle[] = {
        {1, 0, 2, "04 38", ""},
        {2, 1, 2, "E0 59", ""},
        {1, 1, 2, "38 04", ""},
        {1, 1, 3, "00 04 38", ""},
        {4, 1, 4, "AC F0 34 69", ""},
        {3, 1, 2, "BF 12", "CHK-COULD-NOT-SWAP"},  // 123456 + 789ABC + DEF0|00
    };
    for (const auto& f : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        ChecksumStandard summe(0, 0x1000, 0x1007, nullptr, 0, f.anzahlBytes, f.swap, f.groesse);
        summe.setzeZielAdr(0x2000);
        adrInteger ergebnis = 0;
        EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 1);
        EXPECT_EQ(bytes(eprom, 0x2000, f.groesse), f.feld) << f.anzahlBytes << " " << f.swap << " " << f.groesse;
        EXPECT_EQ(labels(faenger), f.meldungen);
    }
}

TEST(ChecksumStandard, UngueltigeZieleUndTausch)
{
    struct Ablehnung {
        adrInteger anf;
        adrInteger ziel;
        std::uint16_t anzahlBytes;
        int swap;
        const char* meldungen;
        const char* text;
    } faelle[] = {
        {0x1000, 0x1005, 1, 0, "CHK-TARGET-ADDRESS-NOT-VALID,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:001005\nAnfAdr:001000  EndAdr:001007"},
        {0x1000, 0x1007, 1, 0, "CHK-TARGET-ADDRESS-NOT-VALID,CHK-TARGET-ADDRESS-NOT-VALID,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:001007\nAnfAdr:001000  EndAdr:001007"},
        {0x1001, 0x2000, 2, 1, "CHK-SWAP-NEEDS-EVEN-START-AND-LENGTH,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:002000\nAnfAdr:001001  EndAdr:001007"},
    };
    for (const auto& f : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        ChecksumStandard summe(1, f.anf, 0x1007, nullptr, 0, f.anzahlBytes, f.swap, 2);
        summe.setzeZielAdr(f.ziel);
        adrInteger ergebnis = 0;
        EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 0);
        EXPECT_EQ(labels(faenger), f.meldungen);
        EXPECT_EQ(faenger.letzte().detail, f.text);
        EXPECT_EQ(faenger.letzte().funktion, "ChecksumStandard::bilde");
        // Refused before the clearing: the image is untouched.
        EXPECT_EQ(bytes(eprom, 0x1000, 8), "12 34 56 78 9A BC DE F0");
    }
    // A field wholly below the range, or wholly inside, is accepted.
    Eprom eprom = achtBytes();
    MeldungsFaenger faenger;
    ChecksumStandard unten(0, 0x1002, 0x1007, nullptr, 0, 1, 0, 2);
    unten.setzeZielAdr(0x1000);
    adrInteger ergebnis = 0;
    EXPECT_EQ(unten.bildeSumme(eprom, &ergebnis), 1);
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(ChecksumStandard, BereichAusserhalbGibtAddierWert)
{
    Eprom eprom = achtBytes();
    MeldungsFaenger faenger;
    ChecksumStandard summe(0, 0x3000, 0x4000, nullptr, 0x12345, 1, 0, 2);
    summe.setzeZielAdr(0x1002);
    adrInteger ergebnis = 0;
    EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 1);
    EXPECT_EQ(ergebnis, 0x2345u);
    // Cleared, but no result written.
    EXPECT_EQ(bytes(eprom, 0x1000, 4), "12 34 00 00");

    Eprom leer;
    ChecksumStandard ohne(0, 0, 0xFFFFFFFF, nullptr, 7, 4, 1, 4);
    EXPECT_EQ(ohne.bildeSumme(leer, &ergebnis), 1);
    EXPECT_EQ(ergebnis, 7u);
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(ChecksumStandard, LueckeBrichtAbMitTeilsumme)
{
    Eprom eprom;
    eprom.definiereBereich(0x1000, 0x1003);
    eprom.definiereBereich(0x1008, 0x100B);
    schreibe(eprom, 0x1000, {1, 2, 3, 4});
    schreibe(eprom, 0x1008, {5, 6, 7, 8});
    MeldungsFaenger faenger;
    ChecksumStandard summe(0, 0x1000, 0x100B, nullptr, 0x100, 1, 0, 1);
    adrInteger ergebnis = 0;
    EXPECT_EQ(summe.bildeSumme(eprom, &ergebnis), 0);
    // Unmasked and without the added value.
    EXPECT_EQ(ergebnis, 10u);
    ASSERT_EQ(labels(faenger), "EPR-ADR-NOT-IN-EPROM,CHK-ADR-NOT-OK");
    EXPECT_EQ(faenger.meldungen()[0].detail.rfind("Adr.: 1004\n", 0), 0u);
    EXPECT_EQ(faenger.letzte().detail, "keine Ziel-Adr\nAnfAdr:001000  EndAdr:00100B");
}

TEST(ChecksumStandard, LetzterAddendLiestUeberDasEnde)
{
    MeldungsFaenger faenger;
    adrInteger ergebnis = 0;
    // At the end of a fixed region the extra byte is missing.
    Eprom fest;
    fest.definiereBereich(0x1000, 0x1004);
    schreibe(fest, 0x1000, {0x10, 0x20, 0x30, 0x40, 0x50});
    ChecksumStandard amEnde(0, 0x1000, 0x1004, nullptr, 0, 2, 0, 2);
    EXPECT_EQ(amEnde.bildeSumme(fest, &ergebnis), 0);
    EXPECT_EQ(ergebnis, 0x1020u + 0x3040u);
    EXPECT_EQ(labels(faenger), "EPR-ADR-NOT-IN-EPROM,CHK-ADR-NOT-OK");
    EXPECT_EQ(faenger.meldungen()[0].detail.rfind("Adr.: 1005\n", 0), 0u);

    // Inside the image the byte behind the range counts.
    faenger.leere();
    Eprom eprom = achtBytes();
    ChecksumStandard innen(0, 0x1000, 0x1002, nullptr, 0, 2, 0, 2);
    EXPECT_EQ(innen.bildeSumme(eprom, &ergebnis), 1);
    EXPECT_EQ(ergebnis, (0x1234u + 0x5678u) & 0xFFFF);

    // At the top of the address space the addend ends short.
    Eprom oben;
    schreibe(oben, 0xFFFFFFFD, {0x01, 0x02, 0x03});
    ChecksumStandard kurz(0, 0xFFFFFFFD, 0xFFFFFFFF, nullptr, 0, 2, 0, 4);
    EXPECT_EQ(kurz.bildeSumme(oben, &ergebnis), 1);
    EXPECT_EQ(ergebnis, 0x0102u + 0x03u);
    EXPECT_EQ(faenger.anzahl(), 0u);
}

TEST(ChecksumStandard, VergleichsModus)
{
    Eprom eprom = achtBytes();
    schreibe(eprom, 0x2000, {0x04, 0x38});
    MeldungsFaenger faenger;
    ChecksumStandard summe(0, 0x1000, 0x1007, nullptr, 0, 1, 0, 2);
    summe.setzeZielAdr(0x2000);
    adrInteger ergebnis = 0;
    EXPECT_EQ(summe.bilde(0, eprom, &ergebnis), 1);
    EXPECT_EQ(faenger.anzahl(), 0u);

    schreibe(eprom, 0x2000, {0x04, 0x39});
    EXPECT_EQ(summe.bilde(0, eprom, &ergebnis), 1);
    ASSERT_EQ(labels(faenger), "CHK-DIFFERENT");
    EXPECT_EQ(faenger.letzte().detail, "Soll: 438 != Ist: 439");
    EXPECT_EQ(ergebnis, 0x438u);
    // Compare mode never writes.
    EXPECT_EQ(bytes(eprom, 0x2000, 2), "04 39");
}

TEST(ChecksumStandard, NaechsteSummeWirdAddiert)
{
    Eprom eprom = achtBytes();
    ChecksumStandard vorn(0, 0x1000, 0x1003, nullptr, 0, 1, 0, 2);
    ChecksumStandard hinten(0, 0x1004, 0x1007, &vorn, 1, 1, 0, 2);
    EXPECT_EQ(hinten.liefereSumme(eprom), 0x0439u);

    std::ostringstream bericht;
    hinten.zeigeBericht(eprom, bericht);
    EXPECT_EQ(bericht.str(),
              "Byteweise Addition mit 2-Byte-Ergebnis\nvon 001004 bis 001007\nErgebnis: 00000439\n"
              "\naddiert zu"
              "Byteweise Addition mit 2-Byte-Ergebnis\nvon 001000 bis 001003\nErgebnis: 00000114\n");
    std::ostringstream kurz;
    hinten.setzeZielAdr(0x2000);
    hinten.zeigeKurz(kurz, eprom, 0x439);
    EXPECT_EQ(kurz.str(), "[001004 ... 001007] -> 0439  (002000)");
}

class ErgebnisDatei : public ::testing::Test {
protected:
    void SetUp() override
    {
        name = ::testing::TempDir() + "chk_ergebnis_" + std::to_string(::getpid()) + ".txt";
        std::remove(name.c_str());
    }
    void TearDown() override { std::remove(name.c_str()); }
    std::string inhalt() const
    {
        std::ifstream ein(name);
        std::stringstream s;
        s << ein.rdbuf();
        return s.str();
    }
    std::string name;
};

TEST_F(ErgebnisDatei, VariablenNeuUndAnhaengen)
{
    Eprom eprom = achtBytes();
    MeldungsFaenger faenger;
    ChecksumStandard summe(0, 0x0800, 0x1005, nullptr, 0, 1, 0, 2);
    const String format("<AnfAdr>-<EndAdr> <Chksum> <ChksumTyp>\\n");
    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 0x438, DateiName(name.c_str()), 0, format), 1);
    EXPECT_EQ(inhalt(), "001000-001005 0438 Checksumme Standard\n");
    // Two-byte results show as 16 bits, others with all their digits.
    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 0x12345, DateiName(name.c_str()), 1, format), 1);
    EXPECT_EQ(inhalt(), "001000-001005 0438 Checksumme Standard\n001000-001005 2345 Checksumme Standard\n");
    ChecksumStandard einByte(0, 0x1000, 0x1007, nullptr, 0, 1, 0, 1);
    EXPECT_EQ(einByte.anzeigeErgebnis(eprom, 0x1234, DateiName(name.c_str()), 0, "<Chksum>"), 1);
    EXPECT_EQ(inhalt(), "1234");
    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 0x1, DateiName(name.c_str()), 0, "<Chksum>"), 1);
    EXPECT_EQ(inhalt(), "0001");
    EXPECT_EQ(faenger.anzahl(), 0u);

    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 0x1, DateiName(name.c_str()), 0, "<Summe>"), 1);
    EXPECT_EQ(inhalt(), "Summe");
    ASSERT_EQ(labels(faenger), "RPL-NO-SUCH-SW");
    EXPECT_EQ(faenger.letzte().detail, "Checksumme Standard: Summe");
    EXPECT_EQ(faenger.letzte().funktion, "Checksumme::anzeigeErgebnis");
}

TEST_F(ErgebnisDatei, UnbeschreibbarUndSchreibgeschuetzt)
{
    Eprom eprom = achtBytes();
    MeldungsFaenger faenger;
    ChecksumStandard summe(0, 0x1000, 0x1007, nullptr, 0, 1, 0, 2);
    // A file that cannot be made is skipped without a word.
    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 1, DateiName("/nonexistent-dir/x.txt"), 0, "<Chksum>"), 1);
    EXPECT_EQ(faenger.anzahl(), 0u);

    if (::geteuid() == 0)
        GTEST_SKIP() << "write protection does not hold for root";
    std::string verzeichnis = ::testing::TempDir() + "chk_ro_" + std::to_string(::getpid());
    std::string datei = verzeichnis + "/alt.txt";
    ASSERT_EQ(::mkdir(verzeichnis.c_str(), 0755), 0);
    { std::ofstream(datei) << "alt"; }
    ::chmod(verzeichnis.c_str(), 0555);
    EXPECT_EQ(summe.anzeigeErgebnis(eprom, 1, DateiName(datei.c_str()), 0, "<Chksum>"), 0);
    EXPECT_EQ(labels(faenger), "FILE-READONLY");
    EXPECT_EQ(faenger.letzte().funktion, "Checksumme::anzeigeErgebnis ");
    ::chmod(verzeichnis.c_str(), 0755);
    std::remove(datei.c_str());
    ::rmdir(verzeichnis.c_str());
}

} // namespace
