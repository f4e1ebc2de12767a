// ChecksumStandard: the additive sum with byte order, target field and
// compensation.
//
// Addends of `anzahlBytes` bytes are read big-endian (little-endian with
// `swap`) and added modulo 2 to the 32; the result is cut to
// `ergebnisGroesse` bytes. With a target, the result field (and with
// `kompensierung` the complement field behind it) is cleared to 00 (FF)
// before the walk, so that a field inside the range sums as a constant, and
// is written after it.
//
//   ChecksumStandard sum(0, 0x1000, 0x1FFF, nullptr, 0, 1, 0, 2);
//   sum.setzeZielAdr(0x1FFE);
//   adrInteger ergebnis;
//   sum.bildeSumme(eprom, &ergebnis);
#pragma once

#include "checksums/Checksumme.h"

class ChecksumStandard : public Checksumme {
public:
    // `naechste` (not owned, may be null) is summed first and its value
    // added. Addend sizes outside 1 to 4 are taken as the nearest of them.
    ChecksumStandard(int kompensierung, adrInteger anfAdr, adrInteger endAdr, Checksumme* naechste,
                     adrInteger addierWert, std::uint16_t anzahlBytes, int swap,
                     std::uint16_t ergebnisGroesse);

    // See base class.
    String liefereName() const override;
    int bilde(int modus, Eprom& eprom, adrInteger* summe) override;
    std::uint16_t liefereGroesse() const override;

    // The arithmetic of the sum: addition modulo 2 to the 32, and the
    // bitwise complement. The walk hands its total to `addiere` at once,
    // which for modular addition is the same as addend by addend.
    virtual void addiere(adrInteger* summe, adrInteger wert);
    virtual void komplement(adrInteger* ziel, adrInteger wert);

    int liefereSwap() const { return swap_; }

private:
    // The walk from von to bis; 0 after a byte outside the image.
    int summiere(Eprom& eprom, adrInteger von, adrInteger bis, adrInteger* summe);
    // Writes w bytes of `wert` from `ziel` on, first byte most significant;
    // 0 at the first byte that cannot be written.
    int schreibeFeld(Eprom& eprom, adrInteger ziel, adrInteger wert);
    adrInteger tauscheFeld(adrInteger wert) const;

    Checksumme* naechste_;
    adrInteger addierWert_;
    int kompensierung_;
    std::uint16_t anzahlBytes_;
    int swap_;
    std::uint16_t ergebnisGroesse_;
};
