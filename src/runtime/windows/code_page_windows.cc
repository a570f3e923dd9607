// The ANSI code page conversions on Windows: MultiByteToWideChar and
// WideCharToMultiByte, with the code page the platform names.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <cctype>
#include <string>

#include <windows.h>

#include "runtime/code_page.h"
#include "runtime/windows/wide_text.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

[[noreturn]] void RaiseUnknownCodePage(const std::string& name) {
  RaiseError(errnum::kInvalidProcedureCall, "Unknown code page \"" + name + "\"");
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// The Windows code page number of a code page name as the platforms give
// them ("windows-1252", "ISO-8859-7", "cp437", "UTF-8", ...); 0 when unknown.
UINT CodePageNumber(const std::string& name) {
  const std::string lower = Lower(name);
  auto number_after = [&](const std::string& prefix) -> UINT {
    if (lower.size() <= prefix.size() || lower.compare(0, prefix.size(), prefix) != 0) return 0;
    UINT value = 0;
    for (size_t i = prefix.size(); i < lower.size(); ++i) {
      if (!std::isdigit(static_cast<unsigned char>(lower[i])) || value > 100000) return 0;
      value = value * 10 + static_cast<UINT>(lower[i] - '0');
    }
    return value;
  };
  if (UINT n = number_after("windows-")) return n;
  if (UINT n = number_after("cp")) return n;
  if (UINT n = number_after("iso-8859-"); n >= 1 && n <= 16) return 28590 + n;
  static const struct {
    const char* name;
    UINT number;
  } kNamed[] = {{"utf-8", CP_UTF8}, {"us-ascii", 20127}, {"shift_jis", 932}, {"gb2312", 936},
                {"gbk", 936},       {"big5", 950},       {"euc-kr", 51949},  {"koi8-r", 20866},
                {"koi8-u", 21866},  {"euc-jp", 20932},   {"gb18030", 54936}};
  for (const auto& named : kNamed) {
    if (lower == named.name) return named.number;
  }
  return 0;
}

UINT AnsiCodePageNumber() {
  const std::string name = CurrentPlatform().AnsiCodePage();
  const UINT number = CodePageNumber(name);
  if (number == 0 || !::IsValidCodePage(number)) RaiseUnknownCodePage(name);
  return number;
}

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// Appends `units` in code page `number`: "?" for each character the code
// page cannot encode, without best-fit replacements.
void AppendEncoded(UINT number, const wchar_t* units, int count, std::string& out) {
  if (count == 0) return;
  const bool utf8 = number == CP_UTF8;
  const DWORD flags = utf8 ? 0 : WC_NO_BEST_FIT_CHARS;
  const char* question = utf8 ? nullptr : "?";
  const int length =
      ::WideCharToMultiByte(number, flags, units, count, nullptr, 0, question, nullptr);
  const size_t start = out.size();
  out.resize(start + static_cast<size_t>(length));
  ::WideCharToMultiByte(number, flags, units, count, out.data() + start, length, question, nullptr);
}

}  // namespace

std::string ToAnsiBytes(std::string_view utf8) {
  const UINT number = AnsiCodePageNumber();
  const std::wstring utf16 = Widen(utf8);
  std::string out;
  out.reserve(utf16.size());
  // Characters outside the BMP are converted one by one, so that each one
  // the code page lacks becomes one "?", not one per UTF-16 unit.
  size_t run = 0;
  for (size_t i = 0; i < utf16.size(); ++i) {
    if (!IsHighSurrogate(utf16[i]) || i + 1 == utf16.size()) continue;
    AppendEncoded(number, utf16.data() + run, static_cast<int>(i - run), out);
    if (number == CP_UTF8 || number == 54936) {
      AppendEncoded(number, utf16.data() + i, 2, out);
    } else {
      out.push_back('?');
    }
    run = ++i + 1;
  }
  AppendEncoded(number, utf16.data() + run, static_cast<int>(utf16.size() - run), out);
  return out;
}

std::string FromAnsiBytes(std::string_view bytes) {
  const UINT number = AnsiCodePageNumber();
  if (bytes.empty()) return std::string();
  const int length =
      ::MultiByteToWideChar(number, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::wstring utf16(static_cast<size_t>(length), L'\0');
  ::MultiByteToWideChar(number, 0, bytes.data(), static_cast<int>(bytes.size()), utf16.data(),
                        length);
  return Narrow(utf16);
}

}  // namespace veld
