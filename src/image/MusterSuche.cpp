#include "image/MusterSuche.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <sstream>

#include "image/Eprom.h"

// ---------------------------------------------------------------------------
// BildLeser

MusterSuche::BildLeser::BildLeser(Eprom& e) : eprom_(e), frei_(e.istFrei() != 0) {}

bool MusterSuche::BildLeser::veraendert(adrInteger adr) const {
    if (!frei_) return false;
    int code;
    adrInteger grenze;
    return eprom_.liefereSegment(0).findeBereich(adr, code, grenze) == nullptr;
}

const std::uint8_t* MusterSuche::BildLeser::zeige(adrInteger adr, adrInteger grenze, std::uint64_t& letzte) {
    // A stretch never crosses a window of a free image, so the read leaves
    // behind at most the region of the window it starts in.
    EpromStrecke strecke;
    eprom_.liefereStrecke(adr, std::max(adr, grenze), strecke);
    eprom_.vermerkeLesen(adr, strecke.bis);
    letzte = strecke.bis;
    if (strecke.imEprom && strecke.daten) return strecke.daten;
    letzte = std::min<std::uint64_t>(letzte, std::uint64_t(adr) + nullen_.size() - 1);
    return nullen_.data();
}

// ---------------------------------------------------------------------------
// MusterSuche

MusterSuche::MusterSuche(Eprom& e, const std::vector<std::uint8_t>& m, adrInteger v, adrInteger b)
    : eprom_(e), leser_(e), muster_(m), laenge_(m.size()), bis_(b), s_(v) {
    if (laenge_ == 0) {
        fertig_ = true;
        return;
    }
    rand_.assign(laenge_ + 1, 0);
    for (std::size_t i = 1, k = 0; i < laenge_; ++i) {
        while (k > 0 && muster_[i] != muster_[k]) k = rand_[k];
        if (muster_[i] == muster_[k]) ++k;
        rand_[i + 1] = k;
    }
    std::size_t groesse = 1;
    while (groesse < laenge_) groesse *= 2;
    ring_.assign(groesse, 0);
    ringMaske_ = groesse - 1;
}

bool MusterSuche::neueZeile() {
    if (s_ > bis_) return false;
    adrInteger von, ende;
    if (!eprom_.liefereBereich(static_cast<adrInteger>(s_), von, ende)) return false;
    s_ = von;
    if (s_ > bis_) return false;
    g_ = std::min<std::uint64_t>(bis_, ende);
    textEnde_ = std::min<std::uint64_t>(bis_, g_ + laenge_ - 1);
    x_ = s_;
    q_ = 0;
    return true;
}

void MusterSuche::weiter() {
    // The same step as in laufeZeile, two bytes behind a first byte that
    // matched; intended.
    s_ += ring_[s_ & ringMaske_] == muster_[0] ? 2 : 1;
}

bool MusterSuche::liestX() {
    // The starts whose comparison would reach x are those whose bytes up to
    // x - 1 are a prefix of the pattern: the prefix lengths of the automaton
    // state and of its borders.
    std::vector<char> prefix(laenge_ + 1, 0);
    for (std::size_t p = q_; p > 0; p = rand_[p]) prefix[p] = 1;
    while (s_ <= g_) {
        const std::uint64_t p = x_ - s_;
        if (p <= laenge_ && prefix[p]) return true;
        weiter();
    }
    return false;
}

int MusterSuche::naechster(adrInteger& treffer) {
    while (!fertig_) {
        if (!inZeile_) {
            if (!neueZeile()) break;
            inZeile_ = true;
        }
        if (laufeZeile(treffer)) return 1;
        inZeile_ = false;
    }
    fertig_ = true;
    return 0;
}

bool MusterSuche::laufeZeile(adrInteger& treffer) {
    // The state in locals: the ring's byte stores could otherwise alias
    // every member and force reloads per byte.
    const std::uint8_t* const m = muster_.data();
    const std::size_t* const r = rand_.data();
    std::uint8_t* const ri = ring_.data();
    const std::uint64_t maske = ringMaske_;
    const std::uint64_t lang = laenge_;
    const std::uint64_t letzterStart = g_;
    const std::uint64_t ende = textEnde_;
    const std::uint8_t erstes = m[0];
    std::uint64_t sl = s_, xl = x_;
    std::size_t ql = q_;
    const std::uint8_t* block = this->block_;
    std::uint64_t blockAnf = this->blockAnf_, blockEnde = this->blockEnde_;
    bool gefunden = false;

    while (sl <= letzterStart) {
        // With the automaton empty, no start before the read position can
        // match: the bytes read for each are no prefix of the pattern. Their
        // steps end exactly on the read position, as the byte before it is
        // not the pattern's first. From there each start whose whole
        // comparison lies in the block is decided in place: memchr finds the
        // next start on the pattern's first byte (those before fail and step
        // by one), memcmp decides that start.
        if (ql == 0 && block != nullptr && xl >= blockAnf && xl <= blockEnde) {
            sl = std::max(sl, xl);
            if (sl > letzterStart) break;
            const std::uint64_t hoch = std::min(blockEnde, ende);
            const std::uint64_t grenzeStart = std::min(letzterStart, hoch);
            bool treffend = false;
            while (sl <= grenzeStart) {
                const std::uint8_t* q = block + (sl - blockAnf);
                const void* f = std::memchr(q, erstes, grenzeStart - sl + 1);
                if (f == nullptr) {
                    sl = grenzeStart + 1;
                    break;
                }
                const std::uint64_t p =
                    sl + static_cast<std::uint64_t>(static_cast<const std::uint8_t*>(f) - q);
                sl = p;
                if (p + lang - 1 > hoch) break;
                if (std::memcmp(block + (p - blockAnf) + 1, m + 1, lang - 1) == 0) {
                    treffend = true;
                    break;
                }
                sl = p + 2;
            }
            xl = sl;
            if (treffend) {
                treffer = static_cast<adrInteger>(sl);
                ++sl;
                xl = sl;
                gefunden = true;
                break;
            }
            if (sl > letzterStart) break;
        }
        bool zeileAus = false;
        for (;;) {
            if (xl > std::min(sl + lang - 1, ende)) break;
            // A new region may begin before the block read for the
            // comparisons at the end of the one before.
            if (block == nullptr || xl < blockAnf || xl > blockEnde) {
                // Behind the region a read may create a region in a free
                // image; such a byte is read only if a start's comparison
                // gets that far.
                if (xl > letzterStart && leser_.veraendert(static_cast<adrInteger>(xl))) {
                    s_ = sl;
                    x_ = xl;
                    q_ = ql;
                    const bool liest = liestX();
                    sl = s_;
                    if (!liest) {
                        zeileAus = true;
                        break;
                    }
                }
                block = leser_.zeige(static_cast<adrInteger>(xl), static_cast<adrInteger>(ende), blockEnde);
                blockAnf = xl;
            }
            const std::uint8_t c = block[xl - blockAnf];
            ri[xl & maske] = c;
            while (ql > 0 && (ql == lang || m[ql] != c)) ql = r[ql];
            if (m[ql] == c) ++ql;
            ++xl;
        }
        if (zeileAus) break;
        if (sl + lang - 1 <= ende && ql == lang) {
            treffer = static_cast<adrInteger>(sl);
            ++sl;
            gefunden = true;
            break;
        }
        // Behind a start whose first byte matched the walk goes on two bytes
        // further, so that a match beginning at the next byte is missed: in
        // 41 41 41 42 the pattern 41 41 42 is not found. Intended.
        sl += ri[sl & maske] == erstes ? 2 : 1;
    }
    s_ = sl;
    x_ = xl;
    q_ = ql;
    this->block_ = block;
    this->blockAnf_ = blockAnf;
    this->blockEnde_ = blockEnde;
    return gefunden;
}

// ---------------------------------------------------------------------------
// Search texts

bool leseMuster(String& text, int hex, std::vector<std::uint8_t>& bytes) {
    bytes.clear();
    text.entferneHinten();
    if (!hex) {
        for (char c : text.str()) bytes.push_back(static_cast<std::uint8_t>(c));
        return !bytes.empty();
    }
    std::istringstream strom(text.str());
    for (;;) {
        strom >> std::ws;
        if (strom.eof()) break;
        unsigned long long wert = 0;
        strom >> std::hex >> wert;
        if (strom.fail() || wert > 0xFF) return false;
        bytes.push_back(static_cast<std::uint8_t>(wert));
    }
    return !bytes.empty();
}
