// German collation of names as they stand in procedure files (DOS code page
// bytes). Two rank tables: the primary one folds case and puts each umlaut
// right behind its base letter; the secondary one splits upper from lower
// case, upper first.
#include "foundation/Kollation.h"

#include <array>
#include <cstdint>

namespace {

using RangTabelle = std::array<std::uint8_t, 256>;

// Letters in alphabet order with their primary rank; umlauts and sharp s
// get their own slots between the letters.
struct Buchstabe {
    unsigned char gross;
    unsigned char klein;
    std::uint8_t rang;
};

constexpr Buchstabe buchstaben[] = {
    {'A', 'a', 26}, {0x8E, 0x84, 27}, {'B', 'b', 30}, {'C', 'c', 32}, {'D', 'd', 34},   {'E', 'e', 36},
    {'F', 'f', 38}, {'G', 'g', 40},   {'H', 'h', 42}, {'I', 'i', 44}, {'J', 'j', 46},   {'K', 'k', 48},
    {'L', 'l', 50}, {'M', 'm', 52},   {'N', 'n', 54}, {'O', 'o', 56}, {0x99, 0x94, 57}, {'P', 'p', 60},
    {'Q', 'q', 62}, {'R', 'r', 64},   {'S', 's', 66}, {'T', 't', 69}, {'U', 'u', 71},   {0x9A, 0x81, 72},
    {'V', 'v', 75}, {'W', 'w', 77},   {'X', 'x', 79}, {'Y', 'y', 81}, {'Z', 'z', 83},
};

// Secondary rank of a lower-case letter. Most sit one above their upper
// case; a, o, u and their umlauts interleave (A Ä a ä), and t sits one
// above T because sharp s took the rank below it.
constexpr std::uint8_t kleinRang(const Buchstabe& b) {
    switch (b.klein) {
    case 'a':
    case 0x84:
    case 'o':
    case 0x94:
    case 'u':
    case 0x81: return static_cast<std::uint8_t>(b.rang + 2);
    default: return static_cast<std::uint8_t>(b.rang + 1);
    }
}

constexpr void setzeBereich(RangTabelle& t, int von, int bis, int ersterRang) {
    for (int b = von; b <= bis; ++b) t[b] = static_cast<std::uint8_t>(ersterRang + (b - von));
}

// Everything that is not a letter ranks alike in both tables.
constexpr RangTabelle sonstige() {
    RangTabelle t{};
    setzeBereich(t, 0x20, 0x39, 0);
    setzeBereich(t, 0x00, 0x0F, 85);
    t[0x10] = 102;  // 0x10 and 0x11 tie, rank 101 stays unused: intended
    t[0x11] = 102;
    setzeBereich(t, 0x12, 0x1F, 103);
    setzeBereich(t, 0x3A, 0x40, 117);
    setzeBereich(t, 0x5B, 0x60, 124);
    setzeBereich(t, 0x7B, 0x80, 130);
    setzeBereich(t, 0x82, 0x83, 136);
    setzeBereich(t, 0x85, 0x8D, 138);
    setzeBereich(t, 0x8F, 0x93, 147);
    setzeBereich(t, 0x95, 0x98, 152);
    setzeBereich(t, 0x9B, 0xCF, 0x9B + 1);
    t[0xD0] = 109;  // ties with byte 0x18: intended
    setzeBereich(t, 0xD1, 0xE0, 0xD1 + 1);
    setzeBereich(t, 0xE2, 0xFF, 0xE2);
    t[0xE1] = 68;  // sharp s, between s and t
    return t;
}

constexpr RangTabelle primaerTabelle() {
    RangTabelle t = sonstige();
    for (const Buchstabe& b : buchstaben) {
        t[b.gross] = b.rang;
        t[b.klein] = b.rang;
    }
    return t;
}

constexpr RangTabelle sekundaerTabelle() {
    RangTabelle t = sonstige();
    for (const Buchstabe& b : buchstaben) {
        t[b.gross] = b.rang;
        t[b.klein] = kleinRang(b);
    }
    return t;
}

constexpr RangTabelle primaer = primaerTabelle();
constexpr RangTabelle sekundaer = sekundaerTabelle();

static_assert(primaer['a'] == 26 && primaer[0x84] == 27 && primaer['b'] == 30);
static_assert(primaer['n'] == 54 && primaer['o'] == 56 && primaer[0x94] == 57);
static_assert(primaer['s'] == 66 && primaer[0xE1] == 68 && primaer['t'] == 69);
static_assert(primaer[0x81] == 72 && primaer['v'] == 75 && primaer['z'] == 83);
static_assert(sekundaer['a'] == 28 && sekundaer[0x84] == 29 && sekundaer['t'] == 70);
static_assert(sekundaer['u'] == 73 && sekundaer[0x81] == 74 && sekundaer['z'] == 84);
static_assert(primaer[0xCF] == 0xD0 && primaer[0xE0] == 0xE1 && primaer[0xFF] == 0xFF);

// Ranks over the common length decide first, then length; lengths are
// taken modulo 65536 as the original 16-bit counters did: intended.
int vergleicheMit(const RangTabelle& t, const String& a, const String& b, int& laengenErgebnis) {
    const auto la = static_cast<std::uint16_t>(a.laenge());
    const auto lb = static_cast<std::uint16_t>(b.laenge());
    const char* pa = a.c_str();
    const char* pb = b.c_str();
    const int n = la < lb ? la : lb;
    for (int i = 0; i < n; ++i) {
        const std::uint8_t ra = t[static_cast<unsigned char>(pa[i])];
        const std::uint8_t rb = t[static_cast<unsigned char>(pb[i])];
        if (ra != rb) return ra > rb ? 1 : -1;
    }
    laengenErgebnis = la == lb ? 0 : (la > lb ? 1 : -1);
    return 0;
}

}  // namespace

namespace kollation {

int vergleiche(const String& a, const String& b) {
    int laenge = 0;
    if (int r = vergleicheMit(primaer, a, b, laenge)) return r;
    if (laenge != 0) return laenge;
    int dummy = 0;
    return vergleicheMit(sekundaer, a, b, dummy);
}

int vergleichePrimaer(const String& a, const String& b) {
    int laenge = 0;
    if (int r = vergleicheMit(primaer, a, b, laenge)) return r;
    return laenge;
}

}  // namespace kollation
