#include "foundation/Datei.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "foundation/DateiName.h"
#include "support/Meldungsaufnahme.h"

namespace fs = std::filesystem;

TEST(DateiName, SplitsHostAndForeignStyles) {
    // whole, path, name, extension
    const char* const faelle[][4] = {
        {"C:\\dir\\a.b.c", "C:\\dir\\", "a.b", "c"},
        {"DISK:[DIR]FILE.DAT;3", "DISK:[DIR]", "FILE", "DAT"},
        {"FILE.;3", "", "FILE", ""},
        {".profile", "", ".profile", ""},
        {"a/b.c\\d", "a/b.c\\", "d", ""},
        {"DEV>sub>f.x", "DEV>sub>", "f", "x"},
        {"trailing/", "trailing/", "", ""},
        {"", "", "", ""},
    };
    for (const auto& f : faelle) {
        const DateiName d(f[0]);
        EXPECT_EQ(d.lieferePfad(), f[1]) << f[0];
        EXPECT_EQ(d.liefereName(), f[2]) << f[0];
        EXPECT_EQ(d.liefereExtension(), f[3]) << f[0];
        EXPECT_EQ(d.liefereGanz(), f[0]) << "the whole text stays as given";
    }
}

class DateiTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        verzeichnis = fs::temp_directory_path() /
                      ("kiv_datei_" + std::string(info->name()) + "_" + std::to_string(::getpid()));
        fs::remove_all(verzeichnis);
        fs::create_directories(verzeichnis);
    }
    void TearDown() override {
        std::error_code fehler;
        fs::permissions(verzeichnis / "fest.txt", fs::perms::owner_all, fehler);
        fs::remove_all(verzeichnis, fehler);
    }
    std::string pfad(const char* name) const { return (verzeichnis / name).string(); }
    void schreibe(const char* name, const char* inhalt) const { std::ofstream(pfad(name)) << inhalt; }
    std::string lies(const char* name) const {
        std::ifstream gelesen(pfad(name));
        return std::string(std::istreambuf_iterator<char>(gelesen), std::istreambuf_iterator<char>());
    }

    fs::path verzeichnis;
    Meldungsaufnahme auf;
};

// Message texts are proven end to end; output replaces the file only when
// closed, and leaves no temporary file.
TEST_F(DateiTest, OpenReadWriteAndClose) {
    schreibe("ein.txt", "A\r\nB");
    IDatei ein(DateiName(pfad("ein.txt").c_str()));
    EXPECT_EQ(ein.oeffne(), 1);
    std::string inhalt(4, '\0');
    ein.liefereStrom()->read(inhalt.data(), 4);
    EXPECT_EQ(inhalt, "A\r\nB");  // binary: the carriage return arrives
    EXPECT_EQ(ein.schliesse(), 1);
    EXPECT_EQ(ein.schliesse(), 1);
    EXPECT_EQ(auf.anzahl(), 2u);  // opened, closed: once each

    schreibe("aus.txt", "alt");
    {
        ODatei aus(DateiName(pfad("aus.txt").c_str()));
        EXPECT_EQ(aus.oeffne(), 1);
        *aus.liefereStrom() << "neu";
    }
    EXPECT_EQ(lies("aus.txt"), "alt");
    ODatei zweite(DateiName(pfad("aus.txt").c_str()));
    *zweite.liefereStrom() << "neu";
    EXPECT_EQ(zweite.schliesse(), 1);
    EXPECT_EQ(lies("aus.txt"), "neu");
    EXPECT_EQ(std::distance(fs::directory_iterator(verzeichnis), fs::directory_iterator()), 2);

    // Devices are written in place: the name (here a link to one) must
    // survive as it was, where a replacing rename would leave a regular file.
    fs::create_symlink("/dev/null", pfad("nichts"));
    SichereAusgabe geraet(String(pfad("nichts").c_str()));
    ASSERT_TRUE(geraet.offen());
    geraet.strom() << "weg";
    EXPECT_EQ(geraet.beende(), 0);
    EXPECT_TRUE(fs::is_symlink(pfad("nichts")));
}

// The probe never creates nor removes a file.
TEST_F(DateiTest, CheckBeforeWritingAndDeletion) {
    schreibe("da.txt", "x");
    schreibe("fest.txt", "x");
    fs::permissions(pfad("fest.txt"), fs::perms::owner_read);
    const std::tuple<const char*, Schreibmodus, const char*> faelle[] = {
        {"neu.txt", Schreibmodus::neu, ""},
        {"da.txt", Schreibmodus::neu, "FILE-EXIST"},
        {"da.txt", Schreibmodus::ueberschreiben, ""},
        {"fest.txt", Schreibmodus::ueberschreiben, "FILE-READONLY"},
    };
    for (const auto& [name, modus, label] : faelle) {
        auf.leere();
        EXPECT_EQ(pruefeZielDatei(DateiName(pfad(name).c_str()), modus, "f"), *label ? 0 : 1) << name;
        EXPECT_EQ(auf.letzte().label, label) << name;
    }
    EXPECT_FALSE(fs::exists(pfad("neu.txt")));
    EXPECT_TRUE(fs::exists(pfad("da.txt")));
    EXPECT_EQ(loescheDatei(pfad("da.txt").c_str()), 0);
    EXPECT_FALSE(fs::exists(pfad("da.txt")));
    errno = 0;
    EXPECT_EQ(loescheDatei(pfad("da.txt").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);
}
