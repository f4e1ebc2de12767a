// Completion at the prompt: what may stand at the cursor of a half-typed
// command line.
//
// It asks the live program, never a list of its own: the command lists of
// the objects (built from the command tables), the signatures' argument
// objects (enumeration values, Bool, image names, file names), the
// keywords of the scanner, and the open images. A command added to a table
// therefore completes without further work.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct Vervollstaendigung {
    // Where the word being completed starts in the line.
    std::size_t anfang = 0;
    // Whole replacements for that word, sorted and without repeats. A
    // directory ends in "/", an object name for `name:` in ":".
    std::vector<std::string> kandidaten;
};

// `zeile` is the line up to the cursor, in the program's own bytes.
Vervollstaendigung vervollstaendige(const std::string& zeile);

// The longest start that all candidates share; letters compared without
// case, written as in the first candidate.
std::string gemeinsamerAnfang(const std::vector<std::string>& kandidaten);
