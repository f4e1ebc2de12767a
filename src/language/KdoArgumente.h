// The concrete argument classes of command signatures.
//
// Each class reads one kind of token at its place of the command text,
// keeps a current and a default value and serves the accessors of its
// value type (see KdoArgument). The Bool forms add `gesetzt`: 1 when a
// value was given, 0 when the placeholder "/" stands, so that a handler can
// tell an absent optional value from a given one.
#pragma once

#include <memory>
#include <vector>

#include "foundation/DynArray.h"
#include "language/KdoArgument.h"

class KdoKommando;
class Liste;

// ---------------------------------------------------------------------------
// The Bool form of a plain argument class

template <class Basis>
class KdoBoolForm : public Basis {
public:
    using Basis::Basis;

    YesNo& liefereArgWertBool() override { return gesetzt_; }
    void setzeArgWertBool(const YesNo& wert) override { gesetzt_ = wert; }
    void zeigeWert(std::ostream& strom) const override {
        if (gesetzt_ != 1)
            strom << platzhalter_;
        else
            Basis::zeigeWert(strom);
    }
    void zeigeVorgabe(std::ostream& strom) const override {
        if (vorgabeGesetzt_ != 1)
            strom << platzhalter_;
        else
            Basis::zeigeVorgabe(strom);
    }
    void ladeVorgabe() override {
        Basis::ladeVorgabe();
        gesetzt_ = vorgabeGesetzt_;
    }
    void merkeVorgabe() override {
        Basis::merkeVorgabe();
        vorgabeGesetzt_ = gesetzt_;
    }

protected:
    // 1 if `c` can begin a value of the plain form.
    virtual bool kannBeginnen(int) const { return false; }
    // Empty place, a value of the plain form, or the placeholder.
    int interpretiereBool(AnwKommando& anw, int definition, const char* funktion);

    YesNo gesetzt_ = 0;
    YesNo vorgabeGesetzt_ = 0;
    char platzhalter_ = '/';
};

// The Bool form of a text class: a text set from outside counts as given.
template <class Basis>
class KdoBoolText : public KdoBoolForm<Basis> {
public:
    using KdoBoolForm<Basis>::KdoBoolForm;
    void setzeArgWertStr(const String& wert) override {
        this->aktuell_ = wert;
        this->gesetzt_ = 1;
    }
};

// ---------------------------------------------------------------------------
// The value part of a plain argument class: a current value and a default,
// and how one of them is shown.

template <class T>
class KdoWertArgument : public KdoArgument {
public:
    explicit KdoWertArgument(const String& name, const T& anfang = T{})
        : KdoArgument(name), aktuell_(anfang), vorgabe_(anfang) {}
    void zeigeWert(std::ostream& strom) const override { zeige(strom, aktuell_); }
    void zeigeVorgabe(std::ostream& strom) const override { zeige(strom, vorgabe_); }
    void ladeVorgabe() override { aktuell_ = vorgabe_; }
    void merkeVorgabe() override { vorgabe_ = aktuell_; }

protected:
    virtual void zeige(std::ostream& strom, const T& wert) const = 0;

    T aktuell_;
    T vorgabe_;
};

// ---------------------------------------------------------------------------
// Numbers and truth values

class KdoArgumentInteger : public KdoWertArgument<dataInteger> {
public:
    explicit KdoArgumentInteger(const String& name) : KdoWertArgument(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::Integer; }
    int interpretiere(AnwKommando& anw, int definition) override;
    dataInteger& liefereArgWertInt() override { return aktuell_; }
    void setzeArgWertInt(const dataInteger& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const dataInteger& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

class KdoArgumentBoolInteger : public KdoBoolForm<KdoArgumentInteger> {
public:
    using KdoBoolForm::KdoBoolForm;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolInteger; }
    int interpretiere(AnwKommando& anw, int definition) override;
    void setzeArgWertInt(const dataInteger& wert) override;

protected:
    bool kannBeginnen(int c) const override;
};

class KdoArgumentIntegerHex : public KdoWertArgument<adrInteger> {
public:
    explicit KdoArgumentIntegerHex(const String& name) : KdoWertArgument(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::IntegerHex; }
    int interpretiere(AnwKommando& anw, int definition) override;
    adrInteger& liefereArgWertIntHex() override { return aktuell_; }
    // The value as a byte; 256 and above report "CMD-VALTOOBIG".
    unsigned char liefereArgWertCharHex() override;
    void setzeArgWertIntHex(const adrInteger& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const adrInteger& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

class KdoArgumentBoolIntegerHex : public KdoBoolForm<KdoArgumentIntegerHex> {
public:
    using KdoBoolForm::KdoBoolForm;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolIntegerHex; }
    int interpretiere(AnwKommando& anw, int definition) override;
    void setzeArgWertIntHex(const adrInteger& wert) override;

protected:
    bool kannBeginnen(int c) const override;
};

class KdoArgumentPhys : public KdoWertArgument<dataPhys> {
public:
    explicit KdoArgumentPhys(const String& name) : KdoWertArgument(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::Phys; }
    int interpretiere(AnwKommando& anw, int definition) override;
    dataPhys& liefereArgWertPhys() override { return aktuell_; }
    void setzeArgWertPhys(const dataPhys& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const dataPhys& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

class KdoArgumentBool : public KdoWertArgument<YesNo> {
public:
    explicit KdoArgumentBool(const String& name) : KdoWertArgument(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::Bool; }
    int interpretiere(AnwKommando& anw, int definition) override;
    YesNo& liefereArgWertBool() override { return aktuell_; }
    void setzeArgWertBool(const YesNo& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const YesNo& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

// ---------------------------------------------------------------------------
// Texts

// Common value part of the text arguments.
class KdoArgumentText : public KdoWertArgument<String> {
public:
    explicit KdoArgumentText(const String& name) : KdoWertArgument(name) {}
    String& liefereArgWertStr() override { return aktuell_; }
    void setzeArgWertStr(const String& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const String& wert) const override;
    // Readers shared by several classes.
    Token liesWortToken(std::istream& strom);
    Token liesQuotiertToken(std::istream& strom);
    // A quoted text that must stay on one line ("CMD-WRONGARG-TOOLONG").
    Token liesEinzeiligToken(AnwKommando& anw, std::istream& strom);
};

class KdoArgumentWort : public KdoArgumentText {
public:
    explicit KdoArgumentWort(const String& name) : KdoArgumentText(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::Wort; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

class KdoArgumentBoolWort : public KdoBoolText<KdoArgumentWort> {
public:
    using KdoBoolText::KdoBoolText;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolWort; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    bool kannBeginnen(int c) const override { return istWortZeichen(c); }
};

// A word naming an element of a list of the command's object; the name is
// not checked while parsing.
class KdoArgumentNameInListe : public KdoArgumentWort {
public:
    KdoArgumentNameInListe(const String& name, KdoKommando* kommando)
        : KdoArgumentWort(name), kommando_(kommando) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::NameInListe; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    KdoKommando* kommando_;
};

class KdoArgumentBoolNameInListe : public KdoBoolText<KdoArgumentNameInListe> {
public:
    using KdoBoolText::KdoBoolText;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolNameInListe; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    bool kannBeginnen(int c) const override { return istWortZeichen(c); }
};

// A double-quoted text; line feeds allowed.
class KdoArgumentLString : public KdoArgumentText {
public:
    explicit KdoArgumentLString(const String& name) : KdoArgumentText(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::LString; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

// A double-quoted text on one line.
class KdoArgumentString : public KdoArgumentText {
public:
    explicit KdoArgumentString(const String& name) : KdoArgumentText(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::String; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

// A comma-separated list of names (a quoted text or a single word) that
// selects elements of a list of the command's object when it is delivered.
class KdoArgumentNamenInListe : public KdoArgumentText {
public:
    KdoArgumentNamenInListe(const String& name, KdoKommando* kommando)
        : KdoArgumentText(name), kommando_(kommando) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::NamenInListe; }
    int interpretiere(AnwKommando& anw, int definition) override;
    // Selects the named elements with `auswahl` 2, all of them for an empty
    // value. 1 if every name was found.
    int liefereArgWertListe() override;
    void setzeArgWertListe(const String& namen) override { aktuell_ = namen; }

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
    // The object's list, or null after "INT-CMD-ARG-LIST-NOT-EXIST".
    Liste* liefereListe();
    int waehleAus(Liste& liste);

    KdoKommando* kommando_;
};

class KdoArgumentBoolNamenInListe : public KdoBoolText<KdoArgumentNamenInListe> {
public:
    using KdoBoolText::KdoBoolText;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolNamenInListe; }
    // The placeholder of this class is written inside quotes: "/".
    int interpretiere(AnwKommando& anw, int definition) override;
    int liefereArgWertListe() override;
    void setzeArgWertListe(const String& namen) override;
};

// A regular expression, stored as plain text.
class KdoArgumentRegExpr : public KdoArgumentText {
public:
    explicit KdoArgumentRegExpr(const String& name) : KdoArgumentText(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::RegExpr; }
    int interpretiere(AnwKommando& anw, int definition) override;

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

// ---------------------------------------------------------------------------
// File names

class KdoArgumentDateiName : public KdoWertArgument<DateiName> {
public:
    explicit KdoArgumentDateiName(const String& name) : KdoWertArgument(name, DateiName("x.x")) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::DateiName; }
    int interpretiere(AnwKommando& anw, int definition) override;
    DateiName& liefereArgWertDatei() override { return aktuell_; }
    void setzeArgWertDatei(const DateiName& wert) override { aktuell_ = wert; }

protected:
    void zeige(std::ostream& strom, const DateiName& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
};

class KdoArgumentDateiPfad : public KdoArgumentDateiName {
public:
    explicit KdoArgumentDateiPfad(const String& name) : KdoArgumentDateiName(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::DateiPfad; }
    int interpretiere(AnwKommando& anw, int definition) override;
};

// ---------------------------------------------------------------------------
// Command objects

// The path of a command object, resolved through `kdoBaum` when delivered.
// `erlaubteTypen` is the brace text of the signature, such as "Eprom".
class KdoArgumentKdoObjekt : public KdoArgument {
public:
    KdoArgumentKdoObjekt(const String& name, const String& erlaubteTypen);
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::KdoObjekt; }
    // The type name, then the allowed types in parentheses.
    void ausgabe(std::ostream& strom) const override;
    void zeigeWert(std::ostream& strom) const override { strom << pfad_; }
    void zeigeVorgabe(std::ostream& strom) const override { strom << vorgabe_; }
    void ladeVorgabe() override { pfad_ = vorgabe_; }
    void merkeVorgabe() override { vorgabe_ = pfad_; }
    int interpretiere(AnwKommando& anw, int definition) override;
    KdoObjekt* liefereArgWertKdoObjekt() override;
    void setzeArgWertKdoObjekt(KdoObjekt* objekt) override;

protected:
    Token liesToken(AnwKommando& anw, std::istream& strom) override;
    KdoObjekt* loese();

    std::vector<String> typen_;
    String pfad_;
    String vorgabe_;
    String kommandoText_;  // for later messages
    String rohText_;
};

class KdoArgumentBoolKdoObjekt : public KdoBoolForm<KdoArgumentKdoObjekt> {
public:
    using KdoBoolForm::KdoBoolForm;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::BoolKdoObjekt; }
    int interpretiere(AnwKommando& anw, int definition) override;
    // An empty path gives null without a message.
    KdoObjekt* liefereArgWertKdoObjekt() override;
    void setzeArgWertKdoObjekt(KdoObjekt* objekt) override;
};

// ---------------------------------------------------------------------------
// Enumeration

// One of the names of the brace text; the value is the name's index.
class KdoArgumentEnum : public KdoWertArgument<dataInteger> {
public:
    KdoArgumentEnum(const String& name, const String& namenText);
    ~KdoArgumentEnum() override;
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::Enum; }
    // "Enum{", the names joined by ",", "}".
    void ausgabe(std::ostream& strom) const override;
    const TextFeld* liefereEnumWerte() override;
    int interpretiere(AnwKommando& anw, int definition) override;
    dataInteger& liefereArgWertInt() override { return aktuell_; }
    // Only an index below the name count is taken ("CMD-INDEXINVALID").
    void setzeArgWertInt(const dataInteger& wert) override;

protected:
    void zeige(std::ostream& strom, const dataInteger& wert) const override;
    Token liesToken(AnwKommando& anw, std::istream& strom) override;

    std::unique_ptr<TextFeld> namen_;
};

// ---------------------------------------------------------------------------
// Lists

// Pairs "hex/value" separated by white space. The two pair lists differ only
// in the value behind the "/".
template <class Paar>
class KdoArgumentPaarListe : public KdoArgument {
public:
    explicit KdoArgumentPaarListe(const String& name) : KdoArgument(name) {}
    void zeigeWert(std::ostream& strom) const override;
    void zeigeVorgabe(std::ostream& strom) const override;
    void ladeVorgabe() override { aktuell_ = vorgabe_; }
    void merkeVorgabe() override { vorgabe_ = aktuell_; }

protected:
    // Reads the pairs up to "," or ")". An empty place gives the empty list,
    // not the default.
    int liesPaare(AnwKommando& anw, int definition, const char* funktion);
    // Reads the value behind "/" and appends the pair; false if there is none.
    virtual bool liesWert(std::istream& strom, dataInteger iwert, std::vector<Paar>& neu) = 0;
    // The pair at i; an empty list reports, an index beyond the last warns
    // and gives the last pair.
    Paar* paarAn(std::uint16_t i, const char* leerFunktion, const char* indexFunktion);

    std::vector<Paar> aktuell_;
    std::vector<Paar> vorgabe_;
};

extern template class KdoArgumentPaarListe<WertePaar>;
extern template class KdoArgumentPaarListe<WertePaarStr>;

// Pairs "hex/phys", such as "100/1.5 200/2.5".
class KdoArgumentWPListe : public KdoArgumentPaarListe<WertePaar> {
public:
    explicit KdoArgumentWPListe(const String& name) : KdoArgumentPaarListe(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::WPListe; }
    int interpretiere(AnwKommando& anw, int definition) override;
    WertePaar* liefereArgWertWP(std::uint16_t i) override;
    void setzeArgWertWP(std::uint16_t i, const WertePaar& paar) override;
    void initWPListe() override { aktuell_.clear(); }
    std::int32_t liefereAnzahlWP() override { return static_cast<std::int32_t>(aktuell_.size()); }

protected:
    bool liesWert(std::istream& strom, dataInteger iwert, std::vector<WertePaar>& neu) override;
};

// Pairs hex/"text", such as 1000/"Text".
class KdoArgumentWPStrListe : public KdoArgumentPaarListe<WertePaarStr> {
public:
    explicit KdoArgumentWPStrListe(const String& name) : KdoArgumentPaarListe(name) {}
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::WPStrListe; }
    int interpretiere(AnwKommando& anw, int definition) override;
    WertePaarStr* liefereArgWertWPStr(std::uint16_t i) override;
    // An index not below the count warns and appends all the same.
    void setzeArgWertWPStr(std::uint16_t i, const WertePaarStr& paar) override;
    void initWPStrListe() override { aktuell_.clear(); }
    std::int32_t liefereAnzahlWPStr() override { return static_cast<std::int32_t>(aktuell_.size()); }

protected:
    bool liesWert(std::istream& strom, dataInteger iwert, std::vector<WertePaarStr>& neu) override;
};

// Parameters as texts. Current value and default may be the same array.
class KdoArgumentParameterListe : public KdoArgument {
public:
    explicit KdoArgumentParameterListe(const String& name);
    KdoArgTyp liefereTyp() const override { return KdoArgTyp::ParameterListe; }
    void zeigeWert(std::ostream& strom) const override;
    void zeigeVorgabe(std::ostream& strom) const override;
    void ladeVorgabe() override { aktuell_ = vorgabe_; }
    void merkeVorgabe() override { vorgabe_ = aktuell_; }
    int interpretiere(AnwKommando& anw, int definition) override;
    DynArray<String>& liefereArgWertDynArrStr() override { return *aktuell_; }
    // The elements joined by ",".
    String& liefereArgWertStr() override;
    // Splits the text at "," and ")" into a new array.
    void setzeArgWertStr(const String& wert) override;

protected:
    std::shared_ptr<DynArray<String>> aktuell_;
    std::shared_ptr<DynArray<String>> vorgabe_;
};
