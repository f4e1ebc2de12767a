// Shared test helpers of the command language: token pictures, capture of a
// standard stream, commands run over a text, and a small command-object world
// for the Compiler.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/DynArray.h"
#include "foundation/MeldungsFaenger.h"
#include "foundation/Tabulator.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoGrammatik.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "reporting/Fehler.h"

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

struct KdoLauf {
    int ergebnis = 0;
    std::string werte;   // zeigeWert of every argument, joined by "|"
    std::string labels;  // labels of the messages, joined by ","
    std::vector<Meldung> meldungen;
};

inline std::string kdoWerte(const KdoKommando& k, bool vorgabe = false) {
    std::ostringstream s;
    for (std::uint16_t i = 0; i < k.liefereAnzahlArgumente(); ++i) {
        if (i > 0) s << '|';
        if (const KdoArgument* a = k.argument(i)) {
            if (vorgabe)
                a->zeigeVorgabe(s);
            else
                a->zeigeWert(s);
        }
    }
    return s.str();
}

inline std::string kdoLabels(const std::vector<Meldung>& meldungen) {
    std::string t;
    for (const Meldung& m : meldungen) t += (t.empty() ? "" : ",") + m.label;
    return t;
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

// The Compiler's world: a small tree of command objects that share one
// command list, and handlers that record what they saw.
//
//   <Wurzel>W
//     <Bild>a
//       <Teil>c
//     <Bild>b
//
// Commands of every object:
//   ok()                    records, succeeds
//   fehl()                  records, fails
//   melde(Enum{E,W,I,S} l)  records, reports "TEST-MELDUNG" at level l, succeeds
//   zahl(Integer n)         records n, succeeds
// A record reads "<command>@<object>:<aktuelleZeile without its line end>".
namespace compilertest {

inline std::vector<std::string>& protokoll() {
    static std::vector<std::string> p;
    return p;
}

inline void merke(const char* kommando, KdoObjekt& objekt, const std::string& zusatz = "") {
    std::string zeile = aktuelleZeile.str();
    if (!zeile.empty() && zeile.back() == '\n') zeile.pop_back();
    protokoll().push_back(std::string(kommando) + zusatz + "@" + objekt.liefereName().str() + ":" + zeile);
}

inline int kdoOk(KdoObjekt& o, KdoKommando&) {
    merke("ok", o);
    return 1;
}
inline int kdoFehl(KdoObjekt& o, KdoKommando&) {
    merke("fehl", o);
    return 0;
}
inline int kdoMelde(KdoObjekt& o, KdoKommando& k) {
    static const char levels[] = {'E', 'W', 'I', 'S'};
    merke("melde", o);
    Fehler("TEST-MELDUNG", "test", "", levels[k[0].liefereArgWertInt() & 3]);
    return 1;
}
inline int kdoZahl(KdoObjekt& o, KdoKommando& k) {
    merke("zahl", o, "(" + std::to_string(k[0].liefereArgWertInt()) + ")");
    return 1;
}

class CompilerTest : public ::testing::Test {
protected:
    void SetUp() override {
        protokoll().clear();
        {
            MeldungsFaenger still;
            liste.fuegeEin(new KdoKommando("ok", "", kdoOk));
            liste.fuegeEin(new KdoKommando("fehl", "", kdoFehl));
            liste.fuegeEin(new KdoKommando("melde", "Enum{E,W,I,S} level", kdoMelde));
            liste.fuegeEin(new KdoKommando("zahl", "Integer n", kdoZahl));
            liste.definiere(AnwKommando("melde(E)"));
            liste.definiere(AnwKommando("zahl(7)"));
        }
        wurzel.setzeVollenNamen("<Wurzel>W");
        laufzeit.setzeBaum(
            std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche));
        kdoBaum()->fuegeEin(&a);
        kdoBaum()->fuegeEin(&c);
        kdoBaum()->vater();
        kdoBaum()->vater();
        kdoBaum()->fuegeEin(&b);
        kdoBaum()->vater();
        tab.setzeStops(10, {10, 25, 45});
        tab.setzeUmbruch(1);
        dokPosition = &tab;
        kdoAnzeigeStream = &std::cout;
        setzeZurueck();
    }

    void TearDown() override {
        setzeZurueck();
        dokPosition = nullptr;
        kdoAnzeigeStream = nullptr;
        for (const std::string& d : dateien) std::remove(d.c_str());
    }

    static void setzeZurueck() {
        for (const char* l : {"E", "F", "I", "S", "W"}) Fehler::setzeStatus(l, 0);
        Fehler::setzeStatus("TEST-MELDUNG", 0);
        Fehler::setzeStatus("CMD-NOSUCHCMD", 0);
        Fehler::holeStatus();
        aktuelleZeile = String();
    }

    // The short name of the current object.
    static std::string aktuell() { return kdoBaum()->liefereAktuelles()->liefereName().str(); }

    // Writes a procedure file that the test removes afterwards.
    std::string datei(const std::string& name, const std::string& inhalt) {
        std::ofstream f(name, std::ios::binary);
        f << inhalt;
        dateien.push_back(name);
        return name;
    }

    // Runs `eingabe` as standard input of an interactive run.
    static int interaktiv(const std::string& eingabe) {
        std::istringstream strom(eingabe);
        std::streambuf* alt = std::cin.rdbuf(strom.rdbuf());
        std::cin.clear();
        const int status = static_cast<int>(Compiler::ausfuehreBatch(String(), nullptr, 0));
        std::cin.rdbuf(alt);
        std::cin.clear();
        return status;
    }

    static int prozedur(const std::string& name, std::vector<std::string> parameter = {}) {
        DynArray<String> p;
        for (std::size_t i = 0; i < parameter.size(); ++i) p[static_cast<int>(i)] = String(parameter[i]);
        return static_cast<int>(
            Compiler::ausfuehreBatch(String(name), &p, static_cast<int>(parameter.size())));
    }

    static std::string labels(const MeldungsFaenger& f) { return kdoLabels(f.meldungen()); }
    // Labels without the status lines of procedure runs (CMD echo, opened,
    // closed), which most tests do not look at.
    static std::string fehlerLabels(const MeldungsFaenger& f) {
        std::string t;
        for (const Meldung& m : f.meldungen()) {
            if (m.label == "CMD" || m.label == "CMD-KDOOBJ-BATCH-OPENED" ||
                m.label == "CMD-KDOOBJ-BATCH-CLOSED")
                continue;
            t += (t.empty() ? "" : ",") + m.label;
        }
        return t;
    }
    static std::vector<Meldung> mitLabel(const MeldungsFaenger& f, const std::string& label) {
        std::vector<Meldung> m;
        for (const Meldung& x : f.meldungen())
            if (x.label == label) m.push_back(x);
        return m;
    }
    static std::string protokollText() {
        std::string t;
        for (const std::string& z : protokoll()) t += z + "\n";
        return t;
    }

    KdoListe liste{"Test"};
    TypObjekt wurzel{"Wurzel", "W", &liste};
    TypObjekt a{"Bild", "a", &liste};
    TypObjekt b{"Bild", "b", &liste};
    TypObjekt c{"Teil", "c", &liste};
    KdoLaufzeit laufzeit;  // after the objects: its tree goes first
    Tabulator tab;
    std::vector<std::string> dateien;
};

}  // namespace compilertest
