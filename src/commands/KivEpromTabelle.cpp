// The command table of the open images.
#include <cstdlib>
#include <iostream>

#include "commands/ChecksumKommandos.h"
#include "foundation/Abbruch.h"
#include "commands/KivEprom.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"

KdoListe* kivEpromListe = nullptr;

namespace {

struct Eintrag {
    const char* name;
    std::uint16_t anzahl;
    const char* signatur;
    KdoHandler handler;
    const char* vorgabe;   // null: the command has no default line
};

// The display format of `anzeige` to a file: every byte, one blank between,
// then a line end.
constexpr const char* anzeigeVorgabe = R"x(anzeige(/, /, hex, /, neueDatei, "<Bytes\\\"<> \">\
"))x";

const Eintrag tabelle[] = {
    {"info", 0, "", kdoInfo, nullptr},
    {"lies", 8,
     "Enum{Intel,Motorola,Binaer} dateiTyp\t\t\t DateiName epromDatei\t\t\t BoolIntegerHex\tstartAdresse\t\t\t "
     "BoolIntegerHex endAdresse\t\t\t BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellByte\t\t\t "
     "Bool bytesPruefen\t\t\t Bool swap",
     kdoLies, "lies(Intel, /, /, /, /, /, YES, NO)"},
    {"schreibe", 9,
     "Enum{Intel,Motorola_S3S7,Motorola_S1S9,Motorola_S2S8,Motorola_DYN,Binaer} dateiTyp\t\t\t "
     "DateiName epromDatei\t\t\t BoolIntegerHex startAdresse\t\t\t BoolIntegerHex endAdresse\t\t\t "
     "BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellbyte\t\t\t Bool ueberschreiben\t\t\t "
     "Bool swap\t\t\t Integer nutzBytes",
     kdoSchreibe, "schreibe(Intel, /, /, /, /, /, NO, NO, 16)"},
    {"schreibeEvenOdd", 10,
     "Enum{Intel,Motorola_S3S7,Motorola_S1S9,Motorola_S2S8,Motorola_DYN} dateiTyp\t\t\t "
     "DateiName epromDateiEven\t\t     DateiName epromDateiOdd\t\t\t BoolIntegerHex startAdresse\t\t\t "
     "BoolIntegerHex endAdresse\t\t\t BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellbyte\t\t\t "
     "Bool ueberschreiben\t\t\t Bool swap\t\t\t Integer nutzBytes",
     kdoSchreibeEvenOdd, "schreibeEvenOdd(Intel, /, /, /, /, /, /, NO, NO, 16)"},
    {"anzeige", 6,
     "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex endAdresse\t\t\t Enum{hex,ascii} darstellung\t\t\t "
     "DateiName datei\t\t\t Enum{neueDatei,anhaengen} modus\t\t\t String format",
     kdoAnzeige, anzeigeVorgabe},
    {"setze", 3, "IntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t IntegerHex hexWert", kdoSetze,
     "setze(0, /, 0)"},
    {"definiereBereich", 2, "IntegerHex\tanfAdresse\t\t\t IntegerHex endAdresse", kdoDefiniereBereich,
     "definiereBereich(0, 0)"},
    {"loescheBereich", 1, "IntegerHex\tanfAdresse", kdoLoescheBereich, nullptr},
    {"fuelle", 3, "IntegerHex\tstartAdresse\t\t\t IntegerHex\tendAdresse\t\t\t IntegerHex hexWert", kdoFuelle,
     "fuelle(0, 0, 0)"},
    {"pruefeMehrfachbelegung", 2, "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse",
     kdoPruefeMehrfachbelegung, "pruefeMehrfachbelegung(/, /)"},
    {"swap", 2, "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse", kdoSwap, "swap(/, /)"},
    {"kopiere", 4,
     "BoolIntegerHex\tquelleStartAdresse\t\t\t BoolIntegerHex\tquelleEndAdresse\t\t\t "
     "BoolIntegerHex zielStartAdresse\t\t\t BoolWort zielEpromName",
     kdoKopiere, "kopiere(/, /, /, /)"},
    {"suche", 2, "LString\tsuchText\t\t\t Enum{hex,ascii} darstellung", kdoSuche, "suche(\"\", hex)"},
    {"sucheErstes", 2, "LString\tsuchText\t\t\t Enum{hex,ascii} darstellung", kdoSucheErstes,
     "sucheErstes(\"\", hex)"},
    {"sucheNaechstes", 0, "", kdoSucheNaechstes, nullptr},
    {"pruefeByte", 2, "IntegerHex adresse\t\t\tIntegerHex hexWert", kdoPruefeByte, "pruefeByte(0,0)"},
    {"pruefeBytefolge", 2, "IntegerHex adresse\t\t\t LString bytefolge", kdoPruefeBytefolge,
     "pruefeBytefolge(0,\"\")"},
    {"vergleiche", 5,
     "BoolIntegerHex\tquelleStartAdresse\t\t\t BoolIntegerHex\tquelleEndAdresse\t\t\t "
     "BoolIntegerHex zielStartAdresse\t\t\t BoolWort zielEpromName\t\t\t DateiName ausgabeDatei",
     kdoVergleiche, "vergleiche(/, /, /, /, /)"},
    {checksumKommando::checksummeName, checksumKommando::checksummeAnzahl, checksumKommando::checksummeSignatur,
     kdoCheckSumme, checksumKommando::checksummeVorgabe},
    {checksumKommando::siemensName, checksumKommando::siemensAnzahl, checksumKommando::siemensSignatur,
     kdoCheckSummeSiemens, checksumKommando::siemensVorgabe},
    {checksumKommando::crcName, checksumKommando::crcAnzahl, checksumKommando::crcSignatur, kdoCheckSummeCRC,
     checksumKommando::crcVorgabe},
};

}  // namespace

void bauKivEpromListe()
{
    // The inspect commands write to this stream; without it the table is
    // useless, and the program stops here.
    if (!kdoAnzeigeStream) zusicherungVerletzt("kdoAnzeigeStream != NULL, file kiveprom, line 174");
    delete kivEpromListe;
    kivEpromListe = new KdoListe("KivEprom");
    for (const Eintrag& e : tabelle) {
        kivEpromListe->fuegeEin(new KdoKommando(e.name, e.anzahl, e.signatur, e.handler));
        if (e.vorgabe) kivEpromListe->definiere(AnwKommando(e.vorgabe));
    }
}
