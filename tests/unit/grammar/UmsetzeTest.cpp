// umsetze: a whole file translated into a file, and what happens when the
// files or the engine fail.
#include "TransTestHilfe.h"

namespace transtest {
namespace {

const char* const ZEILEN_GRAMMATIK =
    "(<zeile>\\n)*\n"
    "#<zeile>=<_ws>(<setze>|<loesche>)<_ws>\n"
    "#<setze>=^(set)<_ws><adr>.{a}<_ws>[,=]<_ws><wert>.{w}%setzeByte\\({a}, {w}\\)\n"
    "#<loesche>=^(del)<_ws><adr>.{a}%loescheByte\\({a}\\)\n"
    "#<adr>=[0-9a-fA-F]+\n"
    "#<wert>=[0-9]+\n"
    "#<_ws>=[ \\t]*\n";

using UmsetzeTest = TransTest;

TEST_F(UmsetzeTest, TranslatesAFileIntoAFile) {
    datei("gt_u.gram", ZEILEN_GRAMMATIK);
    datei("gt_u.in", "  SET 1000, 12 \ndel ff\nSet 2000=7\n");
    entsteht("gt_u.out");
    MeldungsFaenger f;
    zeile("umsetze(gt_u.in, DAT, ./gt_u.gram, gt_u.out)");
    EXPECT_EQ(labels(f), "");
    EXPECT_EQ(inhalt("gt_u.out"), "  setzeByte(1000, 12) \nloescheByte(ff)\nsetzeByte(2000, 7)\n");
}

TEST_F(UmsetzeTest, AFileThatDoesNotMatchLeavesAnEmptyOutputAndAReportWithoutText) {
    datei("gt_u.gram", "a*\n");
    datei("gt_u.in", "aab");
    entsteht("gt_u.out");
    MeldungsFaenger f;
    zeile("umsetze(gt_u.in, DAT, ./gt_u.gram, gt_u.out)");
    EXPECT_EQ(labels(f), "TRANS-SYNTAX-ERR");
    EXPECT_EQ(details(f, "TRANS-SYNTAX-ERR"), "\n");
    ASSERT_TRUE(gibtEs("gt_u.out"));
    EXPECT_EQ(inhalt("gt_u.out"), "");
}

TEST_F(UmsetzeTest, FilesThatCanNotBeOpened) {
    datei("gt_u.gram", "@*\n");
    datei("gt_u.in", "x\n");
    entsteht("gt_u.out");
    MeldungsFaenger f;
    zeile("umsetze(gt_u.fehlt, DAT, ./gt_u.gram, gt_u.out)");
    EXPECT_EQ(labels(f), "FILEOPENERROR");
    EXPECT_EQ(details(f, "FILEOPENERROR"), "gt_u.fehlt: No such file or directory\n");
    f.leere();
    zeile("umsetze(gt_u.in, DAT, ./gt_u.nogram, gt_u.out)");
    EXPECT_EQ(labels(f), "FILEOPENERROR");
    EXPECT_FALSE(gibtEs("gt_u.out"));
    // An output file that can not be made is left to the engine.
    f.leere();
    zeile("umsetze(gt_u.in, DAT, ./gt_u.gram, gt_kein_verzeichnis/out)");
    EXPECT_EQ(labels(f), "TRANS-ILLEGALARGS-ERR");
    EXPECT_EQ(details(f, "TRANS-ILLEGALARGS-ERR"), "\n");
}

}  // namespace
}  // namespace transtest
