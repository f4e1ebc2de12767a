// File wrappers: streams with the system's open and close messages.
//
// IDatei opens for binary reading at construction, ODatei truncates or
// creates for text writing. `oeffne` only reports the state of the stream
// ("INPUTFILEOPENED"/"OUTPUTFILEOPENED" or "FILEOPENERROR") and gives 1 or 0;
// `schliesse` closes, reports "FILECLOSED" once and always gives 1. The
// destructor closes silently.
// Covered by tests/unit/foundation/DateiTest.cpp.
#pragma once

#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <memory>

#include "foundation/DateiName.h"

class Datei {
public:
    explicit Datei(const DateiName& dateiName) : dateiName_(dateiName) {}
    Datei(const Datei&) = delete;
    Datei& operator=(const Datei&) = delete;
    virtual ~Datei() = default;
    virtual std::int32_t oeffne() = 0;
    virtual std::int32_t schliesse() = 0;

    const DateiName& liefereDateiName() const { return dateiName_; }
    bool offen() const { return strom_ != nullptr; }

    // For files that a command reads or writes as its data (image files):
    // a good open and the close stay silent, only a failed open is reported,
    // in the same form as `oeffne` reports it.
    std::int32_t oeffneStill();
    void schliesseStill();

protected:
    // Shared body of oeffne: report by the stream's state.
    std::int32_t meldeOeffnen(bool gut, const char* okLabel, const char* funktion);
    virtual const char* oeffneFunktion() const = 0;
    std::int32_t meldeSchliessen(const char* funktion);

    DateiName dateiName_;
    std::unique_ptr<std::fstream> strom_;
    int fehlerNummer_ = 0;   // errno of the open attempt
};

class IDatei : public Datei {
public:
    explicit IDatei(const DateiName& dateiName);
    std::int32_t oeffne() override;
    std::int32_t schliesse() override;
    // The open stream, or null once closed.
    std::istream* liefereStrom() { return strom_.get(); }
    const char* oeffneFunktion() const override { return "IDatei::oeffne"; }

    // Line count kept by readers that work line by line.
    std::int32_t zeilenNummer() const { return zeilenNummer_; }
    void zaehleZeile() { ++zeilenNummer_; }

private:
    std::int32_t zeilenNummer_ = 0;
};

class ODatei : public Datei {
public:
    explicit ODatei(const DateiName& dateiName);
    std::int32_t oeffne() override;
    std::int32_t schliesse() override;
    // The open stream, or null once closed.
    std::ostream* liefereStrom() { return strom_.get(); }
    const char* oeffneFunktion() const override { return "ODatei::oeffne"; }
};

// Deletes a file: 0, or -1 with errno set.
int loescheDatei(const char* name);

// A file exists when it opens for reading and writing without being created.
bool dateiExistiert(const DateiName& dateiName);

// The check that every writing command makes before it writes a file. An
// existing file is
//   neu:            refused with "FILE-EXIST";
//   ueberschreiben: deleted, "FILE-READONLY" if that fails;
//   anhaengen:      kept, the caller opens it for appending.
// Reports go out under `funktion` at level E with the whole name as detail.
// 1: the caller may now open the file; 0: reported, the command stops.
enum class Schreibmodus { neu, ueberschreiben, anhaengen };
std::int32_t pruefeZielDatei(const DateiName& dateiName, Schreibmodus modus, const String& funktion);
