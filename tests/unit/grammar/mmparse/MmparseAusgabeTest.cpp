// Output: buffer limits and the NUL behind the output, the growing 'a'
// buffer, rule marks of 'h', the tree of 't', the copy at commits.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "MmTestHilfe.h"

namespace {

TEST(MmparseAusgabe, BufferLimitsAndNul) {
    char buf[8];
    std::memset(buf, 'Z', sizeof buf);
    // Exactly the output's size: success, no NUL behind it.
    EXPECT_EQ(mmparse(buf, 3, "abc", "abc", 3, "", nullptr), 4);
    EXPECT_EQ(std::string(buf, 4), "abcZ");
    // One byte more: the NUL is stored.
    EXPECT_EQ(mmparse(buf, 4, "abc", "abc", 3, "", nullptr), 4);
    EXPECT_EQ(std::string(buf, 4), std::string("abc\0", 4));
    // One byte short: too long, both for the direct copy and for the walk.
    EXPECT_EQ(mmparse(buf, 2, "abc", "abc", 3, "", nullptr), MM_OTOLONG);
    EXPECT_EQ(mmparse(buf, 2, "abc%xyz", "abc", 3, "", nullptr), MM_OTOLONG);
    // An empty output stores the NUL if there is a byte for it.
    buf[0] = 'Z';
    EXPECT_EQ(mmparse(buf, 1, "a%", "a", 1, "", nullptr), 1);
    EXPECT_EQ(buf[0], '\0');
    buf[0] = 'Z';
    EXPECT_EQ(mmparse(buf, 0, "a%", "a", 1, "", nullptr), 1);
    EXPECT_EQ(buf[0], 'Z');
    // No object: match only.
    std::int32_t pos = -1;
    EXPECT_EQ(mmparse(nullptr, 0, "a+%xx", "aaa", 3, "", &pos), 1);
    EXPECT_EQ(pos, 3);
}

TEST(MmparseAusgabe, AllocatedBufferGrows) {
    std::string subjekt(10000, 'q');
    void* adresse = nullptr;
    std::int32_t pos = -1;
    std::int32_t r = mmparseMitAdresse(nullptr, 0, "(q%ab)*", subjekt.data(), 10000, "a", &pos, &adresse);
    ASSERT_EQ(r, 20001);
    ASSERT_NE(adresse, nullptr);
    EXPECT_EQ(pos, 10000);
    const char* text = static_cast<const char*>(adresse);
    EXPECT_EQ(std::strlen(text), 20000u);   // 20480 bytes taken, so the NUL fits
    EXPECT_EQ(std::string(text, 4), "abab");
    std::free(adresse);

    // A caller's malloc buffer passes to the engine and grows.
    void* eigen = std::malloc(2);
    r = mmparseMitAdresse(eigen, 2, "@*", "hello", 5, "a", &pos, &adresse);
    ASSERT_EQ(r, 6);
    EXPECT_EQ(std::string(static_cast<char*>(adresse)), "hello");
    std::free(adresse);

    // On failure the buffer is released and nothing is handed back.
    r = mmparseMitAdresse(nullptr, 0, "x", "y", 1, "a", &pos, &adresse);
    EXPECT_EQ(r, 0);
    EXPECT_EQ(adresse, nullptr);
    // Without an address to hand it to, the buffer is released after use.
    EXPECT_EQ(mmparse(nullptr, 0, "@*", "abc", 3, "a", &pos), 4);
    EXPECT_EQ(pos, 3);
}

TEST(MmparseAusgabe, HierarchicalMarks) {
    MmLauf l = mmLauf("<r>x#<r>=ab", "abx", "h");
    EXPECT_EQ(l.ausgabe, std::string("\0r\0ab\0\0x", 8));
    l = mmLauf("<_r>x#<_r>=ab", "abx", "h");
    EXPECT_EQ(l.ausgabe, "abx");
    l = mmLauf("<a>#<a>=(<b>%B)c#<b>=y", "yc", "h");
    EXPECT_EQ(l.ausgabe, std::string("\0a\0Bc\0\0", 7));
    // Marks never enlarge the buffer, even with 'a'.
    EXPECT_EQ(mmLauf("<r>#<r>=ab", "ab", "h", 4).ergebnis, MM_OTOLONG);
    void* adresse = nullptr;
    void* eigen = std::malloc(4);
    EXPECT_EQ(mmparseMitAdresse(eigen, 4, "<r>#<r>=", "", 0, "ha", nullptr, &adresse), MM_OTOLONG);
    EXPECT_EQ(adresse, nullptr);
}

TEST(MmparseAusgabe, TraceTree) {
    MmLauf l = mmStromLauf("<r>x#<r>=ab", "abx", ">t");
    EXPECT_EQ(l.ergebnis, static_cast<std::int32_t>(l.ausgabe.size()) + 1);
    EXPECT_EQ(l.ausgabe, "(r\n-ab\n)r\n-x\n");
    l = mmStromLauf("@*", std::string("a\x01\n\\\xff", 5), ">t");
    EXPECT_EQ(l.ausgabe, "-a\\001\\n\\\\\\377\n");
    l = mmStromLauf("<_w><v>#<_w>=\\ *#<v>=(a+).{x}%[{x}]", " aa", ">t");
    EXPECT_EQ(l.ausgabe, "- \n(v\n-[\n-aa\n-]\n)v\n");
}

TEST(MmparseAusgabe, CommitFlushesAndCopiesAgainInMemory) {
    // In memory the direct copy at each flush starts at the subject's start,
    // so the text before a commit comes out twice (intended).
    EXPECT_EQ(mmLauf("(!a)b", "ab").ausgabe, "aab");
    EXPECT_EQ(mmLauf("(!a%x)b", "ab").ausgabe, "xab");
    // From a stream the held text starts behind the commit.
    EXPECT_EQ(mmStromLauf("(!a)b", "ab", "<").ausgabe, "ab");
    EXPECT_EQ(mmStromLauf("(!a%x)b", "ab", "<").ausgabe, "xb");
    // With the walk ('h' or a replacement behind the commit) no doubling.
    EXPECT_EQ(mmLauf("(!a)b%y", "ab").ausgabe, "ay");
    EXPECT_EQ(mmLauf("<_l>*#<_l>=![a-z]+%X", "ab", "h").ausgabe, "X");
    EXPECT_EQ(mmLauf("(!a%1)(!b%2)c%3", "abc").ausgabe, "123");
}

TEST(MmparseAusgabe, StreamOutput) {
    MmLauf l = mmStromLauf("(a%x|b)*", "abba", ">");
    EXPECT_EQ(l.ergebnis, 5);
    EXPECT_EQ(l.ausgabe, "xbbx");
    l = mmStromLauf("@*", "plain", ">");
    EXPECT_EQ(l.ergebnis, 6);
    EXPECT_EQ(l.ausgabe, "plain");
    // A failed match leaves what commits flushed before it.
    l = mmStromLauf("<l>*#<l>=!a\\n%A\\n", "a\na\nb\n", "<>");
    EXPECT_EQ(l.ergebnis, 0);
    EXPECT_EQ(l.ausgabe, "A\nA\n");
    EXPECT_EQ(l.position, 4);
}

TEST(MmparseAusgabe, WriteFailure) {
    char name[] = "/tmp/mmparse_nurlesenXXXXXX";
    int fd = mkstemp(name);
    ASSERT_GE(fd, 0);
    close(fd);
    std::FILE* nurLesen = std::fopen(name, "r");
    ASSERT_NE(nurLesen, nullptr);
    EXPECT_EQ(mmparse(nurLesen, 0, "abc", "abc", 3, ">", nullptr), MM_CANTWRITE);
    EXPECT_EQ(mmparse(nurLesen, 0, "abc%x", "abc", 3, ">", nullptr), MM_CANTWRITE);
    std::fclose(nurLesen);
    std::remove(name);
}

}  // namespace
