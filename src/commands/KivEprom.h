// KivEprom: one open image as a command object.
//
// An image stands in three places at once: in the command-object tree (as a
// KdoObjekt, so that lines can be sent to it), in the root's list of open
// images (as a ListenElement keyed by its short name), and in format
// statements of result files (as a FmtObjekt delivering the image
// variables). All three ask it for its name through the one `liefereName`.
//
// The commands of all images share `kivEpromListe`; a handler gets the
// image as its KdoObjekt and casts it back:
//
//   int kdoSetze(KdoObjekt& objekt, KdoKommando& kommando) {
//       KivEprom& kiv = static_cast<KivEprom&>(objekt);
//       ...
//   }
//
// The fields are public because the command handlers are free functions
// spread over several files and work on them directly.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>

#include "foundation/DateiName.h"
#include "foundation/DynArray.h"
#include "foundation/Liste.h"
#include "foundation/String.h"
#include "foundation/Typen.h"
#include "language/KdoArgPos.h"
#include "language/KdoObjekt.h"
#include "reporting/FmtAnweisung.h"

class Eprom;
class KdoKommando;
class KdoListe;
struct KdoEintrag;

// The command lists of the root and of the images; built at start-up.
extern KdoListe* kivObjektListe;
extern KdoListe* kivEpromListe;

// Builds `kivEpromListe`. Stops the program when `kdoAnzeigeStream` is not
// set, since the inspect commands could write nowhere.
void bauKivEpromListe();

class KivEprom : public KdoObjekt, public ListenElement, public FmtObjekt {
public:
    // File types of load and save. Reading knows Intel, Motorola, binary;
    // writing numbers its enumeration 0..5 (the Motorola modes 1..4).
    static constexpr std::int32_t typIntel = 0;
    static constexpr std::int32_t typMotorolaS3S7 = 1;
    static constexpr std::int32_t typMotorolaS1S9 = 2;
    static constexpr std::int32_t typMotorolaS2S8 = 3;
    static constexpr std::int32_t typMotorola = 4;  // also Motorola_DYN when writing
    static constexpr std::int32_t typBinaer = 5;

    // Takes the image over.
    KivEprom(std::unique_ptr<Eprom> eprom, const String& name);
    explicit KivEprom(const String& name);
    ~KivEprom() override;

    // ---- Command object, list element, format object ----
    KdoListe* liefereKdoListe() override;
    String liefereName() const override;
    const String& liefereKdoOTyp() const override;
    const String& liefereZusatzTyp() const override;
    // The image variables AnfAdr, EndAdr, Bytes, AnzBytes, AnzBytesGefuellt,
    // AnzBytesLeer, Dateiname.
    int ersetzeVariable(FmtVariable& variable) override;
    // "AnfAdr\nEndAdr\nBytes\nAnzBytes\nAnzBytesGefuellt\nAnzBytesLeer\nDateiname\n ".
    static const String& variablenListe();

    // ---- Load, save and edit ----
    // A fill byte of 0 means no fill; values above 0xFF are refused by the
    // fill.
    int leseVonDatei(const DateiName& datei, std::int32_t typ, std::uint32_t nutzBytes, int swap,
                     adrInteger fuellByte, int bytesPruefen, const adrInteger* startAdresse,
                     const adrInteger* endAdresse, const adrInteger* externeAdresse);
    int schreibeInDatei(const DateiName& datei, int ueberschreiben, std::int32_t typ, dataInteger nutzBytes,
                        int swap, adrInteger fuellbyte, const adrInteger* startAdresse,
                        const adrInteger* endAdresse, const adrInteger* externeAdresse);
    // Values outside 0..255 are refused ("INVALID-VALUE").
    int setzeWertVonBis(adrInteger anf, adrInteger end, std::int64_t wert);
    // Gives the number of bytes filled.
    std::uint32_t fuelleVonBis(adrInteger anf, adrInteger end, std::int64_t wert);
    int swap(const adrInteger* anf, const adrInteger* end);
    int setzeBereich(adrInteger anf, adrInteger end);
    int loescheBereich(adrInteger adr);
    int kopiere(adrInteger anf, adrInteger end, adrInteger ziel, KivEprom& zielEprom);

    // ---- Inspect ----
    // The address check every command passes its addresses through; a null
    // pointer stands for an absent address and passes.
    static int pruefeAdresse(std::uint64_t adr, const char* funktion);
    static int pruefeAdresse(const adrInteger* adr, const char* funktion);
    // Lists the occupancy of the range (absent: the image's bounds) and
    // gives the number of bytes not `belegt`.
    std::uint32_t pruefeBelegt(const adrInteger* anf, const adrInteger* end);
    // The display of anf..end into a file through the statement `format`;
    // modus 0 replaces the file, 1 appends.
    int anzeigeBytes(adrInteger anf, adrInteger end, int hex, const DateiName& datei, int modus,
                     const String& format);
    // Parses a search or check text into `suchMuster`/`suchLaenge`; hex 1
    // for hexadecimal numbers, 0 for the characters themselves. 0 if the
    // text is invalid or empty (the caller reports), which leaves the
    // pattern empty.
    int setzeSuchMuster(const String& text, int hex);
    // Looks for the pattern in von..bis; 1 and `suchAdresse` on a match.
    int sucheMuster(adrInteger von, adrInteger bis);
    // The check of a hexadecimal byte sequence at `adresse`; reports the
    // outcome.
    int pruefeBytes(adrInteger adresse, const String& text);

    // ---- Fields ----
    using KdoObjekt::name_;  // the short name
    std::unique_ptr<Eprom> eprom;
    std::int32_t geaendert = 0;           // 1: differs from the file last read or saved
    std::unique_ptr<DateiName> aktDatei;  // the file last read or written
    std::int32_t aktDateiTyp = 0;
    adrInteger letzteChecksumme = 0;
    std::unique_ptr<DynArray<unsigned char>> suchMuster;
    std::int32_t suchLaenge = 0;
    adrInteger suchAdresse = 0;
    adrInteger anzeigeAnfAdr = 0;  // range of a running display into a file
    adrInteger anzeigeEndAdr = 0;
    std::int32_t anzeigeHex = 1;
};

// Handlers of the image commands; each gives 1 or 0.
int kdoInfo(KdoObjekt& objekt, KdoKommando& kommando);
int kdoLies(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSchreibe(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSchreibeEvenOdd(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSetze(KdoObjekt& objekt, KdoKommando& kommando);
int kdoDefiniereBereich(KdoObjekt& objekt, KdoKommando& kommando);
int kdoLoescheBereich(KdoObjekt& objekt, KdoKommando& kommando);
int kdoFuelle(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSwap(KdoObjekt& objekt, KdoKommando& kommando);
int kdoKopiere(KdoObjekt& objekt, KdoKommando& kommando);
int kdoCheckSumme(KdoObjekt& objekt, KdoKommando& kommando);
int kdoCheckSummeSiemens(KdoObjekt& objekt, KdoKommando& kommando);
int kdoCheckSummeCRC(KdoObjekt& objekt, KdoKommando& kommando);

// The inspect commands.
int kdoAnzeige(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSuche(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSucheErstes(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSucheNaechstes(KdoObjekt& objekt, KdoKommando& kommando);
int kdoPruefeByte(KdoObjekt& objekt, KdoKommando& kommando);
int kdoPruefeBytefolge(KdoObjekt& objekt, KdoKommando& kommando);
int kdoVergleiche(KdoObjekt& objekt, KdoKommando& kommando);
int kdoPruefeMehrfachbelegung(KdoObjekt& objekt, KdoKommando& kommando);

// The address of a Bool...IntegerHex argument, or null when it holds "/".
const adrInteger* optionaleAdresse(KdoKommando& kommando, ArgPos<KdoArgTyp::BoolIntegerHex> position);

// The image commands' table, for the check of its named positions.
std::span<const KdoEintrag> kivEpromTabelle();

// The image of that name in the tree for a command naming a second image;
// reports "EPROM-NOT-EXIST" under `funktion` and gives null if there is none
// (or the name finds an object that is not an image).
KivEprom* findeKivEprom(const String& name, const char* funktion);
