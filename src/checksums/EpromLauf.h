// Walking an image for the lenient checksums: an address outside the image
// counts as a zero byte.
#pragma once

#include <cstdint>

#include "image/Eprom.h"

// Walks von..bis (von <= bis) by the image's stretches. `daten(adr, zeiger,
// anzahl)` takes stored bytes, `nullen(adr, anzahl)` runs of zeros.
template <typename Daten, typename Nullen>
void laufeMitNullen(Eprom& eprom, adrInteger von, adrInteger bis, Daten daten, Nullen nullen) {
    eprom.laufe(von, bis, [&](const EpromStrecke& s) {
        if (s.imEprom && s.daten)
            daten(s.von, s.daten, s.laenge());
        else
            nullen(s.von, s.laenge());
        return true;
    });
}
