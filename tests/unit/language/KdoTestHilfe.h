// Test helper: runs a command text against a command of a chosen signature
// and reports result, shown values and message labels as text.
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/MeldungsFaenger.h"
#include "language/KdoKommando.h"

struct KdoLauf {
    int ergebnis = 0;
    std::string werte;    // zeigeWert of every argument, joined by "|"
    std::string labels;   // labels of the messages, joined by ","
    std::vector<Meldung> meldungen;
};

inline std::string kdoWerte(const KdoKommando& k, bool vorgabe = false) {
    std::ostringstream s;
    for (std::uint16_t i = 0; i < k.liefereAnzahlArgumente(); ++i) {
        if (i > 0) s << '|';
        if (const KdoArgument* a = k.argument(i)) {
            if (vorgabe) a->zeigeVorgabe(s);
            else a->zeigeWert(s);
        }
    }
    return s.str();
}

inline std::string kdoLabels(const std::vector<Meldung>& meldungen) {
    std::string t;
    for (const Meldung& m : meldungen) t += (t.empty() ? "" : ",") + m.label;
    return t;
}

inline int kdoAnzahlPaare(const char* signatur) {
    std::istringstream s(signatur);
    std::string w;
    int n = 0;
    while (s >> w) ++n;
    return n / 2;
}

inline KdoLauf kdoLauf(KdoKommando& k, const std::string& text, int definition = 0) {
    MeldungsFaenger faenger;
    KdoLauf l;
    {
        AnwKommando anw(text);
        l.ergebnis = Kommando::interpretiere(k, anw, definition);
    }
    l.werte = kdoWerte(k);
    l.meldungen = faenger.meldungen();
    l.labels = kdoLabels(l.meldungen);
    return l;
}

inline std::unique_ptr<KdoKommando> kdoKommando(const char* signatur, const char* name = "f") {
    MeldungsFaenger faenger;
    return std::make_unique<KdoKommando>(name, static_cast<std::uint16_t>(kdoAnzahlPaare(signatur)),
                                         signatur, nullptr);
}
