// Helpers for the grammar engine tests: one call with a buffer, or with
// streams over temporary files, returning result, output and position; and
// a table of translations checked by either.
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

// Subject in memory, output into a buffer of `puffer` bytes.
inline MmLauf mmLauf(const std::string& grammatik, const std::string& subjekt, const char* optionen = "",
                     std::size_t puffer = 4096) {
    std::string buf(puffer + 1, '\x7f');
    MmLauf l;
    l.ergebnis = mmparse(buf.data(), static_cast<std::int32_t>(puffer), grammatik.c_str(), subjekt.data(),
                         static_cast<std::int32_t>(subjekt.size()), optionen, &l.position);
    if (l.ergebnis > 0) l.ausgabe.assign(buf.data(), static_cast<std::size_t>(l.ergebnis - 1));
    return l;
}

// Subject and/or output as streams over temporary files when `optionen`
// holds '<' and/or '>'; otherwise in memory and into a buffer.
inline MmLauf mmStromLauf(const std::string& grammatik, const std::string& subjekt,
                          const std::string& optionen) {
    const bool stromEin = optionen.find('<') != std::string::npos;
    const bool stromAus = optionen.find('>') != std::string::npos;
    MmLauf l;
    std::FILE* ein = std::tmpfile();
    std::FILE* aus = std::tmpfile();
    std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
    std::rewind(ein);
    std::string buf(1 << 16, '\0');
    l.ergebnis = mmparse(stromAus ? static_cast<void*>(aus) : buf.data(),
                         stromAus ? 0 : static_cast<std::int32_t>(buf.size() - 1), grammatik.c_str(),
                         stromEin ? static_cast<const void*>(ein) : subjekt.data(),
                         static_cast<std::int32_t>(subjekt.size()), optionen.c_str(), &l.position);
    std::rewind(aus);
    for (int c; (c = std::fgetc(aus)) != EOF;) l.ausgabe.push_back(static_cast<char>(c));
    if (!stromAus && l.ergebnis > 0) l.ausgabe.assign(buf.data(), static_cast<std::size_t>(l.ergebnis - 1));
    std::fclose(ein);
    std::fclose(aus);
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
        const MmLauf l = mmStromLauf(f.grammatik, f.subjekt, f.optionen);
        EXPECT_EQ(l.ergebnis, f.ausgabe.data() ? static_cast<std::int32_t>(f.ausgabe.size()) + 1 : 0);
        EXPECT_EQ(l.ausgabe, f.ausgabe);
    }
}
