#include "tablestore/connection_string.h"

#include "runtime/text.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/case_folding.h"

namespace veld {

namespace {

[[noreturn]] void RaiseBadFormat() {
  RaiseError(errnum::kDbFailure, "Format of the initialization string is not valid.");
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

ConnectionString ConnectionString::Parse(std::string_view text) {
  ConnectionString result;
  size_t at = 0;
  while (at < text.size()) {
    // The key runs to the first "=" that is not doubled.
    std::string key;
    bool found_equals = false;
    while (at < text.size()) {
      const char c = text[at];
      if (c == '=') {
        if (at + 1 < text.size() && text[at + 1] == '=') {
          key += '=';
          at += 2;
          continue;
        }
        found_equals = true;
        ++at;
        break;
      }
      if (c == ';') break;
      key += c;
      ++at;
    }
    const std::string_view trimmed_key = TrimBlanks(key);
    if (!found_equals) {
      if (!trimmed_key.empty()) RaiseBadFormat();
      ++at;  // an empty pair
      continue;
    }
    if (trimmed_key.empty()) RaiseBadFormat();

    while (at < text.size() && IsBlank(text[at])) ++at;
    std::string value;
    if (at < text.size() && (text[at] == '"' || text[at] == '\'')) {
      const char quote = text[at++];
      bool closed = false;
      while (at < text.size()) {
        if (text[at] == quote) {
          if (at + 1 < text.size() && text[at + 1] == quote) {
            value += quote;
            at += 2;
            continue;
          }
          closed = true;
          ++at;
          break;
        }
        value += text[at++];
      }
      if (!closed) RaiseBadFormat();
      while (at < text.size() && IsBlank(text[at])) ++at;
      if (at < text.size() && text[at] != ';') RaiseBadFormat();
    } else {
      const size_t end = text.find(';', at);
      const size_t stop = end == std::string_view::npos ? text.size() : end;
      value = TrimBlanks(text.substr(at, stop - at));
      at = stop;
    }
    ++at;  // the ";"
    result.pairs_.emplace_back(std::string(trimmed_key), std::move(value));
  }
  return result;
}

namespace {

// True when `value` is one quoted value: an opening quote, its content with
// that quote doubled inside, the closing quote, then at most blanks.
bool IsOneQuotedValue(std::string_view value) {
  if (value.empty() || (value.front() != '"' && value.front() != '\'')) return false;
  const char quote = value.front();
  size_t at = 1;
  while (at < value.size()) {
    if (value[at] != quote) {
      ++at;
      continue;
    }
    if (at + 1 < value.size() && value[at + 1] == quote) {
      at += 2;
      continue;
    }
    return TrimBlanks(value.substr(at + 1)).empty();
  }
  return false;
}

}  // namespace

std::string QuoteConnectionValue(std::string_view value) {
  if (IsOneQuotedValue(value)) return std::string(value);
  const bool bare =
      value.find(';') == std::string_view::npos &&
      (value.empty() || (!IsBlank(value.front()) && !IsBlank(value.back()) &&
                         value.front() != '"' && value.front() != '\'' && value.front() != '='));
  if (bare) return std::string(value);
  std::string quoted = "\"";
  for (char c : value) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  return quoted + "\"";
}

std::optional<std::string> ConnectionString::Get(std::string_view key) const {
  for (auto it = pairs_.rbegin(); it != pairs_.rend(); ++it) {
    if (EqualsIgnoreCase(it->first, key)) return it->second;
  }
  return std::nullopt;
}

}  // namespace veld
