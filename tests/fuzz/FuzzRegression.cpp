// Replays inputs through the fuzz targets without libFuzzer, so that every
// build runs the seed corpus and the findings kept as regressions.
//
//   fuzz_regression <dir>                  every file of <dir>/corpus/<target>/
//                                          and <dir>/regressions/<target>/
//   fuzz_regression -z <target> <file>...  the given files through one target
//
// Findings that still fail wait in <dir>/pending/<target>/, which is not
// replayed; run them with -z.
//
// A broken promise aborts with the target's message; the name of the input
// is printed before it runs, so the last line names the culprit.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

int kivFuzzIntel(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzMotorola(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzBinaer(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzFmt(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzMmparse(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzKdozeile(const std::uint8_t* daten, std::size_t groesse);
int kivFuzzCompiler(const std::uint8_t* daten, std::size_t groesse);

namespace {

namespace fs = std::filesystem;

struct Ziel {
    const char* name;
    int (*funktion)(const std::uint8_t*, std::size_t);
};

const Ziel ziele[] = {
    {"intel", kivFuzzIntel},       {"motorola", kivFuzzMotorola}, {"binaer", kivFuzzBinaer},
    {"fmt", kivFuzzFmt},           {"mmparse", kivFuzzMmparse},   {"kdozeile", kivFuzzKdozeile},
    {"compiler", kivFuzzCompiler},
};

bool laufe(const Ziel& ziel, const fs::path& datei) {
    std::ifstream f(datei, std::ios::binary);
    if (!f) {
        std::fprintf(stderr, "cannot read %s\n", datei.c_str());
        return false;
    }
    const std::vector<std::uint8_t> daten{std::istreambuf_iterator<char>(f),
                                          std::istreambuf_iterator<char>()};
    std::fprintf(stderr, "%s %s\n", ziel.name, datei.c_str());
    // A vector's data() may be null when empty; libFuzzer never passes null.
    static const std::uint8_t leer = 0;
    ziel.funktion(daten.empty() ? &leer : daten.data(), daten.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 3 && std::strcmp(argv[1], "-z") == 0) {
        const auto z = std::find_if(std::begin(ziele), std::end(ziele),
                                    [&](const Ziel& k) { return std::strcmp(k.name, argv[2]) == 0; });
        if (z == std::end(ziele)) {
            std::fprintf(stderr, "no target %s\n", argv[2]);
            return 2;
        }
        // Absolute first: a target may change the working directory.
        std::vector<fs::path> dateien;
        for (int i = 3; i < argc; ++i) dateien.push_back(fs::absolute(argv[i]));
        bool gut = true;
        for (const auto& d : dateien) gut = laufe(*z, d) && gut;
        return gut ? 0 : 1;
    }
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <fuzz dir> | -z <target> <file>...\n", argv[0]);
        return 2;
    }
    const fs::path wurzel = fs::absolute(argv[1]);
    std::size_t anzahl = 0;
    bool gut = true;
    for (const Ziel& z : ziele) {
        std::size_t proZiel = 0;
        for (const char* art : {"corpus", "regressions"}) {
            const fs::path ordner = wurzel / art / z.name;
            if (!fs::is_directory(ordner)) continue;
            std::vector<fs::path> dateien;
            for (const auto& e : fs::directory_iterator(ordner))
                if (e.is_regular_file()) dateien.push_back(e.path());
            std::sort(dateien.begin(), dateien.end());
            for (const auto& d : dateien) {
                gut = laufe(z, d) && gut;
                ++proZiel;
            }
        }
        if (proZiel == 0) {
            std::fprintf(stderr, "no inputs for %s\n", z.name);
            gut = false;
        }
        anzahl += proZiel;
    }
    std::fprintf(stderr, "%zu inputs replayed\n", anzahl);
    return gut ? 0 : 1;
}
