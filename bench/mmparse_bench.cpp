// Throughput of the grammar engine: translates a generated file of command
// lines (about 10 MB) in the ways the system uses it, and prints MB/s.
//
//   bench_mmparse_bench [megabytes]
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "grammar/mmparse/mmparse.h"

namespace {

const char* const kGrammatik =
    "<zeile>*"
    "#<zeile>=!<_ws>(<setze>|<loesche>)<_ws>\\n"
    "#<setze>=^(set)<_ws><adr>.{a}<_ws>[,=]<_ws><wert>.{w}%setzeByte\\({a}, {w}\\)"
    "#<loesche>=^(del)<_ws><adr>.{a}%loescheByte\\({a}\\)"
    "#<adr>=[0-9a-fA-F]+"
    "#<wert>=[0-9]+"
    "#<_ws>=[ \\t]*";

std::string erzeuge(std::size_t groesse) {
    std::string s;
    s.reserve(groesse + 64);
    unsigned x = 12345;
    char zeile[64];
    while (s.size() < groesse) {
        x = x * 1103515245u + 12345u;
        if (x & 0x10000)
            std::snprintf(zeile, sizeof zeile, "  SET %x, %u\n", (x >> 8) & 0xffff, (x >> 3) & 0xff);
        else
            std::snprintf(zeile, sizeof zeile, "del %x\n", (x >> 5) & 0xfff);
        s += zeile;
    }
    return s;
}

double sekunden(std::chrono::steady_clock::time_point seit) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - seit).count();
}

void zeige(const char* was, std::size_t bytes, double t, std::int32_t ergebnis) {
    std::printf("%-46s %8.1f MB/s  (%.3f s, result %d)\n", was, static_cast<double>(bytes) / 1e6 / t, t,
                ergebnis);
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t mb = argc > 1 ? static_cast<std::size_t>(std::atoi(argv[1])) : 10;
    if (mb == 0) mb = 10;
    const std::string subjekt = erzeuge(mb * 1000 * 1000);
    const auto laenge = static_cast<std::int32_t>(subjekt.size());
    std::printf("subject: %zu bytes of command lines\n", subjekt.size());

    // File to file, as the translate command does it: a commit per line keeps
    // the subject block and the stacks small.
    std::FILE* ein = std::tmpfile();
    std::FILE* aus = std::tmpfile();
    if (!ein || !aus) return 1;
    std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
    std::rewind(ein);
    auto start = std::chrono::steady_clock::now();
    std::int32_t r = mmparse(aus, 0, kGrammatik, ein, 0, "<>", nullptr);
    std::fflush(aus);
    zeige("stream to stream, commit per line", subjekt.size(), sekunden(start), r);
    std::fclose(ein);
    std::fclose(aus);

    // The matcher alone on the subject in memory.
    start = std::chrono::steady_clock::now();
    r = mmparse(nullptr, 0, kGrammatik, subjekt.data(), laenge, "", nullptr);
    zeige("in memory, match only", subjekt.size(), sekunden(start), r);

    // One long run over a set, copied into a buffer.
    std::string puffer(subjekt.size() + 1, '\0');
    start = std::chrono::steady_clock::now();
    r = mmparse(puffer.data(), laenge + 1, "[ -~\\t\\n]*", subjekt.data(), laenge, "", nullptr);
    zeige("in memory, one run over a set", subjekt.size(), sekunden(start), r);

    // Byte-wise alternation without commits, translated by the output walk.
    const std::size_t klein = std::min<std::size_t>(subjekt.size(), 200000);
    start = std::chrono::steady_clock::now();
    r = mmparse(puffer.data(), laenge + 1, "([0-9]+%N|@)*", subjekt.data(), static_cast<std::int32_t>(klein),
                "", nullptr);
    zeige("in memory, alternation per byte (200 kB)", klein, sekunden(start), r);
    return 0;
}
