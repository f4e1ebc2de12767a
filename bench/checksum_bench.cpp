// Throughput of the checksum arithmetic on 16 MiB of random bytes, and of
// the CRC-32 against Python's zlib.crc32 on the same bytes in the same run.
// Prints figures only (processor time, best of five); the exit status is
// always 0.
//
// Goals: CRC-32 >= 1 GB/s; CRC-16 and four-lane sum >= 300 MB/s; standard sum
// with 1-, 2-, 4-byte addends >= 500 MB/s.
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include "checksums/ChecksumAlgorithmen.h"
#include "checksums/ChecksumCRC16.h"
#include "checksums/ChecksumCRC32.h"
#include "checksums/ChecksumSiemens.h"
#include "checksums/ChecksumStandard.h"
#include "image/Eprom.h"

namespace {

constexpr std::size_t groesse = 16u << 20;

// Best of a few runs, in seconds of processor time, so that other work on
// a shared machine does not count.
double miss(const std::function<std::uint32_t()>& lauf, std::uint32_t& ergebnis) {
    double best = 1e30;
    for (int i = 0; i < 5; ++i) {
        std::clock_t t0 = std::clock();
        ergebnis = lauf();
        std::clock_t t1 = std::clock();
        double s = static_cast<double>(t1 - t0) / CLOCKS_PER_SEC;
        if (s < best) best = s;
    }
    return best > 0 ? best : 1e-9;
}

void zeile(const char* name, double sekunden, std::uint32_t ergebnis, double ziel) {
    double mbs = static_cast<double>(groesse) / sekunden / 1e6;
    std::printf("%-28s %9.1f MB/s  (goal %6.0f MB/s%s)  result %08X\n", name, mbs, ziel,
                mbs >= ziel ? "" : ", BELOW", static_cast<unsigned>(ergebnis));
}

// Runs Python's zlib.crc32 over the file; gives its seconds, or a negative
// value if Python could not be run.
double pythonZlib(const std::string& datei, std::uint32_t& crc) {
    std::string kommando =
        "python3 -c \"import sys,time,zlib\n"
        "d=open(sys.argv[1],'rb').read()\n"
        "b=1e30\n"
        "for i in range(5):\n"
        "    t=time.process_time(); c=zlib.crc32(d); t=time.process_time()-t\n"
        "    b=min(b,t)\n"
        "print(c, b)\" '" +
        datei + "' 2>/dev/null";
    FILE* rohr = popen(kommando.c_str(), "r");
    if (!rohr) return -1;
    unsigned long long c = 0;
    double s = -1;
    int gelesen = std::fscanf(rohr, "%llu %lf", &c, &s);
    pclose(rohr);
    if (gelesen != 2) return -1;
    if (s <= 0) s = 1e-9;
    crc = static_cast<std::uint32_t>(c);
    return s;
}

}  // namespace

int main() {
    std::vector<std::uint8_t> daten(groesse);
    std::mt19937_64 zufall(1234);
    for (std::size_t i = 0; i < groesse; i += 8) {
        std::uint64_t w = zufall();
        for (std::size_t k = 0; k < 8; ++k) daten[i + k] = static_cast<std::uint8_t>(w >> (8 * k));
    }
    std::printf("checksum throughput on %zu MiB\n", groesse >> 20);

    std::uint32_t crc32 = 0, r = 0;
    double tCrc32 = miss(
        [&] {
            Crc32Rechner c;
            c.nimm(daten.data(), daten.size());
            return c.ergebnis();
        },
        crc32);
    zeile("CRC-32", tCrc32, crc32, 1000);

    double t = miss(
        [&] {
            Crc16Rechner c(0x1021);
            c.nimm(daten.data(), daten.size());
            return static_cast<std::uint32_t>(c.ergebnis());
        },
        r);
    zeile("CRC-16 0x1021", t, r, 300);

    t = miss(
        [&] {
            Crc16Rechner c(0xA001);
            c.nimm(daten.data(), daten.size());
            return static_cast<std::uint32_t>(c.ergebnis());
        },
        r);
    zeile("CRC-16 0xA001", t, r, 300);

    t = miss(
        [&] {
            SiemensSummierer s;
            s.nimm(0, daten.data(), daten.size());
            return s.ergebnis();
        },
        r);
    zeile("four-lane sum", t, r, 300);

    for (int n : {1, 2, 4})
        for (bool swap : {false, true}) {
            if (n == 1 && swap) continue;
            t = miss(
                [&] {
                    StandardSummierer s(n, swap);
                    s.nimm(daten.data(), daten.size());
                    return s.summe();
                },
                r);
            std::string name = "standard sum, " + std::to_string(n) + "-byte" + (swap ? " swap" : "");
            zeile(name.c_str(), t, r, 500);
        }

    // The same bytes as a free image, summed through the checksum classes.
    Eprom eprom;
    eprom.setzeBytes(0, daten.data(), static_cast<std::uint32_t>(daten.size()), 0);
    const adrInteger ende = static_cast<adrInteger>(groesse - 1);
    t = miss([&] { return ChecksumCRC32(0, ende, 0).liefereSumme(eprom); }, r);
    zeile("image: CRC-32", t, r, 1000);
    t = miss([&] { return ChecksumCRC16(0, ende, 0, 0x1021).liefereSumme(eprom); }, r);
    zeile("image: CRC-16 0x1021", t, r, 300);
    t = miss([&] { return ChecksumSiemens(0, ende).liefereSumme(eprom); }, r);
    zeile("image: four-lane sum", t, r, 300);
    for (std::uint16_t n : {1, 2, 4}) {
        t = miss([&] { return ChecksumStandard(0, 0, ende, nullptr, 0, n, 0, 4).liefereSumme(eprom); }, r);
        std::string name = "image: standard sum, " + std::to_string(n) + "-byte";
        zeile(name.c_str(), t, r, 500);
    }

    std::error_code fehler;
    auto pfad = std::filesystem::temp_directory_path(fehler) /
                ("checksum_bench_" + std::to_string(zufall()) + ".bin");
    {
        std::ofstream aus(pfad, std::ios::binary);
        aus.write(reinterpret_cast<const char*>(daten.data()), static_cast<std::streamsize>(daten.size()));
    }
    std::uint32_t pyCrc = 0;
    double tPy = pythonZlib(pfad.string(), pyCrc);
    std::filesystem::remove(pfad, fehler);
    if (tPy < 0) {
        std::printf("zlib.crc32 via python3: not available\n");
    } else {
        std::printf("%-28s %9.1f MB/s  result %08X (%s)\n", "python3 zlib.crc32",
                    static_cast<double>(groesse) / tPy / 1e6, static_cast<unsigned>(pyCrc),
                    pyCrc == crc32 ? "same" : "DIFFERENT");
        std::printf("CRC-32 time / zlib time:    %.2f\n", tCrc32 / tPy);
    }
    return 0;
}
