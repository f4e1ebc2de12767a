// Test helpers for sums over images: writing and showing bytes, and the
// labels of the messages caught.
#pragma once

#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/MeldungsFaenger.h"
#include "image/Eprom.h"

inline void schreibe(Eprom& eprom, adrInteger adr, const char* bytes, std::size_t anzahl) {
    for (std::size_t i = 0; i < anzahl; ++i)
        eprom.setzeByte(adr + static_cast<adrInteger>(i), static_cast<std::uint8_t>(bytes[i]));
}

inline void schreibe(Eprom& eprom, adrInteger adr, const char* text) {
    schreibe(eprom, adr, text, std::strlen(text));
}

// "12 34 ..." as liefereByte reads them.
inline std::string bytes(Eprom& eprom, adrInteger adr, int anzahl) {
    std::string text;
    char teil[4];
    for (int i = 0; i < anzahl; ++i) {
        std::uint8_t b = 0;
        eprom.liefereByte(adr + static_cast<adrInteger>(i), b, 0);
        std::snprintf(teil, sizeof teil, i ? " %02X" : "%02X", b);
        text += teil;
    }
    return text;
}

inline std::string labels(const MeldungsFaenger& faenger) {
    std::string text;
    for (const auto& m : faenger.meldungen()) text += (text.empty() ? "" : ",") + m.label;
    return text;
}

// 12 34 56 78 9A BC DE F0 at 1000 to 1007.
inline Eprom achtBytes() {
    Eprom eprom;
    schreibe(eprom, 0x1000, "\x12\x34\x56\x78\x9A\xBC\xDE\xF0", 8);
    return eprom;
}
