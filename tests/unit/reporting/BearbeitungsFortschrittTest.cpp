#include "reporting/BearbeitungsFortschritt.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

class FortschrittTest : public ::testing::Test {
protected:
    void SetUp() override { alterPuffer_ = std::cout.rdbuf(cout.rdbuf()); }
    void TearDown() override {
        std::cout.rdbuf(alterPuffer_);
        EXPECT_EQ(BearbeitungsFortschritt::aktiveFortschritte, 0);
    }
    std::ostringstream cout;
    std::streambuf* alterPuffer_ = nullptr;
};

// Marks taken back are not passed again; without a step no marks, no hang.
TEST_F(FortschrittTest, MarksPerStep) {
    const struct {
        int schritt;
        std::vector<int> schritte;  // += per call, -= when negative
        std::string erwartet;
    } faelle[] = {{100, std::vector<int>(250, 1), "L\n**\n"},
                  {100, {1000}, "L\n**********\n"},
                  {100, {150, -100, 100, 50}, "L\n**\n"},
                  {0, {1000}, "L\n\n"}};
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
        BearbeitungsFortschritt still(1, "Z", [] { return std::unique_ptr<BearbeitungsAnzeige>(); });
        still += 5;
    }
    EXPECT_EQ(cout.str(), "A\n*B\n+C\n#D\n*\n\n\n*\n");
}

// Foreign output in between makes the relative line start over.
TEST_F(FortschrittTest, RelativeLineIsRebuiltAfterForeignOutput) {
    std::ostringstream o, e, beide;
    std::streambuf* const puffer[] = {o.rdbuf(), e.rdbuf(), beide.rdbuf()};
    {
        BearbeitungsAnzeigeCout anzeige('*', o, e);
        anzeige.starteRel(10, "Rel");
        anzeige.weiter(10);
        anzeige.weiter(20);
        e << "Meldung\n";
        anzeige.weiter(30);
        anzeige.weiter(40);
        o << "x";
        anzeige.weiter(50);
        anzeige.beende();
        EXPECT_EQ(o.rdbuf(), puffer[0]);
        EXPECT_EQ(e.rdbuf(), puffer[1]);
        // One stream for both: the error counter wraps the output counter.
        BearbeitungsAnzeigeCout einer('#', beide, beide);
        einer.starteRel(20, "Ein Strom");
        einer.weiter(20);
        einer.weiter(40);
    }
    EXPECT_EQ(o.str(), "Rel\n!........!\n**..**x....*\n\n");
    EXPECT_EQ(e.str(), "Meldung\n");
    EXPECT_EQ(beide.rdbuf(), puffer[2]);
    EXPECT_EQ(beide.str(), "Ein Strom\n!...!\n##\n");

    std::ostringstream null, nichts;
    BearbeitungsAnzeigeCout anzeige('*', null, nichts);
    anzeige.starteRel(0, "R");  // a step of 0 counts as 1
    EXPECT_EQ(null.str(), "R\n!" + std::string(98, '.') + "!\n");
}

}  // namespace
