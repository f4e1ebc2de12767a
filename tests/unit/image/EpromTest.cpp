// The byte image: regions, write counts, fill, swap, walks, bulk paths, and the chunked array beneath.
#include "image/Eprom.h"

#include "foundation/LongDynArray.h"

#include <random>
#include <sstream>

#include "Meldungen.h"

namespace {

using EpromTest = bildtest::MitMeldungen;

std::string liste(const Eprom& e) {
    std::ostringstream o;
    o << std::hex << std::uppercase;
    for (const auto& b : e.liefereSegment(0).bereiche) o << b->anfAdr << "-" << b->endAdr << " ";
    return o.str();
}
std::string tabelle(const Eprom& e) {
    std::ostringstream o;
    o << std::hex << std::uppercase;
    for (const auto& z : e.liefereTabelle()) o << z.anfAdr << "-" << z.endAdr << " ";
    return o.str();
}

TEST_F(EpromTest, FreeImageSpanAndSaturatingWriteCounts) {
    Eprom e;
    EXPECT_EQ(tabelle(e), "FFFFFFFF-0 ");
    e.setzeByte(0x100, 1);
    e.setzeByte(0x200, 2);
    e.setzeByte(0x200, 3);
    EXPECT_EQ(tabelle(e), "100-200 ") << "one region, unwritten between";
    std::uint8_t b = 9;
    EXPECT_EQ(e.liefereByte(0x180, b, 1), 1);
    EXPECT_EQ(b + e.liefereAnzSchr(0x180), 0);
    EXPECT_EQ(byteAn(e, 0x200) * 10 + e.liefereAnzSchr(0x200), 32);
    adrInteger von, bis;
    ASSERT_EQ(e.liefereBereich(0x150, von, bis), 1);
    EXPECT_EQ(std::make_pair(von, bis), std::make_pair(adrInteger(0x150), adrInteger(0x200)));
    EXPECT_EQ(e.liefereBereich(0x201, von, bis), 0);

    std::vector<std::uint8_t> v(40, 1);
    for (int i = 0; i < 300; ++i) e.setzeByte(0x120, 0), e.setzeBytes(0x118, v.data(), 40, 0);
    EXPECT_EQ(e.liefereAnzSchr(0x120), 255);
    EXPECT_EQ(e.liefereAnzSchr(0x118), 255);
}

TEST_F(EpromTest, WindowsAboveSixteenMegabytes) {
    Eprom e;
    e.setzeByte(0x1000000, 1);
    ASSERT_EQ(e.liefereSegment(0).bereiche.size(), 2u);
    EXPECT_EQ(e.liefereSegment(0).bereiche[1]->basisAdr, 0x1000000u) << "inserted behind the low region";
    e.setzeByte(0x1FFFFFF, 2);
    EXPECT_EQ(e.liefereSegment(0).bereiche.size(), 2u);
    e.setzeByte(0x2000000, 3);
    EXPECT_EQ(e.liefereSegment(0).bereiche.size(), 3u);
    EXPECT_EQ(tabelle(e), "1000000-1FFFFFF 2000000-2000000 FFFFFFFF-0 ");
    EXPECT_EQ(e.liefereAnfAdr(), 0x1000000u);
    e.setzeByte(0x100, 4);
    EXPECT_EQ(tabelle(e), "100-1FFFFFF 2000000-2000000 FFFFFFFF-0 ");
    e.setzeByte(0x2000001, 5);  // any write up there rebuilds the table
    EXPECT_EQ(tabelle(e), "100-100 1000000-1FFFFFF 2000000-2000001 ");
    EXPECT_EQ(byteAn(e, 0x1FFFFFF), 2);
}

TEST_F(EpromTest, FixedImageRefusesAddressesOutsideRegions) {
    Eprom e;
    e.definiereBereich(0x100, 0x1FF);
    e.definiereBereich(0x300, 0x3FF);
    EXPECT_EQ(e.setzeByte(0x200, 1), 0);
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    EXPECT_EQ(e.setzeByteMit(0x200, 1), 0);
    EXPECT_EQ(tabelle(e), "100-1FF 300-3FF ");
    std::uint8_t b = 5;
    EXPECT_EQ(e.liefereByte(0x2FF, b, 1), 0);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(e.liefereAnzSchrMit(0x50), 0);
    EXPECT_EQ(aufnahme.labels(), std::vector<std::string>(3, "EPR-ADR-NOT-IN-EPROM"));
    EXPECT_EQ(e.liefereByte(0x150, b, 1), 1) << "inside a region, though not belegt";
}

TEST_F(EpromTest, RegionSplitMergeAndDelete) {
    Eprom e;
    for (adrInteger a = 0x1000; a < 0x2800; a += 0x80) e.setzeByte(a, static_cast<std::uint8_t>(a >> 7));
    e.setzeByte(0x1000, 0xAA);  // count 2 there
    e.definiereBereich(0x1000, 0x1FFF);
    EXPECT_EQ(liste(e), "2000-2780 1000-1FFF ") << "the loaded span keeps its upper part, fixed";
    EXPECT_FALSE(e.istFrei());
    e.loescheBereich(0x2000);
    EXPECT_EQ(liste(e), "1000-1FFF ");

    // Split in place and behind; same bounds change nothing; a cover merges all.
    const std::tuple<adrInteger, adrInteger, const char*> schritte[] = {
        {0x1800, 0x27FF, "1000-17FF 1800-27FF "},
        {0x1400, 0x1BFF, "1000-13FF 1C00-27FF 1400-1BFF "},
        {0x1100, 0x11FF, "1000-10FF 1C00-27FF 1400-1BFF 1200-13FF 1100-11FF "},
        {0x1100, 0x11FF, "1000-10FF 1C00-27FF 1400-1BFF 1200-13FF 1100-11FF "},
        {0x1000, 0x27FF, "1000-27FF "},
    };
    for (const auto& [anf, end, erwartet] : schritte) {
        EXPECT_TRUE(anf != 0x1000 || tabelle(e) == "1000-10FF 1100-11FF 1200-13FF 1400-1BFF 1C00-27FF ");
        e.definiereBereich(anf, end);
        EXPECT_EQ(liste(e), erwartet) << std::hex << anf;
    }

    for (adrInteger a = 0x1080; a < 0x2000; a += 0x80) {
        EXPECT_EQ(byteAn(e, a), static_cast<std::uint8_t>(a >> 7)) << std::hex << a;
        EXPECT_EQ(e.liefereAnzSchr(a), 1);
    }
    EXPECT_EQ(byteAn(e, 0x1000), 0xAA);
    EXPECT_EQ(e.liefereAnzSchr(0x1000), 2);
    EXPECT_EQ(e.liefereAnzSchr(0x2000), 0) << "bytes of the deleted region are gone";
    EXPECT_EQ(aufnahme.anzahl(), 0u);

    // Same bounds as the only region of a free image; deleting the last region frees.
    Eprom f;
    f.setzeByte(0x10, 1);
    f.setzeByte(0x20, 1);
    f.definiereBereich(0x10, 0x20);
    EXPECT_TRUE(f.istFrei());
    Eprom g;
    g.definiereBereich(0x100, 0x1FF);
    EXPECT_EQ(g.loescheBereich(0x300), 0);
    EXPECT_EQ(g.loescheBereich(0x150), 1);
    EXPECT_TRUE(g.istFrei());
    EXPECT_EQ(g.liefereAnfAdr(), 0xFFFFFFFFu);
    EXPECT_EQ(tabelle(g), "FFFFFFFF-0 ");
    EXPECT_EQ(g.setzeByte(0x5000, 1), 1);
}

TEST_F(EpromTest, FillTouchesOnlyUnwrittenBytesInsideRegions) {
    Eprom e;
    e.setzeByte(0x100, 0xFF);
    e.setzeByte(0x100, 0xFF);
    e.setzeByte(0x10F, 1);
    adrInteger von = 0x0, bis = 0x1000;
    EXPECT_EQ(e.fuelle(0xFF, &von, &bis), 14u);
    EXPECT_EQ(e.liefereAnzSchr(0x100) * 10 + e.liefereAnzSchr(0x105), 21) << "a written byte keeps its count";
    EXPECT_EQ(e.liefereEndAdr(), 0x10Fu) << "fill never widens";
    EXPECT_EQ(e.fuelle(0, nullptr, nullptr), 0u);

    Eprom f;
    f.definiereBereich(0x10, 0x1F);
    f.definiereBereich(0x40, 0x4F);
    adrInteger v = 0x18;
    EXPECT_EQ(f.fuelle(7, &v, nullptr), 8u + 16u);
}

TEST_F(EpromTest, SwapChecksAndExchangesPairs) {
    Eprom e;
    for (adrInteger a = 0x100; a <= 0x10F; ++a) e.setzeByte(a, static_cast<std::uint8_t>(a));
    e.setzeByte(0x100, 0);  // count 2 at 0x100 travels with the byte

    ASSERT_EQ(e.swap(0x100, 0x10F, nullptr), 1);
    EXPECT_EQ(byteAn(e, 0x100), 0x01);
    EXPECT_EQ(byteAn(e, 0x101), 0x00);
    EXPECT_EQ(e.liefereAnzSchr(0x101), 2);
    EXPECT_EQ(e.liefereAnzSchr(0x100), 1);

    Eprom g;
    g.definiereBereich(0x100, 0x103);
    g.definiereBereich(0x200, 0x200);
    g.setzeByte(0x200, 9);
    g.setzeByte(0x100, 1);
    EXPECT_EQ(g.swap(0x100, 0x201, nullptr), 1);
    EXPECT_EQ(byteAn(g, 0x200), 9);
    EXPECT_EQ(g.liefereAnzSchr(0x101), 1) << "unoccupied bytes swap like all others";
}

TEST_F(EpromTest, RunsOfWriteCounts) {
    Eprom e;
    e.definiereBereich(0x100, 0x103);
    e.definiereBereich(0x200, 0x201);
    e.setzeByte(0x100, 1);
    e.setzeByte(0x101, 1);
    e.setzeByte(0x103, 1);
    e.setzeByte(0x103, 1);
    std::ostringstream o;
    EXPECT_EQ(e.anzeigeBelegung(o, 0x101, 0x200), 2u);
    EXPECT_EQ(o.str(),
              "[00101 .. 00101] -> 1\n"
              "[00102 .. 00102] -> 0\n"
              "[00103 .. 00103] -> 2\n"
              "[00200 .. 00200] -> 0\n");
    EXPECT_EQ(e.anzeigeBelegung(o, 0x200, 0x100), 0u);
}

TEST_F(EpromTest, WalksStopAtTheTopOfTheAddressSpace) {
    Eprom e;
    e.definiereBereich(0xFFFFFF00, 0xFFFFFFFF);
    e.setzeByte(0xFFFFFFFF, 0x5A);
    e.setzeByte(0xFFFFFFFE, 0x5B);
    adrInteger von, bis;
    ASSERT_EQ(e.liefereBereich(0xFFFFFFFF, von, bis), 1);
    EXPECT_EQ(bis, 0xFFFFFFFFu);
    EXPECT_EQ(e.fuelle(1, nullptr, nullptr), 254u);
    EXPECT_EQ(e.swap(0xFFFFFF00, 0xFFFFFFFF, nullptr), 1);
    EXPECT_EQ(byteAn(e, 0xFFFFFFFF), 0x5B);

    std::ostringstream o;
    EXPECT_EQ(e.anzeigeBelegung(o, 0xFFFFFFF0, 0xFFFFFFFF), 0u);
    EXPECT_EQ(o.str(), "[fffffff0 .. ffffffff] -> 1\n");
    std::ostringstream d;
    e.anzeigeBytes(0xFFFFFFF8, 0xFFFFFFFF, "K", d, 1);
    EXPECT_EQ(d.str(), "\nK\nDaten [FFFFFFF8]\t = 01 01 01 01 01 01 5A 5B \n");

    Eprom g, u;
    EXPECT_EQ(e.teileEvenOdd(g, u), 1);
    EXPECT_EQ(u.liefereEndAdr(), 0x7FFFFFFFu);
}

TEST_F(EpromTest, HugeRegionsEndQuickly) {
    // Arrays wider than their limit freeze; the rest is not walked.
    Eprom e;
    e.definiereBereich(0, 0xFFFFFFFE);
    EXPECT_EQ(aufnahme.anzahl(), 0u) << "touching 0xFFFFFFFE from 0 grows downward by two";
    EXPECT_EQ(e.fuelle(0x11, nullptr, nullptr), 16842750u);
    ASSERT_EQ(aufnahme.mit("FELDZUGROSS").size(), 1u);
    EXPECT_EQ(e.swap(0, 0xFFFFFFFD, nullptr), 1);
    EXPECT_EQ(e.setzeByte(5, 1), 0) << "a frozen region counts as not in the image";
}

// Bulk writes must leave bytes, counts, regions and table as byte-wise ones.
void vergleiche(Eprom& a, Eprom& b) {
    ASSERT_EQ(liste(a), liste(b));
    ASSERT_EQ(tabelle(a), tabelle(b));
    for (const auto& r : a.liefereSegment(0).bereiche) {
        if (r->anfAdr > r->endAdr) continue;
        for (adrInteger x = r->anfAdr;; ++x) {
            std::uint8_t p, q;
            a.liefereByte(x, p, 0);
            b.liefereByte(x, q, 0);
            ASSERT_EQ(p, q) << std::hex << x;
            ASSERT_EQ(a.liefereAnzSchr(x), b.liefereAnzSchr(x)) << std::hex << x;
            if (x == r->endAdr) break;
        }
    }
}

TEST_F(EpromTest, BulkWritesMatchByteWiseWrites) {
    std::mt19937 zufall(7);
    for (int runde = 0; runde < 12; ++runde) {
        Eprom a, b;
        if (runde % 3 == 1) {
            for (Eprom* x : {&a, &b}) x->definiereBereich(0x100, 0x4FFF), x->definiereBereich(0x6000, 0x6FFF);
        }
        for (int i = 0; i < 60; ++i) {
            adrInteger basis = (runde % 3 == 2 && i % 2) ? 0x3000000 - 0x800 : 0;
            adrInteger adr = basis + zufall() % 0x8000;
            std::uint32_t n = 1 + zufall() % 600;
            std::vector<std::uint8_t> v(n);
            for (auto& x : v) x = static_cast<std::uint8_t>(zufall());
            std::uint32_t gesetzt = 0;
            for (std::uint32_t k = 0; k < n; ++k)
                if (b.setzeByte(adr + k, v[k]))
                    ++gesetzt;
                else
                    break;
            EXPECT_EQ(a.setzeBytes(adr, v.data(), n, 0), gesetzt);
        }
        vergleiche(a, b);  // bulk reads are checked with the stretch walk
    }
}

TEST_F(EpromTest, GrowthBothWaysKeepsEveryByte) {
    // Up across chunks, down by no multiple of the chunk size, far up again.
    LongDynArray b;
    const int n = 3 * LongDynArray::blockGroesse + 123;
    auto wert = [](int i) { return static_cast<std::uint8_t>(i * 7 + (i >> 8) + 1); };
    for (int i = 0; i < n; ++i) b[50000 + i] = wert(i);
    b[17] = 0xEE;
    EXPECT_EQ(b.liefereBasis(), 17);
    b[50000 + n + 70000] = 1;
    for (int i = 0; i < n; ++i) ASSERT_EQ(b[50000 + i], wert(i)) << i;
    EXPECT_EQ(b[17] + b[50000 + n + 5], 0xEE);

    LongDynArray c;
    c[static_cast<std::int32_t>(0x7FFFFFF0u)] = 1;
    c[static_cast<std::int32_t>(0x8000000Fu)] = 2;
    EXPECT_EQ(c.liefereAnzahl(), 32);
    EXPECT_EQ(c[static_cast<std::int32_t>(0x7FFFFFF0u)], 1);
    EXPECT_EQ(aufnahme.anzahl(), 0u);
}

TEST_F(EpromTest, LimitWarnsOnceAndFreezes) {
    LongDynArray a;
    a[0] = 1;
    a[16842751] = 9;  // 514 chunks exactly
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    EXPECT_FALSE(a.istGewarnt());

    std::uint8_t& x = a[16842752];
    EXPECT_EQ(aufnahme.letzte().satz(), "FELDZUGROSS|LongDynArray::[]+|16842752|W");
    EXPECT_EQ(x, 9) << "a failed access hands out the last byte";
    // Frozen: in-range indices also give the last byte, and no second warning.
    EXPECT_EQ(&a[0], &x);
    EXPECT_EQ(&a[-5000000], &x);
    EXPECT_EQ(aufnahme.anzahl(), 1u);

    // Downward the limit is one short.
    aufnahme.leere();
    LongDynArray b;
    b[16842751] = 1;
    b[1] = 2;
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    b[0];
    EXPECT_EQ(aufnahme.letzte().satz(), "FELDZUGROSS|LongDynArray::[]-|16842752|W");
}

}  // namespace
