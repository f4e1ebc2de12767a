// Walking an image in contiguous stretches instead of byte by byte.
//
// A walk asks for the stretch at its current address and gets the longest
// run of addresses that behave alike: stored bytes lying side by side in the
// image's storage, addresses inside the image that read as 0 without storage
// behind them, or addresses outside the image. Reading through the stretches
// gives the same bytes as reading each address with Eprom::liefereByte.
// The side effects of such reads are kept where they can be seen: a walk
// into a window of a free image that has no region yet gives it its empty
// region, and an access that would overrun a region's storage is made, with
// its warning. Storage that a read would merely grow is left as it is.
// Covered by tests/unit/checksums/EpromLaufTest.cpp.
#pragma once

#include <cstdint>

#include "foundation/Typen.h"

class Eprom;

struct EpromAbschnitt {
    adrInteger adr = 0;                  // first address
    std::uint64_t anzahl = 0;            // addresses, at least 1
    const std::uint8_t* daten = nullptr; // the bytes, or null: all read as 0
    bool imEprom = false;                // false: outside the image
    std::uint8_t einzel = 0;             // storage of a stretch of one byte read singly
};

// Fills `abschnitt` with the stretch that begins at `adr` and ends at `bis`
// at the latest (adr <= bis). `daten` stays valid until the image changes
// or `abschnitt` is filled again.
void liefereAbschnitt(Eprom& eprom, adrInteger adr, adrInteger bis, EpromAbschnitt& abschnitt);

// Walks von..bis (von <= bis) as the lenient checksums read it: an address
// outside the image counts as a zero byte. `daten(adr, zeiger, anzahl)`
// takes stored bytes, `nullen(adr, anzahl)` runs of zeros.
template <typename Daten, typename Nullen>
void laufeMitNullen(Eprom& eprom, adrInteger von, adrInteger bis, Daten daten, Nullen nullen)
{
    adrInteger a = von;
    EpromAbschnitt abschnitt;
    for (;;) {
        liefereAbschnitt(eprom, a, bis, abschnitt);
        if (abschnitt.daten)
            daten(abschnitt.adr, abschnitt.daten, abschnitt.anzahl);
        else
            nullen(abschnitt.adr, abschnitt.anzahl);
        auto letzte = static_cast<adrInteger>(abschnitt.adr + abschnitt.anzahl - 1);
        if (letzte >= bis)
            return;
        a = letzte + 1;
    }
}
