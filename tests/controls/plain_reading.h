// A plain reading of the control helper's row access, kept apart from the
// library's own code for differential tests: one XPath per cell, the field
// names matched as written, and random dataset documents to read.
#ifndef VELD_TESTS_CONTROLS_PLAIN_READING_H_
#define VELD_TESTS_CONTROLS_PLAIN_READING_H_

#include <random>
#include <string>
#include <vector>

#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "veld/xml/xml_node.h"
#include "veld/xml/xml_node_list.h"

namespace veld::testing {

// The "value" of the first col the relative XPath "col[@name='field']"
// selects; whether there is such a col.
bool Cell(const XmlNode& row, const std::string& field, std::string& value);

// Each name whose trimmed, upper-cased text equals the trimmed, upper-cased
// name of a col of the first row becomes that col's name; later cols win.
void MatchFieldsUpper(const XmlDocument& data, const std::vector<std::string*>& names);

// "//data[1]/row[(active) and col[@name='field' and @value<op>'escaped']]"
// (the column part only when `field` is not empty).
XmlNodeList FilteredRows(const XmlDocument& data, const std::string& field, const std::string& op,
                         const std::string& value);

// The message a worker class records for a raised error.
std::string RecordedMessage(const AutomationError& error);

// A random dataset document: one or two data elements of up to 14 rows with
// random cols (ids, parents, texts, groups), index attributes, entity
// references, namespaced and value-less cols.
std::string RandomDatasetDocument(std::mt19937& random);

template <class T>
const T& Pick(std::mt19937& random, const std::vector<T>& choices) {
  return choices[std::uniform_int_distribution<size_t>(0, choices.size() - 1)(random)];
}

}  // namespace veld::testing

#endif  // VELD_TESTS_CONTROLS_PLAIN_READING_H_
