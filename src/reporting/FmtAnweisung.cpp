// Format statements: parser, nodes and variable output.
#include "reporting/FmtAnweisung.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string_view>

#include "reporting/Fehler.h"

namespace {

const String leererText;

// Names in a name list are compared on at most this many bytes a line.
constexpr std::size_t maxZeilenLaenge = 19;

void schreibeText(std::ostream& strom, const String& text) {
    if (!text.istLeer()) strom.write(text.c_str(), text.laenge());
}

bool aktiv(const FmtZustand& zustand) {
    // The empty stack counts as active.
    return zustand.empty() || zustand.back() != '0';
}

void setzeLetzten(FmtZustand& zustand, char wert) {
    if (zustand.empty())
        zustand.push_back(wert);
    else
        zustand.back() = wert;
}

}  // namespace

// ---------------------------------------------------------------- FmtTrennerTeile

FmtTrennerTeile::FmtTrennerTeile(const String& trenner) {
    teile_.reset(trenner.zerlege(String("<>"), anzahl_));
}

const String& FmtTrennerTeile::liefereTeil(int i) const {
    return (i >= 0 && i < anzahl_) ? teile_[i] : leererText;
}

const String& FmtTrennerTeile::ersterTeil() {
    if (position_ != 0) return leererText;
    position_ = 1;
    return liefereTeil(0);
}

const String& FmtTrennerTeile::naechsterTeil() {
    const String* ergebnis = &leererText;
    if (position_ >= 1 && position_ <= anzahl_ - 1) ergebnis = &teile_[position_++];
    if (position_ >= anzahl_) position_ = 0;
    return *ergebnis;
}

// ---------------------------------------------------------------- FmtVariable

FmtVariable::FmtVariable(const String& text) {
    const std::string& t = text.str();
    const std::size_t n = t.size();
    std::size_t i = 0;

    // name -> bytes up to the first backslash or "("
    while (i < n && t[i] != '\\' && t[i] != '(') ++i;
    name_ = String(std::string_view(t).substr(0, i));

    // argument -> "(" bytes up to ")"
    if (i < n && t[i] == '(') {
        const std::size_t start = ++i;
        while (i < n && t[i] != ')') ++i;
        argument_ = String(std::string_view(t).substr(start, i - start));
        if (i < n) {
            ++i;
            if (argument_.istLeer())
                Fehler("FMTVAR-NOAGRINTOBRACKETS", "FmtVariable::FmtVariable",
                       String("Format-Variable: ") + "<" + text + ">", 'W');
        }
    }

    // Bytes between the argument and the first option belong to nothing.
    while (i < n && t[i] != '\\') ++i;

    std::string opt, vor, trennerText, nach;
    // option -> "\" bytes up to the next backslash | "\"" quoted part
    while (i < n) {
        ++i;  // the backslash
        if (i < n && t[i] == '"') {
            // The quoted part fills the separator until a \< moves what was
            // read so far to the text before the values, and a \> switches
            // to the text after them.
            ++i;
            std::string* ziel = &trennerText;
            while (i < n && t[i] != '"') {
                if (t[i] == '\\') {
                    if (i + 1 >= n) {
                        ++i;
                        break;
                    }
                    const char c = t[i + 1];
                    i += 2;
                    if (c == '<') {
                        if (ziel == &trennerText) {
                            vor += trennerText;
                            trennerText.clear();
                        }
                    } else if (c == '>') {
                        ziel = &nach;
                    } else {
                        ziel->push_back(c);
                    }
                } else {
                    ziel->push_back(t[i++]);
                }
            }
            if (i < n) ++i;  // the closing quote
            while (i < n && t[i] != '\\') ++i;
            continue;
        }
        if (!opt.empty()) opt.push_back('\n');
        while (i < n && t[i] != '\\') opt.push_back(t[i++]);
    }
    optionen_ = String(opt);
    vorspann_ = String(vor);
    trenner_ = String(trennerText);
    nachspann_ = String(nach);

    // Keywords count wherever they stand in an option, so "lower" sets low
    // (intended). Of the number styles the last one in this order wins; the
    // objects format their numbers themselves, so the style is only kept.
    const auto hat = [&opt](const char* wort) { return opt.find(wort) != std::string::npos; };
    if (hat("hex")) zahlenFormat_ = 0x240;
    if (hat("dec")) zahlenFormat_ = 0x10;
    if (hat("float")) zahlenFormat_ = 0x1110;
    if (hat("cap")) merkmale_ |= CAP;
    if (hat("upp")) merkmale_ |= UPP;
    if (hat("low")) merkmale_ |= LOW;
    if (hat("quote")) merkmale_ |= QUOTE;
    if (hat("sgml")) merkmale_ |= SGML;
    if (hat("?")) merkmale_ |= OHNE_WERT;
    if (hat("tag")) {
        merkmale_ |= TAG;
        vorspann_ = String("<") + trenner_ + ">" + vorspann_;
        nachspann_ = nachspann_ + "</" + trenner_ + ">";
        trenner_ = String();
    }

    if (!trenner_.istLeer()) teile_ = std::make_unique<FmtTrennerTeile>(trenner_);
}

FmtVariable::~FmtVariable() = default;

int FmtVariable::liefereIndex(const String& namenListe) {
    if (listenIndex_ >= 0 && liste_ == namenListe.str()) return listenIndex_;

    const std::string& s = namenListe.str();
    const std::string_view gesucht = name_;
    int ergebnis = -1;
    std::size_t pos = 0;
    // Only lines closed by a line feed count; the closing blank of a list
    // is what lets its last name end with one.
    for (int zeile = 0;; ++zeile) {
        const std::size_t lf = s.find('\n', pos);
        if (lf == std::string::npos) break;
        const std::string_view eintrag(s.data() + pos, std::min(lf - pos, maxZeilenLaenge));
        if (eintrag == gesucht) {
            ergebnis = zeile;
            break;
        }
        pos = lf + 1;
    }
    liste_ = s;
    listenIndex_ = static_cast<std::int16_t>(std::clamp(ergebnis, -1, 0x7FFF));
    return listenIndex_;
}

void FmtVariable::schreibe(const std::string& wert) {
    ++wertAnzahl_;
    if (wertAnzahl_ == 1 && !vorspann_.istLeer()) schreibeText(*ziel_, vorspann_);
    if (teile_) {
        if (wertAnzahl_ > 1) schreibeText(*ziel_, teile_->naechsterTeil());
        schreibeText(*ziel_, teile_->ersterTeil());
    }
    if (merkmale_ == 0) {
        ziel_->write(wert.data(), static_cast<std::streamsize>(wert.size()));
        return;
    }
    String kopie(wert);
    if (merkmale_ & CAP) kopie.ersterGross(0);
    if (merkmale_ & UPP) kopie.gross();
    if (merkmale_ & LOW) kopie.klein();
    if (merkmale_ & QUOTE) kopie = kopie.quotiere();
    if (merkmale_ & SGML) kopie = kopie.sgml();
    if (merkmale_ & OHNE_WERT) kopie = String();
    schreibeText(*ziel_, kopie);
}

int FmtVariable::ausgabe(const String& wert) {
    if (!ziel_) return 0;
    schreibe(wert.str());
    return 1;
}

int FmtVariable::ausgabe(const std::ostringstream& wert) {
    if (!ziel_) return 0;
    // Through String, so that a value never carries a NUL byte.
    return ausgabe(String(wert.str()));
}

int FmtVariable::unbekannteVariable(const String& funktion, const FmtObjekt& objekt) {
    Fehler("RPL-NO-SUCH-SW", funktion, objekt.liefereName() + ": " + name_, 'E');
    ausgabe(name_);
    return 0;
}

int FmtVariable::ausgeben(FmtObjekt& objekt, std::ostream& strom) {
    ziel_ = &strom;
    if (teile_) teile_->setzePosition(0);
    wertAnzahl_ = 0;
    const int ergebnis = objekt.ersetzeVariable(*this);
    if (wertAnzahl_ > 0 && !nachspann_.istLeer()) schreibeText(strom, nachspann_);
    ziel_ = nullptr;
    return ergebnis;
}

// ---------------------------------------------------------------- nodes

FmtBaustein::~FmtBaustein() {
    // A long statement must not free its chain by recursion: each node is
    // unlinked before it goes.
    std::unique_ptr<FmtBaustein> rest = std::move(naechster);
    while (rest) rest = std::move(rest->naechster);
}

int FmtText::fuehreAus(std::ostream& strom, FmtObjekt&, FmtZustand& zustand, const String&, const String&) {
    if (aktiv(zustand)) schreibeText(strom, text);
    return 1;
}

int FmtVariablenBaustein::gibAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand,
                                 const String& startName, const String& stopName, bool& geschrieben) {
    geschrieben = false;
    const String& name = variable.liefereName();
    if (aktiv(zustand)) {
        if (!stopName.istLeer() && stopName == name) {  // the active state is tested first
            setzeLetzten(zustand, '0');
            return 0;
        }
    } else if (!startName.istLeer() && startName == name) {
        const char darunter = zustand.size() >= 2 ? zustand[zustand.size() - 2] : '1';
        setzeLetzten(zustand, darunter);
    }
    if (aktiv(zustand)) {
        variable.ausgeben(objekt, strom);
        geschrieben = variable.liefereWertAnzahl() > 0;
    }
    return 1;
}

int FmtVariablenBaustein::fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand,
                                    const String& startName, const String& stopName) {
    bool geschrieben;
    return gibAus(strom, objekt, zustand, startName, stopName, geschrieben);
}

int FmtBedingung::fuehreAus(std::ostream& strom, FmtObjekt& objekt, FmtZustand& zustand,
                            const String& startName, const String& stopName) {
    bool geschrieben;
    if (!gibAus(strom, objekt, zustand, startName, stopName, geschrieben)) return 0;
    zustand.push_back(geschrieben && aktiv(zustand) ? '1' : '0');
    return 1;
}

int FmtSonst::fuehreAus(std::ostream&, FmtObjekt&, FmtZustand& zustand, const String&, const String&) {
    // Without a condition the popped state is none, so the rest of the
    // statement stays silent (intended).
    char weg = 0;
    if (!zustand.empty()) {
        weg = zustand.back();
        zustand.pop_back();
    }
    zustand.push_back(weg == '0' && aktiv(zustand) ? '1' : '0');
    return 1;
}

int FmtEnde::fuehreAus(std::ostream&, FmtObjekt&, FmtZustand& zustand, const String&, const String&) {
    if (!zustand.empty()) zustand.pop_back();
    return 1;
}

// ---------------------------------------------------------------- FmtAnweisung

FmtAnweisung::FmtAnweisung(const String& t) { initUndZerlege(t); }

FmtAnweisung::~FmtAnweisung() = default;

int FmtAnweisung::initUndZerlege(const String& t) {
    text_ = t;
    kopf_.reset();
    ok_ = 1;

    const std::string& s = text_.str();
    const std::size_t n = s.size();
    std::unique_ptr<FmtBaustein>* ende = &kopf_;
    const auto haengeAn = [&ende](std::unique_ptr<FmtBaustein> baustein) {
        *ende = std::move(baustein);
        ende = &(*ende)->naechster;
    };
    std::string literal;
    const auto schliesseText = [&]() {
        if (!literal.empty()) haengeAn(std::make_unique<FmtText>(String(literal)));
        literal.clear();
    };

    std::size_t i = 0;
    while (i < n) {
        const char c = s[i++];
        if (c == '\\') {
            // A backslash as the last byte ends the statement and vanishes.
            if (i >= n) break;
            const char d = s[i++];
            literal.push_back(d == 'n' ? '\n' : d);
            continue;
        }
        if (c != '<') {
            literal.push_back(c);
            continue;
        }

        // variable -> "<" bytes up to the next ">" outside double quotes
        schliesseText();
        std::string var;
        bool inQuotes = false, geschlossen = false;
        while (i < n) {
            const char v = s[i++];
            if (v == '>' && !inQuotes) {
                geschlossen = true;
                break;
            }
            if (v == '"') {
                inQuotes = !inQuotes;
                var.push_back(v);
            } else if (v == '\\' && inQuotes) {
                // The backslash stays for the variable's own parser; an
                // escaped quote does not end the quoted text.
                var.push_back(v);
                if (i < n) {
                    const char w = s[i++];
                    var.push_back(w == 'n' ? '\n' : w);
                }
            } else {
                var.push_back(v);
            }
        }
        if (!geschlossen) {
            Fehler("ERRFMTVARIABLE", "FmtAnweisung::initUndZerlege", String(var), 'E');
            haengeAn(std::make_unique<FmtText>(String("********\n")));
            ok_ = 0;
            break;
        }
        const String rest(std::string_view(var).substr(var.empty() ? 0 : 1));
        if (var.empty())
            haengeAn(std::make_unique<FmtVariablenBaustein>(String()));
        else if (var[0] == '(')
            haengeAn(std::make_unique<FmtBedingung>(rest));
        else if (var[0] == ')')
            haengeAn(std::make_unique<FmtEnde>());
        else if (var[0] == ':')
            haengeAn(std::make_unique<FmtSonst>());
        else
            haengeAn(std::make_unique<FmtVariablenBaustein>(String(var)));
    }
    schliesseText();
    return ok_;
}

int FmtAnweisung::ausgabe(std::ostream& strom, FmtObjekt& objekt, const String& startName,
                          const String& stopName) {
    if (!kopf_) return ok_;
    FmtZustand zustand(1, startName.istLeer() ? '1' : '0');
    for (FmtBaustein* b = kopf_.get(); b; b = b->naechster.get())
        if (!b->fuehreAus(strom, objekt, zustand, startName, stopName)) break;
    return ok_;
}
