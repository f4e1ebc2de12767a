// Memory: failed allocations, stack limits, the 'm' log, deep nesting.
#include "MmTestHilfe.h"
#include "grammar/mmparse/MmZustand.h"

namespace {

TEST(MmparseSpeicher, FailedAllocations) {
    const struct {
        long nummer;  // of the allocation that fails, from 0
        const char *grammatik, *optionen;
        std::string subjekt;
        std::int32_t ergebnis;
    } faelle[] = {
        {0, "a", "", "a", MM_NOMEM_INDEX},  // the index root
        {1, "a#<r>=b", "", "a", MM_NOMEM_INDEX},
        {2, "a#<ab>=b#<ac>=c", "", "a", MM_NOMEM_INDEX},  // the split
        {1, "a", "<", "a", MM_NOMEM_SUBJECT},
        {2, "@*", "<", std::string(5000, 'x'), MM_NOMEM_SUBJECT},
        {1, "a", "a", "a", MM_NOMEM_OBJECT},
        {2, "(a%bcdefgh)*", "a", std::string(1000, 'a'), MM_NOMEM_OBJECT},
        {1, "(a)*", "", std::string(1100, 'a'), MM_NOMEM_ARRAY},
        {2, "(a.{$v})*", "", std::string(600, 'a'), MM_NOMEM_VARRAY},  // 1024 frames before 512 variables
    };
    for (const auto& f : faelle) {
        mmintern::testAllocationenBisFehler = f.nummer;
        const std::int32_t r = f.optionen[0] == 'a' ? mmparse(nullptr, 0, f.grammatik, f.subjekt.data(),
                                                              std::int32_t(f.subjekt.size()), "a", nullptr)
                                                    : mmLauf(f.grammatik, f.subjekt, f.optionen).ergebnis;
        mmintern::testAllocationenBisFehler = -1;
        EXPECT_EQ(r, f.ergebnis) << f.grammatik;
    }
    // Nothing is left behind by a failure: the next call runs normally.
    EXPECT_EQ(mmLauf("(a)*", std::string(1100, 'a')).ergebnis, 1101);
}

TEST(MmparseSpeicher, StackLimits) {
    // 256 blocks of 1024 frames: the root, one a repetition, one for the last try.
    EXPECT_EQ(mmLauf("(a)*", std::string(262142, 'a'), "", 1 << 20).ergebnis, 262143);
    EXPECT_EQ(mmLauf("(a)*", std::string(262143, 'a'), "", 1 << 20).ergebnis, MM_ARRAY_VOLL);
    // 256 blocks of 512 variables, three per repetition.
    EXPECT_EQ(mmLauf("(a.{$v}.{$w}.{$u})*", std::string(44000, 'a')).ergebnis, MM_VARRAY_VOLL);
}

TEST(MmparseSpeicher, AllocationLog) {
    testing::internal::CaptureStderr();
    ASSERT_EQ(mmLauf("<ab>(x)*#<ab>=a#<ac>=c", "a" + std::string(1100, 'x'), "<m").ergebnis, 1102);
    const std::string knoten = "PARSE: Allocating " +
                               std::to_string((sizeof(mmintern::IndexNode) + 3) / 4 * 4) +
                               " bytes for Index node.\n";
    const std::string frames = "PARSE: Allocating " +
                               std::to_string(sizeof(mmintern::ArrayFrame) * mmintern::kFramesProBlock) +
                               " bytes for ARRAY.\n";
    // The root node is taken before the options are read: not logged.
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "PARSE: Allocating 4096 bytes for SUBJECT.\n" + knoten +
                                                          knoten + knoten + frames +
                                                          "PARSE: Freeing SUBJECT.\nPARSE: Freeing ARRAY.\n");
}

TEST(MmparseSpeicher, DeepNestingUsesNoCxxStack) {
    const int tiefe = 100000;
    const std::string g = std::string(tiefe, '(') + "a" + std::string(tiefe, ')'), viele(tiefe, 'a');
    EXPECT_EQ(mmLauf(g, "a").ergebnis, 2);
    EXPECT_EQ(mmLauf(g, "b").ergebnis, 0);
    EXPECT_EQ(mmLauf("<r>#<r>=a<r>/", viele, "", tiefe + 1).ergebnis, tiefe + 1);
    EXPECT_EQ(mmLauf("<r>#<r>=a<r>/b", viele, "", tiefe + 1).ergebnis, 0);
    // Each level's replacement holds the translated level below it.
    const int n = 5000;
    const MmLauf l = mmLauf("<r>#<r>=a(<r>/).{x}%[{x}]", std::string(n, 'a'), "", 4 * n);
    ASSERT_EQ(l.ergebnis, 2 * n + 1);
    EXPECT_EQ(l.ausgabe, std::string(n, '[') + std::string(n, ']'));
}

}  // namespace
