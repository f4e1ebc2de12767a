// Reading a grammar file: lines joined without separator, 511-byte pieces,
// the first empty line as the end, bare names beside the program.
#include <filesystem>

#include "TransTestHilfe.h"
#include "foundation/DateiName.h"

namespace transtest {
namespace {

class GrammatikLesenTest : public TransTest {
protected:
    std::string lies(const std::string& text) {
        datei("gt_gram.txt", text);
        std::string g = "unberuehrt";
        MeldungsFaenger still;
        EXPECT_EQ(Compiler::leseGrammatik("./gt_gram.txt", g), 1);
        return g;
    }
};

TEST_F(GrammatikLesenTest, LinesAreJoinedAndLineEndsDropped) {
    // A split inside a name gives the same grammar as one line.
    EXPECT_EQ(lies("(<zei\nle>\\n)*\n#<zeile>=x\n"), "(<zeile>\\n)*#<zeile>=x");
    EXPECT_EQ(lies("a\r\nb\r\n"), "ab");
    // Only a carriage return at the line's end goes.
    EXPECT_EQ(lies("a\rb\n"), "a\rb");
    // A last line without a line end keeps all its bytes.
    EXPECT_EQ(lies("ab\ncd"), "abcd");
    EXPECT_EQ(lies(""), "");
}

TEST_F(GrammatikLesenTest, FirstEmptyLineEndsTheGrammar) {
    EXPECT_EQ(lies("a\n\n#<x>=y\n"), "a");
    EXPECT_EQ(lies("a\n\r\nb\n"), "a");
    EXPECT_EQ(lies("\nb\n"), "");
}

TEST_F(GrammatikLesenTest, LongLinesComeInPiecesThatLoseTheirLastByte) {
    std::string zeile;
    for (int i = 0; i < 600; ++i) zeile += static_cast<char>('a' + i % 26);
    // 511 bytes are read and the last of them goes; the rest is a line of its own.
    EXPECT_EQ(lies(zeile + "\nz\n"), zeile.substr(0, 510) + zeile.substr(511) + "z");
    // A line of exactly 511 bytes loses its last byte, and its line feed
    // then reads as an empty line that ends the grammar.
    EXPECT_EQ(lies(zeile.substr(0, 511) + "\nz\n"), zeile.substr(0, 510));
    EXPECT_EQ(lies(zeile.substr(0, 510) + "\nz\n"), zeile.substr(0, 510) + "z");
}

TEST_F(GrammatikLesenTest, TheFileWrapperReports) {
    datei("gt_gram.txt", "a\n");
    MeldungsFaenger f;
    std::string g;
    ASSERT_EQ(Compiler::leseGrammatik("./gt_gram.txt", g), 1);
    EXPECT_EQ(labels(f), "");
    EXPECT_EQ(f.anzahl(), 2u);   // opened and closed
    f.leere();
    EXPECT_EQ(Compiler::leseGrammatik("./gt_fehlt.txt", g), 0);
    ASSERT_EQ(f.anzahl(), 1u);
    EXPECT_EQ(f.letzte().label, "FILEOPENERROR");
    EXPECT_EQ(f.letzte().level, 'E');
    EXPECT_EQ(f.letzte().detail, "./gt_fehlt.txt: No such file or directory");
}

TEST_F(GrammatikLesenTest, BareNameIsLookedForBesideTheProgram) {
    namespace fs = std::filesystem;
    const fs::path verzeichnis = fs::temp_directory_path() / "gt_programm";
    fs::create_directories(verzeichnis);
    const std::string daneben = (verzeichnis / "gt_bare.txt").string();
    datei(daneben, "beside\n");
    datei("gt_bare.txt", "here\n");
    const DateiName alt = programmDatei;
    programmDatei = String((verzeichnis / "kiv").string());

    MeldungsFaenger f;
    std::string g;
    EXPECT_EQ(Compiler::leseGrammatik("gt_bare.txt", g), 1);
    EXPECT_EQ(g, "beside");
    EXPECT_EQ(f.meldungen()[0].detail, daneben);
    // A name with a directory is taken as it is.
    EXPECT_EQ(Compiler::leseGrammatik("./gt_bare.txt", g), 1);
    EXPECT_EQ(g, "here");

    programmDatei = alt;
    fs::remove_all(verzeichnis);
}

}  // namespace
}  // namespace transtest
