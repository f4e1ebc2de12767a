#include "image/HexZeile.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>

#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "image/HexText.h"
#include "reporting/Fehler.h"

using hextext::istLeer;
using hextext::klein;
using hextext::SchreibPuffer;
using hextext::wert;
using hextext::ziffern;

namespace {

// Stores n bytes from rising image addresses, going on past a refused byte
// and wrapping past 0xFFFFFFFF as addresses do. 1 if every byte went in.
int speichereAlle(Eprom& eprom, adrInteger adr, const std::uint8_t* p, std::uint32_t n,
                  EpromSammler* sammler) {
    if (sammler && sammler->nimm(adr, p, n)) return 1;
    int ok = 1;
    std::uint32_t i = 0;
    while (i < n) {
        adrInteger a = adr + i;
        std::uint32_t bisUmbruch =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(n - i, (std::uint64_t(1) << 32) - a));
        std::uint32_t k = eprom.setzeBytes(a, p + i, bisUmbruch, 0);
        i += k;
        if (k < bisUmbruch) {
            ok = 0;
            ++i;
        }
    }
    return ok;
}

// Puts n bytes of the image onto the line, adding them to `summe`.
int schreibeBytes(HexAusgabe& aus, EpromLeser& leser, adrInteger adr, std::uint32_t n, std::uint32_t& summe) {
    bool ok = true;
    const std::uint8_t* bytes = leser.lies(adr, n, ok);
    if (n > 16384) {
        aus.bytes(bytes, n);
        for (std::uint32_t j = 0; j < n; ++j) summe += bytes[j];
        return ok ? 1 : 0;
    }
    char* p = aus.platz(2 * n);
    std::uint32_t s = 0;
    for (std::uint32_t j = 0; j < n; ++j) {
        const auto& paar = hex::paareGross[bytes[j]];
        p[2 * j] = paar[0];
        p[2 * j + 1] = paar[1];
        s += bytes[j];
    }
    aus.fertig(p + 2 * n);
    summe += s;
    return ok ? 1 : 0;
}

// A record whose data runs past the top of the address space keeps the
// bytes up to FFFFFFFF; the rest would land at address 0 and is dropped,
// alike in both hex formats, with a message.
void meldeUeberlauf(const char* funktion, std::uint64_t adresse, std::uint32_t anzahl) {
    const std::uint64_t ueber = adresse + anzahl - 1 - 0xFFFFFFFFull;
    Fehler("HEXFILE-ADR-WRAP", funktion,
           String(hextext::klein(adresse) + ": " + std::to_string(ueber) +
                  " Bytes jenseits von ffffffff verworfen"),
           'W');
}

// The first two data bytes are read whatever the count says; a byte the
// line does not have reads as 0.
std::uint32_t erstesByte(const IntelHexZeile& z, std::uint32_t i) { return i < z.anzahl ? z.daten[i] : 0; }

}  // namespace

// ===================================================================
// Intel
// ===================================================================

IntelHexZeile::IntelHexZeile(std::string_view zeile)
    : laenge(static_cast<std::int32_t>(zeile.size())), text_(zeile) {}

IntelHexZeile::IntelHexZeile() = default;

int IntelHexZeile::zerlege() {
    laenge = static_cast<std::int32_t>(text_.size());
    if (laenge < 11) return 0;
    // The bytes of the line, count first. A valid line has 255 + 5 at most;
    // a longer one fails the count test before its bytes are looked at.
    std::uint8_t by[maxDaten + 6];
    const char* p = text_.data();
    const std::size_t n = text_.size();
    // Blanks at the end (a CR before the newline) only shorten the line.
    std::size_t m = n;
    while (m > 1 && istLeer(p[m - 1])) --m;
    bool fertig = false;
    if (m >= 11 && m % 2 == 1 && m <= 2 * sizeof by + 1) {
        // The usual line: nothing but digits behind the first character.
        unsigned alle = 0;
        for (std::size_t k = 0; 2 * k + 2 < m; ++k) {
            const std::uint16_t w = hextext::paarWert(p + 2 * k + 1);
            alle |= w;
            by[k] = static_cast<std::uint8_t>(w);
        }
        fertig = alle < 0x100;
        if (fertig) laenge -= static_cast<std::int32_t>(n - m);
    }
    if (!fertig) {
        std::size_t gesammelt = 0;
        int hoch = 0;
        for (std::size_t i = 1; i < n; ++i) {
            char c = p[i];
            int v = wert(c);
            if (v >= 0) {
                if (gesammelt % 2 == 0)
                    hoch = v;
                else if (gesammelt / 2 < sizeof by)
                    by[gesammelt / 2] = static_cast<std::uint8_t>(hoch * 16 + v);
                // A lone first digit is a count of its own, as a scan of "%2x" reads it.
                if (gesammelt == 0) by[0] = static_cast<std::uint8_t>(v);
                ++gesammelt;
            } else if (istLeer(c)) {
                --laenge;
            } else {
                Fehler("HEXFILE-NOINTEL-FMT", "IntelHexZeile::zerlege", String(ziffern(text_, i)), 'W');
                return 0;
            }
        }
        if (gesammelt > 0) anzahl = by[0];
    } else {
        anzahl = by[0];
    }
    if (std::int64_t(laenge) != std::int64_t(anzahl) * 2 + 11) {
        std::string t = ziffern(text_, text_.size()) + "\n    " +
                        klein(static_cast<std::uint32_t>((laenge - 11) / 2)) + " != " + klein(anzahl);
        Fehler("HEXFILE-BYTECOUNT", "IntelHexZeile::zerlege", String(t), 'W');
        return 0;
    }
    adrHoch = by[1];
    adrTief = by[2];
    typ = by[3];
    std::uint32_t summe = adrHoch + adrTief + typ + anzahl;
    std::memcpy(daten, by + 4, anzahl);
    for (std::uint32_t i = 0; i < anzahl; ++i) summe += daten[i];
    adresse = adrHoch * 256 + adrTief;
    pruefsumme = by[4 + anzahl];
    std::uint32_t berechnet = (0u - summe) & 0xFF;
    if (pruefsumme != berechnet) {
        std::string t =
            ziffern(text_, text_.size()) + "\n    " + klein(berechnet) + " != " + klein(pruefsumme);
        Fehler("HEXFILE-CHKSUM", "IntelHexZeile::zerlege", String(t), 'W');
        return 0;
    }
    return 1;
}

int IntelHexZeileDaten::speichere(Eprom& eprom, adrInteger basis, const adrInteger* anfAdr,
                                  const adrInteger* endAdr, const adrInteger* externeAdr,
                                  EpromSammler* sammler) {
    int ergebnis = zerlege();
    if (!ergebnis) return ergebnis;
    adrInteger a = adresse + basis;
    adresse = a;

    // The window is one of file addresses.
    std::uint64_t lo = anfAdr ? *anfAdr : 0;
    std::uint64_t hi = endAdr ? *endAdr : 0xFFFFFFFF;
    if (externeAdr) {
        std::uint32_t d = static_cast<std::uint32_t>(hi) - static_cast<std::uint32_t>(lo);
        lo = *externeAdr;
        hi = std::min<std::uint64_t>(lo + d, 0xFFFFFFFF);
    }
    if (anzahl == 0) return 1;
    std::uint64_t e = std::uint64_t(a) + anzahl - 1;
    if (e > 0xFFFFFFFF) meldeUeberlauf("IntelHexZeileDaten::speichere", a, anzahl);
    if (lo > e || hi < a) return 1;
    std::uint32_t skip = lo > a ? static_cast<std::uint32_t>(lo - a) : 0;
    std::uint64_t n = anzahl;
    if (hi < e) n -= e - hi;
    adrInteger ziel = a + skip;
    // Without a start the window starts at 0; the file reader always gives one.
    if (externeAdr) ziel = a + skip - *externeAdr + (anfAdr ? *anfAdr : 0);
    if (n <= skip) return 1;
    return speichereAlle(eprom, ziel, daten + skip, static_cast<std::uint32_t>(n - skip), sammler);
}

int IntelHexZeileDaten::schreibe(std::ostream& os, Eprom& eprom, adrInteger adr, std::uint32_t anz,
                                 adrInteger basis, const adrInteger* anfAdr, const adrInteger* externeAdr) {
    HexAusgabe aus(os, true);
    EpromLeser leser(eprom);
    return schreibe(aus, leser, adr, anz, basis, anfAdr, externeAdr);
}

int IntelHexZeileDaten::schreibe(HexAusgabe& aus, EpromLeser& leser, adrInteger adr, std::uint32_t anz,
                                 adrInteger basis, const adrInteger* anfAdr, const adrInteger* externeAdr) {
    adrInteger dateiAdr = adr;
    if (externeAdr) dateiAdr = adr + *externeAdr - (anfAdr ? *anfAdr : 0);
    dateiAdr -= basis;
    std::uint32_t summe = anz + ((dateiAdr >> 8) & 0xFF) + (dateiAdr & 0xFF);
    if (anz <= 0xFF) {
        // The usual line: every field two digits wide, all of it at once.
        bool ok = true;
        const std::uint8_t* bytes = leser.lies(adr, anz, ok);
        char* p = aus.platz(2 * anz + 12);
        auto paar = [&p](std::uint32_t b) {
            std::memcpy(p, hex::paareGross[b].data(), 2);
            p += 2;
        };
        *p++ = ':';
        paar(anz);
        paar((dateiAdr >> 8) & 0xFF);
        paar(dateiAdr & 0xFF);
        *p++ = '0';
        *p++ = '0';
        for (std::uint32_t j = 0; j < anz; ++j) {
            paar(bytes[j]);
            summe += bytes[j];
        }
        paar((0u - summe) & 0xFF);
        *p++ = '\n';
        aus.fertig(p);
        return ok ? 1 : 0;
    }
    // The whole line at once into the buffer; the room asked for covers a
    // count of more than two digits.
    char* p = aus.platz(32);
    *p++ = ':';
    p = hex::zahl(p, anz, 2);
    p = hex::zahl(p, dateiAdr & 0xFFFF, 4);
    *p++ = '0';
    *p++ = '0';
    aus.fertig(p);
    int ok = schreibeBytes(aus, leser, adr, anz, summe);
    p = aus.platz(3);
    p = hex::zahl(p, (0u - summe) & 0xFF, 2);
    *p++ = '\n';
    aus.fertig(p);
    return ok;
}

namespace {

// The base a segment (factor 16) or linear (factor 65536) record gives: its
// first two data bytes, whatever the count says.
int liesBasis(IntelHexZeile& z, adrInteger& basis, std::uint32_t faktor) {
    if (!z.zerlege()) {
        basis = 0;
        return 0;
    }
    basis = (erstesByte(z, 0) * 256u + erstesByte(z, 1)) * faktor;
    return 1;
}

// Where the bytes add up to 0 this writes "100" for the checksum, and the
// reader then refuses the line as too long. Intended: files keep coming out
// as they always have.
int schreibeBasis(std::ostream& os, adrInteger adr, adrInteger& basis, char typ, std::uint32_t faktor) {
    basis = adr & 0xFFFF0000;
    std::uint32_t s = basis / faktor;
    std::uint32_t hoch = (s >> 8) & 0xFF;
    SchreibPuffer p(os);
    p.text(":0200000");
    p.zeichen(typ);
    p.zahl(hoch, 2);
    p.zahl(s & 0xFF, 2);
    p.zahl(0x100 - ((hoch + s + 2 + (typ - '0')) & 0xFF), 2);
    p.zeichen('\n');
    return 1;
}

}  // namespace

int IntelHexZeileSegment::liefereBasis(adrInteger& basis) { return liesBasis(*this, basis, 16); }
int IntelHexZeileLinear::liefereBasis(adrInteger& basis) { return liesBasis(*this, basis, 65536); }

int schreibeSegmentZeile(std::ostream& os, adrInteger adr, adrInteger& basis) {
    return schreibeBasis(os, adr, basis, '2', 16);
}
int schreibeLinearZeile(std::ostream& os, adrInteger adr, adrInteger& basis) {
    return schreibeBasis(os, adr, basis, '4', 65536);
}

// ===================================================================
// Motorola
// ===================================================================

MotorolaHexZeile::MotorolaHexZeile(char typZiffer, int adrBytes, std::string_view zeile, bool mitText)
    : laenge(static_cast<std::int16_t>(std::min<std::size_t>(zeile.size(), 0x7FFF))),
      typZiffer_(typZiffer),
      adrBytes_(adrBytes),
      hatEingabe_(mitText),
      text_(zeile) {}

int MotorolaHexZeile::liesHexPaar(std::uint32_t& w) {
    if (lesePos_ + 2 > anzZiffern_) return 0;
    w = static_cast<std::uint32_t>(ziffern_[lesePos_] * 16 + ziffern_[lesePos_ + 1]);
    lesePos_ += 2;
    laenge = static_cast<std::int16_t>(laenge - 2);
    return 1;
}

int MotorolaHexZeile::liesAdresse() {
    anzahl = static_cast<std::int16_t>(anzahl - (adrBytes_ + 1));
    summe = static_cast<std::uint32_t>(anzahl + adrBytes_ + 1);
    adresse = 0;
    for (int k = 0; k < adrBytes_; ++k) {
        std::uint32_t w;
        if (!liesHexPaar(w)) return 0;
        adresse = (adresse << 8) | w;
        summe += w;
    }
    return 1;
}

int MotorolaHexZeile::zerlege() {
    if (!hatEingabe_ || laenge < 10) {
        Fehler("HEXFILE-NOMOTOROLA-FMT", "MotorolaHexZeile::zerlege", "", 'W');
        return 0;
    }
    --laenge;
    anzZiffern_ = 0;
    lesePos_ = 0;
    // Local counters: the byte stores below could alias the members.
    int gesammelt = 0, leer = 0;
    // The usual line, nothing but digits, without a branch per character.
    // Locals again: stores to ziffern_ could alias text_ itself.
    const char* const t = text_.data();
    const std::size_t n = text_.size();
    std::uint8_t* const z = ziffern_;
    std::size_t m = n;
    while (m > 1 && istLeer(t[m - 1])) --m;
    int alleZiffern = -1;
    if (n <= sizeof ziffern_ && m >= 2) {
        // The type digit, then two digits per lookup.
        unsigned alle = wert(t[1]) < 0 ? 0x100u : 0u;
        z[0] = static_cast<std::uint8_t>(wert(t[1]));
        std::size_t i = 2;
        for (; i + 1 < m; i += 2) {
            const std::uint16_t w = hextext::paarWert(t + i);
            alle |= w;
            z[i - 1] = static_cast<std::uint8_t>(w >> 4);
            z[i] = static_cast<std::uint8_t>(w & 15);
        }
        if (i < m) {
            alle |= wert(t[i]) < 0 ? 0x100u : 0u;
            z[i - 1] = static_cast<std::uint8_t>(wert(t[i]));
        }
        if (alle < 0x100) alleZiffern = 0;
    }
    if (alleZiffern >= 0) {
        gesammelt = static_cast<int>(m) - 1;
        leer = static_cast<int>(n - m);
    }
    for (std::size_t i = 1; alleZiffern < 0 && i < text_.size(); ++i) {
        char c = text_[i];
        int v = wert(c);
        if (v >= 0) {
            if (gesammelt < static_cast<int>(sizeof ziffern_))
                ziffern_[gesammelt++] = static_cast<std::uint8_t>(v);
        } else if (istLeer(c)) {
            ++leer;
        } else {
            Fehler("HEXFILE-NOMOTOROLA-FMT", "MotorolaHexZeile::zerlege", String(ziffern(text_, i)), 'W');
            return 0;
        }
    }
    anzZiffern_ = gesammelt;
    laenge = static_cast<std::int16_t>(laenge - leer);
    auto alle = [&] { return ziffern(text_, text_.size()); };
    int typ = -1;
    if (lesePos_ < anzZiffern_) {
        typ = ziffern_[lesePos_++];
        --laenge;
    }
    if (typ < 0 || typ > 9 || (typ > 3 && typ < 7)) {
        Fehler("HEXFILE-NOMOTOROLA-FMT", "MotorolaHexZeile::zerlege", String(alle()), 'W');
        return 0;
    }
    std::uint32_t zaehl = 0;
    liesHexPaar(zaehl);
    anzahl = static_cast<std::int16_t>(zaehl);
    int adresseOk = liesAdresse();
    if (laenge != anzahl * 2 + 2 || !adresseOk) {
        std::string detail = alle() + "\n    " + klein(static_cast<std::uint32_t>((laenge - 2) / 2)) +
                             " != " + klein(static_cast<std::uint16_t>(anzahl));
        Fehler("HEXFILE-BYTECOUNT", "MotorolaHexZeile::zerlege", String(detail), 'W');
        return 0;
    }
    if (anzahl > 0 && lesePos_ + 2 * anzahl <= anzZiffern_) {
        const std::uint8_t* q = ziffern_ + lesePos_;
        std::uint8_t* d = daten;
        std::uint32_t s = summe;
        for (int i = 0; i < anzahl; ++i) {
            const std::uint32_t w = q[2 * i] * 16u + q[2 * i + 1];
            d[i] = static_cast<std::uint8_t>(w);
            s += w;
        }
        summe = s;
        lesePos_ += 2 * anzahl;
        laenge = static_cast<std::int16_t>(laenge - 2 * anzahl);
    } else {
        for (int i = 0; i < anzahl; ++i) {
            std::uint32_t w = 0;
            liesHexPaar(w);
            daten[i] = static_cast<std::uint8_t>(w);
            summe += w;
        }
    }
    std::uint32_t gelesen = 0;
    liesHexPaar(gelesen);
    summe = ~summe & 0xFF;
    if (summe != gelesen) {
        // The value read comes first here, the other way round from Intel;
        // intended, the message has always read so.
        std::string detail = alle() + "\n    " + klein(gelesen) + " != " + klein(summe);
        Fehler("HEXFILE-CHKSUM", "MotorolaHexZeile::zerlege", String(detail), 'W');
        return 0;
    }
    return 1;
}

namespace {
// The count and the address bytes of a Motorola record, high byte first;
// gives their sum, the start of the record's checksum.
template <class Aus>
std::uint32_t schreibeZaehlUndAdresse(Aus& aus, std::uint32_t zaehl, adrInteger adresse, int adrBytes) {
    aus.zahl(zaehl, 2);
    std::uint32_t summe = zaehl;
    for (int k = adrBytes - 1; k >= 0; --k) {
        std::uint32_t b = (adresse >> (8 * k)) & 0xFF;
        aus.zahl(b, 2);
        summe += b;
    }
    return summe;
}
}  // namespace

int MotorolaHexZeile::schreibeKopf(std::ostream& os) {
    SchreibPuffer p(os);
    std::uint32_t zaehl = static_cast<std::uint32_t>(std::max<int>(anzahl, 0)) + adrBytes_ + 1;
    p.zeichen(typZiffer_);
    summe = schreibeZaehlUndAdresse(p, zaehl, adresse, adrBytes_);
    p.leere();
    return os.good() ? 1 : 0;
}

MotorolaHexZeileKopf::MotorolaHexZeileKopf() : MotorolaHexZeile('0', 2, festerKopf, true) {}
MotorolaHexZeileKopf::MotorolaHexZeileKopf(std::string_view zeile) : MotorolaHexZeile('0', 2, zeile, true) {}

int MotorolaHexZeileKopf::schreibe(std::ostream& os) {
    os << "S";
    if (schreibeKopf(os)) {
        SchreibPuffer p(os);
        for (int i = 0; i < anzahl; ++i) {
            p.zahl(daten[i], 2);
            summe += daten[i];
        }
        p.zahl(~summe & 0xFF, 2);
        p.zeichen('\n');
    }
    return os.good() ? 1 : 0;
}

int MotorolaHexZeileEnde::schreibe(std::ostream& os) {
    os << "S";
    if (schreibeKopf(os)) {
        SchreibPuffer p(os);
        p.zahl(~summe & 0xFF, 2);
        p.zeichen('\n');
    }
    return os.good() ? 1 : 0;
}

int MotorolaHexZeileDaten::speichere(Eprom& eprom, const adrInteger* anfAdr, const adrInteger* endAdr,
                                     const adrInteger* externeAdr, EpromSammler* sammler) {
    int ergebnis = zerlege();
    if (!ergebnis) return ergebnis;
    // The window is one of image addresses, unlike Intel's.
    adrInteger lo = anfAdr ? *anfAdr : 0;
    adrInteger hi = endAdr ? *endAdr : 0xFFFFFFFF;
    adrInteger delta = externeAdr ? lo - *externeAdr : 0;
    std::uint32_t n = static_cast<std::uint32_t>(std::max<int>(anzahl, 0));
    if (n > 0 && std::uint64_t(adresse) + n - 1 > 0xFFFFFFFF) {
        meldeUeberlauf("MotorolaHexZeileDaten::speichere", adresse, n);
        n = static_cast<std::uint32_t>(0x100000000ull - adresse);
    }
    std::uint32_t i = 0;
    while (i < n) {
        adrInteger a = adresse + delta + i;
        if (a < lo || a > hi) {
            ++i;
            continue;
        }
        // A run inside the window that does not wrap; refusals are not looked at.
        std::uint32_t lauf =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(n - i, std::uint64_t(hi) - a + 1));
        speichereAlle(eprom, a, daten + i, lauf, sammler);
        i += lauf;
    }
    return 1;
}

int MotorolaHexZeileDaten::schreibe(std::ostream& os, Eprom& eprom, adrInteger adr, adrInteger fileAdr,
                                    std::uint32_t anz) {
    HexAusgabe aus(os, true);
    EpromLeser leser(eprom);
    return schreibe(aus, leser, adr, fileAdr, anz);
}

int MotorolaHexZeileDaten::schreibe(HexAusgabe& aus, EpromLeser& leser, adrInteger adr, adrInteger fileAdr,
                                    std::uint32_t anz) {
    adresse = fileAdr;
    anzahl = static_cast<std::int16_t>(std::min<std::uint32_t>(anz, 0x7FFF));
    std::uint32_t zaehl = anz + static_cast<std::uint32_t>(adrBytes_) + 1;
    aus.zeichen('S');
    aus.zeichen(typZiffer_);
    summe = schreibeZaehlUndAdresse(aus, zaehl, fileAdr, adrBytes_);
    int ok = schreibeBytes(aus, leser, adr, anz, summe);
    aus.zahl(~summe & 0xFF, 2);
    aus.zeichen('\n');
    return ok;
}
