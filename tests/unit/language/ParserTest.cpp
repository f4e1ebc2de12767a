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
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

#include "KdoTestHilfe.h"
#include "language/KdoParser.h"

namespace {

class Protokollant : public KdoParser {
public:
    std::string lauf(const std::string& zeilen, int modus = 1) {
        laufzeit_.scannerModus = static_cast<ScannerModus>(modus);
        modus_ = modus;
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

void pruefe(const std::vector<Fall>& faelle, int modus = 1) {
    for (const Fall& f : faelle) {
        Protokollant p;
        EXPECT_EQ(p.lauf(std::string(f.zeile) + "\n", modus), f.erwartet) << "line: " << f.zeile;
    }
}

}  // namespace

TEST(ParserTest, Statements) {
    pruefe({
        {"lies(Intel, a.hex)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"Intel\" , T\" a.hex\" )#1 NL END {exeOhneObjekt} "
         "{modusNormal}"},
        {"a: lies(Intel)",
         "N(a) {merkeWort:a} : N(lies) {merkeWort:lies} ( {modusText}#0 T\"Intel\" )#1 NL END {exeMitObjekt} "
         "{modusNormal}"},
        {"a: lies ?",
         "N(a) {merkeWort:a} : N(lies) {merkeWort:lies} ? {modusText}#0 NL#1 END {hilfeMitObjekt} "
         "{modusNormal}"},
        {"lies ?", "N(lies) {merkeWort:lies} ? {modusText}#0 NL#1 END {hilfeOhneObjekt} {modusNormal}"},
        {"a:", "N(a) {merkeWort:a} : NL END {setzeAktKdoObjekt} {modusNormal}"},
        {"a: ?", "N(a) {merkeWort:a} : ? NL END {exeMitObjekt} {modusNormal}"},
        {"?", "? NL END {hilfeAllgemein} {modusNormal}"},
        {"-", "MINUS NL END {kdooVater} {modusNormal}"},
        {"vater()", "VATER ( ) NL END {kdooVater} {modusNormal}"},
        {":", ": NL END {kdooSohn} {modusNormal}"},
        {"sohn()", "SOHN ( ) NL END {kdooSohn} {modusNormal}"},
        {">", "> NL END {kdooGeschwister} {modusNormal}"},
        {"naechster()", "NAECHSTER ( ) NL END {kdooGeschwister} {modusNormal}"},
        {"x=holeParameter(3)",
         "N(x) {merkeWort:x} = HOLEPARAMETER {modusZahl}#2 ( Z(3) {merkeZahl:3} ) NL END {insertParam} "
         "{modusNormal}#1"},
        {"x=liefereName()",
         "N(x) {merkeWort:x} = LIEFERENAME {modusZahl}#2 ( ) NL END {setzeName} {modusNormal}#1"},
        {"ausfuehre(\"datei\", \"a\", \"b\")",
         "AUSFUEHRE ( {parameterLoeschen} T\"datei\" {merkeDatei:datei} , T\"a\" {merkeParameter:a} , T\"b\" "
         "{merkeParameter:b} ) NL END {ausfuehre} {modusNormal}"},
        {"ausfuehre(\"datei\")",
         "AUSFUEHRE ( {parameterLoeschen} T\"datei\" {merkeDatei:datei} ) NL END {ausfuehre} {modusNormal}"},
        {"anzeigeKdoObjekte()", "ANZEIGEKDOOBJEKTE ( ) NL END {anzeigeKdoObjekte} {modusNormal}"},
        {"kdoOTypCheck(Eprom, exit)",
         "KDOOTYPCHECK ( N(Eprom) {merkeWort:Eprom} , EXIT ) {statusExit} NL END {ausfuehreKdoOTypCheck} "
         "{modusNormal}"},
        {"exit", "EXIT NL {statusExit} END {modusNormal}"},
        {"exit()", "EXIT ( {statusExit} ) NL END {modusNormal}"},
        {"return", "RETURN NL {statusReturn} END {modusNormal}"},
        {"returnMain()", "RETURNMAIN ( {statusReturnMain} ) NL END {modusNormal}"},
        {"imFehlerfall(\"E\", exit)",
         "IMFEHLERFALL ( T\"E\" {merkeWort:E} , EXIT ) {statusExit} NL END {imFehlerfallSetzen} "
         "{modusNormal}"},
        {"imFehlerfall(\"E\")",
         "IMFEHLERFALL ( T\"E\" {merkeWort:E} ) NL END {imFehlerfallLoeschen} {modusNormal}"},
        {"imFehlerfall(\"E\",)",
         "IMFEHLERFALL ( T\"E\" {merkeWort:E} , ) NL END {imFehlerfallLoeschen} {modusNormal}"},
        {"imFehlerfall(, return)",
         "IMFEHLERFALL ( , RETURN ) {statusReturn} NL END {funktionswertSetzen} {modusNormal}"},
        {"imFehlerfall(,)", "IMFEHLERFALL ( , ) NL END {funktionswertLoeschen} {modusNormal}"},
        {"imFehlerfall()", "IMFEHLERFALL ( ) NL END {funktionswertLoeschen} {modusNormal}"},
        {"anzeigeImFehlerfall()", "ANZEIGEIMFEHLERFALL ( ) NL END {anzeigeImFehlerfall} {modusNormal}"},
        {"ausfuehreTrans(\"q.txt\", DAT, g.txt, \"p1\")",
         "AUSFUEHRETRANS ( {parameterLoeschen} T\"q.txt\" {merkeDatei:q.txt} , {modusNormal} DAT , "
         "{modusText}#0 T\" g.txt\" {merkeGrammatik: g.txt} , {modusText} T\" \"p1\"\" {merkeParameter: "
         "\"p1\"} )#1 NL END {ausfuehreTransDat} {modusNormal}"},
        {"ausfuehreTrans(\"q.txt\", SYSOSP, <Gram>g, \"p1\", \"p2\")",
         "AUSFUEHRETRANS ( {parameterLoeschen} T\"q.txt\" {merkeDatei:q.txt} , {modusNormal} SYSOSP , < "
         "N(Gram) {merkeWort:Gram} > N(g) {merkeWort:g} , {modusText}#0 T\" \"p1\"\" {merkeParameter: "
         "\"p1\"} , T\" \"p2\"\" {merkeParameter: \"p2\"} )#1 NL END {ausfuehreTransOSp} {modusNormal}"},
        {"umsetze(q.txt, DAT, g.txt, z.txt)",
         "UMSETZE ( {modusText}#0 T\"q.txt\" {merkeDatei:q.txt} , {modusNormal}#1 DAT , {modusText}#0 T\" "
         "g.txt\" {merkeGrammatik: g.txt} , {modusText} T\" z.txt\" {merkeZiel: z.txt} )#1 NL END "
         "{umsetzeDat} {modusNormal}"},
        {"umsetze(q.txt, SYSOSP, <Gram>g.h, z.txt)",
         "UMSETZE ( {modusText}#0 T\"q.txt\" {merkeDatei:q.txt} , {modusNormal}#1 SYSOSP , < N(Gram) "
         "{merkeWort:Gram} > N(g) {merkeWort:g} . N(h) {merkeWort:h} , {modusText}#0 T\" z.txt\" {merkeZiel: "
         "z.txt} )#1 NL END {umsetzeOSp} {modusNormal}"},
    });
}

TEST(ParserTest, HelpWordsAndPaths) {
    pruefe({
        {"ausfuehre ?", "AUSFUEHRE ? {hilfeAusfuehre} NL END"},
        {"anzeigeKdoObjekte ?", "ANZEIGEKDOOBJEKTE ? {hilfeAnzeigeKdoObjekte} NL END"},
        {"exit ?", "EXIT ? {hilfeExit} NL END"},
        {"ausfuehreTrans ?", "AUSFUEHRETRANS ? {hilfeAusfuehreTrans} NL END"},
        {"umsetze ?", "UMSETZE ? {hilfeUmsetze} NL END"},
        {"imFehlerfall ?", "IMFEHLERFALL ? {hilfeImFehlerfall} NL END"},
        {"anzeigeImFehlerfall ?", "ANZEIGEIMFEHLERFALL ? {hilfeAnzeigeImFehlerfall} NL END"},
        {"kdoOTypCheck ?", "KDOOTYPCHECK ? {hilfeKdoOTypCheck} NL END"},
        {"<Kiv>Kiv.<Eprom>a: lies(x)",
         "< N(Kiv) {merkeWort:Kiv} > N(Kiv) {merkeWort:Kiv} . < N(Eprom) {merkeWort:Eprom} > N(a) "
         "{merkeWort:a} : N(lies) {merkeWort:lies} ( {modusText}#0 T\"x\" )#1 NL END {exeMitObjekt} "
         "{modusNormal}"},
        {"a.b: cmd()",
         "N(a) {merkeWort:a} . N(b) {merkeWort:b} : N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"\"#1 ) NL END "
         "{exeMitObjekt} {modusNormal}"},
        {"lies(,a.hex)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"\" , T\"a.hex\" )#1 NL END {exeOhneObjekt} "
         "{modusNormal}"},
        {"cmd()", "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"\"#1 ) NL END {exeOhneObjekt} {modusNormal}"},
        {"cmd(a,)",
         "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"a\" , T\"\"#1 ) NL END {exeOhneObjekt} {modusNormal}"},
    });
}

// Default reductions run before the error is seen: "exit xyz" has already set
// the exit status, "abc" has switched to raw text (and the error alternative
// switches back). Any shift ends the recovery, so "abc xyz(q)" reports once
// and then runs the command xyz.
TEST(ParserTest, ErrorAtLineStart) {
    pruefe({
        {")", ") !1:1 {modusNormal} NL END =1"},
        {"lies)", "N(lies) {merkeWort:lies} ) {modusText}#0 !1:5 {modusNormal}#1 NL END =1"},
        {"abc", "N(abc) {merkeWort:abc} NL {modusText}#0 !1:3 {modusNormal}#1 END =1"},
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
        {"LiefereName", "LIEFERENAME !1:1 {modusNormal} NL END =1"},
        {"sohn(x)",
         "SOHN ( N(x) !1:6 {modusNormal} {merkeWort:x} ) {modusText}#0 !1:7 {modusNormal}#1 NL END =1"},
    });
}

TEST(ParserTest, ErrorBehindObjectAndCommand) {
    pruefe({
        {"a: )", "N(a) {merkeWort:a} : ) !1:4 {modusNormal} {modusNormal} NL END =1"},
        {"a: (x)",
         "N(a) {merkeWort:a} : ( !1:4 {modusNormal} {modusNormal} N(x) {merkeWort:x} ) {modusText}#0 !1:6 "
         "{modusNormal}#1 NL END =1"},
        {"a: cmd x",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} N(x) {modusText}#0 !1:8 {modusNormal}#1 {modusNormal} "
         "{merkeWort:x} NL {modusText}#0 !1:8 {modusNormal}#1 END =1"},
        {"a: cmd x(y)",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} N(x) {modusText}#0 !1:8 {modusNormal}#1 {modusNormal} "
         "{merkeWort:x} ( {modusText}#0 T\"y\" )#1 NL END {exeOhneObjekt} {modusNormal} =1"},
        {"a: cmd",
         "N(a) {merkeWort:a} : N(cmd) {merkeWort:cmd} NL {modusText}#0 !1:6 {modusNormal}#1 {modusNormal} "
         "END =1"},
    });
}

// The recovery in an argument list skips to its ")", after which the command
// line is complete: "cmd((x)" reports and still runs the command.
TEST(ParserTest, ErrorInArgumentList) {
    pruefe({
        {"cmd(a", "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"a\" NL#1 !1:5 END =1"},
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
        {"cmd(a) x",
         "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"a\" )#1 N(x) !1:8 {modusNormal} {merkeWort:x} NL "
         "{modusText}#0 !1:8 {modusNormal}#1 END =1"},
        {"cmd(\"a,b)", "N(cmd) {merkeWort:cmd} ( {modusText}#0 T\"\"a,b)\" NL#1 !1:9 END =1"},
    });
}

// A backslash-newline directly behind a separator in raw text is not a
// continuation: raw text only knows it inside a text.
TEST(ParserTest, CommentsBlanksContinuations) {
    pruefe({
        {"", "NL END"},
        {"! comment (", "NL END"},
        {"// comment (", "NL END"},
        {"exit // bye", "EXIT NL {statusExit} END {modusNormal}"},
        {"exit ! bye", "EXIT NL {statusExit} END {modusNormal}"},
        {"a / b",
         "N(a) {merkeWort:a} / {modusText}#0 !1:3 {modusNormal}#1 N(b) {merkeWort:b} NL {modusText}#0 !1:5 "
         "{modusNormal}#1 END =1"},
        {"exi\\\nt", "EXIT NL {statusExit} END {modusNormal}"},
        {"lies(a,\\\n b)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"a\" , T\"\\\" NL#1 !1:8 N(b) ) NL {modusNormal} END "
         "{exeOhneObjekt} {modusNormal} =1"},
        {"lies(a, b\\\nc)",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"a\" , T\" bc\" )#1 NL END {exeOhneObjekt} "
         "{modusNormal}"},
        {"ausfuehre(\"a\\\nb\")",
         "AUSFUEHRE ( {parameterLoeschen} T\"ab\" {merkeDatei:ab} ) NL END {ausfuehre} {modusNormal}"},
        {"lies \\\n?", "N(lies) {merkeWort:lies} ? {modusText}#0 NL#1 END {hilfeOhneObjekt} {modusNormal}"},
    });
}

TEST(ParserTest, KeywordsIgnoreCase) {
    pruefe({
        {"eXiT ?", "EXIT ? {hilfeExit} NL END"},
        {"x = liefereName ( )",
         "N(x) {merkeWort:x} = LIEFERENAME {modusZahl}#2 ( ) NL END {setzeName} {modusNormal}#1"},
        {"Dat: x()",
         "DAT !1:1 {modusNormal} : N(x) !1:6 {modusNormal} {merkeWort:x} ( {modusText}#0 T\"\"#1 ) NL END "
         "{exeOhneObjekt} {modusNormal} =1"},
    });
}

TEST(ParserTest, Strings) {
    pruefe({
        {"ausfuehre(\"abc", "AUSFUEHRE ( {parameterLoeschen} SCANFEHLER !1:14 {modusNormal} NL END =1"},
        {"imFehlerfall(\"a\\\nb\")",
         "IMFEHLERFALL ( T\"ab\" {merkeWort:ab} ) NL END {imFehlerfallLoeschen} {modusNormal}"},
        {"imFehlerfall(\"a\\\"b\")",
         "IMFEHLERFALL ( T\"a\\\" {merkeWort:a\\} N(b) !1:18 {modusNormal} {merkeWort:b} SCANFEHLER "
         "{modusText}#0 !1:20 {modusNormal}#1 NL END =1"},
        {"ausfuehre(\"a b\", \"\\x\")",
         "AUSFUEHRE ( {parameterLoeschen} T\"a b\" {merkeDatei:a b} , T\"\\x\" {merkeParameter:\\x} ) NL END "
         "{ausfuehre} {modusNormal}"},
    });
}

TEST(ParserTest, Mode2FirstLine) {
    pruefe(
        {
            {"12", "Z(12) !1:1 {modusNormal}#1 NL END =1"},
            {"12.5", "R(12.5) !1:1 {modusNormal}#1 NL END =1"},
            {"1a",
             "Z(1) !1:1 {modusNormal}#1 N(a) {merkeWort:a} NL {modusText}#0 !1:2 {modusNormal}#1 END =1"},
            {"x=holeParameter(7)",
             "N(x) {merkeWort:x} = HOLEPARAMETER {modusZahl} ( Z(7) {merkeZahl:7} ) NL END {insertParam} "
             "{modusNormal}#1"},
        },
        2);
}

TEST(ParserTest, SeveralLines) {
    pruefe({
        {"exit\nreturn", "EXIT NL {statusExit} RETURN {modusNormal} NL {statusReturn} END {modusNormal}"},
        {")\nexit", ") !1:1 {modusNormal} NL EXIT NL {statusExit} END {modusNormal} =1"},
        {"lies(a\nb: c()",
         "N(lies) {merkeWort:lies} ( {modusText}#0 T\"a\" NL#1 !1:6 N(b) : N(c) ( ) NL {modusNormal} END "
         "{exeOhneObjekt} {modusNormal} =1"},
    });
}

TEST(ParserTest, GenericErrorMessageShowsLineAndMarker) {
    KdoParser p;
    std::istringstream strom("exit\n\tlies)\n");
    p.oeffne("proc.kiv", strom, 7);
    KdoLaufzeit laufzeit;
    testing::internal::CaptureStderr();
    EXPECT_EQ(p.parse(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "proc.kiv:8:6: syntax error:\n lies)\n-----^\n");
    // The error report seeks in the stream; reading must have gone on behind it.
    EXPECT_EQ(p.liefereToken(), KdoToken::ENDE);
}

// A parser over hand-made tables, for the faults that generated tables never
// have. Grammar: s -> NAME; accept on ZEILENENDE behind s.
namespace {

constexpr dataInteger S = 500;

YTabelle kleineTabelle() {
    YTabelle t;
    t.regeln = {{S + 1, 2}, {S, 1}};
    t.zustaende.resize(3);
    t.zustaende[0].aktionen = {{0, KdoToken::NAME, Y_SCHIEBE, 1, nullptr}};
    t.zustaende[0].gotos = {{S, 2}};
    t.zustaende[1].defaultArt = Y_REDUZIERE;
    t.zustaende[1].defaultRegel = 1;
    t.zustaende[2].aktionen = {{0, KdoToken::ZEILENENDE, Y_AKZEPTIERE, 0, nullptr}};
    return t;
}

class KleinerParser : public YParser {
public:
    explicit KleinerParser(const YTabelle& t) : YParser(scanner, t) {}
    int lauf(const char* text) {
        strom.str(text);
        scanner.oeffne(strom, 1);
        laufzeit.scannerModus = ScannerModus::Normal;
        return parse();
    }
    void errorMessage() override { ++meldungen; }
    int meldungen = 0;

private:
    KdoLaufzeit laufzeit;
    KdoScanner scanner;
    std::istringstream strom;
};

}  // namespace

TEST(ParserTest, HandMadeTableAcceptsAndReportsOnceWithoutErrorEntries) {
    YTabelle t = kleineTabelle();
    KleinerParser ok(t);
    EXPECT_EQ(ok.lauf("abc\n"), 0);
    EXPECT_EQ(ok.meldungen, 0);
    // No state expects `error`: one report, then the parse stops.
    KleinerParser kaputt(t);
    EXPECT_EQ(kaputt.lauf(") ) )\n"), 1);
    EXPECT_EQ(kaputt.meldungen, 1);
}

TEST(ParserTest, TableFaultsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    {
        YTabelle t = kleineTabelle();
        t.zustaende[1].defaultArt = 7;
        EXPECT_EXIT(KleinerParser(t).lauf("a\n"), testing::ExitedWithCode(1),
                    "YParser::performDefaultAction\\(\\): faltal error\\.");
    }
    {
        YTabelle t = kleineTabelle();
        t.zustaende[0].gotos.clear();
        EXPECT_EXIT(KleinerParser(t).lauf("a\n"), testing::ExitedWithCode(1),
                    "YParser::searchNontermAction\\(\\): fatal error #1\\.");
    }
    {
        YTabelle t = kleineTabelle();
        t.zustaende[0].gotos = {{S + 7, 2}};
        EXPECT_EXIT(KleinerParser(t).lauf("a\n"), testing::ExitedWithCode(1),
                    "YParser::searchNontermAction\\(\\): fatal error #2\\.");
    }
    {
        YTabelle t = kleineTabelle();
        t.regeln[1].laenge = 2;
        EXPECT_EXIT(KleinerParser(t).lauf("a\n"), testing::ExitedWithCode(1),
                    "Stack::reduce\\(\\): fatal error #1");
    }
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
