// Format statements of result files: literal text, variables in angle
// brackets and conditions, run against an object that delivers the values.
//
//   FmtAnweisung anweisung("<AnfAdr>-<EndAdr>: <Chksum\\upp>\\n");
//   anweisung.ausgabe(datei, checksumme, String(), String());
//
// Syntax in short:
//   \x          literal x outside a variable (\n is a line feed)
//   <Name>      one variable; <Name(arg)\opt1\opt2\"vor\<trenner\>nach">
//   <(Name>     condition: true if Name delivers a value; <:> else; <)> end
// Options are keywords found as substrings: hex dec float cap upp low quote
// sgml tag ?. The quoted part gives the text before the first value, the
// separator (split at "<>" into parts that cycle) and the text after the
// last value.
//
// A value provider implements FmtObjekt::ersetzeVariable like this:
//
//   int Checksumme::ersetzeVariable(FmtVariable& v) {
//       switch (v.liefereIndex(variablenListe)) {   // "AnfAdr\nEndAdr\n ... \n "
//       case 0: return v.ausgabe(hex8(anzeigeAnfAdr));
//       ...
//       default: return v.unbekannteVariable("Checksumme::anzeigeErgebnis", *this);
//       }
//   }
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

#include "foundation/String.h"
#include "foundation/Typen.h"

class FmtVariable;

// The interface of objects whose values a format statement can show.
class FmtObjekt {
public:
    virtual ~FmtObjekt() = default;
    // Delivers the values of `variable` through variable.ausgabe (once per
    // value). Returns 0 for an unknown variable, after reporting it.
    virtual int ersetzeVariable(FmtVariable& variable) = 0;
    // The object's type name, used in messages.
    virtual String liefereName() const = 0;
};

// Separator parts: "a<>b<>c" gives a, b, c. ersterTeil stands before every
// value, naechsterTeil between values; together they cycle over the parts.
class FmtTrennerTeile {
public:
    explicit FmtTrennerTeile(const String& trenner);
    FmtTrennerTeile(const FmtTrennerTeile&) = delete;
    FmtTrennerTeile& operator=(const FmtTrennerTeile&) = delete;

    // The part at index 0 if the position is 0 (and moves it to 1), otherwise
    // empty.
    const String& ersterTeil();
    // The part at the position if it is 1 .. anzahl - 1 (and advances it),
    // otherwise empty; at anzahl the position returns to 0.
    const String& naechsterTeil();

    void setzePosition(int p) { position_ = p; }
    int lieferePosition() const { return position_; }
    int liefereAnzahl() const { return anzahl_; }
    const String& liefereTeil(int i) const;

private:
    std::unique_ptr<String[]> teile_;
    int anzahl_ = 0;
    int position_ = 0;
};

// One variable of a statement, parsed from the text between < and > (for a
// condition, the text behind the opening parenthesis).
class FmtVariable {
public:
    enum Merkmal : std::uint8_t {
        CAP = 1,        // first byte of each value upper-cased
        UPP = 2,        // value upper-cased
        LOW = 4,        // value lower-cased
        QUOTE = 8,      // value in double quotes, escaped
        SGML = 16,      // & and < escaped
        TAG = 32,       // value wrapped in <trenner> ... </trenner>
        OHNE_WERT = 64  // "?": the value itself is not written
    };

    explicit FmtVariable(const String& text);
    ~FmtVariable();
    FmtVariable(const FmtVariable&) = delete;
    FmtVariable& operator=(const FmtVariable&) = delete;

    // Index of this variable's name in `namenListe`, names each followed by
    // a line feed, the list closed by a blank: "AnfAdr\nEndAdr\n ". -1 if
    // the name is not there. The answer is cached per list.
    int liefereIndex(const String& namenListe);

    // Writes one value, decorated by the options. Only meaningful inside
    // ausgeben; outside it nothing is written and the result is 0.
    int ausgabe(const String& wert);
    int ausgabe(const std::ostringstream& wert);  // the stream's contents

    // The common answer to an unknown name: reports "RPL-NO-SUCH-SW" from
    // `funktion` for `objekt`, writes the variable's own name as its value
    // and returns 0.
    int unbekannteVariable(const String& funktion, const FmtObjekt& objekt);

    // One complete output of the variable: the object's values with the
    // text before, between and after them. Returns ersetzeVariable's answer.
    int ausgeben(FmtObjekt& objekt, std::ostream& strom);

    const String& liefereName() const { return name_; }
    const String& liefereArgument() const { return argument_; }
    const String& liefereOptionen() const { return optionen_; }
    std::int32_t liefereZahlenFormat() const { return zahlenFormat_; }
    std::uint8_t liefereMerkmale() const { return merkmale_; }
    const String& liefereVorspann() const { return vorspann_; }
    const String& liefereNachspann() const { return nachspann_; }
    const String& liefereTrenner() const { return trenner_; }
    const FmtTrennerTeile* liefereTeile() const { return teile_.get(); }
    dataInteger liefereWertAnzahl() const { return wertAnzahl_; }

private:
    void schreibe(const std::string& wert);

    String name_;
    std::string liste_;  // copy of the list of the cached index
    std::int16_t listenIndex_ = -1;
    String argument_;
    String optionen_;
    std::int32_t zahlenFormat_ = 0;
    std::uint8_t merkmale_ = 0;
    String vorspann_;
    String nachspann_;
    String trenner_;
    std::ostream* ziel_ = nullptr;
    std::unique_ptr<FmtTrennerTeile> teile_;
    dataInteger wertAnzahl_ = 0;
};

// The run state: a stack of '0' (output suppressed) and '1'. The empty
// stack counts as active.
using FmtZustand = std::string;

// A node of a parsed statement.
class FmtBaustein {
public:
    virtual ~FmtBaustein();  // frees the rest of the chain without recursion
    // Runs this node; 0 ends the run of the statement.
    virtual int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand,
                          const String& startName, const String& stopName) = 0;

    std::unique_ptr<FmtBaustein> naechster;
};

class FmtText : public FmtBaustein {
public:
    explicit FmtText(const String& t) : text(t) {}
    int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
                  const String& stopName) override;
    const String& liefereText() const { return text; }
    String text;
};

class FmtVariablenBaustein : public FmtBaustein {
public:
    explicit FmtVariablenBaustein(const String& text) : variable(text) {}
    int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
                  const String& stopName) override;
    FmtVariable variable;

protected:
    // Start/stop rule and output; 0 if the node ends the run. `geschrieben`
    // tells whether the variable delivered a value.
    int gibAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
               const String& stopName, bool& geschrieben);
};

class FmtBedingung : public FmtVariablenBaustein {
public:
    explicit FmtBedingung(const String& text) : FmtVariablenBaustein(text) {}
    int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
                  const String& stopName) override;
};

class FmtSonst : public FmtBaustein {
public:
    int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
                  const String& stopName) override;
};

class FmtEnde : public FmtBaustein {
public:
    int fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand, const String& startName,
                  const String& stopName) override;
};

// A parsed statement. Built for one run of a command and then destroyed.
class FmtAnweisung {
public:
    explicit FmtAnweisung(const String& text);
    ~FmtAnweisung();
    FmtAnweisung(const FmtAnweisung&) = delete;
    FmtAnweisung& operator=(const FmtAnweisung&) = delete;

    // Parses `text` into the chain of nodes; an unclosed variable is
    // reported and stands as "********\n" in the output. Returns ok.
    int initUndZerlege(const String& text);

    // Runs the chain against `objekt`. With a start name the output begins
    // at that variable, with a stop name it ends there. Returns ok: 1 if
    // the statement parsed without error.
    int ausgabe(std::ostream& strom, FmtObjekt& objekt, const String& startName = String(),
                const String& stopName = String());

    int liefereOk() const { return ok_; }
    const String& liefereText() const { return text_; }
    const FmtBaustein* liefereKopf() const { return kopf_.get(); }

private:
    String text_;
    std::unique_ptr<FmtBaustein> kopf_;
    int ok_ = 1;
};
