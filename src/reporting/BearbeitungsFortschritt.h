// Progress display of long operations: a label line, then one mark per step
// of work on standard output.
//
//   BearbeitungsFortschritt fortschritt(10240, SprachText("Lese Bytes"));
//   for (...) { ...; fortschritt += 1; }   // cheap: one compare per call
//
// A BearbeitungsFortschritt counts units and asks its display for a mark each
// time `schritt` more units are done. The display comes from a factory; the
// default one gives a BearbeitungsAnzeigeCout whose mark depends on how many
// progress counters are alive: "*" outermost, "+" inside it, "#" next.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "foundation/String.h"
#include "foundation/Typen.h"

// A display of marks. `modus`: 0 idle, 1 relative (percent), 2 absolute.
class BearbeitungsAnzeige {
public:
    virtual ~BearbeitungsAnzeige() = default;
    // Shows the label; the marks that follow count units.
    virtual void starteAbs(const String& text) = 0;
    // Shows the label and a ruler of 100 / prozentSchritt marks.
    virtual void starteRel(dataInteger prozentSchritt, const String& text) = 0;
    // One mark; `wert` is the unit count (or percentage) it stands for.
    virtual void weiter(dataInteger wert) = 0;
    // Ends the mark line.
    virtual void beende() = 0;

    int liefereModus() const { return modus_; }

protected:
    int modus_ = 0;
};

class ZaehlPuffer;

// The console display. Writes to standard output (and watches the error
// stream in relative mode); tests may hand in other streams.
class BearbeitungsAnzeigeCout : public BearbeitungsAnzeige {
public:
    explicit BearbeitungsAnzeigeCout(char zeichen = '*');
    BearbeitungsAnzeigeCout(char zeichen, std::ostream& aus, std::ostream& err);
    ~BearbeitungsAnzeigeCout() override;  // always ends the line
    BearbeitungsAnzeigeCout(const BearbeitungsAnzeigeCout&) = delete;
    BearbeitungsAnzeigeCout& operator=(const BearbeitungsAnzeigeCout&) = delete;

    void starteAbs(const String& text) override;
    void starteRel(dataInteger prozentSchritt, const String& text) override;
    void weiter(dataInteger wert) override;
    void beende() override;

    char liefereZeichen() const { return zeichen_; }

private:
    void merkePositionen();
    void zeigeSofort();
    void gibPufferFrei();

    char zeichen_;
    dataInteger prozentSchritt_ = 1;
    dataInteger letzterWert_ = 0;
    std::int64_t coutPosition_ = 0;
    std::int64_t cerrPosition_ = 0;
    std::ostream& aus_;
    std::ostream& err_;
    // While a relative display runs, both streams write through counting
    // buffers, so that any output between two marks is noticed even on a
    // terminal, where the stream position cannot be asked.
    std::unique_ptr<ZaehlPuffer> ausZaehler_;
    std::unique_ptr<ZaehlPuffer> errZaehler_;
};

using BearbeitungsAnzeigeFabrik = std::unique_ptr<BearbeitungsAnzeige> (*)();

// The default factory: a console display with the mark of the current
// nesting depth (mark set at index (aktiveFortschritte - 1) modulo 3).
std::unique_ptr<BearbeitungsAnzeige> erzeugeStandardAnzeige();

class BearbeitungsFortschritt {
public:
    // Raises the nesting count, takes a display from `fabrik` (null: the
    // default factory) and starts it in absolute mode with `text`.
    // A `schritt` below 1 shows no marks.
    BearbeitungsFortschritt(dataInteger schritt, const String& text,
                            BearbeitungsAnzeigeFabrik fabrik = nullptr);
    // Lowers the nesting count and deletes the display, which ends the line.
    ~BearbeitungsFortschritt();
    BearbeitungsFortschritt(const BearbeitungsFortschritt&) = delete;
    BearbeitungsFortschritt& operator=(const BearbeitungsFortschritt&) = delete;

    // Adds units; every `schritt` units passed give one mark, a big jump all
    // the marks it passed.
    BearbeitungsFortschritt& operator+=(dataInteger anzahl) {
        position_ += anzahl;
        if (position_ >= naechsteMarke_) zeigeMarken();
        return *this;
    }
    // Takes units back without showing anything.
    BearbeitungsFortschritt& operator-=(dataInteger anzahl) {
        position_ -= anzahl;
        return *this;
    }

    std::int64_t lieferePosition() const { return position_; }
    const String& liefereText() const { return text_; }
    BearbeitungsAnzeige* liefereAnzeige() const { return anzeige_.get(); }

    // Process-wide state, set once at start-up.
    static int aktiveFortschritte;     // nesting count
    static const char zeichenSatz[4];  // "*+#"
    static BearbeitungsAnzeigeFabrik standardFabrik;

private:
    void zeigeMarken();

    std::unique_ptr<BearbeitungsAnzeige> anzeige_;
    // 64-bit so that long runs and odd step sizes never overflow.
    std::int64_t position_ = 0;
    String text_;
    dataInteger schritt_;
    std::int64_t naechsterPunkt_ = 0;  // unit count of the last mark
    std::int64_t naechsteMarke_;       // naechsterPunkt + schritt, kept for the fast path
};
