// The checks of an image: the address check, the occupancy listing with its
// runs outside the image, and the comparison on the console and into files.
#include <random>

#include "KivObjektTestUmgebung.h"

namespace {

class KivEpromPruefenTest : public KivUmgebung {
protected:
    KivEprom& neu(const std::string& datei = "/") {
        zurWurzel();
        EXPECT_EQ(fuehre("neu(" + datei + ")"), 1);
        faenger.leere();
        return *aktuell();
    }
    static void setze(KivEprom& kiv, adrInteger adr, std::initializer_list<int> werte) {
        for (int w : werte) kiv.eprom->setzeByte(adr++, static_cast<std::uint8_t>(w));
    }
    std::string zeile(const std::string& text, int erwartet) {
        ausgabe.str("");
        EXPECT_EQ(fuehre(text), erwartet) << text;
        return ausgabe.str();
    }
};

TEST_F(KivEpromPruefenTest, OnlyAddressesBeyond32BitsFailTheCheck) {
    EXPECT_EQ(KivEprom::pruefeAdresse(std::uint64_t(0xFFFFFFFF), "f "), 1);
    EXPECT_EQ(KivEprom::pruefeAdresse(nullptr, "f "), 1);
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(KivEprom::pruefeAdresse(std::uint64_t(0x100000000), "KivEprom::kdoAnzeige "), 0);
    ASSERT_EQ(labels(), "INVALID-ADDRESS");
    EXPECT_EQ(faenger.letzte().detail, "Adresse zu gross: 100000000");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoAnzeige ");
    EXPECT_EQ(faenger.letzte().level, 'E');
}

TEST_F(KivEpromPruefenTest, OccupancyListsRunsByWriteCountAndTheRangeOutsideTheImage) {
    KivEprom& kiv = neu();
    setze(kiv, 0x1000, {1, 2, 3, 4});
    setze(kiv, 0x1002, {5, 6});
    setze(kiv, 0x1008, {7});
    EXPECT_EQ(zeile("pruefeMehrfachbelegung(FFE, 100B)", 1),
              "[00ffe .. 00fff] -> 0\n"
              "[01000 .. 01001] -> 1\n"
              "[01002 .. 01003] -> 2\n"
              "[01004 .. 01007] -> 0\n"
              "[01008 .. 01008] -> 1\n"
              "[01009 .. 0100b] -> 0\n");
    EXPECT_EQ(labels(), "CHECK-BYTES,NOT-OCCUPIED-BYTES");
    EXPECT_EQ(faenger.meldungen()[0].detail, kiv.name.str());
    EXPECT_EQ(faenger.meldungen()[0].funktion, "KivEprom::pruefeBelegt");
    EXPECT_EQ(faenger.letzte().detail, "9");   // decimal
    EXPECT_EQ(faenger.letzte().level, 'W');

    // Within the image and fully written: no warning. The letter case is
    // the stream's.
    faenger.leere();
    ausgabe << std::uppercase;
    EXPECT_EQ(zeile("pruefeMehrfachbelegung(1002, 1003)", 1), "[01002 .. 01003] -> 2\n");
    EXPECT_EQ(labels(), "CHECK-BYTES");
    EXPECT_EQ(kiv.pruefeBelegt(nullptr, nullptr), 4u);
}

TEST_F(KivEpromPruefenTest, ComparisonPrintsDifferingLinesAndFailsOnDifferences) {
    KivEprom& b = neu("b.hex");
    setze(b, 0x1000, {1, 2, 0xFF, 4, 5, 6});
    setze(b, 0x1007, {8});
    KivEprom& a = neu("a.hex");
    setze(a, 0x1000, {1, 2, 3, 4, 5, 6, 7, 8});

    EXPECT_EQ(zeile("vergleiche(/, /, /, b_hex)", 0),
              "\nZeile 1: a_hex\nZeile 2: b_hex\n"
              "Daten [001000]\t = 01 02 03 04 05 06 07 08 \n"
              "\t\t   .. .. FF .. .. .. -- .. \n");
    ASSERT_EQ(labels(), "NO-OF-DIFFERENCES");
    EXPECT_EQ(faenger.letzte().detail, "2");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoVergleiche ");

    // The image with itself, and with itself shifted, which shows the target
    // address in the second line.
    EXPECT_EQ(zeile("vergleiche()", 1), "\nZeile 1: a_hex\nZeile 2: a_hex\n");
    EXPECT_EQ(zeile("vergleiche(1000, 1001, 1002)", 0),
              "\nZeile 1: a_hex\nZeile 2: a_hex\nDaten [001000]\t = 01 02 \nDaten [001002]\t = 03 04 \n");

    faenger.leere();
    EXPECT_EQ(zeile("vergleiche(/, /, /, Nix)", 0), "");
    ASSERT_EQ(labels(), "EPROM-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().detail, "Nix");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoVergleiche");
    // The root is no image either.
    faenger.leere();
    EXPECT_EQ(fuehre("vergleiche(/, /, /, Kiv)"), 0);
    EXPECT_EQ(labels(), "EPROM-NOT-EXIST");
}

TEST_F(KivEpromPruefenTest, ComparisonShowsWhatTheImagesOwnDisplayShows) {
    // The command reads in blocks; the image's display reads byte by byte.
    // Both must agree on random images, ranges, offsets and a target range
    // that wraps past 0xFFFFFFFF.
    std::mt19937 zufall(11);
    for (int runde = 0; runde < 60; ++runde) {
        KivEprom& b = neu();
        KivEprom& a = neu();
        if (runde % 3 == 0) {
            fuehre("definiereBereich(0, 4F)");
            fuehre("definiereBereich(70, 1FF)");
        }
        for (KivEprom* kiv : {&a, &b})
            for (adrInteger x = 0; x < 0x200; ++x)
                if (zufall() % 4) kiv->eprom->setzeByte(x, static_cast<std::uint8_t>(zufall() % 3));
        const adrInteger von = zufall() % 0x180;
        const adrInteger bis = von + zufall() % 0x1100;   // beyond the images as well
        const adrInteger ziel = runde % 5 == 0 ? 0xFFFFFFF0u + zufall() % 16 : zufall() % 0x180;
        std::ostringstream erwartet;
        const std::uint32_t anzahl =
            a.eprom->anzeigeDifferenzen(erwartet, a.name, b.name, *b.eprom, von, ziel, bis);
        char zeile[80];
        std::snprintf(zeile, sizeof zeile, "vergleiche(%X, %X, %X, %s)", von, bis, ziel, b.name.c_str());
        faenger.leere();
        ausgabe.str("");
        EXPECT_EQ(fuehre(zeile), anzahl == 0 ? 1 : 0);
        ASSERT_EQ(ausgabe.str(), erwartet.str()) << zeile;
        EXPECT_EQ(faenger.letzte().detail, std::to_string(anzahl));
    }
}

TEST_F(KivEpromPruefenTest, ComparisonIntoAFileReplacesItAndEndsWithTheCountInHex) {
    KivEprom& b = neu("b.hex");
    setze(b, 0x1000, {0});
    for (adrInteger i = 1; i < 12; ++i) setze(b, 0x1000 + i, {0xFF});
    KivEprom& a = neu("a.hex");
    for (adrInteger i = 0; i < 12; ++i) setze(a, 0x1000 + i, {static_cast<int>(i)});
    schreibeDatei("diff.txt", "old contents that are longer than the new ones ...............");

    EXPECT_EQ(zeile("vergleiche(/, /, /, b_hex, " + pfad("diff.txt") + ")", 0), "");
    EXPECT_EQ(labels(), "WRITE-DIFFERENCES-TO-FILE,DIFFERENCES-FILE-CLOSED");
    EXPECT_EQ(faenger.letzte().detail, pfad("diff.txt"));
    EXPECT_EQ(liesDatei("diff.txt"),
              "\nZeile 1: a_hex\nZeile 2: b_hex\n"
              "Daten [001000]\t = 00 01 02 03 04 05 06 07 08 09 0A 0B \n"
              "\t\t   .. FF FF FF FF FF FF FF FF FF FF FF \n"
              "NO-OF-DIFFERENCES B\n");

    faenger.leere();
    EXPECT_EQ(fuehre("vergleiche(/, /, /, /, " + pfad("fehlt/diff.txt") + ")"), 0);
    EXPECT_EQ(labels(), "FILE-NOT-OPENED");
}

}  // namespace
