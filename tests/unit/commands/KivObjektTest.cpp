// The root object: opening with the load arguments and dropping a failed
// image, closing and the changed check at the end.
#include "KivObjektTestUmgebung.h"

namespace {

using KivObjektTest = KivUmgebung;

TEST_F(KivObjektTest, OpenTakesTheLoadArgumentsAndDropsAFailedImage) {
    schreibeDatei("k.hex", ":0410000001020304E2\n:00000001FF\n");
    // Swapped after loading, then the gaps up to the given bounds filled;
    // the image still counts as unchanged.
    ASSERT_EQ(fuehre("oeffne(Intel, " + pfad("k.hex") + ", FFC, 1005, /, EE, NO, YES)"), 1);
    KivEprom* kiv = aktuell();
    ASSERT_NE(kiv, nullptr);
    EXPECT_EQ(kiv->liefereName(), "k_hex");
    EXPECT_EQ(kiv->aktDateiTyp, KivEprom::typIntel);
    EXPECT_EQ(bytes(*kiv, 0xFFC, 0x1005), "EE EE EE EE 02 01 04 03 EE EE");
    EXPECT_EQ(kiv->geaendert, 0);

    // A missing file, or none given, leaves no image behind, and the root
    // is current again.
    for (const std::string& zeile : {"oeffne(Intel, " + pfad("fehlt.hex") + ")", std::string("oeffne()")}) {
        zurWurzel();
        EXPECT_EQ(fuehre(zeile), 0) << zeile;
        EXPECT_EQ(kdoBaum()->liefereAktuelles(), kivWurzel);
        EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 1);
    }
}

TEST_F(KivObjektTest, CloseRefusesWhatIsNoImageAndTheEndCheckNamesChangedImages) {
    for (int i = 0; i < 3; ++i) neu();
    fuehre("setze(5, /, 1)");  // Neu3
    kivWurzel->sucheEprom("Neu1")->geaendert = 1;
    zurWurzel();
    // The root and the empty default name find objects, but no image.
    for (const char* name : {"Kiv", ""}) {
        aufnahme.leere();
        EXPECT_EQ(fuehre(std::string("schliesse(") + name + ")"), 0) << name;
        EXPECT_EQ(labels(), "EPROM-NOT-EXIST") << name;
    }
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
