#include "frame/Programm.h"

#include <unistd.h>
#include <csignal>

#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "commands/KivEprom.h"
#include "commands/KivObjekt.h"
#include "foundation/DateiName.h"
#include "foundation/DynArray.h"
#include "foundation/Liste.h"
#include "foundation/Tabulator.h"
#include "frame/TerminalSitzung.h"
#include "grammar/Uebersetzung.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

std::ostream* logStrom = nullptr;

const char* kivVersion() { return "V1.11-2"; }

namespace {

// The reporter's output routine: kind 1 shows nothing, kind 2 goes to the
// log only, anything else to the error console and the log.
void ausgabeRoutine(Fehler& fehler, int art) {
    if (art == 1) return;
    if (art != 2) fehler.ausgabe(std::cerr);
    if (logStrom) fehler.ausgabe(*logStrom);
}

// The program's own file: the kernel knows it even when the program was
// found through PATH, where the first command-line word is a bare name.
std::string eigeneDatei(const char* argv0) {
    char pfad[4096];
    const ssize_t n = readlink("/proc/self/exe", pfad, sizeof pfad - 1);
    if (n > 0) return std::string(pfad, static_cast<std::size_t>(n));
    return argv0 ? argv0 : "";
}

void banner() {
    std::cout << std::endl;
    std::cout << "KIV++ Version " << kivVersion() << std::endl;
    std::cout << "----------------------------------- " << std::endl;
    std::cout << std::endl;
}

}  // namespace

KivProgramm::KivProgramm(const char* programm) {
    anzahlListen = 0;
    dokPosition = new Tabulator;
    dokPosition->setzeStops(10, {10, 25, 45});
    dokPosition->setzeUmbruch(1);
    kivWurzel = new KivObjekt("Kiv", "<Kiv>Kiv");
    laufzeit_.setzeBaum(
        std::make_unique<KdoBaum>(kivWurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
    kdoAnzeigeStream = &std::cout;
    programmDatei = String(programm ? programm : "");
    bauKivObjektListe();
    bauKivEpromListe();
    richteUebersetzungEin();
}

KivProgramm::~KivProgramm() {
    delete kivWurzel;
    kivWurzel = nullptr;
    delete kivObjektListe;
    kivObjektListe = nullptr;
    delete kivEpromListe;
    kivEpromListe = nullptr;
    laufzeit_.setzeBaum(nullptr);
    delete dokPosition;
    dokPosition = nullptr;
    if (anzahlListen != 0) Fehler("VOR-ANZOBJ", "main", "Liste: " + String(anzahlListen) + " Objekte. ", 'E');
}

namespace {

// The procedure phase: the command line decides what runs; gives the exit
// status.
int fuehreAus(int argc, char** argv) {
    const String x("-x"), b("-b");
    String datei;
    DynArray<String> parameter;
    int anzahl = 0;
    const bool mitProzedur = argc >= 3 && (x == argv[1] || b == argv[1]);
    if (mitProzedur) {
        datei = argv[2];
        for (int i = 3; i < argc; ++i) parameter[i - 3] = String(argv[i]);
        anzahl = argc - 3;
    } else if (argc >= 2) {
        // No quoting: a name with a blank or a comma reaches the command
        // language as it stands.
        std::string vorKommando = argc == 2 ? "oeffne(," + std::string(argv[1]) + ")\n"
                                            : "oeffne(" + std::string(argv[1]) + ", " + argv[2] + ")\n";
        Compiler::ausfuehreZeile(String(vorKommando));
    }

    // An `exit` keeps a "-x" run from its dialogue; so does the value of an
    // aborted line, should the error control ever hand that on.
    const KdoStatus status = Compiler::ausfuehreBatch(datei, &parameter, anzahl);
    const bool beendet = status == KdoStatus::Exit || static_cast<dataInteger>(status) ==
                                                          static_cast<dataInteger>(LaufStatus::Abgebrochen);
    if (!beendet && argc >= 2 && x == argv[1]) Compiler::ausfuehreBatch(String(), &parameter, 0);

    if (Compiler::liefereLaufStatus() == LaufStatus::Abgebrochen) return 1;
    return kivWurzel->pruefeGeaendert(1) == 1 ? 1 : 0;
}

}  // namespace

int kivMain(int argc, char** argv) {
    // A reader that goes away (`kiv ... | head`) must not end the program in
    // the middle of a save; the console output is simply lost.
    std::signal(SIGPIPE, SIG_IGN);

    // First: the banner and every message already see the terminal as it is.
    const TerminalSitzung terminal;
    // A log that fails to open loses its output silently.
    auto* log = new std::ofstream("kiv.log", std::ios::out | std::ios::trunc);
    logStrom = log;

    Fehler::init();
    Fehler::fehlerAusgabeRoutine = ausgabeRoutine;
    Fehler("KIV-STARTED", "main", kivVersion(), 'S');
    Fehler::fehlerPrefix = "%KIV-";

    int exitStatus;
    {
        KivProgramm kiv(eigeneDatei(argv[0]).c_str());
        banner();
        exitStatus = fuehreAus(argc, argv);
    }

    Fehler::anzeigeStatistik();
    log->close();
    return exitStatus;
}
