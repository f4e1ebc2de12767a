// The threaded AVL tree. Each step is written for a side s; its mirror image
// is the same code with o = 1 - s.
#include "foundation/SortedCltn.h"

#include <iostream>
#include <utility>
#include <vector>

#include "foundation/Abbruch.h"
#include "foundation/Liste.h"

namespace {

constexpr std::uint8_t BAL = BasisNode::BALANCIERT;

// The child on side s becomes the subtree root. A link that would receive
// an empty subtree keeps pointing at the neighbouring node as a thread.
void rotiere(BasisNode*& teilbaum, int s) {
    const int o = 1 - s;
    BasisNode* a = teilbaum;
    BasisNode* c = a->kind[s];
    if (c->faden(o)) {
        a->kind[s] = c;
        a->setzeFaden(s, true);
    } else {
        a->kind[s] = c->kind[o];
        a->setzeFaden(s, false);
    }
    c->kind[o] = a;
    c->setzeFaden(o, false);
    teilbaum = c;
}

// The inner grandchild g (child on side s, then its child on side o)
// becomes the subtree root.
void doppelt(BasisNode*& teilbaum, int s) {
    const int o = 1 - s;
    BasisNode* a = teilbaum;
    BasisNode* c = a->kind[s];
    BasisNode* g = c->kind[o];
    if (g->faden(s)) {
        c->kind[o] = g;
        c->setzeFaden(o, true);
    } else {
        c->kind[o] = g->kind[s];
        c->setzeFaden(o, false);
    }
    if (g->faden(o)) {
        a->kind[s] = g;
        a->setzeFaden(s, true);
    } else {
        a->kind[s] = g->kind[o];
        a->setzeFaden(s, false);
    }
    g->kind[s] = c;
    g->kind[o] = a;
    g->setzeFaden(s, false);
    g->setzeFaden(o, false);
    a->setzeBalance(g->balance() == BasisNode::lastig(s) ? BasisNode::lastig(o) : BAL);
    c->setzeBalance(g->balance() == BasisNode::lastig(o) ? BasisNode::lastig(s) : BAL);
    g->setzeBalance(BAL);
    teilbaum = g;
}

}  // namespace

std::ostream& BasisNode::ausgabe(std::ostream& strom) const {
    static const char* const balanceText[] = {"BALANCED", "LEFT-HEAVY", "RIGHT-HEAVY", "BALANCED"};
    strom << "BasisNode:" << static_cast<const void*>(this) << " (lt=" << static_cast<const void*>(links())
          << "  rt=" << static_cast<const void*>(rechts()) << "  LT:" << (linksFaden() ? 1 : 0)
          << "  RT:" << (rechtsFaden() ? 1 : 0) << "  " << balanceText[balance()] << ")";
    return strom;
}

std::ostream& Collection::ausgabe(std::ostream& strom) const {
    return strom << "--> Collection: " << static_cast<const void*>(this) << "\tcount = " << anzahl_;
}

std::ostream& SortedCltn::ausgabe(std::ostream& strom) const {
    strom << "--> SortedCltn: " << static_cast<const void*>(this) << "\tcount = " << anzahl_
          << "\n\troot = " << static_cast<const void*>(wurzel_) << '\n';
    for (const BasisNode* k = erstes(); k; k = nachfolger(k)) {
        k->ausgabe(strom);
        strom << '\n';
    }
    return strom << "<-- end SortedCltn\n";
}

BasisNode* SortedCltn::erstes() const {
    BasisNode* k = wurzel_;
    if (!k) return nullptr;
    while (!k->linksFaden()) k = k->links();
    return k;
}

BasisNode* SortedCltn::nachbar(const BasisNode* knoten, int s) {
    const int o = 1 - s;
    if (knoten->faden(s)) return knoten->kind[s];
    BasisNode* k = knoten->kind[s];
    while (!k->faden(o)) k = k->kind[o];
    return k;
}

BasisNode* SortedCltn::suche() const {
    BasisNode* k = wurzel_;
    while (k) {
        const int c = vergleiche(*k);
        if (c == 0) return k;
        const int s = c < 0 ? LINKS_SEITE : RECHTS_SEITE;
        if (k->faden(s)) return nullptr;
        k = k->kind[s];
    }
    return nullptr;
}

BasisNode* SortedCltn::sucheJenseits(int s) const {
    BasisNode* kandidat = nullptr;
    BasisNode* k = wurzel_;
    while (k) {
        const int c = vergleiche(*k);
        // A node strictly on side s of the key is a candidate; look for a
        // nearer one between it and the key.
        const bool jenseits = s == LINKS_SEITE ? c > 0 : c < 0;
        const int weiter = jenseits ? 1 - s : s;
        if (jenseits) kandidat = k;
        if (k->faden(weiter)) break;
        k = k->kind[weiter];
    }
    return kandidat;
}

void SortedCltn::leere() {
    std::vector<BasisNode*> offen;
    if (wurzel_) offen.push_back(wurzel_);
    while (!offen.empty()) {
        BasisNode* k = offen.back();
        offen.pop_back();
        for (int s : {LINKS_SEITE, RECHTS_SEITE})
            if (!k->faden(s)) offen.push_back(k->kind[s]);
        delete k;
    }
    wurzel_ = nullptr;
    anzahl_ = 0;
    treffer_ = nullptr;
}

BasisNode* SortedCltn::inhalt(const Position& position) const {
    if (anzahl_ <= 0) brichAb(std::cerr, "Sorted Collection is empty");
    if (position.cltn != this || !position.knoten)
        brichAb(std::cerr, "Illegal Sorted Collection Position", false);
    return position.knoten;
}

int SortedCltn::fuegeEin() {
    treffer_ = nullptr;
    if (!wurzel_) {
        wurzel_ = neuerKnoten();
        wurzel_->kind[LINKS_SEITE] = wurzel_->kind[RECHTS_SEITE] = nullptr;
        wurzel_->zustand = BasisNode::LINKS_FADEN | BasisNode::RECHTS_FADEN;
        ++anzahl_;
        return 1;
    }
    hoeheGeaendert_ = false;
    return fuegeEinUnter(wurzel_) ? 1 : 0;
}

// Recursion depth is the tree height, at most about 1.44 log2(count).
bool SortedCltn::fuegeEinUnter(BasisNode*& teilbaum) {
    BasisNode* k = teilbaum;
    const int c = vergleiche(*k);
    if (c == 0) {
        if (ersetzen_) {
            treffer_ = k;
            ersetzeInhalt(*k);
        }
        return false;
    }
    const int s = c < 0 ? LINKS_SEITE : RECHTS_SEITE;
    const int o = 1 - s;
    bool neu = false;
    if (k->faden(s)) {
        // The new leaf takes over k's thread on side s and threads back to k.
        BasisNode* q = neuerKnoten();
        q->zustand = BasisNode::LINKS_FADEN | BasisNode::RECHTS_FADEN;
        q->kind[s] = k->kind[s];
        q->kind[o] = k;
        k->kind[s] = q;
        k->setzeFaden(s, false);
        ++anzahl_;
        hoeheGeaendert_ = true;
        neu = true;
    } else {
        neu = fuegeEinUnter(k->kind[s]);
    }
    if (hoeheGeaendert_) {
        if (k->balance() == BAL) {
            k->setzeBalance(BasisNode::lastig(s));
        } else if (k->balance() == BasisNode::lastig(o)) {
            k->setzeBalance(BAL);
            hoeheGeaendert_ = false;
        } else {
            if (k->kind[s]->balance() == BasisNode::lastig(s)) {
                BasisNode* kindKnoten = k->kind[s];
                rotiere(teilbaum, s);
                k->setzeBalance(BAL);
                kindKnoten->setzeBalance(BAL);
            } else {
                doppelt(teilbaum, s);
            }
            hoeheGeaendert_ = false;
        }
    }
    return neu;
}

int SortedCltn::entferne() {
    if (!wurzel_) return 0;
    hoeheGeaendert_ = false;
    nachfolgerModus_ = false;
    treffer_ = nullptr;
    entferneUnter(nullptr, LINKS_SEITE);
    if (!treffer_) return 0;
    delete treffer_;
    treffer_ = nullptr;
    --anzahl_;
    if (anzahl_ == 0) wurzel_ = nullptr;
    return 1;
}

BasisNode*& SortedCltn::zweig(BasisNode* eltern, int seite) {
    if (!eltern) return wurzel_;
    return eltern->kind[seite];
}

void SortedCltn::entferneUnter(BasisNode* eltern, int seite) {
    BasisNode*& teilbaum = zweig(eltern, seite);
    BasisNode* k = teilbaum;
    int richtung;
    if (nachfolgerModus_) {
        // Looking for the rightmost node of the subtree.
        richtung = k->rechtsFaden() ? 0 : 1;
    } else {
        const int c = vergleiche(*k);
        richtung = c < 0 ? -1 : (c > 0 ? 1 : 0);
    }

    if (richtung != 0) {
        const int s = richtung < 0 ? LINKS_SEITE : RECHTS_SEITE;
        if (k->faden(s)) return;
        entferneUnter(k, s);
        if (hoeheGeaendert_) nachEntfernt(teilbaum, s);
    } else if (k->linksFaden() && k->rechtsFaden()) {
        // A leaf: the parent's link becomes a thread again, taking the
        // leaf's own thread on that side.
        treffer_ = k;
        if (!eltern) {
            wurzel_ = nullptr;
        } else {
            eltern->kind[seite] = k->kind[seite];
            eltern->setzeFaden(seite, true);
        }
        hoeheGeaendert_ = true;
    } else if (k->linksFaden() || k->rechtsFaden()) {
        // One child, on side s: it takes k's place, and the node next to k
        // inside it takes over k's thread on the other side.
        const int s = k->linksFaden() ? RECHTS_SEITE : LINKS_SEITE;
        const int o = 1 - s;
        treffer_ = k;
        BasisNode* nachbarKnoten = k->kind[s];
        while (!nachbarKnoten->faden(o)) nachbarKnoten = nachbarKnoten->kind[o];
        nachbarKnoten->kind[o] = k->kind[o];
        teilbaum = k->kind[s];
        hoeheGeaendert_ = true;
    } else {
        // Two children: the predecessor's payload moves up here and its node,
        // now holding the key, is removed from the left subtree.
        BasisNode* vor = k->links();
        while (!vor->rechtsFaden()) vor = vor->rechts();
        k->tausche(*vor);
        nachfolgerModus_ = true;
        entferneUnter(k, LINKS_SEITE);
        if (hoeheGeaendert_) nachEntfernt(teilbaum, LINKS_SEITE);
    }
}

void SortedCltn::nachEntfernt(BasisNode*& teilbaum, int s) {
    const int o = 1 - s;
    BasisNode* a = teilbaum;
    if (a->balance() == BAL) {
        a->setzeBalance(BasisNode::lastig(o));
        hoeheGeaendert_ = false;
        return;
    }
    if (a->balance() == BasisNode::lastig(s)) {
        a->setzeBalance(BAL);
        return;
    }
    BasisNode* c = a->kind[o];
    if (c->balance() == BAL) {
        rotiere(teilbaum, o);
        a->setzeBalance(BasisNode::lastig(o));
        c->setzeBalance(BasisNode::lastig(s));
        hoeheGeaendert_ = false;
    } else if (c->balance() == BasisNode::lastig(o)) {
        rotiere(teilbaum, o);
        a->setzeBalance(BAL);
        c->setzeBalance(BAL);
    } else {
        doppelt(teilbaum, o);
    }
}

void ElementNode::tausche(BasisNode& anderer) {
    std::swap(element, static_cast<ElementNode&>(anderer).element);
}

int ElementCltn::vergleiche(const BasisNode& knoten) const {
    return komparator_->vergleiche(*schluessel_, *element(&knoten));
}

// Only insertion creates or fills nodes, and insertion keys are the
// caller's modifiable elements.
BasisNode* ElementCltn::neuerKnoten() { return new ElementNode(const_cast<ListenElement*>(schluessel_)); }

void ElementCltn::ersetzeInhalt(BasisNode& knoten) {
    static_cast<ElementNode&>(knoten).element = const_cast<ListenElement*>(schluessel_);
}

BasisNode* ElementCltn::sucheKnoten(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    return suche();
}

BasisNode* ElementCltn::sucheKleiner(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    return sucheJenseits(LINKS_SEITE);
}

BasisNode* ElementCltn::sucheGroesser(const ListenElement* schluessel) const {
    schluessel_ = schluessel;
    return sucheJenseits(RECHTS_SEITE);
}
