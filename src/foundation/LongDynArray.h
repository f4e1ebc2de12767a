// LongDynArray: the byte array behind an EPROM image.
//
// Bytes live in chunks of `blockGroesse` bytes so that growing upward never
// moves what is already stored: it costs a new chunk table and at most one
// partial chunk. Growing downward lays the array out anew; images are read in
// ascending order, so the first index fixes `basis` in practice.
//
// A chunk all of whose elements hold one value is kept as just that value
// until something asks for a writable element in it: a fresh chunk, a chunk
// wholly overwritten or counted up at once, a write count of a loaded image.
// Reading such a chunk hands out a shared read-only chunk of that value.
//
// Indices are 32-bit and wrap like addresses do: an array may span the
// border between 0x7FFFFFFF and 0x80000000 of the unsigned address space.
// At most 514 chunks exist; an access beyond that warns once with
// "FELDZUGROSS", and from then on the array is frozen: every access, in range
// or not, hands out the last byte. The image is no longer trustworthy then,
// and the user has been told.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

class LongDynArray {
public:
    static constexpr std::int32_t blockGroesse = 32768;
    static constexpr std::int32_t maxBloecke = 514;
    static constexpr std::int64_t maxAnzahl = std::int64_t(maxBloecke) * blockGroesse;

    explicit LongDynArray(std::uint8_t vorgabe = 0) : vorgabe_(vorgabe) {}
    LongDynArray(const LongDynArray& quelle);
    LongDynArray& operator=(const LongDynArray& quelle);
    LongDynArray(LongDynArray&&) noexcept = default;
    LongDynArray& operator=(LongDynArray&&) noexcept = default;

    // The only way to read or write. Creates the element when needed.
    std::uint8_t& operator[](std::int32_t index) {
        std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
        if (off < static_cast<std::uint32_t>(anzahl_) && !gewarnt_) {
            std::uint8_t* p = bloecke_[off / blockGroesse].get();
            if (p) return p[off % blockGroesse];
        }
        return zugriff(index);
    }

    std::int32_t liefereBasis() const { return basis_; }
    std::int32_t liefereAnzahl() const { return anzahl_; }
    std::int32_t liefereBlockAnzahl() const { return static_cast<std::int32_t>(bloecke_.size()); }
    bool istGewarnt() const { return gewarnt_ != 0; }

    // Fast access for walks over many bytes. `enthaelt` says whether
    // operator[] would answer `index` from storage without growing or
    // warning; `zeiger` then gives the element and, in `rest`, how many
    // elements follow contiguously in its chunk (itself included).
    bool enthaelt(std::int32_t index) const {
        if (gewarnt_ || anzahl_ == 0) return false;
        std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
        return off < static_cast<std::uint32_t>(anzahl_);
    }
    // The writable form makes a uniform chunk a real one first.
    std::uint8_t* zeiger(std::int32_t index, std::int32_t& rest) {
        std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
        std::uint32_t block = off / blockGroesse;
        std::uint32_t innen = off % blockGroesse;
        rest = static_cast<std::int32_t>(blockLaenge(block) - innen);
        return bereiterBlock(block) + innen;
    }
    const std::uint8_t* zeiger(std::int32_t index, std::int32_t& rest) const {
        std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
        std::uint32_t block = off / blockGroesse;
        std::uint32_t innen = off % blockGroesse;
        rest = static_cast<std::int32_t>(blockLaenge(block) - innen);
        const std::uint8_t* p = bloecke_[block].get();
        return (p ? p : einheitsBlock(einheit_[block])) + innen;
    }
    // Bulk writes to `anzahl` elements from `index` on, all of which must
    // be in storage (enthaelt). `setze` copies from `quelle`; `zaehleHoch`
    // adds 1 to each element, stopping at 255. A whole chunk costs no
    // element-wise work where the result is uniform.
    void setze(std::int32_t index, const std::uint8_t* quelle, std::uint32_t anzahl);
    void zaehleHoch(std::int32_t index, std::uint32_t anzahl);
    // Whether the chunk holding `index` is uniform, and its value.
    bool istEinheitlich(std::int32_t index, std::uint8_t& wert) const {
        std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
        std::uint32_t block = off / blockGroesse;
        wert = einheit_[block];
        return !bloecke_[block];
    }

    // Whether touching `von` and then `bis` (with every index between
    // touched in ascending order) stays within the limit, so that an access
    // at the two ends alone leaves the array as the walk would.
    bool kannUmfassen(std::int32_t von, std::int32_t bis) const;
    // Grows the storage so that it spans `von` and then `bis`, with the
    // warning and freezing of an access to each.
    void umfasse(std::int32_t von, std::int32_t bis) {
        wachse(von);
        wachse(bis);
    }

private:
    std::uint8_t& zugriff(std::int32_t index);  // growth, first access, frozen
    void wachse(std::int32_t index);            // zugriff without making the element real
    static const std::uint8_t* einheitsBlock(std::uint8_t wert);
    std::uint8_t* bereiterBlock(std::uint32_t block) {
        std::uint8_t* p = bloecke_[block].get();
        return p ? p : macheEcht(block);
    }
    std::uint8_t* macheEcht(std::uint32_t block);
    std::uint32_t blockLaenge(std::uint32_t block) const {
        std::int64_t rest = std::int64_t(anzahl_) - std::int64_t(block) * blockGroesse;
        return static_cast<std::uint32_t>(rest < blockGroesse ? rest : blockGroesse);
    }
    void wachseAufwaerts(std::int64_t off);
    void wachseAbwaerts(std::int32_t index, std::int64_t neueAnzahl);
    std::uint8_t& letztes();
    void warne(const char* funktion, std::int64_t detail);

    std::vector<std::unique_ptr<std::uint8_t[]>> bloecke_;  // null: uniform
    std::vector<std::uint8_t> einheit_;                     // the value of each uniform chunk
    std::uint8_t vorgabe_;
    std::int32_t anzahl_ = 0;
    std::int32_t basis_ = 0;
    std::int32_t gewarnt_ = 0;
};
