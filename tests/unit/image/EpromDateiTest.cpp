// Image files that work: round trips of random images through each format,
// address windows, extended records as addresses grow, the Motorola modes,
// and the layout of what is written.
#include "image/EpromDatei.h"

#include <random>
#include <sstream>

#include "Meldungen.h"
#include "image/Eprom.h"

using bildtest::MitMeldungen;

namespace {

class EpromDateiTest : public MitMeldungen {
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
    std::vector<std::string> zeilen(const std::string& n) {
        std::vector<std::string> r;
        std::istringstream s(liesDatei(n));
        for (std::string z; std::getline(s, z);) r.push_back(z);
        return r;
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
    EXPECT_EQ(labels(), std::vector<std::string>{});
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

TEST_F(EpromDateiTest, IntelExtendedRecordsFollowTheHighestAddress) {
    auto erste = [&](adrInteger ende) {
        Eprom e;
        e.setzeByte(0x100, 1);
        e.setzeByte(ende, 2);
        std::string n = datei("ext.hex");
        EpromDateiIntel(n.c_str(), 16).schreibe(e, nullptr, nullptr, nullptr);
        return zeilen(n);
    };
    auto a = erste(0xFFFF);
    EXPECT_EQ(a.front(), ":1001000001000000000000000000000000000000EE");
    EXPECT_EQ(a.back(), ":00000001FF");
    EXPECT_EQ(erste(0x10000).front(), ":020000020000FC");
    auto c = erste(0x100000);
    EXPECT_EQ(c.front(), ":020000040000FA");
    EXPECT_EQ(c[c.size() - 3], ":020000040010EA");
    EXPECT_EQ(c[c.size() - 2], ":0100000002FD");
}

TEST_F(EpromDateiTest, IntelLinesAlignOnNutzBytesAndGapsComeOutAsZero) {
    Eprom e;
    for (adrInteger a = 0x1008; a <= 0x1020; ++a)
        if (a != 0x1009) e.setzeByte(a, 0x11);
    std::string n = datei("ausr.hex");
    ASSERT_EQ(EpromDateiIntel(n.c_str(), 16).schreibe(e, nullptr, nullptr, nullptr), 1);
    auto z = zeilen(n);
    ASSERT_EQ(z.size(), 4u);
    EXPECT_EQ(z[0], ":08100800110011111111111169");
    EXPECT_EQ(z[1].substr(0, 9), ":10101000");
    EXPECT_EQ(z[2].substr(0, 9), ":01102000");
}

// The external address moves the file window: Intel writes it as file
// address, Motorola shifts the image addresses by it.
TEST_F(EpromDateiTest, ExternalAddressMovesTheFileWindow) {
    Eprom e;
    for (adrInteger a = 0x1000; a < 0x1010; ++a) e.setzeByte(a, static_cast<std::uint8_t>(a));
    std::string n = datei("ext2.hex");
    adrInteger ext = 0x28000;
    ASSERT_EQ(EpromDateiIntel(n.c_str(), 16).schreibe(e, nullptr, nullptr, &ext), 1);
    auto z = zeilen(n);
    EXPECT_EQ(z[0], ":020000020000FC");
    EXPECT_EQ(z[1], ":020000022000DC");
    EXPECT_EQ(z[2].substr(0, 9), ":10800000");
    Eprom f;
    adrInteger start = 0x1000, ende = 0x1007;
    ASSERT_EQ(EpromDateiIntel(n.c_str(), 16).lies(f, &start, &ende, &ext), 1);
    EXPECT_EQ(f.liefereAnfAdr(), 0x1000u);
    EXPECT_EQ(f.liefereEndAdr(), 0x1007u) << "the end sets the length of the window";

    Eprom m;
    for (adrInteger a = 0x100; a < 0x120; ++a) m.setzeByte(a, static_cast<std::uint8_t>(a));
    std::string s = datei("ext.s");
    adrInteger mext = 0x9000;
    EpromDateiMotorola w(s.c_str(), 16);
    w.modus = EpromDateiMotorola::S1S9;
    ASSERT_EQ(w.schreibe(m, nullptr, nullptr, &mext), 1);
    EXPECT_EQ(zeilen(s)[1].substr(0, 8), "S1139000");
    Eprom g;
    adrInteger mstart = 0x100;
    ASSERT_EQ(EpromDateiMotorola(s.c_str(), 16).lies(g, &mstart, nullptr, &mext), 1);
    enthaelt(m, g);
    EXPECT_EQ(g.liefereAnfAdr(), 0x100u);
}

TEST_F(EpromDateiTest, MotorolaWidthsGrowWithTheAddresses) {
    Eprom e;
    for (adrInteger a = 0xFFF0; a <= 0x1000F; ++a) e.setzeByte(a, 0x22);
    std::string n = datei("dyn.s");
    EpromDateiMotorola w(n.c_str(), 16);
    w.modus = EpromDateiMotorola::DYN;
    ASSERT_EQ(w.schreibe(e, nullptr, nullptr, nullptr), 1);
    auto z = zeilen(n);
    ASSERT_EQ(z.size(), 5u);
    EXPECT_EQ(z[0], "S00600004844521B");
    EXPECT_EQ(z[1].substr(0, 8), "S113FFF0");
    EXPECT_EQ(z[2], "S9030000FC");
    EXPECT_EQ(z[3].substr(0, 10), "S214010000");
    EXPECT_EQ(z[4], "S804000000FB");

    // S2S8 too grows into S3; S3S7 never changes.
    Eprom g;
    g.setzeByte(0x10, 1);
    g.setzeByte(0x1000000, 2);
    w.modus = EpromDateiMotorola::S2S8;
    w.schreibe(g, nullptr, nullptr, nullptr);
    z = zeilen(n);
    EXPECT_EQ(z[1].substr(0, 2), "S2");
    EXPECT_EQ(z.back(), "S70500000000FA");
    w.modus = EpromDateiMotorola::S3S7;
    w.schreibe(g, nullptr, nullptr, nullptr);
    z = zeilen(n);
    EXPECT_EQ(z[1].substr(0, 2), "S3");
    EXPECT_EQ(z.back(), "S70500000000FA");
    EXPECT_EQ(z.size(), 4u) << "no end record in between";
}

}  // namespace
