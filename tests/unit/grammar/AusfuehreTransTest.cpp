// ausfuehreTrans: each line of a file translated and run at once as a
// command, the reading of lines, the engine failures that end the run, and
// the parameters of the statement in the translated lines.
#include "TransTestHilfe.h"

namespace transtest {
namespace {

class AusfuehreTransTest : public TransTest {
protected:
    // Runs ausfuehreTrans on `eingabe` with the grammar `grammatik`.
    void uebersetze(const std::string& grammatik, const std::string& eingabe) {
        datei("gt_t.gram", grammatik + "\n");
        datei("gt_t.in", eingabe);
        zeile("ausfuehreTrans(\"gt_t.in\", DAT, ./gt_t.gram)");
    }
};

const char* const KOMMANDOS = "[0-9].{n}%zahl\\({n}\\)|o%ok\\(\\)|f%fehl\\(\\)|a%a: ok\\(\\)";

TEST_F(AusfuehreTransTest, EachLineRunsAsItIsTranslatedAndAFailedCommandDoesNotStop) {
    MeldungsFaenger f;
    uebersetze(KOMMANDOS, "5\nf\no\n");
    EXPECT_EQ(protokollText(), "zahl(5)@W:zahl(5)\nfehl@W:fehl()\nok@W:ok()\n");
    EXPECT_EQ(labels(f), "CMD-TRANS,CMD-TRANS,CMD-TRANS");
    EXPECT_EQ(details(f, "CMD-TRANS"), "\n\tgt_t.in:1: zahl(5)\n\n\tgt_t.in:2: fehl()\n\n\tgt_t.in:3: ok()\n");
    EXPECT_EQ(f.meldungen()[2].funktion, "Compiler::ausfuehreTransDat");
    EXPECT_EQ(f.meldungen()[2].level, 'S');
}

TEST_F(AusfuehreTransTest, TranslatedLinesMoveInTheSharedObjectTree) {
    uebersetze(KOMMANDOS, "a\no\n");
    EXPECT_EQ(protokollText(), "ok@a:a: ok()\nok@a:ok()\n");
}

TEST_F(AusfuehreTransTest, TheLastByteOfEachReadIsCutLineFeedOrNot) {
    MeldungsFaenger f;
    // The last line has no line end and loses a real byte.
    uebersetze(KOMMANDOS, "5\n78");
    EXPECT_EQ(protokollText(), "zahl(5)@W:zahl(5)\nzahl(7)@W:zahl(7)\n");

    // A long line comes in two reads; the first loses its 511th byte.
    f.leere();
    const std::string lang = std::string(510, 'x') + "abcde";
    uebersetze("@*", lang + "\n");
    EXPECT_EQ(details(f, "CMD-TRANS"), "\n\tgt_t.in:1: " + std::string(510, 'x') + "\n\n\tgt_t.in:2: bcde\n");
}

TEST_F(AusfuehreTransTest, ACarriageReturnStaysInTheSubject) {
    MeldungsFaenger f;
    uebersetze("[0-9].{n}\\c%zahl\\({n}\\)", "5\r\n6\n");
    EXPECT_EQ(protokollText(), "zahl(5)@W:zahl(5)\n");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "Zeile 2, Position 1: 6\n");
}

TEST_F(AusfuehreTransTest, ALineThatDoesNotMatchEndsTheRunAtItsFurthestPosition) {
    MeldungsFaenger f;
    uebersetze("z[0-9]+.{n}%zahl\\({n}\\)", "z1\nz23x\nz3\n");
    EXPECT_EQ(protokollText(), "zahl(1)@W:zahl(1)\n");
    EXPECT_EQ(labels(f), "CMD-TRANS,TRANS-SYNTAX-ERR");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "Zeile 2, Position 3: z23x\n");

    // An empty line is an empty subject.
    f.leere();
    protokoll().clear();
    uebersetze(KOMMANDOS, "5\n\n6\n");
    EXPECT_EQ(protokollText(), "zahl(5)@W:zahl(5)\n");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "Zeile 2, Position 0: \n");
}

TEST_F(AusfuehreTransTest, NotationErrorsAndLongOutputEndTheRun) {
    MeldungsFaenger f;
    uebersetze("ab)", "ab\nab\n");
    EXPECT_EQ(labels(f), "TRANS-UNOPENEDGROUP-ERR");
    EXPECT_EQ(details(f, "TRANS-UNOPENEDGROUP-ERR"), "Zeile 1, Position 2: ab\n");

    // Three copies of 200 bytes do not fit the 511 bytes of a line.
    f.leere();
    uebersetze("(@*).{t}%{t}{t}{t}", std::string(200, 'x') + "\nok()\n");
    EXPECT_EQ(labels(f), "TRANS-OTOLONG-ERR");
    const std::string detail = details(f, "TRANS-OTOLONG-ERR");
    EXPECT_EQ(detail.rfind("Zeile 1, Position ", 0), 0u) << detail;
    EXPECT_EQ(protokollText(), "");
}

TEST_F(AusfuehreTransTest, StatementParametersReachTheTranslatedLines) {
    datei("gt_t.gram", "a%zahl\\('p0'\\)|b%zahl\\('p1'\\)|c%zahl\\(1'p2'\\)|d%fehl\\(\\) // 'x'\n");
    datei("gt_t.in", "a\nb\nc\nd\n");
    // The procedure's own 'p0' is put into the statement before it runs; its
    // definition x belongs to the procedure and not to the translated lines.
    datei("gt_t.kiv", "x=holeParameter(0)\nausfuehreTrans(\"gt_t.in\", DAT, ./gt_t.gram, 'p0', 8)\n");
    MeldungsFaenger f;
    DynArray<String> p;
    p[0] = "3";
    Compiler::ausfuehreBatch("gt_t.kiv", &p, 1);
    EXPECT_EQ(protokollText(), "zahl(3)@W:zahl(3)\nzahl(8)@W:zahl(8)\nzahl(1)@W:zahl(1)\nfehl@W:fehl() \n");
    EXPECT_EQ(details(f, "CMD-TRANS"),
              "\n\tgt_t.in:1: zahl(3)\n\n\tgt_t.in:2: zahl(8)\n\n\tgt_t.in:3: zahl(1)\n\n\tgt_t.in:4: fehl() // 'x'\n");
}

TEST_F(AusfuehreTransTest, ATranslationThatRunsItselfStopsAtTheNestingLimit) {
    MeldungsFaenger f;
    uebersetze("x%ausfuehreTrans\\(\"gt_t.in\", DAT, ./gt_t.gram\\)|o%ok\\(\\)", "x\no\n");
    EXPECT_EQ(details(f, "CMD-KDOOBJ-BATCH-TOODEEP"), "gt_t.in\n");
    // Each level goes on with its own next line once the deeper one is done.
    EXPECT_EQ(protokoll().size(), static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
}

TEST_F(AusfuehreTransTest, MissingFilesAndGrammarObjects) {
    datei("gt_t.gram", "@*\n");
    MeldungsFaenger f;
    zeile("ausfuehreTrans(\"gt_t.fehlt\", DAT, ./gt_t.gram)");
    EXPECT_EQ(labels(f), "FILEOPENERROR");
    EXPECT_EQ(details(f, "FILEOPENERROR"), "gt_t.fehlt: No such file or directory\n");
    f.leere();
    zeile("ausfuehreTrans(\"gt_t.fehlt\", DAT, ./gt_t.nogram, 1)");
    EXPECT_EQ(details(f, "FILEOPENERROR"), "./gt_t.nogram: No such file or directory\n");
    // No grammar object is ever found: silence, even for a missing file.
    f.leere();
    zeile("ausfuehreTrans(\"gt_t.fehlt\", SYSOSP, gram, 1)");
    EXPECT_EQ(f.anzahl(), 0u);
    EXPECT_EQ(protokollText(), "");
}

}  // namespace
}  // namespace transtest
