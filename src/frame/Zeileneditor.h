// The prompt of a person at a terminal: line editing, history, Ctrl-C and
// completion, through the BSD editline library.
//
// Only built when the library is found; only used when standard input and
// output are both a terminal, so procedures, pipes and the log never meet
// it. The Compiler's batch loop reads the typed lines from `strom()`, one
// physical line per edit, each ending in a line feed, exactly as it would
// read them from standard input.
//
// Keys beyond the library's emacs defaults: Tab completes (twice lists the
// choices), Ctrl-C drops the line being typed, Ctrl-D on an empty line is
// the end of input, Ctrl-R searches the history, Ctrl-U cuts to the start.
// The history lives in $XDG_STATE_HOME/kiv/history (default
// ~/.local/state/kiv/history), at most `HISTORIE_GROESSE` lines; a line
// typed with a leading blank stays out of it.
#pragma once

#include <istream>
#include <memory>
#include <streambuf>
#include <string>

#include "language/Compiler.h"

class Zeileneditor : public PromptEingabe, private std::streambuf {
public:
    static constexpr int HISTORIE_GROESSE = 1000;

    // `utf8`: the terminal speaks UTF-8 and the program's bytes are
    // converted both ways.
    explicit Zeileneditor(bool utf8);
    Zeileneditor(const Zeileneditor&) = delete;
    Zeileneditor& operator=(const Zeileneditor&) = delete;
    ~Zeileneditor() override;

    void zeigePrompt(const std::string& prompt) override;
    std::istream& strom() override { return strom_; }

    // Where the history is kept, from the environment; empty if nowhere.
    static std::string historienDatei();

private:
    struct Bibliothek;
    int_type underflow() override;
    void merke(const std::string& zeile);
    unsigned char vervollstaendigeAmCursor();

    bool utf8_;
    std::unique_ptr<Bibliothek> el_;
    std::string prompt_;      // as the terminal shows it
    std::string zeile_;       // the line being handed out, program bytes
    std::string letzterTab_;  // the line at a Tab that could not go on
    std::string datei_;
    bool abgebrochen_ = false;
    bool gewarnt_ = false;
    std::istream strom_;
};
