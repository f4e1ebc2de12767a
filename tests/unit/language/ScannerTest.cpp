// Token streams of the command scanner, written as text (see kdoTokenBild;
// #m after a token that changed the mode, @line:column where asked for), for
// what the parser's traces do not show: white space, the ends of the input,
// positions and the scanner's own errors. Source lines and their markers
// show in the end-to-end cases of syntax errors.
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

TEST(ScannerTest, TokenStreams) {
    const struct {
        const char* eingabe;
        int modus;
        bool roh, position;
        const char* erwartet;
    } faelle[] = {
        {"- + > = / ; \x01\n", 1, false, false, "MINUS PLUS > = / ; \x01 NL END"},
        // Digits start names in mode 1 and numbers in mode 2.
        {"12 1a _b9\n", 1, false, false, "N(12) N(1a) N(_b9) NL END"},
        {"12 3.25 7. .5 1a\n", 2, false, false, "Z(12) R(3.25) R(7.) . Z(5) Z(1) N(a) NL END"},
        // Blank, tab, form feed, carriage return and control-Z are white
        // space; a vertical tab is not. A byte 255 ends the input.
        {"a \t\f\r\x1a b\v\n", 1, false, false, "N(a) N(b) \v NL END"},
        {"a \xff b\n", 1, false, false, "N(a) END"},
        {"exits Exi vater_ sohn1 ausfuehren SoHn\n", 1, false, false,
         "N(exits) N(Exi) N(vater_) N(sohn1) N(ausfuehren) SOHN NL END"},
        {"ab\\\ncd ab\\cd a \\\n b\n", 1, false, false, "N(abcd) N(ab\\cd) N(a) N(b) NL END"},
        {"12\\\n3\n", 2, false, false, "Z(123) NL END"},
        {"a ! b", 1, false, false, "N(a) END"},  // a comment runs to the end of input
        {"\"a\\\nb\" \"a\\b\" \"a\\\"b\"\n", 1, false, false,
         "T\"ab\" T\"a\\b\" T\"a\\\" N(b) SCANFEHLER NL END"},
        {"x \"ab\ny", 1, false, false, "N(x) SCANFEHLER NL N(y) END"},
        {"\"ab", 1, false, false, "SCANFEHLER END"},
        // Separators inside either kind of quotes belong to raw text.
        {"c(\"a,b)\", 'c,d)', e)\n", 1, true, false,
         "N(c) ( T\"\"a,b)\"\" , T\" 'c,d)'\" , T\" e\" )#1 NL END"},
        {"c(\"a'b\", x)\n", 1, true, false, "N(c) ( T\"\"a'b\", x)\" NL#1 END"},
        {"c(a ! b // c)\n", 1, true, false, "N(c) ( T\"a ! b // c\" )#1 NL END"},
        {"c(a,,b)\n", 1, true, false, "N(c) ( T\"a\" , T\"\" , T\"b\" )#1 NL END"},
        {"c(a\\\nb, c\\d)\n", 1, true, false, "N(c) ( T\"ab\" , T\" c\\d\" )#1 NL END"},
        {"a, b\nc\n", 0, false, false, "T\"a\" , T\" b\" NL#1 N(c) NL END"},
        {"ab", 0, false, false, "T\"ab\" END"},
        {"a\377b)\n", 0, false, false, "T\"a\377b\" )#1 NL END"},
        {"ab  cd\n  \"ef\"\n", 1, false, true, "N(ab)@1:1 N(cd)@1:5 NL@1:6 T\"ef\"@2:3 NL@2:6 END@3:0"},
        // CR LF is one line end; a lone CR ends a line as well.
        {"a\r\nb\rc\n", 1, false, true, "N(a)@1:1 NL@1:1 N(b)@2:1 N(c)@3:1 NL@3:1 END@4:0"},
    };
    for (const auto& f : faelle)
        EXPECT_EQ(tokens(f.eingabe, f.modus, f.roh, f.position), f.erwartet) << f.eingabe;
    EXPECT_EQ(tokens(std::string("a \0 b\n", 6)), "N(a) END");
}
