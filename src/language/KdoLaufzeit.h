// KdoLaufzeit: the state of the command language that every compiler of a
// run shares.
//
// Nested procedure runs and translated lines each run a further Compiler
// inside an action of the outer one. They all see one object tree with its
// current object, one scanner mode (the parser's actions switch it in the
// middle of a statement), one request to leave, and the nesting depths
// that stop a procedure calling itself before the stack runs out.
//
// The program frame owns one for the whole run; a test makes its own, and
// gets fresh state with it:
//
//   KdoLaufzeit laufzeit;
//   laufzeit.setzeBaum(std::make_unique<KdoBaum>(&wurzel, nullptr, nullptr, nullptr, nullptr));
//   Compiler::ausfuehreZeile("a: ok()\n");
//
// The one made last is the one in force until it goes, when the one before
// it comes back. Code that runs outside any sees a neutral one without a
// tree.
#pragma once

#include <memory>

#include "foundation/Typen.h"

class KdoBaum;

// How the command scanner reads; the values are those of the grammar.
enum class ScannerModus : dataInteger {
    Text = 0,    // raw argument text: everything up to "," or ")" outside quotes
    Normal = 1,  // names, keywords, strings, single characters, comments
    Zahl = 2,    // like Normal, but digits start numbers
};

// The request to leave; also the values of `steuerung` in the grammar and
// of the error control.
enum class KdoStatus : dataInteger { Kein = 0, Return = 1, ReturnMain = 2, Exit = 3 };

// Whether the error control ended the last line compiled.
enum class LaufStatus : dataInteger { Normal = 3, Abgebrochen = 4 };

class KdoLaufzeit {
public:
    KdoLaufzeit();
    ~KdoLaufzeit();
    KdoLaufzeit(const KdoLaufzeit&) = delete;
    KdoLaufzeit& operator=(const KdoLaufzeit&) = delete;

    static KdoLaufzeit& aktuelle();

    KdoBaum* baum() const { return baum_.get(); }
    // Takes the tree over; the old one goes. The tree never owns objects,
    // so the root must outlive it or leave it first.
    void setzeBaum(std::unique_ptr<KdoBaum> baum);

    ScannerModus scannerModus = ScannerModus::Normal;
    KdoStatus compilerStatus = KdoStatus::Kein;       // request to leave
    KdoStatus funktionswertStatus = KdoStatus::Kein;  // taken when a user command fails
    LaufStatus laufStatus = LaufStatus::Normal;
    int prozedurTiefe = 0;       // procedure runs under way
    int uebersetzungsTiefe = 0;  // translation statements under way

private:
    struct Neutral {};
    explicit KdoLaufzeit(Neutral);

    std::unique_ptr<KdoBaum> baum_;
    KdoLaufzeit* vorige_;
    static inline KdoLaufzeit* aktuelle_ = nullptr;
};

// The object tree of the runtime in force, or null.
inline KdoBaum* kdoBaum() { return KdoLaufzeit::aktuelle().baum(); }
