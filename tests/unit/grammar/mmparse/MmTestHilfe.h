// Helpers for the grammar engine tests: one call, returning result, output
// and position, and a table of translations checked through it.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "grammar/mmparse/mmparse.h"

using namespace std::literals;

struct MmLauf {
    std::int32_t ergebnis = 0;
    std::string ausgabe;
    std::int32_t position = -99;
};

// With '<' in the options the subject, with '>' the output is a stream over
// a temporary file; otherwise the subject is in memory and the output goes
// into a buffer of `puffer` bytes.
inline MmLauf mmLauf(const std::string& grammatik, const std::string& subjekt,
                     const std::string& optionen = "", std::size_t puffer = 1 << 16) {
    const bool stromEin = optionen.find('<') != std::string::npos;
    const bool stromAus = optionen.find('>') != std::string::npos;
    std::FILE* ein = stromEin ? std::tmpfile() : nullptr;
    std::FILE* aus = stromAus ? std::tmpfile() : nullptr;
    if (ein) std::fwrite(subjekt.data(), 1, subjekt.size(), ein), std::rewind(ein);
    std::string buf(puffer + 1, '\x7f');
    MmLauf l;
    l.ergebnis = mmparse(stromAus ? static_cast<void*>(aus) : buf.data(), stromAus ? 0 : std::int32_t(puffer),
                         grammatik.c_str(), stromEin ? static_cast<const void*>(ein) : subjekt.data(),
                         std::int32_t(subjekt.size()), optionen.c_str(), &l.position);
    if (aus) {
        std::rewind(aus);
        for (int c; (c = std::fgetc(aus)) != EOF;) l.ausgabe.push_back(static_cast<char>(c));
        std::fclose(aus);
    } else if (l.ergebnis > 0) {
        l.ausgabe.assign(buf.data(), std::size_t(l.ergebnis - 1));
    }
    if (ein) std::fclose(ein);
    return l;
}

struct MmFall {
    const char *grammatik, *subjekt;
    std::string_view ausgabe;  // {}: the subject must not match
    const char* optionen = "";
};

template <std::size_t N>
void pruefeFaelle(const MmFall (&faelle)[N]) {
    for (const MmFall& f : faelle) {
        SCOPED_TRACE(std::string("grammar '") + f.grammatik + "' subject '" + f.subjekt + "' " + f.optionen);
        const MmLauf l = mmLauf(f.grammatik, f.subjekt, f.optionen);
        EXPECT_EQ(l.ergebnis, f.ausgabe.data() ? static_cast<std::int32_t>(f.ausgabe.size()) + 1 : 0);
        EXPECT_EQ(l.ausgabe, f.ausgabe);
    }
}
