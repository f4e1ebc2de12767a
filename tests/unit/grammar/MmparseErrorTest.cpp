// The reports of the engine's results: one label per code, the text with
// line, position and subject line, the parse code of memory errors, and the
// codes that go unreported.
#include "TransTestHilfe.h"
#include "grammar/mmparse/mmparse.h"

namespace transtest {
namespace {

struct CodeFall {
    int code;
    const char* label;
};

constexpr CodeFall FAELLE[] = {
    {0, "TRANS-SYNTAX-ERR"},         {-1, "TRANS-ILLEGALARGS-ERR"},    {-2, "TRANS-OTOLONG-ERR"},
    {-3, "TRANS-NOMEMORY-ERR"},      {-4, "TRANS-NOMEMORY-ERR"},       {-5, "TRANS-NOMEMORY-ERR"},
    {-6, "TRANS-NOMEMORY-ERR"},      {-7, "TRANS-NOMEMORY-ERR"},       {-8, "TRANS-NOMEMORY-ERR"},
    {-9, "TRANS-UNDEFINEDSYM-ERR"},  {-10, "TRANS-UNDECLAREDVAR-ERR"}, {-11, "TRANS-REDEFINEDSYM-ERR"},
    {-12, "TRANS-REDECLAREDVAR-ERR"}, {-13, "TRANS-ILLEGALDEF-ERR"},   {-14, "TRANS-ILLEGALASSIGN-ERR"},
    {-15, "TRANS-ILLEGALSYM-ERR"},   {-16, "TRANS-ILLEGALVAR-ERR"},    {-17, "TRANS-LEFTRECURSION-ERR"},
    {-18, "TRANS-UNCLOSEDGROUP-ERR"}, {-19, "TRANS-UNOPENEDGROUP-ERR"}, {-20, "TRANS-ILLEGALGROUP-ERR"},
    {-21, "TRANS-UNCLOSEDSET-ERR"},  {-22, "TRANS-ILLEGALRANGE-ERR"},  {-23, "TRANS-ILLEGALNOT-ERR"},
    {-24, "TRANS-ILLEGALSUFF01-ERR"}, {-26, "TRANS-ILLEGALSUFF0N-ERR"}, {-27, "TRANS-ILLEGALSUFFM-ERR"},
    {-28, "TRANS-ILLEGALSUFF0M-ERR"}, {-29, "TRANS-ILLEGALBSLCHAR-ERR"}, {-30, "TRANS-ILLEGALHEXCHAR-ERR"},
    {-31, "TRANS-CANTWRITE-ERR"},    {-32, "TRANS-NOMEMORY-ERR"},      {-33, "TRANS-NOMEMORY-ERR"},
};

TEST(MmparseErrorTest, EveryCodeHasItsLabelAtLevelE) {
    for (const CodeFall& fall : FAELLE) {
        MeldungsFaenger f;
        Compiler::mmparseError(fall.code, 0, "x", 4, 2);
        ASSERT_EQ(f.anzahl(), 1u) << fall.code;
        EXPECT_EQ(f.letzte().label, fall.label) << fall.code;
        EXPECT_EQ(f.letzte().level, 'E');
        EXPECT_EQ(f.letzte().funktion, "Compiler::mmparseError");
    }
}

TEST(MmparseErrorTest, SuccessAStrayPlusAndUnknownCodesAreNotReported) {
    MeldungsFaenger f;
    for (int code : {1, 600, static_cast<int>(MM_ILLEGALSUFF1N), -34, -1000}) Compiler::mmparseError(code, 0, "x", 0, 1);
    EXPECT_EQ(f.anzahl(), 0u);
}

TEST(MmparseErrorTest, TextNamesLineAndPositionInDecimal) {
    MeldungsFaenger f;
    Compiler::mmparseError(MM_SYNTAX, 7, "set 1000 = zz", 11, 12);
    EXPECT_EQ(f.letzte().detail, "Zeile 12, Position 11: set 1000 = zz");
    Compiler::mmparseError(MM_UNOPENEDGROUP, 0, "", 2, 1);
    EXPECT_EQ(f.letzte().detail, "Zeile 1, Position 2: ");
    Compiler::mmparseError(MM_SYNTAX, 0, nullptr, 11, 0);
    EXPECT_EQ(f.letzte().detail, "");
}

TEST(MmparseErrorTest, MemoryErrorsCarryTheParseCode) {
    MeldungsFaenger f;
    Compiler::mmparseError(MM_TEXT_VERWORFEN, 0, nullptr, 0, 0);
    EXPECT_EQ(f.letzte().detail, "parsecode= -6");
    Compiler::mmparseError(MM_NOMEM_INDEX, 0, "ab", 1, 3);
    EXPECT_EQ(f.letzte().detail, "Zeile 3, Position 1: ab\nparsecode= -33");
    // Other errors carry none.
    Compiler::mmparseError(MM_CANTWRITE, 0, nullptr, 0, 0);
    EXPECT_EQ(f.letzte().detail, "");
}

}  // namespace
}  // namespace transtest
