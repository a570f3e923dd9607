// The rows the control helper reads: the row filters it builds, the field
// names it matches to the data's own spelling, and the col values it reads.
#ifndef VELD_CONTROLS_DATA_ROWS_H_
#define VELD_CONTROLS_DATA_ROWS_H_

#include <initializer_list>
#include <string>
#include <vector>

#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"

namespace veld::controls_internal {

// Rows count unless their "index" is "0".
inline constexpr char kActiveRow[] = "(@index!='0' or not (@index))";
// The rows of the first data element.
inline constexpr char kFirstDataRows[] = "//data[1]/row";

// " and col[@name='" + field + "' and @value" + op + "'" + the trimmed,
// escaped value + "']": field and operator as given.
std::string ColumnMatch(const std::string& field, const std::string& op, const std::string& value);

// Replaces each of `names` whose trimmed, upper-cased text equals the
// trimmed, upper-cased name of a col of the first row ("//data[1]/row[1]/col")
// by that name as the data spells it; later cols win.
void MatchFieldNamesUpper(const XmlDocument& data, std::initializer_list<std::string*> names);

// The "value" of the first col of `row` named `field` ("" when the col or the
// attribute is absent), and whether there is such a col: the result of the
// relative XPath "col[@name='" + field + "']". The XPath itself is evaluated
// (and fails as it fails) only for names it could read differently: with an
// apostrophe or a NUL.
bool ReadCol(const XmlNode& row, const std::string& field, std::string& value);

// The list views' matching: each of `names` whose trimmed, lower-cased text
// equals the trimmed, lower-cased name of one of the sample row's
// "col[@name!='']" elements becomes that name trimmed, at the first such
// col. Nothing happens without a sample row.
void MatchFieldNamesLower(const XmlNode& sample_row, const std::vector<std::string*>& names);

// The result of the relative XPath "col[@name='" + field + "']/@value": the
// value of the first col named `field` that has one, and whether there is
// such a col. Evaluated as an XPath only for names with an apostrophe or a
// NUL, as ReadCol.
bool ReadColValue(const XmlNode& row, const std::string& field, std::string& value);

}  // namespace veld::controls_internal

#endif  // VELD_CONTROLS_DATA_ROWS_H_
