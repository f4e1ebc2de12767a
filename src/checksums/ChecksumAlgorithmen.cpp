// Fast forms of the checksum arithmetic; see ChecksumAlgorithmen.h.
#include "checksums/ChecksumAlgorithmen.h"

#include <bit>
#include <cstring>

namespace {

constexpr bool kleinEndig = std::endian::native == std::endian::little;

inline std::uint64_t lade64(const std::uint8_t* p) {
    std::uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

// ---------------------------------------------------------------------------
// Linear maps over GF(2) on a CRC register, for long runs of zero bytes: one
// zero byte is a linear map of the register, and k of them are that map to
// the power k, found by repeated squaring.

struct Gf2Abbildung {
    std::array<std::uint32_t, 32> spalte{};  // image of bit i
};

inline std::uint32_t wende(const Gf2Abbildung& m, std::uint32_t v) {
    std::uint32_t r = 0;
    for (int i = 0; v != 0; ++i, v >>= 1)
        if (v & 1u) r ^= m.spalte[static_cast<std::size_t>(i)];
    return r;
}

inline Gf2Abbildung quadrat(const Gf2Abbildung& m) {
    Gf2Abbildung q;
    for (std::size_t i = 0; i < 32; ++i) q.spalte[i] = wende(m, m.spalte[i]);
    return q;
}

inline std::uint32_t potenz(Gf2Abbildung m, std::uint64_t k, std::uint32_t v) {
    while (k != 0) {
        if (k & 1u) v = wende(m, v);
        k >>= 1;
        if (k != 0) m = quadrat(m);
    }
    return v;
}

// Below this many zero bytes the table loop is cheaper than the squaring.
constexpr std::uint64_t nullenSchwelle = 512;

// ---------------------------------------------------------------------------
// CRC-32 tables: tabelle[0] is the classic byte table, tabelle[k] the effect
// of a byte followed by k zero bytes. Sixteen of them take in 16 bytes per
// round.

using Crc32Tabellen = std::array<std::array<std::uint32_t, 256>, 16>;

constexpr Crc32Tabellen baueCrc32Tabellen() {
    Crc32Tabellen t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int k = 0; k < 8; ++k) c = (c & 1u) ? (c >> 1) ^ 0xEDB88320u : c >> 1;
        t[0][i] = c;
    }
    for (std::size_t k = 1; k < 16; ++k)
        for (std::size_t i = 0; i < 256; ++i) t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFFu];
    return t;
}

constexpr Crc32Tabellen crc32Tab = baueCrc32Tabellen();

inline std::uint32_t crc32Byte(std::uint32_t crc, std::uint8_t b) {
    return crc32Tab[0][(crc ^ b) & 0xFFu] ^ (crc >> 8);
}

Gf2Abbildung crc32NullByte() {
    Gf2Abbildung m;
    for (std::size_t i = 0; i < 32; ++i) m.spalte[i] = crc32Byte(1u << i, 0);
    return m;
}

}  // namespace

// ---------------------------------------------------------------------------
// CRC-16 tables, most significant bit first.

struct Crc16Rechner::Tabellen {
    std::array<std::array<std::uint16_t, 256>, 8> t{};
};

namespace {

constexpr Crc16Rechner::Tabellen baueCrc16Tabellen(std::uint16_t polynom) {
    Crc16Rechner::Tabellen tab{};
    auto& t = tab.t;
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i << 8;
        for (int k = 0; k < 8; ++k) c = (c & 0x8000u) ? ((c << 1) ^ polynom) & 0xFFFFu : (c << 1) & 0xFFFFu;
        t[0][i] = static_cast<std::uint16_t>(c);
    }
    for (std::size_t k = 1; k < 8; ++k)
        for (std::size_t i = 0; i < 256; ++i) {
            std::uint32_t v = t[k - 1][i];
            t[k][i] = static_cast<std::uint16_t>(((v << 8) ^ t[0][v >> 8]) & 0xFFFFu);
        }
    return tab;
}

constexpr Crc16Rechner::Tabellen crc16Tab1021 = baueCrc16Tabellen(0x1021);
constexpr Crc16Rechner::Tabellen crc16TabA001 = baueCrc16Tabellen(0xA001);

inline std::uint16_t crc16Byte(const Crc16Rechner::Tabellen& tab, std::uint16_t crc, std::uint8_t b) {
    return static_cast<std::uint16_t>((crc << 8) ^ tab.t[0][((crc >> 8) ^ b) & 0xFFu]);
}

}  // namespace

// ---------------------------------------------------------------------------
// StandardSummierer

StandardSummierer::StandardSummierer(int anzahlBytes, bool swap)
    : anzahlBytes_(anzahlBytes < 1 ? 1 : (anzahlBytes > 4 ? 4 : anzahlBytes)),
      swap_(swap && (anzahlBytes_ == 2 || anzahlBytes_ == 4)) {}

void StandardSummierer::addiereAddend(const std::uint8_t* bytes, int anzahl) {
    for (int k = 0; k < anzahl; ++k) positionsSumme_[static_cast<std::size_t>(k)] += bytes[k];
}

// Sums bytes by their offset modulo 24 (a multiple of every addend size) in
// 16-bit lanes of 64-bit words; the lanes are emptied before they can
// overflow. `anzahl` is a whole number of addends.
void StandardSummierer::nimmBlock(const std::uint8_t* daten, std::size_t anzahl) {
    constexpr std::uint64_t maske = 0x00FF00FF00FF00FFull;
    constexpr std::size_t blockBytes = 24;
    std::uint64_t bahn[blockBytes]{};

    auto leere = [&](const std::uint64_t(&acc)[6]) {
        for (std::size_t w = 0; w < 3; ++w)
            for (std::size_t q = 0; q < 4; ++q)
                for (std::size_t ungerade = 0; ungerade < 2; ++ungerade) {
                    std::uint64_t teil = (acc[2 * w + ungerade] >> (16 * q)) & 0xFFFFu;
                    std::size_t byteImWort = kleinEndig ? 2 * q + ungerade : 7 - 2 * q - ungerade;
                    bahn[8 * w + byteImWort] += teil;
                }
    };

    std::size_t bloecke = anzahl / blockBytes;
    const std::uint8_t* p = daten;
    while (bloecke != 0) {
        // 255 rounds of at most 255 per lane stay below 65536.
        std::size_t runde = bloecke < 255 ? bloecke : 255;
        bloecke -= runde;
        std::uint64_t acc[6]{};
        for (std::size_t r = 0; r < runde; ++r, p += blockBytes) {
            std::uint64_t w0 = lade64(p), w1 = lade64(p + 8), w2 = lade64(p + 16);
            acc[0] += w0 & maske;
            acc[1] += (w0 >> 8) & maske;
            acc[2] += w1 & maske;
            acc[3] += (w1 >> 8) & maske;
            acc[4] += w2 & maske;
            acc[5] += (w2 >> 8) & maske;
        }
        leere(acc);
    }
    std::size_t rest = anzahl % blockBytes;
    for (std::size_t j = 0; j < rest; ++j) bahn[j] += p[j];

    auto n = static_cast<std::size_t>(anzahlBytes_);
    for (std::size_t j = 0; j < blockBytes; ++j) positionsSumme_[j % n] += bahn[j];
}

void StandardSummierer::nimm(const std::uint8_t* daten, std::size_t anzahl) {
    while (offen_ != 0 && anzahl != 0) {
        teil_[offen_++] = *daten++;
        --anzahl;
        if (offen_ == anzahlBytes_) {
            addiereAddend(teil_, anzahlBytes_);
            offen_ = 0;
        }
    }
    auto n = static_cast<std::size_t>(anzahlBytes_);
    std::size_t ganze = anzahl / n * n;
    if (ganze != 0) nimmBlock(daten, ganze);
    for (std::size_t j = ganze; j < anzahl; ++j) teil_[offen_++] = daten[j];
}

void StandardSummierer::nimmNullen(std::uint64_t anzahl) {
    // Zeros add nothing; they only move the position inside the addend.
    while (offen_ != 0 && anzahl != 0) {
        teil_[offen_++] = 0;
        --anzahl;
        if (offen_ == anzahlBytes_) {
            addiereAddend(teil_, anzahlBytes_);
            offen_ = 0;
        }
    }
    auto rest = static_cast<int>(anzahl % static_cast<std::uint64_t>(anzahlBytes_));
    for (int k = 0; k < rest; ++k) teil_[offen_++] = 0;
}

void StandardSummierer::schliesseAb() {
    if (offen_ == 0) return;
    std::uint32_t wert = 0;
    for (int k = 0; k < offen_; ++k) wert = (wert << 8) + teil_[k];
    if (swap_ && anzahlBytes_ == 2)
        wert = (wert & 0xFFFF0000u) | ((wert & 0xFFu) << 8) | ((wert >> 8) & 0xFFu);
    else if (swap_ && anzahlBytes_ == 4)
        wert = (wert >> 24) | ((wert >> 8) & 0xFF00u) | ((wert << 8) & 0xFF0000u) | (wert << 24);
    einzelSumme_ += wert;
    offen_ = 0;
}

std::uint32_t StandardSummierer::summe() const {
    std::uint32_t s = einzelSumme_;
    for (int k = 0; k < anzahlBytes_; ++k) {
        int stelle = swap_ ? k : anzahlBytes_ - 1 - k;
        std::uint32_t gewicht = 1u << (8 * stelle);
        s += static_cast<std::uint32_t>(positionsSumme_[static_cast<std::size_t>(k)]) * gewicht;
    }
    return s;
}

// ---------------------------------------------------------------------------
// SiemensSummierer

namespace {

// One byte into a lane: add with carry count, then rotate left by one.
inline void siemensSchritt(std::uint32_t& summe, std::uint32_t& uebertrag, std::uint8_t b) {
    std::uint32_t x = summe + b;
    uebertrag += x >> 8;
    x &= 0xFFu;
    summe = ((x << 1) | (x >> 7)) & 0xFFu;
}

}  // namespace

void SiemensSummierer::nimm(std::uint32_t adr, const std::uint8_t* daten, std::size_t anzahl) {
    std::uint32_t s[4], c[4];
    for (std::size_t i = 0; i < 4; ++i) {
        s[i] = summe_[i];
        c[i] = uebertrag_[i];
    }
    std::size_t bahn = adr & 3u;
    while (anzahl != 0 && bahn != 0) {
        siemensSchritt(s[bahn], c[bahn], *daten++);
        --anzahl;
        bahn = (bahn + 1) & 3u;
    }
    // Four independent chains side by side.
    for (; anzahl >= 4; anzahl -= 4, daten += 4) {
        siemensSchritt(s[0], c[0], daten[0]);
        siemensSchritt(s[1], c[1], daten[1]);
        siemensSchritt(s[2], c[2], daten[2]);
        siemensSchritt(s[3], c[3], daten[3]);
    }
    for (std::size_t i = 0; i < anzahl; ++i) siemensSchritt(s[i], c[i], daten[i]);
    for (std::size_t i = 0; i < 4; ++i) {
        summe_[i] = static_cast<std::uint8_t>(s[i]);
        uebertrag_[i] = c[i];
    }
}

void SiemensSummierer::nimmNullen(std::uint32_t adr, std::uint64_t anzahl) {
    // A zero byte never carries; it only rotates its lane once.
    for (std::uint64_t j = 0; j < 4 && j < anzahl; ++j) {
        std::size_t bahn = (adr + j) & 3u;
        std::uint64_t treffer = (anzahl - j + 3) / 4;
        unsigned dreh = static_cast<unsigned>(treffer % 8);
        summe_[bahn] = std::rotl(summe_[bahn], static_cast<int>(dreh));
    }
}

std::uint32_t SiemensSummierer::ergebnis() const {
    std::uint32_t r = 0;
    for (std::size_t i = 0; i < 4; ++i) r = (r << 8) | ((summe_[i] + uebertrag_[i]) & 0xFFu);
    return r;
}

// ---------------------------------------------------------------------------
// Crc32Rechner

void Crc32Rechner::nimm(const std::uint8_t* daten, std::size_t anzahl) {
    std::uint32_t crc = register_;
    if constexpr (kleinEndig) {
        const auto& t = crc32Tab;
        for (; anzahl >= 16; anzahl -= 16, daten += 16) {
            std::uint64_t w0 = lade64(daten) ^ crc;
            std::uint64_t w1 = lade64(daten + 8);
            crc = t[15][w0 & 0xFFu] ^ t[14][(w0 >> 8) & 0xFFu] ^ t[13][(w0 >> 16) & 0xFFu] ^
                  t[12][(w0 >> 24) & 0xFFu] ^ t[11][(w0 >> 32) & 0xFFu] ^ t[10][(w0 >> 40) & 0xFFu] ^
                  t[9][(w0 >> 48) & 0xFFu] ^ t[8][w0 >> 56] ^ t[7][w1 & 0xFFu] ^ t[6][(w1 >> 8) & 0xFFu] ^
                  t[5][(w1 >> 16) & 0xFFu] ^ t[4][(w1 >> 24) & 0xFFu] ^ t[3][(w1 >> 32) & 0xFFu] ^
                  t[2][(w1 >> 40) & 0xFFu] ^ t[1][(w1 >> 48) & 0xFFu] ^ t[0][w1 >> 56];
        }
    }
    for (std::size_t i = 0; i < anzahl; ++i) crc = crc32Byte(crc, daten[i]);
    register_ = crc;
}

void Crc32Rechner::nimmNullen(std::uint64_t anzahl) {
    if (anzahl < nullenSchwelle) {
        for (std::uint64_t i = 0; i < anzahl; ++i) register_ = crc32Byte(register_, 0);
        return;
    }
    register_ = potenz(crc32NullByte(), anzahl, register_);
}

// ---------------------------------------------------------------------------
// Crc16Rechner

Crc16Rechner::Crc16Rechner(std::uint16_t polynom) {
    if (polynom == 0x1021)
        tabellen_ = &crc16Tab1021;
    else if (polynom == 0xA001)
        tabellen_ = &crc16TabA001;
    else {
        eigene_ = std::make_unique<Tabellen>(baueCrc16Tabellen(polynom));
        tabellen_ = eigene_.get();
    }
}

Crc16Rechner::~Crc16Rechner() = default;

void Crc16Rechner::nimm(const std::uint8_t* daten, std::size_t anzahl) {
    const auto& t = tabellen_->t;
    std::uint32_t crc = register_;
    for (; anzahl >= 8; anzahl -= 8, daten += 8) {
        crc = t[7][daten[0] ^ (crc >> 8)] ^ t[6][daten[1] ^ (crc & 0xFFu)] ^ t[5][daten[2]] ^ t[4][daten[3]] ^
              t[3][daten[4]] ^ t[2][daten[5]] ^ t[1][daten[6]] ^ t[0][daten[7]];
    }
    auto r = static_cast<std::uint16_t>(crc);
    for (std::size_t i = 0; i < anzahl; ++i) r = crc16Byte(*tabellen_, r, daten[i]);
    register_ = r;
}

void Crc16Rechner::nimmNullen(std::uint64_t anzahl) {
    if (anzahl < nullenSchwelle) {
        for (std::uint64_t i = 0; i < anzahl; ++i) register_ = crc16Byte(*tabellen_, register_, 0);
        return;
    }
    Gf2Abbildung m;
    for (std::size_t i = 0; i < 16; ++i)
        m.spalte[i] = crc16Byte(*tabellen_, static_cast<std::uint16_t>(1u << i), 0);
    register_ = static_cast<std::uint16_t>(potenz(m, anzahl, register_));
}
