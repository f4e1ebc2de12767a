// Replays inputs through the fuzz targets without libFuzzer, each name printed first:
//   fuzz_regression <dir> | -z <target> <file>...   (<dir>/{corpus,regressions}/<target>/*)
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

using FuzzZiel = int(const std::uint8_t*, std::size_t);
FuzzZiel kivFuzzIntel, kivFuzzMotorola, kivFuzzBinaer, kivFuzzFmt, kivFuzzMmparse, kivFuzzKdozeile,
    kivFuzzCompiler;

namespace {
namespace fs = std::filesystem;

const struct Ziel {
    const char* name;
    FuzzZiel* funktion;
} ziele[] = {{"intel", kivFuzzIntel},      {"motorola", kivFuzzMotorola}, {"binaer", kivFuzzBinaer},
             {"fmt", kivFuzzFmt},          {"mmparse", kivFuzzMmparse},   {"kdozeile", kivFuzzKdozeile},
             {"compiler", kivFuzzCompiler}};

bool laufe(const Ziel& ziel, const fs::path& datei) {
    std::ifstream f(datei, std::ios::binary);
    if (!f) return std::fprintf(stderr, "cannot read %s\n", datei.c_str()), false;
    const std::vector<std::uint8_t> daten{std::istreambuf_iterator<char>(f), {}};
    std::fprintf(stderr, "%s %s\n", ziel.name, datei.c_str());
    // An empty vector's data() may be null; libFuzzer never passes null.
    static const std::uint8_t leer = 0;
    ziel.funktion(daten.empty() ? &leer : daten.data(), daten.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const bool einzeln = argc >= 3 && std::strcmp(argv[1], "-z") == 0;
    if (argc != 2 && !einzeln)
        return std::fprintf(stderr, "usage: %s <dir> | -z <target> <file>...\n", argv[0]), 2;
    // Absolute names first: a target may change the working directory.
    const fs::path wurzel = fs::absolute(argv[1]);
    bool gut = true;
    std::size_t anzahl = 0;
    for (const Ziel& z : ziele) {
        std::vector<fs::path> dateien;
        if (einzeln && std::strcmp(z.name, argv[2]) == 0)
            for (int i = 3; i < argc; ++i) dateien.push_back(fs::absolute(argv[i]));
        for (const char* art : {"corpus", "regressions"}) {
            const fs::path ordner = wurzel / art / z.name;
            if (einzeln || !fs::is_directory(ordner)) continue;
            for (const auto& e : fs::directory_iterator(ordner))
                if (e.is_regular_file()) dateien.push_back(e.path());
        }
        std::sort(dateien.begin(), dateien.end());
        if (dateien.empty() && !einzeln) {
            std::fprintf(stderr, "no inputs for %s\n", z.name);
            gut = false;
        }
        for (const auto& d : dateien) gut = laufe(z, d) && gut;
        anzahl += dateien.size();
    }
    std::fprintf(stderr, "%zu inputs replayed\n", anzahl);
    return gut && anzahl > 0 ? 0 : 1;
}
