// File wrappers: streams with the system's open and close messages.
//
// IDatei opens for binary reading at construction. ODatei writes through a
// SichereAusgabe: the file under the name stays as it was until `beende` or
// `schliesse` has completed the new one. `oeffne` only reports the state of
// the stream ("INPUTFILEOPENED"/"OUTPUTFILEOPENED" or "FILEOPENERROR") and
// gives 1 or 0; `schliesse` closes, reports "FILECLOSED" once and gives 1
// (an ODatei whose data could not be completed reports "FILE-WRITE-ERROR"
// and gives 0). The destructor closes silently; an ODatei not completed by
// then is thrown away.
#pragma once

#include <cstdint>
#include <cstdio>
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
    virtual std::int32_t oeffneStill();
    virtual void schliesseStill();

protected:
    // Shared body of oeffne: report by the stream's state.
    std::int32_t meldeOeffnen(bool gut, const char* okLabel, const char* funktion);
    virtual const char* oeffneFunktion() const = 0;
    std::int32_t meldeSchliessen(const char* funktion);

    DateiName dateiName_;
    std::unique_ptr<std::fstream> strom_;
    int fehlerNummer_ = 0;  // errno of the open attempt
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

// Writes one file so that a failure never costs the file that stood under
// its name. A regular file (or a name not yet taken) is written to a fresh
// temporary file in the same directory, which `beende` flushes, checks, syncs
// and renames over the name; anything that fails on the way (a short write,
// a full disk, a failed close, the program being killed) leaves the old file
// as it was, and the temporary file is removed unless the process died.
// Devices and pipes are written in place and never replaced. Appending
// writes in place too, checks every write, and on a failure cuts the file
// back to the length it had.
class SichereAusgabe {
public:
    enum class Art { ersetzen, anhaengen };
    explicit SichereAusgabe(const String& ziel, Art art = Art::ersetzen);
    SichereAusgabe(const SichereAusgabe&) = delete;
    SichereAusgabe& operator=(const SichereAusgabe&) = delete;
    ~SichereAusgabe();  // without `beende`: the new data is thrown away

    bool offen() const { return fd_ >= 0; }
    // errno of the first failure, 0 while all went well.
    int fehlerNummer() const { return fehler_; }
    // For stream writers; unbuffered by the platform, buffered here.
    std::ostream& strom();
    // For writers in C style. Use one of the two interfaces, not both.
    std::FILE* cStrom();
    // Completes the file. 0, or the errno of the failure; then nothing
    // stands under the name that was not there before.
    int beende();
    // Throws the new data away and keeps the old file.
    void verwirf();

private:
    class Puffer;
    String ziel_;
    String temp_;  // empty when written in place
    int fd_ = -1;
    long long anhangAb_ = -1;  // length before appending, -1 otherwise
    int fehler_ = 0;
    std::unique_ptr<Puffer> puffer_;
    std::unique_ptr<std::ostream> strom_;
    std::FILE* cStrom_ = nullptr;
};

class ODatei : public Datei {
public:
    explicit ODatei(const DateiName& dateiName, SichereAusgabe::Art art = SichereAusgabe::Art::ersetzen);
    ~ODatei() override;
    std::int32_t oeffne() override;
    std::int32_t schliesse() override;
    std::int32_t oeffneStill() override;
    // Throws the new data away.
    void schliesseStill() override;
    // Completes the file without a message when that works; a failure is
    // reported as "FILE-WRITE-ERROR" under `funktion`. 1 or 0.
    std::int32_t beende(const char* funktion);
    // The open stream, or null once closed.
    std::ostream* liefereStrom() { return ausgabe_ ? &ausgabe_->strom() : nullptr; }
    const char* oeffneFunktion() const override { return "ODatei::oeffne"; }

private:
    std::unique_ptr<SichereAusgabe> ausgabe_;
};

// Reports a failed completion of a written file: "FILE-WRITE-ERROR" at level
// E, detail the name and the system's text for the error.
void meldeSchreibFehler(const String& name, int fehlerNummer, const String& funktion);

// Deletes a file: 0, or -1 with errno set.
int loescheDatei(const char* name);

// Whether a new file may take the place of an existing one: not when the
// file is write-protected, or when its directory does not let a file be
// replaced. Devices and pipes only need to be writable. Without
// `schutzBeachten` only the directory counts, as for a plain delete.
bool dateiErsetzbar(const char* name, bool schutzBeachten = true);

// True for an existing name that is not a regular file (a device, a pipe).
bool keineNormaleDatei(const char* name);

// A file exists when it opens for reading and writing without being created.
bool dateiExistiert(const DateiName& dateiName);

// The check that every writing command makes before it writes a file. An
// existing file is
//   neu:            refused with "FILE-EXIST";
//   ueberschreiben: kept until the new file replaces it, "FILE-READONLY" if
//                   it may not be replaced;
//   anhaengen:      kept, the caller opens it for appending.
// Reports go out under `funktion` at level E with the whole name as detail.
// 1: the caller may now open the file; 0: reported, the command stops.
enum class Schreibmodus { neu, ueberschreiben, anhaengen };
std::int32_t pruefeZielDatei(const DateiName& dateiName, Schreibmodus modus, const String& funktion);
