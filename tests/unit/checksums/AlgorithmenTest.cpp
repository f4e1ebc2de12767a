// The checksum arithmetic on plain byte spans: check values, and identity of
// the fast forms with the bitwise references over random data fed in random
// pieces at random alignments.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "ReferenzAlgorithmen.h"
#include "checksums/ChecksumAlgorithmen.h"

namespace {

using referenz::Bytes;

Bytes text(const char* s)
{
    return Bytes(s, s + std::strlen(s));
}

const Bytes acht = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0};

std::uint32_t standard(const Bytes& b, int n, bool swap)
{
    StandardSummierer s(n, swap);
    s.nimm(b.data(), b.size());
    return s.summe();
}

TEST(Algorithmen, CheckWerte)
{
    Bytes ziffern = text("123456789");
    Crc32Rechner c32;
    c32.nimm(ziffern.data(), ziffern.size());
    EXPECT_EQ(c32.ergebnis(), 0xCBF43926u);

    Crc16Rechner xmodem(0x1021);
    xmodem.nimm(ziffern.data(), ziffern.size());
    EXPECT_EQ(xmodem.ergebnis(), 0x31C3u);

    // The unreflected 0xA001 form has no published value; the bitwise
    // reference is the authority.
    Crc16Rechner a001(0xA001);
    a001.nimm(ziffern.data(), ziffern.size());
    EXPECT_EQ(a001.ergebnis(), referenz::crc16(ziffern, 0xA001));
    EXPECT_EQ(a001.ergebnis(), 0xA47Bu);

    SiemensSummierer s0, s1;
    s0.nimm(0, ziffern.data(), ziffern.size());
    s1.nimm(1, ziffern.data(), ziffern.size());
    EXPECT_EQ(s0.ergebnis(), 0xD0353B41u);
    EXPECT_EQ(s1.ergebnis(), 0x41D0353Bu);

    EXPECT_EQ(standard(acht, 1, false) & 0xFFFF, 0x0438u);
    EXPECT_EQ(standard(acht, 2, false) & 0xFFFF, 0xE258u);
    EXPECT_EQ(standard(acht, 2, true) & 0xFFFF, 0x59E0u);
    EXPECT_EQ(standard(acht, 4, false), 0xACF13568u);
    EXPECT_EQ(standard(acht, 4, true), 0x6934F0ACu);
}

TEST(Algorithmen, LeereEingabe)
{
    Crc32Rechner c32;
    EXPECT_EQ(c32.ergebnis(), 0u);
    Crc16Rechner c16(0xA001);
    EXPECT_EQ(c16.ergebnis(), 0u);
    SiemensSummierer s;
    EXPECT_EQ(s.ergebnis(), 0u);
    StandardSummierer st(4, true);
    EXPECT_EQ(st.summe(), 0u);
    EXPECT_EQ(st.offen(), 0);
}

TEST(Algorithmen, SiemensUebertragUndRotation)
{
    // Each lane sees 0xFF twice: 0xFF rotates to itself, the second add
    // carries once and leaves 0xFE, rotated 0xFD, plus the carry 0xFE.
    Bytes ff(8, 0xFF);
    SiemensSummierer s;
    s.nimm(0, ff.data(), ff.size());
    EXPECT_EQ(s.ergebnis(), 0xFEFEFEFEu);

    // A single 0x80 in lane 2 only: rotated to 0x01; the others stay 0.
    Bytes b = {0x80};
    SiemensSummierer t;
    t.nimm(6, b.data(), b.size());
    EXPECT_EQ(t.ergebnis(), 0x00000100u);

    // 256 carries in one lane vanish modulo 256; 257 leave one.
    Bytes viele(4 * 600, 0xFF);
    SiemensSummierer u;
    u.nimm(0, viele.data(), viele.size());
    EXPECT_EQ(u.ergebnis(), referenz::siemens(0, viele));
}

TEST(Algorithmen, StandardKurzerLetzterAddend)
{
    // Three bytes into 2-byte addends: one complete addend, one byte waits.
    Bytes b = {0x12, 0x34, 0x56};
    StandardSummierer s(2, false);
    s.nimm(b.data(), b.size());
    EXPECT_EQ(s.offen(), 1);
    EXPECT_EQ(s.summe(), 0x1234u);
    s.schliesseAb();
    EXPECT_EQ(s.offen(), 0);
    EXPECT_EQ(s.summe(), 0x1234u + 0x56u);

    StandardSummierer w(2, true);
    w.nimm(b.data(), b.size());
    w.schliesseAb();
    EXPECT_EQ(w.summe(), 0x3412u + 0x5600u);

    StandardSummierer v(4, true);
    v.nimm(b.data(), b.size());
    v.schliesseAb();
    EXPECT_EQ(v.summe(), 0x56341200u);

    // Three-byte addends never swap.
    StandardSummierer d(3, true);
    d.nimm(b.data(), b.size());
    EXPECT_EQ(d.summe(), 0x123456u);
}

TEST(Algorithmen, StandardUeberlaufModulo32Bit)
{
    // 0x01010101 * 0xFF repeated over a large block wraps like 32-bit adds.
    Bytes b(4 * 70000, 0xFF);
    EXPECT_EQ(standard(b, 4, false), static_cast<std::uint32_t>(0xFFFFFFFFull * 70000u));
    EXPECT_EQ(standard(b, 1, false), 0xFFu * 4u * 70000u);
}

// Feeds `b` in random pieces, starting at a random misalignment of a bigger
// buffer, to `nimm(zeiger, anzahl, abstand)`.
template <typename F>
void stueckweise(std::mt19937& zufall, const Bytes& b, F nimm)
{
    std::size_t versatz = zufall() % 16;
    Bytes puffer(versatz + b.size() + 1);
    std::copy(b.begin(), b.end(), puffer.begin() + static_cast<std::ptrdiff_t>(versatz));
    std::size_t pos = 0;
    while (pos < b.size()) {
        std::size_t rest = b.size() - pos;
        std::size_t stueck = (zufall() % 4 == 0) ? rest : 1 + zufall() % rest;
        nimm(puffer.data() + versatz + pos, stueck, pos);
        pos += stueck;
    }
}

TEST(Algorithmen, SchnellGleichBitweiseZufall)
{
    std::mt19937 zufall(4711);
    for (int runde = 0; runde < 300; ++runde) {
        std::size_t laenge = (runde % 10 == 0) ? zufall() % 70000 : zufall() % 700;
        Bytes b(laenge);
        // Mostly random, sometimes saturated bytes to stress carries.
        bool voll = runde % 7 == 0;
        for (auto& x : b)
            x = voll ? static_cast<std::uint8_t>(0xF0 | (zufall() & 0x0F)) : static_cast<std::uint8_t>(zufall());
        std::uint32_t adr = zufall();
        SCOPED_TRACE("runde " + std::to_string(runde) + " laenge " + std::to_string(laenge));

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
                stueckweise(zufall, b, [&](const std::uint8_t* p, std::size_t k, std::size_t) { st.nimm(p, k); });
                EXPECT_EQ(st.summe(), referenz::standard(b, n, swap && n != 3)) << "n " << n << " swap " << swap;
                EXPECT_EQ(st.offen(), static_cast<int>(laenge % static_cast<std::size_t>(n)));
            }
    }
}

TEST(Algorithmen, NullenWieNullBytes)
{
    std::mt19937 zufall(17);
    for (std::uint64_t k : {0ull, 1ull, 3ull, 511ull, 512ull, 513ull, 4099ull, 100000ull, 1234567ull}) {
        Bytes vorn(1 + zufall() % 40);
        for (auto& x : vorn)
            x = static_cast<std::uint8_t>(zufall());
        Bytes mitNullen = vorn;
        mitNullen.resize(vorn.size() + k, 0);
        std::uint32_t adr = zufall();
        SCOPED_TRACE("k " + std::to_string(k));

        Crc32Rechner c32;
        c32.nimm(vorn.data(), vorn.size());
        c32.nimmNullen(k);
        EXPECT_EQ(c32.ergebnis(), referenz::crc32(mitNullen));

        for (std::uint16_t poly : {0x1021, 0xA001}) {
            Crc16Rechner c16(poly);
            c16.nimm(vorn.data(), vorn.size());
            c16.nimmNullen(k);
            EXPECT_EQ(c16.ergebnis(), referenz::crc16(mitNullen, poly));
        }

        for (int n = 1; n <= 4; ++n) {
            StandardSummierer st(n, true);
            st.nimm(vorn.data(), vorn.size());
            st.nimmNullen(k);
            EXPECT_EQ(st.offen(), static_cast<int>(mitNullen.size() % static_cast<std::size_t>(n)));
            st.schliesseAb();
            StandardSummierer ganz(n, true);
            ganz.nimm(mitNullen.data(), mitNullen.size());
            ganz.schliesseAb();
            EXPECT_EQ(st.summe(), ganz.summe()) << "n " << n;
        }

        SiemensSummierer si;
        si.nimm(adr, vorn.data(), vorn.size());
        si.nimmNullen(adr + static_cast<std::uint32_t>(vorn.size()), k);
        EXPECT_EQ(si.ergebnis(), referenz::siemens(adr, mitNullen));
    }
    // Runs far beyond what a test can spell out still finish at once.
    Crc32Rechner gross;
    gross.nimmNullen(0xFFFFFFFFull);
    Crc32Rechner zweiteil;
    zweiteil.nimmNullen(0x80000000ull);
    zweiteil.nimmNullen(0x7FFFFFFFull);
    EXPECT_EQ(gross.ergebnis(), zweiteil.ergebnis());
}

TEST(Algorithmen, VorzeichenErweiterung)
{
    EXPECT_EQ(vorzeichenErweitert(0x7FFF), 0x00007FFFu);
    EXPECT_EQ(vorzeichenErweitert(0x8000), 0xFFFF8000u);
    EXPECT_EQ(vorzeichenErweitert(0xA47B), 0xFFFFA47Bu);
}

} // namespace
