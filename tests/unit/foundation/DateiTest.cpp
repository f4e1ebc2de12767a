// File names in host and foreign styles, the open/close messages of the file
// wrappers, deletion and the check before writing a file.
#include "foundation/Datei.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

#include "MeldungsFaenger.h"
#include "foundation/DateiName.h"

namespace fs = std::filesystem;

TEST(DateiName, SplitsHostAndForeignStyles) {
    struct Fall {
        const char* ganz;
        const char* pfad;
        const char* name;
        const char* extension;
    };
    const Fall faelle[] = {
        {"C:\\dir\\a.b.c", "C:\\dir\\", "a.b", "c"},
        {"DISK:[DIR]FILE.DAT;3", "DISK:[DIR]", "FILE", "DAT"},
        {".profile", "", ".profile", ""},
        {"name.", "", "name", ""},
        {"x.x", "", "x", "x"},
        {"/usr/lib/kiv/eprom.hex", "/usr/lib/kiv/", "eprom", "hex"},
        {"dir/.hidden", "dir/", ".hidden", ""},
        {"a/b.c\\d", "a/b.c\\", "d", ""},
        {"DEV>sub>f.x", "DEV>sub>", "f", "x"},
        {"trailing/", "trailing/", "", ""},
        {"", "", "", ""},
    };
    for (const Fall& f : faelle) {
        const DateiName d(f.ganz);
        EXPECT_EQ(d.lieferePfad(), f.pfad) << f.ganz;
        EXPECT_EQ(d.liefereName(), f.name) << f.ganz;
        EXPECT_EQ(d.liefereExtension(), f.extension) << f.ganz;
        EXPECT_EQ(d.liefereGanz(), f.ganz) << "the whole text stays as given";
    }
}

TEST(DateiName, ChangingAPartRebuildsTheWhole) {
    DateiName d("eprom.hex");
    d.setzeExtension("bin");
    EXPECT_EQ(d.liefereGanz(), "eprom.bin");
    d.setzeExtension("");
    EXPECT_EQ(d.liefereGanz(), "eprom.");  // the point stays
    DateiName v("DISK:[DIR]FILE.DAT;3");
    v.setzeName("NEU");
    EXPECT_EQ(v.liefereGanz(), "DISK:[DIR]NEU.DAT");

    d = String("a/b.c");
    EXPECT_EQ(d.liefereName(), "b");
    std::ostringstream aus;
    aus << d;
    EXPECT_EQ(aus.str(), "a/b.c");
}

TEST(DateiName, SystemFilesAreLookedForBesideTheProgram) {
    const DateiName alt = programmDatei;
    programmDatei = String("/opt/kiv/kiv");
    EXPECT_EQ(DateiName("gram.gra").vervollstaendigt().liefereGanz(), "/opt/kiv/gram.gra");
    EXPECT_EQ(DateiName("sub/gram.gra").vervollstaendigt().liefereGanz(), "sub/gram.gra");
    programmDatei = String("kiv");
    EXPECT_EQ(DateiName("gram.gra").vervollstaendigt().liefereGanz(), "gram.gra");
    programmDatei = alt;
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

    fs::path verzeichnis;
    MeldungsFaenger faenger;
};

// The texts of these messages are proven by the end-to-end cases; here the
// functions they name, binary reading, and that each is raised once.
TEST_F(DateiTest, OpenAndCloseReportOnce) {
    auto gefangen = [&] {
        std::string t;
        for (const auto& m : faenger.meldungen()) t += m.label + "/" + m.funktion + "/" + m.level + " ";
        return t;
    };
    schreibe("ein.txt", "A\r\nB");
    IDatei ein(DateiName(pfad("ein.txt").c_str()));
    EXPECT_EQ(ein.oeffne(), 1);
    EXPECT_EQ(faenger.letzte().detail, pfad("ein.txt"));
    std::string inhalt(4, '\0');
    ein.liefereStrom()->read(inhalt.data(), 4);
    EXPECT_EQ(inhalt, "A\r\nB");  // binary: the carriage return arrives
    EXPECT_EQ(ein.schliesse(), 1);
    EXPECT_EQ(ein.liefereStrom(), nullptr);
    EXPECT_EQ(ein.schliesse(), 1);
    EXPECT_EQ(gefangen(), "INPUTFILEOPENED/IDatei::oeffne/S FILECLOSED/IDatei::schliesse /S ");

    faenger.leere();
    IDatei fehlt(DateiName(pfad("fehlt.txt").c_str()));
    EXPECT_EQ(fehlt.oeffne(), 0);
    EXPECT_EQ(gefangen(), "FILEOPENERROR/IDatei::oeffne/E ");
    EXPECT_EQ(faenger.letzte().detail, pfad("fehlt.txt") + ": No such file or directory");
    EXPECT_FALSE(fs::exists(pfad("fehlt.txt")));

    // Output replaces the file only when closed; the destructor throws the
    // new text away without a word and leaves no temporary file.
    faenger.leere();
    schreibe("aus.txt", "alter langer Inhalt");
    const auto ausText = [&] {
        std::ifstream gelesen(pfad("aus.txt"));
        return std::string(std::istreambuf_iterator<char>(gelesen), std::istreambuf_iterator<char>());
    };
    {
        ODatei aus(DateiName(pfad("aus.txt").c_str()));
        EXPECT_EQ(aus.oeffne(), 1);
        *aus.liefereStrom() << "neu";
    }
    EXPECT_EQ(ausText(), "alter langer Inhalt");
    ODatei zweite(DateiName(pfad("aus.txt").c_str()));
    *zweite.liefereStrom() << "neu";
    EXPECT_EQ(zweite.schliesse(), 1);
    EXPECT_EQ(ausText(), "neu");
    for (const auto& eintrag : fs::directory_iterator(verzeichnis))
        EXPECT_EQ(eintrag.path().filename().string().find(".kiv-"), std::string::npos) << eintrag.path();
    ODatei unmoeglich(DateiName(pfad("nichtda/x.txt").c_str()));
    EXPECT_EQ(unmoeglich.oeffne(), 0);
    EXPECT_EQ(gefangen(),
              "OUTPUTFILEOPENED/ODatei::oeffne/S FILECLOSED/ODatei::schliesse /S "
              "FILEOPENERROR/ODatei::oeffne/E ");
}

TEST_F(DateiTest, DeletionAndWriteProtection) {
    schreibe("weg.txt", "x");
    EXPECT_EQ(loescheDatei(pfad("weg.txt").c_str()), 0);
    EXPECT_FALSE(fs::exists(pfad("weg.txt")));
    errno = 0;
    EXPECT_EQ(loescheDatei(pfad("weg.txt").c_str()), -1);
    EXPECT_EQ(errno, ENOENT);

    schreibe("fest.txt", "x");
    fs::permissions(pfad("fest.txt"), fs::perms::owner_read);
    EXPECT_EQ(loescheDatei(pfad("fest.txt").c_str()), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_TRUE(fs::exists(pfad("fest.txt")));
}

TEST_F(DateiTest, CheckBeforeWriting) {
    const String funktion("KivEprom::schreibeInDatei ");
    const DateiName neu(pfad("neu.txt").c_str());
    EXPECT_FALSE(dateiExistiert(neu));
    for (Schreibmodus m : {Schreibmodus::neu, Schreibmodus::ueberschreiben, Schreibmodus::anhaengen})
        EXPECT_EQ(pruefeZielDatei(neu, m, funktion), 1);
    EXPECT_EQ(faenger.anzahl(), 0u);
    EXPECT_FALSE(fs::exists(pfad("neu.txt"))) << "the probe must not create the file";

    schreibe("da.txt", "x");
    const DateiName da(pfad("da.txt").c_str());
    EXPECT_EQ(pruefeZielDatei(da, Schreibmodus::neu, funktion), 0);
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "FILE-EXIST");
    EXPECT_EQ(faenger.letzte().funktion, "KivEprom::schreibeInDatei ");
    EXPECT_EQ(faenger.letzte().detail, pfad("da.txt"));
    EXPECT_EQ(faenger.letzte().level, 'E');

    EXPECT_EQ(pruefeZielDatei(da, Schreibmodus::anhaengen, funktion), 1);
    EXPECT_TRUE(fs::exists(pfad("da.txt")));
    EXPECT_EQ(pruefeZielDatei(da, Schreibmodus::ueberschreiben, funktion), 1);
    EXPECT_TRUE(fs::exists(pfad("da.txt"))) << "kept until the new file replaces it";
    EXPECT_EQ(faenger.anzahl(), 1u);

    schreibe("fest.txt", "x");
    fs::permissions(pfad("fest.txt"), fs::perms::owner_read);
    const DateiName fest(pfad("fest.txt").c_str());
    EXPECT_TRUE(dateiExistiert(fest));
    EXPECT_EQ(pruefeZielDatei(fest, Schreibmodus::ueberschreiben, funktion), 0);
    EXPECT_EQ(faenger.letzte().label, "FILE-READONLY");
    EXPECT_EQ(faenger.letzte().detail, pfad("fest.txt"));
}

// Devices are written in place: the name (here a link to one) must survive
// as it was, where a replacing rename would leave a regular file.
// Appending adds to the file; a failure is reported by its errno.
TEST_F(DateiTest, DevicesInPlaceAppendingAndFailures) {
    fs::create_symlink("/dev/null", pfad("nichts"));
    SichereAusgabe geraet(String(pfad("nichts").c_str()));
    ASSERT_TRUE(geraet.offen());
    geraet.strom() << "weg";
    EXPECT_EQ(geraet.beende(), 0);
    EXPECT_TRUE(fs::is_symlink(pfad("nichts")));

    schreibe("log.txt", "a\n");
    SichereAusgabe anhang(String(pfad("log.txt").c_str()), SichereAusgabe::Art::anhaengen);
    std::fputs("b\n", anhang.cStrom());
    EXPECT_EQ(anhang.beende(), 0);
    std::ifstream gelesen(pfad("log.txt"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(gelesen), std::istreambuf_iterator<char>()),
              "a\nb\n");

    SichereAusgabe voll(String("/dev/full"));
    voll.strom() << "x";
    EXPECT_EQ(voll.beende(), ENOSPC);
    SichereAusgabe ohneVerzeichnis(String(pfad("nichtda/x").c_str()));
    EXPECT_FALSE(ohneVerzeichnis.offen());
    EXPECT_EQ(ohneVerzeichnis.beende(), ENOENT);
}

// Installed, the program sits in bin/ and its data in share/kiv/; a file
// beside the program still comes first.
TEST_F(DateiTest, SystemFilesFallBackToTheSharedDataDirectory) {
    const DateiName alt = programmDatei;
    fs::create_directories(verzeichnis / "bin");
    fs::create_directories(verzeichnis / "share" / "kiv");
    schreibe("share/kiv/a.gram", "x");
    schreibe("share/kiv/b.gram", "x");
    schreibe("bin/b.gram", "x");
    programmDatei = String(pfad("bin/kiv").c_str());
    EXPECT_EQ(DateiName("a.gram").vervollstaendigt().liefereGanz(), pfad("bin/../share/kiv/a.gram"));
    EXPECT_EQ(DateiName("b.gram").vervollstaendigt().liefereGanz(), pfad("bin/b.gram"));
    EXPECT_EQ(DateiName("c.gram").vervollstaendigt().liefereGanz(), pfad("bin/c.gram"));
    programmDatei = alt;
}
