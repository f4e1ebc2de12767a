// Shared test helpers of the command language: token pictures, capture of a
// standard stream, commands run over a text, and command objects of a type.
#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "language/KdoGlobal.h"
#include "language/KdoGrammatik.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "support/Meldungsaufnahme.h"

// A token as text: N(x) NAME, T"x" TEXT, Z(1) ZAHL, R(1.5) REALZAHL, NL,
// END, single characters and keyword names as themselves.
inline std::string kdoTokenBild(dataInteger token, const String& text) {
    using namespace KdoToken;
    switch (token) {
    case NAME: return "N(" + text.str() + ")";
    case TEXT: return "T\"" + text.str() + "\"";
    case ZAHL: return "Z(" + text.str() + ")";
    case REALZAHL: return "R(" + text.str() + ")";
    case ZEILENENDE: return "NL";
    case ENDE: return "END";
    default: break;
    }
    if (token > 0 && token < 256) return std::string(1, static_cast<char>(token));
    return kdoSymbolName(token);
}

// Redirects a standard stream while it lives.
class StromFaenger {
public:
    explicit StromFaenger(std::ostream& strom) : strom_(strom), alt_(strom.rdbuf(puffer_.rdbuf())) {}
    ~StromFaenger() { strom_.rdbuf(alt_); }
    StromFaenger(const StromFaenger&) = delete;
    StromFaenger& operator=(const StromFaenger&) = delete;
    std::string text() const { return puffer_.str(); }

private:
    std::ostringstream puffer_;
    std::ostream& strom_;
    std::streambuf* alt_;
};

// Labels of the messages, joined by ",".
inline std::string kdoLabels(const std::vector<Meldung>& meldungen) {
    std::string t;
    for (const Meldung& m : meldungen) t += (t.empty() ? "" : ",") + m.label;
    return t;
}

struct KdoLauf {
    int ergebnis = 0;
    std::string werte;   // zeigeWert of every argument, joined by "|"
    std::string labels;  // labels of the messages, joined by ","
};

inline std::string kdoWerte(const KdoKommando& k, bool vorgabe = false) {
    std::ostringstream s;
    for (std::uint16_t i = 0; i < k.liefereAnzahlArgumente(); ++i) {
        if (i > 0) s << '|';
        if (const KdoArgument* a = k.argument(i)) vorgabe ? a->zeigeVorgabe(s) : a->zeigeWert(s);
    }
    return s.str();
}

inline KdoLauf kdoLauf(KdoKommando& k, const std::string& text, int definition = 0) {
    Meldungsaufnahme aufnahme;
    KdoLauf l;
    {
        AnwKommando anw(text);
        l.ergebnis = Kommando::interpretiere(k, anw, definition);
    }
    l.werte = kdoWerte(k);
    l.labels = kdoLabels(aufnahme.meldungen());
    return l;
}

inline std::unique_ptr<KdoKommando> kdoKommando(const char* signatur, const char* name = "f") {
    Meldungsaufnahme still;
    return std::make_unique<KdoKommando>(name, signatur, nullptr);
}

// A command object of a given type, with the command list of its class.
class TypObjekt : public KdoObjekt {
public:
    TypObjekt(const char* typ, const char* name, KdoListe* liste = nullptr)
        : KdoObjekt(name), typ_(typ), liste_(liste) {}
    KdoListe* liefereKdoListe() override { return liste_; }
    const String& liefereKdoOTyp() const override { return typ_; }

private:
    String typ_;
    KdoListe* liste_;
};
