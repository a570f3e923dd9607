// Collation through ICU at secondary strength: letters compare without
// regard to case but with their accents.
#include <string>

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include "controls/collation.h"

namespace veld::controls_internal {

struct TextCollator::Impl {
  UCollator* collator = nullptr;
};

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

std::string TextCollator::SortKey(std::string_view text) const {
  if (impl_->collator == nullptr) return std::string(text);
  // ucol_getSortKey takes UTF-16; ill-formed UTF-8 becomes U+FFFD.
  UErrorCode status = U_ZERO_ERROR;
  int32_t length16 = 0;
  u_strFromUTF8WithSub(nullptr, 0, &length16, text.data(), static_cast<int32_t>(text.size()),
                       0xFFFD, nullptr, &status);
  std::u16string utf16(static_cast<size_t>(length16), u'\0');
  status = U_ZERO_ERROR;
  u_strFromUTF8WithSub(utf16.data(), length16, nullptr, text.data(),
                       static_cast<int32_t>(text.size()), 0xFFFD, nullptr, &status);
  std::string key(64, '\0');
  int32_t needed =
      ucol_getSortKey(impl_->collator, utf16.data(), length16,
                      reinterpret_cast<uint8_t*>(key.data()), static_cast<int32_t>(key.size()));
  if (needed > static_cast<int32_t>(key.size())) {
    key.resize(static_cast<size_t>(needed));
    needed = ucol_getSortKey(impl_->collator, utf16.data(), length16,
                             reinterpret_cast<uint8_t*>(key.data()), needed);
  }
  // The key ends with a zero byte, which the comparison need not see.
  key.resize(needed > 0 ? static_cast<size_t>(needed - 1) : 0);
  return key;
}

}  // namespace veld::controls_internal
