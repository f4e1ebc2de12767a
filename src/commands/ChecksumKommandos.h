// The checksum commands of an open image: checksumme, checksummeSiemens and
// checksummeCRC. The image's command table declares them with the names,
// signatures and default lines below and the handlers
// kdoCheckSumme(KdoObjekt&, KdoKommando&) and its two siblings (declared
// with the other image handlers in commands/KivEprom.h). Those pass the
// image's fields to the forms here, which work on an Eprom alone:
//
//   kdoCheckSumme(*kiv.eprom, kiv.letzteChecksumme, kiv.geaendert, kommando)
//
// `letzteChecksumme` is the image's last standard sum (read by
// addiereLetzteChecksumme, written by every checksumme); `geaendert` is set
// to 1 when a target address was given, whatever came of it.
#pragma once

#include <cstdint>

#include "foundation/Typen.h"
#include "language/KdoArgPos.h"

class Eprom;
class KdoKommando;

namespace checksumKommando {

inline constexpr const char* checksummeName = "checksumme";
inline constexpr const char* checksummeSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t BoolIntegerHex\tzielAdresse\t\t\t "
    "Bool kompensierung\t\t\t Bool addiereLetzteChecksumme\t\t\t Enum{1,2,3,4} anzahlBytes\t\t\t "
    "Enum{1,2,3,4} ergebnisGroesse\t\t\t Bool swap\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* checksummeVorgabe =
    "checksumme(/, /, /, NO, NO, 1, 2, NO, /, neueDatei, \"<Chksum>\\\n\")";
namespace checksumme {
inline constexpr ArgPos<KdoArgTyp::BoolIntegerHex> startAdresse{0}, endAdresse{1}, zielAdresse{2};
inline constexpr ArgPos<KdoArgTyp::Bool> kompensierung{3}, addiereLetzteChecksumme{4};
inline constexpr ArgPos<KdoArgTyp::Enum> anzahlBytes{5}, ergebnisGroesse{6};
inline constexpr ArgPos<KdoArgTyp::Bool> swap{7};
inline constexpr ArgPos<KdoArgTyp::DateiName> datei{8};
inline constexpr ArgPos<KdoArgTyp::Enum> modus{9};
inline constexpr ArgPos<KdoArgTyp::String> format{10};
inline constexpr KdoArgDekl positionen[] = {
    startAdresse, endAdresse,      zielAdresse, kompensierung, addiereLetzteChecksumme,
    anzahlBytes,  ergebnisGroesse, swap,        datei,         modus,
    format};
}  // namespace checksumme

inline constexpr const char* siemensName = "checksummeSiemens";
inline constexpr const char* siemensSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* siemensVorgabe = "checksummeSiemens(/, /, /, neueDatei, \"<Chksum>\\\n\")";
namespace siemens {
inline constexpr ArgPos<KdoArgTyp::BoolIntegerHex> startAdresse{0}, endAdresse{1};
inline constexpr ArgPos<KdoArgTyp::DateiName> datei{2};
inline constexpr ArgPos<KdoArgTyp::Enum> modus{3};
inline constexpr ArgPos<KdoArgTyp::String> format{4};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse, datei, modus, format};
}  // namespace siemens

inline constexpr const char* crcName = "checksummeCRC";
inline constexpr const char* crcSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t BoolIntegerHex\tzielAdresse\t\t\t "
    "Enum{CRC16,CRC16CCITT,CRC32} verfahren\t\t\t Bool swap\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* crcVorgabe = "checksummeCRC(/, /, /, CRC32, NO, /, neueDatei, \"<Chksum>\\\n\")";
namespace crc {
inline constexpr ArgPos<KdoArgTyp::BoolIntegerHex> startAdresse{0}, endAdresse{1}, zielAdresse{2};
inline constexpr ArgPos<KdoArgTyp::Enum> verfahren{3};
inline constexpr ArgPos<KdoArgTyp::Bool> swap{4};
inline constexpr ArgPos<KdoArgTyp::DateiName> datei{5};
inline constexpr ArgPos<KdoArgTyp::Enum> modus{6};
inline constexpr ArgPos<KdoArgTyp::String> format{7};
inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse, zielAdresse, verfahren,
                                            swap,         datei,      modus,       format};
}  // namespace crc

}  // namespace checksumKommando

// checksumme: the standard sum. Reports "CHECKSUM" with the sum, also after
// a failure; gives what ChecksumStandard::bilde gave.
int kdoCheckSumme(Eprom& eprom, adrInteger& letzteChecksumme, std::int32_t& geaendert, KdoKommando& kommando);
// checksummeSiemens: reports "CHECKSUM_SIEMENS"; gives 1.
int kdoCheckSummeSiemens(Eprom& eprom, KdoKommando& kommando);
// checksummeCRC: reports "CHECKSUM_CRC16", "CHECKSUM_CRC16_CCITT" or
// "CHECKSUM_CRC32"; gives 1.
int kdoCheckSummeCRC(Eprom& eprom, std::int32_t& geaendert, KdoKommando& kommando);
