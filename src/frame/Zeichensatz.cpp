#include "frame/Zeichensatz.h"

#include <langinfo.h>
#include <clocale>

#include <cstring>

bool localeIstUtf8() {
    const char* vorher = std::setlocale(LC_CTYPE, nullptr);
    const std::string alt = vorher ? vorher : "C";
    bool utf8 = false;
    if (std::setlocale(LC_CTYPE, "")) {
        const char* satz = nl_langinfo(CODESET);
        utf8 = satz && (std::strcmp(satz, "UTF-8") == 0 || std::strcmp(satz, "utf8") == 0);
    }
    std::setlocale(LC_CTYPE, alt.c_str());
    return utf8;
}

namespace {

// Appends one byte as the terminal should see it.
inline void haengeAn(std::string& aus, unsigned char c, bool steuerPunkte) {
    if (c < 0x7F) {
        aus += static_cast<char>(c);
    } else if (c < 0xA0 && steuerPunkte) {
        aus += '.';
    } else if (c < 0x80) {
        aus += static_cast<char>(c);
    } else {
        aus += static_cast<char>(0xC0 | (c >> 6));
        aus += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::string latin1ZuUtf8(const std::string& text, bool steuerPunkte) {
    std::string aus;
    aus.reserve(text.size() + text.size() / 8);
    for (char c : text) haengeAn(aus, static_cast<unsigned char>(c), steuerPunkte);
    return aus;
}

std::string utf8ZuLatin1(const std::string& text) {
    std::string aus;
    aus.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x80) {
            aus += static_cast<char>(c);
            ++i;
            continue;
        }
        // Length of the sequence from its lead byte; a stray continuation
        // byte or a bad lead counts as one broken byte.
        std::size_t laenge = c >= 0xF0 && c < 0xF8 ? 4 : c >= 0xE0 ? 3 : c >= 0xC0 ? 2 : 1;
        if (c >= 0xF8) laenge = 1;
        std::size_t gelesen = 1;
        unsigned long wert = laenge == 2 ? (c & 0x1F) : laenge == 3 ? (c & 0x0F) : (c & 0x07);
        while (gelesen < laenge && i + gelesen < text.size() &&
               (static_cast<unsigned char>(text[i + gelesen]) & 0xC0) == 0x80) {
            wert = (wert << 6) | (static_cast<unsigned char>(text[i + gelesen]) & 0x3F);
            ++gelesen;
        }
        if (laenge == 1 || gelesen < laenge || wert > 0xFF || wert < 0x80)
            aus += '?';
        else
            aus += static_cast<char>(wert);
        i += gelesen;
    }
    return aus;
}

TerminalFilter::int_type TerminalFilter::overflow(int_type c) {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char b = traits_type::to_char_type(c);
    return xsputn(&b, 1) == 1 ? c : traits_type::eof();
}

std::streamsize TerminalFilter::xsputn(const char* s, std::streamsize n) {
    // Plain ASCII runs go through as they are; only the rest is rebuilt.
    std::streamsize erledigt = 0;
    std::string umgesetzt;
    while (erledigt < n) {
        std::streamsize lauf = erledigt;
        while (lauf < n && static_cast<unsigned char>(s[lauf]) < 0x7F) ++lauf;
        if (lauf > erledigt && ziel_->sputn(s + erledigt, lauf - erledigt) != lauf - erledigt)
            return erledigt;
        erledigt = lauf;
        if (erledigt == n) break;
        umgesetzt.clear();
        while (lauf < n && static_cast<unsigned char>(s[lauf]) >= 0x7F)
            haengeAn(umgesetzt, static_cast<unsigned char>(s[lauf++]), true);
        const auto m = static_cast<std::streamsize>(umgesetzt.size());
        if (ziel_->sputn(umgesetzt.data(), m) != m) return erledigt;
        erledigt = lauf;
    }
    return erledigt;
}

int TerminalFilter::sync() { return ziel_->pubsync(); }

TerminalFilterAnschluss::TerminalFilterAnschluss(std::ostream& strom)
    : strom_(strom), filter_(strom.rdbuf()) {
    strom_.flush();
    strom_.rdbuf(&filter_);
}

TerminalFilterAnschluss::~TerminalFilterAnschluss() {
    strom_.flush();
    // Someone may have put another buffer in meanwhile; leave theirs alone.
    if (strom_.rdbuf() == &filter_) strom_.rdbuf(filter_.ziel());
}
