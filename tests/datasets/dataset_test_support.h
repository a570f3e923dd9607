// Helpers shared by the dataset tests.
#ifndef VELD_TESTS_DATASETS_DATASET_TEST_SUPPORT_H_
#define VELD_TESTS_DATASETS_DATASET_TEST_SUPPORT_H_

#include <cstdint>
#include <cstdio>
#include <string>

#include "veld/platform/platform.h"

namespace veld::testing {

// Makes GUIDs that count up from 1, so that documents holding new IDs can be
// compared as text. Guid(n) is the text of the n-th one.
class CountingGuidPlatform : public ForwardingPlatform {
 public:
  int32_t CreateGuid(Guid& guid) override {
    guid = Guid();
    guid.Data1 = ++count_;
    return 0;
  }
  static std::string Text(uint32_t n) {
    char text[33];
    std::snprintf(text, sizeof text, "%08X%024d", n, 0);
    return text;
  }
  uint32_t count() const { return count_; }

 private:
  uint32_t count_ = 0;
};

}  // namespace veld::testing

#endif  // VELD_TESTS_DATASETS_DATASET_TEST_SUPPORT_H_
