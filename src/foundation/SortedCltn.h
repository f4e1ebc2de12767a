// The threaded AVL tree behind ListeSort.
//
// A node has two links, indexed by side (LINKS_SEITE 0, RECHTS_SEITE 1). A
// link whose thread bit is set points at the in-order neighbour on that side
// (null at the ends of the order) instead of a child. Every operation is
// written once for a side s and its mirror 1 - s.
//
// The tree owns its nodes only; the payload belongs to the caller.
#pragma once

#include <cstdint>
#include <iosfwd>

class ListenElement;
class ListenKomparator;

enum Seite : int { LINKS_SEITE = 0, RECHTS_SEITE = 1 };

class BasisNode {
public:
    enum : std::uint8_t {
        BALANCIERT = 0,
        LINKSLASTIG = 1,
        RECHTSLASTIG = 2,
        BALANCE_MASKE = 3,
        LINKS_FADEN = 4,
        RECHTS_FADEN = 8,
    };
    // The balance "heavier on side s", and the thread bit of side s.
    static constexpr std::uint8_t lastig(int s) { return s == LINKS_SEITE ? LINKSLASTIG : RECHTSLASTIG; }
    static constexpr std::uint8_t fadenBit(int s) { return s == LINKS_SEITE ? LINKS_FADEN : RECHTS_FADEN; }

    virtual ~BasisNode() = default;
    // Exchanges the payloads of two nodes of the same kind.
    virtual void tausche(BasisNode& anderer) = 0;
    virtual std::ostream& ausgabe(std::ostream& strom) const;

    std::uint8_t balance() const { return zustand & BALANCE_MASKE; }
    void setzeBalance(std::uint8_t b) { zustand = static_cast<std::uint8_t>((zustand & ~BALANCE_MASKE) | b); }
    bool faden(int s) const { return zustand & fadenBit(s); }
    void setzeFaden(int s, bool f) {
        zustand = static_cast<std::uint8_t>(f ? zustand | fadenBit(s) : zustand & ~fadenBit(s));
    }
    bool linksFaden() const { return faden(LINKS_SEITE); }
    bool rechtsFaden() const { return faden(RECHTS_SEITE); }
    BasisNode* links() const { return kind[LINKS_SEITE]; }
    BasisNode* rechts() const { return kind[RECHTS_SEITE]; }

    BasisNode* kind[2] = {nullptr, nullptr};
    std::uint8_t zustand = LINKS_FADEN | RECHTS_FADEN;
};

class Collection {
public:
    virtual ~Collection() = default;
    virtual void leerlauf() {}
    virtual std::ostream& ausgabe(std::ostream& strom) const;
    std::int32_t anzahl() const { return anzahl_; }

protected:
    std::int32_t anzahl_ = 0;
};

class SortedCltn;
struct Position {
    const SortedCltn* cltn = nullptr;
    BasisNode* knoten = nullptr;
};

// The AVL tree proper. The caller sets the current key in the derived
// class, then calls `fuegeEin`, `entferne` or `suche`.
class SortedCltn : public Collection {
public:
    SortedCltn() = default;
    SortedCltn(const SortedCltn&) = delete;
    SortedCltn& operator=(const SortedCltn&) = delete;
    ~SortedCltn() override { leere(); }

    // Inserts the current key. 1 if a node was added; 0 if an equal key
    // stood already (its payload is then replaced while `ersetzen` is set).
    int fuegeEin();
    // Removes the node of the current key; 1 if one was removed.
    int entferne();
    // The node of the current key, or null.
    BasisNode* suche() const;
    // Frees all nodes.
    void leere();

    BasisNode* wurzel() const { return wurzel_; }
    BasisNode* erstes() const;
    // The in-order neighbour on side s, or null at that end.
    static BasisNode* nachbar(const BasisNode* knoten, int s);
    static BasisNode* nachfolger(const BasisNode* knoten) { return nachbar(knoten, RECHTS_SEITE); }
    static BasisNode* vorgaenger(const BasisNode* knoten) { return nachbar(knoten, LINKS_SEITE); }
    BasisNode* treffer() const { return treffer_; }

    // Guarded access to a position's node: a programmer error (empty tree,
    // foreign or null position) ends the program.
    BasisNode* inhalt(const Position& position) const;

    std::ostream& ausgabe(std::ostream& strom) const override;

protected:
    // Current key against the node's payload, negative if the key sorts
    // before it.
    virtual int vergleiche(const BasisNode& knoten) const = 0;
    // A fresh node holding the current key.
    virtual BasisNode* neuerKnoten() = 0;
    // Puts the current key into an existing node.
    virtual void ersetzeInhalt(BasisNode& knoten) = 0;
    // The nearest node strictly on side s of the current key (before it for
    // LINKS_SEITE, after it for RECHTS_SEITE), or null.
    BasisNode* sucheJenseits(int s) const;

    std::int32_t ersetzen_ = 1;

private:
    bool fuegeEinUnter(BasisNode*& teilbaum);
    void entferneUnter(BasisNode* eltern, int seite);
    BasisNode*& zweig(BasisNode* eltern, int seite);
    // Rebalances after the subtree on side s lost one level.
    void nachEntfernt(BasisNode*& teilbaum, int s);

    BasisNode* wurzel_ = nullptr;
    bool hoeheGeaendert_ = false;
    bool nachfolgerModus_ = false;
    BasisNode* treffer_ = nullptr;
};

// Node and tree over ListenElement pointers, ordered by a ListenKomparator.
class ElementNode : public BasisNode {
public:
    explicit ElementNode(ListenElement* e) : element(e) {}
    void tausche(BasisNode& anderer) override;
    ListenElement* element;
};

class ElementCltn : public SortedCltn {
public:
    explicit ElementCltn(const ListenKomparator* komparator) : komparator_(komparator) {}
    void setzeKomparator(const ListenKomparator* komparator) { komparator_ = komparator; }
    void setzeSchluessel(const ListenElement* schluessel) { schluessel_ = schluessel; }
    static ListenElement* element(const BasisNode* knoten) {
        return knoten ? static_cast<const ElementNode*>(knoten)->element : nullptr;
    }
    // The node whose element compares equal to `schluessel`, or null.
    BasisNode* sucheKnoten(const ListenElement* schluessel) const;
    // The last node that sorts strictly before / first strictly after the
    // key, or null.
    BasisNode* sucheKleiner(const ListenElement* schluessel) const;
    BasisNode* sucheGroesser(const ListenElement* schluessel) const;

protected:
    int vergleiche(const BasisNode& knoten) const override;
    BasisNode* neuerKnoten() override;
    void ersetzeInhalt(BasisNode& knoten) override;

private:
    const ListenKomparator* komparator_;
    mutable const ListenElement* schluessel_ = nullptr;
};
