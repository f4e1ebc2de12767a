// The one way out for programming errors and broken tables.
//
// Nothing a user types leads here: these are faults of the program itself
// (a violated precondition, a table that cannot be right), and the process
// cannot go on. They are kept away from the message reporter on purpose, so
// that a fault inside the reporter or the command machinery still gets out.
#pragma once

#include <iosfwd>

// Writes `text` (and a line end, unless told not to) to `strom`, flushes,
// and ends the process with status 1.
[[noreturn]] void brichAb(std::ostream& strom, const char* text, bool zeilenEnde = true);

// A failed assertion, in the shape of the C library's: "Assertion failed: "
// and the text (expression, and file and line where it names them) on the
// error console, then abort().
[[noreturn]] void zusicherungVerletzt(const char* text);
