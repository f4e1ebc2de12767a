// Fuzz target: up to 32 command lines, run as typed at the prompt on a fresh object tree.
#include <cctype>
#include <filesystem>
#include <memory>

#include "FuzzUmgebung.h"
#include "frame/Programm.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoListe.h"
#include "reporting/FehlerListen.h"

namespace {

namespace fs = std::filesystem;

// Refused: a "/" or line-end backslash that might name a file elsewhere, and
// numbers of more than five hex digits, so that a slow input means a fault.
bool ueberspringe(const std::string& text) {
    for (std::size_t i = 0, lauf = 0; i < text.size(); ++i) {
        const char c = text[i], d = i + 1 < text.size() ? text[i + 1] : ')';
        lauf = std::isxdigit(static_cast<unsigned char>(c)) ? lauf + 1 : 0;
        if (lauf > 5 || (c == '\\' && (d == '\n' || d == '\r'))) return true;
        if (c == '/' && std::string(" \t\r\n,)").find(d) == std::string::npos) return true;
    }
    return false;
}

// A directory of its own, emptied for every input; an empty procedure name reads stdin.
struct Ordner {
    const fs::path pfad =
        fs::temp_directory_path() / ("kiv_fuzz_" + std::to_string(::getpid()) + "_compiler");

    Ordner() {
        fs::create_directories(pfad);
        fs::current_path(pfad);
        if (!std::freopen("/dev/null", "r", stdin)) kivfuzz::verletzt("compiler", "no /dev/null for stdin");
    }
    ~Ordner() { fs::remove_all(pfad, fehler); }
    std::error_code fehler;
};

}  // namespace

int kivFuzzCompiler(const std::uint8_t* daten, std::size_t groesse) {
    using namespace kivfuzz;
    initUmgebung();
    static Ordner ordner;
    for (const auto& e : fs::directory_iterator(ordner.pfad, ordner.fehler))
        fs::remove_all(e.path(), ordner.fehler);
    const std::string text(reinterpret_cast<const char*>(daten), groesse);
    if (ueberspringe(text)) return 0;
    // Error control and limits of one input must not reach the next.
    FehlerListen::instanz().status.clear();
    FehlerListen::instanz().begrenzung.clear();
    setzeFehlerZurueck();

    std::ostream anzeige(&nullPuffer());
    auto programm = std::make_unique<KivProgramm>("kiv");  // the program's own set-up, without log and banner
    kdoAnzeigeStream = &anzeige;
    for (std::size_t anfang = 0, n = 0, ende; n < 32 && anfang < text.size(); ++n, anfang = ende) {
        ende = std::min(text.find('\n', anfang), text.size() - 1) + 1;
        std::string zeile = text.substr(anfang, ende - anfang);
        if (zeile.back() != '\n') zeile += '\n';
        const KdoStatus status = Compiler::ausfuehreZeile(String(zeile));
        if (status < KdoStatus::Kein || status > KdoStatus::Exit) verletzt("compiler", "status out of range");
        if (status == KdoStatus::Exit) break;
    }
    programm.reset();
    if (anzahlListen != 0) verletzt("compiler", "lists left alive after the tree was taken down");
    Fehler::holeStatus();
    return 0;
}
KIV_FUZZ_EINSTIEG(kivFuzzCompiler)
