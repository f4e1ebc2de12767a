// EpromDatei: carries an Eprom to and from one file, as Intel hex, Motorola
// S-records or raw binary.
//
// A command builds one on the stack for each load or save, calls it once and
// drops it. While a file is read or written, every boxed message carries the
// context line "<file>:  Zeile <n>", and the line messages "HEXFILE-FMT" are
// capped at five per file, followed by one "HEXFILE-FMT-COUNT".
//
// Addresses in `lies`:
//   Intel     start: lowest image address filled; end: highest, or with
//             externeAdresse the length; externeAdresse: the file address
//             that lands on start.
//   Motorola  image address = file address + start - externeAdresse, kept
//             within start..end.
//   Binary    start: image address of the first byte stored; end: the last
//             one; externeAdresse: bytes to skip at the start of the file.
// In `schreibe` start and end choose the range of the image (absent: all of
// it), and externeAdresse is the file address of the first byte written.
//
// An image keeps whatever was stored before a failed read. A failed hex
// write leaves its file behind; a failed binary write removes it.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "foundation/DateiName.h"
#include "foundation/String.h"
#include "foundation/Typen.h"

class Eprom;
class MotorolaHexZeileKopf;

class EpromDatei {
public:
    // dateiTyp values
    static constexpr std::int32_t typIntel = 0;
    static constexpr std::int32_t typMotorola = 4;
    static constexpr std::int32_t typBinaer = 5;

    EpromDatei(const DateiName& name, std::int32_t typ) : datei_(name), dateiTyp_(typ) {}
    virtual ~EpromDatei();
    EpromDatei(const EpromDatei&) = delete;
    EpromDatei& operator=(const EpromDatei&) = delete;

    // Reads the file into `eprom`; 1 when the file could be opened (and, for
    // binary, when all went in), else 0.
    virtual int lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                     const adrInteger* externeAdresse) = 0;
    // Writes von..bis of `eprom` to a stream that is already open.
    virtual int schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                         const adrInteger* externeAdresse) = 0;
    // Opens the file, checks the range against the image and writes it.
    int schreibe(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                 const adrInteger* externeAdresse);

    const DateiName& liefereDatei() const { return datei_; }
    std::int32_t liefereDateiTyp() const { return dateiTyp_; }

    // Context of messages while a file is worked on.
    static std::int32_t zeilenNr;
    static String zeilenDatei;
    // zeilenDatei, ": ", " Zeile ", zeilenNr in decimal.
    static String liefereZeilenPosition();

protected:
    // Checks startAdresse..endAdresse against the image and gives the range
    // in von, bis; reports "HEXFILE-ADR" with every fault found and answers
    // false when there is one.
    static bool pruefeBereich(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                              adrInteger& von, adrInteger& bis, const char* funktion);

    DateiName datei_;
    std::int32_t dateiTyp_;
};

class EpromDateiIntel : public EpromDatei {
public:
    EpromDateiIntel(const DateiName& name, std::uint32_t bytesJeZeile)
        : EpromDatei(name, typIntel), nutzBytes(bytesJeZeile) {}
    using EpromDatei::schreibe;
    int lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
             const adrInteger* externeAdresse) override;
    int schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                 const adrInteger* externeAdresse) override;

    std::uint32_t nutzBytes;        // data bytes to a line
    adrInteger extAdr = 0;          // extended base of the record read or written
    std::int32_t extErzwingen = 0;  // 1: an extended record first even in a small image
};

class EpromDateiMotorola : public EpromDatei {
public:
    // modus values
    static constexpr std::int32_t S1S9 = 0;
    static constexpr std::int32_t S2S8 = 1;
    static constexpr std::int32_t S3S7 = 2;
    static constexpr std::int32_t DYN = 3;

    EpromDateiMotorola(const DateiName& datei, std::uint32_t nutzBytes);
    ~EpromDateiMotorola() override;
    using EpromDatei::schreibe;
    int lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
             const adrInteger* externeAdresse) override;
    int schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                 const adrInteger* externeAdresse) override;

    std::int32_t modus = S3S7;  // set by the caller right after construction
    std::uint32_t nutzBytes;
    std::unique_ptr<MotorolaHexZeileKopf> kopfZeile;  // the last S0 read
};

class EpromDateiBinaer : public EpromDatei {
public:
    explicit EpromDateiBinaer(const DateiName& name) : EpromDatei(name, typBinaer) {}
    int lies(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
             const adrInteger* externeAdresse) override;
    // Binary data cannot go to a bare stream: reports "FILESTREAM-NEEDED".
    int schreibe(Eprom& eprom, std::ostream& os, adrInteger von, adrInteger bis,
                 const adrInteger* externeAdresse) override;
    // Writes the range; every byte of it must be written in the image. On
    // failure the file is removed. externeAdresse is ignored.
    int schreibe(Eprom& eprom, const adrInteger* startAdresse, const adrInteger* endAdresse,
                 const adrInteger* externeAdresse);
};
