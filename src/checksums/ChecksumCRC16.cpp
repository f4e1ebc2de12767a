// The CRC-16; see ChecksumCRC16.h.
#include "checksums/ChecksumCRC16.h"

#include "checksums/ChecksumAlgorithmen.h"

ChecksumCRC16::ChecksumCRC16(adrInteger anfAdr, adrInteger endAdr, int swap, std::uint16_t polynom)
    : Checksumme(anfAdr, endAdr), swap_(swap != 0), polynom_(polynom) {}

String ChecksumCRC16::liefereName() const {
    return SprachText(polynom_ == 0xA001 ? "Checksumme CRC16" : "Checksumme CRC16 CCITT");
}

std::uint16_t ChecksumCRC16::liefereGroesse() const { return 2; }

int ChecksumCRC16::bilde(int, Eprom& eprom, adrInteger* summe) {
    Crc16Rechner rechner(polynom_);
    *summe = bildeCrc(eprom, rechner, 2, swap_, "ChecksumCRC16::bilde");
    return 1;
}
