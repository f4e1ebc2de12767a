// Named, typed argument positions of a command.
//
// A command table declares, next to each signature, one constant per
// argument that carries the argument's place and the type its type word
// builds:
//
//   namespace setze {
//   inline constexpr ArgPos<KdoArgTyp::IntegerHex> startAdresse{0};
//   inline constexpr ArgPos<KdoArgTyp::BoolIntegerHex> endAdresse{1};
//   inline constexpr KdoArgDekl positionen[] = {startAdresse, endAdresse};
//   }
//
// `kommando[setze::endAdresse]` gives a view on the argument that offers
// only the accessors its type serves, so a handler that reads a number from
// a file name argument does not compile. Whether a declared type is the
// one the signature really builds is checked over all tables by
// tests/unit/commands/KommandoTabellenTest.cpp, through `positionen`.
#pragma once

#include <cstdint>

#include "language/KdoArgument.h"

// One declared position, without its type in the C++ type: what a table
// lists for the check.
struct KdoArgDekl {
    KdoArgTyp typ;
    std::uint16_t index;
};

template <KdoArgTyp T>
struct ArgPos {
    std::uint16_t index;
    constexpr operator KdoArgDekl() const { return {T, index}; }
};

// The families of accessors (`liefereArgWert...`) an argument can serve.
namespace KdoZugriff {
enum : unsigned {
    Int = 1u << 0,
    IntHex = 1u << 1,
    CharHex = 1u << 2,
    Phys = 1u << 3,
    Bool = 1u << 4,
    Str = 1u << 5,
    Liste = 1u << 6,
    Datei = 1u << 7,
    KdoObjekt = 1u << 8,
    WP = 1u << 9,
    WPStr = 1u << 10,
    DynArrStr = 1u << 11,
    Alle = (1u << 12) - 1
};
}

// What the class of each type overrides; the others report
// "CMD-WRONGARGMETHOD" at run time.
constexpr unsigned kdoZugriffe(KdoArgTyp typ) {
    namespace Z = KdoZugriff;
    switch (typ) {
    case KdoArgTyp::Integer:
    case KdoArgTyp::Enum: return Z::Int;
    case KdoArgTyp::BoolInteger: return Z::Int | Z::Bool;
    case KdoArgTyp::IntegerHex: return Z::IntHex | Z::CharHex;
    case KdoArgTyp::BoolIntegerHex: return Z::IntHex | Z::CharHex | Z::Bool;
    case KdoArgTyp::Phys: return Z::Phys;
    case KdoArgTyp::Bool: return Z::Bool;
    case KdoArgTyp::Wort:
    case KdoArgTyp::NameInListe:
    case KdoArgTyp::LString:
    case KdoArgTyp::String:
    case KdoArgTyp::RegExpr: return Z::Str;
    case KdoArgTyp::BoolWort:
    case KdoArgTyp::BoolNameInListe: return Z::Str | Z::Bool;
    case KdoArgTyp::NamenInListe: return Z::Str | Z::Liste;
    case KdoArgTyp::BoolNamenInListe: return Z::Str | Z::Liste | Z::Bool;
    case KdoArgTyp::DateiName:
    case KdoArgTyp::DateiPfad: return Z::Datei;
    case KdoArgTyp::KdoObjekt: return Z::KdoObjekt;
    case KdoArgTyp::BoolKdoObjekt: return Z::KdoObjekt | Z::Bool;
    case KdoArgTyp::WPListe: return Z::WP;
    case KdoArgTyp::WPStrListe: return Z::WPStr;
    case KdoArgTyp::ParameterListe: return Z::DynArrStr | Z::Str;
    case KdoArgTyp::Anzahl: break;
    }
    return 0;
}

// The argument at a typed position, with the accessors of its type only.
template <KdoArgTyp T>
class KdoArgSicht {
    static constexpr bool dient(unsigned z) { return (kdoZugriffe(T) & z) != 0; }

public:
    explicit KdoArgSicht(KdoArgument& argument) : a_(argument) {}

    dataInteger& liefereArgWertInt() const requires(dient(KdoZugriff::Int)) { return a_.liefereArgWertInt(); }
    adrInteger& liefereArgWertIntHex() const requires(dient(KdoZugriff::IntHex)) {
        return a_.liefereArgWertIntHex();
    }
    unsigned char liefereArgWertCharHex() const requires(dient(KdoZugriff::CharHex)) {
        return a_.liefereArgWertCharHex();
    }
    dataPhys& liefereArgWertPhys() const requires(dient(KdoZugriff::Phys)) { return a_.liefereArgWertPhys(); }
    YesNo& liefereArgWertBool() const requires(dient(KdoZugriff::Bool)) { return a_.liefereArgWertBool(); }
    String& liefereArgWertStr() const requires(dient(KdoZugriff::Str)) { return a_.liefereArgWertStr(); }
    int liefereArgWertListe() const requires(dient(KdoZugriff::Liste)) { return a_.liefereArgWertListe(); }
    DateiName& liefereArgWertDatei() const requires(dient(KdoZugriff::Datei)) {
        return a_.liefereArgWertDatei();
    }
    ::KdoObjekt* liefereArgWertKdoObjekt() const requires(dient(KdoZugriff::KdoObjekt)) {
        return a_.liefereArgWertKdoObjekt();
    }
    WertePaar* liefereArgWertWP(std::uint16_t i) const requires(dient(KdoZugriff::WP)) {
        return a_.liefereArgWertWP(i);
    }
    WertePaarStr* liefereArgWertWPStr(std::uint16_t i) const requires(dient(KdoZugriff::WPStr)) {
        return a_.liefereArgWertWPStr(i);
    }
    DynArray<String>& liefereArgWertDynArrStr() const requires(dient(KdoZugriff::DynArrStr)) {
        return a_.liefereArgWertDynArrStr();
    }

private:
    KdoArgument& a_;
};
