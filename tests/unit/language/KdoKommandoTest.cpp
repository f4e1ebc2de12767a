// Commands: bad signatures and the reading of a call (help, parentheses, too
// many arguments, the ending). Command lists, their handlers and the help
// layout are proven by the end-to-end cases.
#include "KdoTestHilfe.h"

namespace {

TEST(KdoKommando, BadSignaturesMakeTheCommandUnusable) {
    for (const char* signatur : {"integer x", "Integer{x} x", "Integer a Foo b", "Integer a Bool "}) {
        SCOPED_TRACE(signatur);
        Meldungsaufnahme aufnahme;
        KdoKommando k("cmd", signatur, nullptr);
        EXPECT_EQ(aufnahme.labels(), std::vector<std::string>{"CMD-INTERNAL-WRONGARG"});
        EXPECT_EQ(k.pruefeOk(), 0);
        // Every use reports, and the arguments give way to a dummy.
        EXPECT_EQ(kdoLauf(k, "cmd(1)").labels, "CMD-INTERNAL-WRONGCMD");
        EXPECT_EQ(k[0].liefereName(), "");
    }
}

TEST(KdoKommando, ReadingACall) {
    auto ohne = kdoKommando("", "g");
    auto mit = kdoKommando("Integer a", "f");
    struct {
        KdoKommando* k;
        const char* aufruf;
        int ergebnis;
        const char* labels;
    } faelle[] = {
        {ohne.get(), "g( )", 1, ""},
        {ohne.get(), "g();rest", 1, ""},
        {ohne.get(), "g(1)", 0, "CMD-TOOMANYARG"},
        {ohne.get(), "g() x", 0, "CMD-WRONGENDING"},
        {ohne.get(), "g", 0, "CMD-ARGPARENTHESIS"},
        {ohne.get(), "g x", 0, "CMD-WRONGCMD,CMD-WRONGCMD"},
        {mit.get(), "f(1))", 0, "CMD-WRONGENDING"},
        {mit.get(), "f(1,)", 0, "CMD-TOOMANYARG"},
    };
    for (const auto& f : faelle) {
        SCOPED_TRACE(f.aufruf);
        StromFaenger ausgabe(std::cout);
        const KdoLauf l = kdoLauf(*f.k, f.aufruf);
        EXPECT_EQ(l.ergebnis, f.ergebnis);
        EXPECT_EQ(l.labels, f.labels);
        EXPECT_EQ(ausgabe.text(), "");
    }
}

}  // namespace
