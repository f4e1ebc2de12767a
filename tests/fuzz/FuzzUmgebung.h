// Shared ground of the fuzz targets: a quiet process, a scratch file per
// process, and the one way a target reports a broken promise.
//
// Every target file defines `int kivFuzz<Name>(const uint8_t*, size_t)`; with
// KIV_LIBFUZZER it also defines the libFuzzer entry that calls it. Without it
// the targets are linked together into fuzz_regression (FuzzRegression.cpp),
// which replays the seed corpus and the saved findings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <streambuf>
#include <string>

#include <unistd.h>

#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"
#include "support/StilleAnzeige.h"

namespace kivfuzz {

// Swallows everything written to it, so that formatting code still runs.
class NullPuffer : public std::streambuf {
protected:
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
};

// Never destroyed: the console streams still flush into it at exit.
inline NullPuffer& nullPuffer() {
    static NullPuffer* const puffer = new NullPuffer;
    return *puffer;
}

// Each message is still put into its printed shape (that code sees the
// fuzzed texts too), but nowhere shown.
inline void stilleAusgabe(Fehler& fehler, int) {
    std::ostream weg(&nullPuffer());
    fehler.ausgabe(weg);
}

// Once per process: messages, progress marks and the console streams go
// nowhere. libFuzzer and the sanitizers write through stdio and raw file
// descriptors, so their reports still reach the terminal.
// The reporter as at start-up, with the quiet output routine.
inline void setzeFehlerZurueck() {
    Fehler::init();
    Fehler::fehlerPrefix = "%KIV-";
    Fehler::fehlerAusgabeRoutine = stilleAusgabe;
}

inline void initUmgebung() {
    static const bool fertig = [] {
        setzeFehlerZurueck();
        BearbeitungsFortschritt::standardFabrik = stilleFabrik;
        std::cout.rdbuf(&nullPuffer());
        std::cerr.rdbuf(&nullPuffer());
        std::clog.rdbuf(&nullPuffer());
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

    const std::string& schreibe(const std::uint8_t* daten, std::size_t groesse) {
        std::ofstream(name_, std::ios::binary | std::ios::trunc)
            .write(reinterpret_cast<const char*>(daten), static_cast<std::streamsize>(groesse));
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
