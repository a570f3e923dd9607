#include "runtime/text.h"

#include <cstdint>

#include "runtime/case_mapping.h"

namespace veld {

namespace {

namespace ri = runtime_internal;

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

char AsciiLower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c; }
char AsciiUpper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - ('a' - 'A')) : c; }

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

// Decodes the well-formed UTF-8 sequence (Unicode's table 3-7: no overlong
// forms, no surrogates, nothing above U+10FFFF) that starts at `i`, a byte
// of 0x80 or more, and moves `i` past it. False, with `i` unchanged, when
// the bytes there are not one.
bool NextCodePoint(const uint8_t* bytes, size_t length, size_t& i, char32_t& c) {
  const uint8_t lead = bytes[i];
  size_t count;
  uint8_t low = 0x80;
  uint8_t high = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) {
    count = 1;
    c = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    count = 2;
    c = lead & 0x0F;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    count = 3;
    c = lead & 0x07;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return false;
  }
  if (length - i <= count) return false;
  for (size_t k = 1; k <= count; ++k) {
    const uint8_t b = bytes[i + k];
    if (b < (k == 1 ? low : 0x80) || b > (k == 1 ? high : 0xBF)) return false;
    c = (c << 6) | (b & 0x3F);
  }
  i += count + 1;
  return true;
}

// Walks `text` code point by code point. `map` turns one valid code point
// into its replacement text; ill-formed byte sequences are copied unchanged.
template <class AsciiMap, class CodePointMap>
std::string MapCodePoints(std::string_view text, AsciiMap ascii_map, CodePointMap map) {
  std::string out;
  out.reserve(text.size());
  const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
  const size_t length = text.size();
  size_t i = 0;
  while (i < length) {
    if (bytes[i] < 0x80) {
      out.push_back(ascii_map(static_cast<char>(bytes[i])));
      ++i;
      continue;
    }
    char32_t c;
    if (NextCodePoint(bytes, length, i, c)) {
      map(out, c);
    } else {
      out.push_back(static_cast<char>(bytes[i]));
      ++i;
    }
  }
  return out;
}

void AppendFolded(std::string& out, char32_t c) {
  char32_t folded[3];
  const int count = ri::FullFold(c, folded);
  for (int k = 0; k < count; ++k) AppendUtf8(out, folded[k]);
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
                       [](std::string& out, char32_t c) { AppendUtf8(out, ri::SimpleUpper(c)); });
}

std::string LCase(std::string_view text) {
  return MapCodePoints(text, AsciiLower,
                       [](std::string& out, char32_t c) { AppendUtf8(out, ri::SimpleLower(c)); });
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
