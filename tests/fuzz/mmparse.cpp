// Fuzz target of the grammar engine.
#include "FuzzUmgebung.h"
#include "mmparse_fuzz.cpp"

int kivFuzzMmparse(const std::uint8_t* daten, std::size_t groesse) {
    kivfuzz::initUmgebung();
    if (const char* was = mmparseFuzzEinmal(daten, groesse)) kivfuzz::verletzt("mmparse", was);
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzMmparse)
