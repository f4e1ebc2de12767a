// The additive sum; see ChecksumStandard.h.
#include "checksums/ChecksumStandard.h"

#include <algorithm>
#include <ostream>

#include "checksums/ChecksumAlgorithmen.h"
#include "checksums/EpromLauf.h"
#include "image/Eprom.h"
#include "reporting/Fehler.h"

namespace {

const char* const funktionBilde = "ChecksumStandard::bilde";

std::uint16_t begrenzt(std::uint16_t anzahlBytes) { return std::clamp<std::uint16_t>(anzahlBytes, 1, 4); }

}  // namespace

ChecksumStandard::ChecksumStandard(int kompensierung, adrInteger anfAdr, adrInteger endAdr,
                                   Checksumme* naechste, adrInteger addierWert, std::uint16_t anzahlBytes,
                                   int swap, std::uint16_t ergebnisGroesse)
    : Checksumme(anfAdr, endAdr),
      naechste_(naechste),
      addierWert_(addierWert),
      kompensierung_(kompensierung != 0),
      anzahlBytes_(begrenzt(anzahlBytes)),
      swap_(swap != 0),
      ergebnisGroesse_(ergebnisGroesse) {}

String ChecksumStandard::liefereName() const { return SprachText("Checksumme Standard"); }

std::uint16_t ChecksumStandard::liefereGroesse() const { return ergebnisGroesse_; }

void ChecksumStandard::addiere(adrInteger* summe, adrInteger wert) { *summe += wert; }

void ChecksumStandard::komplement(adrInteger* ziel, adrInteger wert) { *ziel = ~wert; }

adrInteger ChecksumStandard::tauscheFeld(adrInteger wert) const {
    if (!swap_) return wert;
    if (ergebnisGroesse_ == 2) return (wert & 0xFFFF0000u) | ((wert & 0xFFu) << 8) | ((wert >> 8) & 0xFFu);
    if (ergebnisGroesse_ == 4)
        return (wert >> 24) | ((wert >> 8) & 0xFF00u) | ((wert << 8) & 0xFF0000u) | (wert << 24);
    // Fields of 1 and 3 bytes keep their order.
    return wert;
}

int ChecksumStandard::schreibeFeld(Eprom& eprom, adrInteger ziel, adrInteger wert) {
    for (std::uint32_t i = 0; i < ergebnisGroesse_; ++i) {
        std::uint32_t schieben = 8 * (ergebnisGroesse_ - 1 - i);
        auto byte = static_cast<std::uint8_t>(schieben < 32 ? (wert >> schieben) & 0xFFu : 0u);
        if (!eprom.setzeByte(ziel + i, byte)) return 0;
    }
    return 1;
}

int ChecksumStandard::summiere(Eprom& eprom, adrInteger von, adrInteger bis, adrInteger* summe) {
    StandardSummierer summierer(anzahlBytes_, swap_ != 0);
    int ok = 1;
    eprom.laufe(von, bis, [&](const EpromStrecke& s) {
        if (!s.imEprom) {
            // Once more with the report, for the first byte that is missing.
            std::uint8_t byte = 0;
            eprom.liefereByte(s.von, byte, 1);
            ok = 0;
            return false;
        }
        if (s.daten)
            summierer.nimm(s.daten, s.laenge());
        else
            summierer.nimmNullen(s.laenge());
        return true;
    });
    // The last addend is not cut at `bis`: it takes its bytes beyond it,
    // and at the end of the address space it ends short.
    adrInteger x = bis;
    while (ok && summierer.offen() != 0) {
        if (x == 0xFFFFFFFFu) {
            summierer.schliesseAb();
            break;
        }
        ++x;
        std::uint8_t byte = 0;
        if (!eprom.liefereByte(x, byte, 0)) {
            eprom.liefereByte(x, byte, 1);
            ok = 0;
            break;
        }
        summierer.nimm(&byte, 1);
    }
    addiere(summe, summierer.summe());
    return ok;
}

int ChecksumStandard::bilde(int modus, Eprom& eprom, adrInteger* summe) {
    int fehler = 0;
    *summe = 0;
    const adrInteger von = std::max(eprom.liefereAnfAdr(), std::min(anfAdr_, endAdr_));
    const adrInteger bis = std::min(eprom.liefereEndAdr(), std::max(anfAdr_, endAdr_));
    const adrInteger w = ergebnisGroesse_;
    const adrInteger* ziel = zielAdr_.get();

    if (von <= bis && swap_) {
        if (anzahlBytes_ == 3) {
            Fehler("CHK-COULD-NOT-SWAP", funktionBilde, String(), 'W');
            // The result field is left unswapped as well; intended.
            swap_ = 0;
        }
        if (swap_ && anzahlBytes_ > 1 && (von % 2 != 0 || bis % 2 != 1)) {
            Fehler("CHK-SWAP-NEEDS-EVEN-START-AND-LENGTH", funktionBilde, String(), 'E');
            fehler = 1;
        }
    }

    if (!fehler && ziel) {
        const adrInteger t = *ziel;
        // Only a field that runs over the end of the range is refused; one
        // that runs across its start is not looked at. Intended.
        if (bis - w + 1 < t && t <= bis) {
            Fehler("CHK-TARGET-ADDRESS-NOT-VALID", funktionBilde, String(), 'E');
            ++fehler;
        }
        if (kompensierung_ && bis - 2 * w + 1 < t && t <= bis) {
            Fehler("CHK-TARGET-ADDRESS-NOT-VALID", funktionBilde, String(), 'E');
            ++fehler;
        }
    }

    if (!fehler && ziel && modus == 1) {
        // Cleared before the walk, so that fields inside the range sum as
        // zeros and 0xFF bytes whatever they held.
        const adrInteger t = *ziel;
        for (adrInteger i = 0; i < w; ++i)
            if (!eprom.setzeByte(t + i, 0)) {
                ++fehler;
                break;
            }
        if (kompensierung_)
            for (adrInteger i = 0; i < w; ++i)
                if (!eprom.setzeByte(t + w + i, 0xFF)) {
                    ++fehler;
                    break;
                }
    }

    if (!fehler) {
        if (naechste_) addiere(summe, naechste_->liefereSumme(eprom));
        if (von <= bis && !summiere(eprom, von, bis, summe)) ++fehler;
    }

    if (!fehler) {
        addiere(summe, addierWert_);
        if (ziel && von <= bis) {
            const adrInteger t = *ziel;
            if (modus == 0) {
                adrInteger ist = 0;
                adrInteger maske = 0;
                for (adrInteger i = 0; i < w && i < 4; ++i) {
                    std::uint8_t byte = 0;
                    if (!eprom.liefereByte(t + i, byte, 0)) {
                        ++fehler;
                        break;
                    }
                    ist = (ist << 8) | byte;
                    maske = (maske << 8) | 0xFFu;
                }
                ist = tauscheFeld(ist);
                // A difference is reported but does not fail the sum.
                if ((*summe & maske) != ist)
                    Fehler("CHK-DIFFERENT", funktionBilde,
                           "Soll: " + hex(*summe & maske, 0) + " != " + "Ist: " + hex(ist, 0), 'E');
            } else if (modus == 1) {
                if (!schreibeFeld(eprom, t, tauscheFeld(*summe))) ++fehler;
                if (!fehler && kompensierung_) {
                    adrInteger gegen = 0;
                    komplement(&gegen, *summe);
                    if (!schreibeFeld(eprom, t + w, tauscheFeld(gegen))) ++fehler;
                }
            }
        }
    }

    if (!fehler) {
        switch (ergebnisGroesse_) {
        case 1: *summe &= 0xFFu; break;
        case 2: *summe &= 0xFFFFu; break;
        case 3: *summe &= 0xFFFFFFu; break;
        case 4: break;
        default: *summe = 0; break;
        }
        return 1;
    }

    String text = ziel ? "Chk-ZielAdr:" + hex(*ziel, 6) : String("keine Ziel-Adr");
    text += "\nAnfAdr:";
    text += hex(von, 6);
    text += von > bis ? " > " : "  ";
    text += "EndAdr:";
    text += hex(bis, 6);
    Fehler("CHK-ADR-NOT-OK", funktionBilde, text, 'E');
    return 0;
}
