// The error control: statuses raised by message levels, by labels, by a
// failed user command and by kdoOTypCheck; which one wins; what an abort
// does to a procedure, to its caller and to the prompt; the display of the
// settings.
#include "CompilerTestHilfe.h"

namespace compilertest {
namespace {

// The settings line of a procedure, the failing line, and a line that must
// not run after an abort.
struct Fall {
    const char* einstellung;
    const char* zeile;
    int status;            // of the procedure run
    const char* abbruch;   // functions of the CMD-ABORT-PROC messages, joined by ","
};

TEST_F(CompilerTest, ErrorControlMatrix) {
    const Fall faelle[] = {
        // level statuses
        {"imFehlerfall(\"E\", exit)", "melde(E)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"W\", returnMain)", "melde(W)", 2, "Compiler::compileStream"},
        {"imFehlerfall(\"S\", exit)", "melde(S)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"E\", exit)", "melde(W)", 0, ""},
        {"imFehlerfall(\"I\", return)", "melde(I)", 0, "Compiler::compileStream"},   // ends this file only
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
    for (const Fall& f : faelle) {
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
        EXPECT_EQ(Compiler::liefereLaufStatus(), abgebrochen ? 4 : 3) << was;
        const bool weiter = protokoll().empty() ? false : protokoll().back() == "zahl(1)@W:zahl(1)";
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

TEST_F(CompilerTest, ANestedRunClearsTheCallersFailureSetting) {
    MeldungsFaenger faenger;
    datei("cf_leer.kiv", "ok()\n");
    prozedur(datei("cf_klar.kiv", "imFehlerfall(, exit)\nausfuehre(\"cf_leer.kiv\")\nfehl()\nzahl(1)\n"));
    EXPECT_EQ(protokoll().back(), "zahl(1)@W:zahl(1)");
    EXPECT_TRUE(mitLabel(faenger, "CMD-ABORT-PROC").empty());
}

TEST_F(CompilerTest, AbortsAtThePrompt) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    // return and returnMain are forgotten at once; exit ends the dialogue.
    EXPECT_EQ(interaktiv("imFehlerfall(, return)\nfehl()\nzahl(1)\n"
                         "imFehlerfall(\"E\", exit)\nmelde(E)\nzahl(2)\n"),
              3);
    EXPECT_EQ(protokollText(), "fehl@W:fehl()\nzahl(1)@W:zahl(1)\nmelde@W:melde(E)\n");
    EXPECT_EQ(Compiler::liefereLaufStatus(), 4);
    // The next line compiled counts afresh.
    Compiler::ausfuehreZeile("imFehlerfall(\"E\")\n");
    EXPECT_EQ(Compiler::liefereLaufStatus(), 3);
}

// ---------------------------------------------------------------------------
// kdoOTypCheck

TEST_F(CompilerTest, TypeCheckInAProcedureEndsItWithTheGivenStatus) {
    MeldungsFaenger faenger;
    datei("cf_typ.kiv", "ok()\nkdoOTypCheck(Bild, return)\nzahl(1)\n");
    datei("cf_ruf.kiv", "ausfuehre(\"cf_typ.kiv\")\nzahl(2)\nkdoOTypCheck(Bild, exit)\nzahl(3)\n");
    EXPECT_EQ(prozedur("cf_ruf.kiv"), 3);
    EXPECT_EQ(protokollText(), "ok@W:ok()\nzahl(2)@W:zahl(2)\n");
    const auto fehler = mitLabel(faenger, "KDO-WRONG-TYP");
    ASSERT_EQ(fehler.size(), 2u);
    EXPECT_EQ(fehler[0].detail, "cf_typ.kiv:2");
    EXPECT_EQ(fehler[1].detail, "cf_ruf.kiv:3");
    EXPECT_EQ(fehler[0].level, 'E');
    EXPECT_EQ(fehler[0].funktion, "Compiler::ausfuehreKdoOTypCheck");
    // The check sets the run status itself and raises no abort message.
    EXPECT_TRUE(mitLabel(faenger, "CMD-ABORT-PROC").empty());
    EXPECT_EQ(Compiler::liefereLaufStatus(), 4);
}

TEST_F(CompilerTest, TypeCheckPassesOnTheRightTypeAndAlwaysAtThePrompt) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    kdoBaum->suche("a", 1);
    EXPECT_EQ(prozedur(datei("cf_gut.kiv", "kdoOTypCheck(Bild, exit)\nzahl(1)\n")), 0);
    EXPECT_EQ(interaktiv("kdoOTypCheck(Wurzel, exit)\nzahl(2)\n"), 0);
    EXPECT_EQ(Compiler::ausfuehreZeile("kdoOTypCheck(Wurzel, exit)\n"), 0);
    EXPECT_EQ(protokollText(), "zahl(1)@a:zahl(1)\nzahl(2)@a:zahl(2)\n");
    EXPECT_TRUE(mitLabel(faenger, "KDO-WRONG-TYP").empty());
    EXPECT_EQ(Compiler::liefereLaufStatus(), 3);
}

TEST_F(CompilerTest, AFailedTypeCheckRaisesTheLevelStatusOfItsMessage) {
    MeldungsFaenger faenger;
    EXPECT_EQ(prozedur(datei("cf_typ2.kiv", "imFehlerfall(\"E\", exit)\nkdoOTypCheck(Bild, return)\nzahl(1)\n")), 3);
    EXPECT_EQ(mitLabel(faenger, "CMD-ABORT-PROC").size(), 1u);
    EXPECT_TRUE(protokoll().empty());
}

// ---------------------------------------------------------------------------
// Display of the settings

std::string spalte(const std::string& text, std::size_t breite) {
    return text + std::string(breite > text.size() + 1 ? breite - text.size() : 1, ' ');
}

TEST_F(CompilerTest, AnzeigeImFehlerfallShowsAllSettingsInColumns) {
    StromFaenger aus(std::cout);
    Compiler::ausfuehreZeile("anzeigeImFehlerfall()\n");
    const std::string striche(40, '-');
    const std::string labelKopf = spalte("Label", 26) + "Status\n" + striche + "\n";
    EXPECT_EQ(aus.text(), "\n" + labelKopf);
    aus.leere();

    MeldungsFaenger faenger;
    prozedur(datei("cf_anzeige.kiv",
                   "imFehlerfall(, return)\n"
                   "imFehlerfall(\"W\", returnMain)\n"
                   "imFehlerfall(\"E\", exit)\n"
                   "imFehlerfall(\"TEST-MELDUNG\", exit)\n"
                   "imFehlerfall(\"CMD-NOSUCHCMD\", return)\n"
                   "anzeigeImFehlerfall()\n"));
    EXPECT_EQ(aus.text(), spalte("Funktionswert", 26) + "Status\n" + striche + "\n" + spalte("NO", 26) +
                              "return\n" + spalte("Level", 26) + "Status\n" + striche + "\n" + spalte("E", 26) +
                              "exit\n" + spalte("W", 26) + "returnMain\n" + "\n" + labelKopf +
                              spalte("CMD-NOSUCHCMD", 26) + "return\n" + spalte("TEST-MELDUNG", 26) + "exit\n");
}

}  // namespace
}  // namespace compilertest
