#include "foundation/Meldung.h"

#include <iostream>

namespace {

MeldeFunktion installiert = nullptr;

void aufKonsole(const String& label, const String& funktion, const String& detail, char level) {
    std::cerr << '%' << level << '-' << label << ' ' << funktion << ' ' << detail << '\n';
}

}  // namespace

void setzeMelder(MeldeFunktion melder) { installiert = melder; }

void melde(const String& label, const String& funktion, const String& detail, char level) {
    (installiert ? installiert : aufKonsole)(label, funktion, detail, level);
}
