// The grammar commands as a procedure uses them: `umsetze` of a generated
// file of patch lines, and `ausfuehreTrans` of a file whose lines become
// commands of a small command object. Each runs at two sizes, so that the
// time per byte or per line shows whether the work grows linearly.
//
//   bench_grammar_bench [megabytes] [lines]     (defaults 10 and 100000)
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>

#include "language/Compiler.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

namespace {

// "address=value" lines into commands; the commit per line keeps the
// engine's memory small however long the file is.
const char* const GRAMMATIK =
    "<zeile>*\n"
    "#<zeile>=!<_ws><adr>.{a}<_ws>=<_ws><adr>.{w}<_ws>\\n%setze\\({a}, /, {w}\\)\\n\n"
    "#<adr>=[0-9a-fA-F]+\n"
    "#<_ws>=[ \\t]*\n";
// One line at a time, for ausfuehreTrans.
const char* const ZEILEN_GRAMMATIK = "[0-9a-fA-F]+.{a}=[0-9a-fA-F]+.{w}%setze\\({a}, /, {w}\\)\n";

void schreibe(const char* name, const std::string& text) {
    std::FILE* f = std::fopen(name, "wb");
    if (!f) return;
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
}

std::string patchZeilen(std::size_t bytes, std::size_t zeilen) {
    std::string s;
    char zeile[32];
    unsigned x = 12345;
    for (std::size_t i = 0; s.size() < bytes && i < zeilen; ++i) {
        x = x * 1103515245u + 12345u;
        std::snprintf(zeile, sizeof zeile, "%x=%x\n", (x >> 8) & 0xfffff, (x >> 3) & 0xff);
        s += zeile;
    }
    return s;
}

// Processor time, so that a busy machine does not distort the figures.
double sekunden(std::clock_t seit) { return static_cast<double>(std::clock() - seit) / CLOCKS_PER_SEC; }

// Messages are counted, not shown; the first error of a run is kept.
long long meldungen = 0;
std::string ersterFehler;
void zaehle(Fehler& f, int) {
    ++meldungen;
    if (ersterFehler.empty() && f.liefereLevel() != 'S')
        ersterFehler = f.liefereLabel().str() + " " + f.liefereDetail().str();
}

long long summe = 0;
int kdoSetze(KdoObjekt&, KdoKommando& k) {
    summe += k[0].liefereArgWertIntHex() + k[2].liefereArgWertIntHex();
    return 1;
}

class BenchObjekt : public KdoObjekt {
public:
    explicit BenchObjekt(KdoListe* liste) : KdoObjekt("B"), liste_(liste) {}
    KdoListe* liefereKdoListe() override { return liste_; }
    const String& liefereKdoOTyp() const override { return typ_; }

private:
    String typ_{"Bench"};
    KdoListe* liste_;
};

void umsetze(std::size_t bytes) {
    schreibe("gb_in.txt", patchZeilen(bytes, static_cast<std::size_t>(-1)));
    const std::clock_t start = std::clock();
    Compiler::ausfuehreZeile("umsetze(gb_in.txt, DAT, ./gb_gram.txt, gb_out.txt)\n");
    const double t = sekunden(start);
    std::printf("umsetze        %9zu bytes  %7.3f s  %7.2f ns/byte\n", bytes, t,
                t * 1e9 / static_cast<double>(bytes));
}

void ausfuehreTrans(std::size_t zeilen) {
    schreibe("gb_in.txt", patchZeilen(static_cast<std::size_t>(-1), zeilen));
    const std::clock_t start = std::clock();
    Compiler::ausfuehreZeile("ausfuehreTrans(\"gb_in.txt\", DAT, ./gb_zeile.txt)\n");
    const double t = sekunden(start);
    std::printf("ausfuehreTrans %9zu lines  %7.3f s  %7.2f us/line\n", zeilen, t,
                t * 1e6 / static_cast<double>(zeilen));
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t mb = argc > 1 ? static_cast<std::size_t>(std::atoi(argv[1])) : 10;
    std::size_t zeilen = argc > 2 ? static_cast<std::size_t>(std::atoi(argv[2])) : 100000;
    if (mb == 0) mb = 10;
    if (zeilen == 0) zeilen = 100000;
    Fehler::fehlerAusgabeRoutine = &zaehle;

    KdoListe liste{"Bench"};
    liste.fuegeEin(new KdoKommando(
        "setze", "IntegerHex startAdresse  BoolIntegerHex endAdresse  IntegerHex hexWert", kdoSetze));
    liste.definiere(AnwKommando("setze(0, /, 0)"));
    BenchObjekt wurzel(&liste);
    wurzel.setzeVollenNamen("<Bench>B");
    KdoLaufzeit laufzeit;
    laufzeit.setzeBaum(
        std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));

    schreibe("gb_gram.txt", GRAMMATIK);
    schreibe("gb_zeile.txt", ZEILEN_GRAMMATIK);
    umsetze(mb * 500 * 1000);
    umsetze(mb * 1000 * 1000);
    ausfuehreTrans(zeilen / 2);
    ausfuehreTrans(zeilen);
    std::printf("(checksum %lld, %lld messages%s%s)\n", summe, meldungen,
                ersterFehler.empty() ? "" : ", first error: ", ersterFehler.c_str());

    for (const char* name : {"gb_in.txt", "gb_out.txt", "gb_gram.txt", "gb_zeile.txt"}) std::remove(name);
    return 0;
}
