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
// Covered by the end-to-end cases in tests/e2e/cases/checksums.
#pragma once

#include <cstdint>

#include "foundation/Typen.h"

class Eprom;
class KdoKommando;

namespace checksumKommando {

inline constexpr const char* checksummeName = "checksumme";
inline constexpr std::uint16_t checksummeAnzahl = 11;
inline constexpr const char* checksummeSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t BoolIntegerHex\tzielAdresse\t\t\t "
    "Bool kompensierung\t\t\t Bool addiereLetzteChecksumme\t\t\t Enum{1,2,3,4} anzahlBytes\t\t\t "
    "Enum{1,2,3,4} ergebnisGroesse\t\t\t Bool swap\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* checksummeVorgabe =
    "checksumme(/, /, /, NO, NO, 1, 2, NO, /, neueDatei, \"<Chksum>\\\n\")";

inline constexpr const char* siemensName = "checksummeSiemens";
inline constexpr std::uint16_t siemensAnzahl = 5;
inline constexpr const char* siemensSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* siemensVorgabe = "checksummeSiemens(/, /, /, neueDatei, \"<Chksum>\\\n\")";

inline constexpr const char* crcName = "checksummeCRC";
inline constexpr std::uint16_t crcAnzahl = 8;
inline constexpr const char* crcSignatur =
    "BoolIntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t BoolIntegerHex\tzielAdresse\t\t\t "
    "Enum{CRC16,CRC16CCITT,CRC32} verfahren\t\t\t Bool swap\t\t\t DateiName datei\t\t\t "
    "Enum{neueDatei,anhaengen} modus\t\t\t String format";
inline constexpr const char* crcVorgabe = "checksummeCRC(/, /, /, CRC32, NO, /, neueDatei, \"<Chksum>\\\n\")";

} // namespace checksumKommando

// checksumme: the standard sum. Reports "CHECKSUM" with the sum, also after
// a failure; gives what ChecksumStandard::bilde gave.
int kdoCheckSumme(Eprom& eprom, adrInteger& letzteChecksumme, std::int32_t& geaendert, KdoKommando& kommando);
// checksummeSiemens: reports "CHECKSUM_SIEMENS"; gives 1.
int kdoCheckSummeSiemens(Eprom& eprom, KdoKommando& kommando);
// checksummeCRC: reports "CHECKSUM_CRC16", "CHECKSUM_CRC16_CCITT" or
// "CHECKSUM_CRC32"; gives 1.
int kdoCheckSummeCRC(Eprom& eprom, std::int32_t& geaendert, KdoKommando& kommando);
