// Opening, loading, saving and editing where a user's file or an image is at stake.
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
    const std::pair<const char*, const char*> faelle[] = {
        {"/, /", "-- -- -- --"}, {"0, /", "-- -- -- --"}, {"/, 10", "-- -- -- --"}, {"8, 9", "-- 05 05 --"}};
    for (const auto& [grenzen, erwartet] : faelle) {
        KivEprom& leer = neu();
        EXPECT_EQ(fuehre("lies(Intel, " + pfad("leer.hex") + ", " + grenzen + ", /, 5, NO)"), 1);
        EXPECT_EQ(bytes(leer, 7, 0xA), erwartet) << grenzen;
        EXPECT_EQ(aufnahme.mit("EPR-BYTES-FILLED-WITH").size(), erwartet[3] == '0' ? 1u : 0u) << grenzen;
    }
}

TEST_F(KivEpromLadenTest, SetzeAndKopiereInAFixedImage) {
    // setze writes the highest address first, then stops outside the regions.
    KivEprom& kiv = neu();
    fuehre("definiereBereich(0, 3)");
    fuehre("definiereBereich(6, 7)");
    EXPECT_EQ(fuehre("setze(2, 7, 55)"), 0);
    EXPECT_EQ(bytes(kiv, 0, 7), "-- -- 55 55 -- -- -- 55");
    EXPECT_EQ(labels(), "EPR-ADR-NOT-IN-EPROM");
    // A target range running past the last address is refused whole.
    aufnahme.leere();
    EXPECT_EQ(fuehre("kopiere(0, 7, FFFFFFFC)"), 0);
    EXPECT_EQ(labels(), "INVALID-ADDRESS");
}

TEST_F(KivEpromLadenTest, OpenTakesTheLoadArgumentsAndDropsAFailedImage) {
    schreibeDatei("k.hex", ":0410000001020304E2\n:00000001FF\n");
    // Swapped after loading, then the gaps filled; the image counts as unchanged.
    ASSERT_EQ(fuehre("oeffne(Intel, " + pfad("k.hex") + ", FFC, 1005, /, EE, NO, YES)"), 1);
    KivEprom* kiv = aktuell();
    ASSERT_NE(kiv, nullptr);
    EXPECT_EQ(kiv->liefereName(), "k_hex");
    EXPECT_EQ(kiv->aktDateiTyp, KivEprom::typIntel);
    EXPECT_EQ(bytes(*kiv, 0xFFC, 0x1005), "EE EE EE EE 02 01 04 03 EE EE");
    EXPECT_EQ(kiv->geaendert, 0);
    // A failed load keeps file and flag; loading the same bytes again changes the image.
    aufnahme.leere();
    EXPECT_EQ(fuehre("lies(Intel, " + pfad("fehlt.hex") + ")"), 0);
    EXPECT_EQ(fuehre("lies(Binaer, " + pfad("") + ")"), 0);  // a directory
    EXPECT_EQ(labels(), "FILE-NOT-EXIST,FILE-NOT-EXIST");
    EXPECT_EQ(kiv->geaendert, 0);
    EXPECT_EQ(kiv->aktDatei->liefereGanz(), pfad("k.hex"));
    EXPECT_EQ(fuehre("lies()"), 1);
    EXPECT_EQ(kiv->geaendert, 1);
    EXPECT_EQ(kiv->eprom->liefereAnzSchr(0x1000), 2);
    // The file last loaded is the image's file from then on.
    schreibeDatei("k.bin", "x");
    EXPECT_EQ(fuehre("lies(Binaer, " + pfad("k.bin") + ")"), 1);
    EXPECT_EQ(kiv->aktDatei->liefereGanz(), pfad("k.bin"));

    // A missing file, or none given, leaves no image behind; the root is current again.
    for (const std::string& zeile : {"oeffne(Intel, " + pfad("fehlt.hex") + ")", std::string("oeffne()")}) {
        zurWurzel();
        EXPECT_EQ(fuehre(zeile), 0) << zeile;
        EXPECT_EQ(kdoBaum()->liefereAktuelles(), kivWurzel);
        EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 1);
    }
}

TEST_F(KivEpromLadenTest, CloseRefusesWhatIsNoImageAndTheEndCheckNamesChangedImages) {
    for (int i = 0; i < 3; ++i) neu();
    fuehre("setze(5, /, 1)");  // Neu3
    kivWurzel->sucheEprom("Neu1")->geaendert = 1;
    zurWurzel();
    // The root and the empty default name find objects, but no image.
    aufnahme.leere();
    for (const char* zeile : {"schliesse(Kiv)", "schliesse()"}) EXPECT_EQ(fuehre(zeile), 0) << zeile;
    EXPECT_EQ(labels(), "EPROM-NOT-EXIST,EPROM-NOT-EXIST");
    aufnahme.leere();
    EXPECT_EQ(kivWurzel->pruefeGeaendert(0), 1);
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(kivWurzel->pruefeGeaendert(1), 1);
    EXPECT_EQ(aufnahme.letzte().detail, "Neu1\nNeu3");

    EXPECT_EQ(fuehre("schliesseAlle()"), 1);
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 2);
    EXPECT_EQ(fuehre("schliesseAlle(YES)"), 1);
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 0);
    EXPECT_EQ(kivWurzel->pruefeGeaendert(1), 0);
}

}  // namespace
