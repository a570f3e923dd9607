// The classic runtime's string functions on UTF-8 text: blank trimming and
// Unicode case (the case-insensitive comparison is public, in
// veld/runtime/case_folding.h, and included here).
//
// None of these fails on ill-formed UTF-8: byte sequences that are not
// well-formed UTF-8 are copied to the result unchanged.
#ifndef VELD_RUNTIME_TEXT_H_
#define VELD_RUNTIME_TEXT_H_

#include <string>
#include <string_view>

#include "veld/runtime/case_folding.h"

namespace veld {

// Trim / LTrim / RTrim: remove the space character U+0020 from both ends,
// the start or the end. Tabs, line breaks and no-break spaces are kept, as the
// classic runtime keeps them.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
std::string RTrim(std::string_view text);

// UCase / LCase: every letter mapped to its upper / lower case form by the
// Unicode simple case mappings (locale-independent root rules). A letter maps
// to one letter, so "ß" stays "ß" and "Σ" always lowers to "σ", the way the
// classic runtime's per-character case tables behave. Other characters are
// unchanged.
std::string UCase(std::string_view text);
std::string LCase(std::string_view text);

}  // namespace veld

#endif  // VELD_RUNTIME_TEXT_H_
