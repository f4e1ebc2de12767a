// Notation errors with the grammar offset each reports (codes that the
// end-to-end runs show with their offsets are not repeated here), and the
// checks of the arguments. A fault is reported only where matching reaches it, except in
// definitions, which are all scanned before matching.
#include <gtest/gtest.h>

#include "MmTestHilfe.h"

namespace {

struct FehlerFall {
    const char* grammatik;
    const char* subjekt;
    std::int32_t code;
    std::int32_t position;
};

TEST(MmparseFehler, CodesAndOffsets) {
    static const FehlerFall faelle[] = {
        {"<r>", "", MM_UNDEFINEDSYM, 0},
        {"a{x}", "a", MM_UNDECLAREDVAR, 1},
        {"(a.{x}){x}", "aa", MM_UNDECLAREDVAR, 7},
        {"a%{x}", "a", MM_UNDECLAREDVAR, 2},
        {"[{x}]", "a", MM_UNDECLAREDVAR, 1},
        {"#<a>=x#<a>=y", "", MM_REDEFINEDSYM, 7},
        {"a#<a>=x#<a>=y", "a", MM_REDEFINEDSYM, 8},
        {"a.{x}b.{x}", "ab", MM_REDECLAREDVAR, 6},
        {"#<a=x", "", MM_ILLEGALDEF, 1},
        {"#<>=x", "", MM_ILLEGALDEF, 1},
        {"a.b", "a", MM_ILLEGALASSIGN, 1},
        {"<>", "", MM_ILLEGALSYM, 0},
        {"x<a", "x", MM_ILLEGALSYM, 1},
        {"{}", "", MM_ILLEGALVAR, 0},
        {"a|{}", "b", MM_ILLEGALVAR, 2},
        {"a.{x", "a", MM_ILLEGALVAR, 2},
        {"<x>#<x>=<x>a", "a", MM_LEFTRECURSION, 8},
        {"<x>#<x>=(b/<x>)a", "a", MM_LEFTRECURSION, 11},
        {"(ab", "ab", MM_UNCLOSEDGROUP, 0},
        {"((a)#", "a", MM_UNCLOSEDGROUP, 0},
        {"<r>#<r>=a)", "a", MM_UNOPENEDGROUP, 9},
        {"[ab", "a", MM_UNCLOSEDSET, 0},
        {"[-a]", "a", MM_ILLEGALRANGE, 1},
        {"[a-]", "a", MM_ILLEGALRANGE, 3},
        {"[a-/]", "a", MM_ILLEGALRANGE, 3},
        {"[a/-b]", "a", MM_ILLEGALRANGE, 3},
        {"[a/-]", "a", MM_ILLEGALRANGE, 3},
        {"^@", "a", MM_ILLEGALNOT, 1},
        {"^^a", "a", MM_ILLEGALNOT, 1},
        {"a^", "a", MM_ILLEGALNOT, 2},
        {"^<r>#<r>=a", "a", MM_ILLEGALNOT, 1},
        {"^{x}", "a", MM_ILLEGALNOT, 1},
        {"a^%x", "a", MM_ILLEGALNOT, 2},
        {"/a", "a", MM_ILLEGALSUFF01, 0},
        {"+a", "a", MM_ILLEGALSUFF1N, 0},
        {"(a|!b)", "b", MM_ILLEGALSUFFM, 3},
        {"(a)!", "a", MM_ILLEGALSUFFM, 3},
        {"?a", "a", MM_ILLEGALSUFF0M, 0},
        {"<r>?#<r>=a", "a", MM_ILLEGALSUFF0M, 3},
        {"\\", "", MM_ILLEGALBSLCHAR, 0},
        {"a|b\\", "a", MM_ILLEGALBSLCHAR, 3},
        {"\\x4", "", MM_ILLEGALHEXCHAR, 0},
        {"a\\xZZ", "a?", MM_ILLEGALHEXCHAR, 1},
        {"[\\xg0]", "a", MM_ILLEGALHEXCHAR, 1},
        {"a%\\x0g", "a", MM_ILLEGALHEXCHAR, 2},
        {"a#<b>=\\x1", "a", MM_ILLEGALHEXCHAR, 6},
    };
    for (const FehlerFall& f : faelle) {
        SCOPED_TRACE(f.grammatik);
        MmLauf l = mmLauf(f.grammatik, f.subjekt);
        EXPECT_EQ(l.ergebnis, f.code);
        EXPECT_EQ(l.position, f.position);
    }
}

TEST(MmparseFehler, ArgumentChecks) {
    char buf[16];
    std::int32_t pos;
    std::FILE* datei = std::tmpfile();
    std::fputs("a", datei);
    std::rewind(datei);
    struct {
        void* objekt;
        std::int32_t laenge, subjektLaenge;
        const char *grammatik, *optionen;
        const void* subjekt;
    } const falsch[] = {
        {buf, 16, 1, nullptr, "", "a"}, {buf, 16, 1, "a", "", nullptr}, {buf, 16, -1, "a", "", "a"},
        {buf, -1, 1, "a", "", "a"},     {nullptr, 0, 1, "a", ">", "a"}, {buf, 16, 1, "a", "t", "a"},
        {datei, 0, 1, "a", ">h", "a"},  {datei, 0, 1, "a", ">a", "a"},
    };
    for (const auto& f : falsch) {
        pos = -5;
        EXPECT_EQ(mmparse(f.objekt, f.laenge, f.grammatik, f.subjekt, f.subjektLaenge, f.optionen, &pos),
                  MM_ILLEGALARGS);
        EXPECT_EQ(pos, 0);
    }
    // Lengths that the options make meaningless are not checked; unknown
    // option characters are ignored; null options are none.
    EXPECT_EQ(mmparse(nullptr, -1, "a", "a", 1, "", nullptr), 1);
    EXPECT_EQ(mmparse(buf, 16, "a", datei, -7, "<", &pos), 2);
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, "xyz", nullptr), 2);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, nullptr, nullptr), 2);
    std::fclose(datei);
}

}  // namespace
