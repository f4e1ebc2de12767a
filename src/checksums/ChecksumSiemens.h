// ChecksumSiemens: the four-lane sum with carries and rotation.
//
// The lane of a byte is given by the two low bits of its absolute address;
// each lane adds its bytes with a carry count and rotates left by one after
// every byte. Bytes outside the image count as 0 and are not reported.
// The result has lane 0 in its most significant byte.
#pragma once

#include "checksums/Checksumme.h"

class ChecksumSiemens : public Checksumme {
public:
    ChecksumSiemens(adrInteger anfAdr, adrInteger endAdr);

    // See base class. `modus` is ignored; there is no target field.
    String liefereName() const override;
    int bilde(int modus, Eprom& eprom, adrInteger* summe) override;
    std::uint16_t liefereGroesse() const override;
};
