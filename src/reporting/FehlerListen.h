// The reporter's three per-label lists: control status, output limits and
// occurrence counts. Keyed by the label, kept in the collation order in
// which `anzeigeImFehlerfall` lists them.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>

#include "foundation/String.h"

struct FehlerStatistik {
    std::int32_t anzahlE = 0, anzahlW = 0, anzahlI = 0, anzahlS = 0;
    void increment(char level);
    void anzeige(std::ostream& strom, const String& label) const;
};

struct FehlerAusgabeBegrenzung {
    std::uint16_t anzahl = 0;   // messages still shown
    char level = 0;             // level the limit is set at
    std::uint32_t zaehler = 0;  // messages seen under this limit
    std::int32_t ausgabeArt = 0;
    void setzeAusgabeBegrenzung(std::uint16_t anzahl, char level, std::int32_t ausgabeArt);
    // 1: show normally; 0: the limit is used up, use `ausgabeArt`.
    int decrement(char level);
};

struct FehlerLabelKleiner {
    bool operator()(const std::string& a, const std::string& b) const;
};

struct FehlerListen {
    std::map<std::string, std::int32_t, FehlerLabelKleiner> status;
    std::map<std::string, FehlerAusgabeBegrenzung, FehlerLabelKleiner> begrenzung;
    std::map<std::string, FehlerStatistik, FehlerLabelKleiner> statistik;
    static FehlerListen& instanz();
};
