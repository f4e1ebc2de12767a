// Fehler: the one door for every message of the system.
//
// Building a Fehler reports at once: it counts the message per level and per
// label, raises the pending control status (the mechanism behind
// `imFehlerfall`), applies the per-label output limits and hands the message
// to the installed output routine. Nothing is queued.
//
//   Fehler("CMD-NOSUCHCMD", "KdoListe::interpretiere ", detail, 'E');
//
// Levels: D debug, S status (one line), I W E F (boxed).
#pragma once

#include <cstdint>
#include <iosfwd>
#include <sstream>

#include "foundation/String.h"

class Tabulator;

class Fehler {
public:
    Fehler(const String& label, const String& funktion, const String& detail, char level);
    // The stream's accumulated text becomes the detail.
    Fehler(const String& label, const String& funktion, std::ostringstream& textStrom, char level);

    // Writes this message in its shape (line or box) to `strom`.
    std::ostream& ausgabe(std::ostream& strom) const;

    const String& liefereLabel() const { return label_; }
    const String& liefereFunktion() const { return funktion_; }
    const String& liefereDetail() const { return detail_; }
    char liefereLevel() const { return level_; }

    // Module state to 0 (prefix and per-label lists stay).
    static void init();
    // Returns the pending control status and clears it.
    static int holeStatus();
    static void anzeigeStatistik();

    // A single letter E F I S W sets that level's status; anything else is a
    // label (status 0 removes the label's entry).
    static void setzeStatus(const String& name, int status);
    static int liefereLevelStatus(char level);
    static void begrenzeAusgabe(const String& label, std::uint16_t anzahl, char level, int ausgabeArt);
    static void hebeBegrenzungAuf(const String& label);
    // Messages of `label` seen under its present limit, or -1 without one.
    static std::int64_t liefereBegrenzungsZaehler(const String& label);
    // The table of `anzeigeImFehlerfall`; statusTexte has four entries.
    static void anzeigeStatus(std::ostream& strom, Tabulator& tab, const String statusTexte[4]);
    // Per-label occurrence counts in the form of FehlerStatistik::anzeige.
    static void anzeigeLabelStatistik(std::ostream& strom, const String& label);

    using AusgabeRoutine = void (*)(Fehler& fehler, int ausgabeArt);
    using ZusatzZeile = String (*)();

    static String fehlerPrefix;
    static std::int32_t anzahlF, anzahlE, anzahlW, anzahlI, anzahlS;
    static std::int32_t statusF, statusE, statusW, statusI, statusS;
    static std::int32_t anstehenderStatus;
    static AusgabeRoutine fehlerAusgabeRoutine;
    static ZusatzZeile zusatzZeile;
    static std::int32_t debugAusgabe;
    static std::int32_t einrueckung, eingerueckt;
    static char begrenzungGlobalLevel;
    static std::int32_t begrenzungGlobalArt;

private:
    void melde();
    String label_;
    String funktion_;
    String detail_;
    char level_;
};
