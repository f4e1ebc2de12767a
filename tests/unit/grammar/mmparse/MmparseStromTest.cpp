// Streamed subjects: refill across block ends, the shift at commits that keeps
// the block small, text dropped by a commit, and the 's' display.
#include <gtest/gtest.h>

#include "MmTestHilfe.h"

namespace {

std::string zeilen(int n, const std::string& zeile) {
    std::string s;
    for (int i = 0; i < n; ++i) s += zeile;
    return s;
}

int zaehle(const std::string& text, const std::string& teil) {
    int n = 0;
    for (std::size_t p = text.find(teil); p != std::string::npos; p = text.find(teil, p + 1)) ++n;
    return n;
}

TEST(MmparseStrom, CommitsKeepTheBlockSmall) {
    const std::string ein = zeilen(20000, "abc 12\n");
    testing::internal::CaptureStderr();
    MmLauf l = mmStromLauf("<z>*#<z>=![a-z]+\\ ([0-9]+%N)\\n", ein, "<>m");
    std::string log = testing::internal::GetCapturedStderr();
    ASSERT_EQ(l.ergebnis, static_cast<std::int32_t>(l.ausgabe.size()) + 1);
    EXPECT_EQ(l.ausgabe, zeilen(20000, "abc N\n"));
    EXPECT_EQ(l.position, static_cast<std::int32_t>(ein.size()));
    EXPECT_EQ(zaehle(log, "PARSE: Allocating 4096 bytes for SUBJECT.\n"), 1);
    EXPECT_EQ(zaehle(log, "SUBJECT"), 2);   // no re-allocation, one release
    EXPECT_EQ(zaehle(log, "ARRAY"), 0);
    EXPECT_NE(log.find("PARSE: Freeing SUBJECT.\n"), std::string::npos);
}

TEST(MmparseStrom, WithoutCommitTheWholeFileIsHeld) {
    const std::string ein = zeilen(3000, "xy");
    testing::internal::CaptureStderr();
    MmLauf l = mmStromLauf("(xy%z)*", ein, "<m");
    std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(l.ausgabe, zeilen(3000, "z"));
    EXPECT_EQ(zaehle(log, "Re-allocating 8192 bytes for SUBJECT"), 1);
    EXPECT_EQ(zaehle(log, "Re-allocating"), 1);
}

TEST(MmparseStrom, VariableAcrossRefills) {
    const std::string a(5000, 'a');
    EXPECT_EQ(mmStromLauf("(a+).{x}-{x}", a + "-" + a, "<").ergebnis, 10002);
    EXPECT_EQ(mmStromLauf("(a+).{x}-{x}", a + "-" + a.substr(1), "<").ergebnis, 0);
    EXPECT_EQ(mmStromLauf("@*", "", "<").ergebnis, 1);
}

TEST(MmparseStrom, TextDroppedByCommit) {
    EXPECT_EQ(mmStromLauf("(a+).{v}(!b)c{v}", "aabcaa", "<").ergebnis, MM_TEXT_VERWORFEN);
    // In memory the text stays, and the commit's copy comes out twice.
    EXPECT_EQ(mmStromLauf("(a+).{v}(!b)c{v}", "aabcaa", "").ausgabe, "aabaabcaa");
    EXPECT_EQ(mmStromLauf("(a+).{v}(!b)c[{v}]", "aabca", "<").ergebnis, MM_TEXT_VERWORFEN);
    // A variable assigned behind the commit is held.
    EXPECT_EQ(mmStromLauf("(!b)(a+).{v}c{v}", "baaca", "<").ergebnis, 0);
    EXPECT_EQ(mmStromLauf("(!b)(a+).{v}c{v}%{v}", "baacaa", "<").ausgabe, "baa");
}

TEST(MmparseStrom, PositionCountsFlushedText) {
    MmLauf l = mmStromLauf("<l>*#<l>=!a\\n", "a\na\nxa", "<");
    EXPECT_EQ(l.ergebnis, 0);
    EXPECT_EQ(l.position, 4);
    l = mmStromLauf("<l>*#<l>=!a+\\n", "aaaa\naaa", "<");
    EXPECT_EQ(l.position, 8);
}

TEST(MmparseStrom, ShowOption) {
    testing::internal::CaptureStderr();
    MmLauf l = mmLauf("ab", "ab", "s");
    std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(l.ergebnis, 3);
    EXPECT_EQ(log, "\na\nab\n");
}

}  // namespace
