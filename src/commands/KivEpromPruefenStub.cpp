// Placeholders of the inspect commands until their real file is in place.
#include "commands/KivEprom.h"

int kdoAnzeige(KdoObjekt&, KdoKommando&) { return 0; }
int kdoSuche(KdoObjekt&, KdoKommando&) { return 0; }
int kdoSucheErstes(KdoObjekt&, KdoKommando&) { return 0; }
int kdoSucheNaechstes(KdoObjekt&, KdoKommando&) { return 0; }
int kdoPruefeByte(KdoObjekt&, KdoKommando&) { return 0; }
int kdoPruefeBytefolge(KdoObjekt&, KdoKommando&) { return 0; }
int kdoVergleiche(KdoObjekt&, KdoKommando&) { return 0; }
int kdoPruefeMehrfachbelegung(KdoObjekt&, KdoKommando&) { return 0; }

int KivEprom::ersetzeVariable(FmtVariable&) { return 0; }
int KivEprom::pruefeAdresse(std::uint64_t, const char*) { return 1; }
int KivEprom::pruefeAdresse(const adrInteger*, const char*) { return 1; }
std::uint32_t KivEprom::pruefeBelegt(const adrInteger*, const adrInteger*) { return 0; }
int KivEprom::anzeigeBytes(adrInteger, adrInteger, int, const DateiName&, int, const String&) { return 1; }
int KivEprom::setzeSuchMuster(const String&, int) { return 0; }
int KivEprom::sucheMuster(adrInteger, adrInteger) { return 0; }
int KivEprom::pruefeBytes(adrInteger, const String&) { return 0; }
