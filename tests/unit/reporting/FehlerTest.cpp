// The message door: shapes of lines and boxes, counting, pending status and
// the per-label limits and statuses.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "AufnahmeTest.h"

namespace {

using FehlerTest = AufnahmeTest;

String kontext() { return "a.hex: Zeile 3"; }

}  // namespace

TEST_F(FehlerTest, LineAndBoxShapes) {
    const std::string r = "+---------------------------------------------------\n";
    const struct {
        const char* label;
        const char* detail;
        char level;
        bool zusatz;
        std::string erwartet;
    } faelle[] = {
        {"FEHLSTAT", "  Fehlerstatistik:", 'S', false, "%KIV-S-FEHLSTAT   Fehlerstatistik: \n"},
        {"CMD-NOSUCHCMD", "liess in KivObjekt", 'E', false,
         r + "| %KIV-E-CMD-NOSUCHCMD\n|   liess in KivObjekt \n" + r},
        {"X", "", 'W', false, r + "| %KIV-W-X\n" + r},  // an empty detail gives three lines
        {"X", "one\ntwo", 'I', false, r + "| %KIV-I-X\n|   one\n|   two \n" + r},
        // a newline only in front does not start continuation lines
        {"X", "\nalone", 'E', false, r + "| %KIV-E-X\n|   \nalone \n" + r},
        {"HEXFILE-FMT", "bad", 'E', true, r + "| %KIV-E-HEXFILE-FMT\n|   a.hex: Zeile 3\n|   bad \n" + r},
    };
    for (const auto& f : faelle) {
        leere();
        Fehler::zusatzZeile = f.zusatz ? kontext : nullptr;
        Fehler(f.label, "f", f.detail, f.level);
        EXPECT_EQ(konsole, f.erwartet) << f.detail;
    }
}

TEST_F(FehlerTest, DebugStaysQuietAndAnUnknownLevelOnlyDrawsTheInternalWarning) {
    Fehler("X", "f", "d", 'D');
    EXPECT_EQ(konsole, "");
    Fehler("Y", "f", "d", 'Q');
    EXPECT_EQ(konsole.find("Y"), std::string::npos);
    EXPECT_NE(konsole.find("W-FHL-INT-LEVEL"), std::string::npos);
    EXPECT_EQ(Fehler::anzahlW, 1);
    EXPECT_EQ(Fehler::anzahlE + Fehler::anzahlI + Fehler::anzahlS + Fehler::anzahlF, 0);
}

TEST_F(FehlerTest, PendingStatusKeepsTheHighestUntilFetched) {
    Fehler::setzeStatus("E", 1);
    Fehler::anstehenderStatus = 2;
    Fehler("X", "f", "", 'E');
    EXPECT_EQ(Fehler::holeStatus(), 2);
    EXPECT_EQ(Fehler::holeStatus(), 0);
    Fehler("X", "f", "", 'E');
    EXPECT_EQ(Fehler::holeStatus(), 1);
    Fehler::setzeStatus("E", 0);
}

TEST_F(FehlerTest, LabelStatusRaisesEvenWhenOutputIsLimited) {
    Fehler::setzeStatus("MY-LABEL", 3);
    Fehler::begrenzeAusgabe("MY-LABEL", 0, 'E', 1);
    Fehler("MY-LABEL", "f", "", 'E');
    EXPECT_EQ(konsole, "");
    EXPECT_EQ(Fehler::anzahlE, 1);
    EXPECT_EQ(Fehler::holeStatus(), 3);
    Fehler::setzeStatus("MY-LABEL", 0);
    Fehler("MY-LABEL", "f", "", 'E');
    EXPECT_EQ(Fehler::holeStatus(), 0);
    Fehler::hebeBegrenzungAuf("MY-LABEL");
}

TEST_F(FehlerTest, SingleLetterOtherThanALevelIsALabel) {
    Fehler::setzeStatus("Q", 2);
    EXPECT_EQ(Fehler::liefereLevelStatus('Q'), 0);
    Fehler("Q", "f", "", 'S');
    EXPECT_EQ(Fehler::holeStatus(), 2);
    Fehler::setzeStatus("Q", 0);
}

TEST_F(FehlerTest, LimitPassesThenDivertsAtItsLevelAndAbove) {
    Fehler::begrenzeAusgabe("CAP", 2, 'E', 2);
    for (char l : {'E', 'E', 'E', 'W', 'S'}) Fehler("CAP", "f", "x", l);
    // Two pass; from the third on, every level of the label goes to the log only.
    auto zaehle = [](const std::string& s, const std::string& m) {
        int n = 0;
        for (auto p = s.find(m); p != std::string::npos; p = s.find(m, p + 1)) ++n;
        return n;
    };
    EXPECT_EQ(zaehle(konsole, "CAP"), 2);
    EXPECT_EQ(zaehle(log, "CAP"), 5);
    EXPECT_EQ(Fehler::anzahlE, 3);
    Fehler::hebeBegrenzungAuf("CAP");
}

TEST_F(FehlerTest, ALimitTakesItsLevelAndTheLevelsBelowInTheOrderEWIS) {
    // Per limit level, which of the message levels E, W, I, S it diverts.
    const std::pair<char, const char*> regeln[] = {
        {'E', "EWIS"}, {'W', "-WIS"}, {'I', "--IS"}, {'S', "---S"}};
    for (const auto& [grenze, genommen] : regeln) {
        for (int i = 0; i < 4; ++i) {
            leere();
            Fehler::begrenzeAusgabe("CAP", 0, grenze, 1);
            Fehler("CAP", "f", "", "EWIS"[i]);
            EXPECT_EQ(konsole.empty(), genommen[i] != '-') << grenze << " limit, message "
                                                           << "EWIS"[i];
            Fehler::hebeBegrenzungAuf("CAP");
        }
    }
}

TEST_F(FehlerTest, InternalLevelWarningsKeepTheirTwoDetailForms) {
    Fehler("X", "f", "", 'F');  // F is unknown to the per-label counters
    EXPECT_NE(konsole.find("| %KIV-W-FHL-INT-LEVEL\n|   F 46 \n"), std::string::npos) << konsole;
    leere();
    Fehler::begrenzeAusgabe("Z", 1, 'Q', 0);
    EXPECT_NE(konsole.find("|   Q 51 \n"), std::string::npos) << konsole;
    Fehler::hebeBegrenzungAuf("Z");
}

TEST_F(FehlerTest, StatisticsShowEveryTotalButStatus) {
    Fehler("A", "f", "", 'E');
    Fehler("B", "f", "", 'W');
    Fehler::anzeigeStatistik();
    EXPECT_NE(konsole.find("%KIV-S-FEHLSTAT   Fehlerstatistik: \n%KIV-S-ANZFEHL-F  0 \n"
                           "%KIV-S-ANZFEHL-E  1 \n%KIV-S-ANZFEHL-W  1 \n%KIV-S-ANZFEHL-I  0 \n"),
              std::string::npos)
        << konsole;
    std::ostringstream o;
    Fehler::anzeigeLabelStatistik(o, "A");
    EXPECT_EQ(o.str(), "  1  %KIV--E-A\n");
}
