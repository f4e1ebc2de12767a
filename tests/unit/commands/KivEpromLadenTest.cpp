// Load, save and edit commands of an image where a user's file or the image
// is at stake: a refused write leaves the old file, a fill on load widens a
// free image, and a failed load keeps the image as it was.
#include "KivObjektTestUmgebung.h"

namespace {

class KivEpromLadenTest : public KivUmgebung {
protected:
    // An image loaded from k.hex, current and unchanged.
    KivEprom& lade(const std::string& inhalt) {
        schreibeDatei("k.hex", inhalt);
        zurWurzel();
        EXPECT_EQ(fuehre("oeffne(Intel, " + pfad("k.hex") + ", /, /, /, /, NO)"), 1);
        aufnahme.leere();
        return *aktuell();
    }
};

TEST_F(KivEpromLadenTest, RefusedWritesLeaveTheOldFile) {
    lade(":0410000001020304E2\n:00000001FF\n");
    schreibeDatei("alt.hex", "alt");
    const std::string alt = pfad("alt.hex");
    const std::pair<std::string, const char*> faelle[] = {
        // A range above the image does not let the fill widen the copy.
        {"schreibe(Intel, " + pfad("hoch.hex") + ", FFFFFF00, /, /, FF)", "HEXFILE-ADR"},
        {"schreibe(Intel, " + alt + ", /, /, /, /, YES, NO, 0)", "INVALID-VALUE"},
        {"schreibe(Motorola_S3S7, " + alt + ", /, /, /, /, YES, NO, 0)", "INVALID-VALUE"},
    };
    for (const auto& [zeile, label] : faelle) {
        aufnahme.leere();
        EXPECT_EQ(fuehre(zeile), 0) << zeile;
        EXPECT_EQ(aufnahme.mit(label).size(), 1u) << zeile;
        EXPECT_TRUE(aufnahme.mit("EPR-BYTES-FILLED-WITH").empty()) << zeile;
        EXPECT_EQ(liesDatei("alt.hex"), "alt") << zeile;
    }
    // Binary files have no lines.
    EXPECT_EQ(fuehre("schreibe(Binaer, " + pfad("b.bin") + ", /, /, /, /, NO, NO, 0)"), 1);
    EXPECT_EQ(liesDatei("b.bin"), std::string("\x01\x02\x03\x04"));
}

TEST_F(KivEpromLadenTest, LoadingWithAFillByteWidensAFreeImage) {
    schreibeDatei("k.hex", ":0410000001020304E2\n:00000001FF\n");
    KivEprom& kiv = neu();
    ASSERT_EQ(fuehre("lies(Intel, " + pfad("k.hex") + ", 0, FFFF, /, FF, NO)"), 1);
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(kiv.eprom->liefereAnfAdr(), 0u);
    EXPECT_EQ(kiv.eprom->liefereEndAdr(), 0xFFFFu);
    EXPECT_EQ(bytes(kiv, 0xFFE, 0x1004), "FF FF 01 02 03 04 FF");
    const auto gefuellt = aufnahme.mit("EPR-BYTES-FILLED-WITH");
    ASSERT_EQ(gefuellt.size(), 1u);
    EXPECT_EQ(gefuellt[0].detail, "65532 bytes -> FF");

    // An empty file gives nothing to fill without both bounds.
    schreibeDatei("leer.hex", ":00000001FF\n");
    for (const char* grenzen : {"/, /", "0, /", "/, 10"}) {
        KivEprom& leer = neu();
        EXPECT_EQ(fuehre("lies(Intel, " + pfad("leer.hex") + ", " + grenzen + ", /, FF, NO)"), 1);
        EXPECT_TRUE(aufnahme.mit("EPR-BYTES-FILLED-WITH").empty()) << grenzen;
        EXPECT_GT(leer.eprom->liefereAnfAdr(), leer.eprom->liefereEndAdr()) << grenzen;
    }
    KivEprom& beide = neu();
    EXPECT_EQ(fuehre("lies(Intel, " + pfad("leer.hex") + ", 8, 9, /, 5, NO)"), 1);
    EXPECT_EQ(bytes(beide, 7, 0xA), "-- 05 05 --");
}

TEST_F(KivEpromLadenTest, AFailedLoadKeepsFileAndFlag) {
    KivEprom& kiv = lade(":0410000001020304E2\n:00000001FF\n");
    EXPECT_EQ(fuehre("lies(Intel, " + pfad("fehlt.hex") + ")"), 0);
    EXPECT_EQ(fuehre("lies(Binaer, " + pfad("") + ")"), 0);  // a directory
    EXPECT_EQ(labels(), "FILE-NOT-EXIST,FILE-NOT-EXIST");
    EXPECT_EQ(kiv.geaendert, 0);
    EXPECT_EQ(kiv.aktDatei->liefereGanz(), pfad("k.hex"));
    // Loading the same bytes again still changes the image.
    EXPECT_EQ(fuehre("lies()"), 1);
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(kiv.eprom->liefereAnzSchr(0x1000), 2);
}

TEST_F(KivEpromLadenTest, SetzeFuelleAndKopiereInAFixedImage) {
    // setze writes the highest address first, then stops at the first
    // address outside the regions.
    KivEprom& kiv = neu();
    fuehre("definiereBereich(0, 3)");
    fuehre("definiereBereich(6, 7)");
    EXPECT_EQ(fuehre("setze(2, 7, 55)"), 0);
    EXPECT_EQ(bytes(kiv, 0, 7), "-- -- 55 55 -- -- -- 55");
    EXPECT_EQ(labels(), "EPR-ADR-NOT-IN-EPROM");
    // fuelle leaves the written bytes and fills the regions only.
    aufnahme.leere();
    EXPECT_EQ(fuehre("fuelle(7, 0, 1)"), 1);
    EXPECT_EQ(bytes(kiv, 0, 7), "01 01 55 55 -- -- 01 55");
    EXPECT_EQ(aufnahme.letzte().detail, "3 bytes -> 1");
    // A target range running past the last address is refused whole.
    aufnahme.leere();
    EXPECT_EQ(fuehre("kopiere(0, 7, FFFFFFFC)"), 0);
    EXPECT_EQ(labels(), "INVALID-ADDRESS");
}

}  // namespace
