// The standard sum over an image: widths and byte order, target fields, the
// refusals and their messages, gaps and the compare mode. Compensation and
// ranges beside the image are proven by the end-to-end cases.
#include <gtest/gtest.h>

#include <sstream>

#include "BildHilfen.h"
#include "checksums/ChecksumStandard.h"

namespace {

struct Lauf {
    adrInteger ziel;  // 0: none
    int kompensierung;
    adrInteger anf, end;
    std::uint16_t anzahlBytes;
    int swap;
    std::uint16_t groesse;
};

// Runs one sum over `eprom`; gives bilde's result, the sum in `summe`.
int bilde(Eprom& eprom, const Lauf& l, adrInteger& summe, adrInteger addierWert = 0) {
    ChecksumStandard s(l.kompensierung, l.anf, l.end, nullptr, addierWert, l.anzahlBytes, l.swap, l.groesse);
    if (l.ziel) s.setzeZielAdr(l.ziel);
    summe = 0xDEAD;
    return s.bildeSumme(eprom, &summe);
}

TEST(ChecksumStandard, BreitenUndByteFolge) {
    const std::pair<Lauf, adrInteger> faelle[] = {
        {{0, 0, 0x1000, 0x1007, 1, 0, 2}, 0x0438},     {{0, 0, 0x1000, 0x1007, 2, 0, 2}, 0xE258},
        {{0, 0, 0x1000, 0x1007, 2, 1, 2}, 0x59E0},     {{0, 0, 0x1000, 0x1007, 4, 0, 4}, 0xACF13568},
        {{0, 0, 0x1000, 0x1007, 4, 1, 4}, 0x6934F0AC}, {{0, 0, 0x1007, 0x1000, 2, 0, 2}, 0xE258},
        {{0, 0, 0x1000, 0x1007, 1, 0, 1}, 0x38},       {{0, 0, 0x1000, 0x1007, 4, 0, 3}, 0xF13568},
        {{0, 0, 0x1000, 0x1007, 4, 0, 5}, 0},          {{0, 0, 0x0, 0xFFFFFFFF, 1, 0, 2}, 0x0438},
    };
    for (const auto& [lauf, erwartet] : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        adrInteger summe;
        EXPECT_EQ(bilde(eprom, lauf, summe), 1);
        EXPECT_EQ(summe, erwartet) << std::hex << lauf.anf << " " << lauf.anzahlBytes << lauf.swap;
        EXPECT_EQ(labels(faenger), "");
    }
}

TEST(ChecksumStandard, ZielFeldMitTauschUndBreiten) {
    // Three-byte addends give up the swap, field included; three-byte
    // fields are always big-endian.
    const std::tuple<Lauf, const char*, const char*> faelle[] = {
        {{0x2000, 0, 0x1000, 0x1007, 1, 0, 2}, "04 38", ""},
        {{0x2000, 0, 0x1000, 0x1007, 2, 1, 2}, "E0 59", ""},
        {{0x2000, 0, 0x1000, 0x1007, 1, 1, 2}, "38 04", ""},
        {{0x2000, 0, 0x1000, 0x1007, 1, 1, 3}, "00 04 38", ""},
        {{0x2000, 0, 0x1000, 0x1007, 4, 1, 4}, "AC F0 34 69", ""},
        {{0x2000, 0, 0x1000, 0x1007, 3, 1, 2}, "BF 12", "CHK-COULD-NOT-SWAP"},  // 123456+789ABC+DEF0|00
    };
    for (const auto& [lauf, feld, meldungen] : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        adrInteger summe;
        EXPECT_EQ(bilde(eprom, lauf, summe), 1);
        EXPECT_EQ(bytes(eprom, 0x2000, lauf.groesse), feld) << lauf.anzahlBytes << lauf.swap << lauf.groesse;
        EXPECT_EQ(labels(faenger), meldungen);
    }
}

TEST(ChecksumStandard, Ablehnungen) {
    const std::tuple<Lauf, const char*, const char*> faelle[] = {
        {{0x1005, 1, 0x1000, 0x1007, 1, 0, 2},
         "CHK-TARGET-ADDRESS-NOT-VALID,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:001005\nAnfAdr:001000  EndAdr:001007"},
        {{0x1007, 1, 0x1000, 0x1007, 1, 0, 2},
         "CHK-TARGET-ADDRESS-NOT-VALID,CHK-TARGET-ADDRESS-NOT-VALID,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:001007\nAnfAdr:001000  EndAdr:001007"},
        {{0x2000, 1, 0x1001, 0x1007, 2, 1, 2},
         "CHK-SWAP-NEEDS-EVEN-START-AND-LENGTH,CHK-ADR-NOT-OK",
         "Chk-ZielAdr:002000\nAnfAdr:001001  EndAdr:001007"},
        // A field wholly below the range is fine.
        {{0x1000, 1, 0x1004, 0x1007, 1, 0, 2}, "", ""},
    };
    for (const auto& [lauf, meldungen, text] : faelle) {
        Eprom eprom = achtBytes();
        MeldungsFaenger faenger;
        adrInteger summe;
        EXPECT_EQ(bilde(eprom, lauf, summe), *meldungen ? 0 : 1);
        EXPECT_EQ(labels(faenger), meldungen);
        if (*meldungen) {
            EXPECT_EQ(faenger.letzte().detail, text);
            EXPECT_EQ(faenger.letzte().funktion, "ChecksumStandard::bilde");
            EXPECT_EQ(bytes(eprom, 0x1000, 8), "12 34 56 78 9A BC DE F0");  // nothing cleared
        }
    }
}

TEST(ChecksumStandard, LueckenUndLetzterAddend) {
    MeldungsFaenger faenger;
    adrInteger summe;
    Eprom fest;
    fest.definiereBereich(0x1000, 0x1004);
    fest.definiereBereich(0x1010, 0x1013);
    schreibe(fest, 0x1000, "\x10\x20\x30\x40\x50");
    // A gap: partial sum, unmasked and without the added value.
    EXPECT_EQ(bilde(fest, {0, 0, 0x1000, 0x1013, 1, 0, 1}, summe, 0x100), 0);
    EXPECT_EQ(summe, 0xF0u);
    EXPECT_EQ(labels(faenger), "EPR-ADR-NOT-IN-EPROM,CHK-ADR-NOT-OK");
    EXPECT_EQ(faenger.meldungen()[0].detail.rfind("Adr.: 1005\n", 0), 0u);
    EXPECT_EQ(faenger.letzte().detail, "keine Ziel-Adr\nAnfAdr:001000  EndAdr:001013");
    // The last addend reads past the range: missing at a region's end ...
    faenger.leere();
    EXPECT_EQ(bilde(fest, {0, 0, 0x1000, 0x1004, 2, 0, 2}, summe), 0);
    EXPECT_EQ(summe, 0x1020u + 0x3040u);
    EXPECT_EQ(labels(faenger), "EPR-ADR-NOT-IN-EPROM,CHK-ADR-NOT-OK");
    // ... counted inside the image, and short at the top of the addresses.
    faenger.leere();
    Eprom eprom = achtBytes();
    EXPECT_EQ(bilde(eprom, {0, 0, 0x1000, 0x1002, 2, 0, 2}, summe), 1);
    EXPECT_EQ(summe, 0x1234u + 0x5678u);
    Eprom oben;
    schreibe(oben, 0xFFFFFFFD, "\x01\x02\x03");
    EXPECT_EQ(bilde(oben, {0, 0, 0xFFFFFFFD, 0xFFFFFFFF, 2, 0, 4}, summe), 1);
    EXPECT_EQ(summe, 0x0102u + 0x03u);
    EXPECT_EQ(labels(faenger), "");
}

TEST(ChecksumStandard, VergleichMitNaechster) {
    Eprom eprom = achtBytes();
    schreibe(eprom, 0x2000, "\x04\x39");
    MeldungsFaenger faenger;
    ChecksumStandard vorn(0, 0x1000, 0x1003, nullptr, 0, 1, 0, 2);
    ChecksumStandard hinten(0, 0x1004, 0x1007, &vorn, 0, 1, 0, 2);
    hinten.setzeZielAdr(0x2000);
    adrInteger summe = 0;
    // A difference is reported but does not fail; nothing is written.
    EXPECT_EQ(hinten.bilde(0, eprom, &summe), 1);
    EXPECT_EQ(summe, 0x438u);
    EXPECT_EQ(labels(faenger), "CHK-DIFFERENT");
    EXPECT_EQ(faenger.letzte().detail, "Soll: 438 != Ist: 439");
    EXPECT_EQ(bytes(eprom, 0x2000, 2), "04 39");
}

}  // namespace
