// KivObjekt: the root of the command-object tree and owner of the open
// images.
//
// A run starts on this object; its commands open, create and close images.
// Each new image goes into `epromListe` (which owns it) and into `kdoBaum`
// below the current object, where it becomes the current object itself, so
// that the lines after `oeffne` or `neu` go to the new image.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "foundation/DateiName.h"
#include "foundation/Liste.h"
#include "foundation/String.h"
#include "language/KdoObjekt.h"

class KdoListe;
class KdoKommando;
class KivEprom;
struct KdoEintrag;

extern KdoListe* kivObjektListe;
extern KdoListe* kivEpromListe;

// Builds `kivObjektListe`.
void bauKivObjektListe();
// Its table, for the check of its named positions.
std::span<const KdoEintrag> kivObjektTabelle();

class KivObjekt : public KdoObjekt {
public:
    KivObjekt(const String& name, const String& vollerName);
    ~KivObjekt() override;

    KdoListe* liefereKdoListe() override;
    const String& liefereKdoOTyp() const override;
    // The text of the leading interface of the root.
    static const char* liefereText() { return "Kiv"; }

    // Creates an empty image named after `datei` and makes it the current
    // object; null on failure.
    KivEprom* neuesEprom(const DateiName& datei);
    KivEprom* sucheEprom(const String& name);
    // Takes the image out of the list without freeing it; 1 or 0.
    int entferneEprom(KivEprom* kivEprom);
    // Closes the image of that name. A changed image stays open (result 1)
    // unless `immer` is 1.
    int schliesse(const String& name, int immer);
    // 1 if any image is changed; with `melden` 1 the names are reported.
    int pruefeGeaendert(int melden);

    Liste& liefereEpromListe() { return *epromListe; }

    std::unique_ptr<Liste> epromListe;  // owns the images
    std::int16_t neuZaehler = 1;        // next number of an invented name
};

// The one root object; the program frame creates and deletes it.
extern KivObjekt* kivWurzel;

// Handlers of the root's commands.
int kdoOeffne(KdoObjekt& objekt, KdoKommando& kommando);
int kdoNeu(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSchliesse(KdoObjekt& objekt, KdoKommando& kommando);
int kdoSchliesseAlle(KdoObjekt& objekt, KdoKommando& kommando);
