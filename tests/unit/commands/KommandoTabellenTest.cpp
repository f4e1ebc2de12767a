// The command tables against their named positions, and each argument type's accessors.
#include <gtest/gtest.h>

#include "commands/KivEprom.h"
#include "commands/KivObjekt.h"
#include "language/KdoKommando.h"
#include "support/Meldungsaufnahme.h"

namespace {

TEST(KommandoTabellen, EveryDeclaredPositionHasTheTypeItsSignatureBuilds) {
    for (const auto tabelle : {kivObjektTabelle(), kivEpromTabelle()}) {
        for (const KdoEintrag& e : tabelle) {
            Meldungsaufnahme aufnahme;
            KdoKommando k(e.name, e.signatur, e.handler);
            EXPECT_EQ(aufnahme.anzahl(), 0u) << e.name;
            // Every argument is named, each once, in order.
            ASSERT_EQ(e.positionen.size(), k.liefereAnzahlArgumente()) << e.name;
            for (std::uint16_t i = 0; i < e.positionen.size(); ++i) {
                EXPECT_EQ(e.positionen[i].index, i) << e.name;
                EXPECT_EQ(k.argument(i)->liefereTyp(), e.positionen[i].typ) << e.name << " " << i;
            }
        }
    }
}

TEST(KommandoTabellen, TheAccessorsOfATypeAreThoseItsClassServes) {
    // One argument of every type; each accessor either serves or reports.
    const char* signatur =
        "Integer a BoolInteger a IntegerHex a BoolIntegerHex a Phys a Bool a Wort a BoolWort a NameInListe a "
        "BoolNameInListe a LString a String a NamenInListe a BoolNamenInListe a DateiName a DateiPfad a "
        "KdoObjekt{x} a BoolKdoObjekt{x} a RegExpr a Enum{x} a WPListe a WPStrListe a ParameterListe a";
    Meldungsaufnahme aufnahme;
    KdoKommando k("alle", signatur, nullptr);
    ASSERT_EQ(k.liefereAnzahlArgumente(), static_cast<std::uint16_t>(KdoArgTyp::Anzahl));
    const std::pair<unsigned, void (*)(KdoArgument&)> zugriffe[] = {
        {KdoZugriff::Int, [](KdoArgument& x) { x.liefereArgWertInt(); }},
        {KdoZugriff::IntHex, [](KdoArgument& x) { x.liefereArgWertIntHex(); }},
        {KdoZugriff::CharHex, [](KdoArgument& x) { x.liefereArgWertCharHex(); }},
        {KdoZugriff::Phys, [](KdoArgument& x) { x.liefereArgWertPhys(); }},
        {KdoZugriff::Bool, [](KdoArgument& x) { x.liefereArgWertBool(); }},
        {KdoZugriff::Str, [](KdoArgument& x) { x.liefereArgWertStr(); }},
        {KdoZugriff::Liste, [](KdoArgument& x) { x.liefereArgWertListe(); }},
        {KdoZugriff::Datei, [](KdoArgument& x) { x.liefereArgWertDatei(); }},
        {KdoZugriff::KdoObjekt, [](KdoArgument& x) { x.liefereArgWertKdoObjekt(); }},
        {KdoZugriff::WP, [](KdoArgument& x) { x.liefereArgWertWP(0); }},
        {KdoZugriff::WPStr, [](KdoArgument& x) { x.liefereArgWertWPStr(0); }},
        {KdoZugriff::DynArrStr, [](KdoArgument& x) { x.liefereArgWertDynArrStr(); }},
    };
    for (std::uint16_t i = 0; i < k.liefereAnzahlArgumente(); ++i) {
        KdoArgument& a = *k.argument(i);
        unsigned gedient = 0;
        for (const auto& [zugriff, rufe] : zugriffe) {
            aufnahme.leere();
            rufe(a);
            if (aufnahme.mit("CMD-WRONGARGMETHOD").empty()) gedient |= zugriff;
        }
        EXPECT_EQ(gedient, kdoZugriffe(a.liefereTyp())) << a.liefereTypName().str();
    }
}

}  // namespace
