// The by-name comparison of the item collection: both names upper-cased,
// neither trimmed.
#ifndef VELD_ITEMS_NAME_MATCH_H_
#define VELD_ITEMS_NAME_MATCH_H_

#include <string>
#include <string_view>

namespace veld {

// Compares names against one fixed name the way the by-name members do:
// equal when their upper-case forms are equal.
class NameMatch {
 public:
  explicit NameMatch(std::string_view name);

  bool operator()(std::string_view name) const;

 private:
  std::string upper_;
};

}  // namespace veld

#endif  // VELD_ITEMS_NAME_MATCH_H_
