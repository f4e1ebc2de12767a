// Notation errors: each code with the grammar offset it reports, and the rule
// that a fault is reported only where matching reaches it.
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
        {"a.{x}b.{x}", "ab", MM_REDECLAREDVAR, 6},
        {"#<a=x", "", MM_ILLEGALDEF, 1},
        {"a#<a>x", "a", MM_ILLEGALDEF, 2},
        {"#<>=x", "", MM_ILLEGALDEF, 1},
        {"a.b", "a", MM_ILLEGALASSIGN, 1},
        {"<>", "", MM_ILLEGALSYM, 0},
        {"x<a", "x", MM_ILLEGALSYM, 1},
        {"{}", "", MM_ILLEGALVAR, 0},
        {"a.{x", "a", MM_ILLEGALVAR, 2},
        {"<x>#<x>=<x>a", "a", MM_LEFTRECURSION, 8},
        {"<x>#<x>=(b/<x>)a", "a", MM_LEFTRECURSION, 11},
        {"(ab", "ab", MM_UNCLOSEDGROUP, 0},
        {"((a)#", "a", MM_UNCLOSEDGROUP, 0},
        {"ab)", "ab", MM_UNOPENEDGROUP, 2},
        {"<r>#<r>=a)", "a", MM_UNOPENEDGROUP, 9},
        {"%a(b", "", MM_ILLEGALGROUP, 2},
        {"[ab", "a", MM_UNCLOSEDSET, 0},
        {"[-a]", "a", MM_ILLEGALRANGE, 1},
        {"[a-]", "a", MM_ILLEGALRANGE, 3},
        {"[a-/]", "a", MM_ILLEGALRANGE, 3},
        {"[a/-b]", "a", MM_ILLEGALRANGE, 3},
        {"^@", "a", MM_ILLEGALNOT, 1},
        {"^^a", "a", MM_ILLEGALNOT, 1},
        {"a^", "a", MM_ILLEGALNOT, 2},
        {"^<r>#<r>=a", "a", MM_ILLEGALNOT, 1},
        {"^{x}", "a", MM_ILLEGALNOT, 1},
        {"a^%x", "a", MM_ILLEGALNOT, 2},
        {"/a", "a", MM_ILLEGALSUFF01, 0},
        {"+a", "a", MM_ILLEGALSUFF1N, 0},
        {"*a", "a", MM_ILLEGALSUFF0N, 0},
        {"!a", "a", MM_ILLEGALSUFFM, 0},
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
    };
    for (const FehlerFall& f : faelle) {
        SCOPED_TRACE(f.grammatik);
        MmLauf l = mmLauf(f.grammatik, f.subjekt);
        EXPECT_EQ(l.ergebnis, f.code);
        EXPECT_EQ(l.position, f.position);
    }
}

TEST(MmparseFehler, ReportedOnlyWhereMatchingReaches) {
    // The set is tested list by list: a bad second list is met only by a byte
    // that the first list holds.
    EXPECT_EQ(mmLauf("[a/-]", "b").ergebnis, MM_SYNTAX);
    EXPECT_EQ(mmLauf("[a/-]", "a").ergebnis, MM_ILLEGALRANGE);
    EXPECT_EQ(mmLauf("a|{}", "a").ergebnis, 2);
    EXPECT_EQ(mmLauf("a|{}", "b").ergebnis, MM_ILLEGALVAR);
    // The definition scan checks every definition, reached or not.
    EXPECT_EQ(mmLauf("a#<a>=x#<a>=y", "a").ergebnis, MM_REDEFINEDSYM);
    EXPECT_EQ(mmLauf("a#<b>=\\x1", "a").ergebnis, MM_ILLEGALHEXCHAR);
}

TEST(MmparseFehler, ArgumentChecks) {
    char buf[16];
    std::int32_t pos = -5;
    EXPECT_EQ(mmparse(buf, 16, nullptr, "a", 1, "", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(buf, 16, "a", nullptr, 1, "", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", -1, "", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(buf, -1, "a", "a", 1, "", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(nullptr, 0, "a", "a", 1, ">", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, "t", &pos), MM_ILLEGALARGS);
    std::FILE* aus = std::tmpfile();
    EXPECT_EQ(mmparse(aus, 0, "a", "a", 1, ">h", &pos), MM_ILLEGALARGS);
    EXPECT_EQ(mmparse(aus, 0, "a", "a", 1, ">a", &pos), MM_ILLEGALARGS);
    std::fclose(aus);
    EXPECT_EQ(pos, 0);
    // Lengths that the options make meaningless are not checked.
    EXPECT_EQ(mmparse(nullptr, -1, "a", "a", 1, "", nullptr), 1);
    std::FILE* ein = std::tmpfile();
    std::fputs("a", ein);
    std::rewind(ein);
    EXPECT_EQ(mmparse(buf, 16, "a", ein, -7, "<", &pos), 2);
    EXPECT_EQ(pos, 1);
    std::fclose(ein);
    // Unknown option characters are ignored; null options are none.
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, "xyz", nullptr), 2);
    EXPECT_EQ(mmparse(buf, 16, "a", "a", 1, nullptr, nullptr), 2);
}

}  // namespace
