// Fuzz target: a raw binary file lands byte for byte in the window and is written back.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

#include "BildPruefung.h"

int kivFuzzBinaer(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    static const char* const ziel = "binaer";
    initUmgebung();
    static const ScratchDatei datei("binaer.bin"), zurueck("binaer_zurueck.bin");

    const LeseParameter p(groesse);
    Eprom eprom;
    if (p.mitBereich) eprom.definiereBereich(0, 0xFFFF);
    EpromDateiBinaer(datei.schreibe(daten, groesse)).lies(eprom, p.s(), p.e(), p.x());
    pruefeNachLesen(ziel, eprom);

    const adrInteger start = p.mitStart ? p.start : 0, ende = p.mitEnde ? p.ende : 0xFFFFFFFF;
    const std::size_t skip = p.mitExtern ? p.extern_ : 0;
    if (p.mitBereich || start > ende || skip >= groesse) return 0;
    const std::size_t anzahl = std::min<std::uint64_t>(groesse - skip, std::uint64_t(ende) - start + 1);
    std::vector<std::uint8_t> bild(anzahl);
    if (!eprom.liefereBytes(start, static_cast<std::uint32_t>(anzahl), bild.data()) ||
        !std::equal(bild.begin(), bild.end(), daten + skip))
        verletzt(ziel, "the image does not hold the file's bytes");

    const adrInteger letzte = static_cast<adrInteger>(start + (anzahl - 1));
    if (!EpromDateiBinaer(zurueck.name.c_str()).schreibe(eprom, &start, &letzte, nullptr))
        verletzt(ziel, "writing the bytes read failed");
    std::ifstream f(zurueck.name, std::ios::binary);
    const std::vector<std::uint8_t> inhalt{std::istreambuf_iterator<char>(f), {}};
    if (inhalt.size() != anzahl || !std::equal(inhalt.begin(), inhalt.end(), daten + skip))
        verletzt(ziel, "the file written differs from the bytes read");
    pruefeNachLesen(ziel, eprom);
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzBinaer)
