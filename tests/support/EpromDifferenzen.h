// The comparison display of two images, built independently of the command
// that prints it so that tests can check the command against it: byte by
// byte, sixteen to a line, only lines with a difference shown.
#pragma once

#include <cstdint>
#include <iomanip>
#include <ostream>

#include "image/Eprom.h"

inline std::uint32_t anzeigeDifferenzen(std::ostream& os, const String& name1, const String& name2,
                                        Eprom& eins, Eprom& anderes, adrInteger anf1, adrInteger anf2,
                                        adrInteger end1) {
    auto breit = [&os](std::uint64_t wert, int breite) -> std::ostream& {
        const char alt = os.fill('0');
        os << std::setw(breite) << wert;
        os.fill(alt);
        return os;
    };
    os << std::hex << std::uppercase << "\n";
    if (!name1.istLeer())
        os << "Zeile 1: " << name1 << "\n"
           << "Zeile 2: " << name2 << "\n";
    if (end1 < anf1) return 0;

    std::uint32_t unterschiede = 0;
    std::uint8_t w1[16], w2[16];
    bool b1[16], b2[16];
    std::uint16_t maske = 0;
    int pos = 0;
    adrInteger a = anf1, b = anf2, zeileA = a, zeileB = b;
    for (;;) {
        anderes.liefereByte(b, w2[pos], 0);
        eins.liefereByte(a, w1[pos], 0);
        b1[pos] = eins.liefereAnzSchr(a) != 0;
        b2[pos] = anderes.liefereAnzSchr(b) != 0;
        if (b1[pos] != b2[pos] || w1[pos] != w2[pos]) {
            maske |= static_cast<std::uint16_t>(1u << pos);
            ++unterschiede;
        }
        ++pos;
        const bool letzte = a == end1;
        if (pos == 16 || letzte) {
            if (maske) {
                os << "Daten [";
                breit(zeileA, 6) << "]"
                                 << "\t = ";
                for (int i = 0; i < pos; ++i) {
                    if (b1[i])
                        breit(w1[i], 2) << " ";
                    else
                        os << "-- ";
                }
                os << "\n";
                if (anf1 != anf2) {
                    os << "Daten [";
                    breit(zeileB, 6) << "]"
                                     << "\t = ";
                } else {
                    os << "\t\t   ";
                }
                for (int i = 0; i < pos; ++i) {
                    if (!(maske & (1u << i)))
                        os << ".. ";
                    else if (b2[i])
                        breit(w2[i], 2) << " ";
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
