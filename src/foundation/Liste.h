// Named-element containers of the command language.
//
// Liste: a doubly linked chain of ListenElement pointers, kept in insertion
// order, searched by name through `sucheElementF`. ListeSort adds a threaded
// AVL tree (SortedCltn) over the same elements, so that an exact-name search
// is logarithmic and a second iteration runs in collation order.
//
// Ownership: with `besitzer` 1 the list deletes its elements when cleared or
// destroyed; removal (`entferne`, `entferneAktuell`) always hands the element
// back alive. The tree owns its nodes only.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "foundation/SortedCltn.h"
#include "foundation/String.h"

// Number of living Liste objects; main reports a leak if it is not 0 at the end.
extern std::int32_t anzahlListen;

// The arguments of the searches (`sucheElement`, `sucheElementF`) by name.
namespace ListenSuche {
// typ: the `auswahl` marks an element must carry; this one accepts any.
inline constexpr std::uint32_t JEDE_AUSWAHL = 0;
// melde: whether a failed search is reported.
enum Melden : std::int32_t { STILL = 0, MELDEN = 1 };
// modus: the element's name upper-cased, lower-cased, or as it stands
// equals the name searched for.
enum Vergleich : std::int32_t { GROSS = 0, KLEIN = 1, EXAKT = 2 };
}  // namespace ListenSuche

class ListenElement {
public:
    virtual ~ListenElement() = default;
    // List display; by default the name on a line of its own.
    virtual std::ostream& ausgabe(std::ostream& strom) const;
    virtual String liefereName() const = 0;

    // Selection mark used by searches and iteration (0 = not restricted).
    std::uint32_t auswahl = 0;
};

// Orders elements for ListeSort. The shared default compares names with the
// German collation and lets exact-name searches use the tree.
class ListenKomparator {
public:
    ListenKomparator(std::int32_t besitz = 0, std::int32_t baumSuche = 1)
        : besitz_(besitz), baumSuche_(baumSuche) {}
    virtual ~ListenKomparator() = default;
    // 1 if a sorts after b, -1 if before, 0 if equal.
    virtual int vergleiche(const ListenElement& a, const ListenElement& b) const;

    static ListenKomparator* standard();

    std::int32_t besitz_;     // 1: the ListeSort deletes it
    std::int32_t baumSuche_;  // 1: exact-name searches go through the tree
};

// ---------------------------------------------------------------------------
// Chain and sorted list

class Liste;
class ListeSort;

// Steps through a list: in chain order, or in tree (collation) order.
class ListenIterator {
public:
    explicit ListenIterator(const Liste& liste);       // chain mode
    explicit ListenIterator(const ElementCltn& baum);  // tree mode
    // Next element whose `auswahl` equals typ (any element for typ 0), or
    // null at the end. The chain walk stays at the end until rewound; the
    // tree walk starts over after reporting its end: intended.
    ListenElement* naechstes(std::uint32_t typ = 0);
    void zurueck();

private:
    friend class Liste;
    friend class ListeSort;
    enum class Stand { Anfang, Laufend, Ende };
    const Liste* liste_ = nullptr;
    const ElementCltn* baum_ = nullptr;
    Stand stand_ = Stand::Anfang;
    // Chain: the link delivered last. Tree: the element delivered last; the
    // walk goes on at the first node after its key, so the node itself may
    // go away in between.
    const void* letztes_ = nullptr;
};

class Liste {
public:
    explicit Liste(std::int32_t besitzer = 0, const String& name = String());
    Liste(const Liste&) = delete;
    Liste& operator=(const Liste&) = delete;

    // Forgets all links without freeing anything.
    virtual void initialisiere(std::int32_t besitzer);
    virtual ~Liste();
    // Appends unless an element of that exact name exists; returns the
    // element, or null (reported "LIST-ELEDOUBLE" with melde 1).
    virtual ListenElement* anfuegeElement(ListenElement* element, std::int32_t melde = 1);
    // Appends without any check.
    virtual ListenElement* haengeAn(ListenElement* element);
    // Unlinks the element of the last recording search and returns it alive.
    virtual ListenElement* entferneAktuell();
    virtual ListenElement* entferne(const String& name);
    virtual ListenElement* entferne(const char* name);
    virtual void zurueckSetzen();
    // modus: a ListenSuche::Vergleich; melde: ListenSuche::Melden.
    // typ 0 accepts any `auswahl`. Records the hit as `aktuell`.
    virtual ListenElement* sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                        std::int32_t modus);
    virtual ListenElement* sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                         std::int32_t modus);
    // Read-only forms: the same search, `aktuell` untouched.
    virtual ListenElement* sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                        std::int32_t modus) const;
    virtual ListenElement* sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                         std::int32_t modus) const;
    virtual void setzeAuswahl(std::uint32_t wert);
    // Frees all links (and elements when owning) and starts empty.
    virtual void loesche();

    // Search with message.
    ListenElement* sucheElementF(const String& name, std::uint32_t typ, std::int32_t modus) {
        return sucheElementF(name, typ, 1, modus);
    }

    // Chain-order iteration through the list's own iterator.
    ListenElement* naechstes(std::uint32_t typ = 0) { return iterator_.naechstes(typ); }

    std::int32_t elementAnzahl() const { return elementAnzahl_; }
    std::int32_t besitzer() const { return besitzer_; }
    std::int32_t iteriert() const { return iteriert_; }
    std::int32_t sortiert() const { return sortiert_; }
    const String& liefereName() const { return name_; }
    void setzeName(const String& name) { name_ = name; }
    ListenElement* erstesElement() const { return kopf_ ? kopf_->element : nullptr; }
    ListenElement* letztesElement() const { return ende_ ? ende_->element : nullptr; }
    ListenElement* aktuellesElement() const { return aktuell_ ? aktuell_->element : nullptr; }

protected:
    struct Glied {
        ListenElement* element;
        Glied* vorher;
        Glied* naechstes;
    };

    // The chain search; null when nothing matches. `treffer` receives the
    // link of a name match even when the selection rejects it.
    Glied* kettenSuche(const String& name, std::int32_t modus) const;
    // Applies the selection and message rules to a search result.
    ListenElement* pruefeTreffer(ListenElement* gefunden, const String& name, std::uint32_t typ,
                                 std::int32_t melde, const char* auswahlFunktion) const;
    void anhaengen(ListenElement* element);
    // Unlinks and frees a link, keeping the chain iterator valid.
    void ausketten(Glied* glied);
    Glied* gliedVon(const ListenElement* element) const;

    String name_;
    std::int32_t besitzer_ = 0;
    std::int32_t iteriert_ = 0;
    std::int32_t sortiert_ = 0;
    Glied* kopf_ = nullptr;
    Glied* ende_ = nullptr;
    Glied* aktuell_ = nullptr;
    ListenIterator iterator_;
    std::int32_t elementAnzahl_ = 0;

    friend class ListenIterator;
};

class ListeSort : public Liste {
public:
    // A null comparator is a programming error and ends the program.
    ListeSort(std::int32_t besitzer, ListenKomparator* komparator = ListenKomparator::standard(),
              const String& name = String());
    ~ListeSort() override;

    ListenElement* anfuegeElement(ListenElement* element, std::int32_t melde = 1) override;
    ListenElement* haengeAn(ListenElement* element) override;
    ListenElement* entferneAktuell() override;
    ListenElement* entferne(const String& name) override;
    ListenElement* entferne(const char* name) override;
    void zurueckSetzen() override;
    ListenElement* sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                std::int32_t modus) override;
    ListenElement* sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                 std::int32_t modus) override;
    ListenElement* sucheElement(const ListenElement* element, std::uint32_t typ, std::int32_t melde,
                                std::int32_t modus) const override;
    ListenElement* sucheElementF(const String& name, std::uint32_t typ, std::int32_t melde,
                                 std::int32_t modus) const override;
    void loesche() override;
    using Liste::sucheElementF;

    // Replaces the comparator (a null one ends the program) and starts
    // empty, as `loesche` does. An owned old comparator is deleted.
    void setzeKomparator(ListenKomparator* einKomparator);
    const ListenKomparator* liefereKomparator() const { return komparator_; }

    // Collation-order iteration through the list's tree iterator.
    ListenElement* naechstesSortiert(std::uint32_t typ = 0) { return baumIterator_.naechstes(typ); }

    // The tree, for inspection (tests, debug output).
    const ElementCltn& baum() const { return baum_; }

    // Name, line end, then every element's `ausgabe` in tree order.
    std::ostream& ausgabe(std::ostream& strom) const;

private:
    ListenElement* baumSuche(const ListenElement* schluessel) const;
    // Removes an element from the tree, keeping the tree iterator and the
    // remembered tree position valid.
    void ausBaum(ListenElement* element);

    ElementCltn baum_;
    ListenKomparator* komparator_;
    ListenElement* baumPosition_ = nullptr;  // hit of the last recording tree search
    ListenIterator baumIterator_;
};

std::ostream& operator<<(std::ostream& strom, const ListeSort& liste);
