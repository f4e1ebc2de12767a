// Load, save and edit operations of an open image, and their handlers.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <vector>

#include "commands/KivEprom.h"
#include "commands/KivEpromArgumente.h"
#include "foundation/Datei.h"
#include "foundation/Hex.h"
#include "foundation/LongDynArray.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"

namespace {

// Ranges longer than this show their progress marks.
constexpr std::uint64_t fortschrittAb = 4001;
constexpr dataInteger fortschrittSchritt = 1000;

String dezimal(std::uint64_t wert) { return String(std::to_string(wert)); }

String hexKlein(std::int64_t wert) {
    if (wert < 0) return String("-" + hex::text(-static_cast<std::uint64_t>(wert), 1, false));
    return String(hex::text(static_cast<std::uint64_t>(wert), 1, false));
}

String hexGross(std::int64_t wert) { return String(hex::text(static_cast<std::uint64_t>(wert))); }

// The Motorola line form of a write type.
std::int32_t motorolaModus(std::int32_t typ) {
    switch (typ) {
    case KivEprom::typMotorolaS3S7: return EpromDateiMotorola::S3S7;
    case KivEprom::typMotorolaS1S9: return EpromDateiMotorola::S1S9;
    case KivEprom::typMotorolaS2S8: return EpromDateiMotorola::S2S8;
    default: return EpromDateiMotorola::DYN;
    }
}

KivEprom& kivVon(KdoObjekt& objekt) { return static_cast<KivEprom&>(objekt); }

// The file of a load or save: the one given, else the file the image last
// came from or went to, else a file named like the image. An image made by
// `neu(/)` keeps "/" as its file, which stands for none as everywhere.
DateiName dateiVon(KivEprom& kiv, KdoKommando& kommando, ArgPos<KdoArgTyp::DateiName> position) {
    const DateiName& datei = kommando[position].liefereArgWertDatei();
    if (datei.liefereGanz() != "/") return datei;
    if (kiv.aktDatei && kiv.aktDatei->liefereGanz() != "/") return *kiv.aktDatei;
    return DateiName(kiv.liefereName());
}

adrInteger fuellWert(KdoKommando& kommando, ArgPos<KdoArgTyp::BoolIntegerHex> position) {
    return kommando[position].liefereArgWertBool() == 1 ? kommando[position].liefereArgWertIntHex() : 0;
}

bool istLeer(Eprom& eprom) { return eprom.liefereAnfAdr() > eprom.liefereEndAdr(); }

}  // namespace

// ---------------------------------------------------------------------------
// Operations

namespace {
// The optional addresses of a file transfer, checked in order; the first
// bad one is reported.
bool adressenGut(const adrInteger* start, const adrInteger* ende, const adrInteger* extern_,
                 const char* funktion) {
    return KivEprom::pruefeAdresse(start, funktion) && KivEprom::pruefeAdresse(ende, funktion) &&
           KivEprom::pruefeAdresse(extern_, funktion);
}
}  // namespace

int KivEprom::leseVonDatei(const DateiName& datei, std::int32_t typ, std::uint32_t nutzBytes, int tausche,
                           adrInteger fuellByte, int bytesPruefen, const adrInteger* startAdresse,
                           const adrInteger* endAdresse, const adrInteger* externeAdresse) {
    const char* funktion = "KivEprom::leseVonDatei ";
    if (!adressenGut(startAdresse, endAdresse, externeAdresse, funktion)) return 0;
    {
        // A directory opens as a stream too, but holds no image.
        std::error_code fehler;
        std::ifstream probe(datei.liefereGanz().c_str(), std::ios::in | std::ios::binary);
        if (!probe || std::filesystem::is_directory(datei.liefereGanz().str(), fehler)) {
            Fehler("FILE-NOT-EXIST", funktion, datei.liefereGanz(), 'E');
            return 0;
        }
    }

    int ergebnis = 0;
    if (typ == typBinaer) {
        EpromDateiBinaer leser(datei);
        ergebnis = leser.lies(*eprom, startAdresse, endAdresse, externeAdresse);
    } else if (typ == typIntel) {
        EpromDateiIntel leser(datei, nutzBytes);
        ergebnis = leser.lies(*eprom, startAdresse, endAdresse, externeAdresse);
    } else {
        EpromDateiMotorola leser(datei, nutzBytes);
        leser.modus = motorolaModus(typ);
        ergebnis = leser.lies(*eprom, startAdresse, endAdresse, externeAdresse);
    }
    if (ergebnis != 1) return ergebnis;

    if (tausche == 1) swap(startAdresse, endAdresse);
    geaendert = 1;
    aktDatei = std::make_unique<DateiName>(datei);
    aktDateiTyp = typ;

    if (fuellByte != 0) {
        // The fill widens a free image to the given bounds. An image that is
        // still empty has no bounds of its own, and filling the whole
        // address space is never what was asked for: it needs both bounds.
        const bool leer = istLeer(*eprom);
        if (!leer || (startAdresse && endAdresse)) {
            adrInteger von = eprom->liefereAnfAdr();
            adrInteger bis = eprom->liefereEndAdr();
            if (startAdresse && (leer || *startAdresse < von)) von = *startAdresse;
            if (endAdresse && (leer || *endAdresse > bis)) bis = *endAdresse;
            fuelleVonBis(von, bis, fuellByte);
        }
    }
    if (bytesPruefen == 1) pruefeBelegt(startAdresse, endAdresse);
    return 1;
}

int KivEprom::schreibeInDatei(const DateiName& datei, int ueberschreiben, std::int32_t typ,
                              dataInteger nutzBytes, int tausche, adrInteger fuellbyte,
                              const adrInteger* startAdresse, const adrInteger* endAdresse,
                              const adrInteger* externeAdresse) {
    const char* funktion = "KivEprom::schreibeInDatei ";
    if (!adressenGut(startAdresse, endAdresse, externeAdresse, funktion)) return 0;
    // The line writers cannot cut a record into pieces of no byte, and a
    // record must fit the 132 characters that the readers take as one line:
    // 11 + 2n for Intel, 14 + 2n for the widest S-record (every Motorola
    // form can grow into S3). Refuse before the old file is touched.
    const dataInteger hoechstens = typ == typIntel ? 60 : 59;
    if (typ != typBinaer && (nutzBytes < 1 || nutzBytes > hoechstens)) {
        Fehler("INVALID-VALUE", funktion,
               String("nutzBytes ") + String(nutzBytes) + ": erlaubt sind 1 bis " + String(hoechstens) +
                   " Bytes je Zeile",
               'E');
        return 0;
    }

    adrInteger von = startAdresse ? *startAdresse : eprom->liefereAnfAdr();
    adrInteger bis = endAdresse ? *endAdresse : eprom->liefereEndAdr();
    adrInteger ext = externeAdresse ? *externeAdresse : von;

    if (dateiExistiert(datei)) {
        // What this very image loaded or wrote may be written again in the
        // same type without asking.
        const bool eigeneDatei =
            aktDatei && aktDatei->liefereGanz() == datei.liefereGanz() && aktDateiTyp == typ;
        if (ueberschreiben != 1 && !eigeneDatei) {
            Fehler("FILE-EXIST", funktion, datei.liefereGanz(), 'E');
            return 0;
        }
        // The old file stays until the new one is complete; a file that may
        // not be replaced is refused before anything is written.
        if (!dateiErsetzbar(datei.liefereGanz().c_str())) {
            Fehler("FILE-READONLY", funktion, datei.liefereGanz(), 'E');
            return 0;
        }
    }

    if (tausche == 1) swap(startAdresse, endAdresse);

    // The fill byte goes into a copy only, and stays inside the image: a
    // range that misses the image (or an empty image) fills nothing, and
    // the writer reports the range.
    std::unique_ptr<KivEprom> gefuellt;
    Eprom* quelle = eprom.get();
    if (fuellbyte != 0) {
        gefuellt = std::make_unique<KivEprom>(std::make_unique<Eprom>(*eprom), "tmp");
        const adrInteger fuellVon = std::max(von, eprom->liefereAnfAdr());
        const adrInteger fuellBis = std::min(bis, eprom->liefereEndAdr());
        if (fuellVon <= fuellBis) gefuellt->fuelleVonBis(fuellVon, fuellBis, fuellbyte);
        quelle = gefuellt->eprom.get();
    }

    int ergebnis = 0;
    if (typ == typIntel) {
        EpromDateiIntel schreiber(datei, static_cast<std::uint32_t>(nutzBytes));
        ergebnis = schreiber.schreibe(*quelle, &von, &bis, &ext);
    } else if (typ == typBinaer) {
        EpromDateiBinaer schreiber(datei);
        ergebnis = schreiber.schreibe(*quelle, &von, &bis, &ext);
    } else {
        EpromDateiMotorola schreiber(datei, static_cast<std::uint32_t>(nutzBytes));
        schreiber.modus = motorolaModus(typ);
        ergebnis = schreiber.schreibe(*quelle, &von, &bis, externeAdresse);
    }

    if (tausche == 1) swap(startAdresse, endAdresse);
    if (ergebnis == 1) {
        geaendert = 0;
        aktDatei = std::make_unique<DateiName>(datei);
        aktDateiTyp = typ;
    }
    return ergebnis;
}

int KivEprom::setzeWertVonBis(adrInteger anf, adrInteger end, std::int64_t wert) {
    const char* funktion = "KivEprom::setzeWertVonBis ";
    if (!pruefeAdresse(anf, funktion) || !pruefeAdresse(end, funktion)) return 0;
    const adrInteger lo = std::min(anf, end);
    const adrInteger hi = std::max(anf, end);
    if (wert > 255 || wert < 0) {
        Fehler("INVALID-VALUE", funktion, "0x" + hexKlein(wert), 'E');
        return 0;
    }
    const auto byte = static_cast<std::uint8_t>(wert);
    // The highest byte first: it sets the span of a free image at once.
    if (!eprom->setzeByteMit(hi, byte)) return 0;
    geaendert = 1;

    std::vector<std::uint8_t> block(std::min<std::uint64_t>(std::uint64_t(hi) - lo, 65536), byte);
    std::uint64_t a = lo;
    while (a < hi) {
        const auto n = static_cast<std::uint32_t>(std::min<std::uint64_t>(hi - a, block.size()));
        if (eprom->setzeBytes(static_cast<adrInteger>(a), block.data(), n, 1) != n) return 0;
        a += n;
    }
    return 1;
}

std::uint32_t KivEprom::fuelleVonBis(adrInteger anf, adrInteger end, std::int64_t wert) {
    const char* funktion = "KivEprom::fuelleVonBis ";
    if (!pruefeAdresse(anf, funktion) || !pruefeAdresse(end, funktion)) return 0;
    adrInteger lo = std::min(anf, end);
    adrInteger hi = std::max(anf, end);
    if (wert > 255 || wert < 0) {
        Fehler("INVALID-VALUE", funktion, "0x" + hexKlein(wert), 'E');
        return 0;
    }
    const auto byte = static_cast<std::uint8_t>(wert);
    std::uint32_t anzahl = 0;
    if (eprom->liefereAnfAdr() > lo && eprom->setzeByteMit(lo, byte)) ++anzahl;
    if (eprom->liefereEndAdr() < hi && eprom->setzeByteMit(hi, byte)) ++anzahl;
    // A free image spans only what was written, window by window: without
    // this a range over two windows would get its two end bytes only.
    eprom->umfasse(lo, hi);
    anzahl += eprom->fuelle(byte, &lo, &hi);
    if (anzahl != 0) {
        Fehler("EPR-BYTES-FILLED-WITH", "KivEprom::fuelleVonBis",
               dezimal(anzahl) + " bytes -> " + hexGross(wert), 'S');
        geaendert = 1;
    }
    return anzahl;
}

int KivEprom::swap(const adrInteger* anf, const adrInteger* end) {
    const char* funktion = "KivEprom::swap ";
    if (!pruefeAdresse(anf, funktion) || !pruefeAdresse(end, funktion)) return 0;
    const adrInteger a = anf ? *anf : eprom->liefereAnfAdr();
    const adrInteger e = end ? *end : eprom->liefereEndAdr();
    // Bounds in the wrong order are not sorted: both become `e`, and the
    // swap then refuses the single address. Intended.
    adrInteger lo = std::min(a, e);
    adrInteger hi = std::max(e, lo);
    lo = std::max(lo, eprom->liefereAnfAdr());
    hi = std::min(hi, eprom->liefereEndAdr());
    BearbeitungsFortschritt fortschritt(fortschrittSchritt, String());
    const bool lang = hi >= lo && std::uint64_t(hi) - lo >= fortschrittAb;
    const int ergebnis = eprom->swap(lo, hi, lang ? &fortschritt : nullptr);
    if (ergebnis == 1) geaendert = 1;
    return ergebnis;
}

int KivEprom::setzeBereich(adrInteger anf, adrInteger end) {
    const char* funktion = "KivEprom::setzeBereich ";
    if (!pruefeAdresse(anf, funktion) || !pruefeAdresse(end, funktion)) return 0;
    // A region lives in one byte array of bounded span; a larger one would
    // hand out a stand-in byte for every address beyond it, so it is refused.
    const std::uint64_t laenge = std::uint64_t(std::max(anf, end)) - std::min(anf, end) + 1;
    if (laenge > std::uint64_t(LongDynArray::maxAnzahl)) {
        Fehler("REGION-TOO-LARGE", funktion,
               hexKlein(std::min(anf, end)) + " - " + hexKlein(std::max(anf, end)) + ": " +
                   hexKlein(static_cast<std::int64_t>(laenge)) + " Bytes, ein Bereich hat hoechstens " +
                   hexKlein(LongDynArray::maxAnzahl) + " Bytes",
               'E');
        return 0;
    }
    const int ergebnis = eprom->definiereBereich(std::min(anf, end), std::max(anf, end));
    if (ergebnis == 1) geaendert = 1;
    return ergebnis;
}

int KivEprom::loescheBereich(adrInteger adr) {
    const char* funktion = "KivEprom::loescheBereich ";
    if (!pruefeAdresse(adr, funktion)) return 0;
    if (eprom->loescheBereich(adr) > 0) {
        geaendert = 1;
        return 1;
    }
    Fehler("NO-REGION-AT-ADDRESS", funktion, dezimal(adr), 'E');
    return 0;
}

int KivEprom::kopiere(adrInteger anf, adrInteger end, adrInteger ziel, KivEprom& zielEprom) {
    const char* funktion = "KivEprom::kopiere ";
    if (!pruefeAdresse(anf, funktion) || !pruefeAdresse(end, funktion) || !pruefeAdresse(ziel, funktion))
        return 0;
    BearbeitungsFortschritt fortschritt(fortschrittSchritt, String());
    const bool lang = end >= anf && std::uint64_t(end) - anf >= fortschrittAb;
    if (end < anf) return 1;  // nothing to copy

    const std::uint64_t laenge = std::uint64_t(end) - anf;
    if (std::uint64_t(ziel) + laenge > 0xFFFFFFFFu) {
        Fehler("INVALID-ADDRESS", funktion, "Adresse zu gross: " + hexGross(std::uint64_t(ziel) + laenge),
               'E');
        return 0;
    }
    // The direction follows the addresses alone, so that a copy within one
    // image comes out true where source and target overlap.
    const bool abwaerts = ziel > anf;
    int ergebnis = 1;
    bool geschrieben = false;
    // Block by block in the same direction: each block is read whole before
    // it is written, which within one image gives what the byte-wise copy
    // in that direction gives. A block where a byte is refused on either
    // side goes byte by byte, so that the report names the byte it always
    // named and the bytes before it are copied.
    constexpr std::uint64_t block = 65536;
    std::vector<std::uint8_t> puffer(static_cast<std::size_t>(std::min(block, laenge + 1)));
    auto nimmtAn = [&](adrInteger von, adrInteger bis) {
        EpromStrecke st;
        for (adrInteger a = von;; a = st.bis + 1) {
            zielEprom.eprom->liefereStrecke(a, bis, st);
            if (!st.imEprom) return false;
            if (st.bis == bis) return true;
        }
    };
    for (std::uint64_t fertig = 0; fertig <= laenge && ergebnis;) {
        const std::uint64_t n = std::min(block, laenge + 1 - fertig);
        const std::uint64_t lo = abwaerts ? laenge + 1 - fertig - n : fertig;
        const auto von = static_cast<adrInteger>(anf + lo);
        const auto nach = static_cast<adrInteger>(ziel + lo);
        if (eprom->liefereBytes(von, static_cast<std::uint32_t>(n), puffer.data()) &&
            nimmtAn(nach, static_cast<adrInteger>(nach + (n - 1)))) {
            geschrieben = true;
            if (zielEprom.eprom->setzeBytes(nach, puffer.data(), static_cast<std::uint32_t>(n), 1) != n)
                ergebnis = 0;
            if (lang) fortschritt += static_cast<dataInteger>(n);
        } else {
            for (std::uint64_t i = 0; i < n; ++i) {
                const std::uint64_t k = abwaerts ? lo + n - 1 - i : lo + i;
                std::uint8_t byte = 0;
                ergebnis = eprom->liefereByte(static_cast<adrInteger>(anf + k), byte, 1);
                if (!ergebnis) break;
                geschrieben = true;
                ergebnis = zielEprom.eprom->setzeByteMit(static_cast<adrInteger>(ziel + k), byte);
                if (!ergebnis) break;
                if (lang) fortschritt += 1;
            }
        }
        fertig += n;
    }
    if (geschrieben) zielEprom.geaendert = 1;
    return ergebnis;
}

// ---------------------------------------------------------------------------
// Handlers

int kdoInfo(KdoObjekt& objekt, KdoKommando&) {
    KivEprom& kiv = kivVon(objekt);
    std::ostream& os = *kdoAnzeigeStream;
    os << std::dec << "Dateiname: " << (kiv.aktDatei ? kiv.aktDatei->liefereGanz() : String()) << '\n';
    if (kiv.geaendert == 1) os << "Eprom geaendert\n";
    os << '\n';
    kiv.eprom->anzeigeBereiche(os);
    return 1;
}

int kdoLies(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::lies;
    KivEprom& kiv = kivVon(objekt);
    static const std::int32_t typen[] = {KivEprom::typIntel, KivEprom::typMotorola, KivEprom::typBinaer};
    const dataInteger wahl = kommando[arg::dateiTyp].liefereArgWertInt();
    const std::int32_t typ = typen[wahl >= 0 && wahl < 3 ? wahl : 0];
    const DateiName datei = dateiVon(kiv, kommando, arg::epromDatei);
    return kiv.leseVonDatei(
        datei, typ, 16, kommando[arg::swap].liefereArgWertBool(), fuellWert(kommando, arg::fuellByte),
        kommando[arg::bytesPruefen].liefereArgWertBool(), optionaleAdresse(kommando, arg::startAdresse),
        optionaleAdresse(kommando, arg::endAdresse), optionaleAdresse(kommando, arg::externeAdresse));
}

int kdoSchreibe(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::schreibe;
    KivEprom& kiv = kivVon(objekt);
    const DateiName datei = dateiVon(kiv, kommando, arg::epromDatei);
    return kiv.schreibeInDatei(
        datei, kommando[arg::ueberschreiben].liefereArgWertBool(),
        kommando[arg::dateiTyp].liefereArgWertInt(), kommando[arg::nutzBytes].liefereArgWertInt(),
        kommando[arg::swap].liefereArgWertBool(), fuellWert(kommando, arg::fuellbyte),
        optionaleAdresse(kommando, arg::startAdresse), optionaleAdresse(kommando, arg::endAdresse),
        optionaleAdresse(kommando, arg::externeAdresse));
}

int kdoSchreibeEvenOdd(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::schreibeEvenOdd;
    KivEprom& kiv = kivVon(objekt);
    const DateiName gerade = kommando[arg::epromDateiEven].liefereArgWertDatei();
    const DateiName ungerade = kommando[arg::epromDateiOdd].liefereArgWertDatei();
    if (gerade.liefereGanz() == "/" || ungerade.liefereGanz() == "/") {
        Fehler("MISSING-FILENAME", "KivEprom::kdoSchreibeEvenOdd ", "", 'E');
        return 0;
    }
    KivEprom even("even");
    KivEprom odd("odd");
    kiv.eprom->teileEvenOdd(*even.eprom, *odd.eprom);

    const std::int32_t typ = kommando[arg::dateiTyp].liefereArgWertInt();
    const int ueberschreiben = kommando[arg::ueberschreiben].liefereArgWertBool();
    const int tausche = kommando[arg::swap].liefereArgWertBool();
    const dataInteger nutzBytes = kommando[arg::nutzBytes].liefereArgWertInt();
    const adrInteger fuell = fuellWert(kommando, arg::fuellbyte);
    const adrInteger* start = optionaleAdresse(kommando, arg::startAdresse);
    const adrInteger* ende = optionaleAdresse(kommando, arg::endAdresse);
    const adrInteger* extern_ = optionaleAdresse(kommando, arg::externeAdresse);
    int ergebnis =
        even.schreibeInDatei(gerade, ueberschreiben, typ, nutzBytes, tausche, fuell, start, ende, extern_);
    if (ergebnis == 1)
        ergebnis = odd.schreibeInDatei(ungerade, ueberschreiben, typ, nutzBytes, tausche, fuell, start, ende,
                                       extern_);
    return ergebnis;
}

int kdoSetze(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::setze;
    const adrInteger start = kommando[arg::startAdresse].liefereArgWertIntHex();
    const adrInteger* ende = optionaleAdresse(kommando, arg::endAdresse);
    return kivVon(objekt).setzeWertVonBis(start, ende ? *ende : start,
                                          kommando[arg::hexWert].liefereArgWertIntHex());
}

int kdoDefiniereBereich(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::definiereBereich;
    return kivVon(objekt).setzeBereich(kommando[arg::anfAdresse].liefereArgWertIntHex(),
                                       kommando[arg::endAdresse].liefereArgWertIntHex());
}

int kdoLoescheBereich(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::loescheBereich;
    return kivVon(objekt).loescheBereich(kommando[arg::anfAdresse].liefereArgWertIntHex());
}

int kdoFuelle(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::fuelle;
    // Nothing left to fill fails the command, without a message.
    return kivVon(objekt).fuelleVonBis(kommando[arg::startAdresse].liefereArgWertIntHex(),
                                       kommando[arg::endAdresse].liefereArgWertIntHex(),
                                       kommando[arg::hexWert].liefereArgWertIntHex()) != 0
               ? 1
               : 0;
}

int kdoSwap(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::bereich;
    return kivVon(objekt).swap(optionaleAdresse(kommando, arg::startAdresse),
                               optionaleAdresse(kommando, arg::endAdresse));
}

int kdoKopiere(KdoObjekt& objekt, KdoKommando& kommando) {
    namespace arg = kdoArg::kopiere;
    KivEprom& kiv = kivVon(objekt);
    const adrInteger* anf = optionaleAdresse(kommando, arg::quelleStartAdresse);
    const adrInteger* end = optionaleAdresse(kommando, arg::quelleEndAdresse);
    const adrInteger* ziel = optionaleAdresse(kommando, arg::zielStartAdresse);
    const adrInteger von = anf ? *anf : kiv.eprom->liefereAnfAdr();
    const adrInteger bis = end ? *end : kiv.eprom->liefereEndAdr();
    KivEprom* zielEprom = &kiv;
    if (kommando[arg::zielEpromName].liefereArgWertBool() == 1) {
        zielEprom = findeKivEprom(kommando[arg::zielEpromName].liefereArgWertStr(), "KivEprom::kdoKopiere");
        if (!zielEprom) return 0;
    }
    return kiv.kopiere(von, bis, ziel ? *ziel : von, *zielEprom);
}
