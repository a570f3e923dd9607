// Helpers shared by the option store's tests.
#ifndef VELD_TESTS_OPTIONS_OPTION_TESTING_H_
#define VELD_TESTS_OPTIONS_OPTION_TESTING_H_

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "veld/options/kvo_option.h"

namespace veld::testing {

// A KvoOption whose held document and record the tests can look at.
class HeldOption : public KvoOption {
 public:
  // The held document as XML text.
  std::string HeldXml() const { return m_cXmlDom.Xml(); }
  int32_t RecordedNumber() const { return m_cErrObj.Number(); }
  std::string RecordedDescription() const { return m_cErrObj.Description(); }
};

// Expects `option` (a HeldOption) to hold a recorded failure with this number
// and description.
#define EXPECT_RECORDED(option, number, description)          \
  do {                                                        \
    EXPECT_EQ((option).RecordedNumber(), (number));           \
    EXPECT_EQ((option).RecordedDescription(), (description)); \
  } while (0)

// Expects `option` to hold the library's own check failure `message`, which
// GetLastError shows as it stands.
#define EXPECT_CHECK_FAILED(option, message)       \
  do {                                             \
    EXPECT_RECORDED(option, -1, message);          \
    EXPECT_EQ((option).GetLastError(), (message)); \
  } while (0)

}  // namespace veld::testing

#endif  // VELD_TESTS_OPTIONS_OPTION_TESTING_H_
