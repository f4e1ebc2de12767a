#include "foundation/Hex.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

TEST(HexAusgabe, FormatsLikeStreamInsertionAndLongOutputArrivesInOrder) {
    std::vector<std::uint8_t> bytes(100000);
    std::ostringstream soll;
    soll << std::hex << std::setfill('0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7);
        soll << std::setw(2) << unsigned{bytes[i]};
    }
    const std::string lang(70000, 'x');
    std::ostringstream o;
    {
        HexAusgabe aus(o);  // a stream without uppercase gives small letters
        aus.zahl(0xBEEF, 6);
        aus.zahl(0x123456789ABCDEFull, 2);
        aus.zahl(0, 0);
        aus.dezimal(18446744073709551615ull);
        aus.bytes(bytes.data(), bytes.size());
        aus.text(lang);
        aus.leere();
        o << "|";  // after leere the stream may be written directly
        aus.zeichen('!');
    }
    EXPECT_EQ(o.str(), "00beef123456789abcdef018446744073709551615" + soll.str() + lang + "|!");
    std::ostringstream gross;
    HexAusgabe(gross << std::uppercase).byte(0x0F);
    EXPECT_EQ(gross.str(), "0F");
    EXPECT_EQ(hex::text(0xAB, 4, false), "00ab");
    EXPECT_EQ(hex::text(0xFFFFFFFFFFFFFFFFull, 20), "FFFFFFFFFFFFFFFF");  // at most sixteen digits
}
