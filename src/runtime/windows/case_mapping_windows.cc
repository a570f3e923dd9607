// Case data on Windows: the simple mappings from LCMapStringEx with the
// invariant locale; full folding from the Unicode Character Database's
// CaseFolding.txt (statuses C and F), which Win32 has no call for. The table
// is generated at build time (see this directory's CMake rules).
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <algorithm>
#include <cstdint>
#include <iterator>

#include <windows.h>

#include "runtime/case_mapping.h"

namespace veld::runtime_internal {

namespace {

struct Folding {
  char32_t from;
  char32_t to[3];
};

constexpr Folding kFoldings[] = {
#include "case_folding_table.inc"
};

int ToUtf16(char32_t c, wchar_t units[2]) {
  if (c < 0x10000) {
    units[0] = static_cast<wchar_t>(c);
    return 1;
  }
  c -= 0x10000;
  units[0] = static_cast<wchar_t>(0xD800 + (c >> 10));
  units[1] = static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
  return 2;
}

// `c` mapped by LCMapStringEx with `flags`; `c` when the result is not one
// code point.
char32_t Mapped(char32_t c, DWORD flags) {
  wchar_t source[2];
  const int length = ToUtf16(c, source);
  wchar_t mapped[4];
  const int mapped_length =
      ::LCMapStringEx(LOCALE_NAME_INVARIANT, flags, source, length, mapped, 4, nullptr, nullptr, 0);
  if (mapped_length == 1 && (mapped[0] < 0xD800 || mapped[0] > 0xDFFF)) return mapped[0];
  if (mapped_length == 2 && mapped[0] >= 0xD800 && mapped[0] <= 0xDBFF && mapped[1] >= 0xDC00 &&
      mapped[1] <= 0xDFFF) {
    return 0x10000 + ((static_cast<char32_t>(mapped[0]) - 0xD800) << 10) +
           (static_cast<char32_t>(mapped[1]) - 0xDC00);
  }
  return c;
}

}  // namespace

char32_t SimpleUpper(char32_t c) { return Mapped(c, LCMAP_UPPERCASE); }

char32_t SimpleLower(char32_t c) { return Mapped(c, LCMAP_LOWERCASE); }

int FullFold(char32_t c, char32_t out[3]) {
  const auto* found = std::lower_bound(std::begin(kFoldings), std::end(kFoldings), c,
                                       [](const Folding& f, char32_t key) { return f.from < key; });
  if (found == std::end(kFoldings) || found->from != c) {
    out[0] = c;
    return 1;
  }
  int count = 0;
  for (char32_t to : found->to) {
    if (to != 0) out[count++] = to;
  }
  return count;
}

}  // namespace veld::runtime_internal
