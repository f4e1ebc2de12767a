// Shared ground of the fuzz targets kivFuzz<Name>; KIV_FUZZ_EINSTIEG makes one
// the libFuzzer entry with KIV_LIBFUZZER, else fuzz_regression links them all.
#pragma once

#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

#include <unistd.h>

#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"
#include "support/StilleAnzeige.h"

#ifdef KIV_LIBFUZZER
#define KIV_FUZZ_EINSTIEG(f) \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* d, std::size_t n) { return f(d, n); }
#else
#define KIV_FUZZ_EINSTIEG(f)
#endif

namespace kivfuzz {

// Swallows everything; never destroyed, as the console streams flush at exit.
inline std::streambuf& nullPuffer() {
    struct Null : std::streambuf {
        int_type overflow(int_type c) override { return traits_type::not_eof(c); }
        std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
    };
    static Null* const puffer = new Null;
    return *puffer;
}

// The reporter as at start-up; messages are still formatted but go nowhere.
inline void setzeFehlerZurueck() {
    Fehler::init();
    Fehler::fehlerPrefix = "%KIV-";
    Fehler::fehlerAusgabeRoutine = [](Fehler& f, int) {
        std::ostream weg(&nullPuffer());
        f.ausgabe(weg);
    };
}

// Once per process; libFuzzer and sanitizer reports use stdio and still show.
inline void initUmgebung() {
    static const bool fertig = [] {
        setzeFehlerZurueck();
        BearbeitungsFortschritt::standardFabrik = stilleFabrik;
        for (std::ostream* s : {&std::cout, &std::cerr, &std::clog}) s->rdbuf(&nullPuffer());
        return true;
    }();
    (void)fertig;
}

// A file of this process for readers that only take names, removed at exit.
struct ScratchDatei {
    const std::string name;

    explicit ScratchDatei(const char* art)
        : name("/tmp/kiv_fuzz_" + std::to_string(::getpid()) + "_" + art) {}
    ~ScratchDatei() { std::remove(name.c_str()); }
    const char* schreibe(const void* daten, std::size_t groesse) const {
        std::ofstream(name, std::ios::binary)
            .write(static_cast<const char*>(daten), std::streamsize(groesse));
        return name.c_str();
    }
};

// Says which promise broke, then aborts so that libFuzzer keeps the input.
[[noreturn]] inline void verletzt(const char* ziel, const char* was) {
    std::fprintf(stderr, "kiv fuzz %s: %s\n", ziel, was);
    std::fflush(stderr);
    std::abort();
}

}  // namespace kivfuzz
