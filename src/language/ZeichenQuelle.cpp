#include "language/ZeichenQuelle.h"

#include <istream>

void ZeichenQuelle::oeffne(std::istream& quellStrom, dataInteger ersteZeile) {
    strom = &quellStrom;
    std::streampos p = strom->tellg();
    basis = p == std::streampos(-1) ? -1 : static_cast<long long>(p);
    gelesen = 0;
    aktuell = {ersteZeile, 0, 0};
    vorher = aktuell;
    zeilenEnde = false;
    ende = false;
}

int ZeichenQuelle::naechstes() {
    zeilenEnde = false;
    if (ende || !strom) {
        ende = true;
        return -1;
    }
    int c = strom->get();
    if (c == std::char_traits<char>::eof()) {
        ende = true;
        return -1;
    }
    ++gelesen;
    if (c == '\r' && strom->peek() == '\n') {
        strom->get();
        ++gelesen;
        c = '\n';
    }
    if (c == '\n' || c == '\r') {
        vorher = aktuell;
        ++aktuell.zeile;
        aktuell.spalte = 0;
        aktuell.offset = gelesen;
        zeilenEnde = true;
        return c;
    }
    ++aktuell.spalte;
    return c;
}

QuellPosition ZeichenQuelle::position() const { return zeilenEnde ? vorher : aktuell; }

void ZeichenQuelle::zeilenText(const QuellPosition& pos, StringPuffer& puffer) {
    puffer.leere();
    if (!strom || basis < 0) return;
    std::ios_base::iostate zustand = strom->rdstate();
    strom->clear();
    if (strom->seekg(basis + pos.offset)) {
        for (int c = strom->get(); c != std::char_traits<char>::eof() && c != '\n' && c != '\r'; c = strom->get())
            puffer.haengeAn(c == '\t' ? ' ' : static_cast<char>(c));
    }
    strom->clear();
    strom->seekg(basis + gelesen);
    strom->setstate(zustand);
}

void ZeichenQuelle::marke(const QuellPosition& pos, StringPuffer& puffer) const {
    puffer.leere();
    for (dataInteger i = 1; i < pos.spalte; ++i) puffer.haengeAn('-');
    puffer.haengeAn('^');
}
