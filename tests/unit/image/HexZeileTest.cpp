// The line codecs: decoding, line messages, extended address and data records.
#include "image/HexZeile.h"

#include <sstream>

#include "Meldungen.h"
#include "image/Eprom.h"

namespace {

using HexZeileTest = bildtest::MitMeldungen;

// White space and lower case are skipped.
TEST_F(HexZeileTest, DecodingAndLineMessages) {
    struct Fall {
        char art;  // 'I' Intel, '1' S1, '3' S3
        const char* zeile;
        int ok;
        const char* label;  // "" for none
        const char* detail;
    };
    const Fall faelle[] = {
        {'I', ":00000001FF", 1, "", ""},
        {'I', ":02 1234 00 ab CD\t40\r", 1, "", ""},
        {'I', ":10", 0, "", ""},  // a short Intel line is refused silently
        {'I', ":030000000102FA", 0, "HEXFILE-BYTECOUNT", "030000000102FA\n    2 != 3"},
        {'I', ":0100000041BF", 0, "HEXFILE-CHKSUM", "0100000041BF\n    be != bf"},
        {'I', ":10010000G0000000000000000000000000000000", 0, "HEXFILE-NOINTEL-FMT", "10010000"},
        {'1', "S1030000FC", 1, "", ""},
        {'3', "s3 07 12345678 AB CD 6C", 1, "", ""},
        {'1', "S1", 0, "HEXFILE-NOMOTOROLA-FMT", ""},
        {'1', "S104000041BB", 0, "HEXFILE-CHKSUM", "104000041BB\n    bb != ba"},
        {'1', "S105000041BA", 0, "HEXFILE-BYTECOUNT", "105000041BA\n    1 != 2"},
        {'1', "S5030001FB", 0, "HEXFILE-NOMOTOROLA-FMT", "5030001FB"},
        {'1', "S10300x0FC", 0, "HEXFILE-NOMOTOROLA-FMT", "10300"},
    };
    for (const Fall& f : faelle) {
        aufnahme.leere();
        int ok = f.art == 'I'   ? IntelHexZeileDaten(f.zeile).zerlege()
                 : f.art == '1' ? MotorolaHexZeileS1(f.zeile).zerlege()
                                : MotorolaHexZeileS3(f.zeile).zerlege();
        EXPECT_EQ(ok, f.ok) << f.zeile;
        EXPECT_EQ(aufnahme.anzahl(), *f.label ? 1u : 0u) << f.zeile;
        EXPECT_EQ(aufnahme.letzte().label + "|" + aufnahme.letzte().detail,
                  *f.label ? f.label + ("|" + std::string(f.detail)) : "|")
            << f.zeile;
    }
}

TEST_F(HexZeileTest, IntelExtendedAddressRecords) {
    adrInteger basis = 77;
    EXPECT_EQ(IntelHexZeileSegment(":020000021000EC").liefereBasis(basis), 1);
    EXPECT_EQ(basis, 0x10000u);
    EXPECT_EQ(IntelHexZeileSegment(":020000021000ED").liefereBasis(basis), 0);
    EXPECT_EQ(basis, 0u) << "a damaged record gives base 0";
    IntelHexZeileLinear(":020000040001F9").liefereBasis(basis);
    EXPECT_EQ(basis, 0x10000u);
    EXPECT_EQ(IntelHexZeileLinear(":020000040001F8").liefereBasis(basis), 0);
    EXPECT_EQ(basis, 0u);
}

TEST_F(HexZeileTest, DataRecordsStoredAndWritten) {
    Eprom g;
    IntelHexZeileDaten(":0100100042AD").speichere(g, 0x20000, nullptr, nullptr, nullptr);
    EXPECT_EQ(byteAn(g, 0x20010), 0x42);

    // A refused byte makes the result 0, is written as 0; the others are stored.
    Eprom fest;
    fest.definiereBereich(0x11, 0x11);
    EXPECT_EQ(IntelHexZeileDaten(":02001000AABB89").speichere(fest, 0, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(byteAn(fest, 0x11), 0xBB);
    Eprom festNull;
    festNull.definiereBereich(0, 0);
    std::ostringstream p;
    EXPECT_EQ(IntelHexZeileDaten().schreibe(p, festNull, 0, 2, 0, nullptr, nullptr), 0);
    EXPECT_EQ(p.str(), ":020000000000FE\n");
}

}  // namespace
