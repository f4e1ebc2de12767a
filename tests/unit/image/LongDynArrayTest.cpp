// The chunked byte array: growth in both directions keeps every byte, the
// limit warns once and freezes the array.
#include "foundation/LongDynArray.h"

#include "Meldungen.h"

namespace {

using LongDynArrayTest = bildtest::MitMeldungen;

TEST_F(LongDynArrayTest, GrowthBothWaysKeepsEveryByte) {
    LongDynArray a;
    a[5] = 55;
    a[3] = 33;  // downward growth is exact
    EXPECT_EQ(a.liefereBasis(), 3);
    EXPECT_EQ(a.liefereAnzahl(), 3);
    EXPECT_EQ(a[4], 0);

    // Upward across chunks, then down by an amount that is no multiple of
    // the chunk size, then far up again.
    LongDynArray b;
    const int n = 3 * LongDynArray::blockGroesse + 123;
    auto wert = [](int i) { return static_cast<std::uint8_t>(i * 7 + (i >> 8) + 1); };
    for (int i = 0; i < n; ++i) b[50000 + i] = wert(i);
    b[17] = 0xEE;
    EXPECT_EQ(b.liefereBasis(), 17);
    b[50000 + n + 70000] = 1;
    for (int i = 0; i < n; ++i) ASSERT_EQ(b[50000 + i], wert(i)) << i;
    EXPECT_EQ(b[17], 0xEE);
    EXPECT_EQ(b[50000 + n + 5], 0) << "unwritten elements read as the default";

    // Indices wrap like addresses.
    LongDynArray c;
    c[static_cast<std::int32_t>(0x7FFFFFF0u)] = 1;
    c[static_cast<std::int32_t>(0x8000000Fu)] = 2;
    EXPECT_EQ(c.liefereAnzahl(), 32);
    EXPECT_EQ(c[static_cast<std::int32_t>(0x7FFFFFF0u)], 1);
    EXPECT_EQ(aufnahme.anzahl(), 0u);
}

TEST_F(LongDynArrayTest, LimitWarnsOnceAndFreezes) {
    LongDynArray a;
    a[0] = 1;
    a[16842751] = 9;  // 514 chunks exactly
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    EXPECT_FALSE(a.istGewarnt());

    std::uint8_t& x = a[16842752];
    EXPECT_EQ(aufnahme.letzte().satz(), "FELDZUGROSS|LongDynArray::[]+|16842752|W");
    EXPECT_EQ(x, 9) << "a failed access hands out the last byte";
    // Frozen: in-range indices also give the last byte, and no second warning.
    EXPECT_EQ(&a[0], &x);
    EXPECT_EQ(&a[-5000000], &x);
    EXPECT_EQ(aufnahme.anzahl(), 1u);

    // Downward the limit is one short.
    aufnahme.leere();
    LongDynArray b;
    b[16842751] = 1;
    b[1] = 2;
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    b[0];
    EXPECT_EQ(aufnahme.letzte().satz(), "FELDZUGROSS|LongDynArray::[]-|16842752|W");
}

}  // namespace
