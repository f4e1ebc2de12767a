// Program entry: start-up, command run and close-down of the kiv process.
#pragma once

#include <iosfwd>

// The version shown in the banner and in the start message.
const char* kivVersion();

// Stream of "kiv.log"; null if it could not be allocated.
extern std::ostream* logStrom;

// The whole program; returns the exit status (0 or 1).
int kivMain(int argc, char** argv);
