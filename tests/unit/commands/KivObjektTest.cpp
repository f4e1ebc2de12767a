// The root object: names of new images, opening and closing, the changed
// check at the end of a run, and the two command tables.
#include "KivObjektTestUmgebung.h"

namespace {

using KivObjektTest = KivUmgebung;

const char* intelDatei = ":0410000001020304E2\n:00000001FF\n";

TEST_F(KivObjektTest, NewImagesTakeTheirNamesFromFilesAndTheGrowingCounter) {
    struct {
        const char* datei;
        const char* name;
    } faelle[] = {
        {"/", "Neu1"},         {"/", "Neu2"},       {"a.hex", "a_hex"},       {"a.hex", "a_hex3"},
        {"x/b.c.d", "b_c_d"},  {"a.hex", "a_hex4"}, {".profile", "_profile"}, {"ohne", "ohne"},
        {"a_hex3", "a_hex35"},
    };
    for (const auto& f : faelle) {
        zurWurzel();
        ASSERT_EQ(fuehre(std::string("neu(") + f.datei + ")"), 1) << f.datei;
        ASSERT_NE(aktuell(), nullptr);
        EXPECT_EQ(aktuell()->liefereName(), f.name);
        EXPECT_EQ(aktuell()->liefereVollenNamen(), std::string("<Kiv>Kiv.<Eprom>") + f.name);
        EXPECT_EQ(aktuell()->aktDatei->liefereGanz(), f.datei);
        EXPECT_EQ(aktuell()->geaendert, 0);
    }
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 9);
    // An image does not know the root's commands.
    EXPECT_EQ(fuehre("neu(/)"), 0);
    EXPECT_EQ(labels(), "CMD-NOSUCHCMD");
}

TEST_F(KivObjektTest, OpenLoadsAnUnchangedImageAndDropsItAgainOnFailure) {
    schreibeDatei("k.hex", intelDatei);
    ASSERT_EQ(fuehre("oeffne(Intel, " + pfad("k.hex") + ", /, /, /, /, NO)"), 1);
    KivEprom* kiv = aktuell();
    ASSERT_NE(kiv, nullptr);
    EXPECT_EQ(kiv->liefereName(), "k_hex");
    EXPECT_EQ(kiv->geaendert, 0);
    EXPECT_EQ(kiv->aktDateiTyp, KivEprom::typIntel);
    EXPECT_EQ(bytes(*kiv, 0x1000, 0x1003), "01 02 03 04");

    // A missing file leaves no image behind, and the image that was
    // current before the root's command is current again.
    zurWurzel();
    faenger.leere();
    EXPECT_EQ(fuehre("oeffne(Intel, " + pfad("fehlt.hex") + ")"), 0);
    EXPECT_EQ(labels(), "FILE-NOT-EXIST");
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), kivWurzel);
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 1);
    EXPECT_EQ(kivWurzel->sucheEprom("fehlt_hex"), nullptr);

    // Without a file name nothing happens and nothing is said.
    faenger.leere();
    EXPECT_EQ(fuehre("oeffne()"), 0);
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 1);
}

TEST_F(KivObjektTest, OpenTakesTheLoadArguments) {
    schreibeDatei("k.hex", intelDatei);
    ASSERT_EQ(fuehre("oeffne(Intel, " + pfad("k.hex") + ", FFC, 1005, /, EE, NO, YES)"), 1);
    KivEprom* kiv = aktuell();
    // Swapped after loading, then the gaps up to the given bounds filled;
    // the image still counts as unchanged.
    EXPECT_EQ(bytes(*kiv, 0xFFC, 0x1005), "EE EE EE EE 02 01 04 03 EE EE");
    EXPECT_EQ(kiv->geaendert, 0);
}

TEST_F(KivObjektTest, CloseRefusesWhatIsNoImageAndTheEndCheckNamesChangedImages) {
    for (int i = 0; i < 3; ++i) {
        zurWurzel();
        fuehre("neu(/)");
    }
    fuehre("setze(5, /, 1)");  // Neu3
    kivWurzel->sucheEprom("Neu1")->geaendert = 1;
    zurWurzel();

    // The root and the empty default name find objects, but no image.
    for (const char* name : {"Kiv", ""}) {
        faenger.leere();
        EXPECT_EQ(fuehre(std::string("schliesse(") + name + ")"), 0) << name;
        EXPECT_EQ(labels(), "EPROM-NOT-EXIST") << name;
        EXPECT_EQ(faenger.letzte().detail, name);
        EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoSchliesse ");
    }

    faenger.leere();
    EXPECT_EQ(kivWurzel->pruefeGeaendert(0), 1);
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(kivWurzel->pruefeGeaendert(1), 1);
    ASSERT_EQ(labels(), "EPROM-CHANGED-AND-NOT-SAVED");
    EXPECT_EQ(faenger.letzte().detail, "Neu1\nNeu3");

    EXPECT_EQ(fuehre("schliesseAlle()"), 1);
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 2);
    EXPECT_EQ(fuehre("schliesseAlle(YES)"), 1);
    EXPECT_EQ(kivWurzel->epromListe->elementAnzahl(), 0);
    EXPECT_EQ(kdoBaum()->suche("Neu1", 0), nullptr);
    EXPECT_EQ(kivWurzel->pruefeGeaendert(1), 0);
}

TEST_F(KivObjektTest, ClosingTheCurrentImageMakesItsFatherCurrent) {
    fuehre("neu(/)");
    ASSERT_NE(aktuell(), nullptr);
    EXPECT_EQ(kivWurzel->schliesse("Neu1", 0), 1);
    EXPECT_EQ(kdoBaum()->liefereAktuelles(), kivWurzel);
}

TEST_F(KivObjektTest, SecondImagesAreFoundInTheTreeOnly) {
    fuehre("neu(/)");
    faenger.leere();
    EXPECT_EQ(findeKivEprom("Neu1", "f "), aktuell());
    EXPECT_EQ(findeKivEprom("Kiv", "f "), nullptr);
    EXPECT_EQ(labels(), "EPROM-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().funktion, "f ");
}

TEST_F(KivObjektTest, TablesHoldEveryCommandWithItsDefaults) {
    // Building both tables raised no message: every signature and default
    // line was read.
    const char* wurzel[] = {"oeffne", "neu", "schliesse", "schliesseAlle"};
    const char* bild[] = {"info",
                          "lies",
                          "schreibe",
                          "schreibeEvenOdd",
                          "anzeige",
                          "setze",
                          "definiereBereich",
                          "loescheBereich",
                          "fuelle",
                          "pruefeMehrfachbelegung",
                          "swap",
                          "kopiere",
                          "suche",
                          "sucheErstes",
                          "sucheNaechstes",
                          "pruefeByte",
                          "pruefeBytefolge",
                          "vergleiche",
                          "checksumme",
                          "checksummeSiemens",
                          "checksummeCRC"};
    EXPECT_EQ(kivObjektListe->liefereName(), "KivObjekt");
    EXPECT_EQ(kivEpromListe->liefereName(), "KivEprom");
    EXPECT_EQ(kivObjektListe->liefereKommandos().elementAnzahl(), 4);
    EXPECT_EQ(kivEpromListe->liefereKommandos().elementAnzahl(), 21);
    for (const char* n : wurzel)
        EXPECT_NE(kivObjektListe->liefereKommandos().sucheElementF(n, 0, 0, 2), nullptr) << n;
    for (const char* n : bild) {
        auto* k = static_cast<KdoKommando*>(kivEpromListe->liefereKommandos().sucheElementF(n, 0, 0, 2));
        ASSERT_NE(k, nullptr) << n;
        EXPECT_EQ(k->pruefeOk(), 1) << n;
    }

    // The display default's line continuation leaves the bare statement.
    auto* anzeige =
        static_cast<KdoKommando*>(kivEpromListe->liefereKommandos().sucheElementF("anzeige", 0, 0, 2));
    anzeige->argument(5)->ladeVorgabe();
    EXPECT_EQ(anzeige->argument(5)->liefereArgWertStr().str(), "<Bytes\\\"<> \">");
    auto* lies = static_cast<KdoKommando*>(kivEpromListe->liefereKommandos().sucheElementF("lies", 0, 0, 2));
    EXPECT_EQ(kdoAnzeigeStream, &ausgabe);
    EXPECT_EQ(lies->argument(5)->liefereName(), "fuellByte");
}

using KivObjektTodTest = KivUmgebung;

TEST_F(KivObjektTodTest, ImageTableNeedsTheOutputStream) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    kdoAnzeigeStream = nullptr;
    EXPECT_DEATH(bauKivEpromListe(), "Assertion failed: kdoAnzeigeStream != NULL, file kiveprom, line 174");
    kdoAnzeigeStream = &ausgabe;
}

}  // namespace
