// String: the system's owning 8-bit text, plus StringPuffer (the growing
// buffer readers collect into), the value pairs of list arguments and
// SprachText.
//
// A String never holds a NUL byte: every constructor cuts at the first NUL, so
// lengths measured from the terminator and the stored length always agree.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "foundation/Typen.h"

class StringPuffer;

class String {
public:
    String() = default;
    String(char zeichen, int anzahl);
    String(const char* text, int wiederholung = 1);
    String(const String& text, int wiederholung);
    String(const std::string& text);
    String(std::string_view text);
    explicit String(dataInteger wert);
    explicit String(std::uint16_t wert);
    explicit String(StringPuffer& puffer);  // takes the buffer's text over
    String(const String&) = default;
    String(String&&) noexcept = default;

    String& operator=(const String&) = default;
    String& operator=(String&&) noexcept = default;
    String& operator=(const char* text);
    String& operator=(char zeichen);
    String& operator=(StringPuffer& puffer);

    // Indexing: i >= 0 the byte at i (0 at and past the end); i < 0 counts
    // from the end, 0 when |i| exceeds the length.
    char operator[](dataInteger i) const;

    bool operator==(const String& b) const { return s_ == b.s_; }
    bool operator==(const char* b) const { return s_ == (b ? b : ""); }
    bool operator!=(const String& b) const { return !(*this == b); }
    bool operator!=(const char* b) const { return !(*this == b); }

    int laenge() const { return static_cast<int>(s_.size()); }
    bool istLeer() const { return s_.empty(); }
    const char* c_str() const { return s_.c_str(); }
    const std::string& str() const { return s_; }
    operator std::string_view() const { return s_; }

    int suche(const String& muster) const;  // 0-based first match, -1
    int suchePosition(char zeichen) const;  // 1-based LAST match, -1

    String teil(int start, int anzahl) const;
    String links(int n) const;
    String rechts(int n) const;

    String& operator+=(char zeichen);
    String& operator+=(const char* text);
    String& operator+=(const String& text);
    String& operator+=(dataInteger wert);

    String& gross();
    String& klein();
    String& ersterGross(int i);
    String& entferneVorn();
    String& entferneHinten();
    String& trimme();
    int ersetzeZeichen(char alt, char neu);
    int ersetze(const String& alt, const String& neu);
    // Double-quoted form that liesQuotiert reads back; counts line feeds.
    String quotiere(int* zeilenZaehler = nullptr) const;
    String sgml() const;  // & -> &amp;, then < -> &lt;

    // Splits at a non-empty separator; n separators give n + 1 parts.
    String* zerlege(const String& trenner, int& anzahl) const;

    // Stream readers; see the .cpp for the exact stop rules.
    int liesWort(std::istream& strom);
    int liesBis(std::istream& strom, const char* ende);
    int liesBisMitQuotes(std::istream& strom, const char* ende, int modus);
    int liesQuotiert(std::istream& strom, int* zeilenZaehler = nullptr);

private:
    void cutNul();
    // Reads up to a NUL or a byte of `ende`, or white space if
    // `leerraumEndet`; with `quotes` a quoted text is taken whole.
    int liesBisZeichen(std::istream& strom, const char* ende, bool quotes, bool leerraumEndet);
    std::string s_;
};

String operator+(const String& a, const String& b);
String operator+(const String& a, const char* b);
String operator+(const char* a, const String& b);
std::ostream& operator<<(std::ostream& strom, const String& text);

// Growing byte buffer. `gibAb` hands its block to a String without copying;
// afterwards the buffer is `abgegeben` until it is written again. The
// initial capacity is only a hint, and the growth step is the container's.
class StringPuffer {
public:
    explicit StringPuffer(int kapazitaet = 132, int zuwachs = 132);
    StringPuffer(const char* text, int zuwachs);

    StringPuffer& haengeAn(char zeichen);
    StringPuffer& haengeAn(const char* text);
    StringPuffer& setze(const char* text);
    StringPuffer& setze(const char* text, int n);
    StringPuffer& leere();
    std::string gibAb();
    StringPuffer& operator<<(char zeichen) { return haengeAn(zeichen); }

    int laenge() const { return static_cast<int>(text_.size()); }
    bool abgegeben() const { return abgegeben_; }
    const char* c_str() const { return text_.c_str(); }

private:
    std::string text_;
    bool abgegeben_ = false;
};
std::ostream& operator<<(std::ostream& strom, const StringPuffer& puffer);

// Significant digits of a pair's physical value.
class Genauigkeit {
public:
    explicit Genauigkeit(std::int16_t stellen = 8) : stellen_(stellen) {}
    virtual ~Genauigkeit() = default;
    std::int16_t stellen() const { return stellen_; }

private:
    std::int16_t stellen_;
};

// Text of a physical value in at most `breite` columns (fixed or scientific).
std::string waehleFormat(int genauigkeit, double wert, int breite = 10);

class WertePaarBasis {
public:
    WertePaarBasis(dataPhys phys, const Genauigkeit& g) : phys_(phys), genauigkeit_(g) {}
    virtual ~WertePaarBasis() = default;
    virtual void setzeIWert(dataFloat wert);
    virtual void setzeIWert(dataInteger wert);
    virtual dataFloat liefereIWert(dataFloat dummy) const;
    virtual dataInteger liefereIWert(dataInteger dummy) const;
    dataPhys liefereWert() const { return phys_; }
    const Genauigkeit& genauigkeit() const { return genauigkeit_; }

protected:
    dataPhys phys_;
    Genauigkeit genauigkeit_;
};

class WertePaar : public WertePaarBasis {
public:
    WertePaar(dataInteger iwert, dataPhys phys, const Genauigkeit& g = Genauigkeit())
        : WertePaarBasis(phys, g), iwert_(iwert) {}
    using WertePaarBasis::liefereIWert;
    using WertePaarBasis::setzeIWert;
    void setzeIWert(dataInteger wert) override { iwert_ = wert; }
    dataInteger liefereIWert(dataInteger) const override { return iwert_; }
    dataInteger iWert() const { return iwert_; }

private:
    dataInteger iwert_;
};
std::ostream& operator<<(std::ostream& strom, const WertePaar& paar);

struct WertePaarStr {
    dataInteger iwert = 0;
    String text;
    WertePaarStr() = default;
    WertePaarStr(dataInteger i, const String& t) : iwert(i), text(t) {}
};
std::ostream& operator<<(std::ostream& strom, const WertePaarStr& paar);

// Language-dependent label. The language switch stays German, so the text is
// shown as given.
class SprachText : public String {
public:
    explicit SprachText(const char* deutsch) : String(deutsch) {}
};
