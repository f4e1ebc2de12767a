// Built only with the editline library; see CMakeLists.txt.
#ifdef KIV_LIBEDIT
#include "frame/Zeileneditor.h"

#include <histedit.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "frame/Vervollstaendigung.h"
#include "frame/Zeichensatz.h"
#include "reporting/Fehler.h"

namespace {

// The library decodes the terminal's bytes by LC_CTYPE; the rest of the
// program must keep the C locale, so the user's one holds only while the
// library works.
class NutzerLocale {
public:
    NutzerLocale() {
        const char* jetzt = std::setlocale(LC_CTYPE, nullptr);
        alt_ = jetzt ? jetzt : "C";
        std::setlocale(LC_CTYPE, "");
    }
    ~NutzerLocale() { std::setlocale(LC_CTYPE, alt_.c_str()); }
    NutzerLocale(const NutzerLocale&) = delete;
    NutzerLocale& operator=(const NutzerLocale&) = delete;

private:
    std::string alt_;
};

Zeileneditor* editorVon(EditLine* el) {
    void* daten = nullptr;
    el_get(el, EL_CLIENTDATA, &daten);
    return static_cast<Zeileneditor*>(daten);
}

bool legeVerzeichnisAn(const std::string& pfad) {
    for (std::size_t p = 1; p <= pfad.size(); ++p) {
        if (p < pfad.size() && pfad[p] != '/') continue;
        const std::string teil = pfad.substr(0, p);
        if (mkdir(teil.c_str(), 0700) != 0 && errno != EEXIST) return false;
    }
    return true;
}

}  // namespace

struct Zeileneditor::Bibliothek {
    EditLine* el = nullptr;
    History* historie = nullptr;
    HistEvent ereignis{};

    static char* prompt(EditLine* el) { return const_cast<char*>(editorVon(el)->prompt_.c_str()); }
    static unsigned char tab(EditLine* el, int) { return editorVon(el)->vervollstaendigeAmCursor(); }
    static unsigned char abbruch(EditLine* el, int) {
        editorVon(el)->abgebrochen_ = true;
        return CC_EOF;
    }
    // With the terminal's own signal keys off while editing, Ctrl-Z asks
    // for the stop itself; the library restores the terminal around it.
    static unsigned char halt(EditLine*, int) {
        kill(0, SIGTSTP);
        return CC_REDISPLAY;
    }
};

Zeileneditor::Zeileneditor(bool utf8) : utf8_(utf8), el_(std::make_unique<Bibliothek>()), strom_(this) {
    NutzerLocale locale;
    el_->el = el_init("kiv", stdin, stdout, stderr);
    el_->historie = history_init();
    EditLine* el = el_->el;
    history(el_->historie, &el_->ereignis, H_SETSIZE, HISTORIE_GROESSE);
    history(el_->historie, &el_->ereignis, H_SETUNIQUE, 1);
    el_set(el, EL_CLIENTDATA, static_cast<void*>(this));
    el_set(el, EL_EDITOR, "emacs");
    el_set(el, EL_SIGNAL, 1);
    el_set(el, EL_PROMPT, &Bibliothek::prompt);
    el_set(el, EL_HIST, history, el_->historie);
    // Ctrl-C and Ctrl-Z reach the editor as keys instead of signals, so a
    // half-typed line can be dropped without losing the program.
    el_set(el, EL_SETTY, "-d", "-isig", nullptr);
    // The wide form keeps the names as given; the narrow one copies them
    // and never frees the copies.
    el_wset(el, EL_ADDFN, L"kiv-complete", L"complete a name", &Bibliothek::tab);
    el_wset(el, EL_ADDFN, L"kiv-interrupt", L"drop the line", &Bibliothek::abbruch);
    el_wset(el, EL_ADDFN, L"kiv-suspend", L"stop the program", &Bibliothek::halt);
    el_set(el, EL_BIND, "^I", "kiv-complete", nullptr);
    el_set(el, EL_BIND, "^C", "kiv-interrupt", nullptr);
    el_set(el, EL_BIND, "^Z", "kiv-suspend", nullptr);
    el_set(el, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(el, EL_BIND, "^U", "vi-kill-line-prev", nullptr);
    el_set(el, EL_BIND, "^W", "ed-delete-prev-word", nullptr);
    el_set(el, EL_BIND, "\\e[1~", "ed-move-to-beg", nullptr);
    el_set(el, EL_BIND, "\\e[H", "ed-move-to-beg", nullptr);
    el_set(el, EL_BIND, "\\e[4~", "ed-move-to-end", nullptr);
    el_set(el, EL_BIND, "\\e[F", "ed-move-to-end", nullptr);
    el_set(el, EL_BIND, "\\e[3~", "ed-delete-next-char", nullptr);
    datei_ = historienDatei();
    if (!datei_.empty()) history(el_->historie, &el_->ereignis, H_LOAD, datei_.c_str());
}

Zeileneditor::~Zeileneditor() {
    history_end(el_->historie);
    el_end(el_->el);
}

std::string Zeileneditor::historienDatei() {
    const char* zustand = std::getenv("XDG_STATE_HOME");
    // Relative paths are invalid there and must be ignored.
    if (zustand && zustand[0] == '/') return std::string(zustand) + "/kiv/history";
    const char* heim = std::getenv("HOME");
    if (heim && heim[0] != '\0') return std::string(heim) + "/.local/state/kiv/history";
    return std::string();
}

void Zeileneditor::zeigePrompt(const std::string& prompt) {
    prompt_ = utf8_ ? latin1ZuUtf8(prompt, true) : prompt;
    // The rest of a line cut at its maximum length is already typed: it is
    // read behind a printed prompt, as from a plain stream.
    if (gptr() < egptr()) std::cout << prompt << std::flush;
}

Zeileneditor::int_type Zeileneditor::underflow() {
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    std::cout.flush();
    std::cerr.flush();
    for (;;) {
        abgebrochen_ = false;
        letzterTab_.clear();
        int anzahl = 0;
        const char* text = nullptr;
        {
            NutzerLocale locale;
            text = el_gets(el_->el, &anzahl);
        }
        if (abgebrochen_) {
            std::fputs("^C\n", stdout);
            std::fflush(stdout);
            continue;
        }
        if (!text || anzahl <= 0) return traits_type::eof();
        std::string zeile(text, static_cast<std::size_t>(anzahl));
        if (zeile.back() != '\n') zeile += '\n';
        merke(zeile);
        zeile_ = utf8_ ? utf8ZuLatin1(zeile) : zeile;
        setg(zeile_.data(), zeile_.data(), zeile_.data() + zeile_.size());
        return traits_type::to_int_type(*gptr());
    }
}

void Zeileneditor::merke(const std::string& zeile) {
    std::string eintrag = zeile.substr(0, zeile.size() - 1);
    if (eintrag.empty() || eintrag[0] == ' ' || eintrag[0] == '\t') return;
    history(el_->historie, &el_->ereignis, H_ENTER, eintrag.c_str());
    if (datei_.empty() || gewarnt_) return;
    const auto schnitt = datei_.rfind('/');
    const bool ok = legeVerzeichnisAn(datei_.substr(0, schnitt)) &&
                    history(el_->historie, &el_->ereignis, H_SAVE, datei_.c_str()) >= 0;
    // Typed lines may name private files: for the owner's eyes only.
    if (ok) chmod(datei_.c_str(), 0600);
    if (!ok) {
        gewarnt_ = true;
        Fehler("KIV-HISTORY-NOTSAVED", "Zeileneditor::merke", String(datei_.c_str()), 'W');
    }
}

unsigned char Zeileneditor::vervollstaendigeAmCursor() {
    const LineInfo* info = el_line(el_->el);
    // The line and the cursor, to know a second Tab on an unchanged line.
    const auto stand = [this] {
        const LineInfo* jetzt = el_line(el_->el);
        return std::string(jetzt->buffer, static_cast<std::size_t>(jetzt->lastchar - jetzt->buffer)) + '\0' +
               std::to_string(jetzt->cursor - jetzt->buffer);
    };
    const std::string bisher(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
    const std::string zeile = utf8_ ? utf8ZuLatin1(bisher) : bisher;
    const Vervollstaendigung v = vervollstaendige(zeile);
    if (v.kandidaten.empty()) return CC_REFRESH_BEEP;

    const std::string wort = zeile.substr(v.anfang);
    const std::string neu = gemeinsamerAnfang(v.kandidaten);
    if (neu.size() > wort.size() || (neu.size() == wort.size() && neu != wort)) {
        // One program byte per character the editor holds, both ways.
        el_deletestr(el_->el, static_cast<int>(wort.size()));
        el_insertstr(el_->el, (utf8_ ? latin1ZuUtf8(neu) : neu).c_str());
        if (v.kandidaten.size() == 1) return CC_REFRESH;
        // Still open: as in the shell, the next Tab lists the choices.
        letzterTab_ = stand();
        return CC_REFRESH_BEEP;
    }
    if (v.kandidaten.size() == 1) return CC_NORM;

    // Nothing to add: the first Tab beeps, the second lists the choices.
    if (letzterTab_ != stand()) {
        letzterTab_ = stand();
        return CC_REFRESH_BEEP;
    }
    std::size_t breite = 0;
    for (const std::string& k : v.kandidaten) breite = std::max(breite, k.size());
    breite += 2;
    winsize fenster{};
    const std::size_t spalten = ioctl(STDOUT_FILENO, TIOCGWINSZ, &fenster) == 0 && fenster.ws_col > 0
                                    ? std::max<std::size_t>(1, fenster.ws_col / breite)
                                    : 1;
    std::string liste = "\n";
    for (std::size_t i = 0; i < v.kandidaten.size(); ++i) {
        const std::string& k = v.kandidaten[i];
        liste += utf8_ ? latin1ZuUtf8(k, true) : k;
        if ((i + 1) % spalten == 0 || i + 1 == v.kandidaten.size())
            liste += '\n';
        else
            liste.append(breite - k.size(), ' ');
    }
    std::fputs(liste.c_str(), stdout);
    std::fflush(stdout);
    return CC_REDISPLAY;
}

#endif  // KIV_LIBEDIT
