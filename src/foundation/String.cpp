#include "foundation/String.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <istream>
#include <ostream>
#include <vector>

#include "foundation/Hex.h"
#include "foundation/Meldung.h"

namespace {

bool istLeerraum(unsigned char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool istWortZeichen(int c) {
    return c == '$' || c == '%' || c == '.' || c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
           (c >= 'A' && c <= 'Z');
}

}  // namespace

// ---------------------------------------------------------------- String

void String::cutNul() {
    auto p = s_.find('\0');
    if (p != std::string::npos) s_.resize(p);
}

String::String(char zeichen, int anzahl) {
    if (zeichen != '\0' && anzahl > 0) s_.assign(static_cast<size_t>(anzahl), zeichen);
}

String::String(const char* text, int wiederholung) {
    if (!text) return;
    if (wiederholung < 1) wiederholung = 1;
    std::string_view t(text);
    s_.reserve(t.size() * static_cast<size_t>(wiederholung));
    for (int i = 0; i < wiederholung; ++i) s_.append(t);
}

String::String(const String& text, int wiederholung) {
    if (wiederholung < 1) wiederholung = 1;
    s_.reserve(text.s_.size() * static_cast<size_t>(wiederholung));
    for (int i = 0; i < wiederholung; ++i) s_.append(text.s_);
}

String::String(const std::string& text) : s_(text) { cutNul(); }
String::String(std::string_view text) : s_(text) { cutNul(); }
String::String(dataInteger wert) : s_(std::to_string(wert)) {}
String::String(std::uint16_t wert) : s_(std::to_string(wert)) {}
String::String(StringPuffer& puffer) : s_(puffer.gibAb()) {}

String& String::operator=(const char* text) {
    std::string neu = text ? text : "";
    s_.swap(neu);
    return *this;
}

String& String::operator=(char zeichen) {
    s_.clear();
    if (zeichen != '\0') s_.push_back(zeichen);
    return *this;
}

String& String::operator=(StringPuffer& puffer) {
    s_ = puffer.gibAb();
    return *this;
}

char String::operator[](dataInteger i) const {
    const long long n = static_cast<long long>(s_.size());
    long long k = i;
    if (k < 0) {
        k += n;
        if (k < 0) return 0;
    }
    return k < n ? s_[static_cast<size_t>(k)] : 0;
}

int String::suche(const String& muster) const {
    auto p = s_.find(muster.s_);
    return p == std::string::npos ? -1 : static_cast<int>(p);
}

int String::suchePosition(char zeichen) const {
    if (zeichen == '\0') return -1;
    auto p = s_.rfind(zeichen);
    return p == std::string::npos ? -1 : static_cast<int>(p) + 1;
}

String String::teil(int start, int anzahl) const {
    const int n = laenge();
    if (start < 0) start = 0;
    if (start > n) start = n;
    if (anzahl < 0) anzahl = 0;
    if (anzahl > n - start) anzahl = n - start;
    return String(std::string_view(s_).substr(static_cast<size_t>(start), static_cast<size_t>(anzahl)));
}

String String::links(int n) const { return teil(0, n); }

String String::rechts(int n) const {
    const int l = laenge();
    if (n <= 0) return String();
    if (n >= l) return *this;
    return teil(l - n, n);
}

String& String::operator+=(char zeichen) {
    if (zeichen != '\0') s_.push_back(zeichen);
    return *this;
}
String& String::operator+=(const char* text) {
    if (text) s_.append(text);
    return *this;
}
String& String::operator+=(const String& text) {
    s_.append(text.s_);
    return *this;
}
String& String::operator+=(dataInteger wert) {
    s_.append(std::to_string(wert));
    return *this;
}

String& String::gross() {
    for (char& c : s_)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return *this;
}

String& String::klein() {
    for (char& c : s_)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return *this;
}

String& String::ersterGross(int i) {
    if (i >= 0 && i < laenge()) {
        char& c = s_[static_cast<size_t>(i)];
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return *this;
}

String& String::entferneVorn() {
    size_t i = 0;
    while (i < s_.size() && istLeerraum(static_cast<unsigned char>(s_[i]))) ++i;
    s_.erase(0, i);
    return *this;
}

String& String::entferneHinten() {
    size_t n = s_.size();
    while (n > 0 && istLeerraum(static_cast<unsigned char>(s_[n - 1]))) --n;
    s_.resize(n);
    return *this;
}

String& String::trimme() { return entferneHinten().entferneVorn(); }

int String::ersetzeZeichen(char alt, char neu) {
    int anzahl = 0;
    for (char& c : s_)
        if (c == alt) {
            c = neu;
            ++anzahl;
        }
    if (neu == '\0') cutNul();
    return anzahl;
}

int String::ersetze(const String& alt, const String& neu) {
    if (alt.s_.empty()) return 0;
    int anzahl = 0;
    std::string ergebnis;
    size_t pos = 0;
    for (;;) {
        size_t p = s_.find(alt.s_, pos);
        if (p == std::string::npos) break;
        ergebnis.append(s_, pos, p - pos);
        ergebnis.append(neu.s_);
        pos = p + alt.s_.size();
        ++anzahl;
    }
    if (anzahl) {
        ergebnis.append(s_, pos, std::string::npos);
        s_.swap(ergebnis);
    }
    return anzahl;
}

String String::quotiere(int* zeilenZaehler) const {
    std::string r;
    r.reserve(s_.size() + 19);
    r.push_back('"');
    for (char c : s_) {
        switch (c) {
        case '\n':
            r.append("\\n\\\n");
            if (zeilenZaehler) ++*zeilenZaehler;
            break;
        case '"': r.append("\\\""); break;
        case '\\': r.append("\\\\"); break;
        default: r.push_back(c);
        }
    }
    r.push_back('"');
    return String(r);
}

String String::sgml() const {
    String r(*this);
    r.ersetze("&", "&amp;");
    r.ersetze("<", "&lt;");
    return r;
}

String* String::zerlege(const String& trenner, int& anzahl) const {
    std::vector<std::string> teile;
    const size_t t = trenner.s_.size();
    size_t schnitt = 0, pos = 0;
    if (t > 0) {
        while (pos < s_.size()) {
            if (s_.compare(pos, t, trenner.s_) == 0) {
                teile.emplace_back(s_, schnitt, pos - schnitt);
                pos += t;
                schnitt = pos;
            } else {
                ++pos;
            }
        }
    }
    teile.emplace_back(s_, schnitt, std::string::npos);
    anzahl = static_cast<int>(teile.size());
    String* feld = new String[teile.size()];
    for (size_t i = 0; i < teile.size(); ++i) feld[i].s_ = std::move(teile[i]);
    return feld;
}

int String::liesWort(std::istream& strom) {
    s_.clear();
    while (s_.size() < 32) {
        int c = strom.get();
        if (c == EOF) {
            strom.clear(strom.rdstate() & ~std::ios::failbit);
            break;
        }
        if (!istWortZeichen(c)) {
            strom.putback(static_cast<char>(c));
            break;
        }
        s_.push_back(static_cast<char>(c));
    }
    return laenge();
}

int String::liesBis(std::istream& strom, const char* ende) {
    return liesBisZeichen(strom, ende, false, true);
}

int String::liesBisMitQuotes(std::istream& strom, const char* ende, int modus) {
    return liesBisZeichen(strom, ende, modus == 1, false);
}

int String::liesBisZeichen(std::istream& strom, const char* ende, bool quotes, bool leerraumEndet) {
    s_.clear();
    if (!strom.good()) return 0;
    std::string_view e(ende ? ende : "");
    for (;;) {
        int c = strom.get();
        if (c == EOF) break;
        if (quotes && c == '"') {
            strom.putback('"');
            String q;
            if (q.liesQuotiert(strom, nullptr) < 0) break;
            s_.append(q.s_);
            continue;
        }
        if (c == 0 || (leerraumEndet && istLeerraum(static_cast<unsigned char>(c))) ||
            e.find(static_cast<char>(c)) != std::string_view::npos) {
            strom.putback(static_cast<char>(c));
            break;
        }
        s_.push_back(static_cast<char>(c));
    }
    return laenge();
}

int String::liesQuotiert(std::istream& strom, int* zeilenZaehler) {
    s_.clear();
    int c = strom.get();
    if (c != '"') {
        if (c != EOF)
            strom.putback(static_cast<char>(c));
        else
            strom.clear(strom.rdstate() & ~std::ios::failbit);
        return -1;
    }
    std::string puffer;
    puffer.reserve(132);
    for (;;) {
        c = strom.get();
        if (c == EOF) {
            strom.clear(strom.rdstate() & ~std::ios::failbit);
            return -1;
        }
        if (c == '"') {
            int n = strom.get();
            if (n == '"') {
                puffer.push_back('"');
                continue;
            }
            if (n != EOF)
                strom.putback(static_cast<char>(n));
            else
                strom.clear(strom.rdstate() & ~std::ios::failbit);
            break;
        }
        if (c == '\n') {
            puffer.push_back('\n');
            if (zeilenZaehler) ++*zeilenZaehler;
            continue;
        }
        if (c == '\\') {
            int n = strom.get();
            if (n == EOF) {
                strom.clear(strom.rdstate() & ~std::ios::failbit);
                puffer.push_back('\\');
                continue;
            }
            if (n == '"' || n == '\\')
                puffer.push_back(static_cast<char>(n));
            else if (n == 'n')
                puffer.push_back('\n');
            else if (n == '\n') {
                if (zeilenZaehler) ++*zeilenZaehler;
            } else {
                puffer.push_back('\\');
                puffer.push_back(static_cast<char>(n));
            }
            continue;
        }
        puffer.push_back(static_cast<char>(c));
    }
    s_ = std::move(puffer);
    cutNul();
    return laenge();
}

String operator+(const String& a, const String& b) { return String(a.str() + b.str()); }
String operator+(const String& a, const char* b) { return String(a.str() + (b ? b : "")); }
String operator+(const char* a, const String& b) { return String((a ? a : "") + b.str()); }
std::ostream& operator<<(std::ostream& strom, const String& text) {
    return strom.write(text.c_str(), text.laenge());
}

// ------------------------------------------------------------ StringPuffer

StringPuffer::StringPuffer(int kapazitaet, int) {
    text_.reserve(static_cast<size_t>(kapazitaet < 1 ? 1 : kapazitaet));
}

StringPuffer::StringPuffer(const char* text, int) : text_(text ? text : "") {}

StringPuffer& StringPuffer::haengeAn(char zeichen) {
    if (zeichen == '\0') return *this;
    if (abgegeben_) {
        abgegeben_ = false;
        text_.clear();
    }
    text_.push_back(zeichen);
    return *this;
}

StringPuffer& StringPuffer::haengeAn(const char* text) {
    if (abgegeben_) return setze(text);
    text_.append(text ? text : "");
    return *this;
}

StringPuffer& StringPuffer::setze(const char* text) { return setze(text, -1); }

StringPuffer& StringPuffer::setze(const char* text, int n) {
    std::string_view t(text ? text : "");
    if (n >= 0 && static_cast<size_t>(n) < t.size()) t = t.substr(0, static_cast<size_t>(n));
    abgegeben_ = false;
    text_.assign(t);
    return *this;
}

StringPuffer& StringPuffer::leere() { return setze(""); }

std::string StringPuffer::gibAb() {
    if (abgegeben_) setze("");
    std::string r;
    r.swap(text_);
    abgegeben_ = true;
    return r;
}

std::ostream& operator<<(std::ostream& strom, const StringPuffer& puffer) { return strom << puffer.c_str(); }

// ------------------------------------------------------------------ pairs

std::string waehleFormat(int genauigkeit, double wert, int breite) {
    char puffer[64];
    const double betrag = std::fabs(wert);
    const double l = betrag > 0 ? std::log10(betrag) : 0.0;
    const int e = static_cast<int>(l);  // truncated toward zero
    if (wert == 0 || (breite - 3 >= l && 6 - breite <= l)) {
        int praezision = 2;
        if (wert != 0) {
            praezision = std::min(genauigkeit - e - 1, breite - e - 3);
            if (praezision < 1) praezision = 0;
        }
        std::snprintf(puffer, sizeof puffer, "%#.*f", praezision, wert);
    } else {
        int praezision = std::min(genauigkeit - 1, breite - 7);
        if (praezision < 2) praezision = 1;
        std::snprintf(puffer, sizeof puffer, "%#.*E", praezision, wert);
    }
    return puffer;
}

void WertePaarBasis::setzeIWert(dataFloat) {
    melde("DATA-WRONGARGMETHOD", "WertePaarBasis::setzeIWert(dataFloat)", "", 'E');
}
void WertePaarBasis::setzeIWert(dataInteger) {
    melde("DATA-WRONGARGMETHOD", "WertePaarBasis::setzeIWert(dataInteger)", "", 'E');
}
dataFloat WertePaarBasis::liefereIWert(dataFloat) const {
    melde("DATA-WRONGARGMETHOD", "WertePaarBasis::liefereIWert(dataFloat)", "", 'E');
    return 0;
}
dataInteger WertePaarBasis::liefereIWert(dataInteger) const {
    melde("DATA-WRONGARGMETHOD", "WertePaarBasis::liefereIWert(dataInteger)", "", 'E');
    return 0;
}

namespace {
void schreibeHex(std::ostream& strom, dataInteger wert) {
    strom << hex::text(static_cast<std::uint32_t>(wert), 2);
}
}  // namespace

std::ostream& operator<<(std::ostream& strom, const WertePaar& paar) {
    strom << "( ";
    schreibeHex(strom, paar.iWert());
    return strom << " / " << waehleFormat(paar.genauigkeit().stellen(), paar.liefereWert()) << " )";
}

std::ostream& operator<<(std::ostream& strom, const WertePaarStr& paar) {
    strom << "( ";
    schreibeHex(strom, paar.iwert);
    return strom << " / \"" << paar.text << "\" )";
}
