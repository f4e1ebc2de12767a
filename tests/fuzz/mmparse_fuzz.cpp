// Fuzz entry for the grammar engine. The input is a grammar and a subject,
// split at the first NUL byte, else at the first empty line. Whatever the
// input, each call returns a code of the documented range and writes only
// inside the buffer it was given; and one translation run in several ways
// agrees: into a fixed buffer, a small one, a growing one, from a streamed
// subject and into an output stream. Hierarchical marks and the tree run as
// well and must keep the promises of every call.
//
// mmparse.cpp makes this a fuzz target; the unit tests include this file and
// drive it with generated inputs.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

#include "grammar/mmparse/mmparse.h"

namespace mmfuzz {

constexpr std::size_t maxGrammatik = 512, maxSubjekt = 2048;
// A repeated group or rule may backtrack through every split of the subject
// between its runs, which is exponential in the subject's length by the
// notation's own rules. Such grammars get subjects short enough to finish.
constexpr std::size_t maxSubjektWiederholt = 6;
constexpr std::size_t waechter = 64;  // bytes behind the buffer that must stay untouched

inline bool wiederholtGruppe(const std::string& g) {
    for (std::size_t i = 0; i + 1 < g.size(); ++i)
        if ((g[i] == ')' || g[i] == '>') && (g[i + 1] == '*' || g[i + 1] == '+')) return true;
    return false;
}

// One scratch file per use, emptied for each call.
inline std::FILE* leererStrom(std::FILE*& f) {
    if (!f) f = std::tmpfile();
    if (!f) return nullptr;
    std::rewind(f);
    return ::ftruncate(::fileno(f), 0) == 0 ? f : nullptr;
}

inline std::string liesStrom(std::FILE* f) {
    std::fflush(f);
    std::rewind(f);
    std::string s;
    char block[4096];
    for (std::size_t n; (n = std::fread(block, 1, sizeof block, f)) > 0;) s.append(block, n);
    return s;
}

inline bool gueltig(std::int32_t r) { return r >= MM_NOMEM_INDEX && r != MM_ILLEGALARGS; }

inline bool keinSpeicher(std::int32_t r) {
    return r == MM_NOMEM_SUBJECT || r == MM_NOMEM_ARRAY || r == MM_NOMEM_VARRAY || r == MM_TEXT_VERWORFEN ||
           r == MM_ARRAY_VOLL || r == MM_VARRAY_VOLL || r == MM_NOMEM_OBJECT || r == MM_NOMEM_INDEX;
}

// Two answers agree: the same failure, or both a success (of the same output
// length if `mitLaenge`).
inline bool gleich(std::int32_t a, std::int32_t b, bool mitLaenge) {
    return a > 0 && b > 0 ? !mitLaenge || a == b : a == b;
}

// A run into a fixed buffer with guard bytes behind it.
struct PufferLauf {
    std::int32_t laenge, r = 0, position = -1;
    std::string puffer;

    explicit PufferLauf(std::int32_t l = 1 << 16) : laenge(l), puffer(l + waechter, '\x5A') {}
    const char* lauf(const std::string& g, const void* subjekt, std::int32_t n, const char* optionen) {
        r = mmparse(puffer.data(), laenge, g.c_str(), subjekt, n, optionen, &position);
        if (!gueltig(r)) return "result out of range";
        for (std::size_t i = laenge; i < puffer.size(); ++i)
            if (puffer[i] != '\x5A') return "write behind the output buffer";
        return r > laenge + 1 ? "result longer than the buffer" : nullptr;
    }
    std::string ausgabe() const { return puffer.substr(0, r > 0 ? static_cast<std::size_t>(r - 1) : 0); }
};

}  // namespace mmfuzz

// Runs one input; returns the promise the engine broke, or null.
inline const char* mmparseFuzzEinmal(const std::uint8_t* daten, std::size_t groesse) {
    using namespace mmfuzz;
    static std::FILE *einStrom = nullptr, *ausStrom = nullptr;
    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    std::size_t trenn = eingabe.find('\0'), weiter = 1;
    if (trenn == std::string::npos) trenn = eingabe.find("\n\n"), weiter = 2;
    const std::string grammatik = eingabe.substr(0, std::min(trenn, maxGrammatik));
    const std::string subjekt =
        trenn == std::string::npos
            ? std::string()
            : eingabe.substr(trenn + weiter, wiederholtGruppe(grammatik) ? maxSubjektWiederholt : maxSubjekt);
    const auto laenge = static_cast<std::int32_t>(subjekt.size());
    const char* g = grammatik.c_str();

    // The plain copy of an in-memory subject repeats, at each commit, the
    // text before the first one; intended. Where the grammar may commit, the
    // other ways need only agree on whether the subject matches.
    const bool mitCommit =
        grammatik.find("(!") != std::string::npos || grammatik.find("=!") != std::string::npos;

    // Plain run: the reference for the others.
    PufferLauf fest;
    if (const char* f = fest.lauf(grammatik, subjekt.data(), laenge, "")) return f;
    if (fest.r >= 0 && (fest.position < 0 || fest.position > laenge)) return "position outside the subject";
    if (fest.r > 0 && fest.position != laenge) return "success without reaching the subject's end";
    if (fest.r <= MM_UNDEFINEDSYM && fest.r >= MM_ILLEGALHEXCHAR &&
        (fest.position < 0 || fest.position > static_cast<std::int32_t>(grammatik.size())))
        return "notation error outside the grammar";

    // A small buffer: the same output where it fits, else too long.
    PufferLauf klein(7);
    if (const char* f = klein.lauf(grammatik, subjekt.data(), laenge, "")) return f;
    if (!mitCommit && fest.r > 0 && !keinSpeicher(klein.r) &&
        (fest.r <= 8 ? klein.r != fest.r || klein.ausgabe() != fest.ausgabe() : klein.r != MM_OTOLONG))
        return "a small buffer changed the result";

    // Growing buffer, empty or the caller's: the same answer, also where the
    // fixed one was too small.
    std::int32_t position = -1;
    void* adresse = nullptr;
    void* start = groesse % 2 ? std::malloc(3) : nullptr;
    const std::int32_t rA =
        mmparseMitAdresse(start, start ? 3 : 0, g, subjekt.data(), laenge, "a", &position, &adresse);
    const bool gleicheAusgabe = !(rA > 0 && fest.r > 0) || mitCommit ||
                                (adresse && std::memcmp(adresse, fest.puffer.data(), rA - 1) == 0);
    std::free(adresse);
    if (!gueltig(rA) || rA == MM_OTOLONG) return "result out of range with a growing buffer";
    if (fest.r != MM_OTOLONG && !keinSpeicher(rA) && !gleich(rA, fest.r, !mitCommit))
        return "growing buffer changed the result";
    if (!gleicheAusgabe) return "growing buffer changed the output";
    if (rA <= 0 && adresse) return "a buffer handed back after a failure";

    // Streamed subject: read in blocks, the same translation.
    if (std::FILE* ein = leererStrom(einStrom)) {
        std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
        std::fflush(ein);
        std::rewind(ein);
        PufferLauf strom;
        if (const char* f = strom.lauf(grammatik, ein, 0, "<")) return f;
        if (!keinSpeicher(strom.r) && !keinSpeicher(fest.r) &&
            !(mitCommit && (strom.r == MM_OTOLONG || fest.r == MM_OTOLONG))) {
            if (!gleich(strom.r, fest.r, !mitCommit)) return "streamed subject changed the result";
            if (!mitCommit && fest.r > 0 && strom.ausgabe() != fest.ausgabe())
                return "streamed subject changed the output";
        }
    }

    // Output stream: the same bytes as the buffer.
    if (std::FILE* aus = leererStrom(ausStrom)) {
        const std::int32_t rS = mmparse(aus, 0, g, subjekt.data(), laenge, ">", nullptr);
        if (!gueltig(rS)) return "result out of range with an output stream";
        if (fest.r > 0 && (rS != fest.r || liesStrom(aus) != fest.ausgabe()))
            return "output stream differs from the buffer";
    }

    // Marks lengthen the output but match the same way; the tree only has to
    // keep the promises of every call.
    PufferLauf marken;
    if (const char* f = marken.lauf(grammatik, subjekt.data(), laenge, "h")) return f;
    if (!keinSpeicher(marken.r) && !keinSpeicher(fest.r) && marken.r != MM_OTOLONG && fest.r != MM_OTOLONG &&
        ((marken.r > 0) != (fest.r > 0) || (fest.r <= 0 && marken.r != fest.r)))
        return "markers changed the result";
    if (std::FILE* aus = leererStrom(ausStrom))
        if (!gueltig(mmparse(aus, 0, g, subjekt.data(), laenge, ">t", nullptr)))
            return "result out of range with the tree";
    return nullptr;
}
