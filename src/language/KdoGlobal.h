// Process-wide objects of the command machinery that the program frame sets
// up at start-up: the tabulator of the command help and the stream that
// commands write their normal output to. Both start as null; the help text
// refuses to run without `dokPosition`.
#pragma once

#include <iosfwd>

class Tabulator;

extern Tabulator* dokPosition;
extern std::ostream* kdoAnzeigeStream;
