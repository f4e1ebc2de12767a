// The chunked byte array: growth in both directions keeps every byte, the
// limit warns once and freezes the array.
#include "foundation/LongDynArray.h"

#include "Meldungen.h"

using bildtest::MitMeldungen;

namespace {

class LongDynArrayTest : public MitMeldungen {};

TEST_F(LongDynArrayTest, FirstAccessFixesBasis) {
    LongDynArray a;
    a[1000000] = 7;
    EXPECT_EQ(a.liefereBasis(), 1000000);
    EXPECT_EQ(a.liefereAnzahl(), 1);
    EXPECT_EQ(a[1000000], 7);
}

TEST_F(LongDynArrayTest, UpwardGrowthKeepsBytesAcrossChunks) {
    LongDynArray a;
    const int n = 3 * LongDynArray::blockGroesse + 123;
    for (int i = 0; i < n; ++i) a[100 + i] = static_cast<std::uint8_t>(i * 7 + 1);
    for (int i = 0; i < n; ++i) ASSERT_EQ(a[100 + i], static_cast<std::uint8_t>(i * 7 + 1)) << i;
    // Unwritten elements of the grown span read as the default.
    a[100 + n + 70000] = 1;
    EXPECT_EQ(a[100 + n + 5], 0);
    EXPECT_TRUE(meldungen.empty());
}

TEST_F(LongDynArrayTest, DownwardGrowthIsExactAndShiftsBytes) {
    LongDynArray a;
    a[5] = 55;
    a[3] = 33;
    EXPECT_EQ(a.liefereBasis(), 3);
    EXPECT_EQ(a.liefereAnzahl(), 3);
    EXPECT_EQ(a[5], 55);
    EXPECT_EQ(a[4], 0);

    LongDynArray b;
    const int n = 2 * LongDynArray::blockGroesse + 9;
    for (int i = 0; i < n; ++i) b[50000 + i] = static_cast<std::uint8_t>(i ^ (i >> 8));
    b[17] = 0xEE;   // shift by an amount that is no multiple of the chunk size
    EXPECT_EQ(b.liefereBasis(), 17);
    for (int i = 0; i < n; ++i) ASSERT_EQ(b[50000 + i], static_cast<std::uint8_t>(i ^ (i >> 8))) << i;
    EXPECT_EQ(b[17], 0xEE);
}

TEST_F(LongDynArrayTest, UpperLimitWarnsOnceAndFreezes) {
    LongDynArray a;
    a[0] = 1;
    a[16842751] = 9;   // 514 chunks exactly
    EXPECT_TRUE(meldungen.empty());
    EXPECT_FALSE(a.istGewarnt());

    std::uint8_t& x = a[16842752];
    ASSERT_EQ(mit("FELDZUGROSS").size(), 1u);
    EXPECT_EQ(meldungen[0].funktion, "LongDynArray::[]+");
    EXPECT_EQ(meldungen[0].detail, "16842752");
    EXPECT_EQ(meldungen[0].level, 'W');
    EXPECT_EQ(x, 9) << "a failed access hands out the last byte";

    // Frozen: in-range indices also give the last byte, and no second warning.
    EXPECT_EQ(&a[0], &x);
    EXPECT_EQ(&a[-5000000], &x);
    EXPECT_EQ(mit("FELDZUGROSS").size(), 1u);
}

TEST_F(LongDynArrayTest, DownwardLimitIsOneShort) {
    LongDynArray a;
    a[16842751] = 1;
    a[1] = 2;   // count 16842751 is still allowed downward
    EXPECT_TRUE(meldungen.empty());
    LongDynArray b;
    b[16842751] = 1;
    b[0];
    ASSERT_EQ(meldungen.size(), 1u);
    EXPECT_EQ(meldungen[0].funktion, "LongDynArray::[]-");
    EXPECT_EQ(meldungen[0].detail, "16842752");
}

TEST_F(LongDynArrayTest, IndicesWrapLikeAddresses) {
    LongDynArray a;
    a[static_cast<std::int32_t>(0x7FFFFFF0u)] = 1;
    a[static_cast<std::int32_t>(0x8000000Fu)] = 2;
    EXPECT_TRUE(meldungen.empty());
    EXPECT_EQ(a.liefereAnzahl(), 32);
    EXPECT_EQ(a[static_cast<std::int32_t>(0x7FFFFFF0u)], 1);
}

}  // namespace
