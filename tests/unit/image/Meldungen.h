// Test fixture pieces for the image tests: captures every message the
// reporter lets through, in its printed shape, and gives temporary files.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "image/Eprom.h"
#include "reporting/BearbeitungsFortschritt.h"
#include "reporting/Fehler.h"
#include "support/StilleAnzeige.h"

namespace bildtest {

struct Meldung {
    std::string label, funktion, detail;
    char level;
    int art;  // output kind: 0 shown, 1 suppressed, 2 log only
};

// Indexing past the end gives an empty message, so that a missing message
// fails its check instead of ending the whole run.
struct MeldungsListe : std::vector<Meldung> {
    const Meldung& operator[](std::size_t i) const {
        static const Meldung keine{};
        return i < size() ? std::vector<Meldung>::operator[](i) : keine;
    }
};

inline std::vector<Meldung>* aufnahme = nullptr;
inline std::string* konsole = nullptr;

inline void nimmAuf(Fehler& f, int art) {
    if (aufnahme)
        aufnahme->push_back({f.liefereLabel().str(), f.liefereFunktion().str(), f.liefereDetail().str(),
                             f.liefereLevel(), art});
    if (konsole && art != 1) {
        std::ostringstream o;
        f.ausgabe(o);
        *konsole += o.str();
    }
}

class MitMeldungen : public ::testing::Test {
protected:
    void SetUp() override {
        alteFabrik = BearbeitungsFortschritt::standardFabrik;
        BearbeitungsFortschritt::standardFabrik = stilleFabrik;
        Fehler::init();
        Fehler::fehlerPrefix = "%KIV-";
        Fehler::fehlerAusgabeRoutine = nimmAuf;
        aufnahme = &meldungen;
        konsole = &ausgabe;
    }
    void TearDown() override {
        BearbeitungsFortschritt::standardFabrik = alteFabrik;
        Fehler::zusatzZeile = nullptr;
        aufnahme = nullptr;
        konsole = nullptr;
        for (const auto& n : dateien) std::remove(n.c_str());
    }

    // Messages of one label, shown or not, ignoring the file open/close
    // status lines.
    MeldungsListe mit(const std::string& label) const {
        MeldungsListe r;
        for (const auto& m : meldungen)
            if (m.label == label) r.push_back(m);
        return r;
    }
    // Labels of all messages except the S-level file messages.
    std::vector<std::string> labels() const {
        std::vector<std::string> r;
        for (const auto& m : meldungen)
            if (m.level != 'S') r.push_back(m.label);
        return r;
    }

    // The k-th last message apart from the S-level file messages.
    const Meldung& letzte(std::size_t k = 0) const {
        static const Meldung keine{};
        for (auto it = meldungen.rbegin(); it != meldungen.rend(); ++it)
            if (it->level != 'S' && k-- == 0) return *it;
        return keine;
    }

    std::string datei(const std::string& name) {
        std::string n = "image_test_" + name;
        dateien.push_back(n);
        return n;
    }
    std::string schreibeDatei(const std::string& name, const std::string& inhalt) {
        std::string n = datei(name);
        std::ofstream(n, std::ios::binary) << inhalt;
        return n;
    }
    static std::string liesDatei(const std::string& n) {
        std::ifstream f(n, std::ios::binary);
        std::ostringstream o;
        o << f.rdbuf();
        return o.str();
    }
    // The byte at `a`, or -1 where the image refuses the read.
    static int byteAn(Eprom& e, adrInteger a) {
        std::uint8_t b = 0;
        return e.liefereByte(a, b, 0) ? b : -1;
    }
    static bool gibtEs(const std::string& n) { return std::ifstream(n).good(); }

    BearbeitungsAnzeigeFabrik alteFabrik = nullptr;
    std::vector<Meldung> meldungen;
    std::string ausgabe;
    std::vector<std::string> dateien;
};

}  // namespace bildtest
