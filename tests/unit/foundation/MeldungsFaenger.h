// Test helper: collects every message raised while an instance lives,
// instead of printing it.
#pragma once

#include <string>
#include <vector>

#include "reporting/Fehler.h"

struct Meldung {
    std::string label, funktion, detail;
    char level;
};

class MeldungsFaenger {
public:
    MeldungsFaenger() : alteRoutine_(Fehler::fehlerAusgabeRoutine) {
        gesammelt().clear();
        Fehler::fehlerAusgabeRoutine = &fange;
    }
    ~MeldungsFaenger() { Fehler::fehlerAusgabeRoutine = alteRoutine_; }
    MeldungsFaenger(const MeldungsFaenger&) = delete;
    MeldungsFaenger& operator=(const MeldungsFaenger&) = delete;

    const std::vector<Meldung>& meldungen() const { return gesammelt(); }
    std::size_t anzahl() const { return gesammelt().size(); }
    const Meldung& letzte() const { return gesammelt().back(); }
    void leere() { gesammelt().clear(); }

private:
    static std::vector<Meldung>& gesammelt() {
        static std::vector<Meldung> meldungen;
        return meldungen;
    }
    static void fange(Fehler& f, int) {
        gesammelt().push_back(
            {f.liefereLabel().str(), f.liefereFunktion().str(), f.liefereDetail().str(), f.liefereLevel()});
    }
    Fehler::AusgabeRoutine alteRoutine_;
};
