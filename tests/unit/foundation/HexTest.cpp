// The buffered hex writer: widths, letter case as the stream has it, and
// texts longer than its buffer arriving whole and in order.
#include "foundation/Hex.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

TEST(HexAusgabe, FormatsLikeStreamInsertion) {
    std::ostringstream o;
    o << std::hex << std::uppercase;
    {
        HexAusgabe aus(o);
        aus.zahl(0xA, 5);
        aus.zeichen(' ');
        aus.zahl(0x123456789ABCDEFull, 2);
        aus.zeichen(' ');
        aus.zahl(0, 0);
        aus.text(" ");
        aus.byte(0x0F);
        aus.dezimal(0);
        aus.dezimal(18446744073709551615ull);
    }
    EXPECT_EQ(o.str(), "0000A 123456789ABCDEF 0 0F018446744073709551615");
    std::ostringstream k;
    {
        HexAusgabe aus(k);  // a stream without uppercase gives small letters
        aus.zahl(0xBEEF, 6);
        const std::uint8_t b[] = {0xAB, 0x01};
        aus.bytes(b, 2);
    }
    EXPECT_EQ(k.str(), "00beefab01");
}

TEST(HexAusgabe, LongOutputArrivesWholeAndInOrder) {
    std::vector<std::uint8_t> bytes(100000);
    std::string soll;
    const char* z = "0123456789ABCDEF";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7);
        soll += z[bytes[i] >> 4];
        soll += z[bytes[i] & 15];
    }
    std::string lang(70000, 'x');
    std::ostringstream o;
    {
        HexAusgabe aus(o, true);
        aus.bytes(bytes.data(), bytes.size());
        aus.text(lang);
        aus.leere();
        o << "|";  // after leere the stream may be written directly
        aus.zeichen('!');
    }
    EXPECT_EQ(o.str(), soll + lang + "|!");
}

TEST(HexText, WidthCaseAndTheSixteenDigitCap) {
    EXPECT_EQ(hex::text(0), "0");
    EXPECT_EQ(hex::text(0xAB, 4, false), "00ab");
    EXPECT_EQ(hex::text(0xFFFFFFFFFFFFFFFFull, 20), "FFFFFFFFFFFFFFFF");
}
