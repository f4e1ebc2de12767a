// Program entry: start-up, command run and close-down of the kiv process.
#pragma once

#include <iosfwd>

// The version shown in the banner and in the start message.
const char* kivVersion();

// Stream of "kiv.log"; null if it could not be allocated.
extern std::ostream* logStrom;

// The whole program; returns the exit status (0 or 1).
int kivMain(int argc, char** argv);

// Builds the root object, the object tree and the two command lists, as the
// program does before its banner; `programm` is the program's own path.
// Tests and fuzz targets use the pair to run commands on the real objects.
void kivAufbau(const char* programm);
// Destroys them again, in the program's order, with the list leak report.
void kivAbbau();
