// Helpers of the grammar engine tests: one call, and a table of them.
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

// '<' and '>' in the options stream subject and output through temporary files.
inline MmLauf mmLauf(const std::string& grammatik, const std::string& subjekt,
                     const std::string& optionen = "", std::size_t puffer = 1 << 16) {
    std::FILE* ein = optionen.find('<') != std::string::npos ? std::tmpfile() : nullptr;
    std::FILE* aus = optionen.find('>') != std::string::npos ? std::tmpfile() : nullptr;
    if (ein) std::fwrite(subjekt.data(), 1, subjekt.size(), ein), std::rewind(ein);
    std::string buf(puffer + 1, '\x7f');
    MmLauf l;
    l.ergebnis = mmparse(aus ? static_cast<void*>(aus) : buf.data(), aus ? 0 : std::int32_t(puffer),
                         grammatik.c_str(), ein ? static_cast<const void*>(ein) : subjekt.data(),
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
