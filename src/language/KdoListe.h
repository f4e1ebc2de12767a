// KdoListe: the commands of one class of command objects.
//
// All objects of a class share one list, so a command cannot hold
// per-object state: `aktuellesObjekt` says on whom the command now runs.
// The list owns its commands.
#pragma once

#include <iosfwd>
#include <span>

#include "foundation/Liste.h"
#include "foundation/String.h"

class AnwKommando;
class KdoKommando;
class KdoObjekt;
struct KdoEintrag;

class KdoListe : public ListenElement {
public:
    explicit KdoListe(const String& name);
    KdoListe(const KdoListe&) = delete;
    KdoListe& operator=(const KdoListe&) = delete;
    ~KdoListe() override;

    String liefereName() const override { return name_; }

    // Takes the command over and makes this list its owner; a command whose
    // name is taken is reported and deleted.
    void fuegeEin(KdoKommando* kommando);
    // Makes the commands of a table, each followed by its default line.
    void fuegeEin(std::span<const KdoEintrag> tabelle);
    // Reads the default values of a command from a default line.
    KdoKommando* definiere(AnwKommando& anwKommando);
    KdoKommando* definiere(AnwKommando&& anwKommando) { return definiere(anwKommando); }
    // Reads a command call; the command whose handler may run, or null.
    KdoKommando* fuehreAus(AnwKommando& anwKommando);
    KdoKommando* interpretiere(AnwKommando& anwKommando, int definition);
    // An empty line, "Kommandoliste <name>", then the commands' names in
    // sorted order.
    void anzeige(std::ostream& strom) const;

    KdoObjekt* liefereAktuellesObjekt() const { return aktuellesObjekt_; }
    void setzeAktuellesObjekt(KdoObjekt* objekt) { aktuellesObjekt_ = objekt; }
    const ListeSort& liefereKommandos() const { return kommandos_; }

private:
    String name_;
    ListeSort kommandos_;
    KdoObjekt* aktuellesObjekt_ = nullptr;
};
