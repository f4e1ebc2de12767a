// Shared state of the grammar engine, internal to src/grammar/mmparse.
//
// The engine serves one call at a time: all state lives in the single object
// `mm`, reset on entry. The files around it:
//   mmparse.cpp        entry, argument checks, allocation wrappers, clean-up
//   MmMatcher.cpp      the matcher (main loop, items, backtracking)
//   MmAusgabe.cpp      flush, the output walk `baue`, the byte writer
//   MmRegelIndex.cpp   the radix tree of rule names
//   MmSubjekt.cpp      the subject buffer: refill and shift at commits
//
// Subject positions are absolute offsets into the whole subject, also for a
// stream: the held text starts at `basis`, so a commit that drops text never
// has to touch the frames, and a position below `basis` is text that a
// commit has dropped.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "grammar/mmparse/mmparse.h"

namespace mmintern {

using Byte = unsigned char;
using Pos = std::int64_t;

constexpr std::uint32_t FLAG_OPTIONAL = 0x001;
constexpr std::uint32_t FLAG_REPEAT = 0x002;
constexpr std::uint32_t FLAG_GROUP = 0x004;
constexpr std::uint32_t FLAG_SYMBOL = 0x008;
constexpr std::uint32_t FLAG_ASSIGN = 0x010;
constexpr std::uint32_t FLAG_BARRIER = 0x020;
constexpr std::uint32_t FLAG_COMMIT = 0x040;
constexpr std::uint32_t FLAG_ATOMIC = 0x100;
constexpr std::uint32_t FLAG_NORETRY = 0x400;
constexpr std::uint32_t FLAG_NOCASE = 0x800;

struct ArrayFrame {
    std::int32_t parent;
    Pos subjectStart;  // below mm.basis: dropped by a commit
    Pos subjectEnd;
    const Byte* patternStart;
    const Byte* patternPos;
    const Byte* patternNext;
    std::uint32_t flags;
    std::uint32_t step;
    std::int32_t varMark;
    const Byte* replacement;
};

struct VarrayEntry {
    std::int32_t frame;
    const Byte* name;  // into the grammar; runs to its '}'
};

struct IndexNode {
    const Byte* text;
    std::int32_t length;
    const Byte* body;
    IndexNode* children;
    IndexNode* next;
};

constexpr int kMaxBloecke = 256;
constexpr std::int32_t kFramesProBlock = 1024;
constexpr std::int32_t kVarsProBlock = 512;
constexpr std::int32_t kPufferSchritt = 4096;

// Internal result of a step: go on. Any other value is the call's result.
constexpr std::int32_t kWeiter = INT32_MIN;

struct Zustand {
    // Options.
    bool optIn, optOut, optAlloc, optHier, optTrace, optShow, optMem;

    const Byte* grammar;
    std::size_t grammarLaenge;
    const Byte* pat;           // pattern pointer
    const Byte* fehlerStelle;  // where a notation error was found

    // Subject: bytes [basis, basis + gueltig) are held at `daten`. With '<'
    // that is `versatz` bytes into the "SUBJECT" block: a commit only moves
    // `versatz` on, and the bytes go to the block's start at the next refill,
    // so that many small commits do not each move the whole block.
    const Byte* daten;
    Byte* eigenerBlock;
    Pos blockGroesse;
    Pos versatz;
    Pos gueltig;
    Pos basis;
    std::FILE* strom;  // null once the stream is at its end
    Pos subj;          // subject pointer
    Pos hoechste;      // highest subject pointer ever reached
    Pos gezeigt;       // what 's' showed last, -1 for nothing

    // Output.
    Byte* obj;
    Pos objLaenge;
    std::FILE* objStrom;
    bool objGegeben;  // a buffer or a stream receives output
    Pos ausPos;
    bool tZeileOffen;  // 't': a "-" line has been begun

    // Where the next flush goes on: the walk's state behind the last commit.
    std::int32_t weiterAktuell, weiterZeiger;
    Pos weiterQuelle;

    // Stacks.
    ArrayFrame* frameBloecke[kMaxBloecke];
    int frameBlockZahl;
    std::int32_t frameZahl;
    VarrayEntry* varBloecke[kMaxBloecke];
    int varBlockZahl;
    std::int32_t varZahl;
    std::int32_t cur;

    bool notPending, itemStart, replacementUsed, forward;

    IndexNode* wurzel;

    // Caches of what a scan of the grammar found; -1 unknown.
    std::vector<std::int32_t> gruppenEnde;    // '(' offset -> ')' offset
    std::vector<std::int32_t> mengenEnde;     // '[' offset -> ']' offset
    std::vector<std::int32_t> mengenTabelle;  // '[' offset -> index into tabellen
    std::vector<signed char> tabellen;        // 256 per set: -1 unknown, 0, 1
    std::vector<std::int32_t> regelBody;      // '<' offset -> offset of the rule's body
};

extern Zustand mm;

// Test hook: when not negative, the allocation that finds it at 0 fails and
// every allocation counts it down.
extern long testAllocationenBisFehler;

inline ArrayFrame& frame(std::int32_t i) { return mm.frameBloecke[i / kFramesProBlock][i % kFramesProBlock]; }
inline VarrayEntry& var(std::int32_t i) { return mm.varBloecke[i / kVarsProBlock][i % kVarsProBlock]; }
inline Byte subjektByte(Pos p) { return mm.daten[p - mm.basis]; }

// Allocation wrappers with the 'm' log.
void* allokiere(std::size_t groesse, const char* name);
void* reallokiere(void* alt, std::size_t groesse, const char* name);

// Stacks. Return kWeiter or an error code.
std::int32_t neuerFrame(std::int32_t& index);
std::int32_t neueVariable(std::int32_t& index);

// Notation helpers shared by scans.
bool istNamenZeichen(Byte c);
std::int32_t namenLaenge(const Byte* p);
// Skips the backslash sequence at p (without checking hex digits).
std::int32_t ueberspringeEscape(const Byte*& p);
// Reads the byte that the backslash sequence at p stands for.
std::int32_t leseEscape(const Byte*& p, Byte& wert);
std::int32_t fehler(std::int32_t code, const Byte* stelle);

// Rule index.
std::int32_t indexEinfuegen(const Byte* name, std::int32_t laenge, const Byte* body);
const Byte* indexSuche(const Byte* name, std::int32_t laenge);
void indexFreigeben();

// Subject.
bool fuelleNach();  // false: no memory
void verschiebeNachCommit();
void zeigeSubjekt();

// Output.
std::int32_t flush(std::int32_t bis);
void merkeFlushEnde(std::int32_t f);

// Matcher.
std::int32_t definitionsScan();
std::int32_t matche();
std::int32_t sucheLokal(std::int32_t f, const Byte* name);
std::int32_t sucheGlobal(const Byte* name);

}  // namespace mmintern
