// The grammar commands; ok() records "ok:<current line>".
#include <gtest/gtest.h>

#include <fstream>
#include <memory>

#include "grammar/Uebersetzung.h"
#include "grammar/mmparse/mmparse.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "language/Scanner.h"
#include "support/Meldungsaufnahme.h"

namespace {

std::string protokoll;

int kdoOk(KdoObjekt&, KdoKommando&) {
    const std::string zeile = aktuelleZeile.str();
    protokoll += "ok:" + zeile.substr(0, zeile.find('\n')) + "\n";
    return 1;
}

struct TestObjekt : KdoObjekt {
    explicit TestObjekt(KdoListe* liste) : KdoObjekt("W"), liste_(liste) {}
    KdoListe* liefereKdoListe() override { return liste_; }
    const String& liefereKdoOTyp() const override { return typ_; }
    String typ_{"Wurzel"};
    KdoListe* liste_;
};

struct TransTest : ::testing::Test {
    void SetUp() override {
        richteUebersetzungEin();
        protokoll.clear();
        liste.fuegeEin(new KdoKommando("ok", "", kdoOk));
        wurzel.setzeVollenNamen("<Wurzel>W");
        laufzeit.setzeBaum(
            std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
        aufnahme.leere();
    }
    void TearDown() override {
        for (const char* l : {"E", "F", "I", "S", "W"}) Fehler::setzeStatus(l, 0);
        Fehler::holeStatus();
        aktuelleZeile = String();
        for (const char* d : {"gt_t.gram", "gt_t.in"}) std::remove(d);
    }
    void uebersetze(const std::string& grammatik, const std::string& eingabe) {
        std::ofstream("gt_t.gram", std::ios::binary) << grammatik << "\n";
        std::ofstream("gt_t.in", std::ios::binary) << eingabe;
        Compiler::ausfuehreZeile(String("ausfuehreTrans(\"gt_t.in\", DAT, ./gt_t.gram)\n"));
    }
    std::string details(const std::string& label) const {  // one a line
        std::string t;
        for (const Meldung& m : aufnahme.mit(label)) t += m.detail + "\n";
        return t;
    }

    Meldungsaufnahme aufnahme;  // keeps the messages off the console
    KdoListe liste{"Test"};
    TestObjekt wurzel{&liste};
    KdoLaufzeit laufzeit;  // after the objects: its tree goes first
};

TEST_F(TransTest, GrammarFileIsReadInPiecesOf511Bytes) {
    std::string lang;
    for (int i = 0; i < 600; ++i) lang += static_cast<char>('a' + i % 26);
    const std::pair<std::string, std::string> faelle[] = {
        {"a\r\nb\r\n", "ab"},
        {"a\rb\n", "a\rb"},  // only a carriage return at the line's end goes
        {"ab\ncd", "abcd"},  // a last line without a line end keeps all its bytes
        {"a\n\r\nb\n", "a"},
        // 511 bytes are read and the last of them goes; the rest is a line of its own.
        {lang + "\nz\n", lang.substr(0, 510) + lang.substr(511) + "z"},
        // A line of exactly 511 bytes loses its last byte, and its line feed
        // then reads as an empty line that ends the grammar.
        {lang.substr(0, 511) + "\nz\n", lang.substr(0, 510)},
        {lang.substr(0, 510) + "\nz\n", lang.substr(0, 510) + "z"},
    };
    for (const auto& [text, erwartet] : faelle) {
        std::ofstream("gt_t.gram", std::ios::binary) << text;
        std::string g = "unberuehrt";
        EXPECT_EQ(leseGrammatik("./gt_t.gram", g), 1);
        EXPECT_EQ(g, erwartet) << text.size();
    }
}

TEST_F(TransTest, EngineResultsAreReportedByCode) {
    // A stray '+' and codes outside the engine's range go unreported.
    for (int code : {1, 600, int(MM_ILLEGALSUFF1N), -34, -1000}) meldeMmparseFehler(code, "x", 0, 1);
    EXPECT_EQ(aufnahme.anzahl(), 0u);
    // Line and position in decimal; memory errors add the parse code.
    const struct {
        int code;
        const char *text, *label;
        int position, zeile;
        const char* detail;
    } faelle[] = {
        {MM_NOMEM_INDEX, "ab", "TRANS-NOMEMORY-ERR", 1, 3, "Zeile 3, Position 1: ab\nparsecode= -33"},
        {MM_CANTWRITE, nullptr, "TRANS-CANTWRITE-ERR", 0, 0, ""},
    };
    for (const auto& f : faelle) {
        meldeMmparseFehler(f.code, f.text, f.position, f.zeile);
        EXPECT_EQ(aufnahme.letzte().satz(),
                  std::string(f.label) + "|Compiler::mmparseError|" + f.detail + "|E");
    }
}

TEST_F(TransTest, LinesAreReadInPiecesAndAnEmptyLineIsAnEmptySubject) {
    // A long line comes in two reads; the first loses its 511th byte.
    uebersetze("@*", std::string(510, 'x') + "abcde\n");
    EXPECT_EQ(details("CMD-TRANS"), "\n\tgt_t.in:1: " + std::string(510, 'x') + "\n\n\tgt_t.in:2: bcde\n");
    uebersetze("[0-9]%ok\\(\\)", "5\n\n6\n");
    EXPECT_EQ(details("TRANS-SYNTAX-ERR"), "Zeile 2, Position 0: \n");
    // A carriage return stays in the subject.
    aufnahme.leere();
    protokoll.clear();
    uebersetze("[0-9]\\c%ok\\(\\)", "5\r\n6\n");
    EXPECT_EQ(protokoll, "ok:ok()\n");
    EXPECT_EQ(details("TRANS-SYNTAX-ERR"), "Zeile 2, Position 1: 6\n");
}

TEST_F(TransTest, ATranslationThatRunsItselfStopsAtTheNestingLimit) {
    uebersetze("x%ausfuehreTrans\\(\"gt_t.in\", DAT, ./gt_t.gram\\)|o%ok\\(\\)", "x\no\n");
    EXPECT_EQ(details("CMD-KDOOBJ-BATCH-TOODEEP"), "gt_t.in\n");
    // Each level goes on with its own next line once the deeper one is done.
    std::string erwartet;
    for (int i = 0; i < Compiler::MAX_SCHACHTELUNG; ++i) erwartet += "ok:ok()\n";
    EXPECT_EQ(protokoll, erwartet);
}

}  // namespace
