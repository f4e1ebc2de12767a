// Hex digits from a table, and a buffered writer for long text output.
//
// Displays of whole images write millions of short fields. Each one through
// ostream insertion costs a sentry, a locale lookup and a virtual call; here
// fields are formatted into a buffer and handed to the stream in large
// pieces through ostream::write, so that whatever buffer the stream has
// (a file, the console, a filter) sees the same bytes.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace hex {

inline constexpr char gross[] = "0123456789ABCDEF";
inline constexpr char klein[] = "0123456789abcdef";

// The two digits of every byte value, upper and lower case.
using PaarTabelle = std::array<std::array<char, 2>, 256>;
inline constexpr PaarTabelle machePaare(const char* z) {
    PaarTabelle t{};
    for (int i = 0; i < 256; ++i) t[static_cast<std::size_t>(i)] = {z[i >> 4], z[i & 15]};
    return t;
}
inline constexpr PaarTabelle paareGross = machePaare(gross);
inline constexpr PaarTabelle paareKlein = machePaare(klein);

// Writes `wert` in hex with at least `breite` digits, filled with '0', to
// `p` and gives the position behind the last digit. At most 16 digits.
inline char* zahl(char* p, std::uint64_t wert, int breite, bool grossBuchstaben = true) {
    const char* z = grossBuchstaben ? gross : klein;
    int n = 1;
    for (std::uint64_t v = wert >> 4; v; v >>= 4) ++n;
    if (breite > 16) breite = 16;
    if (n < breite) n = breite;
    for (int i = n - 1; i >= 0; --i, wert >>= 4) p[i] = z[wert & 15];
    return p + n;
}

// `wert` in hex as text, at least `breite` digits filled with '0'.
inline std::string text(std::uint64_t wert, int breite = 1, bool grossBuchstaben = true) {
    char p[16];
    return std::string(p, zahl(p, wert, breite, grossBuchstaben));
}

}  // namespace hex

// Collects text and hands it to an ostream in pieces of 64 KiB. The hex
// letters follow the stream's uppercase flag at construction, as insertion
// would. Flushes when destroyed; write nothing to the stream directly while
// a HexAusgabe on it holds text.
class HexAusgabe {
public:
    explicit HexAusgabe(std::ostream& os) : HexAusgabe(os, (os.flags() & std::ios::uppercase) != 0) {}
    HexAusgabe(std::ostream& os, bool grossBuchstaben)
        : os_(os), gross_(grossBuchstaben), paare_(gross_ ? hex::paareGross : hex::paareKlein) {}
    ~HexAusgabe() { leere(); }
    HexAusgabe(const HexAusgabe&) = delete;
    HexAusgabe& operator=(const HexAusgabe&) = delete;

    // Room for `n` more characters (n at most the buffer size).
    char* platz(std::size_t n) {
        if (n_ + n > sizeof puffer_) leere();
        return puffer_ + n_;
    }
    void fertig(char* ende) { n_ = static_cast<std::size_t>(ende - puffer_); }

    void zeichen(char c) { *platz(1) = c, ++n_; }
    void text(std::string_view t) {
        while (!t.empty()) {
            std::size_t k = t.size() < sizeof puffer_ ? t.size() : sizeof puffer_;
            char* p = platz(k);
            t.copy(p, k);
            n_ += k;
            t.remove_prefix(k);
        }
    }
    // Two hex digits.
    void byte(std::uint8_t b) {
        char* p = platz(2);
        p[0] = paare_[b][0];
        p[1] = paare_[b][1];
        n_ += 2;
    }
    // Two hex digits for each of n bytes.
    void bytes(const std::uint8_t* b, std::size_t n) {
        while (n) {
            std::size_t k = n < sizeof puffer_ / 2 ? n : sizeof puffer_ / 2;
            char* p = platz(2 * k);
            for (std::size_t i = 0; i < k; ++i) {
                p[2 * i] = paare_[b[i]][0];
                p[2 * i + 1] = paare_[b[i]][1];
            }
            n_ += 2 * k;
            b += k;
            n -= k;
        }
    }
    // Hex, at least `breite` digits filled with '0'.
    void zahl(std::uint64_t v, int breite) { fertig(hex::zahl(platz(16), v, breite, gross_)); }
    void dezimal(std::uint64_t v) {
        char t[20];
        int k = 0;
        do t[k++] = static_cast<char>('0' + v % 10);
        while (v /= 10);
        char* p = platz(20);
        while (k) *p++ = t[--k];
        fertig(p);
    }
    void leere() {
        if (n_) os_.write(puffer_, static_cast<std::streamsize>(n_));
        n_ = 0;
    }

private:
    std::ostream& os_;
    bool gross_;
    const hex::PaarTabelle& paare_;
    char puffer_[65536];
    std::size_t n_ = 0;
};
