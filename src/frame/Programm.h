// Program entry: start-up, command run and close-down of the kiv process.
#pragma once

#include <iosfwd>

#include "language/KdoLaufzeit.h"

// The version shown in the banner and in the start message.
const char* kivVersion();

// Stream of "kiv.log"; null if it could not be allocated.
extern std::ostream* logStrom;

// The whole program; returns the exit status (0 or 1).
int kivMain(int argc, char** argv);

// The objects of one run: the language runtime with the object tree, the
// root object and the two command lists. `main` owns one; tests and fuzz
// targets make one to run commands on the real objects.
class KivProgramm {
public:
    // Builds them as the program does before its banner; `programm` is the
    // program's own path.
    explicit KivProgramm(const char* programm);
    // Destroys them in the program's order, with the list leak report.
    ~KivProgramm();
    KivProgramm(const KivProgramm&) = delete;
    KivProgramm& operator=(const KivProgramm&) = delete;

    KdoLaufzeit& laufzeit() { return laufzeit_; }

private:
    KdoLaufzeit laufzeit_;
};
