// Helpers for the grammar engine tests: one call with a buffer, or with
// streams over temporary files, returning result, output and position.
#pragma once

#include <cstdio>
#include <string>

#include "grammar/mmparse/mmparse.h"

struct MmLauf {
    std::int32_t ergebnis;
    std::string ausgabe;
    std::int32_t position;
};

// Subject in memory, output into a buffer of `puffer` bytes.
inline MmLauf mmLauf(const std::string& grammatik, const std::string& subjekt, const char* optionen = "",
                     std::size_t puffer = 4096) {
    std::string buf(puffer + 1, '\x7f');
    MmLauf l{0, "", -99};
    l.ergebnis = mmparse(buf.data(), static_cast<std::int32_t>(puffer), grammatik.c_str(), subjekt.data(),
                         static_cast<std::int32_t>(subjekt.size()), optionen, &l.position);
    if (l.ergebnis > 0) l.ausgabe.assign(buf.data(), static_cast<std::size_t>(l.ergebnis - 1));
    return l;
}

// Subject and/or output as streams over temporary files; `optionen` should
// hold '<' and/or '>' as wanted. Without '>' the output goes to a buffer.
inline MmLauf mmStromLauf(const std::string& grammatik, const std::string& subjekt,
                          const std::string& optionen) {
    MmLauf l{0, "", -99};
    std::FILE* ein = std::tmpfile();
    std::FILE* aus = std::tmpfile();
    std::fwrite(subjekt.data(), 1, subjekt.size(), ein);
    std::rewind(ein);
    bool stromEin = optionen.find('<') != std::string::npos;
    bool stromAus = optionen.find('>') != std::string::npos;
    std::string buf(1 << 16, '\0');
    const void* s = stromEin ? static_cast<const void*>(ein) : subjekt.data();
    void* o = stromAus ? static_cast<void*>(aus) : buf.data();
    l.ergebnis = mmparse(o, stromAus ? 0 : static_cast<std::int32_t>(buf.size() - 1), grammatik.c_str(), s,
                         static_cast<std::int32_t>(subjekt.size()), optionen.c_str(), &l.position);
    if (stromAus) {
        std::rewind(aus);
        for (int c; (c = std::fgetc(aus)) != EOF;) l.ausgabe.push_back(static_cast<char>(c));
    } else if (l.ergebnis > 0) {
        l.ausgabe.assign(buf.data(), static_cast<std::size_t>(l.ergebnis - 1));
    }
    std::fclose(ein);
    std::fclose(aus);
    return l;
}
