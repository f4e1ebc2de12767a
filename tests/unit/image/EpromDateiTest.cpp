// Image files: random round trips, long lines, the context line, random input.
#include "image/EpromDatei.h"

#include <random>

#include "Meldungen.h"
#include "image/Eprom.h"

namespace {

using Labels = std::vector<std::string>;

class EpromDateiTest : public bildtest::MitMeldungen {
protected:
    static Eprom zufallsBild(std::mt19937& z) {
        Eprom e;
        for (adrInteger s : {0x0u, 0x7F3u, 0xFFF0u, 0x12345u, 0x1000005u, 0x2345678u, 0xFFFFFF00u}) {
            std::uint32_t n = 1 + z() % 300;
            for (std::uint32_t i = 0; i < n; ++i) e.setzeByte(s + i, static_cast<std::uint8_t>(z()));
        }
        return e;
    }
    int liesIntel(Eprom& e, const std::string& inhalt) {
        return EpromDateiIntel(schreibeDatei("f.hex", inhalt).c_str(), 16).lies(e, nullptr, nullptr, nullptr);
    }
    // Every written byte of `a` has its value in `b`.
    static void enthaelt(Eprom& a, Eprom& b) {
        adrInteger x = 0, von, bis;
        while (a.liefereBereich(x, von, bis)) {
            for (adrInteger y = von; y <= bis; ++y) {
                if (a.liefereAnzSchr(y) == 0) continue;
                std::uint8_t p, q = 0;
                a.liefereByte(y, p, 0);
                ASSERT_EQ(b.liefereByte(y, q, 0), 1);
                ASSERT_EQ(b.liefereAnzSchr(y) != 0, true) << std::hex << y;
                ASSERT_EQ(p, q) << std::hex << y;
                if (y == bis) break;
            }
            if (bis == 0xFFFFFFFF) break;
            x = bis + 1;
        }
    }
};

// Intel line lengths and Motorola modes; the writer's mode is restored.
TEST_F(EpromDateiTest, HexRoundTrips) {
    std::mt19937 z(11);
    const std::pair<bool, std::uint32_t> laeufe[] = {{true, 16}, {true, 32}, {true, 7}, {false, 0},
                                                     {false, 1}, {false, 2}, {false, 3}};
    for (const auto& [intel, wert] : laeufe) {
        Eprom e = zufallsBild(z);
        std::string n = datei("rund");
        Eprom f;
        if (intel) {
            ASSERT_EQ(EpromDateiIntel(n.c_str(), wert).schreibe(e, nullptr, nullptr, nullptr), 1);
            ASSERT_EQ(EpromDateiIntel(n.c_str(), 16).lies(f, nullptr, nullptr, nullptr), 1);
        } else {
            EpromDateiMotorola w(n.c_str(), 16);
            w.modus = static_cast<std::int32_t>(wert);
            ASSERT_EQ(w.schreibe(e, nullptr, nullptr, nullptr), 1);
            EXPECT_EQ(w.modus, static_cast<std::int32_t>(wert));
            ASSERT_EQ(EpromDateiMotorola(n.c_str(), 16).lies(f, nullptr, nullptr, nullptr), 1);
        }
        enthaelt(e, f);
        EXPECT_TRUE(f.liefereAnfAdr() == e.liefereAnfAdr() && f.liefereEndAdr() == e.liefereEndAdr()) << wert;
    }
    EXPECT_EQ(aufnahme.anzahl(), 0u);
}

TEST_F(EpromDateiTest, LongLinesComeInPiecesOf132) {
    Eprom e;
    std::string lang = ":40000000" + std::string(128, '0') + "C0";  // 139 characters
    std::string genau = ":" + std::string(131, '0');                // 132, one piece
    liesIntel(e, lang + "\n" + genau + "\n:00000001FF");
    EXPECT_EQ(aufnahme.labels(),
              (Labels{"HEXFILE-BYTECOUNT", "HEXFILE-FMT", "HEXFILE-BYTECOUNT", "HEXFILE-FMT-COUNT"}));
    EXPECT_EQ(aufnahme.mit("HEXFILE-FMT")[0].detail, "00000C0");
    const std::string zaehler = aufnahme.mit("HEXFILE-BYTECOUNT")[0].detail;
    EXPECT_EQ(zaehler.substr(zaehler.find('\n')), "\n    3c != 40");
    EXPECT_EQ(Fehler::zusatzZeile, nullptr) << "the context line is cleared behind the file";
}

// A file whose last read block holds one byte: its last line is whole.
TEST_F(EpromDateiTest, ALastBlockOfOneByteIsRead) {
    std::string inhalt;
    adrInteger a = 0;
    auto datenZeile = [&](unsigned n) {
        char kopf[16];
        std::snprintf(kopf, sizeof kopf, ":%02X%04X00", n, a);
        unsigned summe = n + (a >> 8) + (a & 0xFF);
        inhalt += kopf + std::string(2 * n, '0');
        std::snprintf(kopf, sizeof kopf, "%02X\n", (0x100 - summe % 0x100) & 0xFF);
        inhalt += kopf;
        a += n;
    };
    for (int i = 0; i < 1488; ++i) datenZeile(16);
    datenZeile(21);
    inhalt += ":00000001FF";
    ASSERT_EQ(inhalt.size(), 65537u);
    Eprom e;
    liesIntel(e, inhalt);
    EXPECT_EQ(aufnahme.labels(), Labels{});
    EXPECT_EQ(e.liefereEndAdr(), a - 1);
}

TEST_F(EpromDateiTest, RandomInputNeitherCrashesNorHangs) {
    std::mt19937 z(99);
    const std::string alphabet = ":S0123456789ABCDEFabcdef \t\r\n\n\n\0xyz";
    for (int runde = 0; runde < 60; ++runde) {
        std::string inhalt;
        std::size_t n = z() % 4000;
        bool text = runde % 2 == 0;
        for (std::size_t i = 0; i < n; ++i)
            inhalt += text ? alphabet[z() % alphabet.size()] : static_cast<char>(z());
        if (runde % 3 == 0) inhalt = ":020000040100F9\n:0100100042AD\nS2050100104295\n" + inhalt;
        std::string name = schreibeDatei("zufall", inhalt);
        Eprom a, b, c;
        EpromDateiIntel(name.c_str(), 16).lies(a, nullptr, nullptr, nullptr);
        EpromDateiMotorola(name.c_str(), 16).lies(b, nullptr, nullptr, nullptr);
        adrInteger start = z(), ext = z() % 8;
        EpromDateiBinaer(name.c_str()).lies(c, &start, nullptr, &ext);
        EXPECT_EQ(Fehler::zusatzZeile, nullptr);
    }
    aufnahme.leere();
    Fehler("HEXFILE-FMT", "t", "", 'W');
    EXPECT_EQ(aufnahme.letzte().art, 0) << "no cap left behind";
}

}  // namespace
