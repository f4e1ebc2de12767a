// The procedure loop: echo lines, prompts, reading of physical lines (the
// length limit, continuations), opening and closing of procedure files, and
// nested procedures with return, returnMain and exit.
#include "CompilerTestHilfe.h"

namespace compilertest {
namespace {

std::string echoTexte(const MeldungsFaenger& f) {
    std::string t;
    for (const Meldung& m : f.meldungen())
        if (m.label == "CMD") t += "[" + m.detail + "]";
    return t;
}

// ---------------------------------------------------------------------------
// Echo and prompts

TEST_F(CompilerTest, ProcedureLinesAreEchoedWithNumberPromptAndReplacedText) {
    MeldungsFaenger faenger;
    EXPECT_EQ(prozedur(datei("cb_echo.kiv", "zahl('p0')\na:\n\nok()\n"), {"5"}), 0);
    const auto& m = faenger.meldungen();
    ASSERT_GE(m.size(), 2u);
    EXPECT_EQ(m.front().label, "CMD-KDOOBJ-BATCH-OPENED");
    EXPECT_EQ(m.front().detail, "cb_echo.kiv");
    EXPECT_EQ(m.back().label, "CMD-KDOOBJ-BATCH-CLOSED");
    EXPECT_EQ(m.back().detail, "cb_echo.kiv");
    EXPECT_EQ(m.back().funktion, "Compiler::ausfuehreBatch");
    // The prompt is that of the object current when the line is read. The
    // loop reads once more at the end of the file and echoes an empty line.
    EXPECT_EQ(echoTexte(faenger),
              "[1: <Wurzel>W>  zahl(5)\n][2: <Wurzel>W>  a:\n][3: <Bild>a>  \n][4: <Bild>a>  ok()\n]"
              "[5: <Bild>a>  \n]");
    EXPECT_EQ(mitLabel(faenger, "CMD")[0].level, 'S');
}

TEST_F(CompilerTest, EchoLineIsPrintedAsAStatusLine) {
    BoxFaenger boxen;
    prozedur(datei("cb_druck.kiv", "ok()"));   // no line end: no further read
    EXPECT_EQ(boxen.ausgabe(),
              "%KIV-S-CMD-KDOOBJ-BATCH-OPENED cb_druck.kiv \n"
              "%KIV-S-CMD 1: <Wurzel>W>  ok()\n \n"
              "%KIV-S-CMD-KDOOBJ-BATCH-CLOSED cb_druck.kiv \n");
}

TEST_F(CompilerTest, MissingProcedureWarnsAndReturnsZero) {
    MeldungsFaenger faenger;
    Compiler::compilerStatus = 3;
    EXPECT_EQ(prozedur("cb_gibt_es_nicht.kiv"), 0);
    EXPECT_EQ(labels(faenger), "CMD-KDOOBJ-BATCH-NOTEX");
    EXPECT_EQ(faenger.letzte().level, 'W');
    EXPECT_EQ(faenger.letzte().detail, "cb_gibt_es_nicht.kiv");
}

TEST_F(CompilerTest, InteractiveRunPromptsForEveryPhysicalLine) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    EXPECT_EQ(interaktiv("ok()\na:\nzahl(1\\\n2)\n"), 0);
    EXPECT_EQ(aus.text(), "<Wurzel>W> <Wurzel>W> <Bild>a> _<Bild>a> <Bild>a> ");
    EXPECT_EQ(protokollText(), "ok@W:ok()\nzahl(12)@a:zahl(12)\n");
    EXPECT_EQ(labels(faenger), "");   // no echo at the prompt
}

// ---------------------------------------------------------------------------
// Physical lines

TEST_F(CompilerTest, ContinuationsJoinLinesThatCountAsOne) {
    MeldungsFaenger faenger;
    prozedur(datei("cb_fort.kiv", "zahl(1\\\n2\\\n3)\nfehl)\n"));
    EXPECT_EQ(protokollText(), "zahl(123)@W:zahl(123)\n");
    const auto fehler = mitLabel(faenger, "CMD-SYNTAX-ERROR");
    ASSERT_EQ(fehler.size(), 1u);
    EXPECT_EQ(fehler[0].detail, "cb_fort.kiv:2:5\nfehl)\n----^");   // the second logical line
}

TEST_F(CompilerTest, LongLinesAreCutAndTheRestIsTheNextLine) {
    MeldungsFaenger faenger;
    const std::string voll = "ok()" + std::string(506, ' ');   // 510 bytes
    prozedur(datei("cb_lang.kiv", voll + "zahl(4)\n" + voll + "\nzahl(5)\n"));
    EXPECT_EQ(echoTexte(faenger), "[1: <Wurzel>W>  " + voll + "\n][2: <Wurzel>W>  zahl(4)\n][3: <Wurzel>W>  " +
                                      voll + "\n][4: <Wurzel>W>  zahl(5)\n][5: <Wurzel>W>  \n]");
    EXPECT_EQ(protokoll().size(), 4u);
}

TEST_F(CompilerTest, WithoutLineEndTheContinuationTestLooksOneByteFurtherBack) {
    MeldungsFaenger faenger;
    // The last line of a file: "\" before ")" continues, a final "\" does not.
    prozedur(datei("cb_ende1.kiv", "ok()\nzahl(5\\)"));
    prozedur(datei("cb_ende2.kiv", "zahl(5\\)\n"));
    EXPECT_EQ(echoTexte(faenger), "[1: <Wurzel>W>  ok()\n][2: <Wurzel>W>  zahl(5\\)\n\n]"
                                  "[1: <Wurzel>W>  zahl(5\\)\n][2: <Wurzel>W>  \n]");
    faenger.leere();
    // The same holds for a line cut at the limit.
    const std::string erster = std::string(508, ' ') + "\\ ";
    prozedur(datei("cb_ende3.kiv", erster + "ok()\n"));
    EXPECT_EQ(echoTexte(faenger), "[1: <Wurzel>W>  " + erster + "\nok()\n][2: <Wurzel>W>  \n]");
}

// ---------------------------------------------------------------------------
// Nested procedures

TEST_F(CompilerTest, ReturnEndsOnlyTheInnerProcedure) {
    MeldungsFaenger faenger;
    datei("cb_innen.kiv", "zahl('p0''p1')\nreturn\nzahl(2)\n");
    datei("cb_aussen.kiv", "ausfuehre(\"cb_innen.kiv\", \" 7 \", \"8\")\nzahl(3)\nreturn\nzahl(4)\n");
    EXPECT_EQ(prozedur("cb_aussen.kiv"), 0);
    EXPECT_EQ(protokollText(), "zahl(78)@W:zahl(78)\nzahl(3)@W:zahl(3)\n");
    EXPECT_EQ(fehlerLabels(faenger), "");
    EXPECT_EQ(Compiler::liefereLaufStatus(), 3);
}

TEST_F(CompilerTest, ReturnMainAndExitEndEveryProcedure) {
    for (const char* wort : {"returnMain", "exit", "RETURNMAIN()", "Exit()"}) {
        MeldungsFaenger faenger;
        protokoll().clear();
        datei("cb_tief.kiv", std::string("zahl(1)\n") + wort + "\nzahl(2)\n");
        datei("cb_mitte.kiv", "ausfuehre(\"cb_tief.kiv\")\nzahl(3)\n");
        datei("cb_oben.kiv", "ausfuehre(\"cb_mitte.kiv\")\nzahl(4)\n");
        const int erwartet = (wort[0] == 'e' || wort[0] == 'E') ? 3 : 2;
        EXPECT_EQ(prozedur("cb_oben.kiv"), erwartet) << wort;
        EXPECT_EQ(protokollText(), "zahl(1)@W:zahl(1)\n") << wort;
        // Every file that was opened is closed again.
        EXPECT_EQ(mitLabel(faenger, "CMD-KDOOBJ-BATCH-CLOSED").size(), 3u) << wort;
        EXPECT_EQ(Compiler::liefereLaufStatus(), 3) << wort;
    }
}

TEST_F(CompilerTest, AtThePromptOnlyExitOrTheEndOfInputLeave) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    datei("cb_rm.kiv", "returnMain\n");
    EXPECT_EQ(interaktiv("return\nzahl(1)\nreturnMain\nausfuehre(\"cb_rm.kiv\")\nzahl(2)\nexit\nzahl(3)\n"), 3);
    EXPECT_EQ(protokollText(), "zahl(1)@W:zahl(1)\nzahl(2)@W:zahl(2)\n");
    EXPECT_EQ(interaktiv("zahl(4)\n"), 0);
}

TEST_F(CompilerTest, AProcedureThatCallsItselfStopsAtTheNestingLimit) {
    MeldungsFaenger faenger;
    EXPECT_EQ(prozedur(datei("cb_selbst.kiv", "zahl(1)\nausfuehre(\"cb_selbst.kiv\")\n")), 0);
    EXPECT_EQ(protokoll().size(), static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
    EXPECT_EQ(fehlerLabels(faenger), "CMD-KDOOBJ-BATCH-TOODEEP");
    EXPECT_EQ(mitLabel(faenger, "CMD-KDOOBJ-BATCH-CLOSED").size(), static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
}

}  // namespace
}  // namespace compilertest
