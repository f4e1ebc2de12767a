// Fuzz target: a Motorola S-record file, read, written out and read back.
#include "BildPruefung.h"

int kivFuzzMotorola(const std::uint8_t* daten, std::size_t groesse) {
    static const kivfuzz::ScratchDatei datei("motorola.s"), zurueck("motorola_zurueck.s");
    kivfuzz::pruefeTextFormat<EpromDateiMotorola>("motorola", daten, groesse, datei, zurueck);
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzMotorola)
