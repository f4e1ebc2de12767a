// ChecksumCRC32: the CRC-32 of IEEE 802.3 over a range of the image.
//
// Bytes outside the image count as 0 and are not reported. A target field
// of 4 bytes must lie wholly outside the range; it is written after the
// walk, the most significant byte first, reversed with `swap`.
#pragma once

#include "checksums/Checksumme.h"

class ChecksumCRC32 : public Checksumme {
public:
    ChecksumCRC32(adrInteger anfAdr, adrInteger endAdr, int swap);

    // See base class. `modus` is ignored; bilde always gives 1.
    String liefereName() const override;
    int bilde(int modus, Eprom& eprom, adrInteger* summe) override;
    std::uint16_t liefereGroesse() const override;

private:
    int swap_;
};
