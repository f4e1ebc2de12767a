// Checksumme: the base of all checksum kinds, and the value provider of the
// format statements that write a result file.
//
// A checksum object lives for one command: the handler builds it, runs
// `bildeSumme` once against the image, optionally writes the result through
// `anzeigeErgebnis`, and destroys it.
//
//   ChecksumCRC32 crc(anf, end, 0);
//   adrInteger summe = 0;
//   crc.bildeSumme(eprom, &summe);
//   crc.anzeigeErgebnis(eprom, summe, "crc.txt", 0, "<AnfAdr>-<EndAdr>: <Chksum>\\n");
//
// Format variables: AnfAdr, EndAdr (6 hex digits at least), Chksum (twice
// liefereGroesse() hex digits), ChksumTyp (liefereName()).
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "foundation/String.h"
#include "foundation/Typen.h"
#include "reporting/FmtAnweisung.h"

class DateiName;
class Eprom;

class Checksumme : public FmtObjekt {
public:
    Checksumme(adrInteger anfAdr, adrInteger endAdr);
    ~Checksumme() override;
    Checksumme(const Checksumme&) = delete;
    Checksumme& operator=(const Checksumme&) = delete;

    int ersetzeVariable(FmtVariable& variable) override;
    String liefereName() const override;

    // Forms the sum over the image into *summe. modus 0 compares a target
    // field with the sum, 1 writes it. 1 on success; a failure has been
    // reported and *summe holds what the sum had reached.
    virtual int bilde(int modus, Eprom& eprom, adrInteger* summe) = 0;
    // `bilde` in writing mode: the sum into *summe, or as the value.
    int bildeSumme(Eprom& eprom, adrInteger* summe) { return bilde(1, eprom, summe); }
    adrInteger liefereSumme(Eprom& eprom) {
        adrInteger summe = 0;
        bilde(1, eprom, &summe);
        return summe;
    }
    // Writes the statement `format` with this object's values into the
    // file, replacing it (modus 0) or appending (modus non-zero). 0 only if
    // an existing file could not be replaced; a file that cannot be opened
    // is silently skipped.
    virtual int anzeigeErgebnis(Eprom& eprom, adrInteger summe, const DateiName& datei, int modus,
                                const String& format);
    // Bytes of the result.
    virtual std::uint16_t liefereGroesse() const;

    // Sets the address of the result field; without one nothing is written.
    void setzeZielAdr(adrInteger adr);
    const adrInteger* liefereZielAdr() const { return zielAdr_.get(); }
    adrInteger liefereAnfAdr() const { return anfAdr_; }
    adrInteger liefereEndAdr() const { return endAdr_; }

    // "AnfAdr\nEndAdr\nChksum\nChksumTyp\n ": the names a statement may use.
    static const String& variablenListe();

    // Uppercase hexadecimal, zero filled to at least `stellen` digits.
    static String hex(std::uint32_t wert, int stellen);

protected:
    // The range shown by AnfAdr and EndAdr, the report and the short form:
    // the given bounds cut to the image, without ordering them.
    adrInteger anzeigeAnfang(Eprom& eprom) const;
    adrInteger anzeigeEnde(Eprom& eprom) const;
    // The same for the lenient kinds, which cut the range without ordering
    // it: von = max(anfAdr, image start), bis = min(endAdr, image end).
    void liefereBereich(Eprom& eprom, adrInteger& von, adrInteger& bis) const;

    // The whole sum of a CRC kind: cuts the range, checks a target field of
    // `w` bytes (reporting under `funktion`), feeds the range to `rechner`
    // with bytes outside the image as zeros, and writes the field if it was
    // accepted. The sum is delivered even for a refused field. Defined for
    // Crc16Rechner and Crc32Rechner.
    template <typename Rechner>
    adrInteger bildeCrc(Eprom& eprom, Rechner& rechner, adrInteger w, int swap, const char* funktion);
    // Target fields of the CRC kinds: a field of `w` bytes must lie wholly
    // outside von..bis. If not, reports under `funktion` and gives 0.
    int pruefeCrcZiel(adrInteger von, adrInteger bis, adrInteger w, const char* funktion) const;
    // Writes the `w` low bytes of `wert` at the target, the most significant
    // first, or in reverse with `swap`. A byte that cannot be written ends
    // the writing without a word.
    void schreibeCrcZiel(Eprom& eprom, adrInteger wert, adrInteger w, int swap) const;

    adrInteger anfAdr_;
    adrInteger endAdr_;
    std::unique_ptr<adrInteger> zielAdr_;
    adrInteger chksum_ = 0;
    adrInteger anzeigeAnfAdr_ = 0;
    adrInteger anzeigeEndAdr_ = 0;
};
