#include <gtest/gtest.h>

#include <string>

#include "support/Meldungsaufnahme.h"

namespace {

class FehlerTest : public ::testing::Test {
protected:
    Meldungsaufnahme auf;
};

TEST_F(FehlerTest, BoxShapesOffTheCommonPath) {
    const std::string r = "+---------------------------------------------------\n";
    Fehler("X", "f", "d", 'D');  // debug stays quiet
    EXPECT_EQ(auf.konsole, "");
    // a newline only in front does not start continuation lines
    Fehler("X", "f", "\nalone", 'E');
    EXPECT_EQ(auf.konsole, r + "| %KIV-E-X\n|   \nalone \n" + r);
    auf.leere();
    Fehler::zusatzZeile = [] { return String("a.hex: Zeile 3"); };
    Fehler("X", "f", "one\ntwo", 'I');
    EXPECT_EQ(auf.konsole, r + "| %KIV-I-X\n|   a.hex: Zeile 3\n|   one\n|   two \n" + r);
}

// An unknown level only draws the internal warning, in two detail forms.
TEST_F(FehlerTest, UnknownLevelsDrawTheInternalWarning) {
    Fehler("Y", "f", "d", 'Q');
    EXPECT_EQ(auf.konsole.find("Y"), std::string::npos);
    EXPECT_EQ(Fehler::anzahlW, 1);
    auf.leere();
    Fehler("X", "f", "", 'F');  // F is unknown to the per-label counters
    EXPECT_NE(auf.konsole.find("| %KIV-W-FHL-INT-LEVEL\n|   F 46 \n"), std::string::npos) << auf.konsole;
    auf.leere();
    Fehler::begrenzeAusgabe("Z", 1, 'Q', 0);
    EXPECT_NE(auf.konsole.find("|   Q 51 \n"), std::string::npos) << auf.konsole;
    Fehler::hebeBegrenzungAuf("Z");
}

TEST_F(FehlerTest, PendingStatusKeepsTheHighestUntilFetched) {
    Fehler::setzeStatus("E", 1);
    Fehler::anstehenderStatus = 2;
    Fehler("X", "f", "", 'E');
    EXPECT_EQ(Fehler::holeStatus(), 2);
    Fehler("X", "f", "", 'E');
    EXPECT_EQ(Fehler::holeStatus(), 1);
    Fehler::setzeStatus("E", 0);

    // A label status raises even when output is limited.
    auf.leere();
    Fehler::setzeStatus("MY-LABEL", 3);
    Fehler::begrenzeAusgabe("MY-LABEL", 0, 'E', 1);
    Fehler("MY-LABEL", "f", "", 'E');
    EXPECT_EQ(auf.konsole, "");
    EXPECT_EQ(Fehler::anzahlE, 3);
    EXPECT_EQ(Fehler::holeStatus(), 3);
    Fehler::setzeStatus("MY-LABEL", 0);
    Fehler::hebeBegrenzungAuf("MY-LABEL");
}

TEST_F(FehlerTest, LimitPassesThenDivertsAtItsLevelAndAbove) {
    Fehler::begrenzeAusgabe("CAP", 2, 'E', 2);
    for (char l : {'E', 'E', 'E', 'W', 'S'}) Fehler("CAP", "f", "x", l);
    std::string arten;
    for (const Meldung& m : auf.mit("CAP")) arten += static_cast<char>('0' + m.art);
    EXPECT_EQ(arten, "00222");
    EXPECT_EQ(Fehler::anzahlE, 3);
    Fehler::hebeBegrenzungAuf("CAP");

    // Per limit level, which of the message levels E, W, I, S it diverts.
    const std::pair<char, const char*> regeln[] = {
        {'E', "EWIS"}, {'W', "-WIS"}, {'I', "--IS"}, {'S', "---S"}};
    for (const auto& [grenze, genommen] : regeln) {
        for (int i = 0; i < 4; ++i) {
            auf.leere();
            Fehler::begrenzeAusgabe("CAP", 0, grenze, 1);
            Fehler("CAP", "f", "", "EWIS"[i]);
            EXPECT_EQ(auf.konsole.empty(), genommen[i] != '-') << grenze << " limit, message "
                                                               << "EWIS"[i];
            Fehler::hebeBegrenzungAuf("CAP");
        }
    }
}

}  // namespace
