// Case-insensitive comparison of UTF-8 text, as the classic runtime's keyed
// lookups do it (collection keys, names compared without regard to case).
//
// Public because KeyedCollection, a template in a public header, folds its
// keys with it. Never fails on ill-formed UTF-8: every byte sequence that is
// not well-formed UTF-8 (a stray continuation byte, a truncated sequence, an
// overlong form, an encoded surrogate) is copied to the result unchanged, so
// two keys that differ only in such bytes stay different.
#ifndef VELD_RUNTIME_CASE_FOLDING_H_
#define VELD_RUNTIME_CASE_FOLDING_H_

#include <string>
#include <string_view>

#include "veld/export.h"

namespace veld {

// The Unicode full case folding of `text` (default folding, not the Turkic
// variant): two strings that differ only in case fold to the same string,
// including "Straße" and "STRASSE", "ÄPFEL" and "äpfel". No normalisation: a
// precomposed "Ä" and "A" followed by a combining diaeresis fold differently.
VELD_EXPORT std::string FoldCase(std::string_view text);

// True when the two strings are equal after FoldCase.
VELD_EXPORT bool EqualsIgnoreCase(std::string_view a, std::string_view b);

}  // namespace veld

#endif  // VELD_RUNTIME_CASE_FOLDING_H_
