#include "foundation/LongDynArray.h"

#include <algorithm>
#include <cstring>

#include <sys/mman.h>

#include "foundation/Meldung.h"
#include "foundation/String.h"

namespace {

std::unique_ptr<std::uint8_t[]> neuerBlock(std::uint32_t groesse) {
    std::unique_ptr<std::uint8_t[]> block(new std::uint8_t[groesse]);
#ifdef MADV_POPULATE_WRITE
    // A full chunk is written at once anyway: map its pages in one call
    // instead of one fault per page. A kernel without it says no; fine.
    if (groesse >= 8192) {
        const auto anf = (reinterpret_cast<std::uintptr_t>(block.get()) + 4095) & ~std::uintptr_t(4095);
        const auto end = (reinterpret_cast<std::uintptr_t>(block.get()) + groesse) & ~std::uintptr_t(4095);
        if (end > anf) madvise(reinterpret_cast<void*>(anf), end - anf, MADV_POPULATE_WRITE);
    }
#endif
    return block;
}

// Offset of `index` from `basis` as the signed distance on the address ring.
std::int32_t abstand(std::int32_t index, std::int32_t basis) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis));
}

}  // namespace

LongDynArray::LongDynArray(const LongDynArray& quelle)
    : einheit_(quelle.einheit_),
      vorgabe_(quelle.vorgabe_),
      anzahl_(quelle.anzahl_),
      basis_(quelle.basis_),
      gewarnt_(quelle.gewarnt_) {
    std::uint32_t bloecke = static_cast<std::uint32_t>(quelle.bloecke_.size());
    bloecke_.resize(bloecke);
    for (std::uint32_t b = 0; b < bloecke; ++b) {
        // A frozen source hands on its size but none of its bytes.
        if (gewarnt_) {
            einheit_[b] = 0;
        } else if (quelle.bloecke_[b]) {
            std::uint32_t groesse = blockLaenge(b);
            bloecke_[b] = neuerBlock(groesse);
            std::memcpy(bloecke_[b].get(), quelle.bloecke_[b].get(), groesse);
        }
    }
}

const std::uint8_t* LongDynArray::einheitsBlock(std::uint8_t wert) {
    static std::unique_ptr<std::uint8_t[]> bloecke[256];
    auto& b = bloecke[wert];
    if (!b) {
        b.reset(new std::uint8_t[blockGroesse]);
        std::memset(b.get(), wert, blockGroesse);
    }
    return b.get();
}

std::uint8_t* LongDynArray::macheEcht(std::uint32_t block) {
    std::uint32_t groesse = blockLaenge(block);
    bloecke_[block] = neuerBlock(groesse);
    std::memset(bloecke_[block].get(), einheit_[block], groesse);
    return bloecke_[block].get();
}

void LongDynArray::setze(std::int32_t index, const std::uint8_t* quelle, std::uint32_t anzahl) {
    std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
    while (anzahl > 0) {
        std::uint32_t block = off / blockGroesse, innen = off % blockGroesse;
        std::uint32_t groesse = blockLaenge(block);
        std::uint32_t k = std::min(groesse - innen, anzahl);
        std::uint8_t* p;
        if (!bloecke_[block] && k == groesse)
            p = (bloecke_[block] = neuerBlock(groesse)).get();  // no need to set it first
        else
            p = bereiterBlock(block) + innen;
        std::memcpy(p, quelle, k);
        quelle += k, off += k, anzahl -= k;
    }
}

void LongDynArray::zaehleHoch(std::int32_t index, std::uint32_t anzahl) {
    std::uint32_t off = static_cast<std::uint32_t>(index) - static_cast<std::uint32_t>(basis_);
    while (anzahl > 0) {
        std::uint32_t block = off / blockGroesse, innen = off % blockGroesse;
        std::uint32_t k = std::min(blockLaenge(block) - innen, anzahl);
        if (!bloecke_[block] && k == blockLaenge(block)) {
            einheit_[block] = static_cast<std::uint8_t>(einheit_[block] + (einheit_[block] != 255));
        } else {
            std::uint8_t* z = bereiterBlock(block) + innen;
            for (std::uint32_t j = 0; j < k; ++j) z[j] = static_cast<std::uint8_t>(z[j] + (z[j] != 255));
        }
        off += k, anzahl -= k;
    }
}

LongDynArray& LongDynArray::operator=(const LongDynArray& quelle) {
    if (this != &quelle) {
        LongDynArray kopie(quelle);
        *this = std::move(kopie);
    }
    return *this;
}

void LongDynArray::warne(const char* funktion, std::int64_t detail) {
    if (!gewarnt_) {
        String text(std::to_string(detail));
        melde("FELDZUGROSS", funktion, text, 'W');
    }
    gewarnt_ = 1;
}

std::uint8_t& LongDynArray::letztes() {
    std::int32_t rest;
    std::uint32_t index = static_cast<std::uint32_t>(basis_) + static_cast<std::uint32_t>(anzahl_ - 1);
    return zeiger(static_cast<std::int32_t>(index), rest)[0];
}

bool LongDynArray::kannUmfassen(std::int32_t von, std::int32_t bis) const {
    if (gewarnt_) return false;
    std::int64_t laenge = abstand(bis, von);
    if (laenge < 0) return false;
    std::int64_t unten = 0, oben = laenge;
    if (anzahl_ > 0) {
        std::int64_t offVon = abstand(von, basis_);
        unten = std::min<std::int64_t>(0, offVon);
        oben = std::max<std::int64_t>(anzahl_ - 1, offVon + laenge);
    }
    // The stricter of the two limits: downward growth stops one short.
    return oben - unten + 1 <= maxAnzahl - 1;
}

void LongDynArray::wachseAufwaerts(std::int64_t off) {
    std::int64_t groesse = anzahl_;
    while (groesse - 1 < off) {
        if (groesse < blockGroesse)
            groesse *= 2;
        else
            groesse = (groesse / blockGroesse + 1) * blockGroesse;
    }
    groesse = std::min(groesse, maxAnzahl);

    std::uint32_t volle = static_cast<std::uint32_t>(anzahl_ / blockGroesse);
    std::uint32_t alteBloecke = static_cast<std::uint32_t>(bloecke_.size());
    std::uint32_t neueBloecke = static_cast<std::uint32_t>((groesse + blockGroesse - 1) / blockGroesse);
    std::int32_t alteAnzahl = anzahl_;
    // The old partial chunk, if any, grows into a full one: real or uniform.
    const bool teil = volle < alteBloecke && !gewarnt_;
    std::unique_ptr<std::uint8_t[]> altTeil;
    std::uint8_t altWert = vorgabe_;
    std::uint32_t altTeilLaenge = 0;
    if (teil) {
        altTeil = std::move(bloecke_[volle]);
        altWert = einheit_[volle];
        altTeilLaenge = static_cast<std::uint32_t>(alteAnzahl - std::int64_t(volle) * blockGroesse);
    }
    anzahl_ = static_cast<std::int32_t>(groesse);
    bloecke_.resize(neueBloecke);
    einheit_.resize(neueBloecke);
    for (std::uint32_t b = volle; b < neueBloecke; ++b) {
        bloecke_[b].reset();
        einheit_[b] = vorgabe_;
    }
    if (teil && (altTeil || altWert != vorgabe_) && volle < neueBloecke) {
        std::uint32_t laenge = blockLaenge(volle);
        bloecke_[volle] = neuerBlock(laenge);
        std::uint8_t* p = bloecke_[volle].get();
        if (altTeil)
            std::memcpy(p, altTeil.get(), altTeilLaenge);
        else
            std::memset(p, altWert, altTeilLaenge);
        std::memset(p + altTeilLaenge, vorgabe_, laenge - altTeilLaenge);
    }
}

void LongDynArray::wachseAbwaerts(std::int32_t index, std::int64_t neueAnzahl) {
    std::vector<std::unique_ptr<std::uint8_t[]>> alt;
    std::vector<std::uint8_t> altEinheit;
    alt.swap(bloecke_);
    altEinheit.swap(einheit_);
    std::int32_t alteAnzahl = anzahl_;
    std::uint32_t vorn = static_cast<std::uint32_t>(neueAnzahl - alteAnzahl);
    anzahl_ = static_cast<std::int32_t>(neueAnzahl);
    basis_ = index;
    std::uint32_t bloecke = static_cast<std::uint32_t>((neueAnzahl + blockGroesse - 1) / blockGroesse);
    bloecke_.resize(bloecke);
    einheit_.assign(bloecke, vorgabe_);
    if (gewarnt_) return;
    // Every old byte moves `vorn` places up; copy chunk piece by chunk piece.
    std::uint32_t quelle = 0, gesamt = static_cast<std::uint32_t>(alteAnzahl);
    while (quelle < gesamt) {
        std::uint32_t qb = quelle / blockGroesse, qi = quelle % blockGroesse;
        std::uint32_t ziel = quelle + vorn;
        std::uint32_t zb = ziel / blockGroesse, zi = ziel % blockGroesse;
        std::uint32_t n = std::min<std::uint32_t>(blockGroesse - qi, blockGroesse - zi);
        n = std::min(n, gesamt - quelle);
        const std::uint8_t* q = alt[qb] ? alt[qb].get() : einheitsBlock(altEinheit[qb]);
        if (alt[qb] || altEinheit[qb] != einheit_[zb] || bloecke_[zb])
            std::memcpy(bereiterBlock(zb) + zi, q + qi, n);
        quelle += n;
    }
}

std::uint8_t& LongDynArray::zugriff(std::int32_t index) {
    wachse(index);
    if (gewarnt_) return letztes();
    std::int32_t rest;
    return zeiger(index, rest)[0];
}

void LongDynArray::wachse(std::int32_t index) {
    if (anzahl_ == 0) {
        anzahl_ = 1;
        basis_ = index;
        bloecke_.clear();
        bloecke_.resize(1);
        einheit_.assign(1, gewarnt_ ? 0 : vorgabe_);
    } else {
        std::int32_t off = abstand(index, basis_);
        if (off > anzahl_ - 1) {
            if (off <= maxAnzahl - 1)
                wachseAufwaerts(off);
            else
                warne("LongDynArray::[]+", off);
        } else if (off < 0) {
            std::int64_t neueAnzahl = std::int64_t(anzahl_) - off;
            if (neueAnzahl <= maxAnzahl - 1)
                wachseAbwaerts(index, neueAnzahl);
            else
                warne("LongDynArray::[]-", neueAnzahl);
        }
    }
}
