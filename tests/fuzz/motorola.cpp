// Fuzz target: the input is a Motorola S-record file, read into an image.
// A read through a window keeps the bytes inside it; a small image read
// without options must come back unchanged when it is written out as
// S-records and read again.
#include <sstream>
#include <string>

#include "BildPruefung.h"

int kivFuzzMotorola(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    static const char* const ziel = "motorola";
    initUmgebung();
    static ScratchDatei datei("motorola.s");
    static ScratchDatei zurueck("motorola_zurueck.s");

    const LeseParameter p(groesse);
    Eprom eprom;
    if (p.mitBereich) eprom.definiereBereich(0, 0xFFFF);
    EpromDateiMotorola leser(datei.schreibe(daten, groesse).c_str(), 16);
    if (leser.lies(eprom, p.s(), p.e(), p.x()) != 1) verletzt(ziel, "an existing file was not read");
    pruefeNachLesen(ziel, eprom);

    pruefeFenster(ziel, eprom, p);

    const std::uint64_t spanne = belegteSpanne(eprom);
    if (!p.schlicht() || spanne == 0 || spanne > 0x10000) return 0;
    std::ostringstream text;
    EpromDateiMotorola schreiber(zurueck.name().c_str(), 16);
    schreiber.modus = static_cast<std::int32_t>(groesse / 64 % 4);
    if (!schreiber.schreibe(eprom, text, eprom.liefereAnfAdr(), eprom.liefereEndAdr(), nullptr))
        verletzt(ziel, "writing a readable image failed");
    const std::string t = text.str();
    Eprom wieder;
    EpromDateiMotorola(zurueck.schreibe(reinterpret_cast<const std::uint8_t*>(t.data()), t.size()).c_str(),
                       16)
        .lies(wieder, nullptr, nullptr, nullptr);
    pruefeNachLesen(ziel, wieder);
    vergleicheBilder(ziel, eprom, wieder);
    return 0;
}

#ifdef KIV_LIBFUZZER
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    return kivFuzzMotorola(daten, groesse);
}
#endif
