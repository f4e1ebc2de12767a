// Throughput of the image files and of the whole-image operations on a
// 16 MiB image. Prints MB/s per operation; it measures, it never fails.
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "foundation/Datei.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"
#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"
#include "support/StilleAnzeige.h"

namespace {

constexpr std::uint32_t groesse = 16u << 20;

void verwerfe(Fehler&, int) {}

// Wall time and the process's CPU time: on a busy machine the second tells
// more about the code.
void miss(const char* was, std::uint64_t bytes, const std::function<int()>& arbeit) {
    auto t0 = std::chrono::steady_clock::now();
    std::clock_t c0 = std::clock();
    int ergebnis = arbeit();
    double cpu = double(std::clock() - c0) / CLOCKS_PER_SEC;
    double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    std::printf("%-30s %8.1f MB/s  %7.3f s   cpu %8.1f MB/s  %7.3f s%s\n", was, bytes / 1e6 / s, s,
                bytes / 1e6 / cpu, cpu, ergebnis ? "" : "  (result 0)");
}

}  // namespace

int main() {
    Fehler::init();
    Fehler::fehlerAusgabeRoutine = verwerfe;
    BearbeitungsFortschritt::standardFabrik = stilleFabrik;

    std::vector<std::uint8_t> daten(groesse);
    std::mt19937 zufall(1);
    for (auto& b : daten) b = static_cast<std::uint8_t>(zufall());
    Eprom bild;
    bild.setzeBytes(0, daten.data(), groesse, 0);
    std::printf("image: %u bytes, 0x%X .. 0x%X\n", groesse, bild.liefereAnfAdr(), bild.liefereEndAdr());

    const char* bin = "image_bench.bin";
    const char* hex = "image_bench.hex";
    const char* mot = "image_bench.s";

    miss("binary save", groesse,
         [&] { return EpromDateiBinaer(bin).schreibe(bild, nullptr, nullptr, nullptr); });
    miss("binary load", groesse, [&] {
        Eprom e;
        return EpromDateiBinaer(bin).lies(e, nullptr, nullptr, nullptr);
    });
    miss("Intel hex save (16/line)", groesse,
         [&] { return EpromDateiIntel(hex, 16).schreibe(bild, nullptr, nullptr, nullptr); });
    miss("Intel hex load", groesse, [&] {
        Eprom e;
        return EpromDateiIntel(hex, 16).lies(e, nullptr, nullptr, nullptr);
    });
    miss("Motorola save (S3, 16/line)", groesse, [&] {
        EpromDateiMotorola m(mot, 16);
        m.modus = EpromDateiMotorola::S3S7;
        return m.schreibe(bild, nullptr, nullptr, nullptr);
    });
    miss("Motorola load", groesse, [&] {
        Eprom e;
        return EpromDateiMotorola(mot, 16).lies(e, nullptr, nullptr, nullptr);
    });
    miss("Intel hex load above 16 MiB", groesse, [&] {
        Eprom e;
        adrInteger start = 0x3000000, ext = 0;
        return EpromDateiIntel(hex, 16).lies(e, &start, nullptr, &ext);
    });
    miss("fill (fixed region)", groesse, [&] {
        Eprom e;
        e.definiereBereich(0, groesse - 1);
        return e.fuelle(0xFF, nullptr, nullptr) == groesse ? 1 : 0;
    });
    miss("region definition (split)", groesse, [&] {
        Eprom e(bild);
        e.definiereBereich(0x400000, 0x7FFFFF);
        return e.liefereAnzBereiche() == 3 ? 1 : 0;
    });
    miss("swap", groesse, [&] { return bild.swap(0, groesse - 1, nullptr); });
    miss("even/odd split", groesse, [&] {
        Eprom g, u;
        return bild.teileEvenOdd(g, u);
    });

    loescheDatei(bin);
    loescheDatei(hex);
    loescheDatei(mot);
    return 0;
}
