// The grammar commands: reading a grammar file, the reports of the engine's
// results, and ausfuehreTrans, which runs each translated line at once as a
// command. A root object with one son share a command list whose handlers
// record "<command>@<object>:<current line without its line end>":
//
//   <Wurzel>W
//     <Bild>a        ok() and zahl(Integer n) on both
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "foundation/DateiName.h"
#include "foundation/DynArray.h"
#include "foundation/MeldungsFaenger.h"
#include "grammar/Uebersetzung.h"
#include "grammar/mmparse/mmparse.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "language/Scanner.h"
#include "reporting/Fehler.h"

namespace {

std::string protokoll;

void merke(const std::string& kommando, KdoObjekt& objekt) {
    std::string zeile = aktuelleZeile.str();
    if (!zeile.empty() && zeile.back() == '\n') zeile.pop_back();
    protokoll += kommando + "@" + objekt.liefereName().str() + ":" + zeile + "\n";
}
int kdoOk(KdoObjekt& o, KdoKommando&) { return merke("ok", o), 1; }
int kdoZahl(KdoObjekt& o, KdoKommando& k) {
    return merke("zahl(" + std::to_string(k[0].liefereArgWertInt()) + ")", o), 1;
}

class TestObjekt : public KdoObjekt {
public:
    TestObjekt(const char* name, const char* typ, KdoListe* liste)
        : KdoObjekt(name), typ_(typ), liste_(liste) {}
    KdoListe* liefereKdoListe() override { return liste_; }
    const String& liefereKdoOTyp() const override { return typ_; }

private:
    String typ_;
    KdoListe* liste_;
};

class TransTest : public ::testing::Test {
protected:
    void SetUp() override {
        richteUebersetzungEin();
        protokoll.clear();
        {
            MeldungsFaenger still;
            liste.fuegeEin(new KdoKommando("ok", "", kdoOk));
            liste.fuegeEin(new KdoKommando("zahl", "Integer n", kdoZahl));
        }
        wurzel.setzeVollenNamen("<Wurzel>W");
        laufzeit.setzeBaum(
            std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
        kdoBaum()->fuegeEin(&a);
        kdoBaum()->vater();
        setzeZurueck();
    }
    void TearDown() override {
        setzeZurueck();
        for (const std::string& d : dateien) std::remove(d.c_str());
    }
    static void setzeZurueck() {
        for (const char* l : {"E", "F", "I", "S", "W"}) Fehler::setzeStatus(l, 0);
        Fehler::holeStatus();
        aktuelleZeile = String();
    }

    // Writes a file that the test removes afterwards.
    void datei(const std::string& name, const std::string& inhalt) {
        std::ofstream(name, std::ios::binary) << inhalt;
        dateien.push_back(name);
    }
    void uebersetze(const std::string& grammatik, const std::string& eingabe) {
        datei("gt_t.gram", grammatik + "\n");
        datei("gt_t.in", eingabe);
        Compiler::ausfuehreZeile(String("ausfuehreTrans(\"gt_t.in\", DAT, ./gt_t.gram)\n"));
    }
    // The details of all messages with `label`, one a line.
    static std::string details(const MeldungsFaenger& f, const std::string& label) {
        std::string t;
        for (const Meldung& m : f.meldungen())
            if (m.label == label) t += m.detail + "\n";
        return t;
    }

    MeldungsFaenger grundFaenger;  // keeps uncaught messages off the console
    KdoListe liste{"Test"};
    TestObjekt wurzel{"W", "Wurzel", &liste};
    TestObjekt a{"a", "Bild", &liste};
    KdoLaufzeit laufzeit;  // after the objects: its tree goes first
    std::vector<std::string> dateien;
};

TEST_F(TransTest, GrammarFileLinesAreJoinedInPiecesUpToTheFirstEmptyLine) {
    std::string lang;
    for (int i = 0; i < 600; ++i) lang += static_cast<char>('a' + i % 26);
    const std::pair<std::string, std::string> faelle[] = {
        {"a\r\nb\r\n", "ab"},
        {"a\rb\n", "a\rb"},  // only a carriage return at the line's end goes
        {"ab\ncd", "abcd"},  // a last line without a line end keeps all its bytes
        {"", ""},
        {"a\n\r\nb\n", "a"},
        {"\nb\n", ""},
        // 511 bytes are read and the last of them goes; the rest is a line of its own.
        {lang + "\nz\n", lang.substr(0, 510) + lang.substr(511) + "z"},
        // A line of exactly 511 bytes loses its last byte, and its line feed
        // then reads as an empty line that ends the grammar.
        {lang.substr(0, 511) + "\nz\n", lang.substr(0, 510)},
        {lang.substr(0, 510) + "\nz\n", lang.substr(0, 510) + "z"},
    };
    MeldungsFaenger still;
    for (const auto& [text, erwartet] : faelle) {
        datei("gt_gram.txt", text);
        std::string g = "unberuehrt";
        EXPECT_EQ(leseGrammatik("./gt_gram.txt", g), 1);
        EXPECT_EQ(g, erwartet) << text.size();
    }
}

TEST_F(TransTest, BareGrammarNameIsReadBesideTheProgram) {
    namespace fs = std::filesystem;
    const fs::path verzeichnis = fs::temp_directory_path() / "gt_programm";
    fs::create_directories(verzeichnis);
    datei((verzeichnis / "gt_bare.txt").string(), "beside\n");
    datei("gt_bare.txt", "here\n");
    const DateiName alt = programmDatei;
    programmDatei = String((verzeichnis / "kiv").string());
    MeldungsFaenger f;
    std::string g;
    EXPECT_EQ(leseGrammatik("gt_bare.txt", g), 1);
    EXPECT_EQ(g, "beside");
    EXPECT_EQ(f.meldungen()[0].detail, (verzeichnis / "gt_bare.txt").string());
    EXPECT_EQ(leseGrammatik("./gt_bare.txt", g), 1);  // a directory is taken as it is
    EXPECT_EQ(g, "here");
    programmDatei = alt;
    fs::remove_all(verzeichnis);
}

TEST_F(TransTest, EngineResultsAreReportedByCode) {
    static const char* const labels[] = {
        "SYNTAX",         "ILLEGALARGS",   "OTOLONG",       "NOMEMORY",     "NOMEMORY",      "NOMEMORY",
        "NOMEMORY",       "NOMEMORY",      "NOMEMORY",      "UNDEFINEDSYM", "UNDECLAREDVAR", "REDEFINEDSYM",
        "REDECLAREDVAR",  "ILLEGALDEF",    "ILLEGALASSIGN", "ILLEGALSYM",   "ILLEGALVAR",    "LEFTRECURSION",
        "UNCLOSEDGROUP",  "UNOPENEDGROUP", "ILLEGALGROUP",  "UNCLOSEDSET",  "ILLEGALRANGE",  "ILLEGALNOT",
        "ILLEGALSUFF01",  nullptr,         "ILLEGALSUFF0N", "ILLEGALSUFFM", "ILLEGALSUFF0M", "ILLEGALBSLCHAR",
        "ILLEGALHEXCHAR", "CANTWRITE",     "NOMEMORY",      "NOMEMORY"};
    MeldungsFaenger f;
    for (int code = 0; code >= -33; --code) {
        f.leere();
        meldeMmparseFehler(code, "x", 4, 2);
        const char* label = labels[-code];
        ASSERT_EQ(f.anzahl(), label ? 1u : 0u) << code;  // a stray '+' goes unreported
        if (!label) continue;
        EXPECT_EQ(f.letzte().label, std::string("TRANS-") + label + "-ERR") << code;
        EXPECT_EQ(f.letzte().level, 'E');
        EXPECT_EQ(f.letzte().funktion, "Compiler::mmparseError");
    }
    f.leere();
    for (int code : {1, 600, -34, -1000}) meldeMmparseFehler(code, "x", 0, 1);
    EXPECT_EQ(f.anzahl(), 0u);

    // Line and position in decimal; memory errors add the parse code.
    const struct {
        int code;
        const char* text;
        int position, zeile;
        const char* detail;
    } texte[] = {
        {MM_UNOPENEDGROUP, "", 12, 10, "Zeile 10, Position 12: "},
        {MM_NOMEM_INDEX, "ab", 1, 3, "Zeile 3, Position 1: ab\nparsecode= -33"},
        {MM_CANTWRITE, nullptr, 0, 0, ""},
    };
    for (const auto& t : texte) {
        meldeMmparseFehler(t.code, t.text, t.position, t.zeile);
        EXPECT_EQ(f.letzte().detail, t.detail) << t.code;
    }
}

const char* const KOMMANDOS = "[0-9].{n}%zahl\\({n}\\)|o%ok\\(\\)|a%a: ok\\(\\)";

TEST_F(TransTest, TranslatedLinesRunInTheSharedObjectTree) {
    uebersetze(KOMMANDOS, "a\no\n");
    EXPECT_EQ(protokoll, "ok@a:a: ok()\nok@a:ok()\n");
}

TEST_F(TransTest, LinesAreReadInPiecesAndAnEmptyLineIsAnEmptySubject) {
    MeldungsFaenger f;
    // A long line comes in two reads; the first loses its 511th byte.
    uebersetze("@*", std::string(510, 'x') + "abcde\n");
    EXPECT_EQ(details(f, "CMD-TRANS"), "\n\tgt_t.in:1: " + std::string(510, 'x') + "\n\n\tgt_t.in:2: bcde\n");
    f.leere();
    uebersetze(KOMMANDOS, "5\n\n6\n");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "Zeile 2, Position 0: \n");
    // A carriage return stays in the subject.
    f.leere();
    protokoll.clear();
    uebersetze("[0-9].{n}\\c%zahl\\({n}\\)", "5\r\n6\n");
    EXPECT_EQ(protokoll, "zahl(5)@W:zahl(5)\n");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "Zeile 2, Position 1: 6\n");
}

TEST_F(TransTest, StatementParametersReachTheTranslatedLines) {
    datei("gt_t.gram", "a%zahl\\('p0'\\)|b%zahl\\('p1'\\)|c%zahl\\(1'p2'\\)|d%ok\\(\\) // 'x'\n");
    datei("gt_t.in", "a\nb\nc\nd\n");
    // The procedure's own 'p0' is put into the statement before it runs; its
    // definition x belongs to the procedure and not to the translated lines.
    datei("gt_t.kiv", "x=holeParameter(0)\nausfuehreTrans(\"gt_t.in\", DAT, ./gt_t.gram, 'p0', 8)\n");
    DynArray<String> p;
    p[0] = "3";
    Compiler::ausfuehreBatch("gt_t.kiv", &p, 1);
    EXPECT_EQ(protokoll, "zahl(3)@W:zahl(3)\nzahl(8)@W:zahl(8)\nzahl(1)@W:zahl(1)\nok@W:ok() \n");
}

TEST_F(TransTest, ATranslationThatRunsItselfStopsAtTheNestingLimit) {
    MeldungsFaenger f;
    uebersetze("x%ausfuehreTrans\\(\"gt_t.in\", DAT, ./gt_t.gram\\)|o%ok\\(\\)", "x\no\n");
    EXPECT_EQ(details(f, "CMD-KDOOBJ-BATCH-TOODEEP"), "gt_t.in\n");
    // Each level goes on with its own next line once the deeper one is done.
    std::string erwartet;
    for (int i = 0; i < Compiler::MAX_SCHACHTELUNG; ++i) erwartet += "ok@W:ok()\n";
    EXPECT_EQ(protokoll, erwartet);
}

}  // namespace
