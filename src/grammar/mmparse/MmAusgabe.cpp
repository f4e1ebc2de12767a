// Output: the flush at commits and at the end of a match, the output walk
// `baue` over the frames left by the matcher, rule marks for 'h' and 't', and
// the byte writer.
//
// The walk visits the frames in tree order (their index order, with the
// `parent` links). A `{name}` in a replacement walks the variable's frame
// again so that it comes out translated; that nesting is kept on an explicit
// stack of walks, so deep nesting cannot exhaust the C++ stack.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "grammar/mmparse/MmZustand.h"

namespace mmintern {

namespace {

struct Lauf {
    std::int32_t vorher;
    std::int32_t aktuell;
    std::int32_t zeiger;
    std::int32_t bis;
    Pos quelle;
    const Byte* ersatz;  // within a replacement text being emitted, else null
};

std::vector<Lauf> laeufe;

std::int32_t wachse() {
    Pos neu = mm.objLaenge + kPufferSchritt;
    void* b = reallokiere(mm.obj, static_cast<std::size_t>(neu), "OBJECT");
    if (!b) return MM_NOMEM_OBJECT;
    mm.obj = static_cast<Byte*>(b);
    mm.objLaenge = neu;
    return kWeiter;
}

std::int32_t schreibeRoh(Byte b) {
    if (mm.objStrom) {
        if (std::putc(b, mm.objStrom) == EOF) return MM_CANTWRITE;
        ++mm.ausPos;
        return kWeiter;
    }
    if (mm.ausPos >= mm.objLaenge) {
        if (!mm.optAlloc) return MM_OTOLONG;
        std::int32_t r = wachse();
        if (r != kWeiter) return r;
    }
    mm.obj[mm.ausPos++] = b;
    return kWeiter;
}

std::int32_t schreibeRoh(const char* text) {
    for (; *text; ++text) {
        std::int32_t r = schreibeRoh(static_cast<Byte>(*text));
        if (r != kWeiter) return r;
    }
    return kWeiter;
}

// A byte of the translated text. With 't' it goes out escaped, on a line
// that begins with '-'.
std::int32_t schreibeNutz(Byte b) {
    if (!mm.optTrace) return schreibeRoh(b);
    std::int32_t r = kWeiter;
    if (!mm.tZeileOffen) {
        r = schreibeRoh('-');
        if (r != kWeiter) return r;
        mm.tZeileOffen = true;
    }
    if (b == '\\') return schreibeRoh("\\\\");
    if (b >= 32 && b <= 126) return schreibeRoh(b);
    if (b == '\n') return schreibeRoh("\\n");
    char okt[5] = {'\\', static_cast<char>('0' + (b >> 6)), static_cast<char>('0' + ((b >> 3) & 7)),
                   static_cast<char>('0' + (b & 7)), 0};
    return schreibeRoh(okt);
}

std::int32_t zeilenEnde() {
    if (!mm.tZeileOffen) return kWeiter;
    mm.tZeileOffen = false;
    return schreibeRoh('\n');
}

std::int32_t kopiere(Pos von, Pos bis) {
    if (bis <= von) return kWeiter;
    if (von < mm.basis) return MM_TEXT_VERWORFEN;
    if (!mm.optTrace && !mm.objStrom) {
        Pos n = bis - von;
        while (mm.ausPos + n > mm.objLaenge) {
            if (!mm.optAlloc) return MM_OTOLONG;
            std::int32_t r = wachse();
            if (r != kWeiter) return r;
        }
        std::memcpy(mm.obj + mm.ausPos, mm.daten + (von - mm.basis), static_cast<std::size_t>(n));
        mm.ausPos += n;
        return kWeiter;
    }
    if (!mm.optTrace) {
        const auto n = static_cast<std::size_t>(bis - von);
        if (std::fwrite(mm.daten + (von - mm.basis), 1, n, mm.objStrom) != n) return MM_CANTWRITE;
        mm.ausPos += bis - von;
        return kWeiter;
    }
    for (Pos p = von; p < bis; ++p) {
        std::int32_t r = schreibeNutz(subjektByte(p));
        if (r != kWeiter) return r;
    }
    return zeilenEnde();
}

// Marks never enlarge the buffer, also with 'a'.
std::int32_t schreibeMarke(Byte b) {
    if (mm.ausPos >= mm.objLaenge) return MM_OTOLONG;
    mm.obj[mm.ausPos++] = b;
    return kWeiter;
}

std::int32_t marke(std::int32_t f, bool oeffnen) {
    if (!mm.optHier && !mm.optTrace) return kWeiter;
    const ArrayFrame& fr = frame(f);
    if (!(fr.flags & FLAG_SYMBOL)) return kWeiter;
    // The body follows "<name>=", so the name ends two bytes before it.
    const Byte* ende = fr.patternStart - 2;
    const Byte* anfang = ende;
    while (anfang[-1] != '<') --anfang;
    if (*anfang == '_') return kWeiter;
    std::int32_t r;
    if (mm.optHier) {
        if ((r = schreibeMarke(0)) != kWeiter) return r;
        if (oeffnen) {
            for (const Byte* p = anfang; p < ende; ++p)
                if ((r = schreibeMarke(*p)) != kWeiter) return r;
        }
        return schreibeMarke(0);
    }
    if ((r = zeilenEnde()) != kWeiter) return r;
    if ((r = schreibeRoh(oeffnen ? '(' : ')')) != kWeiter) return r;
    for (const Byte* p = anfang; p < ende; ++p)
        if ((r = schreibeRoh(*p)) != kWeiter) return r;
    return schreibeRoh('\n');
}

bool endetErsatz(Byte c) { return c == 0 || c == '|' || c == ')' || c == '#'; }

// One step of emitting the replacement text of the walk on top.
std::int32_t ersatzSchritt(std::size_t oben) {
    Byte c = *laeufe[oben].ersatz;
    if (endetErsatz(c)) {
        Lauf& l = laeufe[oben];
        l.ersatz = nullptr;
        l.aktuell = frame(l.vorher).parent;
        std::int32_t r = zeilenEnde();
        if (r != kWeiter) return r;
        return marke(l.vorher, false);
    }
    if (c == '\\') {
        Byte wert = 0;
        std::int32_t r = leseEscape(laeufe[oben].ersatz, wert);
        if (r != kWeiter) return r;
        return schreibeNutz(wert);
    }
    if (c == '{') {
        const Byte* name = laeufe[oben].ersatz + 1;
        laeufe[oben].ersatz = name + namenLaenge(name) + 1;
        std::int32_t e = name[0] == '$' ? sucheGlobal(name) : sucheLokal(laeufe[oben].vorher, name);
        if (e < 0) return kWeiter;  // a '$' name never assigned gives nothing
        std::int32_t f = var(e).frame;
        Pos start = frame(f).subjectStart;
        if (start < mm.basis) return MM_TEXT_VERWORFEN;
        std::int32_t r = zeilenEnde();
        if (r != kWeiter) return r;
        laeufe.push_back(Lauf{-1, f, f, f, start, nullptr});
        return kWeiter;
    }
    ++laeufe[oben].ersatz;
    return schreibeNutz(c);
}

std::int32_t baue(std::int32_t aktuell, std::int32_t zeiger, Pos quelle, std::int32_t bis) {
    const std::int32_t oberster = mm.frameZahl - 1;
    laeufe.clear();
    laeufe.push_back(Lauf{-1, aktuell, zeiger, bis, quelle, nullptr});
    while (!laeufe.empty()) {
        const std::size_t oben = laeufe.size() - 1;
        if (laeufe[oben].ersatz) {
            std::int32_t r = ersatzSchritt(oben);
            if (r != kWeiter) return r;
            continue;
        }
        Lauf& l = laeufe[oben];
        if (l.vorher >= l.aktuell && l.vorher == l.bis) {
            laeufe.pop_back();
            continue;
        }
        // A commit inside a repeated group can leave `bis` off the path up;
        // the walk then ends at the outermost frame instead of reading above it.
        if (l.aktuell < 0) {
            laeufe.pop_back();
            continue;
        }
        l.vorher = l.aktuell;
        bool abwaerts = l.zeiger < oberster && frame(l.zeiger + 1).parent == l.vorher;
        if (abwaerts) {
            ++l.zeiger;
            l.aktuell = l.zeiger;
        } else {
            l.aktuell = frame(l.vorher).parent;
        }
        const ArrayFrame& v = frame(l.vorher);
        std::int32_t r;
        if (!v.replacement) {
            Pos ziel = abwaerts ? frame(l.aktuell).subjectStart : v.subjectEnd;
            if ((r = kopiere(l.quelle, ziel)) != kWeiter) return r;
            l.quelle = std::max(l.quelle, ziel);
            if ((r = marke(abwaerts ? l.aktuell : l.vorher, abwaerts)) != kWeiter) return r;
            continue;
        }
        l.quelle = v.subjectEnd;
        while (l.zeiger < oberster && frame(l.zeiger + 1).parent >= l.vorher) ++l.zeiger;
        l.ersatz = v.replacement;
    }
    return kWeiter;
}

}  // namespace

std::int32_t flush(std::int32_t bis) {
    if (!mm.objGegeben) return kWeiter;
    bool walk =
        mm.objStrom ? (mm.replacementUsed || mm.optTrace) : (mm.replacementUsed || mm.optHier || mm.optAlloc);
    if (walk) return baue(mm.weiterAktuell, mm.weiterZeiger, mm.weiterQuelle, bis);
    // The direct copy starts at the start of the held text, which moves only
    // with a streamed subject: in memory, a second commit copies the text of
    // the first again. Intended; grammars rely on the engine as it is.
    Pos n = mm.subj - mm.basis;
    if (!mm.objStrom) {
        if (mm.ausPos + n > mm.objLaenge) return MM_OTOLONG;
        if (n > 0) std::memcpy(mm.obj + mm.ausPos, mm.daten, static_cast<std::size_t>(n));
        mm.ausPos += n;
        return kWeiter;
    }
    if (n > 0 &&
        std::fwrite(mm.daten, 1, static_cast<std::size_t>(n), mm.objStrom) != static_cast<std::size_t>(n))
        return MM_CANTWRITE;
    mm.ausPos += n;
    return kWeiter;
}

void merkeFlushEnde(std::int32_t f) {
    // The next walk goes on as if it had just left `f`: from its parent, with
    // the frames pushed after the commit, and the text behind `f`.
    mm.weiterAktuell = frame(f).parent;
    mm.weiterZeiger = f - 1;
    mm.weiterQuelle = frame(f).subjectEnd;
}

}  // namespace mmintern
