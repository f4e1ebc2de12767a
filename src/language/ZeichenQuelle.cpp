#include "language/ZeichenQuelle.h"

#include <istream>

void ZeichenQuelle::oeffne(std::istream& quellStrom, dataInteger ersteZeile) {
    strom_ = &quellStrom;
    std::streampos p = strom_->tellg();
    basis_ = p == std::streampos(-1) ? -1 : static_cast<long long>(p);
    gelesen_ = 0;
    aktuell_ = {ersteZeile, 0, 0};
    vorher_ = aktuell_;
    zeilenEnde_ = false;
    ende_ = false;
}

int ZeichenQuelle::naechstes() {
    zeilenEnde_ = false;
    if (ende_ || !strom_) {
        ende_ = true;
        return -1;
    }
    int c = strom_->get();
    if (c == std::char_traits<char>::eof()) {
        ende_ = true;
        return -1;
    }
    ++gelesen_;
    if (c == '\r' && strom_->peek() == '\n') {
        strom_->get();
        ++gelesen_;
        c = '\n';
    }
    if (c == '\n' || c == '\r') {
        vorher_ = aktuell_;
        ++aktuell_.zeile;
        aktuell_.spalte = 0;
        aktuell_.offset = gelesen_;
        zeilenEnde_ = true;
        return c;
    }
    ++aktuell_.spalte;
    return c;
}

QuellPosition ZeichenQuelle::position() const { return zeilenEnde_ ? vorher_ : aktuell_; }

void ZeichenQuelle::zeilenText(const QuellPosition& pos, StringPuffer& puffer) {
    puffer.leere();
    if (!strom_ || basis_ < 0) return;
    std::ios_base::iostate zustand = strom_->rdstate();
    strom_->clear();
    if (strom_->seekg(basis_ + pos.offset)) {
        for (int c = strom_->get(); c != std::char_traits<char>::eof() && c != '\n' && c != '\r';
             c = strom_->get())
            puffer.haengeAn(c == '\t' ? ' ' : static_cast<char>(c));
    }
    strom_->clear();
    strom_->seekg(basis_ + gelesen_);
    strom_->setstate(zustand);
}

void ZeichenQuelle::marke(const QuellPosition& pos, StringPuffer& puffer) const {
    puffer.leere();
    for (dataInteger i = 1; i < pos.spalte; ++i) puffer.haengeAn('-');
    puffer.haengeAn('^');
}
