// Image files that go wrong: every message of the readers and writers with
// its exact text, the cap of five line messages with the closing count, the
// context line, what stays on disk, and random input that must neither
// crash nor hang a reader.
#include <random>

#include "Meldungen.h"
#include "image/Eprom.h"
#include "image/EpromDatei.h"

using bildtest::Meldung;
using bildtest::MitMeldungen;

namespace {

using Labels = std::vector<std::string>;

class EpromDateiFehlerTest : public MitMeldungen {
protected:
    int liesIntel(Eprom& e, const std::string& inhalt) {
        return EpromDateiIntel(schreibeDatei("f.hex", inhalt).c_str(), 16).lies(e, nullptr, nullptr, nullptr);
    }
    int liesMotorola(Eprom& e, const std::string& inhalt) {
        return EpromDateiMotorola(schreibeDatei("f.s", inhalt).c_str(), 16)
            .lies(e, nullptr, nullptr, nullptr);
    }
};

TEST_F(EpromDateiFehlerTest, EndRecordAndMissingFile) {
    Eprom e;
    EXPECT_EQ(liesIntel(e, ":00000001FF\n"), 1);
    EXPECT_EQ(labels(), Labels{});
    EXPECT_EQ(e.liefereAnfAdr(), 0xFFFFFFFFu);
    EXPECT_EQ(Fehler::zusatzZeile, nullptr) << "the context line is cleared";

    EXPECT_EQ(liesIntel(e, ":0100100042AD\n"), 1);
    EXPECT_EQ(labels(), Labels{"HEXFILE-END-RECORD-MISSING"});
    EXPECT_EQ(letzte().detail, "");
    EXPECT_EQ(letzte().funktion, "EpromDateiIntel::lies");
    EXPECT_EQ(e.liefereAnzSchr(0x10), 1);

    meldungen.clear();
    EXPECT_EQ(EpromDateiIntel("image_test_gibt_es_nicht.hex", 16).lies(e, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(labels(), Labels{"FILEOPENERROR"});
    EXPECT_EQ(Fehler::zusatzZeile, nullptr);
}

TEST_F(EpromDateiFehlerTest, IntelBadLinesAreCountedWithContextLine) {
    Eprom e;
    std::string n =
        schreibeDatei("ctx.hex", ":0100100042AD\n\n:00000003FD\n:0100100042AE\n:00000001FF\n\nmehr\n");
    EXPECT_EQ(EpromDateiIntel(n.c_str(), 16).lies(e, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(labels(), (Labels{"HEXFILE-FMT", "HEXFILE-FMT", "HEXFILE-CHKSUM", "HEXFILE-TEXT-BEHIND-END",
                                "HEXFILE-FMT-COUNT"}));
    auto fmt = mit("HEXFILE-FMT");
    EXPECT_EQ(fmt[0].detail, "") << "the empty line";
    EXPECT_EQ(fmt[1].detail, ":00000003FD") << "type 03 is not decoded";
    EXPECT_EQ(fmt[0].level, 'W');
    EXPECT_EQ(mit("HEXFILE-TEXT-BEHIND-END")[0].detail, "") << "only the first line behind the end";
    EXPECT_EQ(mit("HEXFILE-FMT-COUNT")[0].detail, "COUNT: 2") << "a damaged data line is not counted";
    EXPECT_NE(ausgabe.find("| %KIV-W-HEXFILE-FMT\n|   " + n + ":  Zeile 3\n|   :00000003FD \n"),
              std::string::npos)
        << ausgabe;
    EXPECT_NE(ausgabe.find("| %KIV-W-HEXFILE-TEXT-BEHIND-END\n|   " + n + ":  Zeile 6\n"), std::string::npos);
}

TEST_F(EpromDateiFehlerTest, LineMessagesAreCappedAtFivePerFile) {
    Eprom e;
    std::string inhalt;
    for (int i = 0; i < 7; ++i) inhalt += "x" + std::to_string(i) + "\n";
    inhalt += ":00000001FF\n";
    liesIntel(e, inhalt);
    auto fmt = mit("HEXFILE-FMT");
    ASSERT_EQ(fmt.size(), 7u) << "all are counted";
    for (int i = 0; i < 5; ++i) EXPECT_EQ(fmt[static_cast<std::size_t>(i)].art, 0);
    EXPECT_EQ(fmt[5].art, 1);
    EXPECT_EQ(fmt[6].art, 1);
    ASSERT_EQ(mit("HEXFILE-FMT-COUNT").size(), 1u);
    EXPECT_EQ(mit("HEXFILE-FMT-COUNT")[0].detail, "COUNT: 7");
    EXPECT_EQ(mit("HEXFILE-FMT-COUNT")[0].art, 0);

    // The cap is lifted behind the file, and the next file starts afresh.
    meldungen.clear();
    Fehler("HEXFILE-FMT", "t", "", 'W');
    EXPECT_EQ(meldungen.back().art, 0);
    meldungen.clear();
    liesMotorola(e, "a\nb\nc\nd\ne\nf\n");
    EXPECT_EQ(mit("HEXFILE-FMT")[4].art, 0);
    EXPECT_EQ(mit("HEXFILE-FMT")[5].art, 1);
}

TEST_F(EpromDateiFehlerTest, LongLinesComeInPiecesOf132) {
    Eprom e;
    std::string lang = ":40000000" + std::string(128, '0') + "C0";  // 139 characters
    std::string genau = ":" + std::string(131, '0');                // 132, one piece
    liesIntel(e, lang + "\n" + genau + "\n:00000001FF");
    EXPECT_EQ(labels(),
              (Labels{"HEXFILE-BYTECOUNT", "HEXFILE-FMT", "HEXFILE-BYTECOUNT", "HEXFILE-FMT-COUNT"}));
    EXPECT_EQ(mit("HEXFILE-FMT")[0].detail, "00000C0");
    EXPECT_EQ(mit("HEXFILE-BYTECOUNT")[0].detail.substr(mit("HEXFILE-BYTECOUNT")[0].detail.find('\n')),
              "\n    3c != 40");
}

TEST_F(EpromDateiFehlerTest, MotorolaLineMessages) {
    Eprom e;
    EXPECT_EQ(liesMotorola(e, "S00300000F\nS5030001FB\nS1\nS104000041BB\nS6030000FC\nS104001041AA\n"), 1);
    EXPECT_EQ(labels(), (Labels{"HEXFILE-CHKSUM",                 // bad S0: its own message only
                                "HEXFILE-FMT",                    // S5
                                "HEXFILE-FMT",                    // too short
                                "HEXFILE-CHKSUM", "HEXFILE-FMT",  // bad data: two messages
                                "HEXFILE-FMT", "HEXFILE-FMT",     // S6 behind it: status stays 0
                                "HEXFILE-FMT-COUNT"}));
    EXPECT_EQ(mit("HEXFILE-FMT")[0].detail, "S5030001FB");
    EXPECT_EQ(mit("HEXFILE-FMT")[0].funktion, "EpromDateiMotorola::lies");
    EXPECT_EQ(mit("HEXFILE-FMT-COUNT")[0].detail, "COUNT: 5");
    EXPECT_EQ(e.liefereAnzSchr(0x10), 1) << "reading went on";
}

TEST_F(EpromDateiFehlerTest, BinaryReadMessages) {
    std::string n = schreibeDatei("vier.bin", std::string("\x01\x02\x03\x04", 4));
    Eprom e;
    adrInteger vier = 4, drei = 3;
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).lies(e, nullptr, nullptr, &vier), 0);
    EXPECT_EQ(labels(), Labels{"EXTADDRES-NOT-VALID"});
    EXPECT_EQ(letzte().detail, "4");
    EXPECT_EQ(letzte().funktion, "EpromDateiBinaer::lies");
    EXPECT_EQ(e.liefereAnfAdr(), 0xFFFFFFFFu) << "nothing stored";
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).lies(e, nullptr, nullptr, &drei), 1);
    EXPECT_EQ(byteAn(e, 0), 4);
    EXPECT_EQ(e.liefereEndAdr(), 0u);

    meldungen.clear();
    Eprom f;
    adrInteger start = 0x10, ende = 0x20;
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).lies(f, &start, &ende, nullptr), 0);
    EXPECT_EQ(labels(), Labels{"NOT-ENOUGH-DATA"});
    EXPECT_EQ(letzte().detail, "20 > 13");
    EXPECT_EQ(f.liefereEndAdr(), 0x13u) << "the bytes stored so far stay";

    meldungen.clear();
    Eprom fest;
    fest.definiereBereich(0, 1);
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).lies(fest, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(labels(), Labels{"EPR-ADR-NOT-IN-EPROM"});
    EXPECT_EQ(letzte().funktion, "Eprom::setzeByteMit");
}

TEST_F(EpromDateiFehlerTest, BinaryWriteWithGapRemovesTheFile) {
    Eprom e;
    e.setzeByte(0x100, 1);
    e.setzeByte(0x103, 1);
    std::string n = datei("luecke.bin");
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).schreibe(e, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(labels(), (Labels{"GAP-IN-EPROM", "INVALID-DATA-FILE_REMOVED"}));
    EXPECT_EQ(letzte(1).detail, "100 - 103");
    EXPECT_EQ(letzte().detail, n);
    EXPECT_EQ(letzte().funktion, "EpromDateiBinaer::schreibe ");
    EXPECT_FALSE(gibtEs(n));

    meldungen.clear();
    std::ostringstream o;
    EXPECT_EQ(EpromDateiBinaer(n.c_str()).schreibe(e, o, 0, 1, nullptr), 0);
    EXPECT_EQ(labels(), Labels{"FILESTREAM-NEEDED"});
    EXPECT_EQ(letzte().detail, "ostream");
}

TEST_F(EpromDateiFehlerTest, RangeFaultsOfWriters) {
    Eprom leer;
    std::string n = datei("leer.hex");
    EXPECT_EQ(EpromDateiIntel(n.c_str(), 16).schreibe(leer, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(labels(), Labels{"HEXFILE-ADR"});
    EXPECT_EQ(letzte().detail, "ffffffff > 0\n");
    EXPECT_EQ(letzte().funktion, "EpromDatei::schreibe");
    EXPECT_FALSE(gibtEs(n)) << "nothing stays behind";

    meldungen.clear();
    Eprom e;
    e.setzeByte(0x100, 1);
    e.setzeByte(0x1FF, 1);
    adrInteger start = 0xFF, ende = 0x300;
    EpromDateiMotorola m(n.c_str(), 16);
    EXPECT_EQ(m.schreibe(e, &start, &ende, nullptr), 0);
    EXPECT_EQ(letzte().detail, "ff < [100 ... 1ff]\n[100 ... 1ff] < 300\n");
    adrInteger s2 = 0x180, e2 = 0x170;
    m.schreibe(e, &s2, &e2, nullptr);
    EXPECT_EQ(letzte().detail, "180 > 170\n");

    meldungen.clear();
    std::string b = datei("leer.bin");
    EXPECT_EQ(EpromDateiBinaer(b.c_str()).schreibe(leer, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(labels(), (Labels{"HEXFILE-ADR", "INVALID-DATA-FILE_REMOVED"}));
    EXPECT_EQ(letzte(1).funktion, "EpromDateiBinaer::schreibe");
    EXPECT_FALSE(gibtEs(b));
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
    meldungen.clear();
    Fehler("HEXFILE-FMT", "t", "", 'W');
    EXPECT_EQ(meldungen.back().art, 0) << "no cap left behind";
}

}  // namespace
