// The byte display into files: the image variables of the format language,
// the forms of the bytes in free and fixed images, replacing and appending,
// and the default statement of the command.
#include "KivObjektTestUmgebung.h"
#include "reporting/FmtAnweisung.h"

namespace {

class KivEpromAnzeigeTest : public KivUmgebung {
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

TEST_F(KivEpromAnzeigeTest, BytesAreBlankOutsideAFreeImageAndDashedWhereUnwritten) {
    KivEprom& kiv = neu();
    setze(kiv, 0x1000, {0x41, 0x42});
    setze(kiv, 0x1003, {0x0A, 0xE4});
    const char* alle = "<Bytes\\\"<>|\">";
    EXPECT_EQ(lauf(kiv, alle, 0xFFE, 0x1005), "  |  |41|42|--|0A|E4|  ");
    EXPECT_EQ(lauf(kiv, alle, 0xFFF, 0x1005, 0), " |A|B|-|.|\xE4| ");
    EXPECT_EQ(lauf(kiv, alle, 0x1001, 0x1000), "");  // no values the other way round

    // In a fixed image the gaps are blank and unwritten region bytes dashed.
    KivEprom& fest = neu();
    fuehre("definiereBereich(1000, 1001)");
    fuehre("definiereBereich(1004, 1005)");
    setze(fest, 0x1000, {0x41, 0x42});
    setze(fest, 0x1004, {0xE4});
    EXPECT_EQ(lauf(fest, alle, 0xFFF, 0x1006), "  |41|42|  |  |E4|--|  ");
}

TEST_F(KivEpromAnzeigeTest, TheImageDeliversRangeCountsAndFileName) {
    KivEprom& kiv = neu("bild.hex");
    setze(kiv, 0x100, {1, 2});
    setze(kiv, 0x10F, {3});
    EXPECT_EQ(lauf(kiv, "<AnfAdr>-<EndAdr> <AnzBytes> <AnzBytesGefuellt> <AnzBytesLeer> <Dateiname>", 0xAB,
                   0x1FFFF),
              "000000AB-0001FFFF 16 3 13 bild.hex");
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(lauf(kiv, "<(Bytes\\?>ja<:>nein<)>", 0x100, 0x101), "ja");

    EXPECT_EQ(lauf(kiv, "<AnfAdr> <Chksum>", 0, 0), "00000000 Chksum");
    ASSERT_EQ(labels(), "RPL-NO-SUCH-SW");
    EXPECT_EQ(faenger.letzte().detail, "bild_hex: Chksum");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::anzeigeBytes");
}

TEST_F(KivEpromAnzeigeTest, TheDisplayFieldsAreSetOnlyWhileAFileIsWritten) {
    KivEprom& kiv = neu();
    setze(kiv, 0x20, {0x12, 0x34});
    EXPECT_EQ(fuehre("anzeige(20, 21, ascii, " + pfad("a.txt") + ", neueDatei, \"<AnfAdr> <Bytes>\")"), 1);
    EXPECT_EQ(liesDatei("a.txt"), "00000020 .4");
    EXPECT_EQ(kiv.anzeigeAnfAdr, 0u);
    EXPECT_EQ(kiv.anzeigeEndAdr, 0u);
    EXPECT_EQ(kiv.anzeigeHex, 1);
    EXPECT_EQ(ausgabe.str(), "");
}

}  // namespace
