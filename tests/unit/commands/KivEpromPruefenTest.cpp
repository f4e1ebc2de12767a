// The comparison against the image's own byte-wise display, and the image
// variables of the format language.
#include <random>

#include "KivObjektTestUmgebung.h"
#include "reporting/FmtAnweisung.h"
#include "support/EpromDifferenzen.h"

namespace {

class KivEpromPruefenTest : public KivUmgebung {
protected:
    // The statement run on the image as during a display of anf..end.
    static std::string lauf(KivEprom& kiv, const char* statement, adrInteger anf, adrInteger end,
                            int hex = 1) {
        kiv.anzeigeAnfAdr = anf;
        kiv.anzeigeEndAdr = end;
        kiv.anzeigeHex = hex;
        std::ostringstream strom;
        FmtAnweisung(statement).ausgabe(strom, kiv);
        return strom.str();
    }
};

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
        char text[80];
        std::snprintf(text, sizeof text, "vergleiche(%X, %X, %X, %s)", von, bis, ziel, b.name_.c_str());
        aufnahme.leere();
        ASSERT_EQ(zeile(text, anzahl == 0 ? 1 : 0), erwartet.str()) << text;
        EXPECT_EQ(aufnahme.letzte().detail, std::to_string(anzahl));
    }
}

TEST_F(KivEpromPruefenTest, TheImageDeliversRangeCountsAndFileName) {
    KivEprom& kiv = neu("bild.hex");
    setze(kiv, 0x100, {1, 2});
    setze(kiv, 0x10F, {3});
    EXPECT_EQ(lauf(kiv, "<AnfAdr>-<EndAdr> <AnzBytes> <AnzBytesGefuellt> <AnzBytesLeer> <Dateiname>", 0xAB,
                   0x1FFFF),
              "000000AB-0001FFFF 16 3 13 bild.hex");
    EXPECT_EQ(lauf(kiv, "<(Bytes\\?>ja<:>nein<)>", 0x100, 0x101), "ja");
    EXPECT_EQ(labels(), "");
    // The display fields are set only while a file is written.
    EXPECT_EQ(fuehre("anzeige(100, 101, ascii, " + pfad("a.txt") + ", neueDatei, \"<AnfAdr> <Bytes>\")"), 1);
    EXPECT_EQ(liesDatei("a.txt"), "00000100 ..");
    EXPECT_EQ(kiv.anzeigeAnfAdr, 0u);
    EXPECT_EQ(kiv.anzeigeHex, 1);
    EXPECT_EQ(ausgabe.str(), "");
}

}  // namespace
