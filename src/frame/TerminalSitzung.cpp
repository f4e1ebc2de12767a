#include "frame/TerminalSitzung.h"

#include <unistd.h>

#include <iostream>

#include "frame/Zeichensatz.h"
#include "language/Compiler.h"
#ifdef KIV_LIBEDIT
#include "frame/Zeileneditor.h"
#endif

TerminalSitzung::TerminalSitzung() {
    const bool ausTerminal = isatty(STDOUT_FILENO) == 1;
    const bool fehlerTerminal = isatty(STDERR_FILENO) == 1;
    if (!ausTerminal && !fehlerTerminal) return;
    const bool utf8 = localeIstUtf8();
    if (utf8 && ausTerminal) ausgabe_ = std::make_unique<TerminalFilterAnschluss>(std::cout);
    if (utf8 && fehlerTerminal) fehler_ = std::make_unique<TerminalFilterAnschluss>(std::cerr);
#ifdef KIV_LIBEDIT
    if (ausTerminal && isatty(STDIN_FILENO) == 1) {
        editor_ = std::make_unique<Zeileneditor>(utf8);
        Compiler::promptEingabe = editor_.get();
    }
#endif
}

TerminalSitzung::~TerminalSitzung() {
    if (Compiler::promptEingabe == editor_.get()) Compiler::promptEingabe = nullptr;
}
