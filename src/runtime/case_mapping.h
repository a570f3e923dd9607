// The Unicode case data that UCase, LCase and FoldCase apply code point by
// code point: ICU's on POSIX, Win32's on Windows.
#ifndef VELD_RUNTIME_CASE_MAPPING_H_
#define VELD_RUNTIME_CASE_MAPPING_H_

namespace veld::runtime_internal {

// The simple (one to one) upper and lower case mappings; `c` itself when it
// has none.
char32_t SimpleUpper(char32_t c);
char32_t SimpleLower(char32_t c);

// The full case folding of `c` into `out`: one to three code points.
// Returns how many.
int FullFold(char32_t c, char32_t out[3]);

}  // namespace veld::runtime_internal

#endif  // VELD_RUNTIME_CASE_MAPPING_H_
