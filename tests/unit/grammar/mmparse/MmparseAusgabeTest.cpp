// Output: buffers, marks, the tree, copies at commits, streams in and out.
#include <cstdlib>
#include <cstring>

#include "MmTestHilfe.h"

namespace {

const MmFall kFaelle[] = {
    {"<r>x#<r>=ab", "abx", "\0r\0ab\0\0x"sv, "h"},
    {"<_r>x#<_r>=ab", "abx", "abx", "h"},
    {"<a>#<a>=(<b>%B)c#<b>=y", "yc", "\0a\0Bc\0\0"sv, "h"},
    {"<r>x#<r>=ab", "abx", "(r\n-ab\n)r\n-x\n", ">t"},
    {"@*", "a\x01\n\\\xff", "-a\\001\\n\\\\\\377\n", ">t"},
    {"<_w><v>#<_w>=\\ *#<v>=(a+).{x}%[{x}]", " aa", "- \n(v\n-[\n-aa\n-]\n)v\n", ">t"},
    // In memory the text before a commit comes out twice (intended).
    {"(!a)b", "ab", "aab"},
    {"(a+).{v}(!b)c{v}", "aabcaa", "aabaabcaa"},
    // From a stream the held text starts behind the commit.
    {"(!a%x)b", "ab", "xb", "<"},
    {"(!b)(a+).{v}c{v}%{v}", "baacaa", "baa", "<"},
    {"(!b)(a+).{v}c{v}", "baaca", {}, "<"},
    // With the walk ('h' or a replacement behind the commit) no doubling.
    {"(!a)b%y", "ab", "ay"},
    {"<_l>*#<_l>=![a-z]+%X", "ab", "X", "h"},
    {"(!a%1)(!b%2)c%3", "abc", "123"},
};

TEST(MmparseAusgabe, Table) { pruefeFaelle(kFaelle); }

TEST(MmparseAusgabe, BufferLimits) {
    char buf[8] = "ZZZZZZZ";
    // Exactly the output's size: success, no NUL behind it; one more: the NUL.
    EXPECT_EQ(mmparse(buf, 3, "abc", "abc", 3, "", nullptr), 4);
    EXPECT_EQ(std::string(buf, 4), "abcZ");
    EXPECT_EQ(mmparse(buf, 4, "abc", "abc", 3, "", nullptr), 4);
    EXPECT_EQ(std::string(buf, 4), "abc\0"sv);
    // One byte short: too long, both for the direct copy and for the walk.
    EXPECT_EQ(mmparse(buf, 2, "abc", "abc", 3, "", nullptr), MM_OTOLONG);
    EXPECT_EQ(mmparse(buf, 2, "abc%xyz", "abc", 3, "", nullptr), MM_OTOLONG);
    EXPECT_EQ(mmLauf("<r>#<r>=ab", "ab", "h", 4).ergebnis, MM_OTOLONG);
    buf[0] = 'Z';
    EXPECT_EQ(mmparse(buf, 0, "a%", "a", 1, "", nullptr), 1);
    EXPECT_EQ(buf[0], 'Z');
    std::int32_t pos = -1;  // no object: match only
    EXPECT_EQ(mmparse(nullptr, 0, "a+%xx", "aaa", 3, "", &pos), 1);
    EXPECT_EQ(pos, 3);

    void* adresse = nullptr;
    ASSERT_EQ(
        mmparseMitAdresse(nullptr, 0, "(q%ab)*", std::string(10000, 'q').data(), 10000, "a", &pos, &adresse),
        20001);
    EXPECT_EQ(std::strlen(static_cast<const char*>(adresse)), 20000u);  // 20480 taken, so the NUL fits
    std::free(adresse);
    // Marks never enlarge the buffer, and a failure hands nothing back.
    EXPECT_EQ(mmparseMitAdresse(std::malloc(4), 4, "<r>#<r>=", "", 0, "ha", nullptr, &adresse), MM_OTOLONG);
    EXPECT_EQ(adresse, nullptr);
    EXPECT_EQ(mmparse(nullptr, 0, "@*", "abc", 3, "a", &pos), 4);
}

TEST(MmparseAusgabe, StreamsAndCommits) {
    std::FILE* nurLesen = std::fopen("/dev/null", "r");
    EXPECT_EQ(mmparse(nurLesen, 0, "abc", "abc", 3, ">", nullptr), MM_CANTWRITE);
    EXPECT_EQ(mmparse(nurLesen, 0, "abc%x", "abc", 3, ">", nullptr), MM_CANTWRITE);
    std::fclose(nurLesen);
    // Text a commit dropped can not be compared or copied again.
    EXPECT_EQ(mmLauf("(a+).{v}(!b)c{v}", "aabcaa", "<").ergebnis, MM_TEXT_VERWORFEN);
    EXPECT_EQ(mmLauf("(a+).{v}(!b)c[{v}]", "aabca", "<").ergebnis, MM_TEXT_VERWORFEN);
    // A failed match keeps what commits flushed; its position counts that text.
    const MmLauf l = mmLauf("<l>*#<l>=!a\\n%A\\n", "a\na\nb\n", "<>");
    EXPECT_EQ(l.ergebnis, 0);
    EXPECT_EQ(l.ausgabe, "A\nA\n");
    EXPECT_EQ(l.position, 4);
    EXPECT_EQ(mmLauf("<l>*#<l>=!a+\\n", "aaaa\naaa", "<").position, 8);
    // A variable compared across refills.
    const std::string a(5000, 'a');
    EXPECT_EQ(mmLauf("(a+).{x}-{x}", a + "-" + a, "<").ergebnis, 10002);
    EXPECT_EQ(mmLauf("(a+).{x}-{x}", a + "-" + a.substr(1), "<").ergebnis, 0);
    EXPECT_EQ(mmLauf("@*", "", "<").ergebnis, 1);
}

// With commits the streamed subject's block keeps its first size; without, it grows.
TEST(MmparseAusgabe, StreamedSubjectBlock) {
    std::string ein, aus, xy;
    for (int i = 0; i < 20000; ++i) ein += "abc 12\n", aus += "abc N\n";
    testing::internal::CaptureStderr();
    const MmLauf l = mmLauf("<z>*#<z>=![a-z]+\\ ([0-9]+%N)\\n", ein, "<>m");
    std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(log.find("SUBJECT", 40), log.rfind("SUBJECT"));  // no re-allocation, one release
    EXPECT_EQ(l.ausgabe, aus);
    EXPECT_EQ(l.position, std::int32_t(ein.size()));
    for (int i = 0; i < 3000; ++i) xy += "xy";
    testing::internal::CaptureStderr();
    EXPECT_EQ(mmLauf("(xy%z)*", xy, "<m").ausgabe, std::string(3000, 'z'));
    log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(log.find("Re-allocating"), log.rfind("Re-allocating"));
    EXPECT_NE(log.find("Re-allocating 8192 bytes for SUBJECT"), std::string::npos);
    // 's' shows the subject up to each new position, from each call's start.
    testing::internal::CaptureStderr();
    EXPECT_EQ(mmLauf("x", "a", "s").ergebnis, 0);
    EXPECT_EQ(mmLauf("ab", "ab", "s").ergebnis, 3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "\n\na\nab\n");
}

}  // namespace
