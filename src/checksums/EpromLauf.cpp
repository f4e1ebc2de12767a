// Walking an image in stretches; see EpromLauf.h.
// Covered by tests/unit/checksums/EpromLaufTest.cpp.
#include "checksums/EpromLauf.h"

#include <algorithm>

#include "image/Eprom.h"

namespace {

inline std::int32_t index(adrInteger adr)
{
    return static_cast<std::int32_t>(adr);
}

// One byte read as Eprom::liefereByte reads it, with all its effects.
void einzeln(Eprom& eprom, adrInteger adr, EpromAbschnitt& abschnitt)
{
    abschnitt.imEprom = eprom.liefereByte(adr, abschnitt.einzel, 0) != 0;
    abschnitt.anzahl = 1;
    abschnitt.daten = abschnitt.einzel != 0 ? &abschnitt.einzel : nullptr;
}

} // namespace

void liefereAbschnitt(Eprom& eprom, adrInteger adr, adrInteger bis, EpromAbschnitt& abschnitt)
{
    abschnitt.adr = adr;
    abschnitt.daten = nullptr;
    abschnitt.imEprom = true;
    const std::uint64_t hoechstens = std::uint64_t(bis) - adr + 1;

    // The image has always one segment; anything else goes byte by byte.
    if (eprom.liefereAnzSegmente() != 1) {
        einzeln(eprom, adr, abschnitt);
        return;
    }
    const EpromSegment& segment = eprom.liefereSegment(0);
    int code = 0;
    adrInteger grenze = 0;
    EpromBereich* bereich = segment.findeBereich(adr, code, grenze);
    if (!bereich && segment.istFrei()) {
        // A read here inserts the empty region of this window; do it, as
        // the byte-wise walk would, and look again.
        einzeln(eprom, adr, abschnitt);
        return;
    }
    if (!bereich) {
        // A gap of a fixed image, up to the next region above.
        std::uint64_t naechste = std::uint64_t(0xFFFFFFFFu) + 1;
        for (const auto& b : segment.bereiche)
            if (b->anfAdr > adr)
                naechste = std::min<std::uint64_t>(naechste, b->anfAdr);
        abschnitt.imEprom = false;
        abschnitt.anzahl = std::min(hoechstens, naechste - adr);
        return;
    }
    const std::uint64_t imBereich = std::min(hoechstens, std::uint64_t(grenze) - adr + 1);
    LongDynArray& daten = bereich->daten;
    if (daten.istGewarnt()) {
        // After one access beyond its limit a region counts as not there.
        abschnitt.imEprom = false;
        abschnitt.anzahl = imBereich;
        return;
    }
    if (daten.enthaelt(index(adr))) {
        std::int32_t rest = 0;
        abschnitt.daten = daten.zeiger(index(adr), rest);
        abschnitt.anzahl = std::min<std::uint64_t>(imBereich, static_cast<std::uint64_t>(rest));
        return;
    }
    // No storage behind the address: it reads as 0, up to the start of the
    // storage or the end of the region's reach.
    std::uint64_t anzahl = imBereich;
    if (daten.liefereAnzahl() > 0) {
        std::uint32_t bisBasis = static_cast<std::uint32_t>(daten.liefereBasis()) - adr;
        anzahl = std::min<std::uint64_t>(anzahl, bisBasis);
    }
    const auto letzte = static_cast<adrInteger>(adr + anzahl - 1);
    if (!daten.kannUmfassen(index(adr), index(letzte))) {
        // Reading on would overrun the storage's limit, which the image
        // reports and remembers: leave that to a real read.
        einzeln(eprom, adr, abschnitt);
        return;
    }
    abschnitt.anzahl = anzahl;
}
