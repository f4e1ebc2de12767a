// Tab stops: positions beyond the last stop, padding, a stop already passed
// (with and without line wrap), the at-least-one rule, and rulers.
#include "foundation/Tabulator.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(Tabulator, StopPositions) {
    Tabulator neu;
    EXPECT_EQ(neu.stopPosition(-1), 0);
    EXPECT_EQ(neu.stopPosition(0), 1);
    EXPECT_EQ(neu.stopPosition(3), 4);

    Tabulator tab;
    tab.setzeStops(10, 3, 10, 25, 45);
    EXPECT_EQ(tab.stopPosition(2), 45);
    EXPECT_EQ(tab.stopPosition(3), 55);
    EXPECT_EQ(tab.stopPosition(5), 75);

    tab.setzeStops(17, {26, 40, 53, 70, 84});
    EXPECT_EQ(tab.stopPosition(4), 84);
    EXPECT_EQ(tab.stopPosition(5), 101);
    EXPECT_EQ(tab.stopPosition(INT32_MAX), INT32_MAX);  // no overflow
}

TEST(Tabulator, PadsToEachStopCountingFromTheLineStart) {
    std::ostringstream s;
    s << "vorher\n";
    Tabulator tab;
    tab.setzeStops(10, 3, 10, 25, 45);
    tab.beginneZeile(s);
    s << "name" << tab << "typ" << tab << "x";
    tab.zeilenEnde(s);
    s << "ab" << tab << "c";
    EXPECT_EQ(s.str(),
              "vorher\n"
              "name      typ            x\n"
              "ab        c");
    EXPECT_EQ(tab.index(), 0);
}

TEST(Tabulator, PassedStopWritesNothingOrWrapsToIt) {
    Tabulator tab;
    tab.setzeStops(10, 2, 5, 8);
    std::ostringstream ohne;
    tab.beginneZeile(ohne);
    ohne << "langer Text" << tab << "|";
    EXPECT_EQ(ohne.str(), "langer Text|");

    EXPECT_EQ(tab.setzeUmbruch(1), 0);
    std::ostringstream mit;
    tab.beginneZeile(mit);
    mit << "langer Text" << tab << "a" << tab << "b";
    // The wrapped line keeps the stop count, so the next stop is the second.
    EXPECT_EQ(mit.str(), "langer Text\n     a  b");
    EXPECT_EQ(tab.setzeUmbruch(0), 1);
}

TEST(Tabulator, AtLeastOneFillCharacterAfterText) {
    Tabulator tab;
    tab.setzeStops(10, 1, 4);
    EXPECT_EQ(tab.setzeMindestensEins(1), 0);
    std::ostringstream s;
    tab.beginneZeile(s);
    s << "abcd" << tab << "x";
    EXPECT_EQ(s.str(), "abcd x");

    std::ostringstream leer;
    tab.beginneZeile(leer);
    leer << tab << "x";  // at column 0 nothing is forced
    EXPECT_EQ(leer.str(), "    x");

    tab.setzeFuellzeichen('.');
    std::ostringstream punkte;
    tab.beginneZeile(punkte);
    punkte << "a" << tab << "b";
    EXPECT_EQ(punkte.str(), "a...b");
}

TEST(Tabulator, RulerToAStop) {
    Tabulator tab;
    tab.setzeStops(10, 3, 10, 25, 45);
    std::ostringstream s;
    tab.strich(s, 1);
    EXPECT_EQ(s.str(), std::string(25, '-'));
    std::ostringstream nichts;
    tab.strich(nichts, -1);
    EXPECT_EQ(nichts.str(), "");
}
