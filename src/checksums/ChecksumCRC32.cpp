// The CRC-32; see ChecksumCRC32.h.
#include "checksums/ChecksumCRC32.h"

#include "checksums/ChecksumAlgorithmen.h"

ChecksumCRC32::ChecksumCRC32(adrInteger anfAdr, adrInteger endAdr, int swap)
    : Checksumme(anfAdr, endAdr), swap_(swap != 0) {}

String ChecksumCRC32::liefereName() const { return SprachText("Checksumme CRC32"); }

std::uint16_t ChecksumCRC32::liefereGroesse() const { return 4; }

int ChecksumCRC32::bilde(int, Eprom& eprom, adrInteger* summe) {
    Crc32Rechner rechner;
    *summe = bildeCrc(eprom, rechner, 4, swap_, "ChecksumCRC32::bilde");
    return 1;
}
