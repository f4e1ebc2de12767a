// ChecksumCRC16: a 16-bit CRC shifted most significant bit first, start 0,
// no final XOR, over a range of the image.
//
// `polynom` 0x1021 gives the XMODEM form. 0xA001 is the bit-reversed form of
// 0x8005 shifted in the unreflected direction; its results match no
// published CRC-16, and that is intended.
//
// The result is handed on as a signed 16-bit number widened to 32 bits; all
// displays show its low 16 bits only. Bytes outside the image count as 0. A
// target field of 2 bytes must lie wholly outside the range.
#pragma once

#include "checksums/Checksumme.h"

class ChecksumCRC16 : public Checksumme {
public:
    ChecksumCRC16(adrInteger anfAdr, adrInteger endAdr, int swap, std::uint16_t polynom);

    // See base class. `modus` is ignored; bilde always gives 1.
    String liefereName() const override;
    int bilde(int modus, Eprom& eprom, adrInteger* summe) override;
    std::uint16_t liefereGroesse() const override;

private:
    int swap_;
    std::uint16_t polynom_;
};
