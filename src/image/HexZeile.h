// One line of an Intel hex or Motorola S-record file.
//
// A line object is built from the text of a line for reading (`zerlege`
// decodes it) or without text for writing. The line classes know the format,
// the checksum and how a data record meets the image; the loops over a file
// are in EpromDatei. Decoding takes upper and lower case; writing gives upper
// case. White space inside a line is skipped and does not count against its
// length. Damaged lines are reported at level W, so reading goes on.
//
// Intel:    ":" count(2) address(4) type(2) data checksum(2); all bytes of a
//           line add up to 0 modulo 256.
// Motorola: "S" type(1) count(2) address(4, 6 or 8) data checksum(2); the
//           checksum is the ones' complement of the sum of count, address
//           and data bytes.
//
// A line object only looks at the text it was given; the text must outlive it.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

#include "foundation/Typen.h"

class Eprom;
class EpromLeser;
class EpromSammler;
class HexAusgabe;

// ===================================================================
// Intel
// ===================================================================

class IntelHexZeile {
public:
    static constexpr std::uint32_t maxDaten = 255;

    explicit IntelHexZeile(std::string_view zeile);  // for reading
    IntelHexZeile();                                 // for writing
    virtual ~IntelHexZeile() = default;

    // Decodes the line; 1 or 0. A line shorter than 11 characters gives 0
    // without a message.
    int zerlege();

    std::uint32_t anzahl = 0;
    std::uint32_t adrHoch = 0, adrTief = 0;
    std::uint32_t adresse = 0;  // adrHoch * 256 + adrTief (+ base, for data)
    std::uint32_t typ = 0;
    std::uint8_t daten[maxDaten + 1];  // the first `anzahl` are valid
    std::uint32_t pruefsumme = 0;
    std::int32_t laenge = 0;  // characters less white space

protected:
    std::string_view text_;
};

// Record type 00.
class IntelHexZeileDaten : public IntelHexZeile {
public:
    using IntelHexZeile::IntelHexZeile;
    // Decodes and stores the bytes that fall into the window of file
    // addresses anfAdr..endAdr (moved to externeAdr when given). 1, or 0 when
    // the line is damaged or a byte was refused (the others are stored).
    // With a collector the bytes may go to the image later, with the next.
    int speichere(Eprom& eprom, adrInteger basis, const adrInteger* anfAdr, const adrInteger* endAdr,
                  const adrInteger* externeAdr, EpromSammler* sammler = nullptr);
    // Writes one data record of `anzahl` bytes taken from `adr` of the image.
    // 0 when a byte was not in the image (written as 0).
    int schreibe(std::ostream& os, Eprom& eprom, adrInteger adr, std::uint32_t anzahl, adrInteger basis,
                 const adrInteger* anfAdr, const adrInteger* externeAdr);
    // The same into the buffer of a whole file.
    int schreibe(HexAusgabe& aus, EpromLeser& leser, adrInteger adr, std::uint32_t anzahl, adrInteger basis,
                 const adrInteger* anfAdr, const adrInteger* externeAdr);
};

// Record type 01.
class IntelHexZeileEnde : public IntelHexZeile {
public:
    using IntelHexZeile::IntelHexZeile;
};

// Record type 02: base = (first byte * 256 + second byte) * 16.
class IntelHexZeileSegment : public IntelHexZeile {
public:
    using IntelHexZeile::IntelHexZeile;
    // Decodes and gives the base; on a damaged line base 0 and result 0.
    int liefereBasis(adrInteger& basis);
};

// Record type 04: base = (first byte * 256 + second byte) * 65536.
class IntelHexZeileLinear : public IntelHexZeile {
public:
    using IntelHexZeile::IntelHexZeile;
    int liefereBasis(adrInteger& basis);
};

// Extended address records for `adr`; both set `basis` to adr with its low 16
// bits cleared and give 1.
int schreibeSegmentZeile(std::ostream& os, adrInteger adr, adrInteger& basis);
int schreibeLinearZeile(std::ostream& os, adrInteger adr, adrInteger& basis);

// ===================================================================
// Motorola
// ===================================================================

class MotorolaHexZeile {
public:
    static constexpr std::uint32_t maxDaten = 255;

    virtual ~MotorolaHexZeile() = default;

    // Decodes the line; 1 or 0.
    int zerlege();
    // Next two digits of the decoded text; 0 at its end.
    int liesHexPaar(std::uint32_t& wert);

    // Writes type digit, count byte and address bytes; sets `summe`.
    virtual int schreibeKopf(std::ostream& os);
    // Reads the address bytes; takes them and the checksum byte off `anzahl`.
    virtual int liesAdresse();

    char liefereTyp() const { return typZiffer_; }
    int liefereAdrBytes() const { return adrBytes_; }

    std::int16_t anzahl = 0;  // data bytes, after decoding
    adrInteger adresse = 0;
    std::uint32_t summe = 0;
    std::uint8_t daten[maxDaten + 1];  // the first `anzahl` are valid
    std::int16_t laenge = 0;           // characters not yet consumed

protected:
    MotorolaHexZeile(char typZiffer, int adrBytes, std::string_view zeile, bool mitText);

    char typZiffer_;
    int adrBytes_;
    bool hatEingabe_;
    std::string_view text_;
    // The values of the hex digits of the line, collected by zerlege.
    std::uint8_t ziffern_[600];
    int anzZiffern_ = 0;
    int lesePos_ = 0;
};

// S0. Without text it takes the fixed record "S00600004844521B".
class MotorolaHexZeileKopf : public MotorolaHexZeile {
public:
    static constexpr const char* festerKopf = "S00600004844521B";
    MotorolaHexZeileKopf();
    explicit MotorolaHexZeileKopf(std::string_view zeile);
    // Writes the record with its own data; gives the state of the stream.
    int schreibe(std::ostream& os);
};

class MotorolaHexZeileDaten : public MotorolaHexZeile {
public:
    // Decodes and stores the bytes whose image address lies in
    // anfAdr..endAdr; image address = file address + anfAdr - externeAdr.
    int speichere(Eprom& eprom, const adrInteger* anfAdr, const adrInteger* endAdr,
                  const adrInteger* externeAdr, EpromSammler* sammler = nullptr);
    // Writes one record of `anzahl` bytes from `adr` of the image with the
    // file address `fileAdr`; 0 when a byte was not in the image.
    int schreibe(std::ostream& os, Eprom& eprom, adrInteger adr, adrInteger fileAdr, std::uint32_t anzahl);
    int schreibe(HexAusgabe& aus, EpromLeser& leser, adrInteger adr, adrInteger fileAdr,
                 std::uint32_t anzahl);

protected:
    using MotorolaHexZeile::MotorolaHexZeile;
};

class MotorolaHexZeileEnde : public MotorolaHexZeile {
public:
    // Writes the record (address 0, no data); gives the state of the stream.
    int schreibe(std::ostream& os);

protected:
    using MotorolaHexZeile::MotorolaHexZeile;
};

// One record type: its type digit and the bytes of its address. Built empty
// for writing, or around a line for reading.
template <class Art, char typZiffer, int adrBytes>
class MotorolaSatz : public Art {
public:
    MotorolaSatz() : Art(typZiffer, adrBytes, {}, false) {}
    explicit MotorolaSatz(std::string_view z) : Art(typZiffer, adrBytes, z, true) {}
};

using MotorolaHexZeileS1 = MotorolaSatz<MotorolaHexZeileDaten, '1', 2>;
using MotorolaHexZeileS2 = MotorolaSatz<MotorolaHexZeileDaten, '2', 3>;
using MotorolaHexZeileS3 = MotorolaSatz<MotorolaHexZeileDaten, '3', 4>;
using MotorolaHexZeileS9 = MotorolaSatz<MotorolaHexZeileEnde, '9', 2>;
using MotorolaHexZeileS8 = MotorolaSatz<MotorolaHexZeileEnde, '8', 3>;
using MotorolaHexZeileS7 = MotorolaSatz<MotorolaHexZeileEnde, '7', 4>;
