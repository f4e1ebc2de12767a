// A progress display that shows nothing, for tests, fuzz targets and
// benchmarks, whose output progress marks would only clutter.
#pragma once

#include <memory>

#include "reporting/BearbeitungsFortschritt.h"

class StilleAnzeige : public BearbeitungsAnzeige {
public:
    void starteAbs(const String&) override {}
    void starteRel(dataInteger, const String&) override {}
    void weiter(dataInteger) override {}
    void beende() override {}
};

inline std::unique_ptr<BearbeitungsAnzeige> stilleFabrik() { return std::make_unique<StilleAnzeige>(); }
