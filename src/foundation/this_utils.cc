#include "foundation/this_utils.h"

#include "runtime/numeric.h"
#include "veld/foundation/kvo_utils.h"
#include "veld/platform/platform.h"

namespace veld {

bool FileExists(const std::string& path) {
  try {
    return CurrentPlatform().FileExists(path);
  } catch (...) {
    return false;  // a failed search means "no such file"
  }
}

int32_t ToLongOrDefault(std::string_view text, int32_t default_value) {
  return TryToLong(text).value_or(default_value);
}

std::string NewGuidText(KvoGuidFormatEnum format) {
  KvoUtils utils;
  return utils.KvoGenerateGUID(format);
}

}  // namespace veld
