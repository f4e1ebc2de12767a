// Helpers of the image file targets: read parameters chosen from the input,
// the promises every read keeps, and a write-and-read-back comparison.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzUmgebung.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"

namespace kivfuzz {

// The optional addresses of `lies` and whether the image has a region
// before the read. They follow from the input's length, so the fuzzer
// reaches every combination without a separate control byte that would
// spoil the file text.
struct LeseParameter {
    adrInteger start = 0, ende = 0, extern_ = 0;
    bool mitStart = false, mitEnde = false, mitExtern = false;
    bool mitBereich = false;

    explicit LeseParameter(std::size_t groesse) {
        static const adrInteger starts[] = {0, 0x100, 0x8000, 0xFFFFFF00};
        static const adrInteger enden[] = {0xFF, 0x7FFF, 0xFFFF, 0xFFFFFFFF};
        static const adrInteger externe[] = {0, 0x10, 0x8000, 0xFFFF0000};
        const std::size_t wahl = groesse % 8, wert = (groesse / 8) % 4;
        mitStart = wahl & 1;
        mitEnde = wahl & 2;
        mitExtern = wahl & 4;
        start = starts[wert];
        ende = enden[(wert + 1) % 4];
        extern_ = externe[(wert + 2) % 4];
        mitBereich = (groesse / 32) % 2;
    }
    const adrInteger* s() const { return mitStart ? &start : nullptr; }
    const adrInteger* e() const { return mitEnde ? &ende : nullptr; }
    const adrInteger* x() const { return mitExtern ? &extern_ : nullptr; }
    bool schlicht() const { return !mitStart && !mitEnde && !mitExtern && !mitBereich; }
};

// Total length of the image's region table rows, saturated; 0 when empty.
inline std::uint64_t belegteSpanne(const Eprom& e) {
    std::uint64_t summe = 0;
    for (const EpromBereichEintrag& z : e.liefereTabelle())
        if (z.anfAdr <= z.endAdr) summe += std::uint64_t(z.endAdr) - z.anfAdr + 1;
    return summe;
}

// What holds after any read: the context line is gone and the table rows are
// sorted, disjoint and each in order.
inline void pruefeNachLesen(const char* ziel, const Eprom& e) {
    if (Fehler::zusatzZeile != nullptr) verletzt(ziel, "context line left installed after the read");
    std::uint64_t vorige = 0;
    bool erste = true;
    for (const EpromBereichEintrag& z : e.liefereTabelle()) {
        if (z.anfAdr > z.endAdr) continue;
        if (!erste && z.anfAdr <= vorige) verletzt(ziel, "region table rows overlap or are out of order");
        vorige = z.endAdr;
        erste = false;
    }
    Fehler::holeStatus();
}

// A read through a window stores only inside it: image addresses from the
// start (or 0) to the end (or the top), whatever the external address.
inline void pruefeFenster(const char* ziel, const Eprom& e, const LeseParameter& p) {
    const adrInteger lo = p.mitStart ? p.start : 0;
    const adrInteger hi = p.mitEnde ? p.ende : 0xFFFFFFFF;
    if (p.mitBereich || lo > hi) return;
    for (const EpromBereichEintrag& z : e.liefereTabelle())
        if (z.anfAdr <= z.endAdr && (z.anfAdr < lo || z.endAdr > hi))
            verletzt(ziel, "a byte landed outside the read window");
}

// Every address of `a`'s rows holds the same byte in `b` and is written
// there. Reads stay inside `a`'s rows, so they do not change `a`.
inline void vergleicheBilder(const char* ziel, Eprom& a, Eprom& b) {
    std::vector<std::uint8_t> pa, pb, zb;
    const std::vector<EpromBereichEintrag> zeilen = a.liefereTabelle();  // reads may touch the table
    for (const EpromBereichEintrag& z : zeilen) {
        if (z.anfAdr > z.endAdr) continue;
        const std::uint32_t n = z.endAdr - z.anfAdr + 1;
        pa.assign(n, 0);
        pb.assign(n, 0);
        zb.assign(n, 0);
        a.liefereBytes(z.anfAdr, n, pa.data());
        b.liefereBytes(z.anfAdr, n, pb.data(), zb.data());
        for (std::uint32_t i = 0; i < n; ++i) {
            if (zb[i] == 0) verletzt(ziel, "a byte written out did not come back");
            if (pa[i] != pb[i]) verletzt(ziel, "a byte came back with another value");
        }
    }
}

}  // namespace kivfuzz
