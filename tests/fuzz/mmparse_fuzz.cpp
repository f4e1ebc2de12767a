// Fuzz entry for the grammar engine. The input is a grammar, a NUL byte, an
// option byte and the subject. Whatever the input, a call must return a code
// of the documented range, write only inside the buffer it was given, and
// leave nothing allocated.
//
// For libFuzzer: g++/clang++ -fsanitize=fuzzer,address -DMMPARSE_LIBFUZZER
//   -Isrc tests/fuzz/mmparse_fuzz.cpp src/grammar/mmparse/*.cpp
// The unit tests include this file and drive `mmparseFuzzEinmal` with
// generated inputs (tests/unit/grammar/mmparse/MmparseFuzzTest.cpp).
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "grammar/mmparse/mmparse.h"

// Runs one input; returns false if the engine broke a promise.
inline bool mmparseFuzzEinmal(const std::uint8_t* daten, std::size_t groesse) {
    const auto* ende = static_cast<const std::uint8_t*>(std::memchr(daten, 0, groesse));
    std::size_t gLaenge = ende ? static_cast<std::size_t>(ende - daten) : groesse;
    std::string grammatik(reinterpret_cast<const char*>(daten), gLaenge);
    std::size_t rest = ende ? groesse - gLaenge - 1 : 0;
    const std::uint8_t* hinter = ende ? ende + 1 : daten + groesse;
    std::uint8_t wahl = rest > 0 ? hinter[0] : 0;
    std::string subjekt = rest > 0 ? std::string(reinterpret_cast<const char*>(hinter + 1), rest - 1) : "";

    static const char* const optionen[] = {"", "h", "a", "<", "<h", "<a"};
    const char* opt = optionen[wahl % 6];
    const bool strom = opt[0] == '<';
    const std::size_t pufferLaenge = (wahl >> 3) % 2 ? 7 : 256;
    std::string puffer(pufferLaenge + 16, '\x55');
    std::FILE* ein = nullptr;
    if (strom) {
        ein = std::tmpfile();
        if (!ein) return true;
        std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
        std::rewind(ein);
    }
    std::int32_t position = -1;
    void* adresse = nullptr;
    void* objekt = puffer.data();
    if (std::strchr(opt, 'a')) {
        objekt = std::malloc(pufferLaenge);
        if (!objekt) return true;
    }
    std::int32_t r = mmparseMitAdresse(objekt, static_cast<std::int32_t>(pufferLaenge), grammatik.c_str(),
                                       strom ? static_cast<const void*>(ein) : subjekt.data(),
                                       static_cast<std::int32_t>(subjekt.size()), opt, &position, &adresse);
    if (ein) std::fclose(ein);
    std::free(adresse);
    bool gut = r >= MM_NOMEM_INDEX && r != MM_ILLEGALARGS;
    if (r > 0 && objekt == puffer.data()) {
        gut = gut && static_cast<std::size_t>(r - 1) <= pufferLaenge;
        for (std::size_t i = pufferLaenge; i < puffer.size(); ++i) gut = gut && puffer[i] == '\x55';
        gut = gut && position >= 0 && static_cast<std::size_t>(position) <= subjekt.size();
    }
    if (r == 0) gut = gut && position >= 0 && static_cast<std::size_t>(position) <= subjekt.size();
    if (r < 0) gut = gut && position >= 0 && static_cast<std::size_t>(position) <= grammatik.size();
    return gut;
}

#ifdef MMPARSE_LIBFUZZER
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* daten, std::size_t groesse) {
    if (!mmparseFuzzEinmal(daten, groesse)) std::abort();
    return 0;
}
#endif
