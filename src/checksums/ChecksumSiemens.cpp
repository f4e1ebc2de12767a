// The four-lane sum; see ChecksumSiemens.h.
#include "checksums/ChecksumSiemens.h"

#include "checksums/ChecksumAlgorithmen.h"
#include "checksums/EpromLauf.h"

ChecksumSiemens::ChecksumSiemens(adrInteger anfAdr, adrInteger endAdr) : Checksumme(anfAdr, endAdr) {}

String ChecksumSiemens::liefereName() const { return SprachText("Checksumme Siemens"); }

std::uint16_t ChecksumSiemens::liefereGroesse() const { return 4; }

int ChecksumSiemens::bilde(int, Eprom& eprom, adrInteger* summe) {
    adrInteger von, bis;
    liefereBereich(eprom, von, bis);
    SiemensSummierer summierer;
    if (von <= bis)
        laufeMitNullen(
            eprom, von, bis,
            [&](adrInteger adr, const std::uint8_t* daten, std::uint64_t anzahl) {
                summierer.nimm(adr, daten, anzahl);
            },
            [&](adrInteger adr, std::uint64_t anzahl) { summierer.nimmNullen(adr, anzahl); });
    *summe = summierer.ergebnis();
    return 1;
}
