#include "frame/Vervollstaendigung.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <initializer_list>
#include <utility>

#include "commands/KivObjekt.h"
#include "foundation/DynArray.h"
#include "foundation/Liste.h"
#include "language/KdoArgument.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "language/Scanner.h"

namespace {

// ASCII only: the program's bytes are Latin-1, and the locale must not
// decide what a letter is.
char gross(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool istWortZeichen(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool beginntMit(const std::string& text, const std::string& anfang) {
    if (anfang.size() > text.size()) return false;
    for (std::size_t i = 0; i < anfang.size(); ++i)
        if (gross(text[i]) != gross(anfang[i])) return false;
    return true;
}

std::string ohneRandLeer(const std::string& text) {
    const auto a = text.find_first_not_of(" \t");
    if (a == std::string::npos) return std::string();
    return text.substr(a, text.find_last_not_of(" \t") - a + 1);
}

KdoObjekt* aktuellesObjekt() {
    return kdoBaum() ? dynamic_cast<KdoObjekt*>(kdoBaum()->liefereAktuelles()) : nullptr;
}

// The root and the open images: the objects of the tree.
std::vector<KdoObjekt*> alleObjekte() {
    std::vector<KdoObjekt*> objekte;
    if (!kivWurzel) return objekte;
    objekte.push_back(kivWurzel);
    ListenIterator it(kivWurzel->liefereEpromListe());
    while (ListenElement* e = it.naechstes())
        if (auto* o = dynamic_cast<KdoObjekt*>(e)) objekte.push_back(o);
    return objekte;
}

KdoObjekt* sucheObjekt(const std::string& name) {
    for (KdoObjekt* o : alleObjekte())
        if (o->liefereName().str() == name) return o;
    return nullptr;
}

KdoKommando* sucheKommando(KdoObjekt* objekt, const std::string& name) {
    KdoListe* liste = objekt ? objekt->liefereKdoListe() : nullptr;
    if (!liste) return nullptr;
    ListenIterator it(liste->liefereKommandos());
    while (ListenElement* e = it.naechstes())
        if (e->liefereName().str() == name) return dynamic_cast<KdoKommando*>(e);
    return nullptr;
}

class Sammler {
public:
    explicit Sammler(std::string wort) : wort_(std::move(wort)) {}
    void nimm(const std::string& kandidat) {
        if (beginntMit(kandidat, wort_)) kandidaten_.push_back(kandidat);
    }
    void nimmKommandos(KdoObjekt* objekt) {
        KdoListe* liste = objekt ? objekt->liefereKdoListe() : nullptr;
        if (!liste) return;
        ListenIterator it(liste->liefereKommandos());
        while (ListenElement* e = it.naechstes()) nimm(e->liefereName().str());
    }
    void nimmBilder() {
        for (KdoObjekt* o : alleObjekte())
            if (o != kivWurzel) nimm(o->liefereName().str());
    }
    // Names in the file system; a directory ends in "/". Hidden entries only
    // when the word asks for them.
    void nimmDateien() {
        const auto schnitt = wort_.rfind('/');
        const std::string verzeichnis =
            schnitt == std::string::npos ? std::string() : wort_.substr(0, schnitt + 1);
        const std::string rest = schnitt == std::string::npos ? wort_ : wort_.substr(schnitt + 1);
        DIR* d = opendir(verzeichnis.empty() ? "." : verzeichnis.c_str());
        if (!d) return;
        while (const dirent* e = readdir(d)) {
            const std::string name = e->d_name;
            if (name == "." || name == "..") continue;
            if (name[0] == '.' && (rest.empty() || rest[0] != '.')) continue;
            if (name.compare(0, rest.size(), rest) != 0) continue;
            std::string ganz = verzeichnis + name;
            struct stat info;
            if (stat(ganz.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) ganz += '/';
            kandidaten_.push_back(ganz);
        }
        closedir(d);
    }
    std::vector<std::string> ergebnis() {
        std::sort(kandidaten_.begin(), kandidaten_.end());
        kandidaten_.erase(std::unique(kandidaten_.begin(), kandidaten_.end()), kandidaten_.end());
        return std::move(kandidaten_);
    }

private:
    std::string wort_;
    std::vector<std::string> kandidaten_;
};

const char* schreibweise(dataInteger token) {
    std::size_t anzahl = 0;
    const KdoScanner::Schreibweise* s = KdoScanner::schluesselwortSchreibweisen(anzahl);
    for (std::size_t i = 0; i < anzahl; ++i)
        if (s[i].token == token) return s[i].wort;
    return "";
}

// What the arguments of the built-in statements take, by position.
enum class Platz { Nichts, Datei, Steuerung, Quelle, ObjektTyp };
struct Eingebaut {
    dataInteger token;
    std::initializer_list<Platz> plaetze;
};
const Eingebaut eingebaute[] = {
    {KdoToken::AUSFUEHRE, {Platz::Datei}},
    {KdoToken::AUSFUEHRETRANS, {Platz::Datei, Platz::Quelle, Platz::Datei}},
    {KdoToken::UMSETZE, {Platz::Datei, Platz::Quelle, Platz::Datei, Platz::Datei}},
    {KdoToken::IMFEHLERFALL, {Platz::Nichts, Platz::Steuerung}},
    {KdoToken::KDOOTYPCHECK, {Platz::ObjektTyp, Platz::Steuerung}},
};

void eingebautesArgument(Sammler& s, dataInteger token, std::size_t index) {
    for (const Eingebaut& e : eingebaute) {
        if (e.token != token || index >= e.plaetze.size()) continue;
        switch (e.plaetze.begin()[index]) {
        case Platz::Datei: s.nimmDateien(); break;
        case Platz::Steuerung:
            for (dataInteger t : {KdoToken::EXIT, KdoToken::RETURN, KdoToken::RETURNMAIN})
                s.nimm(schreibweise(t));
            break;
        case Platz::Quelle:
            for (dataInteger t : {KdoToken::DAT, KdoToken::SYSOSP}) s.nimm(schreibweise(t));
            break;
        case Platz::ObjektTyp:
            for (KdoObjekt* o : alleObjekte()) s.nimm(o->liefereKdoOTyp().str());
            break;
        case Platz::Nichts: break;
        }
    }
}

void kommandoArgument(Sammler& s, KdoKommando& kommando, std::size_t index) {
    if (index >= kommando.liefereAnzahlArgumente()) return;
    KdoArgument* arg = kommando.argument(static_cast<std::uint16_t>(index));
    if (!arg) return;
    std::string name = arg->liefereName().str();
    for (char& c : name) c = gross(c);
    const bool bildName = name.find("EPROM") != std::string::npos;
    switch (arg->liefereTyp()) {
    case KdoArgTyp::Enum:
        if (const TextFeld* werte = arg->liefereEnumWerte())
            for (std::int32_t i = 0; i < werte->fuellstand(); ++i)
                if (const char* t = werte->text(i)) s.nimm(t);
        break;
    case KdoArgTyp::Bool:
        s.nimm("YES");
        s.nimm("NO");
        break;
    case KdoArgTyp::DateiName:
    case KdoArgTyp::DateiPfad: s.nimmDateien(); break;
    case KdoArgTyp::KdoObjekt:
    case KdoArgTyp::BoolKdoObjekt: s.nimmBilder(); break;
    case KdoArgTyp::Wort:
    case KdoArgTyp::BoolWort:
    case KdoArgTyp::NameInListe:
    case KdoArgTyp::BoolNameInListe:
        if (bildName) s.nimmBilder();
        break;
    default: break;
    }
}

// The object named by the text before a command ("a:" or nothing); null
// when the text names none.
KdoObjekt* objektVor(const std::string& davor, bool& gueltig) {
    const std::string t = ohneRandLeer(davor);
    gueltig = true;
    if (t.empty()) return aktuellesObjekt();
    if (t.back() == ':') return sucheObjekt(ohneRandLeer(t.substr(0, t.size() - 1)));
    gueltig = false;
    return nullptr;
}

}  // namespace

Vervollstaendigung vervollstaendige(const std::string& zeile) {
    Vervollstaendigung v;
    // Where the argument list begins, which argument the cursor is in, and
    // where that argument begins. Parentheses do not nest in the language.
    bool inText = false;
    std::size_t klammer = std::string::npos, trenner = 0, index = 0;
    for (std::size_t i = 0; i < zeile.size(); ++i) {
        const char c = zeile[i];
        if (inText) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inText = false;
        } else if (c == '"') {
            inText = true;
        } else if (c == '(' && klammer == std::string::npos) {
            klammer = trenner = i;
            index = 0;
        } else if (c == ')') {
            klammer = std::string::npos;
            trenner = i;
        } else if (c == ',' && klammer != std::string::npos) {
            ++index;
            trenner = i;
        }
    }
    if (inText || zeile.find("//") != std::string::npos) return v;

    if (klammer != std::string::npos) {
        v.anfang = zeile.find_first_not_of(" \t", trenner + 1);
        if (v.anfang == std::string::npos) v.anfang = zeile.size();
        Sammler s(zeile.substr(v.anfang));
        const std::string kopf = ohneRandLeer(zeile.substr(0, klammer));
        std::size_t n = kopf.size();
        while (n > 0 && istWortZeichen(kopf[n - 1])) --n;
        const std::string name = kopf.substr(n);
        if (name.empty()) return v;
        const dataInteger token = KdoScanner::sucheSchluesselwort(name.c_str());
        bool gueltig = false;
        KdoObjekt* objekt = objektVor(kopf.substr(0, n), gueltig);
        if (token != KdoToken::NAME) {
            if (ohneRandLeer(kopf.substr(0, n)).empty()) eingebautesArgument(s, token, index);
        } else if (gueltig) {
            if (KdoKommando* k = sucheKommando(objekt, name)) kommandoArgument(s, *k, index);
        }
        v.kandidaten = s.ergebnis();
        return v;
    }

    // A command word: at the line's start, behind "name:" or behind "id=".
    v.anfang = zeile.size();
    while (v.anfang > 0 && istWortZeichen(zeile[v.anfang - 1])) --v.anfang;
    Sammler s(zeile.substr(v.anfang));
    const std::string davor = ohneRandLeer(zeile.substr(0, v.anfang));
    if (!davor.empty() && davor.back() == '=') {
        for (dataInteger t : {KdoToken::HOLEPARAMETER, KdoToken::LIEFERENAME}) s.nimm(schreibweise(t));
    } else {
        bool gueltig = false;
        KdoObjekt* objekt = objektVor(davor, gueltig);
        if (!gueltig) return v;
        s.nimmKommandos(objekt);
        if (davor.empty()) {
            std::size_t anzahl = 0;
            const KdoScanner::Schreibweise* w = KdoScanner::schluesselwortSchreibweisen(anzahl);
            for (std::size_t i = 0; i < anzahl; ++i) {
                const dataInteger t = w[i].token;
                if (t != KdoToken::DAT && t != KdoToken::SYSOSP && t != KdoToken::HOLEPARAMETER &&
                    t != KdoToken::LIEFERENAME)
                    s.nimm(w[i].wort);
            }
            // The images answer to "name:"; the root has no name to call.
            for (KdoObjekt* o : alleObjekte())
                if (o != kivWurzel) s.nimm(o->liefereName().str() + ":");
        }
    }
    v.kandidaten = s.ergebnis();
    return v;
}

std::string gemeinsamerAnfang(const std::vector<std::string>& kandidaten) {
    if (kandidaten.empty()) return std::string();
    std::size_t n = kandidaten[0].size();
    for (const std::string& k : kandidaten) {
        std::size_t i = 0;
        while (i < n && i < k.size() && gross(k[i]) == gross(kandidaten[0][i])) ++i;
        n = i;
    }
    return kandidaten[0].substr(0, n);
}
