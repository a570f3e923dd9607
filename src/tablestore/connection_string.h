// Reading OLE DB style connection strings: "key=value" pairs separated by
// ";". Keys compare ignoring case and surrounding blanks; a value may be put
// in double or single quotes (the quote doubled inside stands for itself),
// which lets it hold ";"; unquoted values are trimmed. "==" in a key is a
// literal "=". Empty pairs are skipped; when a key repeats, the last value
// counts.
#ifndef VELD_TABLESTORE_CONNECTION_STRING_H_
#define VELD_TABLESTORE_CONNECTION_STRING_H_

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veld {

class ConnectionString {
 public:
  // Raises -2147467259 "Format of the initialization string is not valid."
  // for a pair without "=", a key that is empty, or a quoted value with text
  // after its closing quote.
  static ConnectionString Parse(std::string_view text);

  // The value of `key`, or nullopt when the string does not set it.
  std::optional<std::string> Get(std::string_view key) const;

  const std::vector<std::pair<std::string, std::string>>& Pairs() const { return pairs_; }

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;
};

// `value` as it is put after "key=" so that Parse gives it back exactly:
// bare when it holds nothing the grammar reads (so ordinary values are
// unchanged), else in double quotes with any double quote doubled. A value
// that already is one complete quoted value is kept as it is: Parse gives
// its content, as it always did for callers who quoted it themselves.
std::string QuoteConnectionValue(std::string_view value);

}  // namespace veld

#endif  // VELD_TABLESTORE_CONNECTION_STRING_H_
