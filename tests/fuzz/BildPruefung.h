// Helpers of the image file targets.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "FuzzUmgebung.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"

namespace kivfuzz {

// The read's optional addresses and a prior region follow from the input's
// length, so no control byte spoils the file text.
struct LeseParameter {
    adrInteger start, ende, extern_;
    bool mitStart, mitEnde, mitExtern, mitBereich;

    explicit LeseParameter(std::size_t n)
        : mitStart(n & 1), mitEnde(n & 2), mitExtern(n & 4), mitBereich(n / 32 % 2) {
        static const adrInteger starts[] = {0, 0x100, 0x8000, 0xFFFFFF00};
        static const adrInteger enden[] = {0xFF, 0x7FFF, 0xFFFF, 0xFFFFFFFF};
        static const adrInteger externe[] = {0, 0x10, 0x8000, 0xFFFF0000};
        start = starts[n / 8 % 4], ende = enden[(n / 8 + 1) % 4], extern_ = externe[(n / 8 + 2) % 4];
    }
    const adrInteger* s() const { return mitStart ? &start : nullptr; }
    const adrInteger* e() const { return mitEnde ? &ende : nullptr; }
    const adrInteger* x() const { return mitExtern ? &extern_ : nullptr; }
};

// After any read: no context line, and the table rows sorted and disjoint.
inline void pruefeNachLesen(const char* ziel, const Eprom& e) {
    if (Fehler::zusatzZeile != nullptr) verletzt(ziel, "context line left installed after the read");
    std::uint64_t vorige = 0;
    bool erste = true;
    for (const EpromBereichEintrag& z : e.liefereTabelle()) {
        if (z.anfAdr > z.endAdr) continue;
        if (!erste && z.anfAdr <= vorige) verletzt(ziel, "region table rows overlap or are out of order");
        vorige = z.endAdr, erste = false;
    }
    Fehler::holeStatus();
}

// A read stores only inside its window; a small image read without options
// comes back unchanged when written out and read again.
template <class Datei>
void pruefeTextFormat(const char* ziel, const std::uint8_t* daten, std::size_t groesse,
                      const ScratchDatei& datei, const ScratchDatei& zurueck) {
    initUmgebung();
    const LeseParameter p(groesse);
    Eprom eprom;
    if (p.mitBereich) eprom.definiereBereich(0, 0xFFFF);
    if (Datei(datei.schreibe(daten, groesse), 16).lies(eprom, p.s(), p.e(), p.x()) != 1)
        verletzt(ziel, "an existing file was not read");
    pruefeNachLesen(ziel, eprom);
    std::uint64_t spanne = 0;
    const adrInteger lo = p.mitStart ? p.start : 0, hi = p.mitEnde ? p.ende : 0xFFFFFFFF;
    const std::vector<EpromBereichEintrag> zeilen = eprom.liefereTabelle();  // reads may touch the table
    for (const EpromBereichEintrag& z : zeilen) {
        if (z.anfAdr > z.endAdr) continue;
        if (!p.mitBereich && lo <= hi && (z.anfAdr < lo || z.endAdr > hi))
            verletzt(ziel, "a byte landed outside the read window");
        spanne += std::uint64_t(z.endAdr) - z.anfAdr + 1;
    }
    if (p.s() || p.e() || p.x() || p.mitBereich || spanne == 0 || spanne > 0x10000) return;

    std::ostringstream text;
    Datei schreiber(zurueck.name.c_str(), 16);
    if constexpr (requires { schreiber.modus; })
        schreiber.modus = static_cast<std::int32_t>(groesse / 64 % 4);
    if (!schreiber.schreibe(eprom, text, eprom.liefereAnfAdr(), eprom.liefereEndAdr(), nullptr))
        verletzt(ziel, "writing a readable image failed");
    const std::string t = text.str();
    // An Intel extended record may carry the checksum "100", refused on purpose.
    std::istringstream textZeilen(t);
    for (std::string z; std::getline(textZeilen, z);)
        if ((z.rfind(":02000004", 0) == 0 || z.rfind(":02000002", 0) == 0) && z.size() != 15) return;
    Eprom wieder;
    Datei(zurueck.schreibe(t.data(), t.size()), 16).lies(wieder, nullptr, nullptr, nullptr);
    pruefeNachLesen(ziel, wieder);
    // Every address of the rows holds the same byte after the round trip, and is written.
    for (const EpromBereichEintrag& z : zeilen) {
        if (z.anfAdr > z.endAdr) continue;
        const std::uint32_t n = z.endAdr - z.anfAdr + 1;
        std::vector<std::uint8_t> pa(n), pb(n), zb(n);
        eprom.liefereBytes(z.anfAdr, n, pa.data());
        wieder.liefereBytes(z.anfAdr, n, pb.data(), zb.data());
        for (std::uint32_t i = 0; i < n; ++i) {
            if (zb[i] == 0) verletzt(ziel, "a byte written out did not come back");
            if (pa[i] != pb[i]) verletzt(ziel, "a byte came back with another value");
        }
    }
}

}  // namespace kivfuzz
