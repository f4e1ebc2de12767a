// The statements that translate a file by a grammar: `ausfuehreTrans` runs
// the generated lines as commands, `umsetze` writes them to a file. The
// parser already collects their names and parameters; the translation
// itself is not part of this build yet, so the statements do nothing.
#include "language/Compiler.h"

// anweisung -> transStart "(" quellDatei "," DAT "," grammatikDatei optParameter ")" ZEILENENDE
void Compiler::ausfuehreTransDat() {}

// anweisung -> transStart "(" quellDatei "," SYSOSP "," grammatikObjekt optParameter ")" ZEILENENDE
void Compiler::ausfuehreTransOSp() {}

// anweisung -> umsetzeStart "(" quellDatei "," DAT "," grammatikDatei "," zielDatei ")" ZEILENENDE
void Compiler::umsetzeDat() {}

// anweisung -> umsetzeStart "(" quellDatei "," SYSOSP "," objektAngabe "," zielDatei ")" ZEILENENDE
void Compiler::umsetzeOSp() {}
