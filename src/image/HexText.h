// Small text helpers shared by the line codecs and the file classes: digit
// tables for decoding, and a line buffer that writes upper-case hex to a
// stream in one piece.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "foundation/Hex.h"

namespace hextext {

// Value of a hex digit, -1 for any other byte.
inline constexpr std::array<std::int8_t, 256> ziffernWert = [] {
    std::array<std::int8_t, 256> t{};
    for (auto& v : t) v = -1;
    for (int i = 0; i < 10; ++i) t[static_cast<std::size_t>('0' + i)] = static_cast<std::int8_t>(i);
    for (int i = 0; i < 6; ++i) {
        t[static_cast<std::size_t>('a' + i)] = static_cast<std::int8_t>(10 + i);
        t[static_cast<std::size_t>('A' + i)] = static_cast<std::int8_t>(10 + i);
    }
    return t;
}();

inline int wert(char c) { return ziffernWert[static_cast<unsigned char>(c)]; }

// The value of two hex digits, indexed by the first character plus 256
// times the second; 0x100 or more where either is no digit. One lookup per
// byte instead of two halves makes decoding a line about twice as fast.
inline const std::uint16_t* paarWerte() {
    static const std::array<std::uint16_t, 65536> tabelle = [] {
        std::array<std::uint16_t, 65536> t{};
        for (std::size_t i = 0; i < t.size(); ++i) {
            int h = ziffernWert[i & 0xFF], l = ziffernWert[i >> 8];
            t[i] = static_cast<std::uint16_t>(h < 0 || l < 0 ? 0x100 : h * 16 + l);
        }
        return t;
    }();
    return tabelle.data();
}
inline std::uint16_t paarWert(const char* p) {
    return paarWerte()[static_cast<unsigned char>(p[0]) |
                       static_cast<unsigned>(static_cast<unsigned char>(p[1])) << 8];
}
inline bool istLeer(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// The hex digits of `text` from index 1 up to (not including) `bis`: the
// digits a line decoder has collected when it stops there.
inline std::string ziffern(std::string_view text, std::size_t bis) {
    std::string s;
    for (std::size_t i = 1; i < bis && i < text.size(); ++i)
        if (wert(text[i]) >= 0) s += text[i];
    return s;
}

// Lower-case hex without leading zeros, as the line messages show numbers.
inline std::string klein(std::uint64_t v) { return hex::text(v, 1, false); }

// Collects a line and hands it to the stream in pieces of up to 4 KiB.
class SchreibPuffer {
public:
    explicit SchreibPuffer(std::ostream& os) : os_(os) {}
    ~SchreibPuffer() { leere(); }
    SchreibPuffer(const SchreibPuffer&) = delete;
    SchreibPuffer& operator=(const SchreibPuffer&) = delete;

    void zeichen(char c) {
        if (n_ == sizeof puffer_) leere();
        puffer_[n_++] = c;
    }
    void text(const char* t) {
        while (*t) zeichen(*t++);
    }
    // Two upper-case digits.
    void byte(std::uint8_t b) {
        if (n_ + 2 > sizeof puffer_) leere();
        puffer_[n_++] = hex::paareGross[b][0];
        puffer_[n_++] = hex::paareGross[b][1];
    }
    // Upper-case hex, at least `breite` digits filled with "0".
    void zahl(std::uint64_t v, int breite) {
        if (n_ + 16 > sizeof puffer_) leere();
        n_ = static_cast<std::size_t>(hex::zahl(puffer_ + n_, v, breite) - puffer_);
    }
    void leere() {
        if (n_) os_.write(puffer_, static_cast<std::streamsize>(n_));
        n_ = 0;
    }

private:
    std::ostream& os_;
    char puffer_[4096];
    std::size_t n_ = 0;
};

}  // namespace hextext
