// Shared fixture of the reporting tests: each message is kept as a record
// "label|funktion|detail|level" and as the text it shows on the console and
// in the log, and standard output is caught for the progress display.
#pragma once

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "reporting/Fehler.h"

class AufnahmeTest : public ::testing::Test {
protected:
    void SetUp() override {
        Fehler::init();
        Fehler::fehlerPrefix = "%KIV-";
        alteRoutine_ = Fehler::fehlerAusgabeRoutine;
        Fehler::fehlerAusgabeRoutine = &nimmAuf;
        aktiv() = this;
        alterPuffer_ = std::cout.rdbuf(cout.rdbuf());
    }
    void TearDown() override {
        std::cout.rdbuf(alterPuffer_);
        Fehler::fehlerAusgabeRoutine = alteRoutine_;
        Fehler::zusatzZeile = nullptr;
        aktiv() = nullptr;
    }
    void leere() { meldungen.clear(), konsole.clear(), log.clear(); }

    std::vector<std::string> meldungen;
    std::string konsole, log;
    long anzahl = 0;
    bool mitschreiben = true;  // off for runs of many thousand messages
    std::ostringstream cout;

private:
    static AufnahmeTest*& aktiv() {
        static AufnahmeTest* t = nullptr;
        return t;
    }
    // Output kind 1 is shown nowhere, 2 only in the log.
    static void nimmAuf(Fehler& f, int art) {
        AufnahmeTest& t = *aktiv();
        ++t.anzahl;
        if (!t.mitschreiben) return;
        t.meldungen.push_back(f.liefereLabel().str() + "|" + f.liefereFunktion().str() + "|" +
                              f.liefereDetail().str() + "|" + f.liefereLevel());
        if (art == 1) return;
        std::ostringstream o;
        f.ausgabe(o);
        if (art != 2) t.konsole += o.str();
        t.log += o.str();
    }
    Fehler::AusgabeRoutine alteRoutine_ = nullptr;
    std::streambuf* alterPuffer_ = nullptr;
};
