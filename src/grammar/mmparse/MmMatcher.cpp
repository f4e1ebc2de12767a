// The matcher: an interpreter that walks the grammar text with one pattern
// pointer and one subject pointer. Everything that may have to be undone is
// kept as frames on the "ARRAY" stack and variable entries on the "VARRAY"
// stack; a frame that closed successfully stays, so that backtracking can
// re-enter it and the output walk can read the parse tree from the stack.
// Nothing here recurses, however deep the grammar or long the subject.
//
// Notation errors are found when the matcher meets them; a fault in a part of
// the grammar that matching never reaches is not reported.
#include <algorithm>

#include "grammar/mmparse/MmZustand.h"

namespace mmintern {

namespace {

inline Pos subjektEnde() { return mm.basis + mm.gueltig; }

inline Byte gross(Byte c) { return (c >= 'a' && c <= 'z') ? static_cast<Byte>(c - 32) : c; }

inline bool endetErsatz(Byte c) { return c == 0 || c == '|' || c == ')' || c == '#'; }

// Makes sure the byte at p is held if the subject has one there.
std::int32_t sichereByte(Pos p, bool& amEnde) {
    if (p < subjektEnde()) {
        amEnde = false;
        return kWeiter;
    }
    if (!fuelleNach()) return fehler(MM_NOMEM_SUBJECT, nullptr);
    amEnde = p >= subjektEnde();
    return kWeiter;
}

bool namenGleich(const Byte* a, const Byte* b) {
    // Over the name and its closing '}', so that a prefix does not match.
    for (;; ++a, ++b) {
        if (*a != *b) return false;
        if (*a == '}') return true;
    }
}

std::vector<std::int32_t>& groesseCache(std::vector<std::int32_t>& cache) {
    if (cache.empty()) cache.assign(mm.grammarLaenge + 1, -1);
    return cache;
}

// The end of the bracket at grammar offset `o`, where a scan found it before.
bool bekanntesEnde(const std::vector<std::int32_t>& cache, std::size_t o, const Byte*& zu) {
    if (cache[o] < 0) return false;
    zu = mm.grammar + cache[o];
    return true;
}

// --- scans over the grammar -------------------------------------------------

std::int32_t ueberspringeMenge(const Byte*& p) {
    ++p;
    while (*p && *p != ']') {
        if (*p == '\\') {
            std::int32_t r = ueberspringeEscape(p);
            if (r != kWeiter) return r;
        } else {
            ++p;
        }
    }
    if (*p) ++p;
    return kWeiter;
}

std::int32_t ueberspringeErsatz(const Byte*& p) {
    ++p;
    while (!endetErsatz(*p)) {
        if (*p == '\\') {
            std::int32_t r = ueberspringeEscape(p);
            if (r != kWeiter) return r;
        } else {
            ++p;
        }
    }
    return kWeiter;
}

std::vector<std::int32_t> offeneGruppen;

// Finds the ')' of the group at `offen`. The ends of all groups met on the
// way are kept, so nested groups and repetitions do not scan again.
std::int32_t findeGruppenEnde(const Byte* offen, const Byte*& zu) {
    std::vector<std::int32_t>& cache = groesseCache(mm.gruppenEnde);
    const auto o = static_cast<std::size_t>(offen - mm.grammar);
    if (bekanntesEnde(cache, o, zu)) return kWeiter;
    offeneGruppen.clear();
    offeneGruppen.push_back(static_cast<std::int32_t>(o));
    const Byte* p = offen + 1;
    while (!offeneGruppen.empty()) {
        std::int32_t r = kWeiter;
        switch (*p) {
        case 0:
        case '#': return fehler(MM_UNCLOSEDGROUP, offen);
        case '\\': r = ueberspringeEscape(p); break;
        case '[': r = ueberspringeMenge(p); break;
        case '%': r = ueberspringeErsatz(p); break;
        case '(': {
            const auto i = static_cast<std::size_t>(p - mm.grammar);
            if (cache[i] >= 0) {
                p = mm.grammar + cache[i] + 1;
            } else {
                offeneGruppen.push_back(static_cast<std::int32_t>(i));
                ++p;
            }
            break;
        }
        case ')':
            cache[static_cast<std::size_t>(offeneGruppen.back())] = static_cast<std::int32_t>(p - mm.grammar);
            offeneGruppen.pop_back();
            ++p;
            break;
        default: ++p; break;
        }
        if (r != kWeiter) return r;
    }
    zu = mm.grammar + cache[o];
    return kWeiter;
}

// Next '|' of the frame's body at depth 0, or null at its end.
std::int32_t findeAlternative(const Byte* p, const Byte*& strich) {
    strich = nullptr;
    for (;;) {
        std::int32_t r = kWeiter;
        switch (*p) {
        case 0:
        case '#':
        case ')': return kWeiter;
        case '|': strich = p; return kWeiter;
        case '\\': r = ueberspringeEscape(p); break;
        case '[': r = ueberspringeMenge(p); break;
        case '%': r = ueberspringeErsatz(p); break;
        case '(': {
            const Byte* zu = nullptr;
            r = findeGruppenEnde(p, zu);
            if (r == kWeiter) p = zu + 1;
            break;
        }
        default: ++p; break;
        }
        if (r != kWeiter) return r;
    }
}

// Finds the ']' of the set at `offen`; notes whether the set holds variables.
std::int32_t findeMengenEnde(const Byte* offen, const Byte*& zu) {
    std::vector<std::int32_t>& cache = groesseCache(mm.mengenEnde);
    const auto o = static_cast<std::size_t>(offen - mm.grammar);
    if (bekanntesEnde(cache, o, zu)) return kWeiter;
    const Byte* p = offen + 1;
    bool variabel = false;
    if (*p != ']') {
        while (*p != ']') {
            if (*p == 0) return fehler(MM_UNCLOSEDSET, offen);
            if (*p == '\\') {
                std::int32_t r = ueberspringeEscape(p);
                if (r != kWeiter) return r;
            } else {
                if (*p == '{') variabel = true;
                ++p;
            }
        }
    }
    cache[o] = static_cast<std::int32_t>(p - mm.grammar);
    groesseCache(mm.mengenTabelle)[o] = variabel ? -2 : -1;
    zu = p;
    return kWeiter;
}

// --- variables --------------------------------------------------------------

std::int32_t sucheVariable(const Byte* name, const Byte* stelle, std::int32_t& eintrag) {
    if (name[0] == '$') {
        eintrag = sucheGlobal(name);
        return kWeiter;
    }
    eintrag = sucheLokal(mm.cur, name);
    if (eintrag < 0) return fehler(MM_UNDECLAREDVAR, stelle);
    return kWeiter;
}

// Reads "{name}" at p; p goes behind it.
std::int32_t leseVariablenName(const Byte*& p, const Byte*& name) {
    name = p + 1;
    std::int32_t n = namenLaenge(name);
    if (n == 0 || name[n] != '}') return fehler(MM_ILLEGALVAR, p);
    p = name + n + 1;
    return kWeiter;
}

// --- sets -------------------------------------------------------------------

std::int32_t mengenTestLangsam(const Byte* offen, Byte b, bool& drin) {
    const Byte* p = offen + 1;
    bool bit = false;
    drin = false;
    if (*p == ']') return kWeiter;
    for (;;) {
        bool haelt = false;
        Byte c;
        for (;;) {
            c = *p;
            if (c == ']' || c == '/') break;
            if (c == '-') return fehler(MM_ILLEGALRANGE, p);
            if (c == '{') {
                const Byte* stelle = p;
                const Byte* name = nullptr;
                std::int32_t r = leseVariablenName(p, name);
                if (r != kWeiter) return r;
                std::int32_t e = -1;
                if ((r = sucheVariable(name, stelle, e)) != kWeiter) return r;
                if (e >= 0) {
                    const ArrayFrame& f = frame(var(e).frame);
                    if (f.subjectStart < mm.basis) return fehler(MM_TEXT_VERWORFEN, stelle);
                    for (Pos q = f.subjectStart; q < f.subjectEnd && !haelt; ++q) haelt = subjektByte(q) == b;
                }
                continue;
            }
            Byte von = c;
            if (c == '\\') {
                std::int32_t r = leseEscape(p, von);
                if (r != kWeiter) return r;
            } else {
                ++p;
            }
            if (*p != '-') {
                haelt = haelt || b == von;
                continue;
            }
            const Byte* q = p + 1;
            if (*q == '-' || *q == '/' || *q == '{' || *q == ']' || *q == 0)
                return fehler(MM_ILLEGALRANGE, q);
            Byte bis = *q;
            if (*q == '\\') {
                std::int32_t r = leseEscape(q, bis);
                if (r != kWeiter) return r;
            } else {
                ++q;
            }
            p = q;
            haelt = haelt || (b >= std::min(von, bis) && b <= std::max(von, bis));
        }
        if (!haelt) break;
        bit = !bit;
        if (c == ']') break;
        ++p;
    }
    drin = bit;
    return kWeiter;
}

// A set without variables gives the same answer for a byte every time: keep
// it, so long runs over a set cost one table look-up per byte.
std::int32_t mengenTest(const Byte* offen, Byte b, bool& drin) {
    const auto o = static_cast<std::size_t>(offen - mm.grammar);
    std::int32_t& tab = mm.mengenTabelle[o];
    if (tab == -2) return mengenTestLangsam(offen, b, drin);
    if (tab == -1) {
        tab = static_cast<std::int32_t>(mm.tabellen.size() / 256);
        mm.tabellen.resize(mm.tabellen.size() + 256, -1);
    }
    signed char& eintrag = mm.tabellen[static_cast<std::size_t>(tab) * 256 + b];
    if (eintrag >= 0) {
        drin = eintrag != 0;
        return kWeiter;
    }
    std::int32_t r = mengenTestLangsam(offen, b, drin);
    if (r == kWeiter) eintrag = drin ? 1 : 0;
    return r;
}

// --- frames -----------------------------------------------------------------

std::int32_t pushFrame(std::int32_t parent, Pos start, Pos ende, const Byte* pStart, const Byte* pPos,
                       const Byte* pNext, std::uint32_t flags, std::uint32_t step, std::int32_t& index) {
    std::int32_t r = neuerFrame(index);
    if (r != kWeiter) return r;
    ArrayFrame& f = frame(index);
    f.parent = parent;
    f.subjectStart = start;
    f.subjectEnd = ende;
    f.patternStart = pStart;
    f.patternPos = pPos;
    f.patternNext = pNext;
    f.flags = flags;
    f.step = step;
    f.varMark = mm.varZahl;
    f.replacement = nullptr;
    return kWeiter;
}

// Opens the assignment ".{name}" at d for the item that begins at i; the
// assignment frame becomes `cur`.
std::int32_t oeffneZuweisung(const Byte* i, const Byte* d) {
    if (d[1] != '{') return fehler(MM_ILLEGALASSIGN, d);
    const Byte* p = d + 1;
    const Byte* name = nullptr;
    std::int32_t r = leseVariablenName(p, name);
    if (r != kWeiter) return r;
    if (name[0] != '$' && sucheLokal(mm.cur, name) >= 0) return fehler(MM_REDECLAREDVAR, d);
    std::int32_t fi = 0;
    r = pushFrame(mm.cur, mm.subj, mm.subj, i, i, p, FLAG_ASSIGN, 1, fi);
    if (r != kWeiter) return r;
    std::int32_t vi = 0;
    if ((r = neueVariable(vi)) != kWeiter) return r;
    var(vi).frame = fi;
    var(vi).name = name;
    mm.cur = fi;
    return kWeiter;
}

std::int32_t schliesseZuweisung() {
    if (mm.notPending) return fehler(MM_ILLEGALNOT, mm.pat);
    if (mm.itemStart || !(frame(mm.cur).flags & FLAG_ASSIGN)) {
        // No item before the '.': the empty text is stored here.
        std::int32_t r = oeffneZuweisung(mm.pat, mm.pat);
        if (r != kWeiter) return r;
    }
    ArrayFrame& a = frame(mm.cur);
    if (a.subjectStart < mm.basis) return fehler(MM_TEXT_VERWORFEN, mm.pat);
    a.subjectEnd = mm.subj;
    a.patternPos = mm.pat;
    if (mm.subj != a.subjectStart) a.step = static_cast<std::uint32_t>(mm.subj - a.subjectStart);
    mm.pat = a.patternNext;
    mm.cur = a.parent;
    mm.itemStart = true;
    return kWeiter;
}

std::uint32_t gruppenSuffix(const Byte*& p) {
    switch (*p) {
    case '/': ++p; return FLAG_OPTIONAL;
    case '+': ++p; return FLAG_REPEAT;
    case '*': ++p; return FLAG_OPTIONAL | FLAG_REPEAT;
    default: return 0;
    }
}

// Pushes the frame of a group or rule whose item begins at `anfang`.
std::int32_t oeffneRahmen(const Byte* anfang, const Byte* body, const Byte* hinter, std::uint32_t flags) {
    if (*hinter == '.') {
        std::int32_t alt = mm.cur;
        std::int32_t r = oeffneZuweisung(anfang, hinter);
        if (r != kWeiter) return r;
        frame(alt).patternPos = frame(mm.cur).patternNext;
    } else {
        frame(mm.cur).patternPos = hinter;
    }
    std::int32_t fi = 0;
    std::int32_t r = pushFrame(mm.cur, mm.subj, mm.subj, body, body, hinter, flags, 0, fi);
    if (r != kWeiter) return r;
    mm.cur = fi;
    mm.pat = body;
    mm.itemStart = true;
    return kWeiter;
}

std::int32_t oeffneGruppe() {
    const Byte* offen = mm.pat;
    std::uint32_t flags = FLAG_GROUP | (mm.notPending ? FLAG_NOCASE : 0);
    mm.notPending = false;
    const Byte* zu = nullptr;
    std::int32_t r = findeGruppenEnde(offen, zu);
    if (r != kWeiter) return r;
    const Byte* hinter = zu + 1;
    flags |= gruppenSuffix(hinter);
    return oeffneRahmen(offen, offen + 1, hinter, flags);
}

std::int32_t oeffneRegel() {
    const Byte* offen = mm.pat;
    if (mm.notPending) return fehler(MM_ILLEGALNOT, offen);
    const Byte* name = offen + 1;
    // A call site names the same rule every time: look it up once.
    std::int32_t& bekannt = groesseCache(mm.regelBody)[static_cast<std::size_t>(offen - mm.grammar)];
    const std::int32_t n = namenLaenge(name);
    const Byte* body;
    if (bekannt >= 0) {
        body = mm.grammar + bekannt;
    } else {
        if (n == 0 || name[n] != '>') return fehler(MM_ILLEGALSYM, offen);
        body = indexSuche(name, n);
        if (!body) return fehler(MM_UNDEFINEDSYM, offen);
        bekannt = static_cast<std::int32_t>(body - mm.grammar);
    }
    for (std::int32_t k = mm.cur; k > 0 && frame(k).subjectStart == mm.subj; k = frame(k).parent) {
        if (frame(k).patternStart == body) return fehler(MM_LEFTRECURSION, offen);
    }
    const Byte* hinter = name + n + 1;
    std::uint32_t flags = FLAG_SYMBOL | gruppenSuffix(hinter);
    return oeffneRahmen(offen, body, hinter, flags);
}

// --- byte runs --------------------------------------------------------------

enum class Art { Literal, Beliebig, Menge, Variable };

// The suffix behind a byte item: how often it repeats and how it backtracks.
enum class Suffix {
    Einmal,           // none: exactly once
    Optional,         // '/': zero or one, gives the item back
    Plus,             // '+': one or more, gives back one at a time down to one
    Stern,            // '*': zero or more, gives back one at a time down to none
    Fest,             // '!': one or more, gives nothing back
    AllesOderNichts,  // '?': zero or more, gives the whole run back in one step
};

Suffix suffixVon(Byte b) {
    switch (b) {
    case '/': return Suffix::Optional;
    case '+': return Suffix::Plus;
    case '*': return Suffix::Stern;
    case '!': return Suffix::Fest;
    case '?': return Suffix::AllesOderNichts;
    default: return Suffix::Einmal;
    }
}

// What a byte item is: its kind, the byte of a literal, and for a variable
// reference the text it repeats (einheit bytes from varStart).
struct ByteItem {
    Art art = Art::Literal;
    Byte wert = 0;
    Pos varStart = 0;
    Pos einheit = 1;
};

// Reads the item at `p` (without its suffix) and moves `p` behind it.
std::int32_t liesByteItem(const Byte*& p, bool negiert, ByteItem& item) {
    const Byte* anfang = p;
    std::int32_t r = kWeiter;
    switch (*p) {
    case '@':
        if (negiert) return fehler(MM_ILLEGALNOT, p);
        item.art = Art::Beliebig;
        ++p;
        break;
    case '[': {
        const Byte* zu = nullptr;
        if ((r = findeMengenEnde(p, zu)) != kWeiter) return r;
        item.art = Art::Menge;
        p = zu + 1;
        break;
    }
    case '{': {
        if (negiert) return fehler(MM_ILLEGALNOT, p);
        const Byte* name = nullptr;
        if ((r = leseVariablenName(p, name)) != kWeiter) return r;
        std::int32_t e = -1;
        if ((r = sucheVariable(name, anfang, e)) != kWeiter) return r;
        item.art = Art::Variable;
        item.einheit = 0;
        if (e >= 0) {
            const ArrayFrame& f = frame(var(e).frame);
            if (f.subjectStart < mm.basis) return fehler(MM_TEXT_VERWORFEN, anfang);
            item.varStart = f.subjectStart;
            item.einheit = f.subjectEnd - f.subjectStart;
        }
        break;
    }
    case '\\':
        if ((r = leseEscape(p, item.wert)) != kWeiter) return r;
        break;
    default: item.wert = *p++; break;
    }
    return kWeiter;
}

// Whether the variable's text stands again at `cursor`.
std::int32_t variableTrifft(const ByteItem& item, Pos cursor, bool& passt) {
    passt = true;
    for (Pos k = 0; k < item.einheit; ++k) {
        bool amEnde = false;
        std::int32_t r = sichereByte(cursor + k, amEnde);
        if (r != kWeiter) return r;
        if (amEnde || subjektByte(cursor + k) != subjektByte(item.varStart + k)) {
            passt = false;
            break;
        }
    }
    return kWeiter;
}

// Takes as many repetitions as the item allows (one, or as many as match)
// from the subject at mm.subj; `cursor` ends behind the last one.
std::int32_t nimmWiederholungen(const ByteItem& item, const Byte* anfang, bool negiert, bool einzeln,
                                Pos& cursor) {
    const bool ohneFall = (frame(mm.cur).flags & FLAG_NOCASE) != 0;
    const Byte vergleich = ohneFall ? gross(item.wert) : item.wert;
    std::int32_t r = kWeiter;
    cursor = mm.subj;
    Pos grenze = subjektEnde();
    for (;;) {
        if (item.art == Art::Variable) {
            bool passt = true;
            if ((r = variableTrifft(item, cursor, passt)) != kWeiter) return r;
            if (!passt) break;
            cursor += item.einheit;
        } else {
            if (cursor >= grenze) {
                bool amEnde = false;
                if ((r = sichereByte(cursor, amEnde)) != kWeiter) return r;
                if (amEnde) break;
                grenze = subjektEnde();
            }
            Byte b = subjektByte(cursor);
            bool ok = true;
            if (item.art == Art::Literal) {
                ok = ((ohneFall ? gross(b) : b) == vergleich) != negiert;
            } else if (item.art == Art::Menge) {
                if ((r = mengenTest(anfang, b, ok)) != kWeiter) return r;
                ok = ok != negiert;
            }
            if (!ok) break;
            ++cursor;
        }
        if (einzeln) break;
    }
    return kWeiter;
}

std::int32_t byteLauf() {
    const Byte* anfang = mm.pat;
    const Byte* p = anfang;
    const bool negiert = mm.notPending;
    ByteItem item;
    std::int32_t r = liesByteItem(p, negiert, item);
    if (r != kWeiter) return r;

    const Suffix suffix = suffixVon(*p);
    const Byte* hinter = suffix == Suffix::Einmal ? p : p + 1;
    const bool einzeln = suffix == Suffix::Einmal || suffix == Suffix::Optional;

    // A reference to a variable that holds the empty text matches at once.
    const bool leerOk = item.art == Art::Variable && item.einheit == 0;
    Pos cursor = mm.subj;
    if (!leerOk && (r = nimmWiederholungen(item, anfang, negiert, einzeln, cursor)) != kWeiter) return r;

    mm.notPending = false;
    mm.itemStart = false;
    const Pos n = cursor - mm.subj;
    const bool leer = n == 0;
    bool scheitert = false, mitFrame = false, optional = false;
    std::uint32_t step = static_cast<std::uint32_t>(item.einheit);
    if (!leerOk) {
        switch (suffix) {
        case Suffix::Einmal:
        case Suffix::Fest: scheitert = leer; break;
        case Suffix::Optional:
        case Suffix::Stern: mitFrame = optional = !leer; break;
        case Suffix::Plus:
            scheitert = leer;
            mitFrame = !leer && n != item.einheit;
            break;
        case Suffix::AllesOderNichts:
            mitFrame = optional = !leer;
            step = static_cast<std::uint32_t>(n);
            break;
        }
    }
    if (scheitert) {
        frame(mm.cur).patternPos = hinter;
        mm.forward = false;
        return kWeiter;
    }
    if (*hinter == '.') {
        if ((r = oeffneZuweisung(anfang, hinter)) != kWeiter) return r;
    }
    if (mitFrame) {
        std::int32_t fi = 0;
        r = pushFrame(mm.cur, mm.subj, cursor, anfang, hinter, hinter, optional ? FLAG_OPTIONAL : 0, step,
                      fi);
        if (r != kWeiter) return r;
    }
    mm.subj = cursor;
    mm.pat = hinter;
    return kWeiter;
}

// --- replacement, end of alternative, backtracking ---------------------------

std::int32_t ersatz() {
    if (mm.notPending) return fehler(MM_ILLEGALNOT, mm.pat);
    const Byte* start = mm.pat + 1;
    const Byte* p = start;
    while (!endetErsatz(*p)) {
        std::int32_t r = kWeiter;
        if (*p == '\\') {
            Byte wert = 0;
            r = leseEscape(p, wert);
        } else if (*p == '{') {
            const Byte* stelle = p;
            const Byte* name = nullptr;
            r = leseVariablenName(p, name);
            if (r == kWeiter && name[0] != '$' && sucheLokal(mm.cur, name) < 0)
                r = fehler(MM_UNDECLAREDVAR, stelle);
        } else if (*p == '(') {
            r = fehler(MM_ILLEGALGROUP, p);
        } else {
            ++p;
        }
        if (r != kWeiter) return r;
    }
    frame(mm.cur).replacement = start;
    mm.pat = p;
    mm.replacementUsed = true;
    return kWeiter;
}

std::int32_t endeAlternative() {
    if (mm.notPending) return fehler(MM_ILLEGALNOT, mm.pat);
    const std::int32_t fi = mm.cur;
    ArrayFrame& f = frame(fi);
    f.subjectEnd = mm.subj;
    f.patternPos = mm.pat;
    const bool leer = f.subjectStart == f.subjectEnd;
    bool nochEinLauf = false;
    if ((f.flags & FLAG_OPTIONAL) && leer) {
        f.replacement = nullptr;
    } else if ((f.flags & FLAG_REPEAT) && !leer) {
        nochEinLauf = true;  // a run that consumed nothing ends a repetition
    }
    // The frame's fields are still needed after a commit has cut it.
    const ArrayFrame alt = f;

    if (alt.flags & FLAG_COMMIT) {
        std::int32_t r = flush(fi);
        if (r != kWeiter) return r;
        merkeFlushEnde(fi);
        mm.frameZahl = fi;
        mm.varZahl = alt.varMark;
        frame(mm.frameZahl - 1).flags |= FLAG_BARRIER;
        mm.replacementUsed = false;
        if (mm.optIn) verschiebeNachCommit();
    } else if (alt.flags & FLAG_ATOMIC) {
        f.flags |= FLAG_NORETRY;
        for (std::int32_t k = fi + 1; k < mm.frameZahl; ++k) {
            frame(k).flags |= FLAG_NORETRY;
            frame(k).flags &= ~FLAG_OPTIONAL;
        }
    }

    if (nochEinLauf) {
        std::uint32_t flags =
            (alt.flags & ~(FLAG_COMMIT | FLAG_BARRIER | FLAG_ATOMIC | FLAG_NORETRY)) | FLAG_OPTIONAL;
        std::int32_t ni = 0;
        std::int32_t r = pushFrame(alt.parent, mm.subj, mm.subj, alt.patternStart, alt.patternStart,
                                   alt.patternNext, flags, 0, ni);
        if (r != kWeiter) return r;
        mm.cur = ni;
        mm.pat = alt.patternStart;
        mm.itemStart = true;
        return kWeiter;
    }

    mm.itemStart = false;
    mm.pat = alt.patternNext;
    mm.cur = alt.parent;
    if (mm.cur >= 0) return kWeiter;

    // The main expression has ended: it must have taken the whole subject.
    bool amEnde = false;
    std::int32_t r = sichereByte(mm.subj, amEnde);
    if (r != kWeiter) return r;
    if (!amEnde) {
        mm.forward = false;
        return kWeiter;
    }
    mm.hoechste = std::max(mm.hoechste, mm.subj);
    if ((r = flush(0)) != kWeiter) return r;
    if (mm.obj && !mm.objStrom && mm.ausPos < mm.objLaenge) mm.obj[mm.ausPos] = 0;
    return mm.ausPos + 1 > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(mm.ausPos + 1);
}

std::int32_t zurueck() {
    for (;;) {
        if (mm.frameZahl == 0) return MM_SYNTAX;
        const std::int32_t ti = mm.frameZahl - 1;
        ArrayFrame& t = frame(ti);
        if (t.flags & FLAG_BARRIER) return MM_SYNTAX;
        if (!(t.flags & FLAG_NORETRY)) {
            if (t.step != 0) {
                if (t.subjectStart == t.subjectEnd ||
                    (t.subjectStart + t.step == t.subjectEnd && !(t.flags & FLAG_OPTIONAL))) {
                    --mm.frameZahl;
                    continue;
                }
                // Give back one step; the frame stays for further retreats.
                mm.varZahl = t.varMark;
                t.subjectEnd -= t.step;
                mm.subj = t.subjectEnd;
                mm.pat = t.patternNext;
                mm.cur = t.parent;
                mm.itemStart = false;
                mm.forward = true;
                return kWeiter;
            }
            const Byte* strich = nullptr;
            std::int32_t r = findeAlternative(t.patternPos, strich);
            if (r != kWeiter) return r;
            if (strich) {
                t.replacement = nullptr;
                mm.varZahl = t.varMark;
                t.patternPos = mm.pat = strich + 1;
                mm.subj = t.subjectEnd = t.subjectStart;
                mm.cur = ti;
                mm.itemStart = true;
                mm.forward = true;
                return kWeiter;
            }
        }
        if (t.flags & FLAG_OPTIONAL) {
            // Drop the whole frame and go on behind it.
            mm.varZahl = t.varMark;
            mm.subj = t.subjectStart;
            mm.pat = t.patternNext;
            mm.cur = t.parent;
            frame(mm.cur).subjectEnd = frame(mm.cur).subjectStart;
            --mm.frameZahl;
            mm.itemStart = false;
            mm.forward = true;
            return kWeiter;
        }
        --mm.frameZahl;
    }
}

}  // namespace

std::int32_t sucheLokal(std::int32_t f, const Byte* name) {
    for (std::int32_t k = frame(f).varMark; k < mm.varZahl; ++k) {
        const VarrayEntry& e = var(k);
        if (frame(e.frame).parent == f && namenGleich(e.name, name)) return k;
    }
    return -1;
}

std::int32_t sucheGlobal(const Byte* name) {
    for (std::int32_t k = mm.varZahl - 1; k >= 0; --k) {
        if (namenGleich(var(k).name, name)) return k;
    }
    return -1;
}

std::int32_t definitionsScan() {
    const Byte* p = mm.grammar;
    for (;;) {
        std::int32_t r = kWeiter;
        switch (*p) {
        case 0: return kWeiter;
        case '\\': r = ueberspringeEscape(p); break;
        case '[': r = ueberspringeMenge(p); break;
        case '%': r = ueberspringeErsatz(p); break;
        case '#':
            if (p[1] == '<') {
                const Byte* name = p + 2;
                std::int32_t n = namenLaenge(name);
                if (n == 0 || name[n] != '>' || name[n + 1] != '=') return fehler(MM_ILLEGALDEF, p + 1);
                r = indexEinfuegen(name, n, name + n + 2);
                if (r == MM_REDEFINEDSYM) return fehler(r, p + 1);
                p = name + n + 2;
            } else {
                // A comment runs to the next '#', which is looked at again.
                ++p;
                while (*p && *p != '#') ++p;
            }
            break;
        default: ++p; break;
        }
        if (r != kWeiter) return r;
    }
}

std::int32_t matche() {
    for (;;) {
        if (mm.subj > mm.hoechste) mm.hoechste = mm.subj;
        if (mm.optShow && mm.subj != mm.gezeigt) zeigeSubjekt();
        std::int32_t r = kWeiter;
        if (!mm.forward) {
            r = zurueck();
            if (r != kWeiter) return r;
            continue;
        }
        switch (*mm.pat) {
        case 0:
        case '#':
        case '|': r = endeAlternative(); break;
        case ')':
            if (frame(mm.cur).flags & FLAG_GROUP)
                r = endeAlternative();
            else
                r = fehler(MM_UNOPENEDGROUP, mm.pat);
            break;
        case '!':
        case '?': {
            const bool commit = *mm.pat == '!';
            if (mm.cur == 0 || mm.pat != frame(mm.cur).patternStart) {
                r = fehler(commit ? MM_ILLEGALSUFFM : MM_ILLEGALSUFF0M, mm.pat);
            } else {
                frame(mm.cur).flags |= commit ? FLAG_COMMIT : FLAG_ATOMIC;
                ++mm.pat;
            }
            break;
        }
        case '%': r = ersatz(); break;
        case '(': r = oeffneGruppe(); break;
        case '<': r = oeffneRegel(); break;
        case '*': r = fehler(MM_ILLEGALSUFF0N, mm.pat); break;
        case '+': r = fehler(MM_ILLEGALSUFF1N, mm.pat); break;
        case '/': r = fehler(MM_ILLEGALSUFF01, mm.pat); break;
        case '.': r = schliesseZuweisung(); break;
        case '^':
            if (mm.notPending) {
                r = fehler(MM_ILLEGALNOT, mm.pat);
            } else {
                mm.notPending = true;
                ++mm.pat;
            }
            break;
        default: r = byteLauf(); break;
        }
        if (r != kWeiter) return r;
    }
}

}  // namespace mmintern
