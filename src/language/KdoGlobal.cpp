#include "language/KdoGlobal.h"

Tabulator* dokPosition = nullptr;
std::ostream* kdoAnzeigeStream = nullptr;
