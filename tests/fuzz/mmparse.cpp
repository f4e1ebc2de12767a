// Fuzz target: the input is a grammar and a subject, split at the first NUL
// byte, else at the first empty line. One translation is run in several
// ways that must agree: into a fixed buffer, into a growing one, from a
// streamed subject and into an output stream. Hierarchical and tree output
// run as well and must keep to their buffer.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

#include "FuzzUmgebung.h"
#include "grammar/mmparse/mmparse.h"

namespace {

constexpr std::size_t maxGrammatik = 512;
constexpr std::size_t maxSubjekt = 2048;
// A repeated group or rule may backtrack through every split of the subject
// between its runs, which is exponential in the subject's length by the
// notation's own rules. Such grammars get subjects short enough to finish.
constexpr std::size_t maxSubjektWiederholt = 6;

bool wiederholtGruppe(const std::string& g) {
    for (std::size_t i = 0; i + 1 < g.size(); ++i)
        if ((g[i] == ')' || g[i] == '>') && (g[i + 1] == '*' || g[i + 1] == '+')) return true;
    return false;
}
constexpr std::int32_t pufferLaenge = 1 << 16;
constexpr std::size_t waechter = 64;  // bytes behind the buffer that must stay untouched

std::FILE* leererStrom(std::FILE*& f) {
    if (!f) f = std::tmpfile();
    if (!f) return nullptr;
    std::rewind(f);
    if (::ftruncate(::fileno(f), 0) != 0) return nullptr;
    return f;
}

std::string liesStrom(std::FILE* f) {
    std::fflush(f);
    std::rewind(f);
    std::string s;
    char block[4096];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, f)) > 0;) s.append(block, n);
    return s;
}

bool gueltig(std::int32_t r) { return r >= MM_NOMEM_INDEX && r != MM_ILLEGALARGS; }

bool keinSpeicher(std::int32_t r) {
    return r == MM_NOMEM_SUBJECT || r == MM_NOMEM_ARRAY || r == MM_NOMEM_VARRAY || r == MM_TEXT_VERWORFEN ||
           r == MM_ARRAY_VOLL || r == MM_VARRAY_VOLL || r == MM_NOMEM_OBJECT || r == MM_NOMEM_INDEX;
}

// Two answers agree: the same failure, or both a success (of the same
// output length if `mitLaenge`).
bool gleich(std::int32_t a, std::int32_t b, bool mitLaenge) {
    if (a > 0 && b > 0) return !mitLaenge || a == b;
    return a == b;
}

// A run into a fixed buffer with guard bytes behind it.
struct PufferLauf {
    std::string puffer = std::string(pufferLaenge + waechter, '\x5A');
    std::int32_t r = 0;
    std::int32_t position = -1;

    void lauf(const char* ziel, const std::string& g, const void* subjekt, std::int32_t laenge,
              const char* optionen) {
        r = mmparse(puffer.data(), pufferLaenge, g.c_str(), subjekt, laenge, optionen, &position);
        if (!gueltig(r)) kivfuzz::verletzt(ziel, "result out of range");
        for (std::size_t i = pufferLaenge; i < puffer.size(); ++i)
            if (puffer[i] != '\x5A') kivfuzz::verletzt(ziel, "write behind the output buffer");
        if (r > pufferLaenge + 1) kivfuzz::verletzt(ziel, "result longer than the buffer");
    }
    std::string ausgabe() const { return puffer.substr(0, r > 0 ? static_cast<std::size_t>(r - 1) : 0); }
};

}  // namespace

int kivFuzzMmparse(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    static const char* const ziel = "mmparse";
    initUmgebung();
    static std::FILE* einStrom = nullptr;
    static std::FILE* ausStrom = nullptr;

    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    std::size_t trenn = eingabe.find('\0'), weiter = 1;
    if (trenn == std::string::npos) {
        trenn = eingabe.find("\n\n");
        weiter = 2;
    }
    const std::string grammatik = eingabe.substr(0, std::min(trenn, maxGrammatik));
    const std::string subjekt =
        trenn == std::string::npos
            ? std::string()
            : eingabe.substr(trenn + weiter, wiederholtGruppe(grammatik) ? maxSubjektWiederholt : maxSubjekt);
    const auto laenge = static_cast<std::int32_t>(subjekt.size());

    // The plain copy of an in-memory subject repeats, at each commit, the
    // text before the first one; intended. Where the grammar may commit, the
    // other ways need only agree on whether the subject matches.
    const bool mitCommit =
        grammatik.find("(!") != std::string::npos || grammatik.find("=!") != std::string::npos;

    // Plain run: the reference for the others.
    PufferLauf fest;
    fest.lauf(ziel, grammatik, subjekt.data(), laenge, "");
    if (fest.r >= 0 && (fest.position < 0 || fest.position > laenge))
        verletzt(ziel, "position outside the subject");
    if (fest.r > 0 && fest.position != laenge) verletzt(ziel, "success without reaching the subject's end");

    // Growing buffer: the same answer, also where the fixed one was too small.
    std::int32_t position = -1;
    void* adresse = nullptr;
    const std::int32_t rA =
        mmparseMitAdresse(nullptr, 0, grammatik.c_str(), subjekt.data(), laenge, "a", &position, &adresse);
    if (!gueltig(rA) || rA == MM_OTOLONG) verletzt(ziel, "result out of range with a growing buffer");
    if (fest.r != MM_OTOLONG && !keinSpeicher(rA) && !gleich(rA, fest.r, !mitCommit))
        verletzt(ziel, "growing buffer changed the result");
    if (!mitCommit && rA > 0 && fest.r > 0 &&
        (!adresse || std::memcmp(adresse, fest.puffer.data(), static_cast<std::size_t>(rA - 1)) != 0))
        verletzt(ziel, "growing buffer changed the output");
    if (rA <= 0 && adresse) verletzt(ziel, "a buffer handed back after a failure");
    std::free(adresse);

    // Streamed subject: read in blocks, the same translation.
    if (std::FILE* ein = leererStrom(einStrom)) {
        std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
        std::fflush(ein);
        std::rewind(ein);
        PufferLauf strom;
        strom.lauf(ziel, grammatik, ein, 0, "<");
        if (!keinSpeicher(strom.r) && !keinSpeicher(fest.r) &&
            !(mitCommit && (strom.r == MM_OTOLONG || fest.r == MM_OTOLONG))) {
            if (!gleich(strom.r, fest.r, !mitCommit)) verletzt(ziel, "streamed subject changed the result");
            if (!mitCommit && fest.r > 0 && strom.ausgabe() != fest.ausgabe())
                verletzt(ziel, "streamed subject changed the output");
        }
    }

    // Output stream: the same bytes as the buffer.
    if (std::FILE* aus = leererStrom(ausStrom)) {
        const std::int32_t rS = mmparse(aus, 0, grammatik.c_str(), subjekt.data(), laenge, ">", nullptr);
        if (!gueltig(rS)) verletzt(ziel, "result out of range with an output stream");
        if (fest.r > 0 && (rS != fest.r || liesStrom(aus) != fest.ausgabe()))
            verletzt(ziel, "output stream differs from the buffer");
    }

    // Markers lengthen the output but match the same way; the tree only has to
    // keep the promises of every call.
    PufferLauf marken;
    marken.lauf(ziel, grammatik, subjekt.data(), laenge, "h");
    const bool vergleichbar =
        !keinSpeicher(marken.r) && !keinSpeicher(fest.r) && marken.r != MM_OTOLONG && fest.r != MM_OTOLONG;
    if (vergleichbar && ((marken.r > 0) != (fest.r > 0) || (fest.r <= 0 && marken.r != fest.r)))
        verletzt(ziel, "markers changed the result");
    if (std::FILE* aus = leererStrom(ausStrom))
        if (!gueltig(mmparse(aus, 0, grammatik.c_str(), subjekt.data(), laenge, ">t", nullptr)))
            verletzt(ziel, "result out of range with the tree");
    return 0;
}

#ifdef KIV_LIBFUZZER
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    return kivFuzzMmparse(daten, groesse);
}
#endif
