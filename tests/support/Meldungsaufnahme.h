// Catches every message raised while an instance lives instead of printing
// it: as a record, and as the text the console and the log would show.
// Instances nest; the innermost one catches.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "reporting/Fehler.h"

struct Meldung {
    std::string label, funktion, detail;
    char level = 0;
    int art = 0;  // output kind: 0 shown, 1 suppressed, 2 log only

    std::string satz() const { return label + "|" + funktion + "|" + detail + "|" + level; }
};

class Meldungsaufnahme {
public:
    Meldungsaufnahme() : alteRoutine_(Fehler::fehlerAusgabeRoutine), aeussere_(aktiv()) {
        if (!aeussere_) {
            Fehler::init();
            Fehler::fehlerPrefix = "%KIV-";
        }
        Fehler::fehlerAusgabeRoutine = &nimmAuf;
        aktiv() = this;
    }
    ~Meldungsaufnahme() {
        Fehler::fehlerAusgabeRoutine = alteRoutine_;
        aktiv() = aeussere_;
        if (!aeussere_) Fehler::zusatzZeile = nullptr;
    }
    Meldungsaufnahme(const Meldungsaufnahme&) = delete;
    Meldungsaufnahme& operator=(const Meldungsaufnahme&) = delete;

    const std::vector<Meldung>& meldungen() const { return meldungen_; }
    std::size_t anzahl() const { return meldungen_.size(); }
    // The last message, or an empty one, so that a missing message fails its
    // check instead of ending the run.
    const Meldung& letzte() const { return meldungen_.empty() ? keine() : meldungen_.back(); }
    void leere() { meldungen_.clear(), konsole.clear(), log.clear(), gezaehlt = 0; }

    std::vector<Meldung> mit(const std::string& label) const {
        std::vector<Meldung> r;
        for (const auto& m : meldungen_)
            if (m.label == label) r.push_back(m);
        return r;
    }
    // Labels in order, S-level messages (file opened/closed and the like) left out.
    std::vector<std::string> labels() const {
        std::vector<std::string> r;
        for (const auto& m : meldungen_)
            if (m.level != 'S') r.push_back(m.label);
        return r;
    }

    std::string konsole, log;
    long gezaehlt = 0;         // every message, also when not kept
    bool mitschreiben = true;  // off for runs of many thousand messages

    static const Meldung& keine() {
        static const Meldung m{};
        return m;
    }

private:
    static Meldungsaufnahme*& aktiv() {
        static Meldungsaufnahme* a = nullptr;
        return a;
    }
    static void nimmAuf(Fehler& f, int art) {
        Meldungsaufnahme& a = *aktiv();
        ++a.gezaehlt;
        if (!a.mitschreiben) return;
        a.meldungen_.push_back({f.liefereLabel().str(), f.liefereFunktion().str(), f.liefereDetail().str(),
                                f.liefereLevel(), art});
        if (art == 1) return;
        std::ostringstream o;
        f.ausgabe(o);
        if (art != 2) a.konsole += o.str();
        a.log += o.str();
    }

    Fehler::AusgabeRoutine alteRoutine_;
    Meldungsaufnahme* aeussere_;
    std::vector<Meldung> meldungen_;
};
