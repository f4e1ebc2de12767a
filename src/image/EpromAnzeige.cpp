// The text displays of an Eprom: region listing, byte dump, occupancy runs
// and the comparison of two images.
// Covered by tests/unit/image/EpromAnzeigeTest.cpp.
#include <iomanip>
#include <ostream>
#include <sstream>

#include "image/Eprom.h"
#include "reporting/Fehler.h"

namespace {

// Writes `wert` with `breite` digits filled with "0", and leaves the fill
// character as it was.
struct Breit {
    std::uint64_t wert;
    int breite;
};
std::ostream& operator<<(std::ostream& os, Breit b) {
    char alt = os.fill('0');
    os << std::setw(b.breite) << b.wert;
    os.fill(alt);
    return os;
}

}  // namespace

void Eprom::anzeigeBereiche(std::ostream& os) {
    os << std::hex << std::uppercase;
    os << "Eprom" << " AnfAdr=" << liefereAnfAdr() << "  " << " EndAdr=" << liefereEndAdr() << "\n"
       << "\n";
    os << "Anzahl Eprombereiche: " << anzBereiche << "\n";
    for (std::size_t i = 0; i < bereiche.size(); ++i) {
        const EpromBereichEintrag& z = bereiche[i];
        os << "[" << i << "] " << " SegNr=" << std::dec << z.segNr << std::hex << " AnfAdr=" << z.anfAdr
           << " EndAdr=" << z.endAdr << "\n";
    }
    os << "\n" << "AnzahlSegmente: " << segmente.size() << "\n";
    for (std::size_t i = 0; i < segmente.size(); ++i)
        os << "[" << i << "] " << " AnfAdr=" << segmente[i]->liefereAnfAdr()
           << " EndAdr=" << segmente[i]->liefereEndAdr() << "\n";
    os << "\n";
}

void Eprom::anzeigeBytes(adrInteger anf, adrInteger end, const String& kopf, std::ostream& os, int hex) {
    adrInteger von = std::min(anf, end), bis = std::max(anf, end);
    adrInteger anfEpr = liefereAnfAdr(), endEpr = liefereEndAdr();
    if (anfEpr == 0xFFFFFFFF) bis = von;
    if (von < anfEpr || von > endEpr || bis < anfEpr || bis > endEpr) {
        std::ostringstream text;
        text << std::hex << std::uppercase << "Anfadr.: " << von << " (anfEpr:" << anfEpr << ") "
             << " Endadr.: " << bis << " (endEpr:" << endEpr << ") " << "\n";
        anzeigeBereiche(text);
        Fehler("EPR-ADR-NOT-IN-EPROM", "Eprom::anzeigeBytes", String(text.str()), 'E');
        if (anfEpr > von && endEpr > von) von = anfEpr;
        if (anfEpr < bis && endEpr < bis) bis = endEpr;
    }
    os << "\n" << kopf << "\n";
    os << std::hex << std::uppercase;

    adrInteger rv, rb;
    if (!liefereBereich(von, rv, rb) || rv > bis) return;
    for (;;) {
        adrInteger e = std::min(rb, bis);
        if (rv <= e) {
            for (adrInteger a = rv;; a += 16) {
                adrInteger zeilenEnde = static_cast<adrInteger>(std::min<std::uint64_t>(std::uint64_t(a) + 15, e));
                os << "Daten [" << Breit{a, 5} << "]" << "\t = ";
                for (adrInteger x = a;; ++x) {
                    std::uint8_t byte;
                    liefereByte(x, byte, 0);
                    bool belegt = liefereAnzSchr(x) != 0;
                    if (hex) {
                        if (belegt)
                            os << Breit{byte, 2} << " ";
                        else
                            os << "-- ";
                    } else {
                        os << kopf;
                        if (byte < 32 || !belegt)
                            os << ".";
                        else
                            os << static_cast<char>(byte);
                    }
                    if (x == zeilenEnde) break;
                }
                os << "\n";
                if (zeilenEnde == e) break;
            }
        }
        if (e == 0xFFFFFFFF) return;
        os << "\n";
        if (!liefereBereich(e + 1, rv, rb) || rv > bis) return;
    }
}

std::uint32_t Eprom::anzeigeBelegung(std::ostream& os, adrInteger anf, adrInteger end) {
    if (end < anf) return 0;
    std::uint32_t frei = 0;
    adrInteger a = anf, rv, rb;
    os << std::hex;
    while (liefereBereich(a, rv, rb)) {
        adrInteger g = std::min(end, rb);
        if (rv <= g) {
            adrInteger x = rv;
            for (;;) {
                adrInteger start = x;
                std::uint8_t c = liefereAnzSchr(x);
                while (x < g && liefereAnzSchr(x + 1) == c) ++x;
                os << "[" << Breit{start, 5} << " .. " << Breit{x, 5} << "] -> " << std::dec
                   << static_cast<int>(c) << std::hex << "\n";
                if (c == 0) frei += x - start + 1;
                if (x == g) break;
                ++x;
            }
        }
        if (rb >= end || rb == 0xFFFFFFFF) break;
        a = rb + 1;
    }
    return frei;
}

std::uint32_t Eprom::anzeigeDifferenzen(std::ostream& os, const String& name1, const String& name2,
                                        Eprom& anderes, adrInteger anf1, adrInteger anf2,
                                        adrInteger end1) {
    os << std::hex << std::uppercase << "\n";
    if (!name1.istLeer()) os << "Zeile 1: " << name1 << "\n" << "Zeile 2: " << name2 << "\n";
    if (end1 < anf1) return 0;

    std::uint32_t unterschiede = 0;
    std::uint8_t w1[16], w2[16];
    bool b1[16], b2[16];
    std::uint16_t maske = 0;
    int pos = 0;
    adrInteger a = anf1, b = anf2, zeileA = a, zeileB = b;
    for (;;) {
        anderes.liefereByte(b, w2[pos], 0);
        liefereByte(a, w1[pos], 0);
        b1[pos] = liefereAnzSchr(a) != 0;
        b2[pos] = anderes.liefereAnzSchr(b) != 0;
        if (b1[pos] != b2[pos] || w1[pos] != w2[pos]) {
            maske |= static_cast<std::uint16_t>(1u << pos);
            ++unterschiede;
        }
        ++pos;
        bool letzte = a == end1;
        if (pos == 16 || letzte) {
            if (maske) {
                os << "Daten [" << Breit{zeileA, 6} << "]" << "\t = ";
                for (int i = 0; i < pos; ++i) {
                    if (b1[i])
                        os << Breit{w1[i], 2} << " ";
                    else
                        os << "-- ";
                }
                os << "\n";
                if (anf1 != anf2)
                    os << "Daten [" << Breit{zeileB, 6} << "]" << "\t = ";
                else
                    os << "\t\t   ";
                for (int i = 0; i < pos; ++i) {
                    if (!(maske & (1u << i)))
                        os << ".. ";
                    else if (b2[i])
                        os << Breit{w2[i], 2} << " ";
                    else
                        os << "-- ";
                }
                os << "\n";
            }
            pos = 0;
            maske = 0;
        }
        if (letzte) break;
        ++a;
        ++b;
        if (pos == 0) zeileA = a, zeileB = b;
    }
    return unterschiede;
}
