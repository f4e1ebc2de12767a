// Input and output file wrappers with the system's open and close messages.
#include "foundation/Datei.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <ostream>
#include <streambuf>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/Meldung.h"

std::int32_t Datei::meldeOeffnen(bool gut, const char* okLabel, const char* funktion) {
    if (gut) {
        melde(okLabel, funktion, dateiName_.liefereGanz(), 'S');
        return 1;
    }
    melde("FILEOPENERROR", funktion, dateiName_.liefereGanz() + ": " + std::strerror(fehlerNummer_), 'E');
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
    strom_ =
        std::make_unique<std::fstream>(dateiName_.liefereGanz().c_str(), std::ios::in | std::ios::binary);
    if (!*strom_) fehlerNummer_ = errno ? errno : ENOENT;
}

std::int32_t IDatei::oeffne() { return meldeOeffnen(strom_ && *strom_, "INPUTFILEOPENED", "IDatei::oeffne"); }

std::int32_t IDatei::schliesse() { return meldeSchliessen("IDatei::schliesse "); }

// ===================================================================
// SichereAusgabe
// ===================================================================

namespace {

// Writes all of a block, through interruptions and partial writes. 0 or errno.
int schreibeAlles(int fd, const char* daten, std::size_t n) {
    while (n > 0) {
        const ssize_t k = ::write(fd, daten, n);
        if (k < 0) {
            if (errno == EINTR) continue;
            return errno ? errno : EIO;
        }
        if (k == 0) return EIO;
        daten += k;
        n -= static_cast<std::size_t>(k);
    }
    return 0;
}

mode_t neueDateiRechte() {
    const mode_t maske = ::umask(0);
    ::umask(maske);
    return 0666 & ~maske;
}

}  // namespace

// A stream buffer over the descriptor that keeps the first error: after it,
// everything written is dropped and the stream turns bad.
class SichereAusgabe::Puffer : public std::streambuf {
public:
    Puffer(int fd, int& fehler) : fd_(fd), fehler_(fehler), daten_(new char[groesse]) {
        setp(daten_.get(), daten_.get() + groesse);
    }
    bool leere() {
        const std::size_t n = static_cast<std::size_t>(pptr() - pbase());
        setp(daten_.get(), daten_.get() + groesse);
        if (fehler_) return false;
        fehler_ = schreibeAlles(fd_, daten_.get(), n);
        return fehler_ == 0;
    }

protected:
    int_type overflow(int_type c) override {
        if (!leere()) return traits_type::eof();
        if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
        *pptr() = traits_type::to_char_type(c);
        pbump(1);
        return c;
    }
    int sync() override { return leere() ? 0 : -1; }

private:
    static constexpr std::size_t groesse = 1 << 16;
    int fd_;
    int& fehler_;
    std::unique_ptr<char[]> daten_;
};

SichereAusgabe::SichereAusgabe(const String& ziel, Art art) : ziel_(ziel) {
    const char* name = ziel_.c_str();
    errno = 0;
    if (art == Art::anhaengen || keineNormaleDatei(name)) {
        const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (art == Art::anhaengen ? O_APPEND : O_TRUNC);
        fd_ = ::open(name, flags, 0666);
        struct stat info;
        if (art == Art::anhaengen && fd_ >= 0 && ::fstat(fd_, &info) == 0 && S_ISREG(info.st_mode))
            anhangAb_ = info.st_size;
    } else {
        // The temporary file sits beside the target, so that the rename
        // stays on one file system.
        const std::string ganz(name);
        const std::size_t schnitt = ganz.rfind('/');
        const std::string verzeichnis = schnitt == std::string::npos ? "" : ganz.substr(0, schnitt + 1);
        // A short enough stem keeps the temporary name within the limit of
        // a name in a directory even for the longest target name.
        const std::string basis =
            (schnitt == std::string::npos ? ganz : ganz.substr(schnitt + 1)).substr(0, 200);
        std::string muster = verzeichnis + "." + basis + ".kiv-XXXXXX";
        fd_ = ::mkstemp(muster.data());
        if (fd_ >= 0) {
            temp_ = String(muster);
            ::fchmod(fd_, neueDateiRechte());
        }
    }
    if (fd_ < 0) fehler_ = errno ? errno : EACCES;
}

SichereAusgabe::~SichereAusgabe() { verwirf(); }

std::ostream& SichereAusgabe::strom() {
    if (!strom_) {
        puffer_ = std::make_unique<Puffer>(fd_, fehler_);
        strom_ = std::make_unique<std::ostream>(puffer_.get());
        if (fd_ < 0) strom_->setstate(std::ios::badbit);
    }
    return *strom_;
}

std::FILE* SichereAusgabe::cStrom() {
    if (!cStrom_ && fd_ >= 0) {
        cStrom_ = ::fdopen(fd_, "w");
        if (!cStrom_) fehler_ = errno ? errno : ENOMEM;
    }
    return cStrom_;
}

int SichereAusgabe::beende() {
    if (fd_ < 0) return fehler_ ? fehler_ : EBADF;
    if (strom_) {
        strom_->flush();
        if (!fehler_ && !*strom_) fehler_ = EIO;
    }
    if (cStrom_ && std::fflush(cStrom_) != 0 && !fehler_) fehler_ = errno ? errno : EIO;
    if (cStrom_ && std::ferror(cStrom_) && !fehler_) fehler_ = EIO;
    // Devices and pipes cannot be synced; only a regular file must be on
    // the disk before it takes the old one's place. Its data and size are
    // what matter; times and other metadata may come later.
    if (!fehler_ && !temp_.istLeer() && ::fdatasync(fd_) != 0) fehler_ = errno;
    if (fehler_ && anhangAb_ >= 0) (void)!::ftruncate(fd_, static_cast<off_t>(anhangAb_));
    int schluss = cStrom_ ? std::fclose(cStrom_) : ::close(fd_);
    if (schluss != 0 && !fehler_) fehler_ = errno ? errno : EIO;
    cStrom_ = nullptr;
    fd_ = -1;
    if (!temp_.istLeer()) {
        if (!fehler_ && std::rename(temp_.c_str(), ziel_.c_str()) != 0) fehler_ = errno ? errno : EIO;
        if (fehler_) ::unlink(temp_.c_str());
        temp_ = String();
    }
    return fehler_;
}

void SichereAusgabe::verwirf() {
    if (fd_ < 0) return;
    if (anhangAb_ >= 0) (void)!::ftruncate(fd_, static_cast<off_t>(anhangAb_));
    if (cStrom_)
        std::fclose(cStrom_);
    else
        ::close(fd_);
    cStrom_ = nullptr;
    fd_ = -1;
    if (!temp_.istLeer()) ::unlink(temp_.c_str());
    temp_ = String();
}

void meldeSchreibFehler(const String& name, int fehlerNummer, const String& funktion) {
    melde("FILE-WRITE-ERROR", funktion, name + ": " + std::strerror(fehlerNummer), 'E');
}

// ===================================================================
// ODatei
// ===================================================================

ODatei::ODatei(const DateiName& dateiName, SichereAusgabe::Art art)
    : Datei(dateiName), ausgabe_(std::make_unique<SichereAusgabe>(dateiName_.liefereGanz(), art)) {
    fehlerNummer_ = ausgabe_->fehlerNummer();
}

ODatei::~ODatei() = default;

std::int32_t ODatei::oeffne() {
    return meldeOeffnen(ausgabe_ && ausgabe_->offen(), "OUTPUTFILEOPENED", "ODatei::oeffne");
}

std::int32_t ODatei::oeffneStill() {
    if (ausgabe_ && ausgabe_->offen()) return 1;
    return meldeOeffnen(false, "", oeffneFunktion());
}

void ODatei::schliesseStill() { ausgabe_.reset(); }

std::int32_t ODatei::beende(const char* funktion) {
    if (!ausgabe_) return 1;
    const int fehler = ausgabe_->beende();
    ausgabe_.reset();
    if (fehler == 0) return 1;
    meldeSchreibFehler(dateiName_.liefereGanz(), fehler, funktion);
    return 0;
}

std::int32_t ODatei::schliesse() {
    if (!ausgabe_) return 1;
    if (!beende("ODatei::schliesse ")) return 0;
    melde("FILECLOSED", "ODatei::schliesse ", dateiName_.liefereGanz(), 'S');
    return 1;
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

bool keineNormaleDatei(const char* name) {
    struct stat info;
    return ::stat(name, &info) == 0 && !S_ISREG(info.st_mode);
}

bool dateiErsetzbar(const char* name, bool schutzBeachten) {
    if (keineNormaleDatei(name)) return ::access(name, W_OK) == 0;
    if (schutzBeachten && schreibgeschuetzt(name)) {
        errno = EACCES;
        return false;
    }
    const std::string ganz(name);
    const std::size_t schnitt = ganz.rfind('/');
    const std::string verzeichnis = schnitt == std::string::npos ? "." : ganz.substr(0, schnitt + 1);
    return ::access(verzeichnis.c_str(), W_OK | X_OK) == 0;
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
    case Schreibmodus::neu: melde("FILE-EXIST", funktion, dateiName.liefereGanz(), 'E'); return 0;
    case Schreibmodus::ueberschreiben:
        if (!dateiErsetzbar(dateiName.liefereGanz().c_str())) {
            melde("FILE-READONLY", funktion, dateiName.liefereGanz(), 'E');
            return 0;
        }
        return 1;
    case Schreibmodus::anhaengen: return 1;
    }
    return 1;
}
