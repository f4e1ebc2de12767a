// DateiName: a file name split into path, name and extension.
//
// The split understands the host's and foreign path styles alike: the path
// ends behind the last of ":", ">", "]", "/", "\", so device names and
// bracketed directories stay in the path, and a ";" version suffix stays out
// of the extension (it remains in the whole text).
#pragma once

#include <iosfwd>

#include "foundation/String.h"

class DateiName {
public:
    DateiName() = default;
    DateiName(const String& ganz) : ganz_(ganz) { zerlege(); }
    DateiName(const char* ganz) : ganz_(ganz) { zerlege(); }
    DateiName(const DateiName&) = default;
    DateiName& operator=(const DateiName&) = default;
    DateiName& operator=(const String& ganz);

    const String& liefereGanz() const { return ganz_; }
    const String& liefereName() const { return name_; }
    const String& liefereExtension() const { return extension_; }
    const String& lieferePfad() const { return pfad_; }

    // Replace one part and rebuild the whole as pfad + name + "." + extension
    // (the point stands even for an empty extension).
    void setzeName(const String& name);
    void setzeExtension(const String& extension);

    // A name without path, for a file that belongs to the system, is looked
    // for beside the program (`programmDatei`'s path with this name and
    // extension), then in ../share/kiv/ from there; when neither exists, the
    // one beside the program is named. A name with a path is returned as it is.
    DateiName vervollstaendigt() const;

private:
    void zerlege();
    void setzeZusammen();

    String pfad_;
    String name_;
    String extension_;
    String ganz_;
};

std::ostream& operator<<(std::ostream& strom, const DateiName& dateiName);

// The program's own path, set at start-up (from /proc/self/exe where the
// system has it, else from the first command-line word).
extern DateiName programmDatei;
