// Tabulator: column stops for text written into a stream.
//
// Columns are counted from the stream position at which the current line
// began (`beginneZeile`), so the stream must answer position queries. Stops
// past the last given one follow each other at `schritt` columns.
//
//   Tabulator tab;  tab.setzeStops(10, 3, 10, 25, 45);
//   tab.beginneZeile(s);  s << name << tab << typ << tab << text;  tab.zeilenEnde(s);
#pragma once

#include <cstdint>
#include <initializer_list>
#include <iosfwd>

#include "foundation/DynArray.h"

class Tabulator {
public:
    Tabulator();

    // `anzahl` stops follow as further int arguments.
    void setzeStops(int schritt, int anzahl, ...);
    void setzeStops(int schritt, std::initializer_list<int> stops);
    // Return the old value.
    std::int32_t setzeUmbruch(std::int32_t wert);
    std::int32_t setzeMindestensEins(std::int32_t wert);
    void setzeFuellzeichen(char zeichen) { fuellzeichen_ = zeichen; }

    void beginneZeile(std::ostream& strom);
    // 0 for negative i; the i-th stop; beyond the last, step by step.
    std::int32_t stopPosition(std::int32_t i);
    // "-" repeated stopPosition(i) times.
    void strich(std::ostream& strom, std::int32_t i);
    // Line end, flush, new line start.
    void zeilenEnde(std::ostream& strom);

    // Advances to the next stop; used through operator<<.
    void schreibe(std::ostream& strom);

    std::int16_t anzahlStops() const { return anzahlStops_; }
    std::int16_t index() const { return index_; }

private:
    DynArray<std::uint16_t> stops_;
    std::int16_t anzahlStops_ = 1;
    std::int16_t schritt_ = 1;
    std::int32_t zeilenAnfang_ = 0;
    std::int16_t index_ = -1;
    char fuellzeichen_ = ' ';
    std::int32_t umbruch_ = 0;
    std::int32_t mindestensEins_ = 0;
};

std::ostream& operator<<(std::ostream& strom, Tabulator& tab);
