// The command table of the open images.
#include <cstdlib>
#include <iostream>

#include "commands/ChecksumKommandos.h"
#include "commands/KivEprom.h"
#include "commands/KivEpromArgumente.h"
#include "foundation/Abbruch.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"

KdoListe* kivEpromListe = nullptr;

namespace {

using namespace kdoArg;

// The display format of `anzeige` to a file: every byte, one blank between,
// then a line end.
constexpr const char* anzeigeVorgabe = R"x(anzeige(/, /, hex, /, neueDatei, "<Bytes\\\"<> \">\
"))x";

const KdoEintrag tabelle[] = {
    {"info", "", kdoInfo, nullptr, {}},
    {"lies", lies::signatur, kdoLies, "lies(Intel, /, /, /, /, /, YES, NO)", lies::positionen},
    {"schreibe", schreibe::signatur, kdoSchreibe, "schreibe(Intel, /, /, /, /, /, NO, NO, 16)",
     schreibe::positionen},
    {"schreibeEvenOdd", schreibeEvenOdd::signatur, kdoSchreibeEvenOdd,
     "schreibeEvenOdd(Intel, /, /, /, /, /, /, NO, NO, 16)", schreibeEvenOdd::positionen},
    {"anzeige", anzeige::signatur, kdoAnzeige, anzeigeVorgabe, anzeige::positionen},
    {"setze", setze::signatur, kdoSetze, "setze(0, /, 0)", setze::positionen},
    {"definiereBereich", definiereBereich::signatur, kdoDefiniereBereich, "definiereBereich(0, 0)",
     definiereBereich::positionen},
    {"loescheBereich", loescheBereich::signatur, kdoLoescheBereich, nullptr, loescheBereich::positionen},
    {"fuelle", fuelle::signatur, kdoFuelle, "fuelle(0, 0, 0)", fuelle::positionen},
    {"pruefeMehrfachbelegung", bereich::signatur, kdoPruefeMehrfachbelegung, "pruefeMehrfachbelegung(/, /)",
     bereich::positionen},
    {"swap", bereich::signatur, kdoSwap, "swap(/, /)", bereich::positionen},
    {"kopiere", kopiere::signatur, kdoKopiere, "kopiere(/, /, /, /)", kopiere::positionen},
    {"suche", suche::signatur, kdoSuche, "suche(\"\", hex)", suche::positionen},
    {"sucheErstes", suche::signatur, kdoSucheErstes, "sucheErstes(\"\", hex)", suche::positionen},
    {"sucheNaechstes", "", kdoSucheNaechstes, nullptr, {}},
    {"pruefeByte", pruefeByte::signatur, kdoPruefeByte, "pruefeByte(0,0)", pruefeByte::positionen},
    {"pruefeBytefolge", pruefeBytefolge::signatur, kdoPruefeBytefolge, "pruefeBytefolge(0,\"\")",
     pruefeBytefolge::positionen},
    {"vergleiche", vergleiche::signatur, kdoVergleiche, "vergleiche(/, /, /, /, /)", vergleiche::positionen},
    {checksumKommando::checksummeName, checksumKommando::checksummeSignatur, kdoCheckSumme,
     checksumKommando::checksummeVorgabe, checksumKommando::checksumme::positionen},
    {checksumKommando::siemensName, checksumKommando::siemensSignatur, kdoCheckSummeSiemens,
     checksumKommando::siemensVorgabe, checksumKommando::siemens::positionen},
    {checksumKommando::crcName, checksumKommando::crcSignatur, kdoCheckSummeCRC, checksumKommando::crcVorgabe,
     checksumKommando::crc::positionen},
};

}  // namespace

void bauKivEpromListe() {
    // The inspect commands write to this stream; without it the table is
    // useless, and the program stops here.
    if (!kdoAnzeigeStream) zusicherungVerletzt("kdoAnzeigeStream != NULL, file kiveprom, line 174");
    delete kivEpromListe;
    kivEpromListe = new KdoListe("KivEprom");
    kivEpromListe->fuegeEin(tabelle);
}

std::span<const KdoEintrag> kivEpromTabelle() { return tabelle; }
