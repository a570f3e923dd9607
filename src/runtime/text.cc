#include "runtime/text.h"

#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace veld {

namespace {

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c; }
char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - ('a' - 'A')) : c; }

void AppendUtf8(std::string& out, UChar32 c) {
  char buffer[U8_MAX_LENGTH];
  int32_t length = 0;
  U8_APPEND_UNSAFE(buffer, length, c);
  out.append(buffer, static_cast<size_t>(length));
}

// Walks `text` code point by code point. `map` turns one valid code point
// into its replacement text; ill-formed byte sequences are copied unchanged.
template <class AsciiMap, class CodePointMap>
std::string MapCodePoints(std::string_view text, AsciiMap ascii_map, CodePointMap map) {
  std::string out;
  out.reserve(text.size());
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const auto length = static_cast<int32_t>(text.size());
  int32_t i = 0;
  while (i < length) {
    if (bytes[i] < 0x80) {
      out.push_back(ascii_map(static_cast<char>(bytes[i])));
      ++i;
      continue;
    }
    const int32_t start = i;
    UChar32 c;
    U8_NEXT(bytes, i, length, c);
    if (c < 0) {
      out.append(text.data() + start, static_cast<size_t>(i - start));
    } else {
      map(out, c);
    }
  }
  return out;
}

void AppendFolded(std::string& out, UChar32 c) {
  UChar source[2];
  int32_t source_length = 0;
  U16_APPEND_UNSAFE(source, source_length, c);
  // Full folding of one code point yields at most three UTF-16 units.
  UChar folded[8];
  UErrorCode status = U_ZERO_ERROR;
  const int32_t folded_length =
      u_strFoldCase(folded, 8, source, source_length, U_FOLD_CASE_DEFAULT, &status);
  if (U_FAILURE(status)) {
    AppendUtf8(out, c);
    return;
  }
  for (int32_t j = 0; j < folded_length;) {
    UChar32 f;
    U16_NEXT_UNSAFE(folded, j, f);
    AppendUtf8(out, f);
  }
}

}  // namespace

std::string LTrim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string() : std::string(text.substr(first));
}

std::string RTrim(std::string_view text) {
  const size_t last = text.find_last_not_of(' ');
  return last == std::string_view::npos ? std::string() : std::string(text.substr(0, last + 1));
}

std::string Trim(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::string();
  const size_t last = text.find_last_not_of(' ');
  return std::string(text.substr(first, last - first + 1));
}

std::string UCase(std::string_view text) {
  return MapCodePoints(text, AsciiUpper,
                       [](std::string& out, UChar32 c) { AppendUtf8(out, u_toupper(c)); });
}

std::string LCase(std::string_view text) {
  return MapCodePoints(text, AsciiLower,
                       [](std::string& out, UChar32 c) { AppendUtf8(out, u_tolower(c)); });
}

std::string FoldCase(std::string_view text) {
  return MapCodePoints(text, AsciiLower, AppendFolded);
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b)) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
      if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
    }
    return true;
  }
  return FoldCase(a) == FoldCase(b);
}

}  // namespace veld
