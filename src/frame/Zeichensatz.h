// The program's texts are Latin-1 bytes. A terminal whose locale speaks
// UTF-8 shows them only after conversion, and shows C1 control bytes
// (0x80-0x9F) as garbage or even takes them for control sequences.
//
// `TerminalFilter` sits between a standard stream and its buffer while that
// stream is such a terminal: 0xA0-0xFF leave as two UTF-8 bytes, 0x7F-0x9F
// as ".". Everything else passes unchanged, so the log, files and pipes keep
// their bytes. It keeps no buffer of its own: whoever writes into the
// stream's buffer (in single bytes or in large blocks) gets the same order.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>

// Whether the user's locale (LC_ALL, LC_CTYPE, LANG) names UTF-8. Asks the
// C library and puts LC_CTYPE back, so nothing else of the run changes.
bool localeIstUtf8();

// Latin-1 bytes as UTF-8; 0x7F-0x9F become "." when `steuerPunkte`.
std::string latin1ZuUtf8(const std::string& text, bool steuerPunkte = false);
// UTF-8 text as Latin-1: what lies beyond U+00FF, and broken sequences,
// become "?".
std::string utf8ZuLatin1(const std::string& text);

class TerminalFilter : public std::streambuf {
public:
    explicit TerminalFilter(std::streambuf* ziel) : ziel_(ziel) {}
    std::streambuf* ziel() const { return ziel_; }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* s, std::streamsize n) override;
    int sync() override;

private:
    std::streambuf* ziel_;
};

// Installs a TerminalFilter on `strom` for its lifetime, and takes it away
// again (flushed) at the end.
class TerminalFilterAnschluss {
public:
    explicit TerminalFilterAnschluss(std::ostream& strom);
    TerminalFilterAnschluss(const TerminalFilterAnschluss&) = delete;
    TerminalFilterAnschluss& operator=(const TerminalFilterAnschluss&) = delete;
    ~TerminalFilterAnschluss();

private:
    std::ostream& strom_;
    TerminalFilter filter_;
};
