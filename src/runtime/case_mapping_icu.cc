#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include "runtime/case_mapping.h"

namespace veld::runtime_internal {

char32_t SimpleUpper(char32_t c) {
  return static_cast<char32_t>(u_toupper(static_cast<UChar32>(c)));
}

char32_t SimpleLower(char32_t c) {
  return static_cast<char32_t>(u_tolower(static_cast<UChar32>(c)));
}

int FullFold(char32_t c, char32_t out[3]) {
  UChar source[2];
  int32_t source_length = 0;
  U16_APPEND_UNSAFE(source, source_length, static_cast<UChar32>(c));
  // Full folding of one code point yields at most three UTF-16 units.
  UChar folded[8];
  UErrorCode status = U_ZERO_ERROR;
  const int32_t folded_length =
      u_strFoldCase(folded, 8, source, source_length, U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) {
    out[0] = c;
    return 1;
  }
  int count = 0;
  for (int32_t j = 0; j < folded_length && count < 3;) {
    UChar32 f;
    U16_NEXT_UNSAFE(folded, j, f);
    out[count++] = static_cast<char32_t>(f);
  }
  return count;
}

}  // namespace veld::runtime_internal
