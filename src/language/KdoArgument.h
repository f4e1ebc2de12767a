// KdoArgument: the base of the typed arguments of a command.
//
// An argument reads its own piece of a command's text straight from the
// command's input stream, keeps a current and a default value, shows both,
// and hands its value to the command handler through the typed accessors
// below. The base implements every accessor as an error
// ("CMD-WRONGARGMETHOD") so that a concrete class overrides only what it can
// serve. The common parsing frame and its helpers live here as well; the
// concrete classes (KdoArgumente.h) supply the token reader.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <istream>

#include "foundation/DateiName.h"
#include "foundation/DynArray.h"
#include "foundation/String.h"
#include "foundation/Typen.h"

class AnwKommando;
class KdoObjekt;
class TextFeld;

// Type codes, in the order of the argument classes.
enum class KdoArgTyp : int {
    Integer = 0,
    BoolInteger,
    IntegerHex,
    BoolIntegerHex,
    Phys,
    Bool,
    Wort,
    BoolWort,
    NameInListe,
    BoolNameInListe,
    LString,
    String,
    NamenInListe,
    BoolNamenInListe,
    DateiName,
    DateiPfad,
    KdoObjekt,
    BoolKdoObjekt,
    RegExpr,
    Enum,
    WPListe,
    WPStrListe,
    ParameterListe,
    Anzahl
};

class KdoArgument {
public:
    explicit KdoArgument(const String& name);
    KdoArgument(const KdoArgument&) = delete;
    KdoArgument& operator=(const KdoArgument&) = delete;
    virtual ~KdoArgument() = default;

    // The type text of help and messages; by default the type name.
    virtual void ausgabe(std::ostream& strom) const;
    // The type word of the signature that builds this class.
    String liefereTypName() const;
    virtual KdoArgTyp liefereTyp() const = 0;
    // The names of an enumeration; others report "NOFUNC" and give null.
    virtual const TextFeld* liefereEnumWerte();
    virtual void zeigeWert(std::ostream& strom) const = 0;
    virtual void zeigeVorgabe(std::ostream& strom) const = 0;
    virtual void ladeVorgabe() = 0;   // current := default
    virtual void merkeVorgabe() = 0;  // default := current
    // Reads this argument's place of the command text. With definition 1
    // the value read also becomes the default. 1 on success.
    virtual int interpretiere(AnwKommando& anw, int definition) = 0;

    // Accessors; each class overrides those of its value type.
    virtual dataInteger& liefereArgWertInt();
    virtual adrInteger& liefereArgWertIntHex();
    virtual unsigned char liefereArgWertCharHex();
    virtual dataPhys& liefereArgWertPhys();
    virtual YesNo& liefereArgWertBool();
    virtual String& liefereArgWertStr();
    // Marks the chosen elements of the object's list; 1 if all were found.
    virtual int liefereArgWertListe();
    virtual DateiName& liefereArgWertDatei();
    virtual KdoObjekt* liefereArgWertKdoObjekt();
    virtual WertePaar* liefereArgWertWP(std::uint16_t i);
    virtual WertePaarStr* liefereArgWertWPStr(std::uint16_t i);
    virtual DynArray<String>& liefereArgWertDynArrStr();
    virtual void setzeArgWertInt(const dataInteger& wert);
    virtual void setzeArgWertIntHex(const adrInteger& wert);
    virtual void setzeArgWertCharHex(const unsigned char& wert);
    virtual void setzeArgWertPhys(const dataPhys& wert);
    virtual void setzeArgWertBool(const YesNo& wert);
    virtual void setzeArgWertStr(const String& wert);
    virtual void setzeArgWertListe(const String& namen);
    virtual void setzeArgWertDatei(const DateiName& wert);
    virtual void setzeArgWertKdoObjekt(KdoObjekt* objekt);
    virtual void setzeArgWertWP(std::uint16_t i, const WertePaar& paar);
    virtual void setzeArgWertWPStr(std::uint16_t i, const WertePaarStr& paar);
    virtual void initWPListe();
    virtual std::int32_t liefereAnzahlWP();
    virtual void initWPStrListe();
    virtual std::int32_t liefereAnzahlWPStr();

    const String& liefereName() const { return name_; }
    // The text `ausgabe` writes.
    String typText() const;

    // Helpers of the parsing frame, shared by all classes.
    // Skips white space; the end of the stream stops it quietly.
    static void ueberspringe(std::istream& strom);
    // 1 if the place is empty. Eats a leading "(" or "," and the white
    // space behind it; a ")" stays in the stream.
    static int istLeer(std::istream& strom);
    // 1 if "," or ")" follows (it stays in the stream); otherwise the byte
    // read is gone.
    static int folgtEnde(std::istream& strom);

protected:
    // Result of a token reader.
    enum Token { Fehlgeschlagen = 0, Gelesen = 1, Gemeldet = -1 };

    // The common frame: white space, end check, empty place, token, end of
    // the place. `funktion` names the reporter in the messages.
    int rahmen(AnwKommando& anw, int definition, const char* funktion);
    // The frame's start: white space, end check (reported), empty place
    // (the default taken). Wert if a value follows.
    enum class Anfang { Gemeldet, Vorgabe, Wert };
    Anfang beginne(AnwKommando& anw, int definition, const char* funktion);
    // White space, then the end check; false after reporting a missing
    // closing parenthesis.
    bool oeffne(AnwKommando& anw, const char* funktion);
    // The frame from the token on (position remembered here).
    int rahmenAbToken(AnwKommando& anw, int definition, const char* funktion);
    // After a good token: white space, then "," or ")" must follow.
    int abschluss(AnwKommando& anw, int definition, std::streampos position, const char* funktion);
    // Reads the token into the current value. The default fails.
    virtual Token liesToken(AnwKommando& anw, std::istream& strom);

    // "CMD-WRONGARG": the stream goes back to `position`, the text up to the
    // next "," or ")" is the offending text.
    void meldeFalsch(AnwKommando& anw, std::streampos position, const char* funktion);
    void meldeKlammer(AnwKommando& anw, const char* funktion);
    // The wrong-argument layout of a detail.
    String falschDetail(const String& kommandoText, const String& text, const char* einzug = "\t     ",
                        const char* trenner = "  ") const;
    // "CMD-WRONGARGMETHOD" for an accessor this class does not serve.
    void falscheMethode(const char* operation, const char* typWort) const;

    static std::streampos position(std::istream& strom);
    static void setzeZurueck(std::istream& strom, std::streampos position);

    // Number readers; they set the stream's failbit when nothing fits.
    static int liesDezimal(std::istream& strom, dataInteger& wert);
    static int liesHex(std::istream& strom, adrInteger& wert);
    static int liesHexMitVorzeichen(std::istream& strom, dataInteger& wert);
    static int liesPhys(std::istream& strom, dataPhys& wert);

    static bool istWortZeichen(int c);
    static bool istLeerzeichen(int c);

    String name_;
    String eingabe_;  // scratch text of the last token
};
