// Fuzz target: a procedure parsed line by line from each scanner mode; each
// parse ends within tokens in proportion to its line and leaves a valid mode.
#include <sstream>
#include <string>

#include "FuzzUmgebung.h"
#include "language/KdoParser.h"

namespace {

struct ZaehlParser : KdoParser {
    long tokens = 0, grenze = 0;

    dataInteger holeToken() override {
        if (++tokens > grenze) kivfuzz::verletzt("kdozeile", "the parse does not end");
        return KdoParser::holeToken();
    }
};

}  // namespace

int kivFuzzKdozeile(const std::uint8_t* daten, std::size_t groesse) {
    kivfuzz::initUmgebung();
    const std::string text(reinterpret_cast<const char*>(daten), groesse);
    for (dataInteger modus = 0; modus <= 2; ++modus) {
        KdoLaufzeit laufzeit;
        laufzeit.scannerModus = static_cast<ScannerModus>(modus);
        ZaehlParser parser;
        // One stream a line, as the compiler runs a procedure; the mode carries over.
        std::size_t anfang = 0;
        for (dataInteger nr = 1; anfang < text.size() || nr == 1; ++nr) {
            const std::size_t ende = std::min(text.find('\n', anfang), text.size() - 1) + 1;
            std::istringstream strom(text.substr(anfang, ende - anfang));
            parser.oeffne("fuzz", strom, nr);
            parser.tokens = 0;
            parser.grenze = 4 * static_cast<long>(ende - anfang) + 10;
            const int r = parser.parse();
            if (r != 0 && r != 1) kivfuzz::verletzt("kdozeile", "parse gave neither 0 nor 1");
            const auto jetzt = static_cast<dataInteger>(laufzeit.scannerModus);
            if (jetzt < 0 || jetzt > 2) kivfuzz::verletzt("kdozeile", "scanner mode out of range");
            anfang = ende;
        }
    }
    Fehler::holeStatus();
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzKdozeile)
