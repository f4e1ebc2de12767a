// Load, save and edit commands of an image, run as command lines on the
// current image: the rules of the write target, the fill and swap around
// writing, the value and order rules of setze and fuelle, swap, regions and
// the copy directions.
#include "KivObjektTestUmgebung.h"

namespace {

const char* vierBytes = ":0410000001020304E2\n:00000001FF\n";

class KivEpromLadenTest : public KivUmgebung {
protected:
    // An image loaded from k.hex, current and unchanged.
    KivEprom& lade(const std::string& inhalt = vierBytes, const std::string& datei = "k.hex") {
        schreibeDatei(datei, inhalt);
        zurWurzel();
        EXPECT_EQ(fuehre("oeffne(Intel, " + pfad(datei) + ", /, /, /, /, NO)"), 1);
        faenger.leere();
        return *aktuell();
    }
    KivEprom& neu() {
        zurWurzel();
        EXPECT_EQ(fuehre("neu(/)"), 1);
        return *aktuell();
    }
};

TEST_F(KivEpromLadenTest, WritingKeepsOtherFilesAndRewritesTheImagesOwnFile) {
    KivEprom& kiv = lade();
    schreibeDatei("fremd.hex", "alt");
    EXPECT_EQ(fuehre("schreibe(Intel, " + pfad("fremd.hex") + ")"), 0);
    EXPECT_EQ(labels(), "FILE-EXIST");
    EXPECT_EQ(liesDatei("fremd.hex"), "alt");

    // Its own file in its own type goes without asking, and the image
    // counts as saved.
    fuehre("setze(1000, /, AA)");
    EXPECT_EQ(kiv.geaendert, 1);
    faenger.leere();
    EXPECT_EQ(fuehre("schreibe()"), 1);
    EXPECT_EQ(meldung("FILE-EXIST"), nullptr);
    EXPECT_EQ(kiv.geaendert, 0);
    EXPECT_EQ(liesDatei("k.hex"), ":04100000AA02030439\n:00000001FF\n");

    // The same file in another type needs ueberschreiben.
    faenger.leere();
    EXPECT_EQ(fuehre("schreibe(Motorola_S1S9)"), 0);
    EXPECT_EQ(labels(), "FILE-EXIST");
    EXPECT_EQ(fuehre("schreibe(Motorola_S1S9, /, /, /, /, /, YES)"), 1);
    EXPECT_EQ(kiv.aktDateiTyp, KivEprom::typMotorolaS1S9);
    EXPECT_NE(liesDatei("k.hex").find("\nS1071000AA020304"), std::string::npos);
}

TEST_F(KivEpromLadenTest, AnImageWithoutFileIsSavedUnderItsName) {
    KivEprom& kiv = neu();
    fuehre("setze(0, /, 1)");
    const auto vorher = std::filesystem::current_path();
    std::filesystem::current_path(pfad(""));
    EXPECT_EQ(fuehre("schreibe()"), 1);
    std::filesystem::current_path(vorher);
    EXPECT_EQ(kiv.aktDatei->liefereGanz(), "Neu1");
    EXPECT_EQ(liesDatei("Neu1"), ":0100000001FE\n:00000001FF\n");
}

TEST_F(KivEpromLadenTest, AMotorolaLoadCountsAsTheDynamicWriteType) {
    lade();
    ASSERT_EQ(fuehre("schreibe(Motorola_S1S9, " + pfad("m.s") + ")"), 1);
    zurWurzel();
    ASSERT_EQ(fuehre("oeffne(Motorola, " + pfad("m.s") + ")"), 1);
    EXPECT_EQ(aktuell()->aktDateiTyp, KivEprom::typMotorola);
    faenger.leere();
    EXPECT_EQ(fuehre("schreibe(Motorola_S1S9)"), 0);
    EXPECT_EQ(labels(), "FILE-EXIST");
    EXPECT_EQ(fuehre("schreibe(Motorola_DYN)"), 1);
}

TEST_F(KivEpromLadenTest, FillByteAndSwapActOnTheFileOnly) {
    KivEprom& kiv = lade(":021000000102EB\n:021004000506DF\n:00000001FF\n");
    ASSERT_EQ(fuehre("schreibe(Intel, " + pfad("f.hex") + ", /, /, /, EE, NO, YES)"), 1);
    EXPECT_EQ(kiv.geaendert, 0);
    EXPECT_EQ(bytes(kiv, 0x1000, 0x1005), "01 02 -- -- 05 06");
    EXPECT_EQ(kiv.eprom->liefereAnzSchr(0x1000), 1);
    EXPECT_EQ(liesDatei("f.hex"), ":061000000201EEEE060500\n:00000001FF\n");

    // Without the fill byte the gaps go out as zeros.
    ASSERT_EQ(fuehre("schreibe(Intel, " + pfad("g.hex") + ")"), 1);
    EXPECT_EQ(liesDatei("g.hex"), ":06100000010200000506DC\n:00000001FF\n");
}

TEST_F(KivEpromLadenTest, AWriteOutsideTheImageFailsAndKeepsTheOldFile) {
    lade();
    schreibeDatei("alt.hex", "alt");
    EXPECT_EQ(fuehre("schreibe(Intel, " + pfad("alt.hex") + ", F00, /, /, FF, YES)"), 0);
    EXPECT_NE(meldung("HEXFILE-ADR"), nullptr);
    EXPECT_EQ(liesDatei("alt.hex"), "alt");

    // A range above the image does not let the fill widen the copy.
    faenger.leere();
    EXPECT_EQ(fuehre("schreibe(Intel, " + pfad("hoch.hex") + ", FFFFFF00, /, /, FF)"), 0);
    EXPECT_NE(meldung("HEXFILE-ADR"), nullptr);
    EXPECT_EQ(meldung("EPR-BYTES-FILLED-WITH"), nullptr);
}

TEST_F(KivEpromLadenTest, ZeroBytesPerLineIsRefusedBeforeTheFileIsTouched) {
    lade();
    schreibeDatei("alt.hex", "alt");
    for (const char* typ : {"Intel", "Motorola_S3S7"}) {
        faenger.leere();
        EXPECT_EQ(
            fuehre(std::string("schreibe(") + typ + ", " + pfad("alt.hex") + ", /, /, /, /, YES, NO, 0)"), 0);
        ASSERT_EQ(labels(), "INVALID-VALUE");
        EXPECT_EQ(faenger.letzte().funktion, "KivEprom::schreibeInDatei ");
        EXPECT_EQ(liesDatei("alt.hex"), "alt");
    }
    // Binary files have no lines.
    EXPECT_EQ(fuehre("schreibe(Binaer, " + pfad("b.bin") + ", /, /, /, /, NO, NO, 0)"), 1);
    EXPECT_EQ(liesDatei("b.bin"), std::string("\x01\x02\x03\x04"));
}

TEST_F(KivEpromLadenTest, LoadingWithAFillByteWidensAFreeImage) {
    KivEprom& kiv = neu();
    schreibeDatei("k.hex", vierBytes);
    ASSERT_EQ(fuehre("lies(Intel, " + pfad("k.hex") + ", 0, FFFF, /, FF, NO)"), 1);
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(kiv.aktDatei->liefereGanz(), pfad("k.hex"));
    EXPECT_EQ(kiv.eprom->liefereAnfAdr(), 0u);
    EXPECT_EQ(kiv.eprom->liefereEndAdr(), 0xFFFFu);
    EXPECT_EQ(bytes(kiv, 0, 1), "FF FF");
    EXPECT_EQ(bytes(kiv, 0xFFE, 0x1004), "FF FF 01 02 03 04 FF");
    EXPECT_EQ(kiv.eprom->liefereAnzSchr(0xFFFF), 1);
    ASSERT_NE(meldung("EPR-BYTES-FILLED-WITH"), nullptr);
    EXPECT_EQ(meldung("EPR-BYTES-FILLED-WITH")->detail, "65532 bytes -> FF");

    // An empty file without bounds gives nothing to fill.
    schreibeDatei("leer.hex", ":00000001FF\n");
    KivEprom& leer = neu();
    faenger.leere();
    EXPECT_EQ(fuehre("lies(Intel, " + pfad("leer.hex") + ", /, /, /, FF, NO)"), 1);
    EXPECT_EQ(meldung("EPR-BYTES-FILLED-WITH"), nullptr);
    EXPECT_GT(leer.eprom->liefereAnfAdr(), leer.eprom->liefereEndAdr());
}

TEST_F(KivEpromLadenTest, AFailedLoadKeepsFileAndFlag) {
    KivEprom& kiv = lade();
    faenger.leere();
    EXPECT_EQ(fuehre("lies(Intel, " + pfad("fehlt.hex") + ")"), 0);
    EXPECT_EQ(fuehre("lies(Binaer, " + pfad("") + ")"), 0);  // a directory
    EXPECT_EQ(labels(), "FILE-NOT-EXIST,FILE-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::leseVonDatei ");
    EXPECT_EQ(kiv.geaendert, 0);
    EXPECT_EQ(kiv.aktDatei->liefereGanz(), pfad("k.hex"));
    // Loading the same bytes again still changes the image.
    EXPECT_EQ(fuehre("lies()"), 1);
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(kiv.eprom->liefereAnzSchr(0x1000), 2);
}

TEST_F(KivEpromLadenTest, EvenOddWritesTheHalvesAndLeavesTheImage) {
    KivEprom& kiv = lade();
    EXPECT_EQ(fuehre("schreibeEvenOdd(Intel, " + pfad("e.hex") + ")"), 0);
    EXPECT_EQ(labels(), "MISSING-FILENAME");

    fuehre("setze(1000, /, 01)");
    faenger.leere();
    ASSERT_EQ(fuehre("schreibeEvenOdd(Intel, " + pfad("e.hex") + ", " + pfad("o.hex") + ")"), 1);
    EXPECT_EQ(liesDatei("e.hex"), ":020800000103F2\n:00000001FF\n");
    EXPECT_EQ(liesDatei("o.hex"), ":020800000204F0\n:00000001FF\n");
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(kiv.aktDatei->liefereGanz(), pfad("k.hex"));

    // An empty image fails on the first file and writes no second one.
    neu();
    faenger.leere();
    EXPECT_EQ(fuehre("schreibeEvenOdd(Intel, " + pfad("e2.hex") + ", " + pfad("o2.hex") + ", /, /, /, FF)"),
              0);
    EXPECT_NE(meldung("HEXFILE-ADR"), nullptr);
    EXPECT_FALSE(gibtDatei("o2.hex"));
}

TEST_F(KivEpromLadenTest, SetzeAndFuelleInAFixedImage) {
    // setze writes the highest address first, then stops at the first
    // address outside the regions.
    KivEprom& kiv = neu();
    fuehre("definiereBereich(0, 3)");
    fuehre("definiereBereich(6, 7)");
    faenger.leere();
    EXPECT_EQ(fuehre("setze(2, 7, 55)"), 0);
    EXPECT_EQ(bytes(kiv, 0, 7), "-- -- 55 55 -- -- -- 55");
    EXPECT_EQ(labels(), "EPR-ADR-NOT-IN-EPROM");

    // fuelle leaves the written bytes and fills the regions only.
    faenger.leere();
    EXPECT_EQ(fuehre("fuelle(7, 0, 1)"), 1);
    EXPECT_EQ(bytes(kiv, 0, 7), "01 01 55 55 -- -- 01 55");
    EXPECT_EQ(faenger.letzte().detail, "3 bytes -> 1");
}

TEST_F(KivEpromLadenTest, CopiesComeOutTrueWhereSourceAndTargetOverlap) {
    KivEprom& kiv = lade(":081000000102030405060708C4\n:00000001FF\n");
    EXPECT_EQ(fuehre("kopiere(1000, 1005, 1002)"), 1);
    EXPECT_EQ(bytes(kiv, 0x1000, 0x1007), "01 02 01 02 03 04 05 06");
    EXPECT_EQ(kiv.geaendert, 1);
    EXPECT_EQ(fuehre("kopiere(1002, 1007, 1000)"), 1);
    EXPECT_EQ(bytes(kiv, 0x1000, 0x1007), "01 02 03 04 05 06 05 06");

    // Into another image, gaps copied as written zeros; the source stays.
    fuehre("setze(1010, /, 99)");
    KivEprom& ziel = neu();
    zurWurzel();
    kdoBaum()->suche("k_hex", 1);
    kiv.geaendert = 0;
    faenger.leere();
    EXPECT_EQ(fuehre("kopiere(1006, 1009, 10, Neu1)"), 1);
    EXPECT_EQ(bytes(ziel, 0x10, 0x13), "05 06 00 00");
    EXPECT_EQ(ziel.geaendert, 1);
    EXPECT_EQ(kiv.geaendert, 0);

    EXPECT_EQ(fuehre("kopiere(1000, 1001, 0, Nix)"), 0);
    ASSERT_EQ(labels(), "EPROM-NOT-EXIST");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::kdoKopiere");

    // A target range running past the last address is refused whole.
    faenger.leere();
    EXPECT_EQ(fuehre("kopiere(1000, 1007, FFFFFFFC)"), 0);
    EXPECT_EQ(labels(), "INVALID-ADDRESS");
    EXPECT_EQ(bytes(kiv, 0x1000, 0x1001), "01 02");
}

}  // namespace
