#include "foundation/Abbruch.h"

#include <cstdlib>
#include <iostream>

void brichAb(std::ostream& strom, const char* text, bool zeilenEnde) {
    strom << text;
    if (zeilenEnde) strom << '\n';
    strom.flush();
    std::exit(1);
}

void zusicherungVerletzt(const char* text) {
    std::cerr << "Assertion failed: " << text << std::endl;
    std::abort();
}
