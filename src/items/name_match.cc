#include "items/name_match.h"

#include "runtime/text.h"

namespace veld {

namespace {

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

char AsciiUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

NameMatch::NameMatch(std::string_view name) : upper_(UCase(name)) {}

bool NameMatch::operator()(std::string_view name) const {
  // Collections are walked name by name, so the common ASCII case avoids the
  // Unicode mapping. An ASCII name upper-cases to ASCII, which can still equal
  // the upper case of a non-ASCII name (dotless i gives I), so compare with
  // upper_ either way.
  if (!IsAscii(name)) return UCase(name) == upper_;
  if (name.size() != upper_.size()) return false;
  for (size_t i = 0; i < name.size(); ++i) {
    if (AsciiUpper(name[i]) != upper_[i]) return false;
  }
  return true;
}

}  // namespace veld
