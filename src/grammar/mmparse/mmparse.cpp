// Entry of the grammar engine: options, argument checks, set-up, the one
// clean-up path, the allocation wrappers and the two block stacks.
#include <cstdlib>
#include <cstring>
#include <new>

#include "grammar/mmparse/MmZustand.h"

namespace mmintern {

Zustand mm;
long testAllocationenBisFehler = -1;

namespace {

// Block 0 of each stack is static, so a small grammar allocates nothing.
ArrayFrame frameBlock0[kFramesProBlock];
VarrayEntry varBlock0[kVarsProBlock];

std::size_t aufVier(std::size_t n) { return (n + 3) & ~static_cast<std::size_t>(3); }

bool testFehlschlag() {
    if (testAllocationenBisFehler < 0) return false;
    if (testAllocationenBisFehler == 0) return true;
    --testAllocationenBisFehler;
    return false;
}

void logFreigabe(const char* name) {
    if (mm.optMem) std::fprintf(stderr, "PARSE: Freeing %s.\n", name);
}

void setzeZurueck() {
    mm.optIn = mm.optOut = mm.optAlloc = mm.optHier = mm.optTrace = mm.optShow = mm.optMem = false;
    mm.grammar = mm.pat = mm.fehlerStelle = nullptr;
    mm.grammarLaenge = 0;
    mm.daten = nullptr;
    mm.eigenerBlock = nullptr;
    mm.blockGroesse = mm.versatz = mm.gueltig = mm.basis = 0;
    mm.strom = nullptr;
    mm.subj = mm.hoechste = 0;
    mm.gezeigt = -1;
    mm.obj = nullptr;
    mm.objLaenge = 0;
    mm.objStrom = nullptr;
    mm.objGegeben = false;
    mm.ausPos = 0;
    mm.tZeileOffen = false;
    mm.weiterAktuell = 0;
    mm.weiterZeiger = 0;
    mm.weiterQuelle = 0;
    mm.frameBloecke[0] = frameBlock0;
    mm.frameBlockZahl = 1;
    mm.frameZahl = 0;
    mm.varBloecke[0] = varBlock0;
    mm.varBlockZahl = 1;
    mm.varZahl = 0;
    mm.cur = 0;
    mm.notPending = false;
    mm.itemStart = true;
    mm.replacementUsed = false;
    mm.forward = true;
    mm.wurzel = nullptr;
    mm.gruppenEnde.clear();
    mm.mengenEnde.clear();
    mm.mengenTabelle.clear();
    mm.tabellen.clear();
    mm.regelBody.clear();
}

std::int32_t begrenze(Pos n) {
    if (n > INT32_MAX) return INT32_MAX;
    if (n < INT32_MIN) return INT32_MIN;
    return static_cast<std::int32_t>(n);
}

// The one clean-up path: every exit of a call goes through here.
std::int32_t raeumeAuf(std::int32_t code, Pos pos, std::int32_t* position, void** adresse) {
    if (mm.eigenerBlock) {
        std::free(mm.eigenerBlock);
        mm.eigenerBlock = nullptr;
        logFreigabe("SUBJECT");
    }
    if (mm.optAlloc && mm.obj) {
        if (code < 1 || !adresse) {
            std::free(mm.obj);
            logFreigabe("OBJECT");
        } else {
            *adresse = mm.obj;
        }
        mm.obj = nullptr;
    }
    if (mm.frameBlockZahl > 1) {
        for (int i = 1; i < mm.frameBlockZahl; ++i) std::free(mm.frameBloecke[i]);
        mm.frameBlockZahl = 1;
        logFreigabe("ARRAY");
    }
    if (mm.varBlockZahl > 1) {
        for (int i = 1; i < mm.varBlockZahl; ++i) std::free(mm.varBloecke[i]);
        mm.varBlockZahl = 1;
        logFreigabe("VARRAY");
    }
    if (position) *position = begrenze(pos);
    indexFreigeben();
    // The caches may have grown large for a big grammar; give them back.
    std::vector<std::int32_t>().swap(mm.gruppenEnde);
    std::vector<std::int32_t>().swap(mm.mengenEnde);
    std::vector<std::int32_t>().swap(mm.mengenTabelle);
    std::vector<signed char>().swap(mm.tabellen);
    std::vector<std::int32_t>().swap(mm.regelBody);
    return code;
}

std::int32_t fuehreAus(void* object, std::int32_t objectLength, const char* grammar, const void* subject,
                       std::int32_t subjectLength, const char* options, std::int32_t* position,
                       void** adresse) {
    setzeZurueck();
    if (adresse) *adresse = nullptr;

    // The root of the rule index comes before the options are known, so its
    // allocation is never logged.
    mm.wurzel = static_cast<IndexNode*>(allokiere(sizeof(IndexNode), "Index node"));
    if (!mm.wurzel) return raeumeAuf(MM_NOMEM_INDEX, 0, position, adresse);
    std::memset(mm.wurzel, 0, sizeof(IndexNode));

    if (options) {
        for (const char* o = options; *o; ++o) {
            switch (*o) {
            case '<': mm.optIn = true; break;
            case '>': mm.optOut = true; break;
            case 'a': mm.optAlloc = true; break;
            case 'h': mm.optHier = true; break;
            case 't': mm.optTrace = true; break;
            case 's': mm.optShow = true; break;
            case 'm': mm.optMem = true; break;
            default: break;
            }
        }
    }

    bool ungueltig = !grammar || !subject || (!mm.optIn && subjectLength < 0) ||
                     (!mm.optOut && object && objectLength < 0) || (mm.optOut && !object) ||
                     (mm.optTrace && !mm.optOut) || (mm.optHier && mm.optOut) || (mm.optAlloc && mm.optOut);
    if (ungueltig) {
        // An 'a' buffer is only taken over once the arguments are good.
        mm.optAlloc = false;
        return raeumeAuf(MM_ILLEGALARGS, 0, position, adresse);
    }

    mm.grammar = reinterpret_cast<const Byte*>(grammar);
    mm.grammarLaenge = std::strlen(grammar);
    mm.pat = mm.grammar;

    if (mm.optIn) {
        mm.eigenerBlock = static_cast<Byte*>(allokiere(kPufferSchritt, "SUBJECT"));
        if (!mm.eigenerBlock) return raeumeAuf(MM_NOMEM_SUBJECT, 0, position, adresse);
        mm.daten = mm.eigenerBlock;
        mm.blockGroesse = kPufferSchritt;
        mm.gueltig = 0;
        mm.strom = static_cast<std::FILE*>(const_cast<void*>(subject));
    } else {
        mm.daten = static_cast<const Byte*>(subject);
        mm.blockGroesse = mm.gueltig = subjectLength;
    }

    if (mm.optOut) {
        mm.objStrom = static_cast<std::FILE*>(object);
        mm.objGegeben = true;
        mm.objLaenge = 0;
    } else if (mm.optAlloc) {
        if (object) {
            mm.obj = static_cast<Byte*>(object);
            mm.objLaenge = objectLength;
        } else {
            mm.obj = static_cast<Byte*>(allokiere(kPufferSchritt, "OBJECT"));
            if (!mm.obj) return raeumeAuf(MM_NOMEM_OBJECT, 0, position, adresse);
            mm.objLaenge = kPufferSchritt;
        }
        mm.objGegeben = true;
    } else if (object) {
        mm.obj = static_cast<Byte*>(object);
        mm.objLaenge = objectLength;
        mm.objGegeben = true;
    }

    std::int32_t code = definitionsScan();
    if (code == kWeiter) {
        std::int32_t wurzelFrame = 0;
        code = neuerFrame(wurzelFrame);
        if (code == kWeiter) {
            ArrayFrame& f = frame(wurzelFrame);
            f.parent = -1;
            f.subjectStart = f.subjectEnd = 0;
            f.patternStart = f.patternPos = mm.grammar;
            f.patternNext = nullptr;
            f.flags = 0;
            f.step = 0;
            f.varMark = 0;
            f.replacement = nullptr;
            mm.cur = 0;
            mm.itemStart = true;
            mm.forward = true;
            code = matche();
        }
    }

    Pos pos;
    if (code > 0) {
        pos = mm.hoechste;
    } else if (code == 0) {
        pos = mm.hoechste;
    } else {
        const Byte* stelle = mm.fehlerStelle ? mm.fehlerStelle : mm.pat;
        pos = stelle ? stelle - mm.grammar : 0;
    }
    return raeumeAuf(code, pos, position, adresse);
}

}  // namespace

void* allokiere(std::size_t groesse, const char* name) {
    groesse = aufVier(groesse);
    if (mm.optMem)
        std::fprintf(stderr, "PARSE: Allocating %ld bytes for %s.\n", static_cast<long>(groesse), name);
    if (testFehlschlag()) return nullptr;
    return std::malloc(groesse);
}

void* reallokiere(void* alt, std::size_t groesse, const char* name) {
    groesse = aufVier(groesse);
    if (mm.optMem)
        std::fprintf(stderr, "PARSE: Re-allocating %ld bytes for %s.\n", static_cast<long>(groesse), name);
    if (testFehlschlag()) return nullptr;
    return std::realloc(alt, groesse);
}

namespace {
// A new entry of an array that grows block by block: `zahl` entries in
// `blockZahl` blocks of `proBlock` each.
template <class Eintrag>
std::int32_t neuerEintrag(std::int32_t& zahl, int& blockZahl, Eintrag** bloecke, std::int32_t proBlock,
                          std::int32_t voll, std::int32_t ohneSpeicher, const char* was,
                          std::int32_t& index) {
    if (zahl == blockZahl * proBlock) {
        if (blockZahl == kMaxBloecke) return fehler(voll, nullptr);
        void* b = allokiere(sizeof(Eintrag) * proBlock, was);
        if (!b) return fehler(ohneSpeicher, nullptr);
        bloecke[blockZahl++] = static_cast<Eintrag*>(b);
    }
    index = zahl++;
    return kWeiter;
}
}  // namespace

std::int32_t neuerFrame(std::int32_t& index) {
    return neuerEintrag(mm.frameZahl, mm.frameBlockZahl, mm.frameBloecke, kFramesProBlock, MM_ARRAY_VOLL,
                        MM_NOMEM_ARRAY, "ARRAY", index);
}

std::int32_t neueVariable(std::int32_t& index) {
    return neuerEintrag(mm.varZahl, mm.varBlockZahl, mm.varBloecke, kVarsProBlock, MM_VARRAY_VOLL,
                        MM_NOMEM_VARRAY, "VARRAY", index);
}

std::int32_t fehler(std::int32_t code, const Byte* stelle) {
    if (stelle && !mm.fehlerStelle) mm.fehlerStelle = stelle;
    return code;
}

bool istNamenZeichen(Byte c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || c == '-' || c == '.';
}

std::int32_t namenLaenge(const Byte* p) {
    std::int32_t n = 0;
    while (istNamenZeichen(p[n])) ++n;
    return n;
}

std::int32_t ueberspringeEscape(const Byte*& p) {
    if (p[1] == 0) return fehler(MM_ILLEGALBSLCHAR, p);
    if (p[1] == 'x' || p[1] == 'X') {
        if (p[2] == 0 || p[3] == 0) return fehler(MM_ILLEGALHEXCHAR, p);
        p += 4;
    } else {
        p += 2;
    }
    return kWeiter;
}

namespace {
int hexWert(Byte c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}
}  // namespace

std::int32_t leseEscape(const Byte*& p, Byte& wert) {
    const Byte* start = p;
    std::int32_t r = ueberspringeEscape(p);
    if (r != kWeiter) return r;
    // A letter names a control character in either case; an x brings a
    // byte in hex; any other character stands for itself. Only the two cases
    // of a letter meet under `| 0x20`.
    switch (start[1] | 0x20) {
    case 'b': wert = 8; break;
    case 'c': wert = 13; break;
    case 'e': wert = 27; break;
    case 'f': wert = 12; break;
    case 'n': wert = 10; break;
    case 't': wert = 9; break;
    case 'z': wert = 0; break;
    case 'x': {
        int hoch = hexWert(start[2]);
        int tief = hexWert(start[3]);
        if (hoch < 0 || tief < 0) return fehler(MM_ILLEGALHEXCHAR, start);
        wert = static_cast<Byte>(hoch * 16 + tief);
        break;
    }
    default: wert = start[1]; break;
    }
    return kWeiter;
}

}  // namespace mmintern

std::int32_t mmparseMitAdresse(void* object, std::int32_t objectLength, const char* grammar,
                               const void* subject, std::int32_t subjectLength, const char* options,
                               std::int32_t* position, void** adresse) {
    try {
        return mmintern::fuehreAus(object, objectLength, grammar, subject, subjectLength, options, position,
                                   adresse);
    } catch (const std::bad_alloc&) {
        // Only the grammar caches use the standard containers; running out of
        // memory there is reported like any other exhausted stack block.
        return mmintern::raeumeAuf(MM_NOMEM_ARRAY, 0, position, adresse);
    }
}

std::int32_t mmparse(void* object, std::int32_t objectLength, const char* grammar, const void* subject,
                     std::int32_t subjectLength, const char* options, std::int32_t* position) {
    return mmparseMitAdresse(object, objectLength, grammar, subject, subjectLength, options, position,
                             nullptr);
}
