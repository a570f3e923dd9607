#include "veld/platform/platform.h"

#include <string>

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

class FixedNamePlatform : public ForwardingPlatform {
 public:
  std::string ProductName() override { return "Host"; }
};

TEST(PlatformTest, DefaultIsCurrentUntilAnotherIsInstalled) {
  EXPECT_EQ(&CurrentPlatform(), &Platform::Default());
}

TEST(PlatformTest, ScopedPlatformInstallsAndRestores) {
  FixedNamePlatform host;
  {
    ScopedPlatform installed(host);
    EXPECT_EQ(&CurrentPlatform(), &host);
    EXPECT_EQ(CurrentPlatform().ProductName(), "Host");
  }
  EXPECT_EQ(&CurrentPlatform(), &Platform::Default());
}

TEST(PlatformTest, NestedInstallsRestoreInOrder) {
  FixedNamePlatform outer;
  FixedNamePlatform inner;
  ScopedPlatform first(outer);
  {
    ScopedPlatform second(inner);
    EXPECT_EQ(&CurrentPlatform(), &inner);
  }
  EXPECT_EQ(&CurrentPlatform(), &outer);
}

TEST(PlatformTest, InstallReturnsPreviousAndNullRestoresDefault) {
  FixedNamePlatform host;
  Platform* previous = InstallPlatform(&host);
  EXPECT_EQ(previous, &Platform::Default());
  EXPECT_EQ(InstallPlatform(nullptr), &host);
  EXPECT_EQ(&CurrentPlatform(), &Platform::Default());
}

TEST(PlatformTest, ForwardingPlatformPassesCallsOn) {
  FixedNamePlatform inner;
  ForwardingPlatform outer(&inner);
  EXPECT_EQ(outer.ProductName(), "Host");
  EXPECT_EQ(outer.TwipsPerPixelX(), 15);
}

}  // namespace
}  // namespace veld
