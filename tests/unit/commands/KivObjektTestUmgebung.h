// Test helper: a root object in its own tree with both command lists, the
// command output captured, messages collected, and a scratch directory for
// image files. Lines run on the current object as they would at the prompt.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "commands/KivEprom.h"
#include "commands/KivObjekt.h"
#include "foundation/MeldungsFaenger.h"
#include "frame/Programm.h"
#include "image/Eprom.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"

class KivUmgebung : public ::testing::Test {
protected:
    void SetUp() override {
        verzeichnis_ = std::filesystem::temp_directory_path() /
                       ("kiv_cmds_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                        "_" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(verzeichnis_);
        std::filesystem::create_directories(verzeichnis_);
        alterStrom_ = kdoAnzeigeStream;
        programm_ = std::make_unique<KivProgramm>("kiv");
        kdoAnzeigeStream = &ausgabe;
        faenger.leere();
    }
    void TearDown() override {
        programm_.reset();
        kdoAnzeigeStream = alterStrom_;
        std::filesystem::remove_all(verzeichnis_);
    }

    // Runs one command on the current object; its result.
    int fuehre(const std::string& zeile) {
        auto* objekt = dynamic_cast<KdoObjekt*>(kdoBaum()->liefereAktuelles());
        AnwKommando anw(zeile);
        return objekt ? objekt->fuehreAus(anw) : -1;
    }
    // Makes the root current again, as "-" does at the prompt.
    void zurWurzel() {
        while (kdoBaum()->liefereAktuelles() != kivWurzel && kdoBaum()->vater()) {}
    }
    KivEprom* aktuell() { return dynamic_cast<KivEprom*>(kdoBaum()->liefereAktuelles()); }

    std::string pfad(const std::string& name) const { return (verzeichnis_ / name).string(); }
    void schreibeDatei(const std::string& name, const std::string& inhalt) const {
        std::ofstream(pfad(name), std::ios::binary) << inhalt;
    }
    std::string liesDatei(const std::string& name) const {
        std::ifstream f(pfad(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(f), {});
    }
    bool gibtDatei(const std::string& name) const { return std::filesystem::exists(pfad(name)); }

    std::string labels() const {
        std::string t;
        for (const Meldung& m : faenger.meldungen()) t += (t.empty() ? "" : ",") + m.label;
        return t;
    }
    const Meldung* meldung(const std::string& label) const {
        for (const Meldung& m : faenger.meldungen())
            if (m.label == label) return &m;
        return nullptr;
    }

    // The bytes at anf..end as hex pairs, "--" for a byte not written.
    static std::string bytes(KivEprom& kiv, adrInteger anf, adrInteger end) {
        std::string t;
        static const char* ziffern = "0123456789ABCDEF";
        for (std::uint64_t a = anf; a <= end; ++a) {
            if (!t.empty()) t += ' ';
            std::uint8_t b = 0;
            if (kiv.eprom->liefereAnzSchr(static_cast<adrInteger>(a)) == 0) {
                t += "--";
                continue;
            }
            kiv.eprom->liefereByte(static_cast<adrInteger>(a), b, 0);
            t += ziffern[b >> 4];
            t += ziffern[b & 15];
        }
        return t;
    }

    MeldungsFaenger faenger;
    std::ostringstream ausgabe;

private:
    std::filesystem::path verzeichnis_;
    std::ostream* alterStrom_ = nullptr;
    std::unique_ptr<KivProgramm> programm_;
};
