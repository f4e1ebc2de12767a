// Deterministic random inputs through the fuzz entry: grammars made of the
// notation's special bytes, short subjects, all buffer options.
#include <gtest/gtest.h>

#include <random>

#include "../../../fuzz/mmparse_fuzz.cpp"

namespace {

TEST(MmparseFuzz, RandomGrammarsKeepThePromises) {
    static const char alphabet[] = "ab()|*+/!?^@[]-{}<>.%#=\\x0$_ nab(|)*";
    std::mt19937 zufall(4711);
    for (int fall = 0; fall < 20000; ++fall) {
        std::string eingabe;
        int g = static_cast<int>(zufall() % 14);
        for (int i = 0; i < g; ++i) eingabe += alphabet[zufall() % (sizeof alphabet - 1)];
        eingabe += '\0';
        eingabe += static_cast<char>(zufall() % 256);
        int s = static_cast<int>(zufall() % 10);
        for (int i = 0; i < s; ++i) eingabe += "ab\n{"[zufall() % 4];
        ASSERT_TRUE(mmparseFuzzEinmal(reinterpret_cast<const std::uint8_t*>(eingabe.data()), eingabe.size()))
            << "input: " << eingabe;
    }
}

}  // namespace
