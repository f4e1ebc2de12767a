// The table of control statuses that `anzeigeImFehlerfall` shows.
#include <ostream>

#include "foundation/Tabulator.h"
#include "reporting/Fehler.h"
#include "reporting/FehlerListen.h"

namespace {
const String& statusText(const String statusTexte[4], int status) {
    static const String leer;
    return status >= 0 && status < 4 ? statusTexte[status] : leer;
}
}  // namespace

void Fehler::anzeigeStatus(std::ostream& strom, Tabulator& tab, const String statusTexte[4]) {
    const std::pair<char, std::int32_t> levels[] = {
        {'F', statusF}, {'E', statusE}, {'W', statusW}, {'I', statusI}, {'S', statusS}};
    bool irgendeiner = false;
    for (auto [l, s] : levels) irgendeiner |= s != 0;
    if (irgendeiner) {
        strom << "Level" << tab << "Status";
        tab.zeilenEnde(strom);
        tab.strich(strom, 1);
        tab.zeilenEnde(strom);
        for (auto [l, s] : levels) {
            if (s == 0) continue;
            strom << l << tab << statusText(statusTexte, s);
            tab.zeilenEnde(strom);
        }
    }
    tab.zeilenEnde(strom);
    strom << "Label" << tab << "Status";
    tab.zeilenEnde(strom);
    tab.strich(strom, 1);
    tab.zeilenEnde(strom);
    for (const auto& [label, s] : FehlerListen::instanz().status) {
        strom << label << tab << statusText(statusTexte, s);
        tab.zeilenEnde(strom);
    }
}
