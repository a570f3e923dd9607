// Each test works below a scratch key of its own under HKEY_CURRENT_USER (or
// another root where the root is the point), named after the test and, on a
// registry that outlives the run, after the process.
#include "registry_conformance.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace veld::conformance {
namespace {

std::string RunId() {
  static const std::string id = std::to_string(static_cast<long long>(std::time(nullptr))) + "_" +
                                std::to_string(reinterpret_cast<uintptr_t>(&id) % 100000);
  return id;
}

const uint8_t* Bytes(const char* text) { return reinterpret_cast<const uint8_t*>(text); }

class RegistryConformanceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    backend_ = &StartBackend();
    scratch_ = std::string("Software\\VeldConformance\\") + RunId() + "\\" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name();
  }
  void TearDown() override {
    for (RegistryHandle handle : open_) reg().CloseKey(handle);
    StopBackend();
  }

  RegistryBackend& reg() { return *backend_; }

  // The scratch path, or a path below it.
  std::string Path(const std::string& sub = "") const {
    return sub.empty() ? scratch_ : scratch_ + "\\" + sub;
  }

  RegistryHandle Create(const std::string& path, RegistryHandle root = kHkeyCurrentUser) {
    RegistryHandle handle = 0;
    EXPECT_EQ(reg().CreateKey(root, path.c_str(), &handle), regerr::kSuccess) << path;
    EXPECT_NE(handle, 0u);
    open_.push_back(handle);
    return handle;
  }

  RegistryHandle Open(const std::string& path, uint32_t access = kKeyAllAccess,
                      RegistryHandle root = kHkeyCurrentUser) {
    RegistryHandle handle = 0;
    EXPECT_EQ(reg().OpenKey(root, path.c_str(), access, &handle), regerr::kSuccess) << path;
    open_.push_back(handle);
    return handle;
  }

  int32_t OpenCode(const std::string& path, RegistryHandle root = kHkeyCurrentUser) {
    RegistryHandle handle = 0;
    int32_t code = reg().OpenKey(root, path.c_str(), kKeyRead, &handle);
    if (code == regerr::kSuccess) open_.push_back(handle);
    return code;
  }

  int32_t SetString(RegistryHandle key, const char* name, const std::string& data) {
    return reg().SetValue(key, name, kRegSz, reinterpret_cast<const uint8_t*>(data.data()),
                          static_cast<uint32_t>(data.size()));
  }

  int32_t SetNumber(RegistryHandle key, const char* name, uint32_t number) {
    return reg().SetValue(key, name, kRegDword, reinterpret_cast<const uint8_t*>(&number), 4);
  }

  // The value's bytes; fails the test when it cannot be read.
  std::string Read(RegistryHandle key, const char* name, uint32_t* type = nullptr) {
    uint32_t size = 0;
    EXPECT_EQ(reg().QueryValue(key, name, type, nullptr, &size), regerr::kSuccess) << name;
    std::string data(size, '\0');
    EXPECT_EQ(reg().QueryValue(key, name, type, reinterpret_cast<uint8_t*>(data.data()), &size),
              regerr::kSuccess);
    data.resize(size);
    return data;
  }

  std::vector<std::string> EnumNames(RegistryHandle key) {
    std::vector<std::string> names;
    for (uint32_t index = 0;; ++index) {
      char name[300];
      uint32_t length = sizeof name;
      int32_t code = reg().EnumValue(key, index, name, &length, nullptr, nullptr, nullptr);
      if (code == regerr::kNoMoreItems) break;
      EXPECT_EQ(code, regerr::kSuccess);
      if (code != regerr::kSuccess) break;
      names.emplace_back(name, length);
    }
    return names;
  }

  RegistryBackend* backend_ = nullptr;
  std::string scratch_;
  std::vector<RegistryHandle> open_;
};

// Keys.

TEST_F(RegistryConformanceTest, OpenMissingKeyGivesNotFoundAndNullHandle) {
  Create(Path());
  RegistryHandle handle = 12345;
  EXPECT_EQ(reg().OpenKey(kHkeyCurrentUser, Path("Missing").c_str(), kKeyRead, &handle),
            regerr::kFileNotFound);
  EXPECT_EQ(handle, 0u);
  handle = 12345;
  EXPECT_EQ(reg().OpenKey(kHkeyCurrentUser, Path("Missing\\Below").c_str(), kKeyRead, &handle),
            regerr::kFileNotFound);
  EXPECT_EQ(handle, 0u);
}

TEST_F(RegistryConformanceTest, OpenWithEmptyOrNullSubkeyGivesTheSameKey) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "v", "same"), regerr::kSuccess);
  for (const char* sub_key : {"", static_cast<const char*>(nullptr)}) {
    RegistryHandle again = 0;
    ASSERT_EQ(reg().OpenKey(key, sub_key, kKeyRead, &again), regerr::kSuccess);
    open_.push_back(again);
    EXPECT_EQ(Read(again, "v"), std::string("same\0", 5));
  }
  RegistryHandle root = 0;
  EXPECT_EQ(reg().OpenKey(kHkeyCurrentUser, "", kKeyRead, &root), regerr::kSuccess);
  EXPECT_NE(root, 0u);
  RegistryHandle below = 0;
  EXPECT_EQ(reg().OpenKey(root, Path().c_str(), kKeyRead, &below), regerr::kSuccess);
  open_.push_back(below);
  EXPECT_EQ(reg().CloseKey(root), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, CreateWithEmptySubkeyOnRootGivesTheRoot) {
  Create(Path());
  RegistryHandle root = 0;
  ASSERT_EQ(reg().CreateKey(kHkeyCurrentUser, "", &root), regerr::kSuccess);
  ASSERT_NE(root, 0u);
  RegistryHandle below = 0;
  EXPECT_EQ(reg().OpenKey(root, Path().c_str(), kKeyRead, &below), regerr::kSuccess);
  open_.push_back(below);
  EXPECT_EQ(reg().CloseKey(root), regerr::kSuccess);
  // Closing it was harmless: the root still works.
  EXPECT_EQ(OpenCode(Path()), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, CreateMakesEveryMissingLevel) {
  Create(Path("A\\B\\C"));
  EXPECT_EQ(OpenCode(Path("A")), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("A\\B")), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("A\\B\\C")), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, CreateOfAnExistingKeyOpensIt) {
  RegistryHandle first = Create(Path());
  ASSERT_EQ(SetString(first, "kept", "yes"), regerr::kSuccess);
  RegistryHandle second = Create(Path());
  EXPECT_EQ(Read(second, "kept"), std::string("yes\0", 4));
}

TEST_F(RegistryConformanceTest, KeyNamesAreCaseInsensitive) {
  RegistryHandle key = Create(Path("MixedCase"));
  ASSERT_EQ(SetString(key, "v", "x"), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("mixedcase")), regerr::kSuccess);
  RegistryHandle upper = Create(Path("MIXEDCASE"));
  EXPECT_EQ(Read(upper, "v"), std::string("x\0", 2));
  ASSERT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("mixedCASE").c_str()), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("MixedCase")), regerr::kFileNotFound);
}

// The long names are given relative to an open key: Wine's ANSI calls take
// at most about 260 characters of path in all.
TEST_F(RegistryConformanceTest, NameComponentOf255CharactersIsAccepted) {
  RegistryHandle parent = Create(Path());
  std::string name(255, 'n');
  RegistryHandle key = 0;
  ASSERT_EQ(reg().CreateKey(parent, name.c_str(), &key), regerr::kSuccess);
  open_.push_back(key);
  EXPECT_EQ(OpenCode(name, parent), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, NameComponentLongerThan255CharactersIsInvalid) {
  if (RunningOnWine()) GTEST_SKIP() << "Wine accepts 256 characters";
  RegistryHandle parent = Create(Path());
  std::string name(256, 'n');
  RegistryHandle key = 0;
  EXPECT_EQ(reg().CreateKey(parent, name.c_str(), &key), regerr::kInvalidParameter);
  EXPECT_EQ(OpenCode(name, parent), regerr::kInvalidParameter);
}

TEST_F(RegistryConformanceTest, SubkeyStartingWithBackslashIsABadPath) {
  Create(Path());
  RegistryHandle handle = 0;
  std::string path = "\\" + Path();
  EXPECT_EQ(reg().CreateKey(kHkeyCurrentUser, path.c_str(), &handle), regerr::kBadPathName);
  EXPECT_EQ(OpenCode(path), regerr::kBadPathName);
}

TEST_F(RegistryConformanceTest, DoubledAndTrailingSeparatorsAreIgnored) {
  Create(Path("A\\\\B\\"));
  EXPECT_EQ(OpenCode(Path("A\\B")), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("A\\\\B\\")), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, DeleteOfKeyWithSubkeysIsDeniedAndDeletesNothing) {
  RegistryHandle parent = Create(Path("A"));
  ASSERT_EQ(SetString(parent, "v", "x"), regerr::kSuccess);
  Create(Path("A\\B"));
  EXPECT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("A").c_str()), regerr::kAccessDenied);
  EXPECT_EQ(OpenCode(Path("A\\B")), regerr::kSuccess);
  EXPECT_EQ(Read(Open(Path("A")), "v"), std::string("x\0", 2));
}

TEST_F(RegistryConformanceTest, DeleteOfLeafKeyTakesItsValues) {
  RegistryHandle key = Create(Path("Leaf"));
  ASSERT_EQ(SetString(key, "v", "x"), regerr::kSuccess);
  Create(Path("Empty"));
  EXPECT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("Leaf").c_str()), regerr::kSuccess);
  EXPECT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("Empty").c_str()), regerr::kSuccess);
  EXPECT_EQ(OpenCode(Path("Leaf")), regerr::kFileNotFound);
  EXPECT_EQ(OpenCode(Path("Empty")), regerr::kFileNotFound);
  RegistryHandle again = Create(Path("Leaf"));
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(again, "v", nullptr, nullptr, &size), regerr::kFileNotFound);
}

TEST_F(RegistryConformanceTest, DeleteOfMissingKeyGivesNotFound) {
  Create(Path());
  EXPECT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("Missing").c_str()), regerr::kFileNotFound);
}

TEST_F(RegistryConformanceTest, DeleteOfRootIsDenied) {
  EXPECT_EQ(reg().DeleteKey(kHkeyCurrentUser, ""), regerr::kAccessDenied);
}

TEST_F(RegistryConformanceTest, HandleOfDeletedKeyGivesKeyDeleted) {
  RegistryHandle key = Create(Path("Gone"));
  ASSERT_EQ(SetString(key, "v", "x"), regerr::kSuccess);
  ASSERT_EQ(reg().DeleteKey(kHkeyCurrentUser, Path("Gone").c_str()), regerr::kSuccess);
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(key, "v", nullptr, nullptr, &size), regerr::kKeyDeleted);
  EXPECT_EQ(SetString(key, "w", "y"), regerr::kKeyDeleted);
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, nullptr, nullptr), regerr::kKeyDeleted);
  RegistryHandle child = 0;
  EXPECT_EQ(reg().CreateKey(key, "Child", &child), regerr::kKeyDeleted);
  EXPECT_EQ(reg().OpenKey(key, "Child", kKeyRead, &child), regerr::kKeyDeleted);
  open_.clear();
  EXPECT_EQ(reg().CloseKey(key), regerr::kSuccess);
}

TEST_F(RegistryConformanceTest, SetThroughReadHandleIsDenied) {
  Create(Path());
  RegistryHandle key = Open(Path(), kKeyRead);
  EXPECT_EQ(SetString(key, "v", "x"), regerr::kAccessDenied);
}

TEST_F(RegistryConformanceTest, QueryAndEnumerateThroughWriteHandleAreDenied) {
  RegistryHandle created = Create(Path());
  ASSERT_EQ(SetString(created, "v", "x"), regerr::kSuccess);
  RegistryHandle key = Open(Path(), kKeyWrite);
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(key, "v", nullptr, nullptr, &size), regerr::kAccessDenied);
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, nullptr, nullptr),
            regerr::kAccessDenied);
  EXPECT_EQ(SetString(key, "w", "y"), regerr::kSuccess);
}

// Predefined roots.

TEST_F(RegistryConformanceTest, OrdinaryRootsAreWritableTrees) {
  for (RegistryHandle root :
       {kHkeyClassesRoot, kHkeyCurrentUser, kHkeyLocalMachine, kHkeyUsers, kHkeyCurrentConfig}) {
    SCOPED_TRACE(root);
    RegistryHandle key = Create(Path("Root"), root);
    EXPECT_EQ(SetString(key, "v", "x"), regerr::kSuccess);
    EXPECT_EQ(Read(Open(Path("Root"), kKeyRead, root), "v"), std::string("x\0", 2));
    EXPECT_EQ(reg().DeleteKey(root, Path("Root").c_str()), regerr::kSuccess);
  }
}

TEST_F(RegistryConformanceTest, PerformanceDataRootAnswersWithoutBeingAStore) {
  RegistryHandle opened = 0;
  EXPECT_EQ(reg().OpenKey(kHkeyPerformanceData, "", kKeyRead, &opened), regerr::kSuccess);
  EXPECT_NE(opened, 0u);
  RegistryHandle handle = 0;
  EXPECT_EQ(reg().OpenKey(kHkeyPerformanceData, "Sub", kKeyRead, &handle), regerr::kInvalidHandle);
  EXPECT_EQ(reg().CreateKey(kHkeyPerformanceData, "Sub", &handle), regerr::kInvalidHandle);
  EXPECT_EQ(SetString(kHkeyPerformanceData, "v", "x"), regerr::kInvalidHandle);
  // Wine 8.0 serves performance data here: a query gives 234 with type 3 and
  // enumeration 6.
  if (RunningOnWine()) return;
  uint32_t type = 99;
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(kHkeyPerformanceData, "v", &type, nullptr, &size),
            regerr::kFileNotFound);
  EXPECT_EQ(type, kRegNone);
  uint8_t buffer[16];
  size = sizeof buffer;
  EXPECT_EQ(reg().QueryValue(opened, "v", nullptr, buffer, &size), regerr::kFileNotFound);
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(kHkeyPerformanceData, 0, name, &length, nullptr, nullptr, nullptr),
            regerr::kNoMoreItems);
}

TEST_F(RegistryConformanceTest, DynDataRootRefusesEveryCall) {
  if (RunningOnWine()) GTEST_SKIP() << "Wine treats HKEY_DYN_DATA as writable";
  RegistryHandle handle = 0;
  EXPECT_EQ(reg().OpenKey(kHkeyDynData, "", kKeyRead, &handle), regerr::kInvalidHandle);
  EXPECT_EQ(reg().OpenKey(kHkeyDynData, "Sub", kKeyRead, &handle), regerr::kInvalidHandle);
  EXPECT_EQ(reg().CreateKey(kHkeyDynData, "Sub", &handle), regerr::kInvalidHandle);
  EXPECT_EQ(reg().DeleteKey(kHkeyDynData, "Sub"), regerr::kInvalidHandle);
  EXPECT_EQ(SetString(kHkeyDynData, "v", "x"), regerr::kInvalidHandle);
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(kHkeyDynData, "v", nullptr, nullptr, &size), regerr::kInvalidHandle);
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(kHkeyDynData, 0, name, &length, nullptr, nullptr, nullptr),
            regerr::kInvalidHandle);
  EXPECT_EQ(reg().CloseKey(kHkeyDynData), regerr::kInvalidHandle);
}

TEST_F(RegistryConformanceTest, UnknownOrClosedHandleIsInvalid) {
  const RegistryHandle unknown = 0x0BADF00C;
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(unknown, "v", nullptr, nullptr, &size), regerr::kInvalidHandle);
  EXPECT_EQ(SetString(unknown, "v", "x"), regerr::kInvalidHandle);
  RegistryHandle key = 0;
  ASSERT_EQ(reg().CreateKey(kHkeyCurrentUser, Path().c_str(), &key), regerr::kSuccess);
  ASSERT_EQ(reg().CloseKey(key), regerr::kSuccess);
  EXPECT_EQ(SetString(key, "v", "x"), regerr::kInvalidHandle);
  EXPECT_EQ(reg().QueryValue(key, "v", nullptr, nullptr, &size), regerr::kInvalidHandle);
  EXPECT_EQ(reg().CloseKey(key), regerr::kInvalidHandle);
}

// Values.

TEST_F(RegistryConformanceTest, QueryOfMissingValueGivesNotFoundAndTypeZero) {
  RegistryHandle key = Create(Path());
  for (const char* name : {"missing", "", static_cast<const char*>(nullptr)}) {
    uint32_t type = 99;
    uint32_t size = 3;
    uint8_t buffer[3] = {'x', 'y', 'z'};
    EXPECT_EQ(reg().QueryValue(key, name, &type, buffer, &size), regerr::kFileNotFound);
    EXPECT_EQ(type, kRegNone);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(std::memcmp(buffer, "xyz", 3), 0);
  }
}

TEST_F(RegistryConformanceTest, SizeQueryGivesSizeInBytes) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "bin", kRegBinary, Bytes("12345"), 5), regerr::kSuccess);
  uint32_t type = 0;
  uint32_t size = 0;
  EXPECT_EQ(reg().QueryValue(key, "bin", &type, nullptr, &size), regerr::kSuccess);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(type, kRegBinary);
}

TEST_F(RegistryConformanceTest, ShortBufferGivesMoreDataAndFullSize) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "bin", kRegBinary, Bytes("12345"), 5), regerr::kSuccess);
  uint8_t buffer[3] = {'x', 'y', 'z'};
  uint32_t size = 3;
  EXPECT_EQ(reg().QueryValue(key, "bin", nullptr, buffer, &size), regerr::kMoreData);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(std::memcmp(buffer, "xyz", 3), 0);
}

TEST_F(RegistryConformanceTest, StringWithoutTerminatorIsStoredWithOne) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "s", "abc"), regerr::kSuccess);
  uint32_t type = 0;
  EXPECT_EQ(Read(key, "s", &type), std::string("abc\0", 4));
  EXPECT_EQ(type, kRegSz);
}

TEST_F(RegistryConformanceTest, StringOfZeroBytesIsStoredEmpty) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "s", kRegSz, Bytes(""), 0), regerr::kSuccess);
  uint8_t buffer[2] = {'z', 'z'};
  uint32_t size = 2;
  uint32_t type = 0;
  EXPECT_EQ(reg().QueryValue(key, "s", &type, buffer, &size), regerr::kSuccess);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(type, kRegSz);
  EXPECT_EQ(buffer[0], 'z');
  EXPECT_EQ(buffer[1], 'z');
}

TEST_F(RegistryConformanceTest, EmbeddedAndExtraZeroBytesAreKept) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "s", kRegSz, Bytes("a\0b\0\0"), 5), regerr::kSuccess);
  EXPECT_EQ(Read(key, "s"), std::string("a\0b\0\0", 5));
}

TEST_F(RegistryConformanceTest, StringBytesAbove0x7FRoundTrip) {
  RegistryHandle key = Create(Path());
  std::string high;
  for (int byte = 0x80; byte <= 0xFF; ++byte) high.push_back(static_cast<char>(byte));
  ASSERT_EQ(SetString(key, "s", high), regerr::kSuccess);
  EXPECT_EQ(Read(key, "s"), high + std::string(1, '\0'));
}

TEST_F(RegistryConformanceTest, StringReadIntoNumberBufferGivesRawBytesOrMoreData) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "short", "ab"), regerr::kSuccess);
  ASSERT_EQ(SetString(key, "long", "abcdef"), regerr::kSuccess);
  uint8_t buffer[4] = {0, 0, 0, 0};
  uint32_t size = 4;
  EXPECT_EQ(reg().QueryValue(key, "short", nullptr, buffer, &size), regerr::kSuccess);
  EXPECT_EQ(size, 3u);
  EXPECT_EQ(std::memcmp(buffer, "ab\0", 3), 0);
  size = 4;
  EXPECT_EQ(reg().QueryValue(key, "long", nullptr, buffer, &size), regerr::kMoreData);
  EXPECT_EQ(size, 7u);
}

TEST_F(RegistryConformanceTest, NumberReadIntoLargerBufferGivesFourBytes) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetNumber(key, "n", 0x01020304u), regerr::kSuccess);
  uint8_t buffer[8] = {};
  uint32_t size = 8;
  uint32_t type = 0;
  EXPECT_EQ(reg().QueryValue(key, "n", &type, buffer, &size), regerr::kSuccess);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(type, kRegDword);
  uint32_t number = 0;
  std::memcpy(&number, buffer, 4);
  EXPECT_EQ(number, 0x01020304u);
}

TEST_F(RegistryConformanceTest, BinaryOfZeroBytesIsStored) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "b", kRegBinary, nullptr, 0), regerr::kSuccess);
  uint8_t buffer[2] = {'z', 'z'};
  uint32_t size = 2;
  uint32_t type = 0;
  EXPECT_EQ(reg().QueryValue(key, "b", &type, buffer, &size), regerr::kSuccess);
  EXPECT_EQ(type, kRegBinary);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(buffer[0], 'z');
}

TEST_F(RegistryConformanceTest, ValueNamesAreCaseInsensitiveAndKeepFirstSpelling) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "Name", "first"), regerr::kSuccess);
  ASSERT_EQ(SetNumber(key, "NAME", 7), regerr::kSuccess);
  uint32_t type = 0;
  EXPECT_EQ(Read(key, "name", &type), std::string("\7\0\0\0", 4));
  EXPECT_EQ(type, kRegDword);
  EXPECT_EQ(EnumNames(key), std::vector<std::string>{"Name"});
}

TEST_F(RegistryConformanceTest, ValueNameOf16383CharactersIsTheLongest) {
  RegistryHandle key = Create(Path());
  std::string longest(16383, 'v');
  std::string too_long(16384, 'v');
  EXPECT_EQ(SetString(key, longest.c_str(), "x"), regerr::kSuccess);
  EXPECT_EQ(SetString(key, too_long.c_str(), "x"), regerr::kInvalidParameter);
}

TEST_F(RegistryConformanceTest, DefaultValueIsOneValueNamedEmpty) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "", "first"), regerr::kSuccess);
  ASSERT_EQ(SetString(key, nullptr, "second"), regerr::kSuccess);
  EXPECT_EQ(Read(key, ""), std::string("second\0", 7));
  EXPECT_EQ(Read(key, nullptr), std::string("second\0", 7));
  EXPECT_EQ(EnumNames(key), std::vector<std::string>{""});
}

// Enumeration.

TEST_F(RegistryConformanceTest, EnumerationOfEmptyKeyHasNoItems) {
  RegistryHandle key = Create(Path());
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, nullptr, nullptr),
            regerr::kNoMoreItems);
}

TEST_F(RegistryConformanceTest, EnumerationFollowsCreationOrder) {
  RegistryHandle key = Create(Path());
  for (const char* name : {"a", "b", "c"}) ASSERT_EQ(SetString(key, name, "x"), regerr::kSuccess);
  ASSERT_EQ(reg().DeleteValue(key, "b"), regerr::kSuccess);
  ASSERT_EQ(SetString(key, "b", "x"), regerr::kSuccess);
  ASSERT_EQ(SetString(key, "A", "replaced"), regerr::kSuccess);
  std::vector<std::string> names = EnumNames(key);
  if (RunningOnWine()) {
    // Wine enumerates sorted; only the set is comparable there.
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c"}));
  } else {
    EXPECT_EQ(names, (std::vector<std::string>{"a", "c", "b"}));
  }
}

TEST_F(RegistryConformanceTest, EnumerationOfNameOnlyGivesLengthAndType) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetNumber(key, "number", 5), regerr::kSuccess);
  char name[32];
  std::memset(name, ' ', sizeof name);
  uint32_t length = sizeof name;
  uint32_t type = 0;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, &type, nullptr, nullptr), regerr::kSuccess);
  EXPECT_EQ(length, 6u);
  EXPECT_EQ(std::string(name, 7), std::string("number\0", 7));
  EXPECT_EQ(type, kRegDword);
}

TEST_F(RegistryConformanceTest, EnumerationWithShortNameBufferGivesMoreData) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "abcdef", "x"), regerr::kSuccess);
  char name[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
  uint32_t length = 4;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, nullptr, nullptr), regerr::kMoreData);
  EXPECT_EQ(length, 4u);
  if (RunningOnWine()) {
    // Wine 8.0 writes as much of the name as fits, with a zero after it.
    EXPECT_EQ(std::string(name, 4), std::string("abc\0", 4));
  } else {
    EXPECT_EQ(name[0], '\0');
  }
  length = 1;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, nullptr, nullptr), regerr::kMoreData);
  EXPECT_EQ(name[0], '\0');
}

TEST_F(RegistryConformanceTest, EnumerationWithShortDataBufferGivesMoreData) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(reg().SetValue(key, "bin", kRegBinary, Bytes("12345"), 5), regerr::kSuccess);
  char name[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
  uint32_t length = sizeof name;
  uint8_t data[2] = {'z', 'z'};
  uint32_t size = 2;
  EXPECT_EQ(reg().EnumValue(key, 0, name, &length, nullptr, data, &size), regerr::kMoreData);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(name[0], 'x');
}

TEST_F(RegistryConformanceTest, EnumerationPastTheEndHasNoMoreItems) {
  RegistryHandle key = Create(Path());
  ASSERT_EQ(SetString(key, "only", "x"), regerr::kSuccess);
  char name[16];
  uint32_t length = sizeof name;
  EXPECT_EQ(reg().EnumValue(key, 1, name, &length, nullptr, nullptr, nullptr),
            regerr::kNoMoreItems);
  length = sizeof name;
  EXPECT_EQ(reg().EnumValue(key, 7, name, &length, nullptr, nullptr, nullptr),
            regerr::kNoMoreItems);
}

}  // namespace
}  // namespace veld::conformance
