// A root object with both command lists, output and messages caught, and a scratch directory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "commands/KivEprom.h"
#include "commands/KivObjekt.h"
#include "frame/Programm.h"
#include "image/Eprom.h"
#include "language/KdoGlobal.h"
#include "language/KdoKommando.h"
#include "language/KdoListe.h"
#include "language/KdoObjekt.h"
#include "support/Meldungsaufnahme.h"

class KivUmgebung : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::remove_all(verzeichnis_);
        std::filesystem::create_directories(verzeichnis_);
        kdoAnzeigeStream = &ausgabe;
        aufnahme.leere();
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
    // The console output of one command line.
    std::string zeile(const std::string& text, int erwartet) {
        ausgabe.str("");
        EXPECT_EQ(fuehre(text), erwartet) << text;
        return ausgabe.str();
    }
    KivEprom* aktuell() { return dynamic_cast<KivEprom*>(kdoBaum()->liefereAktuelles()); }
    // Makes the root current again, as "-" does at the prompt.
    void zurWurzel() {
        while (kdoBaum()->liefereAktuelles() != kivWurzel && kdoBaum()->vater()) {}
    }
    // A new image, current, with no message caught yet.
    KivEprom& neu(const std::string& datei = "/") {
        zurWurzel();
        EXPECT_EQ(fuehre("neu(" + datei + ")"), 1);
        aufnahme.leere();
        return *aktuell();
    }
    static void setze(KivEprom& kiv, adrInteger adr, std::initializer_list<int> werte) {
        for (int w : werte) kiv.eprom->setzeByte(adr++, static_cast<std::uint8_t>(w));
    }

    std::string pfad(const std::string& name) const { return (verzeichnis_ / name).string(); }
    void schreibeDatei(const std::string& name, const std::string& inhalt) const {
        std::ofstream(pfad(name), std::ios::binary) << inhalt;
    }
    std::string liesDatei(const std::string& name) const {
        std::ifstream f(pfad(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(f), {});
    }
    // Every label caught, the file messages included.
    std::string labels() const {
        std::string t;
        for (const Meldung& m : aufnahme.meldungen()) t += (t.empty() ? "" : ",") + m.label;
        return t;
    }
    // The bytes at anf..end as hex pairs, "--" for a byte not written.
    static std::string bytes(KivEprom& kiv, adrInteger anf, adrInteger end) {
        std::string t;
        for (std::uint64_t a = anf; a <= end; ++a) {
            std::uint8_t b = 0;
            char teil[4] = "--";
            if (kiv.eprom->liefereAnzSchr(static_cast<adrInteger>(a)) != 0 &&
                kiv.eprom->liefereByte(static_cast<adrInteger>(a), b, 0))
                std::snprintf(teil, sizeof teil, "%02X", b);
            t += (t.empty() ? "" : " ") + std::string(teil);
        }
        return t;
    }

    Meldungsaufnahme aufnahme;
    std::ostringstream ausgabe;

private:
    std::filesystem::path verzeichnis_ =
        std::filesystem::temp_directory_path() /
        ("kiv_cmds_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
         ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::ostream* alterStrom_ = kdoAnzeigeStream;
    std::unique_ptr<KivProgramm> programm_ = std::make_unique<KivProgramm>("kiv");
};
