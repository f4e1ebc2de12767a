// The translation statements of the command language, `ausfuehreTrans` and
// `umsetze`, carried out with the engine mmparse. The compiler hands them
// here once `richteUebersetzungEin` has run (the program does so at start-up).
#pragma once

#include <string>

#include "foundation/String.h"
#include "foundation/Typen.h"

// Installs the translation statements in the compiler.
void richteUebersetzungEin();

// Reads a grammar file into `grammatik`, its lines joined; a bare name is
// looked for beside the program. 1, or 0 after the file wrapper's report.
int leseGrammatik(const String& name, std::string& grammatik);

// Reports a result of `mmparse` below 1 under its TRANS-... label, at level
// E, as the compiler's "Compiler::mmparseError". `text` is the subject line
// or null.
void meldeMmparseFehler(dataInteger code, const char* text, dataInteger position, dataInteger zeile);
