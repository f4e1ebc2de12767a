// Eprom: the in-memory image of one EPROM.
//
// A sparse map from 32-bit addresses to bytes that also remembers how often
// each byte was written (saturating at 255). A byte is `belegt` when its write
// count is not 0. An image is *free* until the first `definiereBereich`: it
// accepts every address and records the span written, in windows of 16 MiB.
// After that it is *fixed* and accepts only addresses inside its regions.
// Deleting the last region makes it free again.
//
// Reads never create storage. They keep one visible effect: reading an
// address of a free image in a 16 MiB window above the low one that has no
// region yet inserts an empty region for that window (vermerkeLesen), which
// the region count and table show once they are rebuilt.
//
// Whole-image walks go by stretches (liefereStrecke, laufe): the longest
// runs of addresses that read alike within one region and one storage
// chunk, either bytes side by side in storage or a range without storage
// that reads as 0 with write count 0. A stretch never crosses a 16 MiB
// window of a free image.
//
// Every walk over addresses stops at 0xFFFFFFFF instead of wrapping.
// Ownership: an Eprom owns its segments, they own their regions, a region
// owns its two byte arrays.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

#include "foundation/LongDynArray.h"
#include "foundation/String.h"
#include "foundation/Typen.h"

class BearbeitungsFortschritt;

// One stretch of a walk: von..bis read alike. `daten` and `anzSchr` point at
// the bytes and write counts of von (bis - von + 1 of them follow), or are
// null where that range has no storage: it reads as 0 with count 0.
// `imEprom` is false where a read would fail (outside the regions of a fixed
// image, or a region whose storage overran its limit). The pointers stay
// valid until the image is next written.
struct EpromStrecke {
    adrInteger von = 0;
    adrInteger bis = 0;
    const std::uint8_t* daten = nullptr;
    const std::uint8_t* anzSchr = nullptr;
    bool imEprom = true;
    std::uint64_t laenge() const { return std::uint64_t(bis) - von + 1; }
};

// One contiguous stretch of storage. The arrays are indexed by the absolute
// address. An empty region has anfAdr 0xFFFFFFFF and endAdr 0.
struct EpromBereich {
    adrInteger anfAdr = 0xFFFFFFFF;
    adrInteger endAdr = 0;
    adrInteger basisAdr = 0;  // start of the 16 MiB window of a free region
    LongDynArray daten;
    LongDynArray anzSchr;          // write count per address
    std::int32_t erweiterbar = 1;  // 1: bounds grow with the bytes written

    EpromBereich() = default;
    EpromBereich(adrInteger anf, adrInteger end, adrInteger basis, std::int32_t erw)
        : anfAdr(anf), endAdr(end), basisAdr(basis), erweiterbar(erw) {}
};

// One row of the sorted region table.
struct EpromBereichEintrag {
    std::int32_t segNr = 0;
    adrInteger anfAdr = 0xFFFFFFFF;
    adrInteger endAdr = 0;
};

// The design's per-segment "written" flag is not kept: nothing reads it.
class EpromSegment {
public:
    // Lookup codes of sucheBereich.
    static constexpr int nichtImEprom = -1;
    static constexpr int fest = 0;
    static constexpr int freiUnten = 1;
    static constexpr int freiOben = 2;

    EpromSegment();  // holds the empty default region
    EpromSegment(const EpromSegment& quelle);
    EpromSegment& operator=(const EpromSegment&) = delete;

    // The region that answers for `adr`, with its code; in a free segment an
    // address above the low window may insert a new empty region.
    EpromBereich* sucheBereich(adrInteger adr, int& code);
    // The same lookup without inserting: null where sucheBereich would give
    // -1 or insert. `grenze` is the highest address for which the same lookup
    // gives the same region with the same code.
    EpromBereich* findeBereich(adrInteger adr, int& code, adrInteger& grenze) const;

    // Reads of one element through sucheBereich, creating storage as they
    // go; -1 when not in the image or the array is frozen. Writes use them;
    // image reads go by stretches instead.
    int liesDaten(adrInteger adr, std::uint8_t& byte);
    int liesAnzSchr(adrInteger adr, std::uint8_t& anz);

    void definiere(adrInteger von, adrInteger bis);
    int loesche(adrInteger adr);

    adrInteger liefereAnfAdr() const;
    adrInteger liefereEndAdr() const;
    bool istFrei() const { return alleErweiterbar_; }
    std::int32_t anzahlBereiche() const { return static_cast<std::int32_t>(bereiche.size()); }

    std::vector<std::unique_ptr<EpromBereich>> bereiche;  // creation order, not address order

private:
    template <class Feld>
    int liesFeld(adrInteger adr, std::uint8_t& wert, Feld EpromBereich::*feld);
    void aktualisiereModus();
    bool alleErweiterbar_ = true;
};

// The design's "has segments" and "keeps regions" flags are not kept: the
// first is read nowhere, the second was always on and is folded in.
class Eprom {
public:
    Eprom();
    Eprom(const Eprom& quelle);
    Eprom& operator=(const Eprom& quelle);
    ~Eprom();

    // ---- Bytes ----
    // Write one byte; 0 for an address outside the image (the Mit form
    // reports "EPR-ADR-NOT-IN-EPROM").
    int setzeByteMit(adrInteger adr, std::uint8_t wert);
    int setzeByte(adrInteger adr, std::uint8_t wert);
    // Read one byte; 0 (and byte 0) outside the image, reported when
    // `meldung` is 1. No occupancy test.
    int liefereByte(adrInteger adr, std::uint8_t& byte, int meldung);
    std::uint8_t liefereAnzSchrMit(adrInteger adr);
    std::uint8_t liefereAnzSchr(adrInteger adr);
    // The lookup of a write: -1, 0, 1, 2 and the segment that answered.
    // Unlike the reads above it may create storage (and a region) for
    // `adr`, which the write then fills.
    int sucheByte(adrInteger adr, std::uint8_t& byte, int& segNr);

    // Bulk forms for the file readers and writers; they leave the image
    // exactly as the same calls byte by byte would.
    // Writes `anzahl` bytes to rising addresses (which must not pass
    // 0xFFFFFFFF) and gives how many went in before the first refusal; a
    // refused byte is reported when `meldung` is 1.
    std::uint32_t setzeBytes(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl, int meldung);
    // Reads `anzahl` bytes (as liefereByte without report; refused ones are
    // 0) and, if `zaehler` is not null, their write counts (as
    // liefereAnzSchr). Gives 1 if every byte was in the image.
    int liefereBytes(adrInteger adr, std::uint32_t anzahl, std::uint8_t* ziel,
                     std::uint8_t* zaehler = nullptr);

    // ---- Stretch walk ----
    // The stretch that begins at `adr` and ends at `bis` at the latest
    // (adr <= bis). Changes nothing.
    void liefereStrecke(adrInteger adr, adrInteger bis, EpromStrecke& s) const;
    // What reading von..bis leaves behind: the empty regions of untouched
    // windows of a free image. Every walk calls it for what it reads.
    void vermerkeLesen(adrInteger von, adrInteger bis);
    // Walks von..bis (von <= bis) in address order, each stretch marked
    // read (vermerkeLesen) as it is handed to `f(const EpromStrecke&)`,
    // which returns false to stop early: what it did not get is not read.
    template <typename F>
    void laufe(adrInteger von, adrInteger bis, F f) {
        EpromStrecke s;
        for (adrInteger a = von;; a = s.bis + 1) {
            liefereStrecke(a, bis, s);
            vermerkeLesen(s.von, s.bis);
            if (!f(static_cast<const EpromStrecke&>(s)) || s.bis >= bis) return;
        }
    }
    // In a free image, widens the regions so that they span von..bis, as
    // writes at every address would, without writing; `fuelle` then reaches
    // every address of the range.
    void umfasse(adrInteger von, adrInteger bis);

    // ---- Extent and regions ----
    adrInteger liefereAnfAdr() const;  // 0xFFFFFFFF when empty
    adrInteger liefereEndAdr() const;  // 0 when empty
    // The first table row whose end is not below `adr`: von = max(row start,
    // adr), bis = row end. 0 and nothing changed when there is none.
    int liefereBereich(adrInteger adr, adrInteger& von, adrInteger& bis) const;
    int definiereBereich(adrInteger anf, adrInteger end);
    int loescheBereich(adrInteger adr);
    int istFrei() const;

    // ---- Whole-image operations ----
    // Fills every unwritten address of the regions (clipped to the given
    // bounds) with `wert`, write count 1; gives the number filled.
    std::uint32_t fuelle(std::uint8_t wert, const adrInteger* von, const adrInteger* bis);
    // Exchanges the bytes of each even/odd pair in anf..end.
    int swap(adrInteger anf, adrInteger end, BearbeitungsFortschritt* anzeige);
    // Copies each written byte to adr / 2 of one of the two images.
    int teileEvenOdd(Eprom& gerade, Eprom& ungerade);

    // ---- Displays ----
    void anzeigeBereiche(std::ostream& os);
    void anzeigeBytes(adrInteger anf, adrInteger end, const String& kopf, std::ostream& os, int hex);
    std::uint32_t anzeigeBelegung(std::ostream& os, adrInteger anf, adrInteger end);

    // ---- Inspection (tests, displays) ----
    std::int32_t liefereAnzSegmente() const { return static_cast<std::int32_t>(segmente_.size()); }
    std::int32_t liefereAnzBereiche() const { return anzBereiche_; }
    const std::vector<EpromBereichEintrag>& liefereTabelle() const { return bereiche_; }
    const EpromSegment& liefereSegment(int i) const { return *segmente_[static_cast<std::size_t>(i)]; }

private:
    int schreibe(adrInteger adr, std::uint8_t wert, int meldung);
    std::uint32_t schreibeSpanne(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl);
    void nachSchreiben(int code, adrInteger von, adrInteger bis);
    void baueTabelle();
    void meldeNichtImEprom(const char* funktion, adrInteger adr);
    bool nimmtAllesAn() const;

    std::int32_t anzBereiche_ = 0;
    std::vector<EpromBereichEintrag> bereiche_;            // the region table
    std::vector<std::unique_ptr<EpromSegment>> segmente_;  // always one
};

// Hands out the bytes of rising addresses to the file writers: straight from
// storage where a request lies in one stretch, else gathered as liefereBytes
// gathers them. The image must not be written while one is in use.
class EpromLeser {
public:
    explicit EpromLeser(Eprom& eprom) : eprom_(eprom) {}
    // `anzahl` bytes from `adr` (wrapping past 0xFFFFFFFF as addresses do);
    // `ok` is false if one was not in the image (it reads as 0). The
    // pointer stays valid up to the next call.
    const std::uint8_t* lies(adrInteger adr, std::uint32_t anzahl, bool& ok);

private:
    Eprom& eprom_;
    EpromStrecke strecke_;
    bool hat_ = false;
    std::vector<std::uint8_t> puffer_;
};

// Collects the bytes of many short records written to rising addresses, so
// that a file reader stores a whole run at once. It takes bytes only where
// writing the run later leaves the image, its regions and their table as
// writing each piece at once would, and nothing in between can fail or
// report; otherwise it writes what it holds and says no, and the caller
// writes the piece itself. Writes what it holds when destroyed; nothing else
// may write or read the image while it holds bytes.
class EpromSammler {
public:
    explicit EpromSammler(Eprom& eprom) : eprom_(eprom) {}
    ~EpromSammler() { leere(); }
    EpromSammler(const EpromSammler&) = delete;
    EpromSammler& operator=(const EpromSammler&) = delete;

    bool nimm(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl);
    void leere();

private:
    bool passt(adrInteger adr, adrInteger letzte);
    static constexpr std::size_t hoechstens = std::size_t(1) << 20;  // bytes held at most

    Eprom& eprom_;
    std::vector<std::uint8_t> puffer_;
    adrInteger anf_ = 0;
    adrInteger sicherBis_ = 0;  // a run from anf_ up to here would be taken
};
