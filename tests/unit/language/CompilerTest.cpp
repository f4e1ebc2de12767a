// The Compiler on single lines and short procedures: definitions and their
// replacement, user commands with and without object prefix, navigation in
// the object tree, the help texts and displays, the syntax error box.
#include "CompilerTestHilfe.h"

namespace compilertest {
namespace {

// ---------------------------------------------------------------------------
// Definitions

TEST_F(CompilerTest, ParametersReplaceTheirKeysAndUnsetOnesAreEmpty) {
    MeldungsFaenger faenger;
    prozedur(datei("ct_param.kiv",
                   "zahl('p0')\n"
                   "ok(  ) 'p1'|'p2'|'p9'|'p10'\n"   // a syntax error, but the echo shows the text
                   "a: zahl('p1''p0')\n"),
             {"12", "3"});
    EXPECT_EQ(protokollText(), "zahl(12)@W:zahl(12)\nzahl(312)@a:a: zahl(312)\n");
    // Beyond p9 nothing is defined: the key stays as it is.
    bool gefunden = false;
    for (const Meldung& m : faenger.meldungen())
        if (m.label == "CMD" && m.detail.find("ok(  ) 3|||'p10'") != std::string::npos) gefunden = true;
    EXPECT_TRUE(gefunden);
}

TEST_F(CompilerTest, MoreThanTenParametersAreAllDefined) {
    MeldungsFaenger faenger;
    std::vector<std::string> p;
    for (int i = 0; i < 12; ++i) p.push_back(std::to_string(100 + i));
    prozedur(datei("ct_viele.kiv", "zahl('p11')\nx=holeParameter(11)\nzahl('x')\n"), p);
    EXPECT_EQ(protokollText(), "zahl(111)@W:zahl(111)\nzahl(111)@W:zahl(111)\n");
    EXPECT_EQ(fehlerLabels(faenger), "");
}

TEST_F(CompilerTest, HoleParameterBeyondTheParametersDefinesAPlaceholder) {
    MeldungsFaenger faenger;
    StromFaenger fehlerKonsole(std::cerr);
    prozedur(datei("ct_xx.kiv", "x=holeParameter(12)\nok() // 'x'\nx=holeParameter(3)\nzahl(1'x')\n"), {"5"});
    // The placeholder reaches the line; a later definition of the same key
    // warns and leaves the first value.
    EXPECT_EQ(fehlerLabels(faenger), "CMD-PARAM-NUM,CMD-PARAM-NUM,CMD-WRONGARG");
    const auto& m = faenger.meldungen();
    std::vector<Meldung> fehler;
    for (const Meldung& x : m)
        if (x.label == "CMD-PARAM-NUM") fehler.push_back(x);
    ASSERT_EQ(fehler.size(), 2u);
    EXPECT_EQ(fehler[0].level, 'E');
    EXPECT_EQ(fehler[0].detail, "x=holeParameter(12)\n");
    EXPECT_EQ(fehler[0].funktion, "Compiler::insertParam");
    EXPECT_EQ(fehler[1].level, 'W');
    EXPECT_EQ(fehler[1].detail, "x=holeParameter(3)\n");
    EXPECT_EQ(fehlerKonsole.text(), "Zu grosser Wert: 12 Kein Parameter verfuegbar\n");
    EXPECT_EQ(protokollText(), "ok@W:ok() \n");
    bool gefunden = false;
    for (const Meldung& x : m)
        if (x.label == "CMD-WRONGARG" && x.detail.find("1?XX?") != std::string::npos) gefunden = true;
    EXPECT_TRUE(gefunden);
}

TEST_F(CompilerTest, LiefereNameDefinesTheCurrentObjectsName) {
    MeldungsFaenger faenger;
    kdoBaum->suche("a", 1);
    kdoBaum->suche("c", 1);
    prozedur(datei("ct_name.kiv", "n=liefereName()\n-\nn=liefereName()\n'n': ok()\n"));
    ASSERT_EQ(fehlerLabels(faenger), "CMD-NAME-ASS,CMD-PARAM-NUM");
    EXPECT_EQ(faenger.meldungen()[2].detail, "c");
    EXPECT_EQ(faenger.meldungen()[2].level, 'S');
    EXPECT_EQ(faenger.meldungen()[2].funktion, "Compiler::setzeName");
    // The taken key is reported under the function of holeParameter.
    EXPECT_EQ(faenger.meldungen()[5].funktion, "Compiler::insertParam");
    bool gefunden = false;
    for (const Meldung& x : faenger.meldungen())
        if (x.label == "CMD" && x.detail == "4: <Bild>a>  c: ok()\n") gefunden = true;
    EXPECT_TRUE(gefunden);
    EXPECT_EQ(protokollText(), "ok@c:c: ok()\n");
}

TEST_F(CompilerTest, EscapedApostropheProtectsAKey) {
    DynArray<String> p;
    p[0] = "X";
    Compiler c(&p, 1);
    struct {
        const char* zeile;
        const char* ergebnis;
    } faelle[] = {
        {"'p0'", "X"},
        {"\\^'p0'", "'p0'"},          // the escape makes the first apostrophe plain
        {"'p0\\^'", "'p0'"},
        {"\\^'\\^'", "''"},
        {"'p0''p0'", "XX"},
        {"a\\^'p0'b'p0'", "a'p0'bX"},   // the key stops at the escape; the later one is whole
        {"\\^", "\\^"},
        {"'p1'", ""},
    };
    for (const auto& f : faelle) EXPECT_EQ(c.ersetzeDefinitionen(f.zeile), f.ergebnis) << f.zeile;
}

TEST_F(CompilerTest, ValuesAreNotSearchedAgainAndDefinitionsKeepTheirOrder) {
    DynArray<String> p;
    p[0] = "'p0''p1'";
    p[1] = "Y";
    Compiler c(&p, 2);
    // p0 is replaced first; its value then holds the key of p1, which comes
    // later and is replaced in turn, but p0's own key is not taken again.
    EXPECT_EQ(c.ersetzeDefinitionen("'p0'"), "'p0'Y");
    ASSERT_NE(c.liefereDefinition("'p9'"), nullptr);
    EXPECT_EQ(*c.liefereDefinition("'p9'"), "");
    EXPECT_EQ(c.liefereDefinition("'p10'"), nullptr);
}

TEST_F(CompilerTest, DefinitionsAreLocalToTheirProcedure) {
    MeldungsFaenger faenger;
    datei("ct_innen.kiv", "y=holeParameter(0)\nzahl('y''p0''p1')\n");
    prozedur(datei("ct_aussen.kiv",
                   "y=holeParameter(0)\n"
                   "ausfuehre(\"ct_innen.kiv\", \"2\", \"3\")\n"
                   "ausfuehre(\"ct_innen.kiv\", \"4\")\n"   // the parameters are collected afresh
                   "zahl('y''p0''p1')\n"),
             {"1", "5"});
    EXPECT_EQ(protokollText(), "zahl(223)@W:zahl(223)\nzahl(44)@W:zahl(44)\nzahl(115)@W:zahl(115)\n");
    EXPECT_EQ(fehlerLabels(faenger), "");
}

// ---------------------------------------------------------------------------
// User commands

TEST_F(CompilerTest, CommandsRunOnTheCurrentOrTheNamedObject) {
    MeldungsFaenger faenger;
    Compiler::ausfuehreZeile("ok()\n");
    Compiler::ausfuehreZeile("a: zahl(3)\n");
    EXPECT_EQ(aktuell(), "a");   // a prefix makes the object current
    Compiler::ausfuehreZeile("ok()\n");
    Compiler::ausfuehreZeile("<Wurzel>W.<Bild>b : zahl()\n");
    Compiler::ausfuehreZeile("c: ok()\n");   // not a son of b, nor a brother
    EXPECT_EQ(protokollText(), "ok@W:ok()\nzahl(3)@a:a: zahl(3)\nok@a:ok()\nzahl(7)@b:<Wurzel>W.<Bild>b : zahl()\n");
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
    EXPECT_EQ(aktuell(), "W");   // help with a prefix leaves the current object
    Compiler::ausfuehreZeile("b: ?\n");
    EXPECT_EQ(aktuell(), "b");   // the list of an object makes it current
    EXPECT_EQ(protokollText(), "");
    EXPECT_EQ(labels(faenger), "");
    const std::string hilfe = "zahl\n" + std::string(10, ' ') + "Integer" + std::string(8, ' ') + "n" +
                              std::string(19, ' ') + "7\n";
    EXPECT_EQ(aus.text(), hilfe + hilfe + "\nKommandoliste Test\nfehl\nmelde\nok\nzahl\n");
}

// ---------------------------------------------------------------------------
// Navigation

TEST_F(CompilerTest, NavigationMovesInTheTreeAndWarnsAtItsEnds) {
    MeldungsFaenger faenger;
    struct {
        const char* zeile;
        const char* danach;
        const char* label;
    } faelle[] = {
        {"-\n", "W", ""},   // at the root: nothing happens, nothing is said
        {"vater()\n", "W", ""},
        {">\n", "W", "CMD-KDOOBJ-NOBROTHER"},
        {":\n", "a", ""},
        {">\n", "b", ""},
        {"naechster()\n", "a", ""},   // from the last brother back to the eldest
        {"sohn()\n", "c", ""},
        {":\n", "c", "CMD-KDOOBJ-NOSUCCESSOR"},
        {"NAECHSTER ( )\n", "c", "CMD-KDOOBJ-NOBROTHER"},   // an only son
        {"-\n", "a", ""},
        {"b:\n", "b", ""},
        {"a:\n", "a", ""},   // a brother
        {"c:\n", "c", ""},
        {"<Bild>a:\n", "a", ""},   // with its type, an ancestor
        {"c:\n", "c", ""},
        {"x:\n", "c", "CMD-KDOOBJ-NOTEX"},
    };
    for (const auto& f : faelle) {
        faenger.leere();
        Compiler::ausfuehreZeile(f.zeile);
        EXPECT_EQ(aktuell(), f.danach) << f.zeile;
        EXPECT_EQ(labels(faenger), f.label) << f.zeile;
    }
    EXPECT_EQ(faenger.letzte().level, 'E');
    EXPECT_EQ(faenger.letzte().funktion, "Compiler::setzeAktKdoObjekt");
    EXPECT_EQ(faenger.letzte().detail, "x");
    faenger.leere();
    Compiler::ausfuehreZeile(":\n");
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().detail, "c");
    EXPECT_EQ(faenger.letzte().level, 'W');
    EXPECT_EQ(faenger.letzte().funktion, "Compiler::kdooSohn");
}

TEST_F(CompilerTest, AnzeigeKdoObjekteListsTheSonsFullNames) {
    StromFaenger aus(std::cout);
    Compiler::ausfuehreZeile("anzeigeKdoObjekte()\n");
    Compiler::ausfuehreZeile("b:\n");
    Compiler::ausfuehreZeile("anzeigeKdoObjekte()\n");
    const std::string kopf = "Das aktuelle Kommando-Objekt hat folgende direkte Nachfolger:\n";
    EXPECT_EQ(aus.text(), kopf + "<Wurzel>W.<Bild>a\n<Wurzel>W.<Bild>b\n" + kopf);
}

// ---------------------------------------------------------------------------
// Help texts

TEST_F(CompilerTest, GeneralHelpIsByteExact) {
    MeldungsFaenger faenger;
    StromFaenger aus(std::cout);
    kdoBaum->suche("a", 1);
    Compiler::ausfuehreZeile("?\n");
    const std::string erwartet =
        "?                  Hilfe\n"
        "<Kommandoname> ?   Hilfe fuer Kommando <Kommandoname>\n"
        "- bzw. vater()     Gehe zu Vater-KdoObjekt\n"
        ": bzw. sohn()      Gehe zu Sohn-KdoObjekt (aeltester Sohn)\n"
        "> bzw. naechster() Gehe zu Geschwister-KdoObjekt (naechst aeltestes)\n"
        "kdoOTypCheck       \xDC"
        "berpr\xFC"
        "fen des Kommando-Objekt-Typs\n"
        "imFehlerfall       Steuerung bei Auftreten eines Fehlers\n"
        "anzeigeImFehlerfall Anzeige der fuer Fehlerfall definierten Steuerung\n"
        "<id>=holeParameter(<num>) weist <id> den <num>-ten Parameter zu\n"
        "<id>=liefereName() weist <id> den Namen des aktuellen Kommando-Objekts zu\n"
        "exit bzw. exit()   Verlassen des Programms\n"
        "\n"
        "<KdoObjekt-Name>:  <KdoObjekt-Name> wird zum aktuellen KdoObjekt\n"
        "anzeigeKdoObjekte  anzeigen der direkten Nachfolger\n"
        "ausfuehre          ausfuehren einer VOREX++-Kommandoprozedur\n"
        "ausfuehreTrans     umsetzen einer Datei mit Hilfe einer\n"
        "                   Grammatik in VOREX++-Kommandos und Ausfuehrung\n"
        "umsetze            umsetzen einer Datei mit Hilfe einer\n"
        "                   Grammatik. Ausgabe wird in Datei geschrieben\n"
        "\n"
        "<Wurzel>W.<Bild>a\n"
        "\n"
        "Kommandoliste Test\nfehl\nmelde\nok\nzahl\n";
    EXPECT_EQ(aus.text(), erwartet);
    EXPECT_EQ(aus.text().find('\xDC'), aus.text().find("berpr") - 1);
    EXPECT_EQ(labels(faenger), "");
}

TEST_F(CompilerTest, StatementHelpIsByteExact) {
    struct {
        const char* zeile;
        const char* text;
    } faelle[] = {
        {"anzeigeKdoObjekte ?\n", "anzeigeKdoObjekte\n"},
        {"exit ?\n", "exit\n"},
        {"anzeigeImFehlerfall?\n", "anzeigeImFehlerfall\n"},
        {"ausfuehre ?\n", "ausfuehre\n        DateiName       dateiName\n        Parameterliste\n\n"},
        {"ausfuehreTrans ?\n",
         "ausfuehreTrans\n        DateiName       umzusetzende Datei\n        DAT oder SYSOSP\n"
         "        DateiName oder Objekt   Grammatik-Datei oder -Objekt\n        Parameterliste\n\n"},
        {"UMSETZE ?\n",
         "umsetze\n        DateiName       umzusetzende Datei\n        DAT oder SYSOSP\n"
         "        DateiName oder Objekt   Grammatik-Datei oder -Objekt\n        DateiName       Ausgabedatei\n\n"},
        {"kdoOTypCheck ?\n",
         "kdoOTypCheck\n        KdoOTyp         typ\n        enum{exit,returnMain,return} exitStatus\n\n"},
        {"imFehlerfall ?\n",
         "imFehlerfall\n        String         fehlername\n        Enum{exit,return,returnMain} exitStatus\n\n"},
    };
    for (const auto& f : faelle) {
        MeldungsFaenger faenger;
        StromFaenger aus(std::cout);
        Compiler::ausfuehreZeile(f.zeile);
        EXPECT_EQ(aus.text(), f.text) << f.zeile;
        EXPECT_EQ(labels(faenger), "") << f.zeile;
    }
}

// ---------------------------------------------------------------------------
// Syntax errors

TEST_F(CompilerTest, SyntaxErrorBoxIsByteExact) {
    BoxFaenger boxen;
    StromFaenger aus(std::cout);
    interaktiv("lies)\n");
    EXPECT_EQ(boxen.ausgabe(),
              "+---------------------------------------------------\n"
              "| %KIV-E-CMD-SYNTAX-ERROR\n"
              "|   :1:5\n"
              "|   lies)\n"
              "|   ----^ \n"
              "+---------------------------------------------------\n");
}

TEST_F(CompilerTest, SyntaxErrorNamesFileLineAndColumn) {
    MeldungsFaenger faenger;
    prozedur(datei("ct_syntax.kiv", "ok()\n\n\tok(),ok()\nok() )\nok()\n"));
    // The recovery behind ")" skips the line. The one after an error inside
    // the parentheses still hands the line to the command, whose own reading
    // refuses it.
    EXPECT_EQ(fehlerLabels(faenger), "CMD-SYNTAX-ERROR,CMD-WRONGENDING,CMD-SYNTAX-ERROR");
    std::vector<std::string> details;
    for (const Meldung& m : faenger.meldungen())
        if (m.label == "CMD-SYNTAX-ERROR") details.push_back(m.detail);
    ASSERT_EQ(details.size(), 2u);
    EXPECT_EQ(details[0], "ct_syntax.kiv:3:6\n ok(),ok()\n-----^");
    EXPECT_EQ(details[1], "ct_syntax.kiv:4:6\nok() )\n-----^");
    EXPECT_EQ(protokoll().size(), 2u);
}

}  // namespace
}  // namespace compilertest
