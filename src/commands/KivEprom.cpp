#include "commands/KivEprom.h"

#include "image/Eprom.h"
#include "language/KdoKommando.h"
#include "reporting/Fehler.h"

KivEprom::KivEprom(std::unique_ptr<Eprom> e, const String& n) : KdoObjekt(n), eprom(std::move(e)) {
    if (!eprom) eprom = std::make_unique<Eprom>();
}

KivEprom::KivEprom(const String& n) : KdoObjekt(n), eprom(std::make_unique<Eprom>()) {}

KivEprom::~KivEprom() = default;

KdoListe* KivEprom::liefereKdoListe() { return kivEpromListe; }

String KivEprom::liefereName() const { return name_; }

const String& KivEprom::liefereKdoOTyp() const {
    static const String typ("Eprom");
    return typ;
}

const String& KivEprom::liefereZusatzTyp() const { return liefereKdoOTyp(); }

const String& KivEprom::variablenListe() {
    static const String liste(
        "AnfAdr\nEndAdr\nBytes\nAnzBytes\nAnzBytesGefuellt\nAnzBytesLeer\nDateiname\n ");
    return liste;
}

KivEprom* findeKivEprom(const String& name, const char* funktion) {
    KdoObjektBasis* gefunden = kdoBaum() ? kdoBaum()->suche(name, 0) : nullptr;
    // The search may land on the root or another kind of object; only an
    // image will do here.
    KivEprom* kiv = dynamic_cast<KivEprom*>(gefunden);
    if (!kiv) Fehler("EPROM-NOT-EXIST", funktion, name, 'E');
    return kiv;
}

const adrInteger* optionaleAdresse(KdoKommando& kommando, ArgPos<KdoArgTyp::BoolIntegerHex> position) {
    const auto argument = kommando[position];
    return argument.liefereArgWertBool() == 1 ? &argument.liefereArgWertIntHex() : nullptr;
}
