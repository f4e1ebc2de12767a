// The runtime in force: the one made last, until it goes; outside any, a
// neutral one without a tree.
#include <gtest/gtest.h>

#include <memory>

#include "KdoTestHilfe.h"
#include "language/KdoLaufzeit.h"

namespace {

TEST(KdoLaufzeit, TheLastMadeIsInForceAndTheOneBeforeComesBack) {
    KdoLaufzeit& neutral = KdoLaufzeit::aktuelle();
    EXPECT_EQ(kdoBaum(), nullptr);
    TypObjekt wurzel{"Kiv", "Kiv"}, a{"Eprom", "a"};
    wurzel.setzeVollenNamen("<Kiv>Kiv");
    {
        KdoLaufzeit aussen;
        aussen.setzeBaum(std::make_unique<KdoBaum>(&wurzel, nullptr, nullptr, nullptr, nullptr));
        aussen.scannerModus = ScannerModus::Zahl;
        EXPECT_EQ(&KdoLaufzeit::aktuelle(), &aussen);
        {
            KdoLaufzeit innen;  // fresh state, no tree
            EXPECT_EQ(&KdoLaufzeit::aktuelle(), &innen);
            EXPECT_EQ(innen.scannerModus, ScannerModus::Normal);
            EXPECT_EQ(innen.compilerStatus, KdoStatus::Kein);
            EXPECT_EQ(innen.laufStatus, LaufStatus::Normal);
            EXPECT_EQ(kdoBaum(), nullptr);
        }
        EXPECT_EQ(&KdoLaufzeit::aktuelle(), &aussen);
        ASSERT_NE(kdoBaum(), nullptr);
        kdoBaum()->fuegeEin(&a);
        EXPECT_EQ(kdoBaum()->liefereAktuelles(), &a);
    }
    EXPECT_EQ(&KdoLaufzeit::aktuelle(), &neutral);
    EXPECT_EQ(kdoBaum(), nullptr);
}

}  // namespace
