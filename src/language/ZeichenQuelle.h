// ZeichenQuelle: the character source of the scanners.
//
// Reads bytes from an input stream and keeps line, column and the offset of
// the line's first byte, so that a syntax error can show the offending line
// with a marker under the column. A carriage return followed by a newline is
// one newline; a lone carriage return also ends a line but is handed on as
// itself. After a line end the position still names the line just ended, so
// that a line-end token is located on its own line.
#pragma once

#include <iosfwd>

#include "foundation/String.h"
#include "foundation/Typen.h"

struct QuellPosition {
    dataInteger zeile = 0;
    dataInteger spalte = 0;  // 1 for the first character of a line
    dataInteger offset = 0;  // of the line's first byte, counted from `oeffne`
};

class ZeichenQuelle {
public:
    ZeichenQuelle() = default;
    ZeichenQuelle(const ZeichenQuelle&) = delete;
    ZeichenQuelle& operator=(const ZeichenQuelle&) = delete;
    virtual ~ZeichenQuelle() = default;

    // Reads from `strom` (not owned, must outlive the reading) from its
    // current place; the first line is numbered `ersteZeile`.
    virtual void oeffne(std::istream& strom, dataInteger ersteZeile);
    // The next byte as 0..255, or -1 at the end of input and ever after.
    virtual int naechstes();
    // Position of the byte last returned.
    virtual QuellPosition position() const;
    // The text of the position's line, tabs as blanks, without its line end.
    // Empty when the stream can not seek.
    virtual void zeilenText(const QuellPosition& position, StringPuffer& puffer);
    // Column minus one hyphens, then "^".
    virtual void marke(const QuellPosition& position, StringPuffer& puffer) const;

    // True once the input is exhausted (a byte 255 read from it is not).
    bool amEnde() const { return ende_; }

private:
    std::istream* strom_ = nullptr;
    long long basis_ = -1;     // stream position at `oeffne`, -1 if unknown
    dataInteger gelesen_ = 0;  // bytes taken since `oeffne`
    QuellPosition aktuell_;    // line, column and line offset now
    QuellPosition vorher_;     // the same for the line before
    bool zeilenEnde_ = false;  // the last byte ended a line
    bool ende_ = true;
};
