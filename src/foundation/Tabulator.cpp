// Column stops in text streams.
#include "foundation/Tabulator.h"

#include <cstdarg>
#include <ostream>
#include <string>

namespace {

std::int32_t spalteVon(std::ostream& strom) {
    const std::streamoff position = strom.tellp();
    if (position < 0) return 0;
    return position > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(position);
}

std::int16_t alsKurz(int wert) {
    if (wert < 0) return 0;
    return static_cast<std::int16_t>(wert > INT16_MAX ? INT16_MAX : wert);
}

}  // namespace

Tabulator::Tabulator() { stops_[0] = 1; }

void Tabulator::setzeStops(int schritt, int anzahl, ...) {
    schritt_ = alsKurz(schritt);
    anzahlStops_ = alsKurz(anzahl);
    std::va_list stops;
    va_start(stops, anzahl);
    for (int i = 0; i < anzahlStops_; ++i) stops_[i] = static_cast<std::uint16_t>(va_arg(stops, int));
    va_end(stops);
}

void Tabulator::setzeStops(int schritt, std::initializer_list<int> stops) {
    schritt_ = alsKurz(schritt);
    anzahlStops_ = alsKurz(static_cast<int>(stops.size()));
    int i = 0;
    for (int stop : stops) {
        if (i >= anzahlStops_) break;
        stops_[i++] = static_cast<std::uint16_t>(stop);
    }
}

std::int32_t Tabulator::setzeUmbruch(std::int32_t wert) {
    const std::int32_t alt = umbruch_;
    umbruch_ = wert;
    return alt;
}

std::int32_t Tabulator::setzeMindestensEins(std::int32_t wert) {
    const std::int32_t alt = mindestensEins_;
    mindestensEins_ = wert;
    return alt;
}

void Tabulator::beginneZeile(std::ostream& strom) {
    zeilenAnfang_ = spalteVon(strom);
    index_ = -1;
}

std::int32_t Tabulator::stopPosition(std::int32_t i) {
    if (i < 0) return 0;
    if (i < anzahlStops_) return stops_[i];
    const std::int64_t letzter = anzahlStops_ > 0 ? stops_[anzahlStops_ - 1] : 0;
    const std::int64_t position = letzter + (static_cast<std::int64_t>(i) - anzahlStops_ + 1) * schritt_;
    return position > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(position);
}

void Tabulator::strich(std::ostream& strom, std::int32_t i) {
    strom << std::string(static_cast<std::size_t>(stopPosition(i)), '-');
}

void Tabulator::zeilenEnde(std::ostream& strom) {
    strom << '\n';
    strom.flush();
    beginneZeile(strom);
}

void Tabulator::schreibe(std::ostream& strom) {
    std::int32_t spalte = spalteVon(strom) - zeilenAnfang_;
    if (spalte < 0) spalte = 0;
    if (mindestensEins_ == 1 && spalte >= 1) {
        strom << fuellzeichen_;
        ++spalte;
    }
    if (index_ < INT16_MAX) ++index_;
    const std::int32_t ziel = stopPosition(index_);
    if (ziel < spalte) {
        if (umbruch_ != 1) return;  // the text already runs past the stop
        const std::int16_t index = index_;
        zeilenEnde(strom);
        index_ = index;
        spalte = 0;
    }
    if (ziel > spalte) strom << std::string(static_cast<std::size_t>(ziel - spalte), fuellzeichen_);
}

std::ostream& operator<<(std::ostream& strom, Tabulator& tab) {
    tab.schreibe(strom);
    return strom;
}
