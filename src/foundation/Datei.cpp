// Input and output file wrappers with the system's open and close messages.
// Covered by tests/unit/foundation/DateiTest.cpp.
#include "foundation/Datei.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "foundation/Meldung.h"

std::int32_t Datei::meldeOeffnen(bool gut, const char* okLabel, const char* funktion) {
    if (gut) {
        melde(okLabel, funktion, dateiName_.liefereGanz(), 'S');
        return 1;
    }
    melde("FILEOPENERROR", funktion,
           dateiName_.liefereGanz() + ": " + std::strerror(fehlerNummer_), 'E');
    return 0;
}

std::int32_t Datei::oeffneStill() {
    if (strom_ && *strom_) return 1;
    return meldeOeffnen(false, "", oeffneFunktion());
}

void Datei::schliesseStill() {
    if (!strom_) return;
    strom_->close();
    strom_.reset();
}

std::int32_t Datei::meldeSchliessen(const char* funktion) {
    if (!strom_) return 1;
    strom_->close();
    strom_.reset();
    melde("FILECLOSED", funktion, dateiName_.liefereGanz(), 'S');
    return 1;
}

IDatei::IDatei(const DateiName& dateiName) : Datei(dateiName) {
    errno = 0;
    strom_ = std::make_unique<std::fstream>(dateiName_.liefereGanz().c_str(),
                                            std::ios::in | std::ios::binary);
    if (!*strom_) fehlerNummer_ = errno ? errno : ENOENT;
}

std::int32_t IDatei::oeffne() {
    return meldeOeffnen(strom_ && *strom_, "INPUTFILEOPENED", "IDatei::oeffne");
}

std::int32_t IDatei::schliesse() {
    return meldeSchliessen("IDatei::schliesse ");
}

ODatei::ODatei(const DateiName& dateiName) : Datei(dateiName) {
    errno = 0;
    strom_ = std::make_unique<std::fstream>(dateiName_.liefereGanz().c_str(),
                                            std::ios::out | std::ios::trunc);
    if (!*strom_) fehlerNummer_ = errno ? errno : EACCES;
}

std::int32_t ODatei::oeffne() {
    return meldeOeffnen(strom_ && *strom_, "OUTPUTFILEOPENED", "ODatei::oeffne");
}

std::int32_t ODatei::schliesse() {
    return meldeSchliessen("ODatei::schliesse ");
}

namespace {

// A file that nobody may write to. The platform would let the owner of the
// directory delete it; the system treats such a file as protected.
bool schreibgeschuetzt(const char* name) {
    namespace fs = std::filesystem;
    std::error_code fehler;
    const fs::file_status status = fs::status(name, fehler);
    if (fehler || !fs::exists(status)) return false;
    const fs::perms schreiben = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return (status.permissions() & schreiben) == fs::perms::none;
}

}  // namespace

int loescheDatei(const char* name) {
    if (schreibgeschuetzt(name)) {
        errno = EACCES;
        return -1;
    }
    return std::remove(name) == 0 ? 0 : -1;
}

bool dateiExistiert(const DateiName& dateiName) {
    const char* name = dateiName.liefereGanz().c_str();
    std::fstream probe(name, std::ios::in | std::ios::out);
    if (probe) return true;
    // A write-protected file refuses the probe but is there all the same.
    return schreibgeschuetzt(name);
}

std::int32_t pruefeZielDatei(const DateiName& dateiName, Schreibmodus modus, const String& funktion) {
    if (!dateiExistiert(dateiName)) return 1;
    switch (modus) {
    case Schreibmodus::neu:
        melde("FILE-EXIST", funktion, dateiName.liefereGanz(), 'E');
        return 0;
    case Schreibmodus::ueberschreiben:
        if (loescheDatei(dateiName.liefereGanz().c_str()) == -1) {
            melde("FILE-READONLY", funktion, dateiName.liefereGanz(), 'E');
            return 0;
        }
        return 1;
    case Schreibmodus::anhaengen:
        return 1;
    }
    return 1;
}
