// Collation through ICU at secondary strength: letters compare without
// regard to case but with their accents.
#include <unicode/ucol.h>

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

int TextCollator::Compare(std::string_view a, std::string_view b) const {
  if (impl_->collator == nullptr) return a.compare(b);
  UErrorCode status = U_ZERO_ERROR;
  const UCollationResult result =
      ucol_strcollUTF8(impl_->collator, a.data(), static_cast<int32_t>(a.size()), b.data(),
                       static_cast<int32_t>(b.size()), &status);
  if (U_FAILURE(status)) return a.compare(b);
  return static_cast<int>(result);
}

}  // namespace veld::controls_internal
