// Plain forms of the checksum arithmetic, one bit or byte at a time, to cross-check the fast code.
#pragma once

#include <cstdint>
#include <vector>

namespace referenz {

using Bytes = std::vector<std::uint8_t>;

// Sum of the complete addends of `b`; a trailing incomplete addend is left out.
inline std::uint32_t standard(const Bytes& b, int anzahlBytes, bool swap) {
    std::uint32_t summe = 0;
    for (std::size_t a = 0; a + static_cast<std::size_t>(anzahlBytes) <= b.size();
         a += static_cast<std::size_t>(anzahlBytes)) {
        std::uint32_t wert = 0;
        for (int i = 0; i < anzahlBytes; ++i) {
            if (i > 0) wert <<= 8;
            wert += b[a + static_cast<std::size_t>(i)];
        }
        if (swap && anzahlBytes == 2)
            wert = (wert & 0xFFFF0000u) | ((wert & 0xFF) << 8) | ((wert >> 8) & 0xFF);
        if (swap && anzahlBytes == 4)
            wert = ((wert & 0xFF) << 24) | ((wert & 0xFF00) << 8) | ((wert >> 8) & 0xFF00) | (wert >> 24);
        summe += wert;
    }
    return summe;
}

inline std::uint32_t siemens(std::uint32_t adr, const Bytes& b) {
    unsigned summe[4] = {0, 0, 0, 0};
    unsigned uebertrag[4] = {0, 0, 0, 0};
    for (std::size_t k = 0; k < b.size(); ++k) {
        unsigned i = (adr + static_cast<std::uint32_t>(k)) & 3;
        unsigned x = b[k] + summe[i];
        if (x > 255) {
            x -= 256;
            ++uebertrag[i];
        }
        x *= 2;
        if (x > 255) x -= 255;
        summe[i] = x;
    }
    std::uint32_t r = 0;
    for (int i = 0; i < 4; ++i) {
        unsigned s = summe[i] + uebertrag[i];
        r = (r << 8) | (s & 0xFF);
    }
    return r;
}

inline std::uint32_t crc32(const Bytes& b) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (std::uint8_t byte : b) {
        crc ^= byte;
        for (int k = 0; k < 8; ++k) crc = (crc & 1) ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
    }
    return crc ^ 0xFFFFFFFFu;
}

inline std::uint16_t crc16(const Bytes& b, std::uint16_t polynom) {
    std::uint32_t crc = 0;
    for (std::uint8_t byte : b) {
        std::uint32_t x = static_cast<std::uint32_t>(byte) << 8;
        for (int k = 0; k < 8; ++k) {
            if ((crc & 0x8000) != (x & 0x8000))
                crc = ((crc << 1) & 0xFFFF) ^ polynom;
            else
                crc = (crc << 1) & 0xFFFF;
            x <<= 1;
        }
    }
    return static_cast<std::uint16_t>(crc);
}

}  // namespace referenz
