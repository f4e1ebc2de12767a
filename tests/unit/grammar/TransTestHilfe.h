// Test helper for the grammar commands: a root object with one son that
// share a command list whose handlers record what they saw, files written
// for the test and removed afterwards, and shortcuts to run statements.
//
//   <Wurzel>W
//     <Bild>a
//
// Commands of both objects:
//   ok()              records, succeeds
//   fehl()            records, fails
//   zahl(Integer n)   records n, succeeds
// A record reads "<command>@<object>:<aktuelleZeile without its line end>".
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/DynArray.h"
#include "foundation/MeldungsFaenger.h"
#include "language/Compiler.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "language/Scanner.h"
#include "reporting/Fehler.h"

namespace transtest {

inline std::vector<std::string>& protokoll() {
    static std::vector<std::string> p;
    return p;
}

inline void merke(const std::string& kommando, KdoObjekt& objekt) {
    std::string zeile = aktuelleZeile.str();
    if (!zeile.empty() && zeile.back() == '\n') zeile.pop_back();
    protokoll().push_back(kommando + "@" + objekt.liefereName().str() + ":" + zeile);
}

inline int kdoOk(KdoObjekt& o, KdoKommando&) { return merke("ok", o), 1; }
inline int kdoFehl(KdoObjekt& o, KdoKommando&) { return merke("fehl", o), 0; }
inline int kdoZahl(KdoObjekt& o, KdoKommando& k) {
    return merke("zahl(" + std::to_string(k[0].liefereArgWertInt()) + ")", o), 1;
}

class TestObjekt : public KdoObjekt {
public:
    TestObjekt(const char* name, const char* typ, KdoListe* liste) : KdoObjekt(name), typ_(typ), liste_(liste) {}
    KdoListe* liefereKdoListe() override { return liste_; }
    const String& liefereKdoOTyp() const override { return typ_; }

private:
    String typ_;
    KdoListe* liste_;
};

class TransTest : public ::testing::Test {
protected:
    void SetUp() override {
        protokoll().clear();
        {
            MeldungsFaenger still;
            liste.fuegeEin(new KdoKommando("ok", 0, "", kdoOk));
            liste.fuegeEin(new KdoKommando("fehl", 0, "", kdoFehl));
            liste.fuegeEin(new KdoKommando("zahl", 1, "Integer n", kdoZahl));
        }
        wurzel.setzeVollenNamen("<Wurzel>W");
        baum = std::make_unique<KdoBaum>(&wurzel, kdoRelation, kdoVergleich, kdoNamensVergleich, kdoLoesche);
        kdoBaum = baum.get();
        kdoBaum->fuegeEin(&a);
        kdoBaum->vater();
        setzeZurueck();
    }

    void TearDown() override {
        setzeZurueck();
        kdoBaum = nullptr;
        for (const std::string& d : dateien) std::remove(d.c_str());
    }

    static void setzeZurueck() {
        for (const char* l : {"E", "F", "I", "S", "W"}) Fehler::setzeStatus(l, 0);
        Fehler::holeStatus();
        Compiler::compilerStatus = 0;
        Compiler::funktionswertStatus = 0;
        Compiler::laufStatus = 3;
        scannerModus = 1;
        aktuelleZeile = String();
    }

    // Writes a file that the test removes afterwards.
    void datei(const std::string& name, const std::string& inhalt) {
        std::ofstream(name, std::ios::binary) << inhalt;
        dateien.push_back(name);
    }
    // A file that the run may make; the test removes it afterwards.
    void entsteht(const std::string& name) {
        std::remove(name.c_str());
        dateien.push_back(name);
    }

    static bool gibtEs(const std::string& name) { return std::ifstream(name).good(); }
    static std::string inhalt(const std::string& name) {
        std::ifstream f(name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
    }

    static void zeile(const std::string& text) { Compiler::ausfuehreZeile(String(text + "\n")); }


    static std::string protokollText() {
        std::string t;
        for (const std::string& z : protokoll()) t += z + "\n";
        return t;
    }

    // Labels of the messages, without the status lines of procedure runs and
    // the grammar file's open and close.
    static std::string labels(const MeldungsFaenger& f) {
        std::string t;
        for (const Meldung& m : f.meldungen()) {
            if (m.label == "CMD" || m.label == "CMD-KDOOBJ-BATCH-OPENED" || m.label == "CMD-KDOOBJ-BATCH-CLOSED" ||
                m.label == "INPUTFILEOPENED" || m.label == "FILECLOSED")
                continue;
            t += (t.empty() ? "" : ",") + m.label;
        }
        return t;
    }
    // The details of all messages with `label`, one a line.
    static std::string details(const MeldungsFaenger& f, const std::string& label) {
        std::string t;
        for (const Meldung& m : f.meldungen())
            if (m.label == label) t += m.detail + "\n";
        return t;
    }

    // Messages that a test does not catch itself go here, not to a console.
    MeldungsFaenger grundFaenger;
    KdoListe liste{"Test"};
    TestObjekt wurzel{"W", "Wurzel", &liste};
    TestObjekt a{"a", "Bild", &liste};
    std::unique_ptr<KdoBaum> baum;
    std::vector<std::string> dateien;
};

}  // namespace transtest
