// DynArray: an array that grows on access in either direction, and TextFeld,
// an array of owned byte texts built on it.
//
// Indexing any index creates it; the array may start far from 0. Past its
// `maximum` the array warns once with "FELDZUGROSS" and hands out its last
// allocated element, so a runaway index can never write outside the block.
// The instances of the system and their limits:
//
//   DynArray<char*>           null      65536   (TextFeld)
//   DynArray<WertePaar*> ...  null      65536   (pair lists; pointers are not owned)
//   DynArray<std::uint16_t>   0        131072   (Tabulator stops)
//   DynArray<unsigned char>   given    262144   (search patterns; sized constructor)
//   DynArray<String>          "0"       65536   (procedure parameters)
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/Meldung.h"
#include "foundation/String.h"
#include "foundation/Typen.h"

// Default value and element limit of one instance.
template <class T>
struct DynArrayArt {
    static constexpr std::int32_t maximum = 65536;
    static T vorgabe() { return T(); }
};
template <>
struct DynArrayArt<std::uint16_t> {
    static constexpr std::int32_t maximum = 131072;
    static std::uint16_t vorgabe() { return 0; }
};
template <>
struct DynArrayArt<unsigned char> {
    static constexpr std::int32_t maximum = 262144;
    static unsigned char vorgabe() { return 0; }
};
template <>
struct DynArrayArt<String> {
    static constexpr std::int32_t maximum = 65536;
    // An element that was never set reads as 0, which the parameter handling
    // of procedures expects.
    static String vorgabe() { return String("0"); }
};

template <class T>
class DynArray {
public:
    DynArray() : vorgabe_(DynArrayArt<T>::vorgabe()), maximum_(DynArrayArt<T>::maximum) {}

    // Allocates `groesse` elements at once, all `vorgabe`, with basis and
    // obergrenze 0. Sizes above the limit warn and use the limit.
    DynArray(std::int32_t groesse, const T& vorgabe) : vorgabe_(vorgabe), maximum_(DynArrayArt<T>::maximum) {
        if (groesse > maximum_) {
            melde("FELDZUGROSS", "DynArray::DynArray()", String(static_cast<dataInteger>(groesse)), 'W');
            gewarnt_ = 1;
            groesse = maximum_;
        }
        if (groesse > 0) feld_.assign(static_cast<std::size_t>(groesse), vorgabe_);
    }

    DynArray(const DynArray&) = default;
    DynArray& operator=(const DynArray&) = default;
    DynArray(DynArray&&) noexcept = default;
    DynArray& operator=(DynArray&&) noexcept = default;

    // Reference to the element at `index`; creates it (and everything
    // between it and the present block) if needed. Out of bounds: the last
    // allocated element.
    T& operator[](std::int32_t index);

    void setzeVorgabe(const T& wert) { vorgabe_ = wert; }
    const T& liefereVorgabe() const { return vorgabe_; }

    std::int32_t anzahl() const { return static_cast<std::int32_t>(feld_.size()); }
    std::int32_t basis() const { return basis_; }
    std::int32_t obergrenze() const { return obergrenze_; }
    // Elements in use: obergrenze - basis.
    std::int32_t benutzt() const { return obergrenze_ - basis_; }
    std::int32_t gewarnt() const { return gewarnt_; }
    std::int32_t maximum() const { return maximum_; }

private:
    void warne(const char* funktion, std::int64_t wert) {
        if (gewarnt_) return;
        melde("FELDZUGROSS", funktion, String(std::to_string(wert)), 'W');
        gewarnt_ = 1;
    }

    std::vector<T> feld_;
    T vorgabe_;
    std::int32_t basis_ = 0;
    std::int32_t obergrenze_ = 0;
    std::int32_t gewarnt_ = 0;
    std::int32_t maximum_;
};

template <class T>
T& DynArray<T>::operator[](std::int32_t index) {
    // The upper mark moves even when the access then fails. Held in 32 bits,
    // so it saturates at the largest index.
    const std::int64_t oben = static_cast<std::int64_t>(index) + 1;
    if (oben > obergrenze_) obergrenze_ = static_cast<std::int32_t>(oben > INT32_MAX ? INT32_MAX : oben);

    if (feld_.empty()) {
        feld_.assign(1, vorgabe_);
        basis_ = index;
        return feld_[0];
    }

    const std::int64_t anzahl = static_cast<std::int64_t>(feld_.size());
    const std::int64_t off = static_cast<std::int64_t>(index) - basis_;
    if (off > anzahl - 1) {
        if (off <= maximum_ - 1) {
            std::int64_t neu = anzahl;
            while (neu - 1 < off) neu *= 2;
            if (neu > maximum_) neu = maximum_;
            feld_.resize(static_cast<std::size_t>(neu), vorgabe_);
        } else {
            warne("DynArray::[]+", off);
            return feld_.back();
        }
    } else if (off < 0) {
        // Exact growth without doubling, and one element short of the upward
        // limit: both intended.
        const std::int64_t neu = anzahl - off;
        if (neu <= maximum_ - 1) {
            feld_.insert(feld_.begin(), static_cast<std::size_t>(-off), vorgabe_);
            basis_ = index;
            return feld_[0];
        }
        warne("DynArray::[]-", neu);
        return feld_.back();
    }
    return feld_[static_cast<std::size_t>(off)];
}

// Owned copies of byte texts, appended in order, with a cursor for
// iteration. Copies are not allowed: the texts are owned.
class TextFeld {
public:
    TextFeld() = default;
    TextFeld(const TextFeld&) = delete;
    TextFeld& operator=(const TextFeld&) = delete;
    virtual ~TextFeld() { leere(); }

    // Stores a private copy at the next free index; returns that index.
    std::int32_t haengeAn(const char* text);
    // Frees the text at `i` and leaves a null entry.
    void gibFrei(std::int32_t i);
    // Cursor to 0; 1 if there is an entry.
    std::int32_t erstes();
    // The current text, then moves on. After the last entry it hands out
    // that entry once more with `hatAktuelle` cleared.
    const char* naechstes();
    std::int32_t hatAktuelle() const { return hatAktuelle_; }
    // The entry at `i`; null when i is negative or not below the fill mark.
    const char* text(std::int32_t i) const;
    std::int32_t fuellstand() const { return fuellstand_; }
    // Frees all texts and resets all counters.
    void leere();

private:
    mutable DynArray<char*> feld_;  // [] is its only access, also for reading
    std::int32_t fuellstand_ = 0;
    std::int32_t position_ = 0;
    const char* aktuelle_ = nullptr;
    std::int32_t hatAktuelle_ = 0;
};
