// The pattern search of an image: reading search texts, the walk over the
// regions, and the commands suche, sucheErstes, sucheNaechstes and the byte
// checks built on it.
//
// The walk tries start addresses one after the other, but behind a start
// whose first byte matched and whose rest did not it goes on two bytes
// further (see MusterSuche). Deciding each start by comparing byte after
// byte would cost pattern length times image size; instead a prefix
// automaton runs over the bytes once and tells, when a start's last byte has
// been read, whether the whole pattern stands there.
//
// Covered by tests/unit/commands/KivEpromPruefenSucheTest.cpp.
#include <algorithm>
#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <vector>

#include "commands/KivEprom.h"
#include "commands/KivEpromArgumente.h"
#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

namespace {

constexpr std::uint64_t letzteAdresse = 0xFFFFFFFF;
constexpr std::uint32_t blockGroesse = 65536;

// Writes an address with five digits, "0"-filled, and leaves the fill as it
// was; the stream's base and case stay as the caller set them.
void schreibeAdresse(std::ostream& os, adrInteger adr)
{
    char alt = os.fill('0');
    os << std::setw(5) << adr;
    os.fill(alt);
}

// Reads the bytes of an image at rising addresses as liefereByte without a
// report would, a stretch at a time. In a free image a read in a 16 MiB
// window that has no region yet creates one; such a window is read only when
// asked for, never ahead.
class BildLeser {
public:
    explicit BildLeser(Eprom& e) : eprom(e), frei(e.istFrei() != 0) {}
    // The bytes from `adr` on: a pointer to the byte at `adr`, with `letzte`
    // the address of the last byte that follows it in memory. Bytes up to
    // `grenze` (not below `adr`) may be read ahead.
    const std::uint8_t* zeige(adrInteger adr, adrInteger grenze, std::uint64_t& letzte);
    // True if reading `adr` would change the image.
    bool veraendert(adrInteger adr) const;

private:
    Eprom& eprom;
    bool frei;
    std::vector<std::uint8_t> nullen = std::vector<std::uint8_t>(blockGroesse, 0);   // what storage-less stretches read
};

// The walk over the regions from `von` to `bis`, one match per call of
// `naechster`; the next call goes on at the byte behind the match.
//
// Per region it keeps the walk position `s` (the start being tried) and the
// read position `x` of the automaton, which is at most one pattern length
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
    bool neueZeile();
    bool laufeZeile(adrInteger& treffer);
    void weiter();
    bool liestX();
    bool springe(std::uint64_t& sl, std::uint64_t& xl, const std::uint8_t* block, std::uint64_t blockAnf,
                 std::uint64_t bisLesbar, std::uint64_t letzterStart);

    Eprom& eprom;
    BildLeser leser;
    std::vector<std::uint8_t> muster;
    std::size_t laenge;
    std::vector<std::size_t> rand;     // rand[i]: longest border of the first i bytes
    std::vector<std::uint8_t> ring;    // at least the last `laenge` bytes read, by address
    std::uint64_t ringMaske = 0;       // ring size less 1, a power of two
    std::uint64_t bis;
    std::uint64_t s;                   // the start being tried
    std::uint64_t x = 0;               // the next byte for the automaton
    std::uint64_t g = 0;               // last start of the present region
    std::uint64_t textEnde = 0;        // last byte that may be read for it
    std::size_t q = 0;                 // automaton: length of the prefix read
    const std::uint8_t* block = nullptr;   // the reader's bytes blockAnf .. blockEnde
    std::uint64_t blockAnf = 0, blockEnde = 0;
    bool inZeile = false;
    bool fertig = false;
};

// ---------------------------------------------------------------------------
// BildLeser

bool BildLeser::veraendert(adrInteger adr) const
{
    if (!frei) return false;
    int code;
    adrInteger grenze;
    return eprom.liefereSegment(0).findeBereich(adr, code, grenze) == nullptr;
}

const std::uint8_t* BildLeser::zeige(adrInteger adr, adrInteger grenze, std::uint64_t& letzte)
{
    // A stretch never crosses a window of a free image, so the read leaves
    // behind at most the region of the window it starts in.
    EpromStrecke strecke;
    eprom.liefereStrecke(adr, std::max(adr, grenze), strecke);
    eprom.vermerkeLesen(adr, strecke.bis);
    letzte = strecke.bis;
    if (strecke.imEprom && strecke.daten) return strecke.daten;
    letzte = std::min<std::uint64_t>(letzte, std::uint64_t(adr) + nullen.size() - 1);
    return nullen.data();
}

// ---------------------------------------------------------------------------
// MusterSuche

MusterSuche::MusterSuche(Eprom& e, const std::vector<std::uint8_t>& m, adrInteger v, adrInteger b)
    : eprom(e), leser(e), muster(m), laenge(m.size()), bis(b), s(v)
{
    if (laenge == 0) {
        fertig = true;
        return;
    }
    rand.assign(laenge + 1, 0);
    for (std::size_t i = 1, k = 0; i < laenge; ++i) {
        while (k > 0 && muster[i] != muster[k]) k = rand[k];
        if (muster[i] == muster[k]) ++k;
        rand[i + 1] = k;
    }
    std::size_t groesse = 1;
    while (groesse < laenge) groesse *= 2;
    ring.assign(groesse, 0);
    ringMaske = groesse - 1;
}

bool MusterSuche::neueZeile()
{
    if (s > bis) return false;
    adrInteger von, ende;
    if (!eprom.liefereBereich(static_cast<adrInteger>(s), von, ende)) return false;
    s = von;
    if (s > bis) return false;
    g = std::min<std::uint64_t>(bis, ende);
    textEnde = std::min<std::uint64_t>(bis, g + laenge - 1);
    x = s;
    q = 0;
    return true;
}

void MusterSuche::weiter()
{
    // The same step as in laufeZeile, two bytes behind a first byte that
    // matched; intended.
    s += ring[s & ringMaske] == muster[0] ? 2 : 1;
}

bool MusterSuche::liestX()
{
    // The starts whose comparison would reach x are those whose bytes up to
    // x - 1 are a prefix of the pattern: the prefix lengths of the automaton
    // state and of its borders.
    std::vector<char> prefix(laenge + 1, 0);
    for (std::size_t p = q; p > 0; p = rand[p]) prefix[p] = 1;
    while (s <= g) {
        const std::uint64_t p = x - s;
        if (p <= laenge && prefix[p]) return true;
        weiter();
    }
    return false;
}

int MusterSuche::naechster(adrInteger& treffer)
{
    while (!fertig) {
        if (!inZeile) {
            if (!neueZeile()) break;
            inZeile = true;
        }
        if (laufeZeile(treffer)) return 1;
        inZeile = false;
    }
    fertig = true;
    return 0;
}

bool MusterSuche::springe(std::uint64_t& sl, std::uint64_t& xl, const std::uint8_t* block, std::uint64_t blockAnf,
                          std::uint64_t bisLesbar, std::uint64_t letzterStart)
{
    // With the automaton empty, a start can only match at a byte equal to
    // the pattern's first. Where the starts still open and the bytes ahead
    // hold none, each of those starts fails and steps by one: memchr finds
    // the next candidate, and the walk resumes lang - 1 bytes before it,
    // with the ring holding what it would have read.
    const std::uint8_t erstes = muster[0];
    for (std::uint64_t t = sl; t < xl; ++t)
        if (ring[t & ringMaske] == erstes) return false;
    // The starts jumped to stay within this region's.
    if (letzterStart + laenge < 2) return false;
    std::uint64_t bis = std::min(bisLesbar, letzterStart + laenge - 2);
    if (bis < xl + 64) return false;
    const std::uint8_t* q = block + (xl - blockAnf);
    const void* f = std::memchr(q, erstes, bis - xl + 1);
    const std::uint64_t p = f ? xl + static_cast<std::uint64_t>(static_cast<const std::uint8_t*>(f) - q) : bis + 1;
    if (p < xl + 64) return false;
    for (std::uint64_t t = std::max(xl, p - std::min<std::uint64_t>(p, laenge)); t < p; ++t)
        ring[t & ringMaske] = block[t - blockAnf];
    if (p + 1 > laenge) sl = std::max(sl, p + 1 - laenge);
    xl = p;
    return true;
}

bool MusterSuche::laufeZeile(adrInteger& treffer)
{
    // The state in locals: the ring's byte stores could otherwise alias
    // every member and force reloads per byte.
    const std::uint8_t* const m = muster.data();
    const std::size_t* const r = rand.data();
    std::uint8_t* const ri = ring.data();
    const std::uint64_t maske = ringMaske;
    const std::uint64_t lang = laenge;
    const std::uint64_t letzterStart = g;
    const std::uint64_t ende = textEnde;
    const std::uint8_t erstes = m[0];
    std::uint64_t sl = s, xl = x;
    std::size_t ql = q;
    const std::uint8_t* block = this->block;
    std::uint64_t blockAnf = this->blockAnf, blockEnde = this->blockEnde;
    bool gefunden = false;

    while (sl <= letzterStart) {
        bool zeileAus = false;
        for (;;) {
            if (xl > std::min(sl + lang - 1, ende)) break;
            // A new region may begin before the block read for the
            // comparisons at the end of the one before.
            if (block == nullptr || xl < blockAnf || xl > blockEnde) {
                // Behind the region a read may create a region in a free
                // image; such a byte is read only if a start's comparison
                // gets that far.
                if (xl > letzterStart && leser.veraendert(static_cast<adrInteger>(xl))) {
                    s = sl;
                    x = xl;
                    q = ql;
                    const bool liest = liestX();
                    sl = s;
                    if (!liest) {
                        zeileAus = true;
                        break;
                    }
                }
                block = leser.zeige(static_cast<adrInteger>(xl), static_cast<adrInteger>(ende), blockEnde);
                blockAnf = xl;
            }
            if (ql == 0 && springe(sl, xl, block, blockAnf, std::min(blockEnde, ende), letzterStart)) continue;
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
    s = sl;
    x = xl;
    q = ql;
    this->block = block;
    this->blockAnf = blockAnf;
    this->blockEnde = blockEnde;
    return gefunden;
}

// ---------------------------------------------------------------------------
// Search texts

// The bytes of a search or check text; false if it is invalid or gives
// none. The text loses its white space at the end, also in text form.
bool leseMuster(String& text, int hex, std::vector<std::uint8_t>& bytes)
{
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

// The pattern as stored: through the byte array with its element limit.
std::vector<std::uint8_t> musterVon(const KivEprom& kiv)
{
    std::vector<std::uint8_t> m;
    if (!kiv.suchMuster || kiv.suchLaenge <= 0) return m;
    m.reserve(static_cast<std::size_t>(kiv.suchLaenge));
    for (std::int32_t i = 0; i < kiv.suchLaenge; ++i) m.push_back((*kiv.suchMuster)[i]);
    return m;
}

}  // namespace

int KivEprom::setzeSuchMuster(const String& text, int hex)
{
    String t = text;
    std::vector<std::uint8_t> bytes;
    const bool gut = leseMuster(t, hex, bytes);
    suchMuster = std::make_unique<DynArray<unsigned char>>(20, 0);
    suchLaenge = 0;
    if (!gut) return 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) (*suchMuster)[static_cast<std::int32_t>(i)] = bytes[i];
    suchLaenge = static_cast<std::int32_t>(bytes.size());
    return 1;
}

int KivEprom::sucheMuster(adrInteger von, adrInteger bis)
{
    MusterSuche suche(*eprom, musterVon(*this), von, bis);
    adrInteger treffer = 0;
    const int gefunden = suche.naechster(treffer);
    suchAdresse = gefunden ? treffer : 0;
    return gefunden;
}

int KivEprom::pruefeBytes(adrInteger adresse, const String& text)
{
    pruefeAdresse(adresse, "KivEprom::pruefeBytes");
    std::ostringstream meldung;
    meldung << "[" << std::hex << std::uppercase << std::setfill('0') << std::setw(6) << adresse << "]: ";

    // The running search keeps its pattern and position.
    auto altMuster = std::move(suchMuster);
    const std::int32_t altLaenge = suchLaenge;
    const adrInteger altAdresse = suchAdresse;

    String wert = text;
    wert.entferneHinten();
    int ergebnis;
    if (!setzeSuchMuster(wert, 1)) {
        Fehler("INVALID-CHECK-VALUE", "KivEprom::kdoPruefeByteFolge ", wert, 'E');
        ergebnis = 0;
    } else {
        const std::uint64_t ende = std::min<std::uint64_t>(std::uint64_t(adresse) + suchLaenge - 1, letzteAdresse);
        ergebnis = sucheMuster(adresse, static_cast<adrInteger>(ende));
        meldung << wert;
        Fehler(ergebnis ? "CHECK-BYTE-TRUE" : "CHECK-BYTE-FALSE", "KivEprom::kdoPruefeByte ", meldung, 'S');
    }

    suchMuster = std::move(altMuster);
    suchLaenge = altLaenge;
    suchAdresse = altAdresse;
    return ergebnis;
}

// ---------------------------------------------------------------------------
// Handlers

namespace {

// Reads the search text of suche and sucheErstes into the pattern; reports
// a refused one.
bool setzeSuche(KivEprom& kiv, KdoKommando& kommando)
{
    namespace arg = kdoArg::suche;
    String text = kommando[arg::suchText].liefereArgWertStr();
    const int hex = kommando[arg::darstellung].liefereArgWertInt() == 0;
    if (kiv.setzeSuchMuster(text, hex)) return true;
    text.entferneHinten();
    Fehler("INVALID-SEARCH-VALUE", "KivEprom::kdoSuche ", text, 'E');
    return false;
}

}  // namespace

int kdoSuche(KdoObjekt& objekt, KdoKommando& kommando)
{
    auto& kiv = static_cast<KivEprom&>(objekt);
    if (!setzeSuche(kiv, kommando)) return 0;
    std::ostream& os = *kdoAnzeigeStream;
    os << std::hex << std::uppercase << "Suchergebnis: " << "\n";

    // One walk for all matches: each next one is looked for from the byte
    // behind the last, so overlapping matches count.
    MusterSuche suche(*kiv.eprom, musterVon(kiv), kiv.eprom->liefereAnfAdr(), kiv.eprom->liefereEndAdr());
    std::uint64_t anzahl = 0;
    adrInteger treffer;
    while (suche.naechster(treffer)) {
        os << "[";
        schreibeAdresse(os, treffer);
        os << "] ";
        if (++anzahl % 8 == 0) os << "\n";
    }
    kiv.suchAdresse = 0;
    if (anzahl == 0)
        os << "Muster nicht gefunden" << "\n";
    else if (anzahl % 8 != 0)
        os << "\n";
    return 1;
}

int kdoSucheErstes(KdoObjekt& objekt, KdoKommando& kommando)
{
    auto& kiv = static_cast<KivEprom&>(objekt);
    if (!setzeSuche(kiv, kommando)) return 0;
    std::ostream& os = *kdoAnzeigeStream;
    os << std::hex << std::uppercase << " " << "\n";
    if (kiv.sucheMuster(kiv.eprom->liefereAnfAdr(), kiv.eprom->liefereEndAdr())) {
        os << "Erste Adresse: [";
        schreibeAdresse(os, kiv.suchAdresse);
        os << "] " << "\n";
        return 1;
    }
    os << "Muster nicht gefunden" << "\n";
    return 0;
}

int kdoSucheNaechstes(KdoObjekt& objekt, KdoKommando&)
{
    auto& kiv = static_cast<KivEprom&>(objekt);
    if (!kiv.suchMuster || kiv.suchLaenge <= 0) return 0;
    // A search that failed left suchAdresse 0, so the next one starts at 1.
    const adrInteger von = kiv.suchAdresse + 1;
    const adrInteger bis = kiv.eprom->liefereEndAdr();
    std::ostream& os = *kdoAnzeigeStream;
    os << std::hex << std::uppercase << " " << "\n";
    if (bis < von) {
        os << "Epromende erreicht" << "\n";
        kiv.suchAdresse = 0;
        return 0;
    }
    if (kiv.sucheMuster(von, bis)) {
        os << "Naechste Adresse: [";
        schreibeAdresse(os, kiv.suchAdresse);
        os << "] " << "\n";
        return 1;
    }
    os << "Muster nicht gefunden" << "\n";
    return 0;
}

int kdoPruefeByte(KdoObjekt& objekt, KdoKommando& kommando)
{
    namespace arg = kdoArg::pruefeByte;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const adrInteger adresse = kommando[arg::adresse].liefereArgWertIntHex();
    if (!KivEprom::pruefeAdresse(adresse, "KivEprom::kdoPruefeByte")) return 0;
    return kiv.pruefeBytes(adresse, String(hex::text(kommando[arg::hexWert].liefereArgWertIntHex(), 1, false)));
}

int kdoPruefeBytefolge(KdoObjekt& objekt, KdoKommando& kommando)
{
    namespace arg = kdoArg::pruefeBytefolge;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const adrInteger adresse = kommando[arg::adresse].liefereArgWertIntHex();
    if (!KivEprom::pruefeAdresse(adresse, "KivEprom::kdoPruefeBytefolge")) return 0;
    return kiv.pruefeBytes(adresse, kommando[arg::bytefolge].liefereArgWertStr());
}
