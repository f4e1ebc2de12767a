#include "image/Eprom.h"

#include <algorithm>
#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <utility>

#include "foundation/Hex.h"
#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"

namespace {

constexpr adrInteger fensterMaske = 0xFFFFFF;  // offset inside a 16 MiB window

// The arrays are indexed by the address taken as a signed 32-bit number.
inline std::int32_t idx(adrInteger adr) { return static_cast<std::int32_t>(adr); }

// Copies one array's stored elements of anf..end from `quelle` to `ziel`.
// Only what the source holds is copied: elsewhere it reads as its default,
// which a fresh target holds already. A frozen source holds nothing usable.
void kopiereFeld(const LongDynArray& quelle, LongDynArray& ziel, adrInteger anf, adrInteger end) {
    if (anf > end || quelle.istGewarnt() || quelle.liefereAnzahl() == 0) return;
    adrInteger a = anf;
    for (;;) {
        std::uint64_t bisEnde = std::uint64_t(end) - a + 1;
        if (quelle.enthaelt(idx(a))) {
            std::int32_t rest;
            const std::uint8_t* q = quelle.zeiger(idx(a), rest);
            std::uint32_t n = static_cast<std::uint32_t>(std::min<std::uint64_t>(rest, bisEnde));
            std::uint32_t i = 0;
            while (i < n) {
                adrInteger z = a + i;
                if (ziel.enthaelt(idx(z))) {
                    std::int32_t zrest;
                    std::uint8_t* p = ziel.zeiger(idx(z), zrest);
                    std::uint32_t k = std::min<std::uint32_t>(static_cast<std::uint32_t>(zrest), n - i);
                    std::memcpy(p, q + i, k);
                    i += k;
                } else {
                    ziel[idx(z)] = q[i];
                    ++i;
                }
            }
            if (n == bisEnde) return;
            a += n;
        } else {
            // Jump to where the source's storage begins, if inside the range.
            adrInteger sprung = static_cast<adrInteger>(quelle.liefereBasis()) - a;
            if (sprung == 0 || sprung >= bisEnde) return;
            a += sprung;
        }
    }
}

void kopiereBereich(EpromBereich& quelle, EpromBereich& ziel, adrInteger anf, adrInteger end) {
    kopiereFeld(quelle.daten, ziel.daten, anf, end);
    kopiereFeld(quelle.anzSchr, ziel.anzSchr, anf, end);
}

// Exchanges the elements of the pairs lo/lo+1 ... hi-1/hi (lo even, hi odd),
// chunk span by chunk span; a pair across two chunks goes element-wise.
void tauschePaare(LongDynArray& f, adrInteger lo, adrInteger hi) {
    adrInteger a = lo;
    for (;;) {
        std::uint64_t paare = 0;
        if (f.enthaelt(idx(a))) {
            std::int32_t rest;
            std::uint8_t wert;
            // Pairs of a uniform chunk are alike: exchanging them changes nothing.
            if (f.istEinheitlich(idx(a), wert)) {
                std::as_const(f).zeiger(idx(a), rest);
                paare = std::min<std::uint64_t>(static_cast<std::uint32_t>(rest) / 2,
                                                (std::uint64_t(hi) - a + 1) / 2);
            } else {
                std::uint8_t* p = f.zeiger(idx(a), rest);
                paare = std::min<std::uint64_t>(static_cast<std::uint32_t>(rest) / 2,
                                                (std::uint64_t(hi) - a + 1) / 2);
                for (std::uint64_t k = 0; k < paare; ++k) std::swap(p[2 * k], p[2 * k + 1]);
            }
        }
        if (paare == 0) {
            std::uint8_t x = f[idx(a)], y = f[idx(a + 1)];
            f[idx(a)] = y;
            f[idx(a + 1)] = x;
            // Frozen: every further pair is the last element with itself.
            if (f.istGewarnt()) return;
            paare = 1;
        }
        if (std::uint64_t(a) + 2 * paare - 1 == hi) return;
        a += static_cast<adrInteger>(2 * paare);
    }
}

// Makes both arrays of a fixed region span it at once.
void beruehre(EpromBereich& b) {
    b.daten.umfasse(idx(b.anfAdr), idx(b.endAdr));
    b.anzSchr.umfasse(idx(b.anfAdr), idx(b.endAdr));
}

}  // namespace

// ===================================================================
// EpromSegment
// ===================================================================

EpromSegment::EpromSegment() { bereiche.push_back(std::make_unique<EpromBereich>()); }

EpromSegment::EpromSegment(const EpromSegment& quelle) : alleErweiterbar_(quelle.alleErweiterbar_) {
    for (const auto& b : quelle.bereiche) bereiche.push_back(std::make_unique<EpromBereich>(*b));
}

void EpromSegment::aktualisiereModus() {
    alleErweiterbar_ =
        std::all_of(bereiche.begin(), bereiche.end(), [](const auto& b) { return b->erweiterbar == 1; });
}

EpromBereich* EpromSegment::sucheBereich(adrInteger adr, int& code) {
    if (!alleErweiterbar_) {
        for (auto& b : bereiche)
            if (b->anfAdr <= adr && adr <= b->endAdr) {
                code = fest;
                return b.get();
            }
        code = nichtImEprom;
        return nullptr;
    }
    if (adr <= fensterMaske) {
        // The low window always answers from the first region, whatever its bounds.
        code = freiUnten;
        return bereiche.front().get();
    }
    std::size_t i = 0;
    for (; i < bereiche.size(); ++i) {
        EpromBereich& b = *bereiche[i];
        if (b.basisAdr > adr) break;
        if (std::uint64_t(b.basisAdr) + fensterMaske >= adr) {
            code = freiOben;
            return &b;
        }
    }
    auto neu = std::make_unique<EpromBereich>(0xFFFFFFFF, 0, adr & ~fensterMaske, 1);
    EpromBereich* p = neu.get();
    bereiche.insert(bereiche.begin() + static_cast<std::ptrdiff_t>(i), std::move(neu));
    code = freiOben;
    return p;
}

EpromBereich* EpromSegment::findeBereich(adrInteger adr, int& code, adrInteger& grenze) const {
    if (!alleErweiterbar_) {
        adrInteger g = 0xFFFFFFFF;
        for (const auto& b : bereiche) {
            if (b->anfAdr <= adr && adr <= b->endAdr) {
                code = fest;
                grenze = std::min(g, b->endAdr);
                return b.get();
            }
            // An earlier region that starts further up would win the lookup there.
            if (b->anfAdr > adr) g = std::min(g, b->anfAdr - 1);
        }
        code = nichtImEprom;
        return nullptr;
    }
    if (adr <= fensterMaske) {
        code = freiUnten;
        grenze = fensterMaske;
        return bereiche.front().get();
    }
    for (const auto& b : bereiche) {
        if (b->basisAdr > adr) return nullptr;
        std::uint64_t fensterEnde = std::uint64_t(b->basisAdr) + fensterMaske;
        if (fensterEnde >= adr) {
            code = freiOben;
            grenze = static_cast<adrInteger>(std::min<std::uint64_t>(fensterEnde, 0xFFFFFFFF));
            return b.get();
        }
    }
    return nullptr;
}

template <class Feld>
int EpromSegment::liesFeld(adrInteger adr, std::uint8_t& wert, Feld EpromBereich::*feld) {
    int code;
    EpromBereich* b = sucheBereich(adr, code);
    if (code == nichtImEprom) return nichtImEprom;
    // After one access beyond the array's limit the whole region is out.
    if ((b->*feld).istGewarnt()) return nichtImEprom;
    wert = (b->*feld)[idx(adr)];
    return code;
}

int EpromSegment::liesDaten(adrInteger adr, std::uint8_t& byte) {
    return liesFeld(adr, byte, &EpromBereich::daten);
}

int EpromSegment::liesAnzSchr(adrInteger adr, std::uint8_t& anz) {
    return liesFeld(adr, anz, &EpromBereich::anzSchr);
}

void EpromSegment::definiere(adrInteger von, adrInteger bis) {
    for (const auto& b : bereiche)
        if (b->anfAdr == von && b->endAdr == bis) return;

    EpromBereich* links = nullptr;   // von falls into it, behind its start
    EpromBereich* rechts = nullptr;  // bis falls into it, before its end
    for (const auto& b : bereiche)
        if (b->anfAdr < von && von <= b->endAdr) {
            links = b.get();
            break;
        }
    for (const auto& b : bereiche)
        if (b->anfAdr <= bis && bis < b->endAdr) {
            rechts = b.get();
            break;
        }

    auto neu = std::make_unique<EpromBereich>(von, bis, 0, 0);
    beruehre(*neu);
    std::unique_ptr<EpromBereich> unten, oben;
    if (links) {
        unten = std::make_unique<EpromBereich>(links->anfAdr, von - 1, 0, 0);
        beruehre(*unten);
        kopiereBereich(*links, *unten, links->anfAdr, von - 1);
        kopiereBereich(*links, *neu, von, std::min(links->endAdr, bis));
    }
    if (rechts) {
        oben = std::make_unique<EpromBereich>(bis + 1, rechts->endAdr, 0, 0);
        beruehre(*oben);
        kopiereBereich(*rechts, *oben, bis + 1, rechts->endAdr);
        kopiereBereich(*rechts, *neu, std::max(rechts->anfAdr, von), bis);
    }

    std::vector<std::unique_ptr<EpromBereich>> liste;
    for (auto& b : bereiche) {
        if (b.get() == links) {
            liste.push_back(std::move(unten));
        } else if (b.get() == rechts) {
            liste.push_back(std::move(oben));
        } else if (b->anfAdr >= von && b->endAdr <= bis) {
            // Swallowed by the new region; the empty default region copies nothing.
            kopiereBereich(*b, *neu, b->anfAdr, b->endAdr);
        } else {
            liste.push_back(std::move(b));
        }
    }
    if (links && links == rechts) liste.push_back(std::move(oben));
    liste.push_back(std::move(neu));
    bereiche.swap(liste);  // the old list, with links and rechts, dies here
    if (bereiche.size() > 1)
        for (auto& b : bereiche) b->erweiterbar = 0;
    aktualisiereModus();
}

int EpromSegment::loesche(adrInteger adr) {
    for (auto it = bereiche.begin(); it != bereiche.end(); ++it) {
        if ((*it)->anfAdr <= adr && adr <= (*it)->endAdr) {
            bereiche.erase(it);
            if (bereiche.empty()) bereiche.push_back(std::make_unique<EpromBereich>());
            aktualisiereModus();
            return 1;
        }
    }
    return 0;
}

adrInteger EpromSegment::liefereAnfAdr() const {
    adrInteger a = 0xFFFFFFFF;
    for (const auto& b : bereiche) a = std::min(a, b->anfAdr);
    return a;
}

adrInteger EpromSegment::liefereEndAdr() const {
    adrInteger e = 0;
    for (const auto& b : bereiche) e = std::max(e, b->endAdr);
    return e;
}

// ===================================================================
// Eprom: construction and table
// ===================================================================

Eprom::Eprom() {
    segmente_.push_back(std::make_unique<EpromSegment>());
    baueTabelle();
}

Eprom::Eprom(const Eprom& quelle) {
    for (const auto& s : quelle.segmente_) segmente_.push_back(std::make_unique<EpromSegment>(*s));
    baueTabelle();
}

Eprom& Eprom::operator=(const Eprom& quelle) {
    if (this != &quelle) {
        std::vector<std::unique_ptr<EpromSegment>> kopie;
        for (const auto& s : quelle.segmente_) kopie.push_back(std::make_unique<EpromSegment>(*s));
        segmente_.swap(kopie);
        baueTabelle();
    }
    return *this;
}

Eprom::~Eprom() = default;

void Eprom::baueTabelle() {
    anzBereiche_ = 0;
    for (const auto& s : segmente_) anzBereiche_ += s->anzahlBereiche();
    bereiche_.clear();
    bereiche_.reserve(static_cast<std::size_t>(anzBereiche_));
    for (std::size_t s = 0; s < segmente_.size(); ++s)
        for (const auto& b : segmente_[s]->bereiche)
            bereiche_.push_back({static_cast<std::int32_t>(s), b->anfAdr, b->endAdr});
    std::stable_sort(
        bereiche_.begin(), bereiche_.end(),
        [](const EpromBereichEintrag& x, const EpromBereichEintrag& y) { return x.anfAdr < y.anfAdr; });
}

void Eprom::nachSchreiben(int code, adrInteger von, adrInteger bis) {
    if (code == EpromSegment::freiUnten && !bereiche_.empty()) {
        // Only row 0 is patched, whichever region it stands for.
        bereiche_[0].anfAdr = std::min(bereiche_[0].anfAdr, von);
        bereiche_[0].endAdr = std::max(bereiche_[0].endAdr, bis);
    } else if (code == EpromSegment::freiOben) {
        baueTabelle();
    }
}

void Eprom::meldeNichtImEprom(const char* funktion, adrInteger adr) {
    std::ostringstream text;
    text << "Adr.: " << hex::text(adr) << "\n";
    anzeigeBereiche(text);
    Fehler("EPR-ADR-NOT-IN-EPROM", funktion, String(text.str()), 'E');
}

// ===================================================================
// Bytes
// ===================================================================

int Eprom::sucheByte(adrInteger adr, std::uint8_t& byte, int& segNr) {
    int ergebnis = EpromSegment::nichtImEprom;
    segNr = 0;
    for (std::size_t s = 0; s < segmente_.size(); ++s) {
        segNr = static_cast<int>(s);
        ergebnis = segmente_[s]->liesDaten(adr, byte);
        if (ergebnis == EpromSegment::fest) break;
    }
    return ergebnis;
}

int Eprom::schreibe(adrInteger adr, std::uint8_t wert, int meldung) {
    std::uint8_t alt = 0;
    int segNr;
    int code = sucheByte(adr, alt, segNr);
    if (code == EpromSegment::nichtImEprom) {
        if (meldung) meldeNichtImEprom("Eprom::setzeByteMit", adr);
        return 0;
    }
    EpromSegment& seg = *segmente_[static_cast<std::size_t>(segNr)];
    EpromBereich* b = seg.sucheBereich(adr, code);
    if (b->erweiterbar) {
        bool verschoben = false;
        if (adr < b->anfAdr) b->anfAdr = adr, verschoben = true;
        if (adr > b->endAdr) b->endAdr = adr, verschoben = true;
        if (verschoben && code != EpromSegment::freiOben) code = EpromSegment::freiUnten;
    }
    b->daten[idx(adr)] = wert;
    std::uint8_t& anz = b->anzSchr[idx(adr)];
    if (anz < 255) ++anz;
    nachSchreiben(code, adr, adr);
    return 1;
}

int Eprom::setzeByteMit(adrInteger adr, std::uint8_t wert) { return schreibe(adr, wert, 1); }
int Eprom::setzeByte(adrInteger adr, std::uint8_t wert) { return schreibe(adr, wert, 0); }

int Eprom::liefereByte(adrInteger adr, std::uint8_t& byte, int meldung) {
    vermerkeLesen(adr, adr);
    EpromStrecke s;
    liefereStrecke(adr, adr, s);
    byte = s.imEprom && s.daten ? *s.daten : 0;
    if (!s.imEprom && meldung) meldeNichtImEprom("Eprom::liefereByte", adr);
    return s.imEprom ? 1 : 0;
}

std::uint8_t Eprom::liefereAnzSchr(adrInteger adr) {
    vermerkeLesen(adr, adr);
    EpromStrecke s;
    liefereStrecke(adr, adr, s);
    return s.anzSchr ? *s.anzSchr : 0;
}

std::uint8_t Eprom::liefereAnzSchrMit(adrInteger adr) {
    vermerkeLesen(adr, adr);
    EpromStrecke s;
    liefereStrecke(adr, adr, s);
    if (!s.imEprom) meldeNichtImEprom("Eprom::liefereAnzSchrMit", adr);
    return s.anzSchr ? *s.anzSchr : 0;
}

// A stretch of one region written at once. Applies only where the byte-wise
// path would neither insert a region nor freeze an array, so that both end in
// the same state; gives 0 where the byte-wise path must run.
std::uint32_t Eprom::schreibeSpanne(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl) {
    if (segmente_.size() != 1) return 0;
    EpromSegment& seg = *segmente_[0];
    int code;
    adrInteger grenze;
    EpromBereich* b = seg.findeBereich(adr, code, grenze);
    if (!b) return 0;
    adrInteger letzte =
        static_cast<adrInteger>(std::min<std::uint64_t>(std::uint64_t(adr) + anzahl - 1, grenze));
    if (!b->daten.kannUmfassen(idx(adr), idx(letzte)) || !b->anzSchr.kannUmfassen(idx(adr), idx(letzte)))
        return 0;
    b->daten.umfasse(idx(adr), idx(letzte));
    b->anzSchr.umfasse(idx(adr), idx(letzte));
    std::uint32_t n = letzte - adr + 1;
    b->daten.setze(idx(adr), quelle, n);
    b->anzSchr.zaehleHoch(idx(adr), n);
    if (b->erweiterbar) {
        bool verschoben = false;
        if (adr < b->anfAdr) b->anfAdr = adr, verschoben = true;
        if (letzte > b->endAdr) b->endAdr = letzte, verschoben = true;
        if (verschoben && code != EpromSegment::freiOben) code = EpromSegment::freiUnten;
    }
    nachSchreiben(code, adr, letzte);
    return n;
}

std::uint32_t Eprom::setzeBytes(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl,
                                int meldung) {
    std::uint32_t fertig = 0;
    while (fertig < anzahl) {
        adrInteger a = adr + fertig;
        std::uint32_t k = schreibeSpanne(a, quelle + fertig, anzahl - fertig);
        if (k == 0) {
            if (!schreibe(a, quelle[fertig], meldung)) return fertig;
            k = 1;
        }
        fertig += k;
    }
    return fertig;
}

int Eprom::liefereBytes(adrInteger adr, std::uint32_t anzahl, std::uint8_t* ziel, std::uint8_t* zaehler) {
    if (anzahl == 0) return 1;
    int ok = 1;
    laufe(adr, adr + (anzahl - 1), [&](const EpromStrecke& s) {
        std::size_t i = s.von - adr, n = static_cast<std::size_t>(s.laenge());
        if (!s.imEprom) ok = 0;
        if (s.imEprom && s.daten)
            std::memcpy(ziel + i, s.daten, n);
        else
            std::memset(ziel + i, 0, n);
        if (zaehler) {
            if (s.anzSchr)
                std::memcpy(zaehler + i, s.anzSchr, n);
            else
                std::memset(zaehler + i, 0, n);
        }
        return true;
    });
    return ok;
}

// ===================================================================
// Stretch walk
// ===================================================================

const std::uint8_t* EpromLeser::lies(adrInteger adr, std::uint32_t anzahl, bool& ok) {
    ok = true;
    if (anzahl == 0) return nullptr;
    const std::uint64_t ende = std::uint64_t(adr) + anzahl - 1;
    if (ende <= 0xFFFFFFFF) {
        if (!hat_ || adr < strecke_.von || ende > strecke_.bis) {
            eprom_.liefereStrecke(adr, 0xFFFFFFFF, strecke_);
            hat_ = true;
        }
        // Stored bytes belong to a region: reading them leaves nothing behind.
        if (ende <= strecke_.bis && strecke_.imEprom && strecke_.daten)
            return strecke_.daten + (adr - strecke_.von);
    }
    puffer_.resize(anzahl);
    const auto vorUmbruch = static_cast<std::uint32_t>(std::min<std::uint64_t>(anzahl, 0x100000000ull - adr));
    ok = eprom_.liefereBytes(adr, vorUmbruch, puffer_.data()) != 0;
    if (vorUmbruch < anzahl && !eprom_.liefereBytes(0, anzahl - vorUmbruch, puffer_.data() + vorUmbruch))
        ok = false;
    return puffer_.data();
}

namespace {

// Narrows `n` (at least 1) to the addresses from `adr` on that one array
// answers alike: side by side in one chunk, or all without storage. Gives
// the element of `adr` or null.
const std::uint8_t* feldStrecke(const LongDynArray& f, adrInteger adr, std::uint64_t& n) {
    if (f.enthaelt(idx(adr))) {
        std::int32_t rest;
        const std::uint8_t* p = f.zeiger(idx(adr), rest);
        n = std::min<std::uint64_t>(n, static_cast<std::uint32_t>(rest));
        return p;
    }
    // The next stored element upward is the array's first one.
    if (f.liefereAnzahl() > 0)
        n = std::min<std::uint64_t>(n, static_cast<std::uint32_t>(f.liefereBasis()) - adr);
    return nullptr;
}

}  // namespace

void Eprom::liefereStrecke(adrInteger adr, adrInteger bis, EpromStrecke& s) const {
    s.von = adr;
    s.daten = s.anzSchr = nullptr;
    s.imEprom = true;
    std::uint64_t n = std::uint64_t(bis) - adr + 1;
    const EpromSegment& seg = *segmente_.front();
    int code;
    adrInteger grenze;
    const EpromBereich* b = seg.findeBereich(adr, code, grenze);
    if (!b) {
        if (seg.istFrei()) {
            // A window without a region: a read gives it an empty one.
            n = std::min<std::uint64_t>(n, (adr | fensterMaske) - adr + 1);
        } else {
            // A gap of a fixed image, up to the next region above.
            std::uint64_t naechste = std::uint64_t(0xFFFFFFFF) + 1;
            for (const auto& r : seg.bereiche)
                if (r->anfAdr > adr) naechste = std::min<std::uint64_t>(naechste, r->anfAdr);
            n = std::min<std::uint64_t>(n, naechste - adr);
            s.imEprom = false;
        }
    } else {
        n = std::min<std::uint64_t>(n, std::uint64_t(grenze) - adr + 1);
        // After one access beyond its limit an array counts as not there.
        if (b->daten.istGewarnt())
            s.imEprom = false;
        else
            s.daten = feldStrecke(b->daten, adr, n);
        if (!b->anzSchr.istGewarnt()) s.anzSchr = feldStrecke(b->anzSchr, adr, n);
    }
    s.bis = static_cast<adrInteger>(adr + (n - 1));
}

void Eprom::vermerkeLesen(adrInteger von, adrInteger bis) {
    if (bis <= fensterMaske) return;
    for (auto& seg : segmente_) {
        if (!seg->istFrei()) continue;
        std::uint64_t a = std::max<adrInteger>(von, fensterMaske + 1);
        for (; a <= bis; a = (a | fensterMaske) + 1) {
            int code;
            adrInteger grenze;
            auto adr = static_cast<adrInteger>(a);
            if (!seg->findeBereich(adr, code, grenze)) seg->sucheBereich(adr, code);
        }
    }
}

void Eprom::umfasse(adrInteger von, adrInteger bis) {
    if (segmente_.size() != 1 || !istFrei()) return;
    EpromSegment& seg = *segmente_.front();
    for (std::uint64_t a = von; a <= bis;) {
        auto lo = static_cast<adrInteger>(a);
        adrInteger hi = std::min<adrInteger>(bis, lo | fensterMaske);
        int code;
        EpromBereich* b = seg.sucheBereich(lo, code);
        if (b && b->erweiterbar) {
            bool verschoben = false;
            if (lo < b->anfAdr) b->anfAdr = lo, verschoben = true;
            if (hi > b->endAdr) b->endAdr = hi, verschoben = true;
            if (verschoben && code != EpromSegment::freiOben) code = EpromSegment::freiUnten;
            // Storage for the whole stretch at once, where it fits.
            if (b->daten.kannUmfassen(idx(lo), idx(hi)) && b->anzSchr.kannUmfassen(idx(lo), idx(hi))) {
                b->daten.umfasse(idx(lo), idx(hi));
                b->anzSchr.umfasse(idx(lo), idx(hi));
            }
            nachSchreiben(code, lo, hi);
        }
        a = std::uint64_t(hi) + 1;
    }
}

// ===================================================================
// Extent and regions
// ===================================================================

adrInteger Eprom::liefereAnfAdr() const {
    adrInteger a = 0xFFFFFFFF;
    for (const auto& s : segmente_) a = std::min(a, s->liefereAnfAdr());
    return a;
}

adrInteger Eprom::liefereEndAdr() const {
    adrInteger e = 0;
    for (const auto& s : segmente_) e = std::max(e, s->liefereEndAdr());
    return e;
}

int Eprom::liefereBereich(adrInteger adr, adrInteger& von, adrInteger& bis) const {
    for (const auto& z : bereiche_) {
        if (z.endAdr >= adr) {
            von = std::max(z.anfAdr, adr);
            bis = z.endAdr;
            return 1;
        }
    }
    return 0;
}

int Eprom::definiereBereich(adrInteger anf, adrInteger end) {
    for (auto& s : segmente_) s->definiere(anf, end);
    baueTabelle();
    return 1;
}

int Eprom::loescheBereich(adrInteger adr) {
    int ergebnis = 1;
    for (auto& s : segmente_)
        if (!s->loesche(adr)) ergebnis = 0;
    baueTabelle();
    return ergebnis;
}

int Eprom::istFrei() const {
    for (const auto& s : segmente_)
        if (!s->istFrei()) return 0;
    return 1;
}

// ===================================================================
// Whole-image operations
// ===================================================================

std::uint32_t Eprom::fuelle(std::uint8_t wert, const adrInteger* von, const adrInteger* bis) {
    std::uint32_t gefuellt = 0;
    for (auto& s : segmente_) {
        for (auto& bp : s->bereiche) {
            EpromBereich& b = *bp;
            adrInteger lo = b.anfAdr, hi = b.endAdr;
            if (von && *von > lo) lo = *von;
            if (bis && *bis < hi) hi = *bis;
            if (lo > hi) continue;
            adrInteger a = lo;
            for (;;) {
                std::uint32_t n;
                std::uint8_t anz;
                if (b.daten.enthaelt(idx(a)) && b.anzSchr.enthaelt(idx(a)) &&
                    b.anzSchr.istEinheitlich(idx(a), anz) && anz != 0) {
                    // Written throughout: nothing to fill, and nothing to make real.
                    std::int32_t rz;
                    std::as_const(b.anzSchr).zeiger(idx(a), rz);
                    n = static_cast<std::uint32_t>(std::min<std::uint64_t>(rz, std::uint64_t(hi) - a + 1));
                } else if (b.daten.enthaelt(idx(a)) && b.anzSchr.enthaelt(idx(a))) {
                    std::int32_t rd, rz;
                    std::uint8_t* d = b.daten.zeiger(idx(a), rd);
                    std::uint8_t* z = b.anzSchr.zeiger(idx(a), rz);
                    n = static_cast<std::uint32_t>(
                        std::min<std::uint64_t>(std::min(rd, rz), std::uint64_t(hi) - a + 1));
                    for (std::uint32_t j = 0; j < n; ++j)
                        if (z[j] == 0) {
                            d[j] = wert;
                            z[j] = 1;
                            ++gefuellt;
                        }
                } else {
                    n = 1;
                    if (b.anzSchr[idx(a)] == 0) {
                        b.daten[idx(a)] = wert;
                        b.anzSchr[idx(a)] = 1;
                        ++gefuellt;
                    }
                    // A frozen count array hands out its last element for every
                    // address, and that holds a count now: nothing more changes.
                    if (b.anzSchr.istGewarnt()) break;
                }
                if (std::uint64_t(a) + n > hi) break;
                a += n;
            }
        }
    }
    return gefuellt;
}

int Eprom::swap(adrInteger anf, adrInteger end, BearbeitungsFortschritt* anzeige) {
    if (anf & 1) {
        // The text says 0x but the number is decimal; intended, users know it so.
        Fehler("START-ADRESS-ODD", "Eprom::swap ", String("0x" + std::to_string(anf)), 'E');
        return 0;
    }
    if (!(end & 1)) {
        Fehler("LENGTH-ODD", "Eprom::swap ", "", 'E');
        return 0;
    }
    for (auto& s : segmente_) {
        for (const auto& b : s->bereiche) {
            adrInteger lo = std::max(b->anfAdr, anf), hi = std::min(b->endAdr, end);
            if (hi > lo && ((lo & 1) || !(hi & 1))) {
                Fehler("REGION-START-OR-LENGTH-ODD", "Eprom::swap ", "", 'E');
                return 0;
            }
        }
        for (auto& bp : s->bereiche) {
            EpromBereich& b = *bp;
            adrInteger lo = std::max(b.anfAdr, anf), hi = std::min(b.endAdr, end);
            if (hi < lo || (lo & 1) || !(hi & 1)) continue;
            if (anzeige) *anzeige += static_cast<dataInteger>(lo - b.anfAdr);
            // Blocks of pairs, so that the marks keep coming during a long swap.
            for (adrInteger blockAnf = lo;;) {
                adrInteger blockEnd =
                    static_cast<adrInteger>(std::min<std::uint64_t>(std::uint64_t(blockAnf) + 0xFFFF, hi));
                tauschePaare(b.daten, blockAnf, blockEnd);
                tauschePaare(b.anzSchr, blockAnf, blockEnd);
                if (anzeige) *anzeige += static_cast<dataInteger>(blockEnd - blockAnf + 1);
                if (blockEnd == hi) break;
                blockAnf = blockEnd + 1;
            }
            if (anzeige) *anzeige += static_cast<dataInteger>(b.endAdr - hi);
        }
    }
    return 1;
}

bool Eprom::nimmtAllesAn() const {
    // A free image whose first region is the low one refuses a write only
    // when an array is frozen: each region takes addresses of its own 16 MiB
    // window only, which the array limit always holds.
    if (segmente_.size() != 1 || !segmente_[0]->istFrei()) return false;
    const auto& liste = segmente_[0]->bereiche;
    if (liste.front()->basisAdr != 0) return false;
    for (const auto& b : liste)
        if (b->daten.istGewarnt() || b->anzSchr.istGewarnt()) return false;
    return true;
}

namespace {

// Collects bytes for rising addresses of one target and writes them in one go.
class Lauf {
public:
    explicit Lauf(Eprom& ziel) : ziel_(ziel) {}
    ~Lauf() { schreibe(); }
    void nimm(adrInteger adr, std::uint8_t byte) {
        if (bytes_.empty() || start_ + bytes_.size() != adr || bytes_.size() >= 65536) {
            schreibe();
            start_ = adr;
        }
        bytes_.push_back(byte);
    }
    void schreibe() {
        if (!bytes_.empty())
            ziel_.setzeBytes(start_, bytes_.data(), static_cast<std::uint32_t>(bytes_.size()), 0);
        bytes_.clear();
    }

private:
    Eprom& ziel_;
    adrInteger start_ = 0;
    std::vector<std::uint8_t> bytes_;
};

}  // namespace

int Eprom::teileEvenOdd(Eprom& gerade, Eprom& ungerade) {
    // The targets may not be this image: their writes would move our chunks.
    bool direkt = &gerade != this && &ungerade != this;
    // Where no target write can fail, the order of the writes is free.
    bool gesammelt = direkt && gerade.nimmtAllesAn() && ungerade.nimmtAllesAn();
    Lauf laufGerade(gerade), laufUngerade(ungerade);
    auto nimm = [&](adrInteger y, std::uint8_t byte) {
        if (gesammelt) {
            ((y & 1) ? laufUngerade : laufGerade).nimm(y / 2, byte);
            return true;
        }
        return ((y & 1) ? ungerade : gerade).setzeByte(y / 2, byte) != 0;
    };
    adrInteger a = 0, von, bis;
    while (liefereBereich(a, von, bis)) {
        if (von <= bis && direkt) {
            bool gut = true;
            laufe(von, bis, [&](const EpromStrecke& s) {
                if (!s.anzSchr) return true;
                for (std::uint64_t j = 0; j < s.laenge(); ++j)
                    if (s.anzSchr[j] &&
                        !nimm(static_cast<adrInteger>(s.von + j), s.imEprom && s.daten ? s.daten[j] : 0))
                        return gut = false;
                return true;
            });
            if (!gut) return 0;
        } else if (von <= bis) {
            for (adrInteger x = von;; ++x) {
                std::uint8_t byte = 0;
                if (liefereAnzSchr(x) > 0) {
                    liefereByte(x, byte, 0);
                    if (!nimm(x, byte)) return 0;
                }
                if (x == bis) break;
            }
        }
        if (bis == 0xFFFFFFFF) break;
        a = bis + 1;
    }
    return 1;
}

// ===================================================================
// EpromSammler
// ===================================================================

bool EpromSammler::passt(adrInteger adr, adrInteger letzte) {
    // Nothing changes the image while a run is collected: what held for a
    // longer run from the same start holds for this one.
    if (!puffer_.empty() && letzte <= sicherBis_) return true;
    if (eprom_.liefereAnzSegmente() != 1) return false;
    const adrInteger anf = puffer_.empty() ? adr : anf_;
    int code;
    adrInteger grenze;
    const EpromBereich* b = eprom_.liefereSegment(0).findeBereich(anf, code, grenze);
    if (!b || grenze < letzte) return false;
    // A growing region reached by a fixed lookup would patch row 0 of the
    // table piece by piece; such a mix does not arise, but would go singly.
    if (b->erweiterbar && code == EpromSegment::fest) return false;
    auto reicht = [&](adrInteger bis) {
        return b->daten.kannUmfassen(idx(anf), idx(bis)) && b->anzSchr.kannUmfassen(idx(anf), idx(bis));
    };
    if (!reicht(letzte)) return false;
    const adrInteger weit =
        static_cast<adrInteger>(std::min<std::uint64_t>(grenze, std::uint64_t(anf) + hoechstens - 1));
    sicherBis_ = reicht(weit) ? weit : letzte;
    return true;
}

bool EpromSammler::nimm(adrInteger adr, const std::uint8_t* quelle, std::uint32_t anzahl) {
    if (anzahl == 0) return true;
    const std::uint64_t letzte = std::uint64_t(adr) + anzahl - 1;
    if (!puffer_.empty() &&
        (adr != anf_ + std::uint64_t(puffer_.size()) || puffer_.size() + anzahl > hoechstens))
        leere();
    if (letzte > 0xFFFFFFFF || anzahl > hoechstens) {
        leere();
        return false;
    }
    if (!passt(adr, static_cast<adrInteger>(letzte))) {
        if (puffer_.empty()) return false;
        leere();
        if (!passt(adr, static_cast<adrInteger>(letzte))) return false;
    }
    if (puffer_.empty()) {
        anf_ = adr;
        puffer_.reserve(hoechstens);
    }
    puffer_.insert(puffer_.end(), quelle, quelle + anzahl);
    return true;
}

void EpromSammler::leere() {
    if (puffer_.empty()) return;
    // Taken only where nothing is refused; should a byte be, the rest
    // still goes in, as with records written one by one.
    const auto n = static_cast<std::uint32_t>(puffer_.size());
    for (std::uint32_t i = 0; i < n; ++i) i += eprom_.setzeBytes(anf_ + i, puffer_.data() + i, n - i, 0);
    puffer_.clear();
}
