// Fuzz entry of the grammar engine: grammar and subject split at the first NUL,
// else the first empty line. Every call returns a valid code, writes only
// inside its buffer, and the ways of running one translation agree.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "grammar/mmparse/mmparse.h"

namespace mmfuzz {

inline bool gueltig(std::int32_t r) { return r >= MM_NOMEM_INDEX && r != MM_ILLEGALARGS; }

// The codes of memory running out, -3 to -8, -32 and -33.
inline bool keinSpeicher(std::int32_t r) {
    return (r <= MM_NOMEM_SUBJECT && r >= MM_VARRAY_VOLL) || r <= MM_NOMEM_OBJECT;
}

// The same failure, or both a success (of the same output length if `mitLaenge`).
inline bool gleich(std::int32_t a, std::int32_t b, bool mitLaenge) {
    return a > 0 && b > 0 ? !mitLaenge || a == b : a == b;
}

// A run into a fixed buffer with guard bytes behind it.
struct PufferLauf {
    std::int32_t laenge, r = 0, position = -1;
    std::string puffer;

    explicit PufferLauf(std::int32_t l = 1 << 16) : laenge(l), puffer(l + 64, '\x5A') {}
    const char* lauf(const std::string& g, const void* subjekt, std::int32_t n, const char* optionen) {
        r = mmparse(puffer.data(), laenge, g.c_str(), subjekt, n, optionen, &position);
        if (!gueltig(r)) return "result out of range";
        if (puffer.find_first_not_of('\x5A', laenge) != std::string::npos) return "write behind the buffer";
        return r > laenge + 1 ? "result longer than the buffer" : nullptr;
    }
    std::string ausgabe() const { return puffer.substr(0, r > 0 ? r - 1 : 0); }
};

}  // namespace mmfuzz

// Runs one input; returns the promise the engine broke, or null.
inline const char* mmparseFuzzEinmal(const std::uint8_t* daten, std::size_t groesse) {
    using namespace mmfuzz;
    const std::string eingabe(reinterpret_cast<const char*>(daten), groesse);
    std::size_t trenn = eingabe.find('\0'), weiter = 1;
    if (trenn == std::string::npos) trenn = eingabe.find("\n\n"), weiter = 2;
    const std::string grammatik = eingabe.substr(0, std::min<std::size_t>(trenn, 512));
    // A repeated group backtracks exponentially by the notation's rules: short subjects.
    bool wiederholt = false;
    for (std::size_t i = 0; i + 1 < grammatik.size(); ++i)
        wiederholt |= std::strchr(")>", grammatik[i]) && std::strchr("*+", grammatik[i + 1]);
    const std::string subjekt =
        trenn == std::string::npos ? "" : eingabe.substr(trenn + weiter, wiederholt ? 6 : 2048);
    const auto laenge = static_cast<std::int32_t>(subjekt.size());
    const char* g = grammatik.c_str();
    // In memory a commit repeats the text before it (intended): then only matching must agree.
    const bool commit =
        grammatik.find("(!") != std::string::npos || grammatik.find("=!") != std::string::npos;

    PufferLauf fest;  // the reference for the others
    if (const char* f = fest.lauf(grammatik, subjekt.data(), laenge, "")) return f;
    if (fest.r >= 0 && (fest.position < 0 || fest.position > laenge)) return "position outside the subject";
    if (fest.r > 0 && fest.position != laenge) return "success without reaching the subject's end";
    if (fest.r <= MM_UNDEFINEDSYM && fest.r >= MM_ILLEGALHEXCHAR &&
        (fest.position < 0 || fest.position > static_cast<std::int32_t>(grammatik.size())))
        return "notation error outside the grammar";

    PufferLauf klein(7);  // the same output where it fits, else too long
    if (const char* f = klein.lauf(grammatik, subjekt.data(), laenge, "")) return f;
    if (!commit && fest.r > 0 && !keinSpeicher(klein.r) &&
        (fest.r <= 8 ? klein.r != fest.r || klein.ausgabe() != fest.ausgabe() : klein.r != MM_OTOLONG))
        return "a small buffer changed the result";

    // A growing buffer, none or the caller's: the same answer.
    void *start = groesse % 2 ? std::malloc(3) : nullptr, *adresse = nullptr;
    const std::int32_t rA =
        mmparseMitAdresse(start, start ? 3 : 0, g, subjekt.data(), laenge, "a", nullptr, &adresse);
    const bool gleicheAusgabe = !(rA > 0 && fest.r > 0) || commit ||
                                (adresse && std::memcmp(adresse, fest.puffer.data(), rA - 1) == 0);
    std::free(adresse);
    if (!gueltig(rA) || rA == MM_OTOLONG) return "result out of range with a growing buffer";
    if (fest.r != MM_OTOLONG && !keinSpeicher(rA) && !gleich(rA, fest.r, !commit))
        return "growing buffer changed the result";
    if (!gleicheAusgabe) return "growing buffer changed the output";
    if (rA <= 0 && adresse) return "a buffer handed back after a failure";

    // A streamed subject, read in blocks, and an output stream, both in memory.
    if (std::FILE* ein = fmemopen(const_cast<char*>(subjekt.data()), subjekt.size(), "r")) {
        PufferLauf strom;
        const char* f = strom.lauf(grammatik, ein, 0, "<");
        std::fclose(ein);
        if (f) return f;
        if (!keinSpeicher(strom.r) && !keinSpeicher(fest.r) &&
            !(commit && (strom.r == MM_OTOLONG || fest.r == MM_OTOLONG))) {
            if (!gleich(strom.r, fest.r, !commit)) return "streamed subject changed the result";
            if (!commit && fest.r > 0 && strom.ausgabe() != fest.ausgabe())
                return "streamed subject changed the output";
        }
    }
    for (const char* optionen : {">", ">t"}) {
        char* text = nullptr;
        std::size_t textLaenge = 0;
        std::FILE* aus = open_memstream(&text, &textLaenge);
        const std::int32_t rS = aus ? mmparse(aus, 0, g, subjekt.data(), laenge, optionen, nullptr) : 1;
        if (aus) std::fclose(aus);
        const bool gleicherText = text && fest.ausgabe() == std::string_view(text, textLaenge);
        std::free(text);
        if (!gueltig(rS)) return "result out of range with an output stream";
        if (optionen[1] == 0 && fest.r > 0 && (rS != fest.r || !gleicherText))
            return "output stream differs from the buffer";
    }

    // Marks lengthen the output but match the same way.
    PufferLauf marken;
    if (const char* f = marken.lauf(grammatik, subjekt.data(), laenge, "h")) return f;
    if (!keinSpeicher(marken.r) && !keinSpeicher(fest.r) && marken.r != MM_OTOLONG && fest.r != MM_OTOLONG &&
        ((marken.r > 0) != (fest.r > 0) || (fest.r <= 0 && marken.r != fest.r)))
        return "markers changed the result";
    return nullptr;
}
