// Fuzz target: the input is a sequence of command lines, each run through
// Compiler::ausfuehreZeile on a fresh object tree with the program's root
// object and command lists, as a user would type them at the prompt.
//
// Commands read and write files under the names they are given, so the
// target works in a directory of its own, empties it for every input, and
// skips inputs that could name a file elsewhere: a "/" that is more than an
// absent argument, or a backslash at a line end, which could join one.
// Long hexadecimal numbers are skipped too (see hatGrosseZahl).
#include <cctype>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

#include "FuzzUmgebung.h"
#include "commands/KivEprom.h"
#include "commands/KivObjekt.h"
#include "frame/Programm.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "reporting/FehlerListen.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t maxZeilen = 32;

bool nenntFremdeDatei(const std::string& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const char c = text[i], d = text[i + 1];
        if (c == '\\' && (d == '\n' || d == '\r')) return true;
        if (c == '/' && std::string(" \t\r\n,)").find(d) == std::string::npos) return true;
    }
    return false;
}

// Commands work in proportion to the address ranges they are given, up to
// four gigabytes; ranges are kept below one megabyte by skipping inputs with
// longer hexadecimal numbers, so that a slow input means a fault.
bool hatGrosseZahl(const std::string& text) {
    std::size_t lauf = 0;
    for (char c : text) {
        lauf = std::isxdigit(static_cast<unsigned char>(c)) ? lauf + 1 : 0;
        if (lauf > 5) return true;
    }
    return false;
}

// Made on first use and never destroyed, so that the exit handler that
// removes it can still name it. The process works inside it from then on.
const fs::path& arbeitsOrdner() {
    static const fs::path* const ordner = [] {
        auto* p = new fs::path(fs::temp_directory_path() /
                               ("kiv_fuzz_" + std::to_string(::getpid()) + "_compiler"));
        fs::create_directories(*p);
        fs::current_path(*p);
        // A nested run of an empty procedure name reads standard input.
        if (!std::freopen("/dev/null", "r", stdin)) kivfuzz::verletzt("compiler", "no /dev/null for stdin");
        std::atexit([] {
            std::error_code weg;
            fs::remove_all(*ordner, weg);
        });
        return p;
    }();
    return *ordner;
}

void leereOrdner() {
    std::error_code weg;
    for (const auto& e : fs::directory_iterator(arbeitsOrdner(), weg)) fs::remove_all(e.path(), weg);
}

}  // namespace

int kivFuzzCompiler(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    static const char* const ziel = "compiler";
    initUmgebung();
    arbeitsOrdner();

    const std::string text(reinterpret_cast<const char*>(daten), groesse);
    if (nenntFremdeDatei(text) || hatGrosseZahl(text)) return 0;
    leereOrdner();
    // Error control and limits of one input must not reach the next.
    FehlerListen::instanz().status.clear();
    FehlerListen::instanz().begrenzung.clear();
    setzeFehlerZurueck();

    std::ostream anzeige(&nullPuffer());
    // The program's own set-up, without log and banner.
    auto programm = std::make_unique<KivProgramm>("kiv");
    kdoAnzeigeStream = &anzeige;
    std::size_t anfang = 0;
    for (std::size_t n = 0; n < maxZeilen && anfang < text.size(); ++n) {
        std::size_t ende = text.find('\n', anfang);
        ende = ende == std::string::npos ? text.size() : ende + 1;
        std::string zeile = text.substr(anfang, ende - anfang);
        if (zeile.back() != '\n') zeile += '\n';
        anfang = ende;
        const KdoStatus status = Compiler::ausfuehreZeile(String(zeile));
        if (status < KdoStatus::Kein || status > KdoStatus::Exit)
            verletzt(ziel, "compiler status out of range");
        if (status == KdoStatus::Exit) break;
    }
    programm.reset();
    if (anzahlListen != 0) verletzt(ziel, "lists left alive after the tree was taken down");
    Fehler::holeStatus();
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzCompiler)
