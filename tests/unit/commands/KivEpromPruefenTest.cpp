// The pattern search against a byte-by-byte reference, compare, and the image variables.
#include <random>

#include "KivObjektTestUmgebung.h"
#include "image/MusterSuche.h"
#include "reporting/FmtAnweisung.h"
#include "support/EpromDifferenzen.h"

namespace {

// The walk as the algorithm tells it, one liefereByte per byte compared.
int referenzSuche(Eprom& eprom, const std::vector<std::uint8_t>& m, adrInteger von, adrInteger bis,
                  adrInteger& treffer) {
    std::uint64_t a = von;
    adrInteger rv, rb;
    while (a <= bis && eprom.liefereBereich(static_cast<adrInteger>(a), rv, rb)) {
        a = rv;
        const std::uint64_t g = std::min<std::uint64_t>(bis, rb);
        while (a <= g) {
            const std::uint64_t start = a;
            std::size_t i = 0;
            for (std::uint64_t b = start; i < m.size() && b <= bis; ++b, ++i) {
                std::uint8_t byte;
                eprom.liefereByte(static_cast<adrInteger>(b), byte, 0);
                if (byte != m[i]) break;
            }
            if (i == m.size()) {
                treffer = static_cast<adrInteger>(start);
                return 1;
            }
            a = start + (i > 0 ? 2 : 1);
        }
    }
    return 0;
}

class KivEpromSucheTest : public KivUmgebung {
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

TEST_F(KivEpromSucheTest, TheWalkAgreesWithTheByteByByteReference) {
    std::mt19937 zufall(7);
    for (int runde = 0; runde < 300; ++runde) {
        KivEprom& kiv = neu();
        Eprom& eprom = *kiv.eprom;
        // Few distinct values so that partial matches are frequent.
        const bool fest = runde % 2 == 1;
        if (fest) {
            eprom.definiereBereich(0x100, 0x11F);
            eprom.definiereBereich(0x120, 0x12F);
            eprom.definiereBereich(0x138, 0x150);
        }
        // Long stretches of 43 hold no possible first byte.
        const bool lang = runde % 4 == 2;
        for (adrInteger a = 0x100; a <= (lang ? 0x4FFu : 0x150u); ++a)
            if (zufall() % 5)
                eprom.setzeByte(
                    a, static_cast<std::uint8_t>(lang && zufall() % 40 ? 0x43 : 0x41 + zufall() % 2));
        std::vector<std::uint8_t> muster(1 + zufall() % 5);
        for (auto& b : muster) b = static_cast<std::uint8_t>(zufall() % 7 == 0 ? 0 : 0x41 + zufall() % 2);
        const adrInteger von = 0xF0 + zufall() % 0x70;
        const adrInteger bis = von + zufall() % (lang ? 0x400 : 0x70);

        std::string text;
        for (auto b : muster) text += {"0123456789ABCDEF"[b >> 4], "0123456789ABCDEF"[b & 15], ' '};
        ASSERT_EQ(kiv.setzeSuchMuster(text, 1), 1);
        adrInteger erwartet = 0;
        const int gefunden = referenzSuche(eprom, muster, von, bis, erwartet);
        ASSERT_EQ(kiv.sucheMuster(von, bis), gefunden) << runde;
        EXPECT_EQ(kiv.suchAdresse, gefunden ? erwartet : 0) << runde;
        zurWurzel();
        fuehre("schliesse(" + kiv.name_.str() + ", YES)");
    }
    // An empty pattern matches nowhere.
    adrInteger treffer = 0;
    Eprom voll;
    voll.setzeByte(0, 0);
    EXPECT_EQ(MusterSuche(voll, {}, 0, 0xFF).naechster(treffer), 0);
}

TEST_F(KivEpromSucheTest, ReadsAtRegionAndWindowEnds) {
    // The first region ends two bytes before the reader's block boundary.
    KivEprom& kiv = neu();
    fuehre("definiereBereich(0, FFFD)");
    fuehre("definiereBereich(FFFE, 1000F)");
    setze(kiv, 0xFFF8, {1, 2, 3, 4, 5, 6, 7, 8});
    setze(kiv, 0xFFFE, {0xA, 0xB, 0xC, 0xD});
    setze(kiv, 0x10008, {1, 2, 3, 4, 5, 6, 7, 8});
    kiv.setzeSuchMuster("5 6 A B C D 0 0", 1);
    EXPECT_EQ(kiv.sucheMuster(0, 0x1000F), 1);
    EXPECT_EQ(kiv.suchAdresse, 0xFFFCu);
    kiv.setzeSuchMuster("A B C D 0 0 0 0 0 0", 1);
    EXPECT_EQ(kiv.sucheMuster(0, 0x1000F), 1);
    EXPECT_EQ(kiv.suchAdresse, 0xFFFEu);

    // A read in an empty window creates a region, exactly as the plain walk would.
    for (bool reicht : {false, true}) {
        KivEprom& frei = neu();
        setze(frei, 0xFFFFFE, {0x41, 0x41});
        setze(frei, 0x2000000, {0x99});
        ASSERT_EQ(frei.eprom->liefereSegment(0).anzahlBereiche(), 2);
        frei.setzeSuchMuster(reicht ? "41 41 41" : "41 42 43", 1);
        EXPECT_EQ(frei.sucheMuster(0xFFFFFE, 0x2000000), 0);
        EXPECT_EQ(frei.eprom->liefereSegment(0).anzahlBereiche(), reicht ? 3 : 2);
    }
}

TEST_F(KivEpromSucheTest, SearchTextsAreReadAsHexNumbersOrCharacters) {
    KivEprom& kiv = neu();
    const std::tuple<const char*, int, const char*> faelle[] = {
        // bytes null: refused
        {"  a\t0F\n 7 ", 1, "0A 0F 07"},
        {"0012", 1, "12"},
        {"   ", 1, nullptr},
        {"-1", 1, nullptr},
        {" ", 0, nullptr},
    };
    for (const auto& [text, hex, erwartet] : faelle) {
        ASSERT_EQ(kiv.setzeSuchMuster(text, hex), erwartet != nullptr) << text;
        std::string gelesen;
        char teil[4];
        for (std::int32_t i = 0; i < kiv.suchLaenge; ++i) {
            std::snprintf(teil, sizeof teil, i ? " %02X" : "%02X", (*kiv.suchMuster)[i]);
            gelesen += teil;
        }
        EXPECT_EQ(gelesen, erwartet ? erwartet : "") << text;
    }
    // A refused text fails the command and ends the search.
    EXPECT_EQ(zeile("suche()", 0), "");
    EXPECT_EQ(zeile("sucheNaechstes()", 0), "");
}

TEST_F(KivEpromSucheTest, ComparisonShowsWhatTheImagesOwnDisplayShows) {
    // Blocks against the display's bytes, with a target range wrapping past 0xFFFFFFFF.
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
    // A range of a block and a bit compares exactly its own bytes.
    KivEprom& b = neu();
    KivEprom& a = neu();
    for (adrInteger x = 0; x < 0x8020; ++x) {
        a.eprom->setzeByte(x, 1);
        b.eprom->setzeByte(x, x < 0x8010 ? 1 : 2);
    }
    zeile("vergleiche(0, 800F, 0, " + b.name_.str() + ")", 1);
}

TEST_F(KivEpromSucheTest, TheImageDeliversRangeCountsAndFileName) {
    KivEprom& kiv = neu("bild.hex");
    setze(kiv, 0x100, {1, 2});
    setze(kiv, 0x10F, {3});
    EXPECT_EQ(lauf(kiv, "<AnfAdr>-<EndAdr> <AnzBytes> <AnzBytesGefuellt> <AnzBytesLeer> <Dateiname>", 0xAB,
                   0x1FFFF),
              "000000AB-0001FFFF 16 3 13 bild.hex");
    EXPECT_EQ(lauf(kiv, "<(Bytes\\?>ja<:>nein<)>", 0x100, 0x101), "ja");
    EXPECT_EQ(labels(), "");
}

}  // namespace
