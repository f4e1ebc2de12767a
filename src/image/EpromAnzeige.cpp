// The text displays of an Eprom: region listing, byte dump and occupancy
// runs.
#include <cstring>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "reporting/Fehler.h"

namespace {

// The index of the first of p[0] .. p[n - 1] that is not `w`, or n; eight
// bytes a step, as the counts of a loaded image are long runs of one value.
std::uint64_t gleichBis(const std::uint8_t* p, std::uint64_t n, std::uint8_t w) {
    const std::uint64_t muster = 0x0101010101010101ull * w;
    std::uint64_t i = 0;
    for (std::uint64_t x; i + 8 <= n; i += 8) {
        std::memcpy(&x, p + i, 8);
        if (x != muster) break;
    }
    while (i < n && p[i] == w) ++i;
    return i;
}

}  // namespace

void Eprom::anzeigeBereiche(std::ostream& os) {
    os << std::hex << std::uppercase;
    os << "Eprom"
       << " AnfAdr=" << liefereAnfAdr() << "  "
       << " EndAdr=" << liefereEndAdr() << "\n"
       << "\n";
    os << "Anzahl Eprombereiche: " << anzBereiche_ << "\n";
    for (std::size_t i = 0; i < bereiche_.size(); ++i) {
        const EpromBereichEintrag& z = bereiche_[i];
        os << "[" << i << "] "
           << " SegNr=" << std::dec << z.segNr << std::hex << " AnfAdr=" << z.anfAdr << " EndAdr=" << z.endAdr
           << "\n";
    }
    os << "\n"
       << "AnzahlSegmente: " << segmente_.size() << "\n";
    for (std::size_t i = 0; i < segmente_.size(); ++i)
        os << "[" << i << "] "
           << " AnfAdr=" << segmente_[i]->liefereAnfAdr() << " EndAdr=" << segmente_[i]->liefereEndAdr()
           << "\n";
    os << "\n";
}

void Eprom::anzeigeBytes(adrInteger anf, adrInteger end, const String& kopf, std::ostream& os, int hex) {
    adrInteger von = std::min(anf, end), bis = std::max(anf, end);
    adrInteger anfEpr = liefereAnfAdr(), endEpr = liefereEndAdr();
    if (anfEpr == 0xFFFFFFFF) bis = von;
    if (von < anfEpr || von > endEpr || bis < anfEpr || bis > endEpr) {
        std::ostringstream text;
        text << std::hex << std::uppercase << "Anfadr.: " << von << " (anfEpr:" << anfEpr << ") "
             << " Endadr.: " << bis << " (endEpr:" << endEpr << ") "
             << "\n";
        anzeigeBereiche(text);
        Fehler("EPR-ADR-NOT-IN-EPROM", "Eprom::anzeigeBytes", String(text.str()), 'E');
        if (anfEpr > von && endEpr > von) von = anfEpr;
        if (anfEpr < bis && endEpr < bis) bis = endEpr;
    }
    os << "\n" << kopf << "\n";
    os << std::hex << std::uppercase;

    adrInteger rv, rb;
    if (!liefereBereich(von, rv, rb) || rv > bis) return;
    HexAusgabe aus(os);
    for (;;) {
        adrInteger e = std::min(rb, bis);
        if (rv <= e) {
            unsigned spalte = 0;
            laufe(rv, e, [&](const EpromStrecke& s) {
                for (std::uint64_t j = 0, n = s.laenge(); j < n; ++j) {
                    if (spalte == 0) {
                        aus.text("Daten [");
                        aus.zahl(s.von + j, 5);
                        aus.text("]\t = ");
                    }
                    const std::uint8_t byte = s.imEprom && s.daten ? s.daten[j] : 0;
                    const bool belegt = s.anzSchr && s.anzSchr[j];
                    if (hex) {
                        if (belegt) {
                            aus.byte(byte);
                            aus.zeichen(' ');
                        } else {
                            aus.text("-- ");
                        }
                    } else {
                        aus.text(std::string_view(kopf.c_str(), static_cast<std::size_t>(kopf.laenge())));
                        aus.zeichen(byte < 32 || !belegt ? '.' : static_cast<char>(byte));
                    }
                    if (++spalte == 16) {
                        aus.zeichen('\n');
                        spalte = 0;
                    }
                }
                return true;
            });
            if (spalte) aus.zeichen('\n');
        }
        if (e == 0xFFFFFFFF) return;
        aus.zeichen('\n');
        if (!liefereBereich(e + 1, rv, rb) || rv > bis) return;
    }
}

std::uint32_t Eprom::anzeigeBelegung(std::ostream& os, adrInteger anf, adrInteger end) {
    if (end < anf) return 0;
    std::uint32_t frei = 0;
    adrInteger a = anf, rv, rb;
    os << std::hex;
    HexAusgabe aus(os);
    auto zeile = [&](adrInteger von, adrInteger bis, std::uint8_t c) {
        aus.zeichen('[');
        aus.zahl(von, 5);
        aus.text(" .. ");
        aus.zahl(bis, 5);
        aus.text("] -> ");
        aus.dezimal(c);
        aus.zeichen('\n');
        if (c == 0) frei += bis - von + 1;
    };
    while (liefereBereich(a, rv, rb)) {
        adrInteger g = std::min(end, rb);
        if (rv <= g) {
            // The run being collected: start and count.
            adrInteger start = rv;
            std::uint8_t c = 0;
            bool offen = false;
            laufe(rv, g, [&](const EpromStrecke& s) {
                const std::uint64_t n = s.laenge();
                for (std::uint64_t j = 0; j < n;) {
                    const std::uint8_t w = s.anzSchr ? s.anzSchr[j] : 0;
                    const std::uint64_t k =
                        s.anzSchr ? j + 1 + gleichBis(s.anzSchr + j + 1, n - j - 1, w) : n;
                    if (offen && w != c) zeile(start, static_cast<adrInteger>(s.von + j - 1), c);
                    if (!offen || w != c) start = static_cast<adrInteger>(s.von + j), c = w, offen = true;
                    j = k;
                }
                return true;
            });
            zeile(start, g, c);
        }
        if (rb >= end || rb == 0xFFFFFFFF) break;
        a = rb + 1;
    }
    return frei;
}
