// TextFeld: owned byte texts on the growing pointer array.
#include "foundation/DynArray.h"

#include <cstring>

std::int32_t TextFeld::haengeAn(const char* text) {
    const char* quelle = text ? text : "";
    const std::size_t laenge = std::strlen(quelle);
    char* kopie = new char[laenge + 1];
    std::memcpy(kopie, quelle, laenge + 1);
    // Past the array's limit every index lands on the last slot; free what
    // stood there so that the overwrite does not lose a text.
    char*& platz = feld_[fuellstand_];
    delete[] platz;
    platz = kopie;
    const std::int32_t index = fuellstand_;
    if (fuellstand_ < feld_.maximum()) ++fuellstand_;
    position_ = fuellstand_;
    return index;
}

void TextFeld::gibFrei(std::int32_t i) {
    if (i < 0 || i >= fuellstand_) return;
    char*& platz = feld_[i];
    delete[] platz;
    platz = nullptr;
}

std::int32_t TextFeld::erstes() {
    position_ = 0;
    if (fuellstand_ > 0) {
        aktuelle_ = feld_[0];
        hatAktuelle_ = 1;
        return 1;
    }
    aktuelle_ = nullptr;
    hatAktuelle_ = 0;
    return 0;
}

const char* TextFeld::naechstes() {
    const char* ergebnis = aktuelle_;
    if (hatAktuelle_) {
        ++position_;
        if (position_ < fuellstand_)
            aktuelle_ = feld_[position_];
        else
            hatAktuelle_ = 0;  // the last entry stays current
    }
    return ergebnis;
}

const char* TextFeld::text(std::int32_t i) const {
    if (i < 0 || i >= fuellstand_) return nullptr;
    return feld_[i];
}

void TextFeld::leere() {
    for (std::int32_t i = 0; i < fuellstand_; ++i) {
        char*& platz = feld_[i];
        delete[] platz;
        platz = nullptr;
    }
    fuellstand_ = 0;
    position_ = 0;
    aktuelle_ = nullptr;
    hatAktuelle_ = 0;
}
