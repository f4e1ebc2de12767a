// mmparse: the freestanding grammar engine.
//
// One call translates a subject (bytes in memory, or a byte stream) by a
// grammar given as plain text, and writes a copy of the subject in which the
// parts that the grammar marks are replaced. The grammar is not compiled: the
// matcher walks its text with explicit stacks, so neither the depth of the
// grammar nor the length of the subject is bounded by the C++ stack.
//
// The engine knows bytes and C file streams only; it uses nothing else of the
// system. It keeps its state in file scope: one call at a time, not
// re-entrant, not thread-safe.
#pragma once

#include <cstdint>
#include <cstdio>

// Results of `mmparse`. Above 0 is success (output bytes + 1), 0 is "subject
// does not match", below 0 an error. The comments give the identifier under
// which the grammar commands report the code.
enum MmparseErgebnis : std::int32_t {
    MM_SYNTAX = 0,            // TRANS-SYNTAX-ERR: subject does not match
    MM_ILLEGALARGS = -1,      // TRANS-ILLEGALARGS-ERR: argument checks
    MM_OTOLONG = -2,          // TRANS-OTOLONG-ERR: output does not fit
    MM_NOMEM_SUBJECT = -3,    // TRANS-NOMEMORY-ERR: "SUBJECT" block
    MM_NOMEM_ARRAY = -4,      // TRANS-NOMEMORY-ERR: "ARRAY" block
    MM_NOMEM_VARRAY = -5,     // TRANS-NOMEMORY-ERR: "VARRAY" block
    MM_TEXT_VERWORFEN = -6,   // TRANS-NOMEMORY-ERR: variable text dropped by a commit
    MM_ARRAY_VOLL = -7,       // TRANS-NOMEMORY-ERR: 256 "ARRAY" blocks used up
    MM_VARRAY_VOLL = -8,      // TRANS-NOMEMORY-ERR: 256 "VARRAY" blocks used up
    MM_UNDEFINEDSYM = -9,     // TRANS-UNDEFINEDSYM-ERR: <name> not defined
    MM_UNDECLAREDVAR = -10,   // TRANS-UNDECLAREDVAR-ERR: {name} not assigned here
    MM_REDEFINEDSYM = -11,    // TRANS-REDEFINEDSYM-ERR: rule defined twice
    MM_REDECLAREDVAR = -12,   // TRANS-REDECLAREDVAR-ERR: name assigned twice in one frame
    MM_ILLEGALDEF = -13,      // TRANS-ILLEGALDEF-ERR: malformed #<name>=
    MM_ILLEGALASSIGN = -14,   // TRANS-ILLEGALASSIGN-ERR: '.' not followed by '{'
    MM_ILLEGALSYM = -15,      // TRANS-ILLEGALSYM-ERR: empty name or no '>'
    MM_ILLEGALVAR = -16,      // TRANS-ILLEGALVAR-ERR: empty name or no '}'
    MM_LEFTRECURSION = -17,   // TRANS-LEFTRECURSION-ERR
    MM_UNCLOSEDGROUP = -18,   // TRANS-UNCLOSEDGROUP-ERR
    MM_UNOPENEDGROUP = -19,   // TRANS-UNOPENEDGROUP-ERR
    MM_ILLEGALGROUP = -20,    // TRANS-ILLEGALGROUP-ERR: '(' in a replacement
    MM_UNCLOSEDSET = -21,     // TRANS-UNCLOSEDSET-ERR
    MM_ILLEGALRANGE = -22,    // TRANS-ILLEGALRANGE-ERR
    MM_ILLEGALNOT = -23,      // TRANS-ILLEGALNOT-ERR: misplaced '^'
    MM_ILLEGALSUFF01 = -24,   // TRANS-ILLEGALSUFF01-ERR: '/' with nothing before it
    MM_ILLEGALSUFF1N = -25,   // no identifier: '+' with nothing before it
    MM_ILLEGALSUFF0N = -26,   // TRANS-ILLEGALSUFF0N-ERR: '*' with nothing before it
    MM_ILLEGALSUFFM = -27,    // TRANS-ILLEGALSUFFM-ERR: misplaced '!'
    MM_ILLEGALSUFF0M = -28,   // TRANS-ILLEGALSUFF0M-ERR: misplaced '?'
    MM_ILLEGALBSLCHAR = -29,  // TRANS-ILLEGALBSLCHAR-ERR: backslash at the end
    MM_ILLEGALHEXCHAR = -30,  // TRANS-ILLEGALHEXCHAR-ERR: bad \x sequence
    MM_CANTWRITE = -31,       // TRANS-CANTWRITE-ERR: output stream write failed
    MM_NOMEM_OBJECT = -32,    // TRANS-NOMEMORY-ERR: "OBJECT" buffer
    MM_NOMEM_INDEX = -33,     // TRANS-NOMEMORY-ERR: "Index node"
};

// Translates `subject` by `grammar`.
//
//   object        output: a byte buffer of `objectLength` bytes, or a
//                 `std::FILE*` open for writing with option '>'. Null means
//                 match only, no output (unless option 'a' allocates one).
//   objectLength  size of the buffer; ignored with '>'.
//   grammar       the grammar text, NUL-terminated: main expression, then
//                 "#<name>=body" definitions and "#..." comments.
//   subject       the bytes to translate, or a `std::FILE*` open for reading
//                 with option '<' (read in blocks as the matcher needs them).
//   subjectLength number of subject bytes; ignored with '<'.
//   options       null, or any of these characters in any order:
//                   '<' subject is a stream     '>' object is a stream
//                   'a' allocate/grow the output buffer (see below)
//                   'h' mark rule boundaries in the output buffer
//                   't' write a readable tree to the output stream
//                   's' show the subject read so far on stderr
//                   'm' log allocations and releases on stderr
//   position      null, or receives a position:
//                   result > 0: the furthest subject offset reached, which is
//                               the length of the subject;
//                   result 0:   the furthest subject offset the matcher ever
//                               reached (counting text already flushed), the
//                               place a user sees as the error;
//                   result < 0: for notation errors the byte offset of the
//                               fault in `grammar`, else the offset at which
//                               the matcher stood.
//
// Result: output bytes + 1 on success (so an empty output gives 1), 0 if the
// subject does not match, or a negative `MmparseErgebnis`. A NUL byte is
// stored behind the output if the buffer has room for it; it is not counted.
//
// With 'a' the output buffer grows by 4096 bytes whenever it is full; if
// `object` is null a 4096-byte buffer is taken first, otherwise `object` must
// come from malloc and passes to the engine. A 64-bit address does not fit the
// 32-bit position, so this entry cannot hand the buffer back: it releases it
// at the end and reports positions as without 'a'. Use
// `mmparseMitAdresse` to receive the buffer.
std::int32_t mmparse(void* object, std::int32_t objectLength, const char* grammar, const void* subject,
                     std::int32_t subjectLength, const char* options, std::int32_t* position);

// As `mmparse`; with option 'a' and a result above 0, `*adresse` receives the
// output buffer (free it with std::free), else null. `adresse` may be null.
std::int32_t mmparseMitAdresse(void* object, std::int32_t objectLength, const char* grammar,
                               const void* subject, std::int32_t subjectLength, const char* options,
                               std::int32_t* position, void** adresse);
