// Results with their positions: for a notation error the grammar offset, on
// success the subject's end, else the furthest byte reached.
#include "MmTestHilfe.h"

namespace {

TEST(MmparseFehler, ResultsAndPositions) {
    const struct {
        const char *grammatik, *subjekt;
        std::int32_t code, position;
    } faelle[] = {
        {"", "", 1, 0},
        {"", "a", 0, 0},
        {"abc", "abd", 0, 2},
        {"@@", "x", 0, 1},
        {"a*", "aaab", 0, 3},
        {"a+", "", 0, 0},
        {"<r>", "", MM_UNDEFINEDSYM, 0},
        {"(a.{x}){x}", "aa", MM_UNDECLAREDVAR, 7},
        {"a%{x}", "a", MM_UNDECLAREDVAR, 2},
        {"a#<a>=x#<a>=y", "a", MM_REDEFINEDSYM, 8},
        {"a.{x}b.{x}", "ab", MM_REDECLAREDVAR, 6},
        {"#<a=x", "", MM_ILLEGALDEF, 1},
        {"a.b", "a", MM_ILLEGALASSIGN, 1},
        {"x<a", "x", MM_ILLEGALSYM, 1},
        {"a|{}", "b", MM_ILLEGALVAR, 2},
        {"a.{x", "a", MM_ILLEGALVAR, 2},
        {"<x>#<x>=(b/<x>)a", "a", MM_LEFTRECURSION, 11},
        {"((a)#", "a", MM_UNCLOSEDGROUP, 0},
        {"[ab", "a", MM_UNCLOSEDSET, 0},
        {"[-a]", "a", MM_ILLEGALRANGE, 1},
        {"[a/-b]", "a", MM_ILLEGALRANGE, 3},
        {"^^a", "a", MM_ILLEGALNOT, 1},
        {"a^", "a", MM_ILLEGALNOT, 2},
        {"^<r>#<r>=a", "a", MM_ILLEGALNOT, 1},
        {"/a", "a", MM_ILLEGALSUFF01, 0},
        {"+a", "a", MM_ILLEGALSUFF1N, 0},
        {"(a|!b)", "b", MM_ILLEGALSUFFM, 3},
        {"<r>?#<r>=a", "a", MM_ILLEGALSUFF0M, 3},
        {"a|b\\", "a", MM_ILLEGALBSLCHAR, 3},
        {"a\\xZZ", "a?", MM_ILLEGALHEXCHAR, 1},
        {"[\\xg0]", "a", MM_ILLEGALHEXCHAR, 1},
        {"a#<b>=\\x1", "a", MM_ILLEGALHEXCHAR, 6},
    };
    for (const auto& f : faelle) {
        const MmLauf l = mmLauf(f.grammatik, f.subjekt);
        EXPECT_EQ(l.ergebnis, f.code) << f.grammatik;
        EXPECT_EQ(l.position, f.position) << f.grammatik;
    }
}

TEST(MmparseFehler, ArgumentChecks) {
    char buf[16];
    std::int32_t pos;
    std::FILE* datei = std::tmpfile();
    std::fputs("a", datei), std::rewind(datei);
    const struct {
        void* objekt;
        std::int32_t laenge, subjektLaenge;
        const char *grammatik, *optionen;
        const void* subjekt;
    } falsch[] = {{buf, 16, 1, nullptr, "", "a"}, {buf, 16, 1, "a", "", nullptr}, {buf, 16, -1, "a", "", "a"},
                  {buf, -1, 1, "a", "", "a"},     {nullptr, 0, 1, "a", ">", "a"}, {buf, 16, 1, "a", "t", "a"},
                  {datei, 0, 1, "a", ">h", "a"},  {datei, 0, 1, "a", ">a", "a"}};
    for (const auto& f : falsch) {
        pos = -5;
        EXPECT_EQ(mmparse(f.objekt, f.laenge, f.grammatik, f.subjekt, f.subjektLaenge, f.optionen, &pos),
                  MM_ILLEGALARGS);
        EXPECT_EQ(pos, 0);
    }
    // Lengths the options make meaningless go unchecked; unknown or null options are none.
    EXPECT_EQ(mmparse(nullptr, -1, "a", "a", 1, "", nullptr), 1);
    EXPECT_EQ(mmparse(buf, 16, "a", datei, -7, "<", &pos), 2);
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, "xyz", nullptr), 2);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, nullptr, nullptr), 2);
    std::fclose(datei);
}

}  // namespace
