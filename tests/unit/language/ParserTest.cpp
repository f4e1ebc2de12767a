// The command language's parser run over whole lines: which actions run, in
// which order, with which token text, and in which scanner mode each token is
// read. A recording parser writes all of it as one line of text:
//
//   N(x) NAME   T"x" TEXT   Z(1) ZAHL   NL ZEILENENDE   END ENDE
//   ( , ) ...   single characters and keywords as themselves
//   {aktion} or {aktion:tokentext}   a semantic action
//   #0 #1 #2    the scanner mode changed (after the token or action before)
//   !1:5        a syntax error reported at line 1, column 5
//   =1          parse() returned 1
#include <random>
#include <stdexcept>

#include "KdoTestHilfe.h"
#include "language/KdoParser.h"

namespace {

class Protokollant : public KdoParser {
public:
    std::string lauf(const std::string& zeilen) {
        log_.clear();
        std::istringstream strom(zeilen);
        oeffne("t", strom, 1);
        if (parse()) schreibe("=1");
        return log_.empty() ? log_ : log_.substr(1);
    }

protected:
    dataInteger holeToken() override {
        dataInteger t = KdoParser::holeToken();
        schreibe(kdoTokenBild(t, liefereTokenText()));
        return t;
    }
    void errorMessage() override {
        const QuellPosition& p = liefereTokenPosition();
        schreibe("!" + std::to_string(p.zeile) + ":" + std::to_string(p.spalte));
    }

private:
    void schreibe(const std::string& was) {
        log_ += " " + was;
        if (static_cast<int>(laufzeit_.scannerModus) != modus_) {
            modus_ = static_cast<int>(laufzeit_.scannerModus);
            log_ += "#" + std::to_string(modus_);
        }
    }

    // clang-format off
#define AKTION(name)                \
    void name() override {          \
        KdoParser::name();          \
        schreibe("{" #name "}");    \
    }
#define AKTION_MIT_TEXT(name)                                           \
    void name() override {                                              \
        KdoParser::name();                                              \
        schreibe("{" #name ":" + liefereTokenText().str() + "}");      \
    }
    AKTION(anzeigeImFehlerfall) AKTION(anzeigeKdoObjekte) AKTION(ausfuehre) AKTION(exeOhneObjekt)
    AKTION(exeMitObjekt) AKTION(hilfeAllgemein) AKTION(imFehlerfallSetzen) AKTION(funktionswertSetzen)
    AKTION(ausfuehreKdoOTypCheck) AKTION(hilfeOhneObjekt) AKTION(hilfeMitObjekt) AKTION(ausfuehreTransDat)
    AKTION(ausfuehreTransOSp) AKTION(hilfeAnzeigeImFehlerfall) AKTION(hilfeAnzeigeKdoObjekte)
    AKTION(hilfeAusfuehreTrans) AKTION(hilfeAusfuehre) AKTION(hilfeExit) AKTION(hilfeImFehlerfall)
    AKTION(hilfeKdoOTypCheck) AKTION(hilfeUmsetze) AKTION(parameterLoeschen) AKTION(insertParam)
    AKTION(kdooVater) AKTION(kdooGeschwister) AKTION(kdooSohn) AKTION(imFehlerfallLoeschen)
    AKTION(funktionswertLoeschen) AKTION(modusNormal) AKTION(modusText) AKTION(statusExit)
    AKTION(statusReturn) AKTION(statusReturnMain) AKTION(modusZahl) AKTION_MIT_TEXT(merkeWort)
    AKTION_MIT_TEXT(merkeZahl) AKTION(setzeAktKdoObjekt) AKTION_MIT_TEXT(merkeZiel)
    AKTION_MIT_TEXT(merkeParameter) AKTION_MIT_TEXT(merkeDatei) AKTION_MIT_TEXT(merkeGrammatik)
    AKTION(setzeName) AKTION(umsetzeDat) AKTION(umsetzeOSp)
#undef AKTION
#undef AKTION_MIT_TEXT
        // clang-format on

        std::string log_;
    int modus_ = 1;
    KdoLaufzeit laufzeit_;
};

struct Fall {
    const char* zeile;
    const char* erwartet;
};

void pruefe(const std::vector<Fall>& faelle) {
    for (const Fall& f : faelle) {
        Protokollant p;
        EXPECT_EQ(p.lauf(std::string(f.zeile) + "\n"), f.erwartet) << "line: " << f.zeile;
    }
}

}  // namespace

// Default reductions run before the error is seen: "exit xyz" has already set
// the exit status, "abc" has switched to raw text (and the error alternative
// switches back). Any shift ends the recovery, so "abc xyz(q)" reports once
// and then runs the command xyz.
TEST(ParserTest, ErrorAtLineStartAndBehindObjectOrCommand) {
    pruefe({
        {")", ") !1:1 {modusNormal} NL END =1"},
        {"abc xyz",
         "N(abc) {merkeWort:abc} N(xyz) {modusText}#0 !1:5 {modusNormal}#1 {merkeWort:xyz} NL {modusText}#0 "
         "!1:7 {modusNormal}#1 END =1"},
        {"abc xyz(q)",
         "N(abc) {merkeWort:abc} N(xyz) {modusText}#0 !1:5 {modusNormal}#1 {merkeWort:xyz} ( {modusText}#0 "
         "T\"q\" )#1 NL END {exeOhneObjekt} {modusNormal} =1"},
        {"exit xyz",
         "EXIT N(xyz) {statusExit} !1:6 {modusNormal} {merkeWort:xyz} NL {modusText}#0 !1:8 {modusNormal}#1 "
         "END =1"},
        {"ausfuehre", "AUSFUEHRE NL {parameterLoeschen} !1:9 {modusNormal} END =1"},
        {"sohn(x)",
         "SOHN ( N(x) !1:6 {modusNormal} {merkeWort:x} ) {modusText}#0 !1:7 {modusNormal}#1 NL END =1"},
        {"a: )", "N(a) {merkeWort:a} : ) !1:4 {modusNormal} {modusNormal} NL END =1"},
        {"a: cmd x",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} N(x) {modusText}#0 !1:8 {modusNormal}#1 {modusNormal} "
         "{merkeWort:x} NL {modusText}#0 !1:8 {modusNormal}#1 END =1"},
        {"a: cmd",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} NL {modusText}#0 !1:6 {modusNormal}#1 {modusNormal} "
         "END =1"},
    });
}

// The recovery in an argument list skips to its ")", after which the command
// line is complete: "cmd((x)" reports and still runs the command.
TEST(ParserTest, ErrorInArgumentList) {
    pruefe({
        {"cmd((x))",
         "N(cmd) {merkeWort:cmd} ( {modusText}#0 ( !1:5 T\"x\" )#1 ) {modusNormal} !1:8 {modusNormal} NL END "
         "=1"},
        {"cmd((x)",
         "N(cmd) {merkeWort:cmd} ( {modusText}#0 ( !1:5 T\"x\" )#1 NL {modusNormal} END {exeOhneObjekt} "
         "{modusNormal} =1"},
        {"a: cmd((x), y)",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} ( {modusText}#0 ( !1:8 T\"x\" )#1 , {modusNormal} "
         "!1:11 {modusNormal} {modusNormal} N(y) {merkeWort:y} ) {modusText}#0 !1:14 {modusNormal}#1 NL END "
         "=1"},
        {"cmd(a(b), c)",
         "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"a(b\" )#1 , !1:9 {modusNormal} N(c) {merkeWort:c} ) "
         "{modusText}#0 !1:12 {modusNormal}#1 NL END =1"},
        {"cmd(\"a,b)", "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"\"a,b)\" NL#1 !1:9 END =1"},
    });
}

// A backslash-newline directly behind a separator in raw text is not a
// continuation: raw text only knows it inside a text.
TEST(ParserTest, CommentsBlanksContinuations) {
    pruefe({
        {"a / b",
         "N(a) {merkeWort:a} / {modusText}#0 !1:3 {modusNormal}#1 N(b) {merkeWort:b} NL {modusText}#0 !1:5 "
         "{modusNormal}#1 END =1"},
        {"lies(a,\\\n b)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"a\" , T\"\\\" NL#1 !1:8 N(b) ) NL {modusNormal} END "
         "{exeOhneObjekt} {modusNormal} =1"},
        {"lies(a, b\\\nc)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"a\" , T\" bc\" )#1 NL END {exeOhneObjekt} "
         "{modusNormal}"},
    });
}

// Random bytes, biased towards the characters the language cares about, in
// every mode, with and without the final newline: the parse must end, and
// after a number of tokens that grows with the line only.
TEST(ParserTest, RandomLinesNeverHangOrCrash) {
    class Zaehler : public KdoParser {
    public:
        long tokens = 0;
        long grenze = 0;

    protected:
        dataInteger holeToken() override {
            if (++tokens > grenze) throw std::runtime_error("too many tokens");
            return KdoParser::holeToken();
        }
    };
    const std::string zeichen = "()\"',\\!/:.<>?=-+ \n\r\t\f\x1a\xff" + std::string(1, '\0') + "aZ_09";
    const char* woerter[] = {"exit",   "ausfuehre",     "imFehlerfall", "DAT",
                             "sysosp", "holeParameter", "umsetze",      "x"};
    std::mt19937 zufall(4711);
    std::ostringstream weg;
    std::streambuf* alt = std::cerr.rdbuf(weg.rdbuf());
    for (int n = 0; n < 3000; ++n) {
        std::string zeile;
        int laenge = static_cast<int>(zufall() % 40);
        while (static_cast<int>(zeile.size()) < laenge) {
            unsigned r = zufall() % 10;
            if (r < 5)
                zeile += zeichen[zufall() % zeichen.size()];
            else if (r < 7)
                zeile += woerter[zufall() % 8];
            else
                zeile += static_cast<char>(zufall() % 256);
        }
        if (n % 3) zeile += '\n';
        Zaehler p;
        p.grenze = 4 * static_cast<long>(zeile.size()) + 10;
        std::istringstream strom(zeile);
        p.oeffne("f", strom, 1);
        KdoLaufzeit laufzeit;
        laufzeit.scannerModus = static_cast<ScannerModus>(n % 3);
        int ergebnis = -1;
        EXPECT_NO_THROW(ergebnis = p.parse()) << "line " << n;
        EXPECT_TRUE(ergebnis == 0 || ergebnis == 1);
        const int modus = static_cast<int>(laufzeit.scannerModus);
        EXPECT_TRUE(modus >= 0 && modus <= 2);
    }
    std::cerr.rdbuf(alt);
}
