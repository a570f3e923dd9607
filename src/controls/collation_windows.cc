// Collation on Windows: the sort keys LCMapStringEx makes for the locale,
// ignoring case. String sort, not word sort: hyphens and apostrophes count
// as the symbols they are (word sort would skip them), as in ICU's
// collation, so that the sortable forms of numbers and dates, which start
// with sign characters, keep their order.
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <string>

#include <windows.h>

#include "controls/collation.h"

namespace veld::controls_internal {

struct TextCollator::Impl {
  std::wstring locale;
  std::wstring utf16;  // scratch, reused from key to key
};

TextCollator::TextCollator(const std::string& locale_id) : impl_(std::make_unique<Impl>()) {
  impl_->locale.assign(locale_id.begin(), locale_id.end());
  if (!::IsValidLocaleName(impl_->locale.c_str())) impl_->locale = LOCALE_NAME_INVARIANT;
}

TextCollator::~TextCollator() = default;

void TextCollator::AppendSortKey(std::string_view text, std::string& out) {
  std::wstring& utf16 = impl_->utf16;
  utf16.resize(text.size());
  const int length16 =
      text.empty() ? 0
                   : ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           utf16.data(), static_cast<int>(utf16.size()));
  const DWORD flags = LCMAP_SORTKEY | NORM_IGNORECASE | SORT_STRINGSORT;
  const int needed = ::LCMapStringEx(impl_->locale.c_str(), flags, utf16.data(), length16, nullptr,
                                     0, nullptr, nullptr, 0);
  if (needed <= 0) return;
  const size_t start = out.size();
  out.resize(start + static_cast<size_t>(needed));
  ::LCMapStringEx(impl_->locale.c_str(), flags, utf16.data(), length16,
                  reinterpret_cast<LPWSTR>(out.data() + start), needed, nullptr, nullptr, 0);
  // The key ends with a zero byte, which the comparison need not see.
  out.resize(start + static_cast<size_t>(needed) - 1);
}

}  // namespace veld::controls_internal
