// Commands of a command-object class, and the text of one command call.
//
// A KdoKommando is declared by one line of data: name, a signature string
// of white-space separated pairs "TypeWord argumentName" (their number is
// the argument count) and a handler. The signature builds the argument
// objects; a default line passed through `KdoListe::definiere` gives their
// defaults:
//
//   new KdoKommando("setze",
//       "IntegerHex startAdresse  BoolIntegerHex endAdresse  IntegerHex hexWert",
//       kdoSetze);
//   liste.definiere(AnwKommando("setze(0, /, 0)"));
//
// Commands exist once per class, not per object: the argument objects are
// overwritten by every call, and the handler reads them through its named
// positions (language/KdoArgPos.h): `kommando[setze::hexWert].liefereArgWert...`.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <span>
#include <sstream>
#include <vector>

#include "foundation/Liste.h"
#include "foundation/String.h"
#include "language/KdoArgPos.h"
#include "language/KdoArgument.h"

class KdoListe;
class KdoObjekt;
class KdoKommando;

using KdoHandler = int (*)(KdoObjekt& objekt, KdoKommando& kommando);

// One command as text being read. The argument objects read straight from
// `liefereStrom()`, which stands behind the command name.
class AnwKommando {
public:
    explicit AnwKommando(const String& text);
    AnwKommando(const AnwKommando&) = delete;
    AnwKommando& operator=(const AnwKommando&) = delete;
    virtual ~AnwKommando() = default;

    // Returns `ok`; reports "CMD-WRONGCMD" when it is 0.
    int pruefeOk();
    const String& liefereText() const { return text_; }
    const String& liefereKommandoName() const { return kommandoName_; }
    std::istream& liefereStrom() { return *strom_; }

private:
    String text_;
    std::unique_ptr<std::istringstream> strom_;
    String kommandoName_;
    std::int32_t ok_ = 1;
};

class KdoKommando : public ListenElement {
public:
    // Builds the arguments from `signatur`; an unknown type word, or a type
    // word without a name, leaves the command unusable (`ok` 0,
    // "CMD-INTERNAL-WRONGARG").
    KdoKommando(const String& name, const char* signatur, KdoHandler handler);
    ~KdoKommando() override;

    // The list display writes the name on a line of its own.
    String liefereName() const override { return name_; }

    // Returns `ok`; reports "CMD-INTERNAL-WRONGCMD" when it is 0.
    int pruefeOk() const;
    // The argument at `index`. An unusable command gives a dummy argument; an
    // index beyond the last warns and gives the last argument.
    KdoArgument& operator[](std::uint16_t index);
    // The argument at a named position, with the accessors of its type.
    template <KdoArgTyp T>
    KdoArgSicht<T> operator[](ArgPos<T> position) {
        return KdoArgSicht<T>((*this)[position.index]);
    }
    // The help text: name, then type, name and default of each argument.
    void anzeige(std::ostream& strom) const;
    // Remembers the object in the owning list and runs the handler.
    int ausfuehre(KdoObjekt& objekt);
    KdoObjekt* liefereAktuellesObjekt() const;
    void setzeListe(KdoListe* liste) { liste_ = liste; }
    KdoListe* liefereListe() const { return liste_; }

    std::uint16_t liefereAnzahlArgumente() const { return anzahlArgumente_; }
    // The slot itself, null where the signature went wrong.
    KdoArgument* argument(std::uint16_t index) const;

    // The number of pairs in a signature: the type words read the way the
    // constructor reads them.
    static std::uint16_t zaehleArgumente(const char* signatur);

private:
    String name_;
    std::uint16_t anzahlArgumente_;
    std::vector<std::unique_ptr<KdoArgument>> argumente_;
    std::int32_t ok_ = 1;
    KdoHandler handler_;
    KdoListe* liste_ = nullptr;
};

// One line of a command table, with the named positions its handler uses.
struct KdoEintrag {
    const char* name;
    const char* signatur;
    KdoHandler handler;
    const char* vorgabe;  // null: the command has no default line
    std::span<const KdoArgDekl> positionen;
};

// Makes the argument object of one type word of a signature, or null for an
// unknown word. `kommando` is handed to the types that need their command.
// The type word that builds arguments of type `typ`.
const char* kdoTypWort(KdoArgTyp typ);
std::unique_ptr<KdoArgument> erzeugeKdoArgument(const String& typWort, const String& name,
                                                KdoKommando* kommando);

namespace Kommando {
// Lets the arguments of `kommando` read the text of `anwKommando`.
// definition 1: the values become the defaults. 1 if the handler may run.
int interpretiere(KdoKommando& kommando, AnwKommando& anwKommando, int definition);
}  // namespace Kommando
