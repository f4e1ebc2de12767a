// Progress counter and console display: marks per step, nesting marks,
// relative mode with its ruler and rebuilt lines, the double start report.
#include "reporting/BearbeitungsFortschritt.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "reporting/Fehler.h"

namespace {

struct Meldung {
    std::string label, funktion, detail;
    char level;
};
std::vector<Meldung> meldungen;

void fange(Fehler& f, int) {
    meldungen.push_back({f.liefereLabel().str(), f.liefereFunktion().str(),
                         f.liefereDetail().str(), f.liefereLevel()});
}

// Catches standard output and messages for the duration of one test.
class FortschrittTest : public ::testing::Test {
protected:
    void SetUp() override {
        alteRoutine = Fehler::fehlerAusgabeRoutine;
        Fehler::fehlerAusgabeRoutine = &fange;
        meldungen.clear();
        alterPuffer = std::cout.rdbuf(aus.rdbuf());
    }
    void TearDown() override {
        std::cout.rdbuf(alterPuffer);
        Fehler::fehlerAusgabeRoutine = alteRoutine;
        EXPECT_EQ(BearbeitungsFortschritt::aktiveFortschritte, 0);
    }
    std::ostringstream aus;
    std::streambuf* alterPuffer = nullptr;
    Fehler::AusgabeRoutine alteRoutine = nullptr;
};

TEST_F(FortschrittTest, MarksPerStep) {
    struct Fall {
        int schritt;
        std::vector<int> schritte;   // += per call
        std::string erwartet;
    };
    const Fall faelle[] = {
        {100, std::vector<int>(250, 1), "L\n**\n"},       // the third needs 300
        {100, std::vector<int>(300, 1), "L\n***\n"},
        {100, {1000}, "L\n**********\n"},                 // a jump shows all it passed
        {100, {99}, "L\n\n"},
        {100, {150, -100, 100}, "L\n*\n"},                // taken back, not passed again
        {100, {150, -100, 100, 50}, "L\n**\n"},
        {0, {1000}, "L\n\n"},                             // no step: no marks, no hang
        {-5, {1000}, "L\n\n"},
    };
    for (const Fall& f : faelle) {
        aus.str("");
        {
            BearbeitungsFortschritt fortschritt(f.schritt, "L");
            for (int n : f.schritte) {
                if (n >= 0)
                    fortschritt += n;
                else
                    fortschritt -= -n;
            }
        }
        EXPECT_EQ(aus.str(), f.erwartet) << "schritt " << f.schritt;
    }
}

TEST_F(FortschrittTest, NestedOperationsUseTheirOwnMarks) {
    {
        BearbeitungsFortschritt a(1, "A");
        a += 1;
        {
            BearbeitungsFortschritt b(1, "B");
            b += 1;
            {
                BearbeitungsFortschritt c(1, "C");
                c += 1;
                BearbeitungsFortschritt d(1, "D");
                d += 1;
                EXPECT_EQ(BearbeitungsFortschritt::aktiveFortschritte, 4);
            }
        }
        a += 1;
    }
    EXPECT_EQ(aus.str(), "A\n*B\n+C\n#D\n*\n\n\n*\n");
}

// Records what a progress counter asks of its display.
struct Protokoll {
    static std::vector<std::string> aufrufe;
};
std::vector<std::string> Protokoll::aufrufe;

class ProtokollAnzeige : public BearbeitungsAnzeige {
public:
    void starteAbs(const String& t) override { Protokoll::aufrufe.push_back("abs " + t.str()); }
    void starteRel(dataInteger p, const String& t) override {
        Protokoll::aufrufe.push_back("rel " + std::to_string(p) + " " + t.str());
    }
    void weiter(dataInteger w) override { Protokoll::aufrufe.push_back(std::to_string(w)); }
    void beende() override { Protokoll::aufrufe.push_back("ende"); }
};
std::unique_ptr<BearbeitungsAnzeige> protokollFabrik() { return std::make_unique<ProtokollAnzeige>(); }
std::unique_ptr<BearbeitungsAnzeige> keineAnzeige() { return nullptr; }

TEST_F(FortschrittTest, FactoryAndUnitCountsOfMarks) {
    Protokoll::aufrufe.clear();
    {
        BearbeitungsFortschritt f(100, "X", &protokollFabrik);
        f += 250;
        f += 60;
    }
    EXPECT_EQ(Protokoll::aufrufe, (std::vector<std::string>{"abs X", "100", "200", "300"}));

    // The default factory can be replaced for the whole process.
    Protokoll::aufrufe.clear();
    const BearbeitungsAnzeigeFabrik alt = BearbeitungsFortschritt::standardFabrik;
    BearbeitungsFortschritt::standardFabrik = &protokollFabrik;
    { BearbeitungsFortschritt f(10, "Y"); f += 10; }
    BearbeitungsFortschritt::standardFabrik = alt;
    EXPECT_EQ(Protokoll::aufrufe, (std::vector<std::string>{"abs Y", "10"}));

    // A factory without a display leaves the counter working silently.
    { BearbeitungsFortschritt f(1, "Z", &keineAnzeige); f += 5; }
    EXPECT_EQ(aus.str(), "");
}

TEST_F(FortschrittTest, SecondStartIsReportedAndChangesNothing) {
    std::ostringstream o, e;
    {
        BearbeitungsAnzeigeCout anzeige('+', o, e);
        anzeige.starteAbs("Lese Bytes");
        anzeige.weiter(1);
        anzeige.starteAbs("Nochmal");
        anzeige.starteRel(10, "Relativ");
        anzeige.weiter(2);
        EXPECT_EQ(anzeige.liefereModus(), 2);
    }
    EXPECT_EQ(o.str(), "Lese Bytes\n++\n");
    ASSERT_EQ(meldungen.size(), 2u);
    EXPECT_EQ(meldungen[0].label, "BEFO-ISINIT");
    EXPECT_EQ(meldungen[0].funktion, "BearbeitungsAnzeigeCout::starteAbs");
    EXPECT_EQ(meldungen[0].detail, "Nochmal");
    EXPECT_EQ(meldungen[0].level, 'I');
    EXPECT_EQ(meldungen[1].funktion, "BearbeitungsAnzeigeCout::starteRel");
    EXPECT_EQ(meldungen[1].detail, "Relativ");
}

TEST_F(FortschrittTest, IdleDisplayShowsNoMarksAndEndsLineTwice) {
    std::ostringstream o, e;
    {
        BearbeitungsAnzeigeCout anzeige('*', o, e);
        anzeige.weiter(1);
        anzeige.starteAbs("T");
        anzeige.weiter(1);
        anzeige.beende();
        anzeige.weiter(1);
        EXPECT_EQ(anzeige.liefereModus(), 0);
    }
    EXPECT_EQ(o.str(), "T\n*\n\n");
}

TEST_F(FortschrittTest, RelativeRulers) {
    const std::pair<int, std::string> faelle[] = {
        {10, "R\n!........!\n"},
        {25, "R\n!..!\n"},
        {50, "R\n!!\n"},
        {100, "R\n!!\n"},
        {0, "R\n!" + std::string(98, '.') + "!\n"},   // a step of 0 counts as 1
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
    std::streambuf* oPuffer = o.rdbuf();
    std::streambuf* ePuffer = e.rdbuf();
    {
        BearbeitungsAnzeigeCout anzeige('*', o, e);
        anzeige.starteRel(10, "Rel");
        anzeige.weiter(10);
        anzeige.weiter(20);
        e << "Meldung\n";          // a message in between
        anzeige.weiter(30);
        anzeige.weiter(40);
        o << "x";                  // other output on the same stream
        anzeige.weiter(50);
        anzeige.beende();
        // The streams write through their own buffers again.
        EXPECT_EQ(o.rdbuf(), oPuffer);
        EXPECT_EQ(e.rdbuf(), ePuffer);
    }
    EXPECT_EQ(o.str(), "Rel\n!........!\n**..*" "*x....*\n\n");
    EXPECT_EQ(e.str(), "Meldung\n");
}

TEST_F(FortschrittTest, RelativeOnOneStreamForBoth) {
    std::ostringstream o;
    std::streambuf* puffer = o.rdbuf();
    {
        BearbeitungsAnzeigeCout anzeige('#', o, o);
        anzeige.starteRel(20, "Ein Strom");
        anzeige.weiter(20);
        anzeige.weiter(40);
    }
    EXPECT_EQ(o.rdbuf(), puffer);
    EXPECT_EQ(o.str(), "Ein Strom\n!...!\n##\n");
}

} // namespace
