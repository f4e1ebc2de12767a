// The stretch walk against reads of each address through the segment's own lookup.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "Meldungen.h"
#include "image/Eprom.h"

namespace {

using EpromStreckeTest = bildtest::MitMeldungen;

struct Byte {
    int wert;  // -1: not in the image
    int anz;
    bool operator==(const Byte&) const = default;
};

Byte referenz(const Eprom& e, std::uint64_t a) {
    auto& seg = *const_cast<EpromSegment*>(&e.liefereSegment(0));
    const auto adr = static_cast<adrInteger>(a);
    std::uint8_t b = 0, z = 0;
    int code = seg.liesDaten(adr, b);
    int codeZ = seg.liesAnzSchr(adr, z);
    return {code == EpromSegment::nichtImEprom ? -1 : b, codeZ == EpromSegment::nichtImEprom ? 0 : z};
}

std::int64_t speicher(const Eprom& e) {
    std::int64_t n = 0;
    for (const auto& b : e.liefereSegment(0).bereiche)
        n += b->daten.liefereAnzahl() + b->anzSchr.liefereAnzahl();
    return n;
}

// Also: the walk creates no storage and leaves the regions single reads leave.
void pruefe(Eprom& e, adrInteger von, adrInteger bis) {
    Eprom ref(e);
    const std::int64_t vorher = speicher(e);
    std::uint64_t naechste = von;
    std::vector<std::uint8_t> bytes(std::uint64_t(bis) - von + 1), zaehler(bytes.size());
    e.laufe(von, bis, [&](const EpromStrecke& s) {
        EXPECT_EQ(s.von, naechste);
        EXPECT_LE(s.von, s.bis);
        EXPECT_LE(s.bis, bis);
        for (std::uint64_t a = s.von; a <= s.bis; ++a) {
            const std::uint64_t j = a - s.von;
            Byte ist{!s.imEprom ? -1 : s.daten ? s.daten[j] : 0, s.anzSchr ? s.anzSchr[j] : 0};
            Byte soll = referenz(ref, a);
            if (ist == soll) continue;
            EXPECT_EQ(ist.wert * 256 + ist.anz, soll.wert * 256 + soll.anz) << std::hex << a;
            return false;
        }
        naechste = std::uint64_t(s.bis) + 1;
        return true;
    });
    EXPECT_EQ(naechste, std::uint64_t(bis) + 1);
    EXPECT_EQ(speicher(e), vorher) << "a walk grew storage";
    EXPECT_EQ(e.liefereSegment(0).anzahlBereiche(), ref.liefereSegment(0).anzahlBereiche());
    e.liefereBytes(von, static_cast<std::uint32_t>(bytes.size()), bytes.data(), zaehler.data());
    for (std::size_t i = 0; i < bytes.size(); i += 97) {
        Byte soll = referenz(ref, von + i);
        EXPECT_EQ(bytes[i], soll.wert < 0 ? 0 : soll.wert);
        EXPECT_EQ(zaehler[i], soll.anz);
    }
}

TEST_F(EpromStreckeTest, AgreesWithByteReadsOnRandomImages) {
    std::mt19937 zufall(4711);
    auto z = [&](std::uint32_t n) { return static_cast<adrInteger>(zufall() % n); };
    const adrInteger orte[] = {0x0, 0x8000, 0xFF0000, 0x1000000, 0x5000000, 0x7FFF8000, 0xFFFF0000};
    std::vector<std::uint8_t> lauf(0x9000);
    for (auto& b : lauf) b = static_cast<std::uint8_t>(zufall());
    for (int runde = 0; runde < 24; ++runde) {
        Eprom e;
        const bool fest = runde % 2 == 1;
        std::vector<std::pair<adrInteger, adrInteger>> bereiche;
        if (fest) {
            for (int r = 0; r < 3; ++r) {
                adrInteger anf = orte[z(7)] + z(0x10000);
                adrInteger end = static_cast<adrInteger>(
                    std::min<std::uint64_t>(0xFFFFFFFF, std::uint64_t(anf) + z(0x12000)));
                if (r == 2 && runde % 4 == 1) end = 0xFFFFFFFF;
                e.definiereBereich(anf, end);
                bereiche.push_back({anf, end});
            }
        }
        for (int w = 0; w < 12; ++w) {
            adrInteger a = orte[z(7)] + z(0x14000);
            if (w == 0 && runde % 3 == 0) a = 0xFFFFFFFF;
            if (z(2))
                e.setzeByte(a, static_cast<std::uint8_t>(zufall()));
            else
                e.setzeBytes(
                    a, lauf.data(),
                    static_cast<std::uint32_t>(std::min<std::uint64_t>(1 + z(0x9000), 0x100000000ull - a)),
                    0);
        }
        if (fest && runde % 3 == 0) e.loescheBereich(bereiche[0].first);
        for (int r = 0; r < 3; ++r) {
            adrInteger von = orte[z(7)] + z(0x18000);
            if (r == 2) von = 0xFFFFFFFF - z(0x2000);
            adrInteger bis =
                static_cast<adrInteger>(std::min<std::uint64_t>(0xFFFFFFFF, std::uint64_t(von) + z(0x10000)));
            pruefe(e, von, bis);
        }
        e.setzeByte(0x5000000, 7);
        pruefe(e, 0xFFFFF0, 0x100000F);
        pruefe(e, 0x4FFFFF0, 0x500000F);
        pruefe(e, 0x2FFFFF0, 0x3000000);
    }
}

TEST_F(EpromStreckeTest, SkipsTheEmptyAddressSpaceAtOnceAndMarksEachWindowRead) {
    Eprom e;
    e.setzeByte(0xFFFFFFFE, 1);
    e.setzeByte(0, 1);
    const std::int64_t vorher = speicher(e);
    int strecken = 0;
    e.laufe(0, 0xFFFFFFFF, [&](const EpromStrecke&) { return ++strecken < 100000; });
    EXPECT_LT(strecken, 1000);
    EXPECT_EQ(speicher(e), vorher);
    EXPECT_EQ(e.liefereSegment(0).anzahlBereiche(), 256);

    Eprom fest;
    fest.definiereBereich(0x10, 0x1F);
    fest.definiereBereich(0xFFFFFFF0, 0xFFFFFFFF);
    strecken = 0;
    fest.laufe(0, 0xFFFFFFFF, [&](const EpromStrecke& st) {
        ++strecken;
        EXPECT_EQ(st.imEprom, st.von == 0x10 || st.von == 0xFFFFFFF0) << std::hex << st.von;
        return true;
    });
    EXPECT_EQ(strecken, 4);
}

// A chunk written alike keeps one count; every later change must read as if each were stored.
TEST_F(EpromStreckeTest, ChunksOfOneCountAgreeAfterEveryKindOfChange) {
    std::mt19937 zufall(815);
    std::vector<std::uint8_t> lauf(0x40000);
    for (auto& b : lauf) b = static_cast<std::uint8_t>(zufall());
    const adrInteger basis = 0x1100000;
    Eprom e;
    e.setzeBytes(basis, lauf.data(), 0x30000, 0);
    pruefe(e, basis - 0x10, basis + 0x30010);
    e.setzeBytes(basis + 0x8005, lauf.data(), 0x10000, 0);
    e.setzeByte(basis + 0x20000, 9);
    for (int i = 0; i < 256; ++i) e.setzeBytes(basis + 0x28000, lauf.data(), 0x8000, 0);  // saturates
    pruefe(e, basis, basis + 0x2FFFF);
    const std::pair<adrInteger, int> anz[] = {
        {basis, 1},           {basis + 0x8004, 1},    {basis + 0x8005, 2},    {basis + 0x18004, 2},
        {basis + 0x18005, 1}, {basis + 0x28004, 255}, {basis + 0x2FFFF, 255}, {basis + 0x20000, 2},
        {basis + 0x30000, 0}};
    for (auto [a, n] : anz) EXPECT_EQ(e.liefereAnzSchr(a), n) << std::hex << a;
    e.setzeByte(basis - 0x9001, 3);  // the array grows downward
    pruefe(e, basis - 0x9001, basis + 0x2FFFF);
    Eprom kopie(e);
    e.swap(basis - 0xA000, basis + 0x2FFFF, nullptr);
    pruefe(e, basis - 0xA000, basis + 0x2FFFF);
    pruefe(kopie, basis - 0x9001, basis + 0x2FFFF);
    for (auto [a, n] : anz) EXPECT_EQ(kopie.liefereAnzSchr(a), n) << std::hex << a;

    Eprom fest;
    fest.definiereBereich(0x100, 0x400FF);
    fest.setzeBytes(0x8100, lauf.data(), 0x10000, 0);
    const adrInteger von = 0x8000, bis = 0x30000;
    EXPECT_EQ(fest.fuelle(0xAA, &von, &bis), 0x28001u - 0x10000u);
    pruefe(fest, 0, 0x40100);
    fest.setzeBytes(0x100, lauf.data(), 0x40000, 0);
    pruefe(fest, 0, 0x40100);
}

// A reader's collector must leave the image as writing each record at once does.
TEST_F(EpromStreckeTest, CollectedRecordsLeaveTheImageAsSingleWrites) {
    std::mt19937 zufall(99);
    auto z = [&](std::uint32_t n) { return static_cast<adrInteger>(zufall() % n); };
    std::vector<std::uint8_t> lauf(0x200);
    for (auto& b : lauf) b = static_cast<std::uint8_t>(zufall());
    const adrInteger orte[] = {0x0, 0x7FF0, 0x8FF0, 0xFFFF00, 0x2000000, 0xFFFFFF00};
    for (int runde = 0; runde < 40; ++runde) {
        Eprom einzeln;
        // Bytes written while free keep a region that grows once fixed.
        if (runde % 3 == 0) einzeln.setzeBytes(0x9000 + z(0x100), lauf.data(), 0x20, 0);
        if (runde % 2) einzeln.definiereBereich(0x7F00 + z(0x200), 0x8400 + z(0x200));
        if (runde % 4 == 1) einzeln.definiereBereich(0x100 + z(0x100), 0x300);
        if (runde % 4 == 3) einzeln.definiereBereich(0x2000000, 0x3FFFFFF);  // beyond the array limit
        Eprom gesammelt(einzeln);
        {
            EpromSammler sammler(gesammelt);
            adrInteger a = orte[z(6)] + z(0x100);
            for (int r = 0; r < 60; ++r) {
                if (z(8) == 0) a = orte[z(6)] + z(0x100);
                const std::uint32_t n =
                    std::min<std::uint32_t>(1 + z(0x40), static_cast<std::uint32_t>(0x100000000ull - a));
                const std::uint8_t* q = lauf.data() + (r % 4) * 0x40;
                einzeln.setzeBytes(a, q, n, 0);
                if (!sammler.nimm(a, q, n)) gesammelt.setzeBytes(a, q, n, 0);
                if (std::uint64_t(a) + n > 0xFFFFFFFF)
                    a = orte[z(6)];
                else
                    a += n;
            }
        }
        ASSERT_EQ(gesammelt.liefereAnzBereiche(), einzeln.liefereAnzBereiche()) << runde;
        const auto& t1 = gesammelt.liefereTabelle();
        const auto& t2 = einzeln.liefereTabelle();
        ASSERT_EQ(t1.size(), t2.size());
        for (std::size_t i = 0; i < t1.size(); ++i)
            EXPECT_TRUE(t1[i].anfAdr == t2[i].anfAdr && t1[i].endAdr == t2[i].endAdr &&
                        t1[i].segNr == t2[i].segNr)
                << "round " << runde << " row " << i;
        for (adrInteger o : orte)
            for (adrInteger a = o; a < o + 0x500 && a >= o; ++a) {
                std::uint8_t b1 = 0, b2 = 0;
                gesammelt.liefereByte(a, b1, 0);
                einzeln.liefereByte(a, b2, 0);
                ASSERT_EQ(b1, b2) << std::hex << a;
                ASSERT_EQ(gesammelt.liefereAnzSchr(a), einzeln.liefereAnzSchr(a)) << std::hex << a;
            }
    }
}

}  // namespace
