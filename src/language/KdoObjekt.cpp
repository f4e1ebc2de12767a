// Command objects, path parsing and the object tree.
#include "language/KdoObjekt.h"

#include <string>

#include "reporting/Fehler.h"

// ---------------------------------------------------------------------------
// KdoObjektBasis, KdoObjekt

KdoObjektBasis::~KdoObjektBasis() {
    if (kdoBaum()) kdoBaum()->entferne(this);
}

Liste* KdoObjektBasis::liefereListeFuerKdoArg(const String& listenName) {
    Fehler("INT-METHOD-IN-SUBCLASS-MISSING", "KdoObjekt::liefereListeFuerKdoArg",
           String("Obj: ") + liefereName() + "  " + "Liste: " + listenName, 'E');
    return nullptr;
}

KdoObjekt::KdoObjekt(const String& kurzName, const String& voll) : name_(kurzName) { vollerName_ = voll; }

const String& KdoObjekt::liefereKdoOTyp() const {
    static const String pseudo("Pseudo");
    return pseudo;
}

const String& KdoObjekt::liefereZusatzTyp() const {
    static const String leer;
    return leer;
}

// ---------------------------------------------------------------------------
// The comparison operations of the tree

int kdoRelation(KdoObjektBasis* a, KdoObjektBasis* b) {
    const std::string A = a->liefereVollenNamen().str();
    const std::string B = b->liefereVollenNamen().str();
    const auto ka = A.rfind('<');
    const auto kb = B.rfind('<');
    if (ka != std::string::npos && kb != std::string::npos) {
        // The prefix includes the parent's trailing full stop.
        if (ka > 0 && A.compare(0, ka, B, 0, kb) == 0) return 1;
    }
    // Plain substring search: a name that merely contains another's also
    // counts as a descendant. Intended.
    if (B.find(A) != std::string::npos) return 0;
    if (A.find(B) != std::string::npos) return 2;
    return 3;
}

static int vergleicheTexte(const String& a, const String& b) {
    const int r = a.str().compare(b.str());
    return r < 0 ? -1 : (r > 0 ? 1 : 0);
}

int kdoVergleich(KdoObjektBasis* a, KdoObjektBasis* b) {
    return vergleicheTexte(a->liefereVollenNamen(), b->liefereVollenNamen());
}

int kdoNamensVergleich(KdoObjektBasis* a, KdoObjektBasis* b) {
    return vergleicheTexte(a->liefereName(), b->liefereName());
}

void kdoLoesche(KdoObjektBasis* a) { a->setzeVollenNamen(String()); }

// ---------------------------------------------------------------------------
// KdoObjektPfad

namespace {
bool istBuchstabe(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool istZiffer(char c) { return c >= '0' && c <= '9'; }
bool istLeerzeichen(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}
bool istNamensZeichen(char c) { return istBuchstabe(c) || istZiffer(c) || c == '_' || c == '$' || c == '%'; }
}  // namespace

KdoObjektPfad::KdoObjektPfad(const String& text) {
    enum class Zustand { Grund, Typ, Name };
    const std::string& t = text.str();
    Zustand zustand = Zustand::Grund;
    Element neu;
    std::string puffer;
    std::size_t i = 0;
    while (true) {
        const bool ende = i >= t.size();
        const char c = ende ? '\0' : t[i];
        switch (zustand) {
        case Zustand::Grund:
            if (ende) return;
            if (istLeerzeichen(c) || c == '.') {
                ++i;
            } else if (c == '<') {
                puffer.clear();
                zustand = Zustand::Typ;
                ++i;
            } else if (istNamensZeichen(c)) {
                puffer.clear();
                zustand = Zustand::Name;
            } else {
                return;
            }
            break;
        case Zustand::Typ:
            if (ende) return;
            if (istBuchstabe(c) || istZiffer(c)) {
                puffer += c;
            } else if (istLeerzeichen(c)) {
                // dropped
            } else if (c == '>') {
                neu.typ = String(puffer);
                zustand = Zustand::Grund;
            } else {
                return;
            }
            ++i;
            break;
        case Zustand::Name:
            if (!ende && istNamensZeichen(c)) {
                puffer += c;
                ++i;
            } else {
                neu.name = String(puffer);
                elemente_.push_back(neu);
                neu = Element();
                zustand = Zustand::Grund;
            }
            break;
        }
    }
}

const KdoObjektPfad::Element& KdoObjektPfad::operator[](int i) const {
    static const Element leer;
    if (i < 0 || i >= anzahl()) return leer;
    return elemente_[static_cast<std::size_t>(i)];
}

// ---------------------------------------------------------------------------
// KdoBaum

KdoBaum::KdoBaum(KdoObjektBasis* wurzelObjekt, KdoRelation relation, KdoVergleich vergleich,
                 KdoVergleich namensVergleich, KdoLoesche loesche)
    : relation_(relation ? relation : kdoRelation),
      vergleich_(vergleich ? vergleich : kdoVergleich),
      namensVergleich_(namensVergleich ? namensVergleich : kdoNamensVergleich),
      loesche_(loesche ? loesche : kdoLoesche) {
    wurzel_ = new KdoBaumKnoten;
    wurzel_->objekt = wurzelObjekt;
    aktuell_ = wurzel_;
}

KdoBaum::~KdoBaum() {
    gibFrei(wurzel_, false);
    wurzel_ = aktuell_ = nullptr;
}

void KdoBaum::gibFrei(KdoBaumKnoten* knoten, bool loeschen) {
    if (!knoten) return;
    // Explicit stack: a deep tree must not recurse on the C++ stack.
    std::vector<KdoBaumKnoten*> stapel{knoten};
    while (!stapel.empty()) {
        KdoBaumKnoten* k = stapel.back();
        stapel.pop_back();
        for (KdoBaumKnoten* s = k->aeltesterSohn; s; s = s->naechsterBruder) stapel.push_back(s);
        if (loeschen && loesche_ && k->objekt) loesche_(k->objekt);
        delete k;
    }
}

KdoBaumKnoten* KdoBaum::neuerSohn(KdoBaumKnoten* vater, KdoObjektBasis* objekt) {
    auto* k = new KdoBaumKnoten;
    k->vater = vater;
    k->objekt = objekt;
    if (!vater->aeltesterSohn) {
        vater->aeltesterSohn = k;
    } else {
        KdoBaumKnoten* b = vater->aeltesterSohn;
        while (b->naechsterBruder) b = b->naechsterBruder;
        b->naechsterBruder = k;
    }
    return k;
}

// Depth first over the nodes that relate to the object as ancestors; the
// first place that takes the object ends the walk.
int KdoBaum::knotenEinfuegen(KdoBaumKnoten* start, KdoObjektBasis* objekt, KdoBaumKnoten*& neu) {
    neu = nullptr;
    std::vector<KdoBaumKnoten*> stapel{start};
    while (!stapel.empty()) {
        KdoBaumKnoten* k = stapel.back();
        stapel.pop_back();
        const int r = relation_(k->objekt, objekt);
        if (r == 0) {
            if (!k->aeltesterSohn) {
                neu = neuerSohn(k, objekt);
                return 1;
            }
            std::vector<KdoBaumKnoten*> soehne;
            for (KdoBaumKnoten* s = k->aeltesterSohn; s; s = s->naechsterBruder) soehne.push_back(s);
            for (auto it = soehne.rbegin(); it != soehne.rend(); ++it) stapel.push_back(*it);
        } else if (r == 1) {
            KdoBaumKnoten* letzter = k;
            for (KdoBaumKnoten* b = k; b; b = b->naechsterBruder) {
                if (vergleich_(b->objekt, objekt) == 0) {
                    // Same full name: the new object takes the node over.
                    b->objekt = objekt;
                    return 1;
                }
                letzter = b;
            }
            // Nothing can stand beside the root.
            if (!letzter->vater) return 0;
            neu = neuerSohn(letzter->vater, objekt);
            return 1;
        }
    }
    return 0;
}

KdoBaumKnoten* KdoBaum::knotenSuche(KdoBaumKnoten* start, KdoObjektBasis* schluessel) {
    std::vector<KdoBaumKnoten*> stapel{start};
    while (!stapel.empty()) {
        KdoBaumKnoten* k = stapel.back();
        stapel.pop_back();
        const int r = relation_(k->objekt, schluessel);
        if (r == 0) {
            if (vergleich_(k->objekt, schluessel) == 0) return k;
            std::vector<KdoBaumKnoten*> soehne;
            for (KdoBaumKnoten* s = k->aeltesterSohn; s; s = s->naechsterBruder) soehne.push_back(s);
            for (auto it = soehne.rbegin(); it != soehne.rend(); ++it) stapel.push_back(*it);
        } else if (r == 1) {
            for (KdoBaumKnoten* b = k; b; b = b->naechsterBruder)
                if (vergleich_(b->objekt, schluessel) == 0) return b;
        }
    }
    return nullptr;
}

// A short name must be unambiguous among the sons.
KdoBaumKnoten* KdoBaum::sohnSuche(KdoBaumKnoten* start, KdoObjektBasis* schluessel) {
    KdoBaumKnoten* treffer = nullptr;
    int anzahl = 0;
    for (KdoBaumKnoten* s = start->aeltesterSohn; s; s = s->naechsterBruder) {
        if (namensVergleich_(s->objekt, schluessel) == 0) {
            treffer = s;
            ++anzahl;
        }
    }
    return anzahl == 1 ? treffer : nullptr;
}

KdoBaumKnoten* KdoBaum::versuche(KdoBaumKnoten* start, const KdoObjektPfad& pfad, const String& vollerName) {
    KdoObjekt schluessel(pfad[pfad.anzahl() - 1].name, vollerName);
    if (!pfad[0].typ.istLeer()) return knotenSuche(start, &schluessel);
    return sohnSuche(start, &schluessel);
}

KdoBaumKnoten* KdoBaum::sucheKnoten(const String& name) {
    const KdoObjektPfad pfad(name);
    const int n = pfad.anzahl();
    const String V = aktuell_->objekt->liefereVollenNamen();
    const bool mitTyp = !pfad[0].typ.istLeer();
    KdoBaumKnoten* vater = aktuell_->vater;

    // 1. The current object named by its own type and name.
    if (n == 1 && mitTyp && vater) {
        if (vater->objekt->liefereVollenNamen() + name == V) return aktuell_;
    }
    // 2. Relative to the current object.
    if (KdoBaumKnoten* k = versuche(aktuell_, pfad, V + "." + name)) return k;
    // 3. Relative to the root.
    {
        const String voll = wurzel_->objekt->liefereVollenNamen() + "." + name;
        if (KdoBaumKnoten* k = versuche(wurzel_, KdoObjektPfad(voll), voll)) return k;
    }
    // 4. The name as a full name.
    if (KdoBaumKnoten* k = versuche(aktuell_, pfad, name)) return k;
    // 5. A brother (or the current object itself) by short name and type.
    if (aktuell_ != wurzel_ && n < 2 && vater) {
        KdoBaumKnoten* treffer = nullptr;
        int anzahl = 0;
        for (KdoBaumKnoten* s = vater->aeltesterSohn; s; s = s->naechsterBruder) {
            if (s->objekt->liefereName() != pfad[0].name) continue;
            if (mitTyp && s->objekt->liefereKdoOTyp() != pfad[0].typ) continue;
            treffer = s;
            ++anzahl;
        }
        if (anzahl == 1) return treffer;
    }
    // 6. An ancestor by type and name, the father first, the root excluded.
    if (n == 1 && mitTyp) {
        const KdoObjektPfad eigener(V);
        KdoBaumKnoten* k = vater;
        for (int j = eigener.anzahl() - 2; j >= 1 && k; --j, k = k->vater) {
            if (eigener[j].typ == pfad[0].typ && eigener[j].name == pfad[0].name) return k;
        }
    }
    return nullptr;
}

KdoObjektBasis* KdoBaum::suche(const String& name, int setzeAktuell) {
    if (!aktuell_ || !wurzel_) return nullptr;
    KdoBaumKnoten* k = sucheKnoten(name);
    if (!k) return nullptr;
    if (setzeAktuell == 1) aktuell_ = k;
    return k->objekt;
}

int KdoBaum::fuegeEin(KdoObjektBasis* objekt) {
    if (!objekt || !aktuell_) return 0;
    objekt->setzeVollenNamen(aktuell_->objekt->liefereVollenNamen() + ".<" + objekt->liefereKdoOTyp() + ">" +
                             objekt->liefereName());
    KdoBaumKnoten* neu = nullptr;
    const int ergebnis = knotenEinfuegen(aktuell_, objekt, neu);
    if (neu) aktuell_ = neu;
    return ergebnis;
}

KdoBaumKnoten* KdoBaum::findeKnoten(KdoObjektBasis* objekt) const {
    if (!wurzel_) return nullptr;
    std::vector<KdoBaumKnoten*> stapel{wurzel_};
    while (!stapel.empty()) {
        KdoBaumKnoten* k = stapel.back();
        stapel.pop_back();
        if (k->objekt == objekt) return k;
        for (KdoBaumKnoten* s = k->aeltesterSohn; s; s = s->naechsterBruder) stapel.push_back(s);
    }
    return nullptr;
}

int KdoBaum::entferne(KdoObjektBasis* objekt) {
    KdoBaumKnoten* k = findeKnoten(objekt);
    if (!k) return 0;
    if (k != wurzel_) {
        // The tree never keeps pointing at a dead object.
        for (KdoBaumKnoten* n = aktuell_; n; n = n->vater) {
            if (n == k) {
                aktuell_ = k->vater;
                break;
            }
        }
    }
    if (KdoBaumKnoten* v = k->vater) {
        if (v->aeltesterSohn == k) {
            v->aeltesterSohn = k->naechsterBruder;
        } else {
            KdoBaumKnoten* b = v->aeltesterSohn;
            while (b && b->naechsterBruder != k) b = b->naechsterBruder;
            if (b) b->naechsterBruder = k->naechsterBruder;
        }
    } else {
        wurzel_ = aktuell_ = nullptr;
    }
    gibFrei(k, true);
    return 1;
}

int KdoBaum::vater() {
    if (!aktuell_ || !aktuell_->vater) return 0;
    aktuell_ = aktuell_->vater;
    return 1;
}

int KdoBaum::sohn() {
    if (!aktuell_ || !aktuell_->aeltesterSohn) return 0;
    aktuell_ = aktuell_->aeltesterSohn;
    return 1;
}

int KdoBaum::geschwister() {
    if (!aktuell_ || !aktuell_->vater) return 0;
    KdoBaumKnoten* v = aktuell_->vater;
    if (v->aeltesterSohn == aktuell_ && !aktuell_->naechsterBruder) return 0;
    aktuell_ = aktuell_->naechsterBruder ? aktuell_->naechsterBruder : v->aeltesterSohn;
    return 1;
}

KdoObjektBasis* KdoBaum::naechsterSohn(KdoBaumKnoten*& iterator) {
    if (!iterator) {
        iterator = aktuell_ ? aktuell_->aeltesterSohn : nullptr;
    } else {
        iterator = iterator->naechsterBruder;
    }
    return iterator ? iterator->objekt : nullptr;
}
