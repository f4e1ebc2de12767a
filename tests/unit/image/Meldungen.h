// Image test fixture: messages caught, progress quiet, temporary files removed.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "image/Eprom.h"
#include "support/Meldungsaufnahme.h"
#include "support/StilleAnzeige.h"

namespace bildtest {

class MitMeldungen : public ::testing::Test {
protected:
    void SetUp() override { BearbeitungsFortschritt::standardFabrik = stilleFabrik; }
    void TearDown() override {
        BearbeitungsFortschritt::standardFabrik = alteFabrik_;
        for (const auto& n : dateien_) std::remove(n.c_str());
    }

    std::string datei(const std::string& name) {
        dateien_.push_back("image_test_" + name);
        return dateien_.back();
    }
    std::string schreibeDatei(const std::string& name, const std::string& inhalt) {
        std::string n = datei(name);
        std::ofstream(n, std::ios::binary) << inhalt;
        return n;
    }
    // The byte at `a`, or -1 where the image refuses the read.
    static int byteAn(Eprom& e, adrInteger a) {
        std::uint8_t b = 0;
        return e.liefereByte(a, b, 0) ? b : -1;
    }

    Meldungsaufnahme aufnahme;

private:
    BearbeitungsAnzeigeFabrik alteFabrik_ = BearbeitungsFortschritt::standardFabrik;
    std::vector<std::string> dateien_;
};

}  // namespace bildtest
