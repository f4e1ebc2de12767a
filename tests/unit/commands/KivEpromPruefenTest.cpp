// The checks of an image: the address check, the occupancy listing with its
// runs outside the image, and the comparison on the console and into files.
#include <random>

#include "KivObjektTestUmgebung.h"
#include "support/EpromDifferenzen.h"

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

TEST_F(KivEpromPruefenTest, OccupancyCountsTheRangeOutsideTheImageAsUnwritten) {
    KivEprom& kiv = neu();
    setze(kiv, 0x1000, {1, 2, 3, 4});
    setze(kiv, 0x1002, {5});
    ausgabe << std::uppercase;  // the listing keeps the stream's letter case
    const adrInteger von = 0xFFE, bis = 0x100B;
    EXPECT_EQ(kiv.pruefeBelegt(&von, &bis), 10u);
    EXPECT_EQ(ausgabe.str(),
              "[00FFE .. 00FFF] -> 0\n[01000 .. 01001] -> 1\n[01002 .. 01002] -> 2\n"
              "[01003 .. 01003] -> 1\n[01004 .. 0100B] -> 0\n");
    EXPECT_EQ(labels(), "CHECK-BYTES,NOT-OCCUPIED-BYTES");
    EXPECT_EQ(faenger.letzte().detail, "10");  // decimal

    faenger.leere();
    EXPECT_EQ(fuehre("pruefeMehrfachbelegung(1000, 1003)"), 1);
    EXPECT_EQ(labels(), "CHECK-BYTES");
}

TEST_F(KivEpromPruefenTest, ComparisonNeedsAnImageAsTarget) {
    neu();
    EXPECT_EQ(zeile("vergleiche(/, /, /, Nix)", 0), "");
    ASSERT_EQ(labels(), "EPROM-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().detail, "Nix");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoVergleiche");
    // The root is found by that name, but it is no image.
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
        const adrInteger bis = von + zufall() % 0x1100;  // beyond the images as well
        const adrInteger ziel = runde % 5 == 0 ? 0xFFFFFFF0u + zufall() % 16 : zufall() % 0x180;
        std::ostringstream erwartet;
        const std::uint32_t anzahl =
            anzeigeDifferenzen(erwartet, a.name_, b.name_, *a.eprom, *b.eprom, von, ziel, bis);
        char zeile[80];
        std::snprintf(zeile, sizeof zeile, "vergleiche(%X, %X, %X, %s)", von, bis, ziel, b.name_.c_str());
        faenger.leere();
        ausgabe.str("");
        EXPECT_EQ(fuehre(zeile), anzahl == 0 ? 1 : 0);
        ASSERT_EQ(ausgabe.str(), erwartet.str()) << zeile;
        EXPECT_EQ(faenger.letzte().detail, std::to_string(anzahl));
    }
}

TEST_F(KivEpromPruefenTest, AComparisonFileThatCannotBeMadeIsReported) {
    neu();
    EXPECT_EQ(fuehre("vergleiche(/, /, /, /, " + pfad("fehlt/diff.txt") + ")"), 0);
    EXPECT_EQ(labels(), "FILE-NOT-OPENED");
    EXPECT_EQ(faenger.letzte().detail, pfad("fehlt/diff.txt"));
}

}  // namespace
