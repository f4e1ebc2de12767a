// Image files that go wrong, where a console run shows too little: the
// context line cleared behind each file, long lines cut in pieces, and
// random input that must neither crash nor hang a reader.
#include <random>

#include "Meldungen.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"

namespace {

using Labels = std::vector<std::string>;

class EpromDateiFehlerTest : public bildtest::MitMeldungen {
protected:
    int liesIntel(Eprom& e, const std::string& inhalt) {
        return EpromDateiIntel(schreibeDatei("f.hex", inhalt).c_str(), 16).lies(e, nullptr, nullptr, nullptr);
    }
};

TEST_F(EpromDateiFehlerTest, TheContextLineIsClearedBehindEveryFile) {
    Eprom e;
    EXPECT_EQ(liesIntel(e, ":0100100042AD\n"), 1);
    EXPECT_EQ(aufnahme.labels(), Labels{"HEXFILE-END-RECORD-MISSING"});
    EXPECT_EQ(e.liefereAnzSchr(0x10), 1);
    EXPECT_EQ(Fehler::zusatzZeile, nullptr);
    EXPECT_EQ(EpromDateiIntel("image_test_gibt_es_nicht.hex", 16).lies(e, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(Fehler::zusatzZeile, nullptr);
}

TEST_F(EpromDateiFehlerTest, LongLinesComeInPiecesOf132) {
    Eprom e;
    std::string lang = ":40000000" + std::string(128, '0') + "C0";  // 139 characters
    std::string genau = ":" + std::string(131, '0');                // 132, one piece
    liesIntel(e, lang + "\n" + genau + "\n:00000001FF");
    EXPECT_EQ(aufnahme.labels(),
              (Labels{"HEXFILE-BYTECOUNT", "HEXFILE-FMT", "HEXFILE-BYTECOUNT", "HEXFILE-FMT-COUNT"}));
    EXPECT_EQ(aufnahme.mit("HEXFILE-FMT")[0].detail, "00000C0");
    const std::string zaehler = aufnahme.mit("HEXFILE-BYTECOUNT")[0].detail;
    EXPECT_EQ(zaehler.substr(zaehler.find('\n')), "\n    3c != 40");
}

TEST_F(EpromDateiFehlerTest, RandomInputNeitherCrashesNorHangs) {
    std::mt19937 z(99);
    const std::string alphabet = ":S0123456789ABCDEFabcdef \t\r\n\n\n\0xyz";
    for (int runde = 0; runde < 60; ++runde) {
        std::string inhalt;
        std::size_t n = z() % 4000;
        bool text = runde % 2 == 0;
        for (std::size_t i = 0; i < n; ++i)
            inhalt += text ? alphabet[z() % alphabet.size()] : static_cast<char>(z());
        // Some plausible lines among the noise.
        if (runde % 3 == 0) inhalt = ":020000040100F9\n:0100100042AD\nS2050100104295\n" + inhalt;
        std::string name = schreibeDatei("zufall", inhalt);
        Eprom a, b, c;
        EpromDateiIntel(name.c_str(), 16).lies(a, nullptr, nullptr, nullptr);
        EpromDateiMotorola(name.c_str(), 16).lies(b, nullptr, nullptr, nullptr);
        adrInteger start = z(), ext = z() % 8;
        EpromDateiBinaer(name.c_str()).lies(c, &start, nullptr, &ext);
        EXPECT_EQ(Fehler::zusatzZeile, nullptr);
    }
    aufnahme.leere();
    Fehler("HEXFILE-FMT", "t", "", 'W');
    EXPECT_EQ(aufnahme.letzte().art, 0) << "no cap left behind";
}

}  // namespace
