// The signatures of the image commands, each with the named positions of
// its arguments. The table in KivEpromTabelle.cpp pairs them with names,
// handlers and default lines; the handlers read their arguments through
// the positions: `kommando[kdoArg::setze::hexWert].liefereArgWertIntHex()`.
// When a signature changes, its positions change with it;
// tests/unit/commands/KommandoTabellenTest.cpp holds the two together.
#pragma once

#include "language/KdoArgPos.h"

namespace kdoArg {

using T = KdoArgTyp;

namespace lies {
inline constexpr const char* signatur =
    "Enum{Intel,Motorola,Binaer} dateiTyp\t\t\t DateiName epromDatei\t\t\t "
    "BoolIntegerHex\tstartAdresse\t\t\t "
    "BoolIntegerHex endAdresse\t\t\t BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellByte\t\t\t "
    "Bool bytesPruefen\t\t\t Bool swap";
inline constexpr ArgPos<T::Enum> dateiTyp{0};
inline constexpr ArgPos<T::DateiName> epromDatei{1};
inline constexpr ArgPos<T::BoolIntegerHex> startAdresse{2}, endAdresse{3}, externeAdresse{4}, fuellByte{5};
inline constexpr ArgPos<T::Bool> bytesPruefen{6}, swap{7};
inline constexpr KdoArgDekl positionen[] = {dateiTyp,       epromDatei, startAdresse, endAdresse,
                                            externeAdresse, fuellByte,  bytesPruefen, swap};
}  // namespace lies

namespace schreibe {
inline constexpr const char* signatur =
    "Enum{Intel,Motorola_S3S7,Motorola_S1S9,Motorola_S2S8,Motorola_DYN,Binaer} dateiTyp\t\t\t "
    "DateiName epromDatei\t\t\t BoolIntegerHex startAdresse\t\t\t BoolIntegerHex endAdresse\t\t\t "
    "BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellbyte\t\t\t Bool ueberschreiben\t\t\t "
    "Bool swap\t\t\t Integer nutzBytes";
inline constexpr ArgPos<T::Enum> dateiTyp{0};
inline constexpr ArgPos<T::DateiName> epromDatei{1};
inline constexpr ArgPos<T::BoolIntegerHex> startAdresse{2}, endAdresse{3}, externeAdresse{4}, fuellbyte{5};
inline constexpr ArgPos<T::Bool> ueberschreiben{6}, swap{7};
inline constexpr ArgPos<T::Integer> nutzBytes{8};
inline constexpr KdoArgDekl positionen[] = {dateiTyp,       epromDatei,     startAdresse,
                                            endAdresse,     externeAdresse, fuellbyte,
                                            ueberschreiben, swap,           nutzBytes};
}  // namespace schreibe

namespace schreibeEvenOdd {
inline constexpr const char* signatur =
    "Enum{Intel,Motorola_S3S7,Motorola_S1S9,Motorola_S2S8,Motorola_DYN} dateiTyp\t\t\t "
    "DateiName epromDateiEven\t\t     DateiName epromDateiOdd\t\t\t BoolIntegerHex startAdresse\t\t\t "
    "BoolIntegerHex endAdresse\t\t\t BoolIntegerHex externeAdresse\t\t\t BoolIntegerHex\tfuellbyte\t\t\t "
    "Bool ueberschreiben\t\t\t Bool swap\t\t\t Integer nutzBytes";
inline constexpr ArgPos<T::Enum> dateiTyp{0};
inline constexpr ArgPos<T::DateiName> epromDateiEven{1}, epromDateiOdd{2};
inline constexpr ArgPos<T::BoolIntegerHex> startAdresse{3}, endAdresse{4}, externeAdresse{5}, fuellbyte{6};
inline constexpr ArgPos<T::Bool> ueberschreiben{7}, swap{8};
inline constexpr ArgPos<T::Integer> nutzBytes{9};
inline constexpr KdoArgDekl positionen[] = {dateiTyp,   epromDateiEven, epromDateiOdd, startAdresse,
                                            endAdresse, externeAdresse, fuellbyte,     ueberschreiben,
                                            swap,       nutzBytes};
}  // namespace schreibeEvenOdd

namespace anzeige {
inline constexpr const char* signatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex endAdresse\t\t\t Enum{hex,ascii} darstellung\t\t\t "
    "DateiName datei\t\t\t Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr ArgPos<T::BoolIntegerHex> startAdresse{0}, endAdresse{1};
inline constexpr ArgPos<T::Enum> darstellung{2};
inline constexpr ArgPos<T::DateiName> datei{3};
inline constexpr ArgPos<T::Enum> modus{4};
inline constexpr ArgPos<T::String> format{5};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse, darstellung, datei, modus, format};
}  // namespace anzeige

namespace setze {
inline constexpr const char* signatur =
    "IntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t IntegerHex hexWert";
inline constexpr ArgPos<T::IntegerHex> startAdresse{0};
inline constexpr ArgPos<T::BoolIntegerHex> endAdresse{1};
inline constexpr ArgPos<T::IntegerHex> hexWert{2};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse, hexWert};
}  // namespace setze

namespace definiereBereich {
inline constexpr const char* signatur = "IntegerHex\tanfAdresse\t\t\t IntegerHex endAdresse";
inline constexpr ArgPos<T::IntegerHex> anfAdresse{0}, endAdresse{1};
inline constexpr KdoArgDekl positionen[] = {anfAdresse, endAdresse};
}  // namespace definiereBereich

namespace loescheBereich {
inline constexpr const char* signatur = "IntegerHex\tanfAdresse";
inline constexpr ArgPos<T::IntegerHex> anfAdresse{0};
inline constexpr KdoArgDekl positionen[] = {anfAdresse};
}  // namespace loescheBereich

namespace fuelle {
inline constexpr const char* signatur =
    "IntegerHex\tstartAdresse\t\t\t IntegerHex\tendAdresse\t\t\t IntegerHex hexWert";
inline constexpr ArgPos<T::IntegerHex> startAdresse{0}, endAdresse{1}, hexWert{2};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse, hexWert};
}  // namespace fuelle

// pruefeMehrfachbelegung and swap: an optional range.
namespace bereich {
inline constexpr const char* signatur = "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse";
inline constexpr ArgPos<T::BoolIntegerHex> startAdresse{0}, endAdresse{1};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse};
}  // namespace bereich

namespace kopiere {
inline constexpr const char* signatur =
    "BoolIntegerHex\tquelleStartAdresse\t\t\t BoolIntegerHex\tquelleEndAdresse\t\t\t "
    "BoolIntegerHex zielStartAdresse\t\t\t BoolWort zielEpromName";
inline constexpr ArgPos<T::BoolIntegerHex> quelleStartAdresse{0}, quelleEndAdresse{1}, zielStartAdresse{2};
inline constexpr ArgPos<T::BoolWort> zielEpromName{3};
inline constexpr KdoArgDekl positionen[] = {quelleStartAdresse, quelleEndAdresse, zielStartAdresse,
                                            zielEpromName};
}  // namespace kopiere

// suche and sucheErstes.
namespace suche {
inline constexpr const char* signatur = "LString\tsuchText\t\t\t Enum{hex,ascii} darstellung";
inline constexpr ArgPos<T::LString> suchText{0};
inline constexpr ArgPos<T::Enum> darstellung{1};
inline constexpr KdoArgDekl positionen[] = {suchText, darstellung};
}  // namespace suche

namespace pruefeByte {
inline constexpr const char* signatur = "IntegerHex adresse\t\t\tIntegerHex hexWert";
inline constexpr ArgPos<T::IntegerHex> adresse{0}, hexWert{1};
inline constexpr KdoArgDekl positionen[] = {adresse, hexWert};
}  // namespace pruefeByte

namespace pruefeBytefolge {
inline constexpr const char* signatur = "IntegerHex adresse\t\t\t LString bytefolge";
inline constexpr ArgPos<T::IntegerHex> adresse{0};
inline constexpr ArgPos<T::LString> bytefolge{1};
inline constexpr KdoArgDekl positionen[] = {adresse, bytefolge};
}  // namespace pruefeBytefolge

namespace vergleiche {
inline constexpr const char* signatur =
    "BoolIntegerHex\tquelleStartAdresse\t\t\t BoolIntegerHex\tquelleEndAdresse\t\t\t "
    "BoolIntegerHex zielStartAdresse\t\t\t BoolWort zielEpromName\t\t\t DateiName ausgabeDatei";
inline constexpr ArgPos<T::BoolIntegerHex> quelleStartAdresse{0}, quelleEndAdresse{1}, zielStartAdresse{2};
inline constexpr ArgPos<T::BoolWort> zielEpromName{3};
inline constexpr ArgPos<T::DateiName> ausgabeDatei{4};
inline constexpr KdoArgDekl positionen[] = {quelleStartAdresse, quelleEndAdresse, zielStartAdresse,
                                            zielEpromName, ausgabeDatei};
}  // namespace vergleiche

}  // namespace kdoArg
