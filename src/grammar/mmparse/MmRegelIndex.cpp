// The rule index: a radix tree over the rule names, built by the definition
// scan at the start of each call. Names are not copied; the nodes point into
// the grammar. Walks are loops, so a very long name cannot exhaust the stack.
#include <cstdlib>
#include <cstring>

#include "grammar/mmparse/MmZustand.h"

namespace mmintern {

namespace {

IndexNode* neuerKnoten(const Byte* text, std::int32_t laenge, const Byte* body) {
    auto* k = static_cast<IndexNode*>(allokiere(sizeof(IndexNode), "Index node"));
    if (!k) return nullptr;
    k->text = text;
    k->length = laenge;
    k->body = body;
    k->children = nullptr;
    k->next = nullptr;
    return k;
}

}  // namespace

std::int32_t indexEinfuegen(const Byte* name, std::int32_t laenge, const Byte* body) {
    IndexNode* knoten = mm.wurzel;
    for (;;) {
        // Siblings are sorted by their first byte, unsigned.
        IndexNode** platz = &knoten->children;
        while (*platz && (*platz)->text[0] < name[0]) platz = &(*platz)->next;
        IndexNode* kind = *platz;
        if (!kind || kind->text[0] != name[0]) {
            IndexNode* blatt = neuerKnoten(name, laenge, body);
            if (!blatt) return fehler(MM_NOMEM_INDEX, nullptr);
            blatt->next = kind;
            *platz = blatt;
            return kWeiter;
        }
        std::int32_t gemeinsam = 0;
        while (gemeinsam < kind->length && gemeinsam < laenge && kind->text[gemeinsam] == name[gemeinsam])
            ++gemeinsam;
        if (gemeinsam < kind->length) {
            IndexNode* teil = neuerKnoten(kind->text, gemeinsam, nullptr);
            if (!teil) return fehler(MM_NOMEM_INDEX, nullptr);
            teil->next = kind->next;
            teil->children = kind;
            kind->next = nullptr;
            kind->text += gemeinsam;
            kind->length -= gemeinsam;
            *platz = teil;
            kind = teil;
        }
        if (gemeinsam == laenge) {
            if (kind->body) return MM_REDEFINEDSYM;
            kind->body = body;
            return kWeiter;
        }
        name += gemeinsam;
        laenge -= gemeinsam;
        knoten = kind;
    }
}

const Byte* indexSuche(const Byte* name, std::int32_t laenge) {
    const IndexNode* knoten = mm.wurzel;
    while (knoten && laenge > 0) {
        const IndexNode* kind = knoten->children;
        while (kind && kind->text[0] < name[0]) kind = kind->next;
        if (!kind || kind->text[0] != name[0] || kind->length > laenge ||
            std::memcmp(kind->text, name, static_cast<std::size_t>(kind->length)) != 0)
            return nullptr;
        name += kind->length;
        laenge -= kind->length;
        if (laenge == 0) return kind->body;
        knoten = kind;
    }
    return nullptr;
}

void indexFreigeben() {
    // Seen as a binary tree (children left, next right), rotate left children
    // up until none is left, freeing as we go: no stack needed.
    IndexNode* k = mm.wurzel;
    while (k) {
        if (k->children) {
            IndexNode* links = k->children;
            k->children = links->next;
            links->next = k;
            k = links;
        } else {
            IndexNode* rechts = k->next;
            std::free(k);
            k = rechts;
        }
    }
    mm.wurzel = nullptr;
}

}  // namespace mmintern
