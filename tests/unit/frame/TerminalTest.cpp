// The terminal side of the prompt: charset conversion, the output filter,
// and completion read from the live command tables.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "commands/KivObjektTestUmgebung.h"
#include "frame/Vervollstaendigung.h"
#include "frame/Zeichensatz.h"

namespace {

TEST(Zeichensatz, UmsetzungInBeideRichtungen) {
    struct Fall {
        std::string latin1;
        bool steuerPunkte;
        std::string utf8;
    };
    const std::vector<Fall> faelle = {
        {"abc\n\t", true, "abc\n\t"},
        {"\xDC"
         "berpr\xFC"
         "fen",
         false,
         "\xC3\x9C"
         "berpr\xC3\xBC"
         "fen"},
        {"\x7F\x80\x9F\xA0\xFF", true, "...\xC2\xA0\xC3\xBF"},
        {"\x7F\x85", false, "\x7F\xC2\x85"},
    };
    for (const Fall& f : faelle) EXPECT_EQ(latin1ZuUtf8(f.latin1, f.steuerPunkte), f.utf8) << f.latin1;

    std::string alle;
    for (int c = 1; c < 256; ++c) alle += static_cast<char>(c);
    EXPECT_EQ(utf8ZuLatin1(latin1ZuUtf8(alle)), alle);
    // Beyond Latin-1, broken and overlong sequences each become one "?".
    EXPECT_EQ(utf8ZuLatin1("\xE2\x82\xAC|\xC3|\x80|\xC1\x81|\xF0\x9F\x98\x80|\xFF"), "?|?|?|?|?|?");
}

TEST(Zeichensatz, FilterSetztBloeckeUndEinzelneBytesUm) {
    std::stringbuf ziel;
    TerminalFilter filter(&ziel);
    std::ostream strom(&filter);
    std::string gross(5000, 'x');
    gross[4000] = '\xE4';
    strom << "Gr\xFC\xDF" << 'e' << '\x85' << gross << std::flush;
    EXPECT_EQ(ziel.str(),
              "Gr\xC3\xBC\xC3\x9F"
              "e." +
                  gross.substr(0, 4000) + "\xC3\xA4" + gross.substr(4001));

    // Installed and taken away again: the stream gets its buffer back.
    std::ostringstream terminal;
    std::streambuf* vorher = terminal.rdbuf();
    {
        TerminalFilterAnschluss anschluss(terminal);
        terminal << "\xC4";
    }
    EXPECT_EQ(terminal.rdbuf(), vorher);
    EXPECT_EQ(terminal.str(), "\xC3\x84");
}

class Vervollstaendigen : public KivUmgebung {
protected:
    void SetUp() override {
        KivUmgebung::SetUp();
        schreibeDatei("bild.hex", ":0100000031CE\n:00000001FF\n");
        std::filesystem::create_directories(pfad("unter"));
        ASSERT_EQ(fuehre("oeffne(, " + pfad("bild.hex") + ")"), 1) << labels();
    }
    std::vector<std::string> kandidaten(const std::string& zeile) {
        return vervollstaendige(zeile).kandidaten;
    }
    using V = std::vector<std::string>;
};

TEST_F(Vervollstaendigen, NachPlatzImKommando) {
    const std::string d = pfad("");
    const std::vector<std::pair<std::string, V>> faelle = {
        // Command words of the image, keywords and image names.
        {"anz", {"anzeige", "anzeigeImFehlerfall", "anzeigeKdoObjekte"}},
        {"  setz", {"setze"}},
        {"bi", {"bild_hex:"}},
        {"bild_hex: sw", {"swap"}},
        {"x = lie", {"liefereName"}},
        {"EXI", {"exit"}},
        // Arguments by the signature: enumeration, Bool, image, file.
        {"schreibe(Motorola_S", {"Motorola_S1S9", "Motorola_S2S8", "Motorola_S3S7"}},
        {"anzeige(/, /, ", {"ascii", "hex"}},
        {"lies(Intel, a, /, /, /, /, y", {"YES"}},
        {"bild_hex: kopiere(/, /, /, b", {"bild_hex"}},
        {"lies(Intel, " + d + "b", {d + "bild.hex"}},
        {"lies(Intel, " + d + "u", {d + "unter/"}},
        // The built-in statements.
        {"imFehlerfall(\"X\", ret", {"return", "returnMain"}},
        {"umsetze(a, s", {"SYSOSP"}},
        {"ausfuehre(" + d + "bi", {d + "bild.hex"}},
        // Nothing: inside a quoted text, behind the list, past the last
        // argument, in a comment, an unknown command or object.
        {"suche(\"ab", {}},
        {"setze(1, 2, 3) a", {}},
        {"setze(1, 2, 3, ", {}},
        {"info // anz", {}},
        {"gibtsNicht(", {}},
        {"gibtsNicht: anz", {}},
    };
    for (const auto& [zeile, erwartet] : faelle) EXPECT_EQ(kandidaten(zeile), erwartet) << zeile;
    EXPECT_EQ(vervollstaendige("lies(Intel,  xy").anfang, 13u);
    zurWurzel();
    EXPECT_EQ(kandidaten("oeffne(Mot"), V{"Motorola"});
    EXPECT_EQ(kandidaten("schliesse(b"), V{"bild_hex"});
    EXPECT_EQ(kandidaten("anzeige"), (V{"anzeigeImFehlerfall", "anzeigeKdoObjekte"}));
}

TEST_F(Vervollstaendigen, EinNeuesKommandoDerTabelleOhneWeiteres) {
    kivEpromListe->fuegeEin(new KdoKommando("zzNeu", "Enum{eins,zwei} wahl", nullptr));
    EXPECT_EQ(kandidaten("zzN"), V{"zzNeu"});
    EXPECT_EQ(kandidaten("zzNeu(z"), V{"zwei"});
}

TEST(GemeinsamerAnfang, OhneGrossKlein) {
    EXPECT_EQ(gemeinsamerAnfang({"anzeige", "ANZEIGEkdo"}), "anzeige");
    EXPECT_EQ(gemeinsamerAnfang({"return", "returnMain"}), "return");
    EXPECT_EQ(gemeinsamerAnfang({}), "");
}

}  // namespace
