// Memory: failed allocations at each named place, the 256-block limits of
// both stacks, the 'm' log, and nesting far deeper than the C++ stack.
#include <gtest/gtest.h>

#include "MmTestHilfe.h"
#include "grammar/mmparse/MmZustand.h"

namespace {

// Runs with the allocation number `n` (0 = the first) failing.
std::int32_t mitFehlschlag(long n, const std::string& g, const std::string& s, const char* opt,
                           bool strom = false) {
    mmintern::testAllocationenBisFehler = n;
    std::int32_t r;
    if (strom) {
        r = mmStromLauf(g, s, opt).ergebnis;
    } else {
        std::string buf(1 << 16, '\0');
        void* ziel = std::string(opt).find('a') != std::string::npos ? nullptr : buf.data();
        r = mmparse(ziel, static_cast<std::int32_t>(buf.size()), g.c_str(), s.data(),
                    static_cast<std::int32_t>(s.size()), opt, nullptr);
    }
    mmintern::testAllocationenBisFehler = -1;
    return r;
}

TEST(MmparseSpeicher, FailedAllocations) {
    EXPECT_EQ(mitFehlschlag(0, "a", "a", ""), MM_NOMEM_INDEX);                // the index root
    EXPECT_EQ(mitFehlschlag(1, "a#<r>=b", "a", ""), MM_NOMEM_INDEX);          // a rule's node
    EXPECT_EQ(mitFehlschlag(2, "a#<ab>=b#<ac>=c", "a", ""), MM_NOMEM_INDEX);  // the split
    EXPECT_EQ(mitFehlschlag(1, "a", "a", "<", true), MM_NOMEM_SUBJECT);
    EXPECT_EQ(mitFehlschlag(2, "@*", std::string(5000, 'x'), "<", true), MM_NOMEM_SUBJECT);
    EXPECT_EQ(mitFehlschlag(1, "a", "a", "a"), MM_NOMEM_OBJECT);
    EXPECT_EQ(mitFehlschlag(2, "(a%bcdefgh)*", std::string(1000, 'a'), "a"), MM_NOMEM_OBJECT);
    EXPECT_EQ(mitFehlschlag(1, "(a)*", std::string(1100, 'a'), ""), MM_NOMEM_ARRAY);
    // 1024 frames are used up before 512 variables.
    EXPECT_EQ(mitFehlschlag(2, "(a.{$v})*", std::string(600, 'a'), ""), MM_NOMEM_VARRAY);
    // Nothing is left behind by a failure: the next call runs normally.
    EXPECT_EQ(mmLauf("(a)*", std::string(1100, 'a')).ergebnis, 1101);
}

TEST(MmparseSpeicher, StackLimits) {
    // 256 blocks of 1024 frames: the root, one frame per repetition, and
    // one for the repetition that finds no more.
    EXPECT_EQ(mmLauf("(a)*", std::string(262142, 'a'), "", 1 << 20).ergebnis, 262143);
    EXPECT_EQ(mmLauf("(a)*", std::string(262143, 'a'), "", 1 << 20).ergebnis, MM_ARRAY_VOLL);
    // 256 blocks of 512 variables, three per repetition.
    EXPECT_EQ(mmLauf("(a.{$v}.{$w}.{$u})*", std::string(44000, 'a')).ergebnis, MM_VARRAY_VOLL);
}

TEST(MmparseSpeicher, AllocationLog) {
    testing::internal::CaptureStderr();
    MmLauf l = mmStromLauf("<ab>(x)*#<ab>=a#<ac>=c", "a" + std::string(1100, 'x'), "<m");
    std::string log = testing::internal::GetCapturedStderr();
    ASSERT_EQ(l.ergebnis, 1102);
    const std::string knoten = "PARSE: Allocating " +
                               std::to_string((sizeof(mmintern::IndexNode) + 3) / 4 * 4) +
                               " bytes for Index node.\n";
    const std::string frames = "PARSE: Allocating " +
                               std::to_string(sizeof(mmintern::ArrayFrame) * mmintern::kFramesProBlock) +
                               " bytes for ARRAY.\n";
    // The root node is taken before the options are read: not logged.
    EXPECT_EQ(log, "PARSE: Allocating 4096 bytes for SUBJECT.\n" + knoten + knoten + knoten + frames +
                       "PARSE: Freeing SUBJECT.\nPARSE: Freeing ARRAY.\n");
}

TEST(MmparseSpeicher, DeepNestingUsesNoCxxStack) {
    const int tiefe = 100000;
    std::string g(tiefe, '(');
    g += "a";
    g += std::string(tiefe, ')');
    EXPECT_EQ(mmLauf(g, "a").ergebnis, 2);
    EXPECT_EQ(mmLauf(g, "b").ergebnis, 0);

    const std::string viele(tiefe, 'a');
    EXPECT_EQ(mmLauf("<r>#<r>=a<r>/", viele, "", tiefe + 1).ergebnis, tiefe + 1);
    EXPECT_EQ(mmLauf("<r>#<r>=a<r>/b", viele, "", tiefe + 1).ergebnis, 0);

    // Each level's replacement holds the translated level below it.
    const int n = 5000;
    MmLauf l = mmLauf("<r>#<r>=a(<r>/).{x}%[{x}]", std::string(n, 'a'), "", 4 * n);
    ASSERT_EQ(l.ergebnis, 2 * n + 1);
    EXPECT_EQ(l.ausgabe, std::string(n, '[') + std::string(n, ']'));
}

}  // namespace
