#include "foundation/Tabulator.h"

#include <gtest/gtest.h>

#include <sstream>

// Help texts and listings show the common layouts end to end.
TEST(Tabulator, StopPositionsBeyondTheLast) {
    Tabulator tab;
    EXPECT_EQ(tab.stopPosition(-1), 0);
    EXPECT_EQ(tab.stopPosition(3), 4);
    tab.setzeStops(17, {26, 40, 53, 70, 84});
    EXPECT_EQ(tab.stopPosition(5), 101);
    EXPECT_EQ(tab.stopPosition(INT32_MAX), INT32_MAX);  // no overflow
}

TEST(Tabulator, PaddingCountsFromTheLineStart) {
    const auto zeile = [](Tabulator& tab, const char* text) {
        std::ostringstream s;
        s << "vorher\n";
        tab.beginneZeile(s);
        s << text << tab << "a" << tab << "b";
        return s.str().substr(7);
    };
    Tabulator tab;
    tab.setzeStops(10, 2, 5, 8);
    EXPECT_EQ(zeile(tab, "xy"), "xy   a  b");
    EXPECT_EQ(zeile(tab, "langer Text"), "langer Textab");  // a passed stop writes nothing
    EXPECT_EQ(tab.setzeUmbruch(1), 0);
    // or wraps to it, keeping the stop count
    EXPECT_EQ(zeile(tab, "langer Text"), "langer Text\n     a  b");
    tab.setzeUmbruch(0);
    tab.setzeStops(10, 2, 4, 8);
    EXPECT_EQ(tab.setzeMindestensEins(1), 0);
    EXPECT_EQ(zeile(tab, "abcd"), "abcd a  b");
    EXPECT_EQ(zeile(tab, ""), "    a   b");  // at column 0 nothing is forced
    tab.setzeFuellzeichen('.');
    EXPECT_EQ(zeile(tab, "a"), "a...a...b");
}
