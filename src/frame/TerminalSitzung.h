// What the program does differently when a person sits at a terminal.
//
// For the life of the object: standard output and the error console get
// the UTF-8 filter when they are a terminal whose locale speaks UTF-8, and
// the prompt reads through the line editor when standard input and output
// are both a terminal (and the editor was built in). With no terminal
// nothing changes, byte for byte.
#pragma once

#include <memory>

class PromptEingabe;
class TerminalFilterAnschluss;

class TerminalSitzung {
public:
    TerminalSitzung();
    TerminalSitzung(const TerminalSitzung&) = delete;
    TerminalSitzung& operator=(const TerminalSitzung&) = delete;
    ~TerminalSitzung();

private:
    std::unique_ptr<TerminalFilterAnschluss> ausgabe_;
    std::unique_ptr<TerminalFilterAnschluss> fehler_;
    std::unique_ptr<PromptEingabe> editor_;
};
