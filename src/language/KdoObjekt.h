// Command objects and the one tree they stand in.
//
// Every addressable thing of the command language is a KdoObjekt with a type
// name, a short name and a full name such as "<Kiv>Kiv.<Eprom>a". The tree
// derives all its structure from comparing those full names; it owns its
// nodes only, never the objects. The tree in force is that of the runtime
// (KdoLaufzeit.h), reached through `kdoBaum()`; objects remove themselves
// from it when they die.
#pragma once

#include <vector>

#include "foundation/String.h"
#include "language/KdoLaufzeit.h"

class KdoListe;
class Liste;
class AnwKommando;

class KdoObjektBasis {
public:
    KdoObjektBasis() = default;
    KdoObjektBasis(const KdoObjektBasis&) = delete;
    KdoObjektBasis& operator=(const KdoObjektBasis&) = delete;
    // Takes the object (and the nodes below it) out of the tree in force.
    virtual ~KdoObjektBasis();

    virtual KdoListe* liefereKdoListe() = 0;
    virtual String liefereName() const = 0;
    virtual const String& liefereKdoOTyp() const = 0;
    virtual const String& liefereZusatzTyp() const = 0;
    virtual String liefereVollenNamen() const { return vollerName_; }
    virtual void setzeVollenNamen(const String& text) { vollerName_ = text; }
    // Lists that argument types of the kind "names in a list" choose from.
    // No class of the system has such lists: the base reports and gives null.
    virtual Liste* liefereListeFuerKdoArg(const String& listenName);

protected:
    String vollerName_;
};

// A plain KdoObjekt is a "Pseudo" object without commands; real command
// objects derive from it and override the list and the type name.
class KdoObjekt : public KdoObjektBasis {
public:
    explicit KdoObjekt(const String& name = String(), const String& vollerName = String());
    ~KdoObjekt() override = default;

    KdoListe* liefereKdoListe() override { return nullptr; }
    String liefereName() const override { return name_; }
    const String& liefereKdoOTyp() const override;
    const String& liefereZusatzTyp() const override;

    // Finds the command of `anwKommando` in this object's list and runs its
    // handler on this object. 1 on success, 0 otherwise (already reported).
    int fuehreAus(AnwKommando& anwKommando);

protected:
    String name_;
};

// A parsed path such as "<Kiv>Kiv.<Eprom>a" or "a": one element per name.
// Parsing stops silently at the first character that fits nowhere.
class KdoObjektPfad {
public:
    struct Element {
        String name;
        String typ;
    };
    explicit KdoObjektPfad(const String& text);
    int anzahl() const { return static_cast<int>(elemente_.size()); }
    // Outside the array: a pair of empty texts.
    const Element& operator[](int i) const;

private:
    std::vector<Element> elemente_;
};

struct KdoBaumKnoten {
    KdoBaumKnoten* vater = nullptr;
    KdoBaumKnoten* aeltesterSohn = nullptr;
    KdoBaumKnoten* naechsterBruder = nullptr;
    KdoObjektBasis* objekt = nullptr;  // not owned
};

using KdoRelation = int (*)(KdoObjektBasis* a, KdoObjektBasis* b);
using KdoVergleich = int (*)(KdoObjektBasis* a, KdoObjektBasis* b);
using KdoLoesche = void (*)(KdoObjektBasis* a);

// The four operations the frame hands to the tree.
// 0: a is an ancestor of b or equal, 1: brothers, 2: b is an ancestor of a,
// 3: unrelated; all judged on the full names.
int kdoRelation(KdoObjektBasis* a, KdoObjektBasis* b);
int kdoVergleich(KdoObjektBasis* a, KdoObjektBasis* b);        // full names
int kdoNamensVergleich(KdoObjektBasis* a, KdoObjektBasis* b);  // short names
void kdoLoesche(KdoObjektBasis* a);                            // clears the full name

class KdoBaum {
public:
    // A null operation stands for the standard one above.
    KdoBaum(KdoObjektBasis* wurzelObjekt, KdoRelation relation, KdoVergleich vergleich,
            KdoVergleich namensVergleich, KdoLoesche loesche);
    KdoBaum(const KdoBaum&) = delete;
    KdoBaum& operator=(const KdoBaum&) = delete;
    ~KdoBaum();  // frees the nodes, leaves the objects alone

    // Gives the object its full name below the current object and inserts
    // it; a node created here becomes the current one. 1 on success.
    int fuegeEin(KdoObjektBasis* objekt);
    // Removes the node of `objekt` and its subtree. If the current object
    // was inside that subtree, the current object becomes the removed node's
    // father. 1 if a node was removed.
    int entferne(KdoObjektBasis* objekt);

    int vater();
    int sohn();
    int geschwister();
    // Start with a null iterator; yields the current object's sons in turn,
    // then null.
    KdoObjektBasis* naechsterSohn(KdoBaumKnoten*& iterator);
    // Looks a path up relative to the current object, then from the root.
    KdoObjektBasis* suche(const String& name, int setzeAktuell);
    KdoObjektBasis* liefereAktuelles() const { return aktuell_ ? aktuell_->objekt : nullptr; }
    KdoObjektBasis* liefereWurzel() const { return wurzel_ ? wurzel_->objekt : nullptr; }

private:
    KdoBaumKnoten* neuerSohn(KdoBaumKnoten* vater, KdoObjektBasis* objekt);
    int knotenEinfuegen(KdoBaumKnoten* start, KdoObjektBasis* objekt, KdoBaumKnoten*& neu);
    KdoBaumKnoten* knotenSuche(KdoBaumKnoten* start, KdoObjektBasis* schluessel);
    KdoBaumKnoten* sohnSuche(KdoBaumKnoten* start, KdoObjektBasis* schluessel);
    KdoBaumKnoten* versuche(KdoBaumKnoten* start, const KdoObjektPfad& pfad, const String& vollerName);
    KdoBaumKnoten* sucheKnoten(const String& name);
    KdoBaumKnoten* findeKnoten(KdoObjektBasis* objekt) const;
    void gibFrei(KdoBaumKnoten* knoten, bool loeschen);

    KdoBaumKnoten* wurzel_ = nullptr;
    KdoBaumKnoten* aktuell_ = nullptr;
    KdoRelation relation_;
    KdoVergleich vergleich_;
    KdoVergleich namensVergleich_;
    KdoLoesche loesche_;
};
