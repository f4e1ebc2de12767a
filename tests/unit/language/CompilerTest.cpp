// The Compiler on procedures: the replacement of parameters, the nesting
// limit and the matrix of the error control. Texts the program prints whole
// (help, echo lines, boxes) are proven by the end-to-end cases.
#include <cstdio>
#include <fstream>

#include "KdoTestHilfe.h"
#include "foundation/DynArray.h"
#include "foundation/Tabulator.h"
#include "language/Compiler.h"

namespace {

// A tree of the root <Wurzel>W alone, which knows the commands
//   ok()  fehl()  melde(Enum{E,W,I,S} l)  zahl(Integer n, default 7)
// which record their name (zahl with its value); melde reports TEST-MELDUNG
// at level l.
std::vector<std::string> protokoll;

int kdoOk(KdoObjekt&, KdoKommando&) { return protokoll.push_back("ok"), 1; }
int kdoFehl(KdoObjekt&, KdoKommando&) { return protokoll.push_back("fehl"), 0; }
int kdoMelde(KdoObjekt&, KdoKommando& k) {
    protokoll.push_back("melde");
    Fehler("TEST-MELDUNG", "test", "", "EWIS"[k[0].liefereArgWertInt() & 3]);
    return 1;
}
int kdoZahl(KdoObjekt&, KdoKommando& k) {
    return protokoll.push_back("zahl(" + std::to_string(k[0].liefereArgWertInt()) + ")"), 1;
}

class CompilerTest : public ::testing::Test {
protected:
    void SetUp() override {
        protokoll.clear();
        {
            Meldungsaufnahme still;
            liste.fuegeEin(new KdoKommando("ok", "", kdoOk));
            liste.fuegeEin(new KdoKommando("fehl", "", kdoFehl));
            liste.fuegeEin(new KdoKommando("melde", "Enum{E,W,I,S} level", kdoMelde));
            liste.fuegeEin(new KdoKommando("zahl", "Integer n", kdoZahl));
            liste.definiere(AnwKommando("melde(E)"));
            liste.definiere(AnwKommando("zahl(7)"));
        }
        wurzel.setzeVollenNamen("<Wurzel>W");
        laufzeit.setzeBaum(
            std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
        tab.setzeStops(10, {10, 25, 45});
        dokPosition = &tab;
        kdoAnzeigeStream = &std::cout;
        setzeZurueck();
    }
    void TearDown() override {
        setzeZurueck();
        dokPosition = nullptr;
        kdoAnzeigeStream = nullptr;
        for (const std::string& d : dateien) std::remove(d.c_str());
    }
    static void setzeZurueck() {
        for (const char* l : {"E", "F", "I", "S", "W", "TEST-MELDUNG", "CMD-NOSUCHCMD"})
            Fehler::setzeStatus(l, 0);
        Fehler::holeStatus();
        aktuelleZeile = String();
    }
    // Writes a procedure file that the test removes afterwards.
    std::string datei(const std::string& name, const std::string& inhalt) {
        std::ofstream(name, std::ios::binary) << inhalt;
        dateien.push_back(name);
        return name;
    }
    static int prozedur(const std::string& name) {
        return static_cast<int>(Compiler::ausfuehreBatch(String(name), nullptr, 0));
    }
    KdoListe liste{"Test"};
    TypObjekt wurzel{"Wurzel", "W", &liste};
    KdoLaufzeit laufzeit;  // after the objects: its tree goes first
    Tabulator tab;
    std::vector<std::string> dateien;
};

TEST(Compiler, ParametersReplaceTheirKeys) {
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
        {"'p1'", ""},        // unset ones up to p9 are empty
        {"'p10'", "'p10'"},  // beyond p9 nothing is defined
    };
    for (const auto& f : faelle) EXPECT_EQ(mitParametern.ersetzeDefinitionen(f.zeile), f.ergebnis) << f.zeile;

    // p0 is replaced first; its value then holds the key of p1, which comes
    // later and is replaced in turn, but p0's own key is not taken again.
    p[0] = "'p0''p1'";
    p[1] = "Y";
    Compiler d(&p, 2);
    EXPECT_EQ(d.ersetzeDefinitionen("'p0'"), "'p0'Y");
}

TEST_F(CompilerTest, AProcedureThatCallsItselfStopsAtTheNestingLimit) {
    Meldungsaufnahme aufnahme;
    EXPECT_EQ(prozedur(datei("cb_selbst.kiv", "zahl(1)\nausfuehre(\"cb_selbst.kiv\")\n")), 0);
    EXPECT_EQ(protokoll.size(), static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
    EXPECT_EQ(aufnahme.mit("CMD-KDOOBJ-BATCH-TOODEEP").size(), 1u);
    EXPECT_EQ(aufnahme.mit("CMD-KDOOBJ-BATCH-CLOSED").size(),
              static_cast<std::size_t>(Compiler::MAX_SCHACHTELUNG));
}

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
        {"imFehlerfall(\"S\", exit)", "melde(S)", 3, "Compiler::compileStream"},
        {"imFehlerfall(\"E\", exit)", "melde(W)", 0, ""},
        {"imFehlerfall(\"I\", return)", "melde(I)", 0, "Compiler::compileStream"},  // ends this file only
        // label statuses, at any level
        {"imFehlerfall(\"TEST-MELDUNG\", exit)", "melde(S)", 3, "Compiler::compileStream"},
        // a failed user command
        {"imFehlerfall( , returnMain )", "zahl(x)", 2, "Compiler::ausfuehreExeKommando"},
        // a help request does not run the command, and so counts as failed
        {"imFehlerfall(, exit)", "ok ?", 3, "Compiler::ausfuehreExeKommando"},
        // the highest status of the line wins
        {"imFehlerfall(, return)\nimFehlerfall(\"E\", exit)", "zahl(x)", 3,
         "Compiler::ausfuehreExeKommando,Compiler::compileStream"},
        {"imFehlerfall(, exit)\nimFehlerfall(\"E\", return)", "zahl(x)", 3, "Compiler::ausfuehreExeKommando"},
        // cleared settings
        {"imFehlerfall(, exit)\nimFehlerfall()", "fehl()", 0, ""},
    };
    for (const auto& f : faelle) {
        SCOPED_TRACE(std::string(f.einstellung) + " / " + f.zeile);
        setzeZurueck();
        protokoll.clear();
        Meldungsaufnahme aufnahme;
        StromFaenger aus(std::cout);
        datei("cf_matrix.kiv", std::string(f.einstellung) + "\n" + f.zeile + "\nzahl(1)\n");
        EXPECT_EQ(prozedur("cf_matrix.kiv"), f.status);
        std::string abbruch;
        for (const Meldung& m : aufnahme.mit("CMD-ABORT-PROC"))
            abbruch += (abbruch.empty() ? "" : ",") + m.funktion;
        EXPECT_EQ(abbruch, f.abbruch);
        const bool abgebrochen = *f.abbruch != '\0';
        EXPECT_EQ(static_cast<int>(Compiler::liefereLaufStatus()), abgebrochen ? 4 : 3);
        const bool weiter = !protokoll.empty() && protokoll.back() == "zahl(1)";
        EXPECT_EQ(weiter, !abgebrochen);
    }
}

}  // namespace
