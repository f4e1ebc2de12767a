// The checksum base class; see Checksumme.h.
#include "checksums/Checksumme.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <ostream>

#include "checksums/ChecksumAlgorithmen.h"
#include "checksums/EpromLauf.h"
#include "foundation/Datei.h"
#include "foundation/DateiName.h"
#include "foundation/Hex.h"
#include "image/Eprom.h"
#include "reporting/Fehler.h"

Checksumme::Checksumme(adrInteger anfAdr, adrInteger endAdr) : anfAdr_(anfAdr), endAdr_(endAdr) {}

Checksumme::~Checksumme() = default;

String Checksumme::liefereName() const { return SprachText("Checksumme"); }

std::uint16_t Checksumme::liefereGroesse() const { return 4; }

void Checksumme::setzeZielAdr(adrInteger adr) {
    // Without memory the sum runs without a target.
    zielAdr_.reset(new (std::nothrow) adrInteger(adr));
}

const String& Checksumme::variablenListe() {
    static const String liste("AnfAdr\nEndAdr\nChksum\nChksumTyp\n ");
    return liste;
}

String Checksumme::hex(std::uint32_t wert, int stellen) {
    return String(hex::text(wert, std::clamp(stellen, 0, 8)));
}

adrInteger Checksumme::anzeigeAnfang(Eprom& eprom) const { return std::max(eprom.liefereAnfAdr(), anfAdr_); }

adrInteger Checksumme::anzeigeEnde(Eprom& eprom) const { return std::min(eprom.liefereEndAdr(), endAdr_); }

void Checksumme::liefereBereich(Eprom& eprom, adrInteger& von, adrInteger& bis) const {
    von = std::max(anfAdr_, eprom.liefereAnfAdr());
    bis = std::min(endAdr_, eprom.liefereEndAdr());
}

int Checksumme::pruefeCrcZiel(adrInteger von, adrInteger bis, adrInteger w, const char* funktion) const {
    if (!zielAdr_) return 1;
    const adrInteger t = *zielAdr_;
    if (t <= bis && t + w - 1 >= von) {
        Fehler("CHK-TARGET-ADDRESS-NOT-VALID", funktion, String(), 'E');
        return 0;
    }
    return 1;
}

namespace {

// The CRC-16 is handed on as a signed 16-bit number widened to 32 bits.
adrInteger crcWert(const Crc16Rechner& rechner) { return vorzeichenErweitert(rechner.ergebnis()); }
adrInteger crcWert(const Crc32Rechner& rechner) { return rechner.ergebnis(); }

}  // namespace

template <typename Rechner>
adrInteger Checksumme::bildeCrc(Eprom& eprom, Rechner& rechner, adrInteger w, int swap,
                                const char* funktion) {
    adrInteger von, bis;
    liefereBereich(eprom, von, bis);
    const int zielOk = pruefeCrcZiel(von, bis, w, funktion);
    if (von <= bis)
        laufeMitNullen(
            eprom, von, bis,
            [&](adrInteger, const std::uint8_t* daten, std::uint64_t anzahl) { rechner.nimm(daten, anzahl); },
            [&](adrInteger, std::uint64_t anzahl) { rechner.nimmNullen(anzahl); });
    const adrInteger summe = crcWert(rechner);
    if (zielOk) schreibeCrcZiel(eprom, summe, w, swap);
    return summe;
}

template adrInteger Checksumme::bildeCrc(Eprom&, Crc16Rechner&, adrInteger, int, const char*);
template adrInteger Checksumme::bildeCrc(Eprom&, Crc32Rechner&, adrInteger, int, const char*);

void Checksumme::schreibeCrcZiel(Eprom& eprom, adrInteger wert, adrInteger w, int swap) const {
    if (!zielAdr_) return;
    if (swap) {
        adrInteger umgekehrt = 0;
        for (adrInteger i = 0; i < w; ++i) umgekehrt = (umgekehrt << 8) | ((wert >> (8 * i)) & 0xFFu);
        wert = umgekehrt;
    }
    for (adrInteger i = 0; i < w; ++i)
        if (!eprom.setzeByte(*zielAdr_ + i, static_cast<std::uint8_t>((wert >> (8 * (w - 1 - i))) & 0xFFu)))
            return;
}

int Checksumme::ersetzeVariable(FmtVariable& variable) {
    switch (variable.liefereIndex(variablenListe())) {
    case 0: return variable.ausgabe(hex(anzeigeAnfAdr_, 6));
    case 1: return variable.ausgabe(hex(anzeigeEndAdr_, 6));
    case 2: {
        std::uint16_t groesse = liefereGroesse();
        std::uint32_t wert = groesse == 2 ? (chksum_ & 0xFFFFu) : chksum_;
        return variable.ausgabe(hex(wert, 2 * groesse));
    }
    case 3: return variable.ausgabe(liefereName());
    default: return variable.unbekannteVariable("Checksumme::anzeigeErgebnis", *this);
    }
}

int Checksumme::anzeigeErgebnis(Eprom& eprom, adrInteger summe, const DateiName& datei, int modus,
                                const String& format) {
    const char* name = datei.liefereGanz().c_str();
    // A file that opens for reading and writing exists; a new file replaces
    // it once complete, and only a file that may not be replaced counts as
    // write-protected. A file that does not even open is not looked at
    // further.
    bool vorhanden;
    {
        std::fstream probe(name, std::ios::in | std::ios::out);
        vorhanden = static_cast<bool>(probe);
    }
    if (vorhanden && modus == 0 && !dateiErsetzbar(name, false)) {
        Fehler("FILE-READONLY", "Checksumme::anzeigeErgebnis ", datei.liefereGanz(), 'E');
        return 0;
    }
    SichereAusgabe ausgabe(datei.liefereGanz(),
                           modus == 0 ? SichereAusgabe::Art::ersetzen : SichereAusgabe::Art::anhaengen);
    // A file that cannot be opened is passed over without a word; intended.
    if (!ausgabe.offen()) return 1;
    std::ostream& strom = ausgabe.strom();
    chksum_ = summe;
    anzeigeAnfAdr_ = anzeigeAnfang(eprom);
    anzeigeEndAdr_ = anzeigeEnde(eprom);
    FmtAnweisung anweisung(format);
    anweisung.ausgabe(strom, *this);
    if (const int fehler = ausgabe.beende()) {
        meldeSchreibFehler(datei.liefereGanz(), fehler, "Checksumme::anzeigeErgebnis ");
        return 0;
    }
    return 1;
}
