// Check values, and the fast sums against the bitwise references in random pieces.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "ReferenzAlgorithmen.h"
#include "checksums/ChecksumAlgorithmen.h"

namespace {

using referenz::Bytes;

const Bytes ziffern = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};

TEST(Algorithmen, CheckWerte) {
    Crc32Rechner c32;
    Crc16Rechner xmodem(0x1021), a001(0xA001);
    SiemensSummierer s0, s1;
    c32.nimm(ziffern.data(), 9);
    xmodem.nimm(ziffern.data(), 9);
    a001.nimm(ziffern.data(), 9);
    s0.nimm(0, ziffern.data(), 9);
    s1.nimm(1, ziffern.data(), 9);
    EXPECT_EQ(c32.ergebnis(), 0xCBF43926u);
    EXPECT_EQ(xmodem.ergebnis(), 0x31C3u);
    EXPECT_EQ(a001.ergebnis(), referenz::crc16(ziffern, 0xA001));
    EXPECT_EQ(s0.ergebnis(), 0xD0353B41u);
    EXPECT_EQ(s1.ergebnis(), 0x41D0353Bu);
}

TEST(Algorithmen, StandardKurzerLetzterAddend) {
    // A short last addend is swapped like a full one.
    const Bytes b = {0x12, 0x34, 0x56};
    struct {
        int n;
        bool swap;
        std::uint32_t voll, kurz;
    } faelle[] = {{2, false, 0x1234, 0x56}, {2, true, 0x3412, 0x5600}, {4, true, 0, 0x56341200}};
    for (const auto& f : faelle) {
        StandardSummierer s(f.n, f.swap);
        s.nimm(b.data(), b.size());
        EXPECT_EQ(s.summe(), f.voll);
        EXPECT_EQ(s.offen(), 3 % f.n);
        s.schliesseAb();
        EXPECT_EQ(s.summe(), f.voll + f.kurz) << f.n << f.swap;
    }
}

// Feeds `b` in random pieces from a random misalignment of a bigger buffer.
template <typename F>
void stueckweise(std::mt19937& zufall, const Bytes& b, F nimm) {
    std::size_t versatz = zufall() % 16;
    Bytes puffer(versatz + b.size() + 1);
    for (std::size_t i = 0; i < b.size(); ++i) puffer[versatz + i] = b[i];
    for (std::size_t pos = 0; pos < b.size();) {
        std::size_t rest = b.size() - pos;
        std::size_t stueck = (zufall() % 4 == 0) ? rest : 1 + zufall() % rest;
        nimm(puffer.data() + versatz + pos, stueck, pos);
        pos += stueck;
    }
}

TEST(Algorithmen, SchnellGleichBitweise) {
    std::mt19937 zufall(4711);
    for (int runde = 0; runde < 300; ++runde) {
        // Long runs pass the lane flushes; saturated bytes stress the carries.
        std::size_t laenge = (runde % 10 == 0) ? zufall() % 70000 : zufall() % 700;
        Bytes b(laenge);
        for (auto& x : b) x = static_cast<std::uint8_t>(runde % 7 == 0 ? 0xF0 | (zufall() & 0x0F) : zufall());
        std::uint32_t adr = zufall();
        SCOPED_TRACE("runde " + std::to_string(runde));

        Crc32Rechner c32;
        Crc16Rechner cx(0x1021), ca(0xA001), cy(0x8005);
        SiemensSummierer si;
        stueckweise(zufall, b, [&](const std::uint8_t* p, std::size_t n, std::size_t pos) {
            c32.nimm(p, n);
            cx.nimm(p, n);
            ca.nimm(p, n);
            cy.nimm(p, n);
            si.nimm(adr + static_cast<std::uint32_t>(pos), p, n);
        });
        EXPECT_EQ(c32.ergebnis(), referenz::crc32(b));
        EXPECT_EQ(cx.ergebnis(), referenz::crc16(b, 0x1021));
        EXPECT_EQ(ca.ergebnis(), referenz::crc16(b, 0xA001));
        EXPECT_EQ(cy.ergebnis(), referenz::crc16(b, 0x8005));
        EXPECT_EQ(si.ergebnis(), referenz::siemens(adr, b));

        for (int n = 1; n <= 4; ++n)
            for (bool swap : {false, true}) {
                StandardSummierer st(n, swap);
                stueckweise(zufall, b,
                            [&](const std::uint8_t* p, std::size_t k, std::size_t) { st.nimm(p, k); });
                EXPECT_EQ(st.summe(), referenz::standard(b, n, swap && n != 3)) << n << swap;
                EXPECT_EQ(st.offen(), static_cast<int>(laenge % static_cast<std::size_t>(n)));
            }
    }
}

TEST(Algorithmen, NullenWieNullBytes) {
    std::mt19937 zufall(17);
    for (std::uint64_t k : {0ull, 3ull, 511ull, 512ull, 4099ull, 1234567ull}) {
        Bytes vorn(1 + zufall() % 40);
        for (auto& x : vorn) x = static_cast<std::uint8_t>(zufall());
        Bytes alle = vorn;
        alle.resize(vorn.size() + k, 0);
        std::uint32_t adr = zufall();

        Crc32Rechner c32;
        c32.nimm(vorn.data(), vorn.size());
        c32.nimmNullen(k);
        EXPECT_EQ(c32.ergebnis(), referenz::crc32(alle));
        for (std::uint16_t poly : {0x1021, 0xA001}) {
            Crc16Rechner c16(poly);
            c16.nimm(vorn.data(), vorn.size());
            c16.nimmNullen(k);
            EXPECT_EQ(c16.ergebnis(), referenz::crc16(alle, poly));
        }
        SiemensSummierer si;
        si.nimm(adr, vorn.data(), vorn.size());
        si.nimmNullen(adr + static_cast<std::uint32_t>(vorn.size()), k);
        EXPECT_EQ(si.ergebnis(), referenz::siemens(adr, alle));
        for (int n = 1; n <= 4; ++n) {
            StandardSummierer st(n, true), ganz(n, true);
            st.nimm(vorn.data(), vorn.size());
            st.nimmNullen(k);
            ganz.nimm(alle.data(), alle.size());
            EXPECT_EQ(st.offen(), ganz.offen());
            st.schliesseAb();
            ganz.schliesseAb();
            EXPECT_EQ(st.summe(), ganz.summe()) << n;
        }
    }
    // A run over the whole address space finishes at once, in any split.
    Crc32Rechner ganz, geteilt;
    ganz.nimmNullen(0xFFFFFFFFull);
    geteilt.nimmNullen(0x80000000ull);
    geteilt.nimmNullen(0x7FFFFFFFull);
    EXPECT_EQ(ganz.ergebnis(), geteilt.ergebnis());
}

}  // namespace
