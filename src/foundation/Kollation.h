// German collation of the command language's names (sorted lists, help).
#pragma once
#include "foundation/String.h"

namespace kollation {
// 1 if a sorts after b, -1 if before, 0 if equal: primary ranks (case-free,
// umlauts behind their base letter), then length, then secondary ranks.
int vergleiche(const String& a, const String& b);
// Primary comparison only (used for vocabulary look-up).
int vergleichePrimaer(const String& a, const String& b);
}  // namespace kollation
