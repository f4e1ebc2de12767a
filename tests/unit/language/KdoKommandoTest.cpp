// Commands: signatures, argument access, the reading of a call (help,
// parentheses, too many arguments, the ending), the command list, and
// handlers of registered commands that record what they read. The help
// layout is proven by the end-to-end cases.
#include "KdoTestHilfe.h"
#include "language/KdoArgumente.h"

namespace {

TEST(KdoKommando, SignatureWordsAreSeparatedByAnyWhiteSpace) {
    MeldungsFaenger faenger;
    KdoKommando k("lies",
                  "Enum{Intel,Motorola,Binaer} dateiTyp\t\t\t DateiName epromDatei\n"
                  "BoolIntegerHex\tstartAdresse \n",
                  nullptr);
    EXPECT_EQ(faenger.anzahl(), 0u);
    EXPECT_EQ(k.pruefeOk(), 1);
    EXPECT_EQ(k.liefereAnzahlArgumente(), 3);
    EXPECT_EQ(k[0].liefereName(), "dateiTyp");
    EXPECT_EQ(k[0].typText(), "Enum{Intel,Motorola,Binaer}");
    EXPECT_EQ(k[1].liefereTyp(), KdoArgTyp::DateiName);
    EXPECT_EQ(k[2].liefereName(), "startAdresse");
    EXPECT_EQ(k[2].liefereTyp(), KdoArgTyp::BoolIntegerHex);
}

TEST(KdoKommando, BadSignaturesMakeTheCommandUnusable) {
    struct {
        const char* signatur;
        const char* detail;
    } faelle[] = {
        {"integer x", "integer"},        // names are case-sensitive
        {"Integer{x} x", "Integer{x}"},  // braces only where a type takes them
        {"Integer a Foo b", "Foo"},
        {"Integer a Bool ", "falsche Anzahl Worte"},  // a type word without a name
    };
    for (const auto& f : faelle) {
        MeldungsFaenger faenger;
        KdoKommando k("cmd", f.signatur, nullptr);
        ASSERT_EQ(faenger.anzahl(), 1u) << f.signatur;
        EXPECT_EQ(faenger.letzte().label, "CMD-INTERNAL-WRONGARG");
        EXPECT_EQ(faenger.letzte().detail, f.detail);
        EXPECT_EQ(faenger.letzte().funktion, "KdoKommando::KdoKommando");
        faenger.leere();
        // Every use reports, and the arguments give way to a dummy.
        EXPECT_EQ(kdoLauf(k, "cmd(1)").labels, "CMD-INTERNAL-WRONGCMD");
        faenger.leere();
        EXPECT_EQ(k[0].liefereName(), "");
        EXPECT_EQ(k[0].liefereTyp(), KdoArgTyp::RegExpr);
        EXPECT_EQ(faenger.letzte().label, "CMD-INTERNAL-WRONGCMD");
        EXPECT_EQ(faenger.letzte().detail, "cmd");
    }
}

TEST(KdoKommando, LongWordsAreCutAndTheRestReadNext) {
    MeldungsFaenger faenger;
    const std::string name(40, 'n');
    KdoKommando k("cmd", ("Integer " + name).c_str(), nullptr);
    // The name keeps 31 bytes; the rest is read as the next type word, which
    // has no name behind it.
    EXPECT_EQ(k.argument(0)->liefereName(), std::string(31, 'n'));
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().detail, "falsche Anzahl Worte");
    EXPECT_EQ(k.pruefeOk(), 0);
}

TEST(KdoKommando, IndexesBeyondTheLast) {
    MeldungsFaenger faenger;
    auto k = kdoKommando("Integer a Integer b");
    faenger.leere();
    EXPECT_EQ(&(*k)[7], k->argument(1));
    ASSERT_EQ(faenger.anzahl(), 1u);
    EXPECT_EQ(faenger.letzte().label, "CMD-INDEXCEEDED");
    EXPECT_EQ(faenger.letzte().funktion, "KdoKommando::operator[ ]");
    EXPECT_EQ(faenger.letzte().detail, "7");
    EXPECT_EQ(faenger.letzte().level, 'W');

    auto ohne = kdoKommando("");
    EXPECT_EQ((*ohne)[0].liefereName(), "");  // the dummy
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
        {ohne.get(), "g()", 1, ""},
        {ohne.get(), "g( )", 1, ""},
        {ohne.get(), "  g ( ) \n", 1, ""},
        {ohne.get(), "g() ;", 1, ""},
        {ohne.get(), "g();rest", 1, ""},
        {ohne.get(), "g(1)", 0, "CMD-TOOMANYARG"},
        {ohne.get(), "g() x", 0, "CMD-WRONGENDING"},
        {ohne.get(), "g", 0, "CMD-ARGPARENTHESIS"},
        {ohne.get(), "g x", 0, "CMD-WRONGCMD,CMD-WRONGCMD"},
        {mit.get(), "f(1) ;", 1, ""},
        {mit.get(), "f(1))", 0, "CMD-WRONGENDING"},
        {mit.get(), "f(1,)", 0, "CMD-TOOMANYARG"},
        {mit.get(), "f 1", 0, "CMD-WRONGCMD,CMD-WRONGCMD"},
    };
    for (const auto& f : faelle) {
        StromFaenger ausgabe(std::cout);
        const KdoLauf l = kdoLauf(*f.k, f.aufruf);
        EXPECT_EQ(l.ergebnis, f.ergebnis) << f.aufruf;
        EXPECT_EQ(l.labels, f.labels) << f.aufruf;
        EXPECT_EQ(ausgabe.text(), "") << f.aufruf;
    }
    // Each message of the call's reading carries the text of the call.
    const KdoLauf l = kdoLauf(*ohne, "g(1)");
    EXPECT_EQ(l.meldungen[0].detail, "g(1)");
    EXPECT_EQ(l.meldungen[0].funktion, "Kommando::interpretiere ");
}

// Commands registered by the test; the handler records what it read.
struct Protokoll {
    int aufrufe = 0;
    KdoObjekt* objekt = nullptr;
    KdoObjekt* aktuelles = nullptr;
    std::string werte;
};
Protokoll protokoll;

int kdoSetze(KdoObjekt& objekt, KdoKommando& k) {
    ++protokoll.aufrufe;
    protokoll.objekt = &objekt;
    protokoll.aktuelles = k.liefereAktuellesObjekt();
    std::ostringstream s;
    s << std::hex << k[0].liefereArgWertIntHex() << ' ' << k[1].liefereArgWertBool();
    if (k[1].liefereArgWertBool()) s << ' ' << k[1].liefereArgWertIntHex();
    s << ' ' << k[2].liefereArgWertInt();
    protokoll.werte = s.str();
    return k[2].liefereArgWertInt() != 0 ? 1 : 0;
}

int kdoLeer(KdoObjekt&, KdoKommando&) {
    ++protokoll.aufrufe;
    return 1;
}

class KdoListeTest : public ::testing::Test {
protected:
    void SetUp() override {
        protokoll = Protokoll();
        MeldungsFaenger faenger;
        liste.fuegeEin(new KdoKommando("setze",
                                       "IntegerHex\tstartAdresse\t\t\t BoolIntegerHex\tendAdresse\t\t\t "
                                       "Enum{nein,ja} ok",
                                       kdoSetze));
        liste.fuegeEin(new KdoKommando("zeta", "", kdoLeer));
        liste.fuegeEin(new KdoKommando("Abc", "", kdoLeer));
        AnwKommando vorgabe("setze(0, /, ja)");
        EXPECT_NE(liste.definiere(vorgabe), nullptr);
        EXPECT_EQ(faenger.anzahl(), 0u);
    }
    int fuehreAus(const char* text) {
        AnwKommando anw(text);
        return objekt.fuehreAus(anw);
    }
    KdoListe liste{"L"};
    TypObjekt objekt{"T", "x", &liste};
};

TEST_F(KdoListeTest, HandlerReadsTheArgumentsOnItsObject) {
    MeldungsFaenger faenger;
    EXPECT_EQ(fuehreAus("setze(100, 1FF, ja)"), 1);
    EXPECT_EQ(protokoll.werte, "100 1 1ff 1");
    EXPECT_EQ(protokoll.objekt, &objekt);
    EXPECT_EQ(protokoll.aktuelles, &objekt);
    EXPECT_EQ(liste.liefereAktuellesObjekt(), &objekt);

    EXPECT_EQ(fuehreAus("setze(10)"), 1);  // the rest from the defaults
    EXPECT_EQ(protokoll.werte, "10 0 1");
    EXPECT_EQ(fuehreAus("setze(10,,nein)"), 0);  // the handler's own failure
    EXPECT_EQ(protokoll.aufrufe, 3);
    EXPECT_EQ(faenger.anzahl(), 0u);

    // A second command of the same name is refused; the first one stays.
    liste.fuegeEin(new KdoKommando("zeta", "", nullptr));
    EXPECT_EQ(faenger.letzte().label, "LIST-ELEDOUBLE");
    EXPECT_EQ(fuehreAus("zeta()"), 1);
    EXPECT_EQ(protokoll.aufrufe, 4);
}

TEST_F(KdoListeTest, FailedReadingNeverRunsTheHandler) {
    Tabulator tab;
    dokPosition = &tab;
    MeldungsFaenger faenger;
    StromFaenger ausgabe(std::cout);
    EXPECT_EQ(fuehreAus("setze(xyz)"), 0);
    EXPECT_EQ(fuehreAus("setze ?"), 0);
    EXPECT_EQ(fuehreAus("setze?"), 0);
    EXPECT_EQ(fuehreAus("?"), 0);
    EXPECT_EQ(fuehreAus("liess(1)"), 0);
    EXPECT_EQ(protokoll.aufrufe, 0);
    EXPECT_EQ(kdoLabels(faenger.meldungen()), "CMD-WRONGARG,CMD-NOSUCHCMD");
    EXPECT_EQ(faenger.letzte().detail, "liess in L");
    EXPECT_EQ(faenger.letzte().funktion, "KdoListe::interpretiere ");
    EXPECT_NE(ausgabe.text().find("\nKommandoliste L\nAbc\nsetze\nzeta\n"), std::string::npos)
        << ausgabe.text();
    dokPosition = nullptr;
    // A pseudo object has no commands.
    KdoObjekt pseudo("p");
    AnwKommando anw("zeta()");
    EXPECT_EQ(pseudo.fuehreAus(anw), 0);
    EXPECT_EQ(protokoll.aufrufe, 0);
}

TEST(KdoKommandoTod, HelpWithoutTabulatorStops) {
    auto k = kdoKommando("Integer a", "f");
    std::ostringstream s;
    EXPECT_DEATH(k->anzeige(s), "dokPosition != NULL");
}

}  // namespace
