// Commands: bad signatures, the reading of a call (help, parentheses, too
// many arguments, the ending), and a command list whose handlers record what
// they read. The help layout is proven by the end-to-end cases.
#include "KdoTestHilfe.h"
#include "foundation/Tabulator.h"

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
        {ohne.get(), "  g ( ) \n", 1, ""},
        {ohne.get(), "g();rest", 1, ""},
        {ohne.get(), "g(1)", 0, "CMD-TOOMANYARG"},
        {ohne.get(), "g() x", 0, "CMD-WRONGENDING"},
        {ohne.get(), "g", 0, "CMD-ARGPARENTHESIS"},
        {ohne.get(), "g x", 0, "CMD-WRONGCMD,CMD-WRONGCMD"},
        {mit.get(), "f(1) ;", 1, ""},
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

int aufrufe = 0;
std::string gelesen;

int kdoSetze(KdoObjekt&, KdoKommando& k) {
    ++aufrufe;
    std::ostringstream s;
    s << std::hex << k[0].liefereArgWertIntHex() << ' ' << k[1].liefereArgWertBool();
    if (k[1].liefereArgWertBool()) s << ' ' << k[1].liefereArgWertIntHex();
    s << ' ' << k[2].liefereArgWertInt();
    gelesen = s.str();
    return k[2].liefereArgWertInt() != 0 ? 1 : 0;
}

TEST(KdoListe, HandlersRunOnlyOnAWellReadCall) {
    KdoListe liste{"L"};
    TypObjekt objekt{"T", "x", &liste};
    auto fuehreAus = [&](const char* text) {
        AnwKommando anw(text);
        return objekt.fuehreAus(anw);
    };
    Meldungsaufnahme aufnahme;
    liste.fuegeEin(new KdoKommando("setze", "IntegerHex s\t\t\t BoolIntegerHex\te\n Enum{nein,ja} ok", kdoSetze));
    liste.definiere(AnwKommando("setze(0, /, ja)"));
    EXPECT_EQ(fuehreAus("setze(100, 1FF, ja)"), 1);
    EXPECT_EQ(gelesen, "100 1 1ff 1");
    EXPECT_EQ(liste.liefereAktuellesObjekt(), &objekt);
    EXPECT_EQ(fuehreAus("setze(10)"), 1);  // the rest from the defaults
    EXPECT_EQ(gelesen, "10 0 1");
    EXPECT_EQ(fuehreAus("setze(10,,nein)"), 0);  // the handler's own failure
    EXPECT_EQ(aufrufe, 3);
    EXPECT_EQ(aufnahme.anzahl(), 0u);

    Tabulator tab;
    dokPosition = &tab;
    StromFaenger ausgabe(std::cout);
    for (const char* text : {"setze(xyz)", "setze ?", "setze?", "?", "liess(1)"}) EXPECT_EQ(fuehreAus(text), 0) << text;
    dokPosition = nullptr;
    EXPECT_EQ(aufrufe, 3);
    EXPECT_EQ(kdoLabels(aufnahme.meldungen()), "CMD-WRONGARG,CMD-NOSUCHCMD");
}

}  // namespace
