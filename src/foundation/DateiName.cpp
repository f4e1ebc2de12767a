// File name splitting.
#include "foundation/DateiName.h"

#include <fstream>
#include <ostream>

DateiName programmDatei;

DateiName& DateiName::operator=(const String& ganz) {
    ganz_ = ganz;
    zerlege();
    return *this;
}

void DateiName::zerlege() {
    // The path ends behind the rightmost separator of any of the styles
    // (device ":", bracket directories ">" and "]", "/" and "\").
    int pfadEnde = 0;
    for (char trenner : {':', '>', ']', '/', '\\'}) {
        const int p = ganz_.suchePosition(trenner);
        if (p > pfadEnde) pfadEnde = p;
    }
    pfad_ = ganz_.links(pfadEnde);
    const String rest = ganz_.teil(pfadEnde, ganz_.laenge() - pfadEnde);

    // A point as the first byte starts a hidden name, not an extension.
    const int punkt = rest.suchePosition('.');
    if (punkt >= 2) {
        name_ = rest.links(punkt - 1);
        extension_ = rest.teil(punkt, rest.laenge() - punkt);
    } else {
        name_ = rest;
        extension_ = String();
    }

    // A version suffix stays out of the extension.
    const int version = extension_.suche(String(";"));
    if (version >= 0) extension_ = extension_.links(version);
}

void DateiName::setzeZusammen() { ganz_ = pfad_ + name_ + "." + extension_; }

void DateiName::setzeName(const String& name) {
    name_ = name;
    setzeZusammen();
}

void DateiName::setzeExtension(const String& extension) {
    extension_ = extension;
    setzeZusammen();
}

DateiName DateiName::vervollstaendigt() const {
    if (!pfad_.istLeer()) return *this;
    DateiName daneben = programmDatei;
    daneben.setzeName(name_);
    daneben.setzeExtension(extension_);
    if (std::ifstream(daneben.liefereGanz().c_str()).is_open()) return daneben;
    // An installed program keeps its data apart: bin/../share/kiv/.
    DateiName geteilt(programmDatei.lieferePfad() + "../share/kiv/x");
    geteilt.setzeName(name_);
    geteilt.setzeExtension(extension_);
    if (std::ifstream(geteilt.liefereGanz().c_str()).is_open()) return geteilt;
    return daneben;
}

std::ostream& operator<<(std::ostream& strom, const DateiName& dateiName) {
    return strom << dateiName.liefereGanz();
}
