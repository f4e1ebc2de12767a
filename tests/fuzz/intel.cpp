// Fuzz target: an Intel hex file, read, written out and read back.
#include "BildPruefung.h"

int kivFuzzIntel(const std::uint8_t* daten, std::size_t groesse) {
    static const kivfuzz::ScratchDatei datei("intel.hex"), zurueck("intel_zurueck.hex");
    kivfuzz::pruefeTextFormat<EpromDateiIntel>("intel", daten, groesse, datei, zurueck);
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzIntel)
