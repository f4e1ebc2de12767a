// The checks of an image: the address check of all image commands, the
// occupancy listing, and the comparison of two images.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "commands/KivEprom.h"
#include "commands/KivEpromArgumente.h"
#include "foundation/Datei.h"
#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

namespace {

// One line of the occupancy listing, in the stream's present letter case.
std::uint64_t schreibeLauf(std::ostream& os, adrInteger von, adrInteger bis, int anzahl) {
    const char alt = os.fill('0');
    os << std::hex << "[" << std::setw(5) << von << " .. " << std::setw(5) << bis << "] -> " << std::dec
       << anzahl << std::hex << "\n";
    os.fill(alt);
    return std::uint64_t(bis) - von + 1;
}

// The comparison display of two images, as Eprom::anzeigeDifferenzen gives
// it, read in blocks: the byte-by-byte lookups of the image's own display
// make a comparison of 16 MiB take seconds. Each address is read once in
// both images, as the display reads it, so the regions that reads leave in
// free images are the same. Gives the number of differing addresses.
std::uint32_t zeigeDifferenzen(std::ostream& os, const String& name1, const String& name2, Eprom& eins,
                               Eprom& anderes, adrInteger anf1, adrInteger anf2, adrInteger end1) {
    os << std::hex << std::uppercase << "\n";
    if (!name1.istLeer())
        os << "Zeile 1: " << name1 << "\n"
           << "Zeile 2: " << name2 << "\n";
    if (end1 < anf1) return 0;

    // Whole lines of 16 addresses; as long as a storage chunk, so that a
    // block of images loaded alike lies in one stretch on both sides and is
    // compared where it is stored.
    constexpr std::uint32_t block = 32768;
    std::vector<std::uint8_t> puffer1(block), puffer2(block), zpuffer1(block), zpuffer2(block);
    const std::uint8_t *w1, *w2, *z1, *z2;
    auto direkt = [](Eprom& e, adrInteger von, std::uint32_t n, const std::uint8_t*& w,
                     const std::uint8_t*& z) {
        EpromStrecke st;
        e.liefereStrecke(von, 0xFFFFFFFF, st);
        if (std::uint64_t(st.bis) < std::uint64_t(von) + n - 1 || !st.imEprom || !st.daten || !st.anzSchr)
            return false;
        w = st.daten;
        z = st.anzSchr;
        return true;
    };
    std::uint32_t unterschiede = 0;
    const std::uint64_t gesamt = std::uint64_t(end1) - anf1 + 1;
    HexAusgabe aus(os);
    for (std::uint64_t fertig = 0; fertig < gesamt; fertig += block) {
        const auto anzahl = static_cast<std::uint32_t>(std::min<std::uint64_t>(gesamt - fertig, block));
        const auto a = static_cast<adrInteger>(anf1 + fertig);
        const auto b = static_cast<adrInteger>(anf2 + fertig);
        // The other image's addresses wrap to 0 and go on.
        const auto vorWrap = static_cast<std::uint32_t>(std::min<std::uint64_t>(anzahl, 0x100000000ull - b));
        if (vorWrap < anzahl || !direkt(anderes, b, anzahl, w2, z2)) {
            anderes.liefereBytes(b, vorWrap, puffer2.data(), zpuffer2.data());
            if (vorWrap < anzahl)
                anderes.liefereBytes(0, anzahl - vorWrap, puffer2.data() + vorWrap,
                                     zpuffer2.data() + vorWrap);
            w2 = puffer2.data();
            z2 = zpuffer2.data();
        }
        if (!direkt(eins, a, anzahl, w1, z1)) {
            eins.liefereBytes(a, anzahl, puffer1.data(), zpuffer1.data());
            w1 = puffer1.data();
            z1 = zpuffer1.data();
        }

        // Most of two images agree: let memcmp pass over the equal lines.
        if (std::memcmp(w1, w2, anzahl) == 0 && std::memcmp(z1, z2, anzahl) == 0) continue;
        for (std::uint32_t i = 0; i < anzahl; i += 16) {
            const std::uint32_t laenge = std::min<std::uint32_t>(16, anzahl - i);
            if (std::memcmp(&w1[i], &w2[i], laenge) == 0 && std::memcmp(&z1[i], &z2[i], laenge) == 0)
                continue;
            std::uint32_t maske = 0;
            for (std::uint32_t k = 0; k < laenge; ++k) {
                const std::uint32_t j = i + k;
                if ((z1[j] != 0) != (z2[j] != 0) || w1[j] != w2[j]) maske |= 1u << k;
            }
            if (!maske) continue;
            unterschiede += static_cast<std::uint32_t>(std::popcount(maske));
            aus.text("Daten [");
            aus.zahl(a + i, 6);
            aus.text("]\t = ");
            for (std::uint32_t k = 0; k < laenge; ++k) {
                if (z1[i + k]) {
                    aus.byte(w1[i + k]);
                    aus.zeichen(' ');
                } else {
                    aus.text("-- ");
                }
            }
            aus.zeichen('\n');
            if (anf1 != anf2) {
                aus.text("Daten [");
                aus.zahl(static_cast<adrInteger>(b + i), 6);
                aus.text("]\t = ");
            } else {
                aus.text("\t\t   ");
            }
            for (std::uint32_t k = 0; k < laenge; ++k) {
                if (!(maske & (1u << k))) {
                    aus.text(".. ");
                } else if (z2[i + k]) {
                    aus.byte(w2[i + k]);
                    aus.zeichen(' ');
                } else {
                    aus.text("-- ");
                }
            }
            aus.zeichen('\n');
        }
    }
    return unterschiede;
}

}  // namespace

int KivEprom::pruefeAdresse(std::uint64_t adr, const char* funktion) {
    if (adr <= 0xFFFFFFFF) return 1;
    Fehler("INVALID-ADDRESS", funktion, String("Adresse zu gross: " + hex::text(adr)), 'E');
    return 0;
}

int KivEprom::pruefeAdresse(const adrInteger* adr, const char* funktion) {
    return adr ? pruefeAdresse(std::uint64_t(*adr), funktion) : 1;
}

std::uint32_t KivEprom::pruefeBelegt(const adrInteger* anf, const adrInteger* end) {
    const adrInteger anfEpr = eprom->liefereAnfAdr();
    const adrInteger endEpr = eprom->liefereEndAdr();
    const adrInteger von = anf ? *anf : anfEpr;
    const adrInteger bis = end ? *end : endEpr;
    Fehler("CHECK-BYTES", "KivEprom::pruefeBelegt", name_, 'S');

    std::ostream& os = *kdoAnzeigeStream;
    std::uint64_t frei = 0;
    // The range may reach beyond the image: those parts count as runs that
    // nobody wrote.
    if (von < anfEpr) frei += schreibeLauf(os, von, anfEpr - 1, 0);
    frei += eprom->anzeigeBelegung(os, von, bis);
    if (bis > endEpr) frei += schreibeLauf(os, endEpr + 1, bis, 0);
    if (frei != 0) Fehler("NOT-OCCUPIED-BYTES", "KivEprom::pruefeBelegt", String(std::to_string(frei)), 'W');
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(frei, 0xFFFFFFFF));
}

int kdoPruefeMehrfachbelegung(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::bereich;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const adrInteger* anf = optionaleAdresse(kommando, arg::startAdresse);
    const adrInteger* end = optionaleAdresse(kommando, arg::endAdresse);
    const char* funktion = "KivEprom::kdoPruefeMehrfachbelegung ";
    if (!KivEprom::pruefeAdresse(anf, funktion) || !KivEprom::pruefeAdresse(end, funktion)) return 0;
    kiv.pruefeBelegt(anf, end);
    return 1;
}

int kdoVergleiche(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::vergleiche;
    auto& kiv = static_cast<KivEprom&>(objekt);
    const char* funktion = "KivEprom::kdoVergleiche ";
    Eprom& eprom = *kiv.eprom;
    const adrInteger* anf = optionaleAdresse(kommando, arg::quelleStartAdresse);
    const adrInteger* end = optionaleAdresse(kommando, arg::quelleEndAdresse);
    const adrInteger* zielAnf = optionaleAdresse(kommando, arg::zielStartAdresse);
    const adrInteger von = anf ? *anf : eprom.liefereAnfAdr();
    const adrInteger bis = end ? *end : eprom.liefereEndAdr();
    const adrInteger ziel = zielAnf ? *zielAnf : von;
    if (!KivEprom::pruefeAdresse(von, funktion) || !KivEprom::pruefeAdresse(bis, funktion) ||
        !KivEprom::pruefeAdresse(ziel, funktion))
        return 0;

    KivEprom* anderes = &kiv;
    if (kommando[arg::zielEpromName].liefereArgWertBool()) {
        anderes = findeKivEprom(kommando[arg::zielEpromName].liefereArgWertStr(), "KivEprom::kdoVergleiche");
        if (!anderes) return 0;
    }

    const DateiName datei = kommando[arg::ausgabeDatei].liefereArgWertDatei();
    const String& dateiText = datei.liefereGanz();
    std::uint32_t unterschiede;
    if (dateiText == "/") {
        unterschiede = zeigeDifferenzen(*kdoAnzeigeStream, kiv.name_, anderes->name_, eprom, *anderes->eprom,
                                        von, ziel, bis);
        Fehler("NO-OF-DIFFERENCES", funktion, String(std::to_string(unterschiede)), 'S');
    } else {
        SichereAusgabe ausgabe(dateiText);
        if ((dateiExistiert(datei) && !dateiErsetzbar(dateiText.c_str())) || !ausgabe.offen()) {
            Fehler("FILE-NOT-OPENED", funktion, dateiText, 'E');
            return 0;
        }
        std::ostream& strom = ausgabe.strom();
        Fehler("WRITE-DIFFERENCES-TO-FILE", funktion, dateiText, 'S');
        unterschiede =
            zeigeDifferenzen(strom, kiv.name_, anderes->name_, eprom, *anderes->eprom, von, ziel, bis);
        // The count follows the base the display left the stream in:
        // hexadecimal. Intended.
        strom << "NO-OF-DIFFERENCES " << unterschiede << "\n";
        if (const int fehler = ausgabe.beende()) {
            meldeSchreibFehler(dateiText, fehler, funktion);
            return 0;
        }
        Fehler("DIFFERENCES-FILE-CLOSED", funktion, dateiText, 'S');
    }
    // A comparison that finds differences fails the command, so that a
    // procedure can react to it.
    return unterschiede == 0 ? 1 : 0;
}
