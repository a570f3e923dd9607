#include "runtime/code_page.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/ustring.h>

#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"

namespace veld {

namespace {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

[[noreturn]] void RaiseUnknownCodePage(const std::string& name) {
  RaiseError(errnum::kInvalidProcedureCall, "Unknown code page \"" + name + "\"");
}

void SubstituteEveryUnmappable(const void* /*context*/, UConverterFromUnicodeArgs* args,
                               const UChar* /*units*/, int32_t /*length*/, UChar32 /*code_point*/,
                               UConverterCallbackReason reason, UErrorCode* error) {
  // Resets, clones and closes come here too; they write nothing.
  if (reason > UCNV_IRREGULAR) return;
  *error = U_ZERO_ERROR;
  ucnv_cbFromUWriteSub(args, 0, error);
}

// The ANSI converter of the calling thread. ICU converters carry state and
// are not thread-safe, so each thread keeps its own, one per code-page name
// (the platform may change between calls).
UConverter& AnsiConverter() {
  thread_local std::unordered_map<std::string, ConverterPtr> cache;
  const std::string name = CurrentPlatform().AnsiCodePage();
  auto it = cache.find(name);
  if (it != cache.end()) return *it->second;
  // An empty name would open ICU's default converter; it is a mistake here.
  if (name.empty()) RaiseUnknownCodePage(name);
  UErrorCode status = U_ZERO_ERROR;
  ConverterPtr converter(ucnv_open(name.c_str(), &status));
  // Aliases such as "windows-1252" open with a warning; only failures count.
  if (U_FAILURE(status) || converter == nullptr) RaiseUnknownCodePage(name);
  // "?" rendered in the target code page replaces what it cannot encode,
  // every such character alike: ICU's own substitution would drop those that
  // are ignorable in display (U+034F, U+2060, ...), which Windows does not.
  static constexpr UChar kQuestionMark[] = {u'?'};
  ucnv_setSubstString(converter.get(), kQuestionMark, 1, &status);
  ucnv_setFromUCallBack(converter.get(), &SubstituteEveryUnmappable, nullptr, nullptr, nullptr,
                        &status);
  ucnv_setFallback(converter.get(), false);
  if (U_FAILURE(status)) RaiseUnknownCodePage(name);
  return *cache.emplace(name, std::move(converter)).first->second;
}

std::u16string Utf8ToUtf16(std::string_view utf8) {
  std::u16string out(utf8.size(), u'\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length, utf8.data(),
                       static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
  out.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return out;
}

std::string Utf16ToUtf8(const std::u16string& utf16) {
  std::string out(utf16.size() * 3, '\0');
  int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strToUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &length, utf16.data(),
                     static_cast<int32_t>(utf16.size()), 0xFFFD, nullptr, &status);
  out.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return out;
}

}  // namespace

std::string ToAnsiBytes(std::string_view utf8) {
  UConverter& converter = AnsiConverter();
  const std::u16string utf16 = Utf8ToUtf16(utf8);
  std::string out(static_cast<size_t>(
                      UCNV_GET_MAX_BYTES_FOR_STRING(utf16.size(), ucnv_getMaxCharSize(&converter))),
                  '\0');
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = ucnv_fromUChars(&converter, out.data(), static_cast<int32_t>(out.size()),
                                         utf16.data(), static_cast<int32_t>(utf16.size()), &status);
  out.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
  return out;
}

std::string FromAnsiBytes(std::string_view bytes) {
  UConverter& converter = AnsiConverter();
  std::u16string utf16;
  int32_t capacity = static_cast<int32_t>(bytes.size()) * 2 + 2;
  for (;;) {
    utf16.assign(static_cast<size_t>(capacity), u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = ucnv_toUChars(&converter, utf16.data(), capacity, bytes.data(),
                                         static_cast<int32_t>(bytes.size()), &status);
    if (status == U_BUFFER_OVERFLOW_ERROR) {
      capacity = length + 1;
      continue;
    }
    utf16.resize(U_SUCCESS(status) ? static_cast<size_t>(length) : 0);
    break;
  }
  return Utf16ToUtf8(utf16);
}

}  // namespace veld
