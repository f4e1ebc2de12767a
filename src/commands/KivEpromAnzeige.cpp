// The byte display of an image: on the console through the image's own
// display, or into a file through a format statement, for which the image
// delivers its variables.
#include <algorithm>
#include <array>
#include <fstream>
#include <ostream>
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
#include "reporting/FmtAnweisung.h"

namespace {

constexpr std::uint32_t blockGroesse = 65536;

// The texts of one byte value in both forms, made once.
struct ByteTexte {
    std::array<String, 256> hex, text;
    ByteTexte() {
        for (int i = 0; i < 256; ++i) {
            hex[static_cast<std::size_t>(i)] = String(hex::text(static_cast<unsigned>(i), 2));
            text[static_cast<std::size_t>(i)] = String(i < 32 ? '.' : static_cast<char>(i), 1);
        }
    }
};

const ByteTexte& byteTexte() {
    static const ByteTexte texte;
    return texte;
}

String hex8(adrInteger wert) { return String(hex::text(wert, 8)); }

// The number of bytes of the regions that nobody wrote, over the whole image.
std::uint32_t leereBytes(Eprom& eprom) {
    std::ostream nirgends(nullptr);  // the listing itself is not wanted
    return eprom.anzeigeBelegung(nirgends, eprom.liefereAnfAdr(), eprom.liefereEndAdr());
}

// Every address of anzeigeAnfAdr .. anzeigeEndAdr gives one value: the byte
// if it is `belegt`, a dash if it is not, a blank if it is not in the image.
// Bytes are fetched in blocks; outside a free image's span and in the gaps
// of a fixed one nothing is read, since those reads could only fail.
void gibBytesAus(KivEprom& kiv, FmtVariable& variable) {
    Eprom& eprom = *kiv.eprom;
    const bool hex = kiv.anzeigeHex != 0;
    const ByteTexte& texte = byteTexte();
    const String leer(hex ? "  " : " ");
    const String strich(hex ? "--" : "-");
    const bool frei = eprom.istFrei() != 0;
    const adrInteger anfEpr = eprom.liefereAnfAdr();
    const adrInteger endEpr = eprom.liefereEndAdr();

    std::vector<std::uint8_t> daten(blockGroesse), zaehler(blockGroesse);
    std::uint64_t a = kiv.anzeigeAnfAdr;
    const std::uint64_t ende = kiv.anzeigeEndAdr;
    while (a <= ende) {
        // The stretch from `a` that is not read: blanks.
        std::uint64_t lesbarAb = a;
        std::uint64_t lesbarBis = ende;
        if (frei) {
            if (a < anfEpr)
                lesbarAb = anfEpr;
            else if (a > endEpr)
                lesbarAb = ende + 1;
            lesbarBis = std::min<std::uint64_t>(ende, endEpr);
        } else {
            adrInteger rv, rb;
            if (eprom.liefereBereich(static_cast<adrInteger>(a), rv, rb)) {
                lesbarAb = rv;
                lesbarBis = std::min<std::uint64_t>(ende, rb);
            } else {
                lesbarAb = ende + 1;
            }
        }
        if (lesbarAb > a) {
            const std::uint64_t bisLeer = std::min(lesbarAb - 1, ende);
            for (; a <= bisLeer; ++a) variable.ausgabe(leer);
            continue;
        }
        const auto anzahl =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(lesbarBis - a + 1, blockGroesse));
        const auto adr = static_cast<adrInteger>(a);
        if (eprom.liefereBytes(adr, anzahl, daten.data(), zaehler.data())) {
            for (std::uint32_t i = 0; i < anzahl; ++i)
                variable.ausgabe(zaehler[i] ? (hex ? texte.hex[daten[i]] : texte.text[daten[i]]) : strich);
        } else {
            // Some byte refused: ask byte by byte which.
            for (std::uint32_t i = 0; i < anzahl; ++i) {
                std::uint8_t byte = 0;
                const int gelesen = eprom.liefereByte(adr + i, byte, 0);
                if (!gelesen && !frei)
                    variable.ausgabe(leer);
                else if (gelesen && eprom.liefereAnzSchr(adr + i) != 0)
                    variable.ausgabe(hex ? texte.hex[byte] : texte.text[byte]);
                else
                    variable.ausgabe(strich);
            }
        }
        a += anzahl;
    }
}

}  // namespace

int KivEprom::ersetzeVariable(FmtVariable& variable) {
    const int index = variable.liefereIndex(variablenListe());
    // The counts over the image's span; for an empty image the unsigned
    // difference wraps, as these counts always did.
    const auto anzahl = [this] { return eprom->liefereEndAdr() - eprom->liefereAnfAdr() + 1; };
    switch (index) {
    case 0: variable.ausgabe(hex8(anzeigeAnfAdr)); return 1;
    case 1: variable.ausgabe(hex8(anzeigeEndAdr)); return 1;
    case 2: gibBytesAus(*this, variable); return 1;
    case 3: variable.ausgabe(String(std::to_string(anzahl()))); return 1;
    case 4:
        variable.ausgabe(String(std::to_string(static_cast<adrInteger>(anzahl() - leereBytes(*eprom)))));
        return 1;
    case 5: variable.ausgabe(String(std::to_string(leereBytes(*eprom)))); return 1;
    case 6: variable.ausgabe(aktDatei ? aktDatei->liefereGanz() : String()); return 1;
    default: return variable.unbekannteVariable("KivEprom::anzeigeBytes", *this);
    }
}

int KivEprom::anzeigeBytes(adrInteger anf, adrInteger end, int hex, const DateiName& datei, int modus,
                           const String& format) {
    anzeigeAnfAdr = anf;
    anzeigeEndAdr = end;
    anzeigeHex = hex;
    const auto zuruecksetzen = [this] {
        anzeigeAnfAdr = 0;
        anzeigeEndAdr = 0;
        anzeigeHex = 1;
    };

    const char* name = datei.liefereGanz().c_str();
    SichereAusgabe::Art art = SichereAusgabe::Art::ersetzen;
    // A file that opens for reading and writing without being created is
    // there: kept behind for appending, replaced by a new one once that is
    // complete. A file that refuses the probe counts as absent; if it cannot
    // be opened either, the display is passed over without a word, intended.
    bool vorhanden;
    {
        std::fstream probe(name, std::ios::in | std::ios::out);
        vorhanden = static_cast<bool>(probe);
    }
    if (vorhanden) {
        if (modus == 1) {
            art = SichereAusgabe::Art::anhaengen;
        } else if (!dateiErsetzbar(name)) {
            Fehler("FILE-READONLY", "KivEprom::anzeigeBytes ", datei.liefereGanz(), 'E');
            zuruecksetzen();
            return 0;
        }
    }
    SichereAusgabe ausgabe(datei.liefereGanz(), art);
    if (ausgabe.offen()) {
        FmtAnweisung anweisung(format);
        anweisung.ausgabe(ausgabe.strom(), *this);
        if (const int fehler = ausgabe.beende()) {
            meldeSchreibFehler(datei.liefereGanz(), fehler, "KivEprom::anzeigeBytes ");
            zuruecksetzen();
            return 0;
        }
    }
    zuruecksetzen();
    return 1;
}

int kdoAnzeige(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::anzeige;
    auto& kiv = static_cast<KivEprom&>(objekt);
    Eprom& eprom = *kiv.eprom;
    const adrInteger von = kommando[arg::startAdresse].liefereArgWertBool()
                               ? kommando[arg::startAdresse].liefereArgWertIntHex()
                               : eprom.liefereAnfAdr();
    const adrInteger bis = kommando[arg::endAdresse].liefereArgWertBool()
                               ? kommando[arg::endAdresse].liefereArgWertIntHex()
                               : eprom.liefereEndAdr();
    const char* funktion = "KivEprom::kdoAnzeige ";
    if (!KivEprom::pruefeAdresse(von, funktion) || !KivEprom::pruefeAdresse(bis, funktion)) return 0;
    const int hex = kommando[arg::darstellung].liefereArgWertInt() == 0;
    const DateiName datei = kommando[arg::datei].liefereArgWertDatei();
    if (datei.liefereGanz() == "/")
        eprom.anzeigeBytes(von, bis, String(), *kdoAnzeigeStream, hex);
    else
        // A refused file has been reported; the command counts as done.
        kiv.anzeigeBytes(von, bis, hex, datei, kommando[arg::modus].liefereArgWertInt(),
                         kommando[arg::format].liefereArgWertStr());
    return 1;
}
