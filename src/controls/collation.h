// The text comparison a list control sorts by: case-insensitive collation of
// a locale (accents still count), as the platform's list control compares.
#ifndef VELD_CONTROLS_COLLATION_H_
#define VELD_CONTROLS_COLLATION_H_

#include <memory>
#include <string>
#include <string_view>

namespace veld::controls_internal {

class TextCollator {
 public:
  // `locale_id` as in RegionalSettings ("de-DE").
  explicit TextCollator(const std::string& locale_id);
  ~TextCollator();
  TextCollator(const TextCollator&) = delete;
  TextCollator& operator=(const TextCollator&) = delete;

  // Appends to `out` a key of `text` whose byte order (as std::string_view
  // compares) is the collation order. Built once per text, so that a sort
  // compares keys, not texts; a sort of many texts builds all its keys into
  // one string.
  void AppendSortKey(std::string_view text, std::string& out);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace veld::controls_internal

#endif  // VELD_CONTROLS_COLLATION_H_
