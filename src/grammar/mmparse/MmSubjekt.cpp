// The subject buffer. In memory the caller's bytes are used in place and
// nothing ever comes by refill. From a stream, the "SUBJECT" block holds the
// text behind the last commit plus what the matcher has read ahead; a commit
// drops the text before the subject pointer, so a grammar that commits per
// record needs a small block whatever the size of the file.
#include <cstring>

#include "grammar/mmparse/MmZustand.h"

namespace mmintern {

bool fuelleNach() {
    if (!mm.strom) return true;
    if (mm.versatz > 0) {
        std::memmove(mm.eigenerBlock, mm.eigenerBlock + mm.versatz, static_cast<std::size_t>(mm.gueltig));
        mm.versatz = 0;
        mm.daten = mm.eigenerBlock;
    }
    if (mm.gueltig == mm.blockGroesse) {
        Pos neu = mm.blockGroesse + kPufferSchritt;
        void* b = reallokiere(mm.eigenerBlock, static_cast<std::size_t>(neu), "SUBJECT");
        if (!b) return false;
        if (b != mm.eigenerBlock) mm.gezeigt = -1;
        mm.eigenerBlock = static_cast<Byte*>(b);
        mm.daten = mm.eigenerBlock;
        mm.blockGroesse = neu;
    }
    std::size_t frei = static_cast<std::size_t>(mm.blockGroesse - mm.gueltig);
    std::size_t gelesen = std::fread(mm.eigenerBlock + mm.gueltig, 1, frei, mm.strom);
    mm.gueltig += static_cast<Pos>(gelesen);
    // A short read is the end of the file (or an error, which ends it too);
    // the stream is forgotten so that no later refill waits on it.
    if (gelesen < frei) mm.strom = nullptr;
    return true;
}

void verschiebeNachCommit() {
    Pos weg = mm.subj - mm.basis;
    if (weg <= 0) return;
    mm.versatz += weg;
    mm.daten += weg;
    mm.gueltig -= weg;
    mm.basis += weg;
    mm.gezeigt = -1;
}

void zeigeSubjekt() {
    std::fwrite(mm.daten, 1, static_cast<std::size_t>(mm.subj - mm.basis), stderr);
    std::fputc('\n', stderr);
    mm.gezeigt = mm.subj;
}

}  // namespace mmintern
