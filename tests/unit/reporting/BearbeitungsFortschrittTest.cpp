// Progress counter and console display: marks per step, nesting marks,
// relative mode with its ruler and rebuilt lines, the double start report.
#include "reporting/BearbeitungsFortschritt.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "AufnahmeTest.h"

namespace {

class FortschrittTest : public AufnahmeTest {
protected:
    void TearDown() override {
        EXPECT_EQ(BearbeitungsFortschritt::aktiveFortschritte, 0);
        AufnahmeTest::TearDown();
    }
};

TEST_F(FortschrittTest, MarksPerStep) {
    const struct {
        int schritt;
        std::vector<int> schritte;  // += per call, -= when negative
        std::string erwartet;
    } faelle[] = {
        {100, std::vector<int>(250, 1), "L\n**\n"},  // the third needs 300
        {100, std::vector<int>(300, 1), "L\n***\n"},
        {100, {1000}, "L\n**********\n"},  // a jump shows all it passed
        {100, {99}, "L\n\n"},
        {100, {150, -100, 100}, "L\n*\n"},  // taken back, not passed again
        {100, {150, -100, 100, 50}, "L\n**\n"},
        {0, {1000}, "L\n\n"},  // no step: no marks, no hang
        {-5, {1000}, "L\n\n"},
    };
    for (const auto& f : faelle) {
        cout.str("");
        {
            BearbeitungsFortschritt fortschritt(f.schritt, "L");
            for (int n : f.schritte) n >= 0 ? fortschritt += n : fortschritt -= -n;
        }
        EXPECT_EQ(cout.str(), f.erwartet) << "schritt " << f.schritt;
    }
}

TEST_F(FortschrittTest, NestedOperationsUseTheirOwnMarks) {
    {
        BearbeitungsFortschritt a(1, "A");
        a += 1;
        {
            BearbeitungsFortschritt b(1, "B");
            b += 1;
            BearbeitungsFortschritt c(1, "C");
            c += 1;
            BearbeitungsFortschritt d(1, "D");
            d += 1;
            EXPECT_EQ(BearbeitungsFortschritt::aktiveFortschritte, 4);
        }
        a += 1;
    }
    EXPECT_EQ(cout.str(), "A\n*B\n+C\n#D\n*\n\n\n*\n");
}

// Records what a progress counter asks of its display.
std::vector<std::string> aufrufe;
struct ProtokollAnzeige : BearbeitungsAnzeige {
    void starteAbs(const String& t) override { aufrufe.push_back("abs " + t.str()); }
    void starteRel(dataInteger, const String& t) override { aufrufe.push_back("rel " + t.str()); }
    void weiter(dataInteger w) override { aufrufe.push_back(std::to_string(w)); }
    void beende() override { aufrufe.push_back("ende"); }
};
std::unique_ptr<BearbeitungsAnzeige> protokollFabrik() { return std::make_unique<ProtokollAnzeige>(); }
std::unique_ptr<BearbeitungsAnzeige> keineAnzeige() { return nullptr; }

TEST_F(FortschrittTest, FactoryAndUnitCountsOfMarks) {
    aufrufe.clear();
    {
        BearbeitungsFortschritt f(100, "X", &protokollFabrik);
        f += 250;
        f += 60;
    }
    EXPECT_EQ(aufrufe, (std::vector<std::string>{"abs X", "100", "200", "300"}));
    // The default factory can be replaced for the whole process.
    aufrufe.clear();
    const BearbeitungsAnzeigeFabrik alt = BearbeitungsFortschritt::standardFabrik;
    BearbeitungsFortschritt::standardFabrik = &protokollFabrik;
    {
        BearbeitungsFortschritt f(10, "Y");
        f += 10;
    }
    BearbeitungsFortschritt::standardFabrik = alt;
    EXPECT_EQ(aufrufe, (std::vector<std::string>{"abs Y", "10"}));
    // A factory without a display leaves the counter working silently.
    {
        BearbeitungsFortschritt f(1, "Z", &keineAnzeige);
        f += 5;
    }
    EXPECT_EQ(cout.str(), "");
}

TEST_F(FortschrittTest, SecondStartIsReportedAndAnIdleDisplayShowsNoMarks) {
    std::ostringstream o, e;
    {
        BearbeitungsAnzeigeCout anzeige('+', o, e);
        anzeige.weiter(1);
        anzeige.starteAbs("Lese Bytes");
        anzeige.weiter(1);
        anzeige.starteAbs("Nochmal");
        anzeige.starteRel(10, "Relativ");
        anzeige.weiter(2);
        EXPECT_EQ(anzeige.liefereModus(), 2);
        anzeige.beende();
        anzeige.weiter(1);
        EXPECT_EQ(anzeige.liefereModus(), 0);
    }  // and the line is ended once more
    EXPECT_EQ(o.str(), "Lese Bytes\n++\n\n");
    EXPECT_EQ(meldungen,
              (std::vector<std::string>{"BEFO-ISINIT|BearbeitungsAnzeigeCout::starteAbs|Nochmal|I",
                                        "BEFO-ISINIT|BearbeitungsAnzeigeCout::starteRel|Relativ|I"}));
}

TEST_F(FortschrittTest, RelativeRulers) {
    const std::pair<int, std::string> faelle[] = {
        {10, "R\n!........!\n"},
        {25, "R\n!..!\n"},
        {50, "R\n!!\n"},
        {100, "R\n!!\n"},
        {0, "R\n!" + std::string(98, '.') + "!\n"},  // a step of 0 counts as 1
    };
    for (const auto& [schritt, erwartet] : faelle) {
        std::ostringstream o, e;
        BearbeitungsAnzeigeCout anzeige('*', o, e);
        anzeige.starteRel(schritt, "R");
        EXPECT_EQ(o.str(), erwartet) << schritt;
    }
}

TEST_F(FortschrittTest, RelativeLineIsRebuiltAfterForeignOutput) {
    std::ostringstream o, e;
    std::streambuf* const oPuffer = o.rdbuf();
    std::streambuf* const ePuffer = e.rdbuf();
    {
        BearbeitungsAnzeigeCout anzeige('*', o, e);
        anzeige.starteRel(10, "Rel");
        anzeige.weiter(10);
        anzeige.weiter(20);
        e << "Meldung\n";  // a message in between
        anzeige.weiter(30);
        anzeige.weiter(40);
        o << "x";  // other output on the same stream
        anzeige.weiter(50);
        anzeige.beende();
        // The streams write through their own buffers again.
        EXPECT_EQ(o.rdbuf(), oPuffer);
        EXPECT_EQ(e.rdbuf(), ePuffer);
    }
    EXPECT_EQ(o.str(),
              "Rel\n!........!\n**..*"
              "*x....*\n\n");
    EXPECT_EQ(e.str(), "Meldung\n");

    // One stream for both: the error counter wraps the output counter.
    std::ostringstream beide;
    std::streambuf* const puffer = beide.rdbuf();
    {
        BearbeitungsAnzeigeCout anzeige('#', beide, beide);
        anzeige.starteRel(20, "Ein Strom");
        anzeige.weiter(20);
        anzeige.weiter(40);
    }
    EXPECT_EQ(beide.rdbuf(), puffer);
    EXPECT_EQ(beide.str(), "Ein Strom\n!...!\n##\n");
}

}  // namespace
