// The Compiler on lines and procedures: definitions and their replacement,
// user commands, navigation, the reading of physical lines, nested
// procedures and the error control. Texts the program prints whole (help,
// echo lines, boxes, the settings table) are proven by the end-to-end cases.
#include "KdoTestHilfe.h"

namespace compilertest {
namespace {

std::string echoTexte(const MeldungsFaenger& f) {
    std::string t;
    for (const Meldung& m : f.meldungen())
        if (m.label == "CMD") t += "[" + m.detail + "]";
    return t;
}

// ---------------------------------------------------------------------------
// Definitions

TEST_F(CompilerTest, ParametersReplaceTheirKeysAndUnsetOnesAreEmpty) {
    MeldungsFaenger faenger;
    prozedur(datei("ct_param.kiv",
                   "zahl('p0')\n"
                   "ok(  ) 'p1'|'p2'|'p9'|'p10'\n"  // a syntax error, but the echo shows the text
                   "a: zahl('p1''p0')\n"),
             {"12", "3"});
    EXPECT_EQ(protokollText(), "zahl(12)@W:zahl(12)\nzahl(312)@a:a: zahl(312)\n");
    // Beyond p9 nothing is defined: the key stays as it is.
    EXPECT_NE(echoTexte(faenger).find("ok(  ) 3|||'p10'"), std::string::npos);

    // With more than ten parameters every one is defined.
    protokoll().clear();
    std::vector<std::string> p;
    for (int i = 0; i < 12; ++i) p.push_back(std::to_string(100 + i));
    prozedur(datei("ct_viele.kiv", "zahl('p11')\nx=holeParameter(11)\nzahl('x')\n"), p);
    EXPECT_EQ(protokollText(), "zahl(111)@a:zahl(111)\nzahl(111)@a:zahl(111)\n");
}

TEST_F(CompilerTest, HoleParameterAndLiefereNameReportUnderTheirFunctions) {
    MeldungsFaenger faenger;
    StromFaenger fehlerKonsole(std::cerr);
    kdoBaum()->suche("a", 1);
    kdoBaum()->suche("c", 1);
    prozedur(datei("ct_xx.kiv",
                   "x=holeParameter(12)\nx=holeParameter(3)\nn=liefereName()\n-\nn=liefereName()\n"
                   "zahl(1'x')\n'n': ok()\n"),
             {"5"});
    ASSERT_EQ(fehlerLabels(faenger), "CMD-PARAM-NUM,CMD-PARAM-NUM,CMD-NAME-ASS,CMD-PARAM-NUM,CMD-WRONGARG");
    const std::vector<Meldung> m = mitLabel(faenger, "CMD-PARAM-NUM");
    EXPECT_EQ(m[0].level, 'E');
    EXPECT_EQ(m[0].detail, "x=holeParameter(12)\n");
    EXPECT_EQ(m[1].level, 'W');
    // The taken key of liefereName is reported under the function of holeParameter.
    for (const Meldung& x : m) EXPECT_EQ(x.funktion, "Compiler::insertParam");
    const Meldung name = mitLabel(faenger, "CMD-NAME-ASS")[0];
    EXPECT_EQ(name.detail, "c");
    EXPECT_EQ(name.level, 'S');
    EXPECT_EQ(name.funktion, "Compiler::setzeName");
    EXPECT_EQ(fehlerKonsole.text(), "Zu grosser Wert: 12 Kein Parameter verfuegbar\n");
    // The placeholder reaches the line, the first name stays.
    EXPECT_NE(mitLabel(faenger, "CMD-WRONGARG")[0].detail.find("1?XX?"), std::string::npos);
    EXPECT_EQ(protokollText(), "ok@c:c: ok()\n");
}

TEST_F(CompilerTest, EscapedApostropheProtectsAKey) {
    DynArray<String> p;
    p[0] = "X";
    Compiler mitParametern(&p, 1);
    struct {
        const char* zeile;
        const char* ergebnis;
    } faelle[] = {
        {"'p0'", "X"},
        {"\\^'p0'", "'p0'"},  // the escape makes the first apostrophe plain
        {"'p0\\^'", "'p0'"},
        {"\\^'\\^'", "''"},
        {"'p0''p0'", "XX"},
        {"a\\^'p0'b'p0'", "a'p0'bX"},  // the key stops at the escape; the later one is whole
        {"\\^", "\\^"},
        {"'p1'", ""},
    };
    for (const auto& f : faelle) EXPECT_EQ(mitParametern.ersetzeDefinitionen(f.zeile), f.ergebnis) << f.zeile;

    // p0 is replaced first; its value then holds the key of p1, which comes
    // later and is replaced in turn, but p0's own key is not taken again.
    p[0] = "'p0''p1'";
    p[1] = "Y";
    Compiler d(&p, 2);
    EXPECT_EQ(d.ersetzeDefinitionen("'p0'"), "'p0'Y");
    ASSERT_NE(d.liefereDefinition("'p9'"), nullptr);
    EXPECT_EQ(*d.liefereDefinition("'p9'"), "");
    EXPECT_EQ(d.liefereDefinition("'p10'"), nullptr);
}

TEST_F(CompilerTest, DefinitionsAreLocalToTheirProcedure) {
    MeldungsFaenger faenger;
    datei("ct_innen.kiv", "y=holeParameter(0)\nzahl('y''p0''p1')\n");
    prozedur(datei("ct_aussen.kiv",
                   "y=holeParameter(0)\n"
                   "ausfuehre(\"ct_innen.kiv\", \" 2 \", \"3\")\n"  // blanks inside the quotes go
                   "ausfuehre(\"ct_innen.kiv\", \"4\")\n"           // the parameters are collected afresh
                   "zahl('y''p0''p1')\n"),
             {"1", "5"});
    EXPECT_EQ(protokollText(), "zahl(223)@W:zahl(223)\nzahl(44)@W:zahl(44)\nzahl(115)@W:zahl(115)\n");
    EXPECT_EQ(fehlerLabels(faenger), "");
}

// ---------------------------------------------------------------------------
// User commands and navigation

TEST_F(CompilerTest, CommandsRunOnTheCurrentOrTheNamedObject) {
    MeldungsFaenger faenger;
    Compiler::ausfuehreZeile("ok()\n");
    Compiler::ausfuehreZeile("a: zahl(3)\n");
    EXPECT_EQ(aktuell(), "a");  // a prefix makes the object current
    Compiler::ausfuehreZeile("ok()\n");
    Compiler::ausfuehreZeile("<Wurzel>W.<Bild>b : zahl()\n");
    Compiler::ausfuehreZeile("c: ok()\n");  // not a son of b, nor a brother
    EXPECT_EQ(protokollText(),
              "ok@W:ok()\nzahl(3)@a:a: zahl(3)\nok@a:ok()\nzahl(7)@b:<Wurzel>W.<Bild>b : zahl()\n");
    EXPECT_EQ(labels(faenger), "CMD-KDOOBJ-NOTEX");
    EXPECT_EQ(faenger.letzte().detail, "c");
    EXPECT_EQ(faenger.letzte().level, 'W');
    EXPECT_EQ(faenger.letzte().funktion, "Compiler::ausfuehreExeKommando");
    EXPECT_EQ(aktuell(), "b");
}

TEST_F(CompilerTest, CommentsAreCutEvenInsideQuotes) {
    MeldungsFaenger faenger;
    Compiler::ausfuehreZeile("zahl(5) // zahl(6)\n");
    Compiler::ausfuehreZeile("a: ok() ! a comment of the scanner only\n");
    Compiler::ausfuehreZeile("zahl(\"//\")\n");
    EXPECT_EQ(protokollText(), "zahl(5)@W:zahl(5) \n");
    // "!" is a comment to the scanner but not to the command's reading.
    EXPECT_EQ(labels(faenger), "CMD-WRONGENDING,CMD-WRONGARG");
}

TEST_F(CompilerTest, HelpOfACommandNeverRunsIt) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    Compiler::ausfuehreZeile("zahl ?\n");
    Compiler::ausfuehreZeile("b: zahl ?\n");
    EXPECT_EQ(aktuell(), "W");  // help with a prefix leaves the current object
    Compiler::ausfuehreZeile("b: ?\n");
    EXPECT_EQ(aktuell(), "b");  // the list of an object makes it current
    EXPECT_EQ(protokollText(), "");
    EXPECT_EQ(labels(faenger), "");
    const std::string hilfe = "zahl\n" + std::string(10, ' ') + "Integer" + std::string(8, ' ') + "n" +
                              std::string(19, ' ') + "7\n";
    EXPECT_EQ(aus.text(), hilfe + hilfe + "\nKommandoliste Test\nfehl\nmelde\nok\nzahl\n");
}

// The plain moves are proven end to end; here the searches by name and the
// reporters of the warnings.
TEST_F(CompilerTest, NavigationByNameAndItsReports) {
    MeldungsFaenger faenger;
    struct {
        const char* zeile;
        const char* danach;
        const char* label;
        const char* funktion;
    } faelle[] = {
        {">\n", "W", "CMD-KDOOBJ-NOBROTHER", "Compiler::kdooGeschwister"},
        {"b:\n", "b", "", ""},
        {"a:\n", "a", "", ""},  // a brother
        {"c:\n", "c", "", ""},  // a son
        {"sohn()\n", "c", "CMD-KDOOBJ-NOSUCCESSOR", "Compiler::kdooSohn"},
        {"<Bild>a:\n", "a", "", ""},  // with its type, an ancestor
        {"x:\n", "a", "CMD-KDOOBJ-NOTEX", "Compiler::setzeAktKdoObjekt"},
    };
    for (const auto& f : faelle) {
        faenger.leere();
        Compiler::ausfuehreZeile(f.zeile);
        EXPECT_EQ(aktuell(), f.danach) << f.zeile;
        EXPECT_EQ(labels(faenger), f.label) << f.zeile;
        if (*f.label) {
            EXPECT_EQ(faenger.letzte().funktion, f.funktion) << f.zeile;
        }
    }
    EXPECT_EQ(faenger.letzte().level, 'E');
    EXPECT_EQ(faenger.letzte().detail, "x");
}

TEST_F(CompilerTest, SyntaxErrorsNameFileLineAndColumn) {
    MeldungsFaenger faenger;
    prozedur(datei("ct_syntax.kiv", "ok()\n\n\tok(),ok()\nok() )\nok()\n"));
    // The recovery behind ")" skips the line. The one after an error inside
    // the parentheses still hands the line to the command, whose own reading
    // refuses it.
    EXPECT_EQ(fehlerLabels(faenger), "CMD-SYNTAX-ERROR,CMD-WRONGENDING,CMD-SYNTAX-ERROR");
    const std::vector<Meldung> m = mitLabel(faenger, "CMD-SYNTAX-ERROR");
    EXPECT_EQ(m[0].detail, "ct_syntax.kiv:3:6\n ok(),ok()\n-----^");
    EXPECT_EQ(m[1].detail, "ct_syntax.kiv:4:6\nok() )\n-----^");
    EXPECT_EQ(protokoll().size(), 2u);
}

// ---------------------------------------------------------------------------
// Physical lines

TEST_F(CompilerTest, LongLinesAreCutAndTheRestIsTheNextLine) {
    MeldungsFaenger faenger;
    const std::string voll = "ok()" + std::string(506, ' ');  // 510 bytes
    prozedur(datei("cb_lang.kiv", voll + "zahl(4)\n" + voll + "\nzahl(5)\n"));
    EXPECT_EQ(echoTexte(faenger), "[1: <Wurzel>W>  " + voll +
                                      "\n][2: <Wurzel>W>  zahl(4)\n][3: <Wurzel>W>  " + voll +
                                      "\n][4: <Wurzel>W>  zahl(5)\n][5: <Wurzel>W>  \n]");
    EXPECT_EQ(protokoll().size(), 4u);
}

TEST_F(CompilerTest, WithoutLineEndTheContinuationTestLooksOneByteFurtherBack) {
    MeldungsFaenger faenger;
    // The last line of a file: "\" before ")" continues, a final "\" does not.
    prozedur(datei("cb_ende1.kiv", "ok()\nzahl(5\\)"));
    prozedur(datei("cb_ende2.kiv", "zahl(5\\)\n"));
    EXPECT_EQ(echoTexte(faenger),
              "[1: <Wurzel>W>  ok()\n][2: <Wurzel>W>  zahl(5\\)\n\n]"
              "[1: <Wurzel>W>  zahl(5\\)\n][2: <Wurzel>W>  \n]");
    faenger.leere();
    // The same holds for a line cut at the limit.
    const std::string erster = std::string(508, ' ') + "\\ ";
    prozedur(datei("cb_ende3.kiv", erster + "ok()\n"));
    EXPECT_EQ(echoTexte(faenger), "[1: <Wurzel>W>  " + erster + "\nok()\n][2: <Wurzel>W>  \n]");
}

// ---------------------------------------------------------------------------
// Nested procedures

TEST_F(CompilerTest, ReturnEndsTheInnerProcedureReturnMainAndExitEveryOne) {
    struct {
        const char* wort;
        const char* protokoll;
        int status;
    } faelle[] = {
        {"return", "zahl(1)@W:zahl(1)\nzahl(3)@W:zahl(3)\nzahl(4)@W:zahl(4)\n", 0},
        {"returnMain", "zahl(1)@W:zahl(1)\n", 2},
        {"RETURNMAIN()", "zahl(1)@W:zahl(1)\n", 2},
        {"exit", "zahl(1)@W:zahl(1)\n", 3},
        {"Exit()", "zahl(1)@W:zahl(1)\n", 3},
    };
    for (const auto& f : faelle) {
        MeldungsFaenger faenger;
        protokoll().clear();
        datei("cb_tief.kiv", std::string("zahl(1)\n") + f.wort + "\nzahl(2)\n");
        datei("cb_mitte.kiv", "ausfuehre(\"cb_tief.kiv\")\nzahl(3)\n");
        datei("cb_oben.kiv", "ausfuehre(\"cb_mitte.kiv\")\nzahl(4)\n");
        EXPECT_EQ(prozedur("cb_oben.kiv"), f.status) << f.wort;
        EXPECT_EQ(protokollText(), f.protokoll) << f.wort;
        // Every file that was opened is closed again.
        EXPECT_EQ(mitLabel(faenger, "CMD-KDOOBJ-BATCH-CLOSED").size(), 3u) << f.wort;
        EXPECT_EQ(fehlerLabels(faenger), "") << f.wort;
        EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), 3) << f.wort;
    }
}

TEST_F(CompilerTest, AtThePromptOnlyExitOrTheEndOfInputLeave) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    datei("cb_rm.kiv", "returnMain\n");
    EXPECT_EQ(interaktiv("return\nzahl(1)\nreturnMain\nausfuehre(\"cb_rm.kiv\")\nzahl(2)\nexit\nzahl(3)\n"),
              3);
    EXPECT_EQ(protokollText(), "zahl(1)@W:zahl(1)\nzahl(2)@W:zahl(2)\n");
    EXPECT_EQ(interaktiv("zahl(4)\n"), 0);
    // A missing procedure only warns, whatever the status before.
    laufzeit.compilerStatus = KdoStatus::Exit;
    EXPECT_EQ(prozedur("cb_gibt_es_nicht.kiv"), 0);
    EXPECT_EQ(faenger.letzte().label, "CMD-KDOOBJ-BATCH-NOTEX");
    EXPECT_EQ(faenger.letzte().level, 'W');
}

TEST_F(CompilerTest, AProcedureThatCallsItselfStopsAtTheNestingLimit) {
    MeldungsFaenger faenger;
    EXPECT_EQ(prozedur(datei("cb_selbst.kiv", "zahl(1)\nausfuehre(\"cb_selbst.kiv\")\n")), 0);
    EXPECT_EQ(protokoll().size(), static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
    EXPECT_EQ(fehlerLabels(faenger), "CMD-KDOOBJ-BATCH-TOODEEP");
    EXPECT_EQ(mitLabel(faenger, "CMD-KDOOBJ-BATCH-CLOSED").size(),
              static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
}

// ---------------------------------------------------------------------------
// Error control

TEST_F(CompilerTest, ErrorControlMatrix) {
    // The settings lines of a procedure, the failing line, and a line that
    // must not run after an abort.
    const struct {
        const char* einstellung;
        const char* zeile;
        int status;           // of the procedure run
        const char* abbruch;  // functions of the CMD-ABORT-PROC messages, joined by ","
    } faelle[] = {
        // level statuses
        {"imFehlerfall(\"E\", exit)", "melde(E)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"W\", returnMain)", "melde(W)", 2, "Compiler::compileStream"},
        {"imFehlerfall(\"S\", exit)", "melde(S)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"E\", exit)", "melde(W)", 0, ""},
        {"imFehlerfall(\"I\", return)", "melde(I)", 0, "Compiler::compileStream"},  // ends this file only
        {"imFehlerfall(\"E\", exit)", "kdoOTypCheck(Bild, return)", 3, "Compiler::compileStream"},
        // label statuses, at any level
        {"imFehlerfall(\"TEST-MELDUNG\", exit)", "melde(S)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"TEST-MELDUNG\", returnMain)", "melde(E)", 2, "Compiler::compileStream"},
        {"imFehlerfall(\"CMD-NOSUCHCMD\", exit)", "gibtsnicht()", 3, "Compiler::compileStream"},
        // a failed user command
        {"imFehlerfall(, exit)", "fehl()", 3, "Compiler::ausfuehreExeKommando"},
        {"imFehlerfall(, exit)", "ok()", 0, ""},
        {"imFehlerfall( , returnMain )", "zahl(x)", 2, "Compiler::ausfuehreExeKommando"},
        // a help request does not run the command, and so counts as failed
        {"imFehlerfall(, exit)", "ok ?", 3, "Compiler::ausfuehreExeKommando"},
        // the highest status of the line wins
        {"imFehlerfall(, return)\nimFehlerfall(\"E\", exit)", "zahl(x)", 3,
         "Compiler::ausfuehreExeKommando,Compiler::compileStream"},
        {"imFehlerfall(, exit)\nimFehlerfall(\"E\", return)", "zahl(x)", 3, "Compiler::ausfuehreExeKommando"},
        // cleared settings
        {"imFehlerfall(\"E\", exit)\nimFehlerfall(\"E\")", "melde(E)", 0, ""},
        {"imFehlerfall(\"TEST-MELDUNG\", exit)\nimFehlerfall(\"TEST-MELDUNG\",)", "melde(E)", 0, ""},
        {"imFehlerfall(, exit)\nimFehlerfall(,)", "fehl()", 0, ""},
        {"imFehlerfall(, exit)\nimFehlerfall()", "fehl()", 0, ""},
    };
    for (const auto& f : faelle) {
        setzeZurueck();
        protokoll().clear();
        MeldungsFaenger faenger;
        StromFaenger aus(std::cout);
        const std::string text = std::string(f.einstellung) + "\n" + f.zeile + "\nzahl(1)\n";
        const int status = prozedur(datei("cf_matrix.kiv", text));
        const std::string was = std::string(f.einstellung) + " / " + f.zeile;
        EXPECT_EQ(status, f.status) << was;
        std::string abbruch;
        for (const Meldung& m : mitLabel(faenger, "CMD-ABORT-PROC")) {
            abbruch += (abbruch.empty() ? "" : ",") + m.funktion;
            EXPECT_EQ(m.level, 'S');
            EXPECT_EQ(m.detail, "");
        }
        EXPECT_EQ(abbruch, f.abbruch) << was;
        const bool abgebrochen = *f.abbruch != '\0';
        EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), abgebrochen ? 4 : 3) << was;
        const bool weiter = !protokoll().empty() && protokoll().back() == "zahl(1)@W:zahl(1)";
        EXPECT_EQ(weiter, !abgebrochen) << was;
    }
}

TEST_F(CompilerTest, AnAbortWithReturnLetsTheCallerGoOn) {
    MeldungsFaenger faenger;
    datei("cf_innen.kiv", "imFehlerfall(\"E\", return)\nmelde(E)\nzahl(1)\n");
    datei("cf_aussen.kiv", "ausfuehre(\"cf_innen.kiv\")\nzahl(2)\nmelde(E)\nzahl(3)\n");
    // The level setting is process-wide and outlives the inner procedure, so
    // the caller's own E message ends the caller.
    EXPECT_EQ(prozedur("cf_aussen.kiv"), 0);
    EXPECT_EQ(protokollText(), "melde@W:melde(E)\nzahl(2)@W:zahl(2)\nmelde@W:melde(E)\n");
    EXPECT_EQ(mitLabel(faenger, "CMD-ABORT-PROC").size(), 2u);
}

TEST_F(CompilerTest, AbortsAtThePrompt) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    // return and returnMain are forgotten at once; exit ends the dialogue.
    EXPECT_EQ(interaktiv("imFehlerfall(, return)\nfehl()\nzahl(1)\n"
                         "imFehlerfall(\"E\", exit)\nmelde(E)\nzahl(2)\n"),
              3);
    EXPECT_EQ(protokollText(), "fehl@W:fehl()\nzahl(1)@W:zahl(1)\nmelde@W:melde(E)\n");
    EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), 4);
    // The next line compiled counts afresh.
    Compiler::ausfuehreZeile("imFehlerfall(\"E\")\n");
    EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), 3);
}

TEST_F(CompilerTest, TypeCheckInAProcedureEndsItWithTheGivenStatus) {
    MeldungsFaenger faenger;
    datei("cf_typ.kiv", "ok()\nkdoOTypCheck(Bild, return)\nzahl(1)\n");
    datei("cf_ruf.kiv", "ausfuehre(\"cf_typ.kiv\")\nzahl(2)\nkdoOTypCheck(Bild, exit)\nzahl(3)\n");
    EXPECT_EQ(prozedur("cf_ruf.kiv"), 3);
    EXPECT_EQ(protokollText(), "ok@W:ok()\nzahl(2)@W:zahl(2)\n");
    const std::vector<Meldung> fehler = mitLabel(faenger, "KDO-WRONG-TYP");
    ASSERT_EQ(fehler.size(), 2u);
    EXPECT_EQ(fehler[0].detail, "cf_typ.kiv:2");
    EXPECT_EQ(fehler[1].detail, "cf_ruf.kiv:3");
    EXPECT_EQ(fehler[0].level, 'E');
    EXPECT_EQ(fehler[0].funktion, "Compiler::ausfuehreKdoOTypCheck");
    // The check sets the run status itself and raises no abort message.
    EXPECT_TRUE(mitLabel(faenger, "CMD-ABORT-PROC").empty());
    EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), 4);
}

}  // namespace
}  // namespace compilertest
