// KdoListe and the object side of running a command.
#include "language/KdoListe.h"

#include <iostream>

#include "language/KdoKommando.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

KdoListe::KdoListe(const String& name) : name_(name), kommandos_(1) {}

KdoListe::~KdoListe() = default;

void KdoListe::fuegeEin(KdoKommando* kommando) {
    if (!kommando) return;
    kommando->setzeListe(this);
    // A second command of the same name is refused ("LIST-ELEDOUBLE"); the
    // list owns what it is given, so the refused one goes.
    if (!kommandos_.anfuegeElement(kommando, ListenSuche::MELDEN)) delete kommando;
}

void KdoListe::fuegeEin(std::span<const KdoEintrag> tabelle) {
    for (const KdoEintrag& e : tabelle) {
        fuegeEin(new KdoKommando(e.name, e.signatur, e.handler));
        if (e.vorgabe) definiere(AnwKommando(e.vorgabe));
    }
}

KdoKommando* KdoListe::definiere(AnwKommando& anwKommando) { return interpretiere(anwKommando, 1); }

KdoKommando* KdoListe::fuehreAus(AnwKommando& anwKommando) { return interpretiere(anwKommando, 0); }

KdoKommando* KdoListe::interpretiere(AnwKommando& anwKommando, int definition) {
    if (!anwKommando.pruefeOk()) return nullptr;
    const String& name = anwKommando.liefereKommandoName();
    if (name == "?") {
        anzeige(std::cout);
        return nullptr;
    }
    auto* kommando = static_cast<KdoKommando*>(
        kommandos_.sucheElementF(name, ListenSuche::JEDE_AUSWAHL, ListenSuche::STILL, ListenSuche::EXAKT));
    if (!kommando) {
        Fehler("CMD-NOSUCHCMD", "KdoListe::interpretiere ", name + " in " + name_, 'E');
        return nullptr;
    }
    if (!Kommando::interpretiere(*kommando, anwKommando, definition)) return nullptr;
    return kommando;
}

void KdoListe::anzeige(std::ostream& strom) const {
    // The command list has no name of its own, so its heading line ends the
    // "Kommandoliste" line.
    strom << '\n' << "Kommandoliste " << name_ << kommandos_;
}

int KdoObjekt::fuehreAus(AnwKommando& anwKommando) {
    KdoListe* liste = liefereKdoListe();
    if (!liste) return 0;  // a Pseudo object has no commands
    KdoKommando* kommando = liste->fuehreAus(anwKommando);
    if (!kommando) return 0;
    return kommando->ausfuehre(*this);
}
