// Small text helpers shared by the line codecs and the file classes: digit
// tables for decoding, and a line buffer that writes upper-case hex to a
// stream in one piece.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>

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
inline std::string klein(std::uint64_t v) {
    char p[24];
    std::snprintf(p, sizeof p, "%llx", static_cast<unsigned long long>(v));
    return p;
}

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
        puffer_[n_++] = gross[b >> 4];
        puffer_[n_++] = gross[b & 15];
    }
    // Upper-case hex, at least `breite` digits filled with "0".
    void zahl(std::uint64_t v, int breite) {
        char p[20];
        int k = 0;
        do {
            p[k++] = gross[v & 15];
            v >>= 4;
        } while (v);
        while (k < breite && k < 16) p[k++] = '0';
        while (k) zeichen(p[--k]);
    }
    void leere() {
        if (n_) os_.write(puffer_, static_cast<std::streamsize>(n_));
        n_ = 0;
    }

private:
    static constexpr const char* gross = "0123456789ABCDEF";
    std::ostream& os_;
    char puffer_[4096];
    std::size_t n_ = 0;
};

}  // namespace hextext
