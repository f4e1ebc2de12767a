// The stretch walk against a byte-by-byte reference: random free and fixed
// images (several windows, regions defined over others and deleted, bytes
// above 0xFFFFFF and at 0xFFFFFFFF), ranges clipped at both ends. The
// reference reads each address of a copy through the segment's own lookup,
// the way single reads always worked.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "Meldungen.h"
#include "image/Eprom.h"

using bildtest::MitMeldungen;

namespace {

class EpromStreckeTest : public MitMeldungen {};

struct Byte {
    int wert;   // -1: not in the image
    int anz;
    bool operator==(const Byte&) const = default;
};

Byte referenz(EpromSegment& seg, adrInteger adr) {
    std::uint8_t b = 0, z = 0;
    int code = seg.liesDaten(adr, b);
    int codeZ = seg.liesAnzSchr(adr, z);
    return {code == EpromSegment::nichtImEprom ? -1 : b, codeZ == EpromSegment::nichtImEprom ? 0 : z};
}

std::int64_t speicher(const Eprom& e) {
    std::int64_t n = 0;
    for (const auto& b : e.liefereSegment(0).bereiche) n += b->daten.liefereAnzahl() + b->anzSchr.liefereAnzahl();
    return n;
}

// Walks von..bis and checks every address against the reference, the
// stretches' bounds, that the walk creates no storage, and that it leaves
// the same regions behind as reading each address did.
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
            Byte soll = referenz(*const_cast<EpromSegment*>(&ref.liefereSegment(0)), static_cast<adrInteger>(a));
            if (!(ist == soll)) {
                ADD_FAILURE() << std::hex << "at " << a << ": " << ist.wert << "/" << ist.anz << " instead of "
                              << soll.wert << "/" << soll.anz;
                return false;
            }
        }
        naechste = std::uint64_t(s.bis) + 1;
        return true;
    });
    EXPECT_EQ(naechste, std::uint64_t(bis) + 1);
    EXPECT_EQ(speicher(e), vorher) << "a walk grew storage";
    EXPECT_EQ(e.liefereSegment(0).anzahlBereiche(), ref.liefereSegment(0).anzahlBereiche());
    // The bulk read is a walk too.
    e.liefereBytes(von, static_cast<std::uint32_t>(bytes.size()), bytes.data(), zaehler.data());
    for (std::size_t i = 0; i < bytes.size(); i += 97) {
        Byte soll = referenz(*const_cast<EpromSegment*>(&ref.liefereSegment(0)), static_cast<adrInteger>(von + i));
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
                adrInteger end = static_cast<adrInteger>(std::min<std::uint64_t>(0xFFFFFFFF, std::uint64_t(anf) + z(0x12000)));
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
                e.setzeBytes(a, lauf.data(), static_cast<std::uint32_t>(std::min<std::uint64_t>(1 + z(0x9000), 0x100000000ull - a)), 0);
        }
        if (fest && runde % 3 == 0) e.loescheBereich(bereiche[0].first);
        for (int r = 0; r < 3; ++r) {
            adrInteger von = orte[z(7)] + z(0x18000);
            if (r == 2) von = 0xFFFFFFFF - z(0x2000);
            adrInteger bis = static_cast<adrInteger>(std::min<std::uint64_t>(0xFFFFFFFF, std::uint64_t(von) + z(0x10000)));
            pruefe(e, von, bis);
        }
        // Across window ends: from the low one, from one without a region
        // into one with bytes, and up to a window's first address.
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
    // Reading a window of a free image gives it its empty region: one per window.
    EXPECT_EQ(e.liefereSegment(0).anzahlBereiche(), 256);

    // Asked without the walk's marking, a window without a region ends at
    // its own end.
    Eprom zwei;
    zwei.setzeByte(0x5000000, 7);
    EpromStrecke s;
    zwei.liefereStrecke(0x4FFFFF0, 0x500000F, s);
    EXPECT_TRUE(s.bis == 0x4FFFFFF && !s.daten && !s.anzSchr && s.imEprom);

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

}  // namespace
