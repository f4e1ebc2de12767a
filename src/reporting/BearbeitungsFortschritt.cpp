// Progress counter and console display.
#include "reporting/BearbeitungsFortschritt.h"

#include <iostream>
#include <limits>
#include <streambuf>

#include <unistd.h>

#include "reporting/Fehler.h"

// Forwards everything to the stream buffer it replaces and counts the bytes.
class ZaehlPuffer : public std::streambuf {
public:
    explicit ZaehlPuffer(std::streambuf* innen) : innen_(innen) {}
    std::streambuf* innen() const { return innen_; }
    std::int64_t anzahl() const { return anzahl_; }

protected:
    int_type overflow(int_type c) override {
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        if (!innen_) return traits_type::eof();
        ++anzahl_;
        return innen_->sputc(traits_type::to_char_type(c));
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        if (!innen_) return 0;
        anzahl_ += n;
        return innen_->sputn(s, n);
    }
    int sync() override { return innen_ ? innen_->pubsync() : 0; }

private:
    std::streambuf* innen_;
    std::int64_t anzahl_ = 0;
};

BearbeitungsAnzeigeCout::BearbeitungsAnzeigeCout(char z) : BearbeitungsAnzeigeCout(z, std::cout, std::cerr) {}

BearbeitungsAnzeigeCout::BearbeitungsAnzeigeCout(char z, std::ostream& aus, std::ostream& err)
    : zeichen_(z), aus_(aus), err_(err) {}

BearbeitungsAnzeigeCout::~BearbeitungsAnzeigeCout() {
    // Ends the mark line whether or not beende ran (intended: the line end
    // comes twice after an explicit beende).
    aus_ << '\n';
    aus_.flush();
    gibPufferFrei();
}

void BearbeitungsAnzeigeCout::starteAbs(const String& text) {
    if (modus_ != 0) {
        Fehler("BEFO-ISINIT", "BearbeitungsAnzeigeCout::starteAbs", text, 'I');
        return;
    }
    modus_ = 2;
    aus_ << text << '\n';
    aus_.flush();
}

void BearbeitungsAnzeigeCout::starteRel(dataInteger schritt, const String& text) {
    if (modus_ != 0) {
        Fehler("BEFO-ISINIT", "BearbeitungsAnzeigeCout::starteRel", text, 'I');
        return;
    }
    // A step below 1 percent would divide by zero; it counts as 1.
    prozentSchritt_ = schritt < 1 ? 1 : schritt;
    letzterWert_ = 0;
    modus_ = 1;
    aus_ << text << '\n';
    const dataInteger n = 100 / prozentSchritt_ - 1;
    aus_ << '!';
    for (dataInteger i = 0; i < n - 1; ++i) aus_ << '.';
    aus_ << "!\n";
    aus_.flush();
    if (!ausZaehler_) {
        ausZaehler_ = std::make_unique<ZaehlPuffer>(aus_.rdbuf());
        aus_.rdbuf(ausZaehler_.get());
    }
    if (!errZaehler_) {
        errZaehler_ = std::make_unique<ZaehlPuffer>(err_.rdbuf());
        err_.rdbuf(errZaehler_.get());
    }
    merkePositionen();
}

void BearbeitungsAnzeigeCout::merkePositionen() {
    coutPosition_ = ausZaehler_ ? ausZaehler_->anzahl() : 0;
    cerrPosition_ = errZaehler_ ? errZaehler_->anzahl() : 0;
}

void BearbeitungsAnzeigeCout::gibPufferFrei() {
    // The error buffer may wrap the output buffer when both are one stream,
    // so it goes first. A buffer that someone else has replaced meanwhile is
    // left in its place.
    if (errZaehler_ && err_.rdbuf() == errZaehler_.get()) err_.rdbuf(errZaehler_->innen());
    if (ausZaehler_ && aus_.rdbuf() == ausZaehler_.get()) aus_.rdbuf(ausZaehler_->innen());
    errZaehler_.reset();
    ausZaehler_.reset();
}

void BearbeitungsAnzeigeCout::weiter(dataInteger wert) {
    if (modus_ == 2) {
        aus_ << zeichen_;
        zeigeSofort();
    } else if (modus_ == 1) {
        const bool dazwischen = (ausZaehler_ && ausZaehler_->anzahl() != coutPosition_) ||
                                (errZaehler_ && errZaehler_->anzahl() != cerrPosition_);
        if (dazwischen) {
            // Something else wrote since the last mark: rebuild the line.
            for (dataInteger i = letzterWert_ / prozentSchritt_; i > 0; --i) aus_ << '.';
        }
        aus_ << zeichen_;
        zeigeSofort();
        letzterWert_ = wert;
        merkePositionen();
    }
}

// A mark is worth a write of its own only where someone watches it; into a
// file or a pipe the marks go with the rest of the buffered output.
void BearbeitungsAnzeigeCout::zeigeSofort() {
    if (&aus_ == &std::cout ? ::isatty(1) : true) aus_.flush();
}

void BearbeitungsAnzeigeCout::beende() {
    aus_ << '\n';
    aus_.flush();
    modus_ = 0;
    gibPufferFrei();
}

int BearbeitungsFortschritt::aktiveFortschritte = 0;
const char BearbeitungsFortschritt::zeichenSatz[4] = "*+#";
BearbeitungsAnzeigeFabrik BearbeitungsFortschritt::standardFabrik = &erzeugeStandardAnzeige;

std::unique_ptr<BearbeitungsAnzeige> erzeugeStandardAnzeige() {
    const int tiefe = ((BearbeitungsFortschritt::aktiveFortschritte - 1) % 3 + 3) % 3;
    return std::make_unique<BearbeitungsAnzeigeCout>(BearbeitungsFortschritt::zeichenSatz[tiefe]);
}

BearbeitungsFortschritt::BearbeitungsFortschritt(dataInteger s, const String& t,
                                                 BearbeitungsAnzeigeFabrik fabrik)
    : text_(t), schritt_(s) {
    naechsteMarke_ = schritt_ >= 1 ? schritt_ : std::numeric_limits<std::int64_t>::max();
    ++aktiveFortschritte;
    if (!fabrik) fabrik = standardFabrik ? standardFabrik : &erzeugeStandardAnzeige;
    anzeige_ = fabrik();
    if (anzeige_) anzeige_->starteAbs(text_);
}

BearbeitungsFortschritt::~BearbeitungsFortschritt() {
    --aktiveFortschritte;
    anzeige_.reset();
}

void BearbeitungsFortschritt::zeigeMarken() {
    while (naechsteMarke_ <= position_) {
        naechsterPunkt_ = naechsteMarke_;
        naechsteMarke_ += schritt_;
        if (anzeige_) anzeige_->weiter(static_cast<dataInteger>(naechsterPunkt_));
    }
}
