// The checksum command handlers; see ChecksumKommandos.h.
#include "commands/ChecksumKommandos.h"

#include <memory>

#include "checksums/ChecksumCRC16.h"
#include "checksums/ChecksumCRC32.h"
#include "checksums/ChecksumSiemens.h"
#include "checksums/ChecksumStandard.h"
#include "commands/KivEprom.h"
#include "image/Eprom.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

namespace {

using Adresse = ArgPos<KdoArgTyp::BoolIntegerHex>;

// Start and end of the range; an absent one is the image's bound.
// Every 32-bit address passes the images' address check, so none is made.
void liesBereich(Eprom& eprom, KdoKommando& kommando, Adresse anf, Adresse end, adrInteger& start,
                 adrInteger& ende) {
    start = kommando[anf].liefereArgWertBool() ? kommando[anf].liefereArgWertIntHex() : eprom.liefereAnfAdr();
    ende = kommando[end].liefereArgWertBool() ? kommando[end].liefereArgWertIntHex() : eprom.liefereEndAdr();
}

// The result file of a command: its name ("/" for none), how it is opened
// and the line format.
struct ErgebnisDatei {
    DateiName datei;
    dataInteger modus;
    String format;

    ErgebnisDatei(KdoKommando& kommando, ArgPos<KdoArgTyp::DateiName> d, ArgPos<KdoArgTyp::Enum> m,
                  ArgPos<KdoArgTyp::String> f)
        : datei(kommando[d].liefereArgWertDatei()),
          modus(kommando[m].liefereArgWertInt()),
          format(kommando[f].liefereArgWertStr()) {}
    void schreibe(Checksumme& summe, Eprom& eprom, adrInteger wert) const {
        if (datei.liefereGanz() != "/") summe.anzeigeErgebnis(eprom, wert, datei, modus, format);
    }
};

}  // namespace

int kdoCheckSumme(Eprom& eprom, adrInteger& letzteChecksumme, std::int32_t& geaendert,
                  KdoKommando& kommando) {
    namespace arg = checksumKommando::checksumme;
    adrInteger start, ende;
    liesBereich(eprom, kommando, arg::startAdresse, arg::endAdresse, start, ende);
    const adrInteger* ziel = optionaleAdresse(kommando, arg::zielAdresse);
    const int kompensierung = kommando[arg::kompensierung].liefereArgWertBool();
    const adrInteger addierWert =
        kommando[arg::addiereLetzteChecksumme].liefereArgWertBool() ? letzteChecksumme : 0;
    const auto anzahlBytes = static_cast<std::uint16_t>(kommando[arg::anzahlBytes].liefereArgWertInt() + 1);
    const auto ergebnisGroesse =
        static_cast<std::uint16_t>(kommando[arg::ergebnisGroesse].liefereArgWertInt() + 1);
    const int swap = kommando[arg::swap].liefereArgWertBool();
    const ErgebnisDatei datei(kommando, arg::datei, arg::modus, arg::format);

    int ergebnis;
    {
        ChecksumStandard summe(kompensierung, start, ende, nullptr, addierWert, anzahlBytes, swap,
                               ergebnisGroesse);
        if (ziel) summe.setzeZielAdr(*ziel);
        ergebnis = summe.bildeSumme(eprom, &letzteChecksumme);
        // The file is written even after a failed sum, with what it reached;
        // intended.
        datei.schreibe(summe, eprom, letzteChecksumme);
    }
    // Also after a failure, with the unmasked partial sum; intended.
    Fehler("CHECKSUM", "KivEprom::kdoCheckSumme ", Checksumme::hex(letzteChecksumme, 2 * ergebnisGroesse),
           'S');
    if (ziel) geaendert = 1;
    return ergebnis;
}

int kdoCheckSummeSiemens(Eprom& eprom, KdoKommando& kommando) {
    namespace arg = checksumKommando::siemens;
    adrInteger start, ende;
    liesBereich(eprom, kommando, arg::startAdresse, arg::endAdresse, start, ende);
    const ErgebnisDatei datei(kommando, arg::datei, arg::modus, arg::format);

    adrInteger wert = 0;
    int ergebnis;
    {
        ChecksumSiemens summe(start, ende);
        ergebnis = summe.bildeSumme(eprom, &wert);
        datei.schreibe(summe, eprom, wert);
    }
    Fehler("CHECKSUM_SIEMENS", "KivEprom::kdoCheckSummeSiemens ", Checksumme::hex(wert, 8), 'S');
    return ergebnis;
}

int kdoCheckSummeCRC(Eprom& eprom, std::int32_t& geaendert, KdoKommando& kommando) {
    namespace arg = checksumKommando::crc;
    adrInteger start, ende;
    liesBereich(eprom, kommando, arg::startAdresse, arg::endAdresse, start, ende);
    const adrInteger* ziel = optionaleAdresse(kommando, arg::zielAdresse);
    const dataInteger verfahren = kommando[arg::verfahren].liefereArgWertInt();
    const int swap = kommando[arg::swap].liefereArgWertBool();
    const ErgebnisDatei datei(kommando, arg::datei, arg::modus, arg::format);

    std::unique_ptr<Checksumme> summe;
    const char* label;
    int stellen = 4;
    adrInteger maske = 0xFFFFu;
    switch (verfahren) {
    case 0:
        summe = std::make_unique<ChecksumCRC16>(start, ende, swap, 0xA001);
        label = "CHECKSUM_CRC16";
        break;
    case 1:
        summe = std::make_unique<ChecksumCRC16>(start, ende, swap, 0x1021);
        label = "CHECKSUM_CRC16_CCITT";
        break;
    default:
        summe = std::make_unique<ChecksumCRC32>(start, ende, swap);
        label = "CHECKSUM_CRC32";
        stellen = 8;
        maske = 0xFFFFFFFFu;
        break;
    }
    if (ziel) summe->setzeZielAdr(*ziel);
    adrInteger wert = 0;
    const int ergebnis = summe->bildeSumme(eprom, &wert);
    datei.schreibe(*summe, eprom, wert);
    summe.reset();
    Fehler(label, "KivEprom::kdoCheckSummeCRC ", Checksumme::hex(wert & maske, stellen), 'S');
    // Set even when the field was refused and nothing was written; intended.
    if (ziel) geaendert = 1;
    return ergebnis;
}

// The handlers of the image's command table: the image as a command object.

int kdoCheckSumme(KdoObjekt& objekt, KdoKommando& kommando) {
    auto& kiv = static_cast<KivEprom&>(objekt);
    return kdoCheckSumme(*kiv.eprom, kiv.letzteChecksumme, kiv.geaendert, kommando);
}

int kdoCheckSummeSiemens(KdoObjekt& objekt, KdoKommando& kommando) {
    return kdoCheckSummeSiemens(*static_cast<KivEprom&>(objekt).eprom, kommando);
}

int kdoCheckSummeCRC(KdoObjekt& objekt, KdoKommando& kommando) {
    auto& kiv = static_cast<KivEprom&>(objekt);
    return kdoCheckSummeCRC(*kiv.eprom, kiv.geaendert, kommando);
}
