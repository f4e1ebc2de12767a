// How foundation code reports: through a hook that the message reporter
// (one layer up) installs when it starts, so that foundation depends on no
// layer above it.
//
//   melde("FELDZUGROSS", "DynArray::DynArray()", detail, 'W');
//
// Before a reporter is installed, a message goes to the error console as
// one plain line, so that nothing is lost.
#pragma once

#include "foundation/String.h"

using MeldeFunktion = void (*)(const String& label, const String& funktion, const String& detail, char level);

// Installs the reporter; null restores the plain fallback.
void setzeMelder(MeldeFunktion melder);

void melde(const String& label, const String& funktion, const String& detail, char level);
