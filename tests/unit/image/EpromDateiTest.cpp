// Image files that work: round trips of random images through each format
// and mode, and binary offsets; the layouts are checked end to end.
#include "image/EpromDatei.h"

#include <random>

#include "Meldungen.h"
#include "image/Eprom.h"

namespace {

class EpromDateiTest : public bildtest::MitMeldungen {
protected:
    // Random stretches, some of them above 64 KiB, 1 MiB and 16 MiB.
    static Eprom zufallsBild(std::mt19937& z) {
        Eprom e;
        for (adrInteger s : {0x0u, 0x7F3u, 0xFFF0u, 0x12345u, 0x1000005u, 0x2345678u, 0xFFFFFF00u}) {
            std::uint32_t n = 1 + z() % 300;
            for (std::uint32_t i = 0; i < n; ++i) e.setzeByte(s + i, static_cast<std::uint8_t>(z()));
        }
        return e;
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

// Intel with several line lengths, Motorola in every mode; the mode of the
// writer is restored behind the file.
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
        EXPECT_EQ(f.liefereAnfAdr(), e.liefereAnfAdr()) << intel << wert;
        EXPECT_EQ(f.liefereEndAdr(), e.liefereEndAdr()) << intel << wert;
    }
    EXPECT_EQ(aufnahme.anzahl(), 0u);
}

TEST_F(EpromDateiTest, BinaryRoundTripWithOffsets) {
    Eprom e;
    std::vector<std::uint8_t> v(100000);
    std::mt19937 z(13);
    for (auto& x : v) x = static_cast<std::uint8_t>(z());
    e.setzeBytes(0x10000, v.data(), static_cast<std::uint32_t>(v.size()), 1);
    std::string n = datei("rund.bin");
    EpromDateiBinaer w(n.c_str());
    ASSERT_EQ(w.schreibe(e, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(liesDatei(n).size(), v.size());

    Eprom f;
    adrInteger start = 0x500, ueber = 16;
    ASSERT_EQ(EpromDateiBinaer(n.c_str()).lies(f, &start, nullptr, &ueber), 1);
    EXPECT_EQ(f.liefereAnfAdr(), 0x500u);
    EXPECT_EQ(f.liefereEndAdr(), 0x500u + 100000 - 16 - 1);
    for (std::uint32_t i = 0; i < 100000 - 16; ++i) ASSERT_EQ(byteAn(f, 0x500 + i), v[16 + i]) << i;

    // The virtual form through the base class goes to the binary writer too.
    Eprom g;
    adrInteger ende = 0x600;
    ASSERT_EQ(EpromDateiBinaer(n.c_str()).lies(g, &start, &ende, nullptr), 1);
    EXPECT_EQ(g.liefereEndAdr(), 0x600u);
    EpromDatei& basis = w;
    ASSERT_EQ(basis.schreibe(g, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(liesDatei(n).size(), 0x101u);
}

}  // namespace
