// Token streams of the command scanner, written as text (see kdoTokenBild;
// #m after a token that changed the mode), and the positions the character
// source reports.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "KdoTestHilfe.h"
#include "language/Scanner.h"

namespace {

// Scans `eingabe` to its end in mode `modus`. With `rohNachKlammer` the
// stream switches to raw text behind every "(", as the parser does behind a
// command name; with `mitPosition` each token is followed by @line:column.
std::string tokens(const std::string& eingabe, int modus = 1, bool rohNachKlammer = false,
                   bool mitPosition = false) {
    KdoScanner scanner;
    std::istringstream strom(eingabe);
    scanner.oeffne(strom, 1);
    KdoLaufzeit laufzeit;
    laufzeit.scannerModus = static_cast<ScannerModus>(modus);
    std::string aus;
    for (int n = 0; n < 200; ++n) {
        String wert;
        QuellPosition pos;
        const ScannerModus vorher = laufzeit.scannerModus;
        dataInteger t = scanner.naechstesToken(wert, pos);
        aus += (aus.empty() ? "" : " ") + kdoTokenBild(t, wert);
        if (laufzeit.scannerModus != vorher)
            aus += "#" + std::to_string(static_cast<int>(laufzeit.scannerModus));
        if (mitPosition) aus += "@" + std::to_string(pos.zeile) + ":" + std::to_string(pos.spalte);
        if (t == KdoToken::ENDE) break;
        if (rohNachKlammer && t == '(') laufzeit.scannerModus = ScannerModus::Text;
    }
    return aus;
}

}  // namespace

TEST(ScannerTest, NormalMode) {
    EXPECT_EQ(tokens("lies(Intel, a.hex)\n"), "N(lies) ( N(Intel) , N(a) . N(hex) ) NL END");
    EXPECT_EQ(tokens("<Kiv>Kiv.<Eprom>a: ?\n"), "< N(Kiv) > N(Kiv) . < N(Eprom) > N(a) : ? NL END");
    EXPECT_EQ(tokens("- + > = / ; \x01\n"), "MINUS PLUS > = / ; \x01 NL END");
    // Digits start names in mode 1 and numbers in mode 2.
    EXPECT_EQ(tokens("12 1a _b9\n"), "N(12) N(1a) N(_b9) NL END");
    EXPECT_EQ(tokens("12 3.25 7. .5 1a\n", 2), "Z(12) R(3.25) R(7.) . Z(5) Z(1) N(a) NL END");
    // Blank, tab, form feed, carriage return and control-Z are white space;
    // a vertical tab is not.
    EXPECT_EQ(tokens("a \t\f\r\x1a b\v\n"), "N(a) N(b) \v NL END");
    // A byte 255 or 0 ends the input.
    EXPECT_EQ(tokens("a \xff b\n"), "N(a) END");
    EXPECT_EQ(tokens(std::string("a \0 b\n", 6)), "N(a) END");
}

TEST(ScannerTest, KeywordsInAnyCase) {
    EXPECT_EQ(tokens("anzeigeKdoObjekte ausfuehre AUSFUEHRETRANS dat SysOsp return returnMain\n"),
              "ANZEIGEKDOOBJEKTE AUSFUEHRE AUSFUEHRETRANS DAT SYSOSP RETURN RETURNMAIN NL END");
    EXPECT_EQ(tokens("holeParameter liefereName exit kdoOTypCheck imFehlerfall anzeigeImFehlerfall\n"),
              "HOLEPARAMETER LIEFERENAME EXIT KDOOTYPCHECK IMFEHLERFALL ANZEIGEIMFEHLERFALL NL END");
    EXPECT_EQ(tokens("umsetze vater SOHN naechster\n"), "UMSETZE VATER SOHN NAECHSTER NL END");
    // Near misses stay names, with their case.
    EXPECT_EQ(tokens("exits Exi vater_ sohn1 ausfuehren\n"),
              "N(exits) N(Exi) N(vater_) N(sohn1) N(ausfuehren) NL END");
    EXPECT_EQ(KdoScanner::sucheSchluesselwort("LiefereName"), KdoToken::LIEFERENAME);
    EXPECT_EQ(KdoScanner::sucheSchluesselwort(""), KdoToken::NAME);
}

TEST(ScannerTest, CommentsAndContinuations) {
    EXPECT_EQ(tokens("a ! b (\n"), "N(a) NL END");
    EXPECT_EQ(tokens("a // b (\n"), "N(a) NL END");
    EXPECT_EQ(tokens("a /b\n"), "N(a) / N(b) NL END");
    EXPECT_EQ(tokens("! x\n"), "NL END");
    EXPECT_EQ(tokens("ab\\\ncd\n"), "N(abcd) NL END");
    EXPECT_EQ(tokens("ab\\cd\n"), "N(ab\\cd) NL END");
    EXPECT_EQ(tokens("12\\\n3\n", 2), "Z(123) NL END");
    EXPECT_EQ(tokens("a \\\n b\n"), "N(a) N(b) NL END");
    // A comment without a line end runs to the end of input.
    EXPECT_EQ(tokens("a ! b"), "N(a) END");
}

TEST(ScannerTest, Strings) {
    EXPECT_EQ(tokens("\"a b\" \"\"\n"), "T\"a b\" T\"\" NL END");
    EXPECT_EQ(tokens("\"a\\\nb\" \"a\\b\"\n"), "T\"ab\" T\"a\\b\" NL END");
    // A backslash does not protect a double quote.
    EXPECT_EQ(tokens("\"a\\\"b\"\n"), "T\"a\\\" N(b) SCANFEHLER NL END");

    KdoScanner scanner;
    std::istringstream strom("x \"ab\ny");
    scanner.oeffne(strom, 1);
    KdoLaufzeit laufzeit;
    String wert;
    QuellPosition pos;
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::NAME);
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::SCANFEHLER);
    EXPECT_STREQ(scanner.liefereFehlerText(), "Das Zeichen '\\n' wurde im String gefunden.");
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::ZEILENENDE);
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::NAME);
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::ENDE);

    std::istringstream offen("\"ab");
    scanner.oeffne(offen, 1);
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::SCANFEHLER);
    EXPECT_STREQ(scanner.liefereFehlerText(), "Das Ende des Doppelt-Hochkomma-Strings wurde nicht gefunden.");
    EXPECT_EQ(scanner.naechstesToken(wert, pos), KdoToken::ENDE);
}

TEST(ScannerTest, RawText) {
    EXPECT_EQ(tokens("lies(Intel, a.hex)\n", 1, true), "N(lies) ( T\"Intel\" , T\" a.hex\" )#1 NL END");
    // Empty places between separators are empty texts; ")" behind "(" too.
    EXPECT_EQ(tokens("lies(,a.hex)\n", 1, true), "N(lies) ( T\"\" , T\"a.hex\" )#1 NL END");
    EXPECT_EQ(tokens("c(a,,)\n", 1, true), "N(c) ( T\"a\" , T\"\" , T\"\"#1 ) NL END");
    EXPECT_EQ(tokens("c()\n", 1, true), "N(c) ( T\"\"#1 ) NL END");
    // Separators inside either kind of quotes belong to the text.
    EXPECT_EQ(tokens("c(\"a,b)\", 'c,d)', e)\n", 1, true),
              "N(c) ( T\"\"a,b)\"\" , T\" 'c,d)'\" , T\" e\" )#1 NL END");
    EXPECT_EQ(tokens("c(\"a'b\", x)\n", 1, true), "N(c) ( T\"\"a'b\", x)\" NL#1 END");
    EXPECT_EQ(tokens("c(a(b), c)\n", 1, true), "N(c) ( T\"a(b\" )#1 , N(c) ) NL END");
    // No comments in raw text; a backslash-newline continues it, other
    // backslashes stay.
    EXPECT_EQ(tokens("c(a ! b // c)\n", 1, true), "N(c) ( T\"a ! b // c\" )#1 NL END");
    EXPECT_EQ(tokens("c(a\\\nb, c\\d)\n", 1, true), "N(c) ( T\"ab\" , T\" c\\d\" )#1 NL END");
    // The newline ends raw text and the mode.
    EXPECT_EQ(tokens("a, b\nc\n", 0), "T\"a\" , T\" b\" NL#1 N(c) NL END");
    // Raw text without a final newline ends at the end of input; a byte 255
    // inside the line is text.
    EXPECT_EQ(tokens("ab", 0), "T\"ab\" END");
    EXPECT_EQ(tokens("a\xff"
                     "b)\n",
                     0),
              "T\"a\xff"
              "b\" )#1 NL END");
}

TEST(ScannerTest, TokenPositions) {
    EXPECT_EQ(tokens("ab  cd\n  \"ef\"\n", 1, false, true),
              "N(ab)@1:1 N(cd)@1:5 NL@1:6 T\"ef\"@2:3 NL@2:6 END@3:0");
    // CR LF is one line end; a lone CR ends a line as well.
    EXPECT_EQ(tokens("a\r\nb\rc\n", 1, false, true), "N(a)@1:1 NL@1:1 N(b)@2:1 N(c)@3:1 NL@3:1 END@4:0");
}

TEST(ScannerTest, SourceLineTextAndMarker) {
    ZeichenQuelle q;
    std::istringstream strom("skip\n\tab\tc\r\nxyz");
    strom.get();  // the source starts where the stream stands
    q.oeffne(strom, 10);
    for (int i = 0; i < 6; ++i) q.naechstes();  // "kip\n\ta"
    QuellPosition p = q.position();
    EXPECT_EQ(p.zeile, 11);
    EXPECT_EQ(p.spalte, 2);
    StringPuffer puffer;
    q.zeilenText(p, puffer);
    EXPECT_STREQ(puffer.c_str(), " ab c");
    q.marke(p, puffer);
    EXPECT_STREQ(puffer.c_str(), "-^");
    // Reading goes on behind the look back.
    EXPECT_EQ(q.naechstes(), 'b');
    for (int i = 0; i < 3; ++i) q.naechstes();  // "\tc\r\n"
    EXPECT_EQ(q.position().zeile, 11);
    for (int i = 0; i < 3; ++i) q.naechstes();
    EXPECT_EQ(q.naechstes(), -1);
    EXPECT_TRUE(q.amEnde());
    q.zeilenText(q.position(), puffer);
    EXPECT_STREQ(puffer.c_str(), "xyz");
    EXPECT_EQ(q.naechstes(), -1);
}

namespace {

class OhneStart : public Scanner {
public:
    void start() override {}
};

class Ruecksprung : public Scanner {
public:
    void start() override { geheZu(zustand_); }

private:
    struct Zustand : ScannerZustand {
        void operator()(Scanner& s) const override { s.kehreZurueck(); }
    } zustand_;
};

template <class S>
void scanne() {
    S scanner;
    std::istringstream strom("x\n");
    scanner.oeffne(strom, 1);
    String wert;
    QuellPosition pos;
    scanner.naechstesToken(wert, pos);
}

}  // namespace

TEST(ScannerTest, AutomatonFaultsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(scanne<OhneStart>(), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(scanne<Ruecksprung>(), testing::ExitedWithCode(1),
                "Scanner::Stack::pop\\(\\): fatal error #1");
}
