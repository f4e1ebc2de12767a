// Shared ground of the fuzz targets: a quiet process, a scratch file per
// process, and the one way a target reports a broken promise.
//
// Every target defines `int kivFuzz<Name>(const uint8_t*, size_t)` and names
// it in KIV_FUZZ_EINSTIEG, which with KIV_LIBFUZZER becomes the libFuzzer
// entry. Without it the targets are linked together into fuzz_regression.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <streambuf>
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

// Swallows everything, so that formatting code still runs. Never destroyed:
// the console streams still flush into it at exit.
inline std::streambuf& nullPuffer() {
    struct Null : std::streambuf {
        int_type overflow(int_type c) override { return traits_type::not_eof(c); }
        std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
    };
    static Null* const puffer = new Null;
    return *puffer;
}

// The reporter as at start-up; messages still take their printed shape
// (that code sees the fuzzed texts too) but go nowhere.
inline void setzeFehlerZurueck() {
    Fehler::init();
    Fehler::fehlerPrefix = "%KIV-";
    Fehler::fehlerAusgabeRoutine = [](Fehler& f, int) {
        std::ostream weg(&nullPuffer());
        f.ausgabe(weg);
    };
}

// Once per process. libFuzzer and the sanitizers write through stdio and raw
// file descriptors, so their reports still reach the terminal.
inline void initUmgebung() {
    static const bool fertig = [] {
        setzeFehlerZurueck();
        BearbeitungsFortschritt::standardFabrik = stilleFabrik;
        for (std::ostream* s : {&std::cout, &std::cerr, &std::clog}) s->rdbuf(&nullPuffer());
        return true;
    }();
    (void)fertig;
}

// A file in /tmp of this process, rewritten for each input and removed at
// exit, for readers that only take file names.
class ScratchDatei {
public:
    explicit ScratchDatei(const char* art)
        : name_("/tmp/kiv_fuzz_" + std::to_string(::getpid()) + "_" + art) {}
    ~ScratchDatei() { std::remove(name_.c_str()); }
    ScratchDatei(const ScratchDatei&) = delete;
    ScratchDatei& operator=(const ScratchDatei&) = delete;

    const std::string& schreibe(const void* daten, std::size_t groesse) {
        std::ofstream(name_, std::ios::binary | std::ios::trunc)
            .write(static_cast<const char*>(daten), static_cast<std::streamsize>(groesse));
        return name_;
    }
    const std::string& name() const { return name_; }

private:
    std::string name_;
};

// A broken promise: says which, then aborts so that libFuzzer keeps the input.
[[noreturn]] inline void verletzt(const char* ziel, const char* was) {
    std::fprintf(stderr, "kiv fuzz %s: %s\n", ziel, was);
    std::fflush(stderr);
    std::abort();
}

}  // namespace kivfuzz
