// Collation through ICU at secondary strength: letters compare without
// regard to case but with their accents.
#include <algorithm>
#include <string>

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include "controls/collation.h"

namespace veld::controls_internal {

struct TextCollator::Impl {
  UCollator* collator = nullptr;
  std::u16string utf16;  // scratch, reused from key to key

  void AppendKey(std::string_view text, std::string& out);
};

void TextCollator::Impl::AppendKey(std::string_view text, std::string& out) {
  if (collator == nullptr) {
    out.append(text);
    return;
  }
  // ucol_getSortKey takes UTF-16; ill-formed UTF-8 becomes U+FFFD. A UTF-16
  // form never has more units than the UTF-8 form has bytes.
  if (utf16.size() < text.size()) utf16.resize(text.size());
  UErrorCode status = U_ZERO_ERROR;
  int32_t length16 = 0;
  u_strFromUTF8WithSub(utf16.data(), static_cast<int32_t>(utf16.size()), &length16, text.data(),
                       static_cast<int32_t>(text.size()), 0xFFFD, nullptr, &status);
  if (U_FAILURE(status)) length16 = 0;
  const size_t start = out.size();
  size_t room = std::max<size_t>(64, text.size() * 4);
  out.resize(start + room);
  int32_t needed =
      ucol_getSortKey(collator, utf16.data(), length16,
                      reinterpret_cast<uint8_t*>(out.data() + start), static_cast<int32_t>(room));
  if (needed > static_cast<int32_t>(room)) {
    room = static_cast<size_t>(needed);
    out.resize(start + room);
    needed = ucol_getSortKey(collator, utf16.data(), length16,
                             reinterpret_cast<uint8_t*>(out.data() + start), needed);
  }
  // The key ends with a zero byte, which the comparison need not see.
  out.resize(start + (needed > 0 ? static_cast<size_t>(needed - 1) : 0));
}

TextCollator::TextCollator(const std::string& locale_id) : impl_(std::make_unique<Impl>()) {
  UErrorCode status = U_ZERO_ERROR;
  impl_->collator = ucol_open(locale_id.c_str(), &status);
  if (U_FAILURE(status)) {
    status = U_ZERO_ERROR;
    impl_->collator = ucol_open("", &status);
  }
  if (impl_->collator != nullptr) {
    status = U_ZERO_ERROR;
    ucol_setStrength(impl_->collator, UCOL_SECONDARY);
  }
}

TextCollator::~TextCollator() {
  if (impl_->collator != nullptr) ucol_close(impl_->collator);
}

void TextCollator::AppendSortKey(std::string_view text, std::string& out) {
  impl_->AppendKey(text, out);
}

}  // namespace veld::controls_internal
