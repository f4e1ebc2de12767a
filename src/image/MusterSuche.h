// The pattern search over an image, and the reading of search texts.
//
// The walk tries start addresses one after the other, but behind a start
// whose first byte matched and whose rest did not it goes on two bytes
// further (see MusterSuche). Deciding each start by comparing byte after
// byte would cost pattern length times image size; instead a prefix
// automaton runs over the bytes once and tells, when a start's last byte has
// been read, whether the whole pattern stands there.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/String.h"
#include "foundation/Typen.h"

class Eprom;

// The walk over the regions from `von` to `bis`, one match per call of
// `naechster`; the next call goes on at the byte behind the match.
//
// Per region it keeps the walk position `s_` (the start being tried) and the
// read position `x_` of the automaton, which is at most one pattern length
// ahead. A start is decided once its last byte has been read: a match if the
// automaton then holds the whole pattern. The comparison of a start does not
// stop at the region's end; the bytes behind it (up to one pattern length,
// never past `bis`) are read as the image gives them, 0 in a gap.
class MusterSuche {
public:
    MusterSuche(Eprom& eprom, const std::vector<std::uint8_t>& muster, adrInteger von, adrInteger bis);
    // 1 and the address of the next match, or 0 when the walk has ended.
    int naechster(adrInteger& treffer);

private:
    // Reads the bytes of an image at rising addresses as liefereByte without a
    // report would, a stretch at a time. In a free image a read in a 16 MiB
    // window that has no region yet creates one; such a window is read only when
    // asked for, never ahead.
    class BildLeser {
    public:
        explicit BildLeser(Eprom& e);
        // The bytes from `adr` on: a pointer to the byte at `adr`, with `letzte`
        // the address of the last byte that follows it in memory. Bytes up to
        // `grenze` (not below `adr`) may be read ahead.
        const std::uint8_t* zeige(adrInteger adr, adrInteger grenze, std::uint64_t& letzte);
        // True if reading `adr` would change the image.
        bool veraendert(adrInteger adr) const;

    private:
        Eprom& eprom_;
        bool frei_;
        static constexpr std::size_t blockGroesse = 65536;
        std::vector<std::uint8_t> nullen_ =
            std::vector<std::uint8_t>(blockGroesse, 0);  // what storage-less stretches read
    };

    bool neueZeile();
    bool laufeZeile(adrInteger& treffer);
    void weiter();
    bool liestX();

    Eprom& eprom_;
    BildLeser leser_;
    std::vector<std::uint8_t> muster_;
    std::size_t laenge_;
    std::vector<std::size_t> rand_;   // rand_[i]: longest border of the first i bytes
    std::vector<std::uint8_t> ring_;  // at least the last `laenge_` bytes read, by address
    std::uint64_t ringMaske_ = 0;     // ring size less 1, a power of two
    std::uint64_t bis_;
    std::uint64_t s_;                      // the start being tried
    std::uint64_t x_ = 0;                  // the next byte for the automaton
    std::uint64_t g_ = 0;                  // last start of the present region
    std::uint64_t textEnde_ = 0;           // last byte that may be read for it
    std::size_t q_ = 0;                    // automaton: length of the prefix read
    const std::uint8_t* block_ = nullptr;  // the reader's bytes blockAnf_ .. blockEnde_
    std::uint64_t blockAnf_ = 0, blockEnde_ = 0;
    bool inZeile_ = false;
    bool fertig_ = false;
};

// The bytes of a search or check text; false if it is invalid or gives
// none. The text loses its white space at the end, also in text form.
bool leseMuster(String& text, int hex, std::vector<std::uint8_t>& bytes);
