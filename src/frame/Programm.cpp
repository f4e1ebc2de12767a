#include "frame/Programm.h"

#include <fstream>
#include <iostream>

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

void banner() {
    std::cout << std::endl;
    std::cout << "KIV++ Version " << kivVersion() << std::endl;
    std::cout << "----------------------------------- " << std::endl;
    std::cout << std::endl;
}

}  // namespace

int kivMain(int argc, char** argv) {
    (void)argc;
    (void)argv;
    // A log that fails to open loses its output silently.
    auto* log = new std::ofstream("kiv.log", std::ios::out | std::ios::trunc);
    logStrom = log;

    Fehler::init();
    Fehler::fehlerAusgabeRoutine = ausgabeRoutine;
    Fehler("KIV-STARTED", "main", kivVersion(), 'S');
    Fehler::fehlerPrefix = "%KIV-";

    banner();

    int exitStatus = 0;

    Fehler::anzeigeStatistik();
    log->close();
    return exitStatus;
}
