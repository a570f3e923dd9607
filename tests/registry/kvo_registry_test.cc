#include "veld/registry/kvo_registry.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "veld/platform/platform.h"
#include "veld/registry/registry_backend.h"

#include "support/scoped_registry.h"
#include "support/testing.h"

namespace veld {
namespace {

constexpr char kKey[] = "HKEY_CURRENT_USER\\Software\\VeldTest";

// A backend that passes calls on to another and can be told to fail.
class FaultyBackend : public RegistryBackend {
 public:
  explicit FaultyBackend(RegistryBackend& target) : target_(target) {}

  int32_t open_result = 0;    // non-zero: OpenKey fails with it
  std::string failing_value;  // QueryValue of this name fails
  int32_t query_result = 0;

  int32_t OpenKey(RegistryHandle key, const char* sub_key, uint32_t sam_desired,
                  RegistryHandle* result) override {
    if (open_result != 0) {
      *result = 0;
      return open_result;
    }
    return target_.OpenKey(key, sub_key, sam_desired, result);
  }
  int32_t CreateKey(RegistryHandle key, const char* sub_key, RegistryHandle* result) override {
    return target_.CreateKey(key, sub_key, result);
  }
  int32_t DeleteKey(RegistryHandle key, const char* sub_key) override {
    return target_.DeleteKey(key, sub_key);
  }
  int32_t QueryValue(RegistryHandle key, const char* value_name, uint32_t* type, uint8_t* data,
                     uint32_t* data_size) override {
    if (value_name != nullptr && failing_value == value_name) return query_result;
    return target_.QueryValue(key, value_name, type, data, data_size);
  }
  int32_t SetValue(RegistryHandle key, const char* value_name, uint32_t type, const uint8_t* data,
                   uint32_t data_size) override {
    return target_.SetValue(key, value_name, type, data, data_size);
  }
  int32_t DeleteValue(RegistryHandle key, const char* value_name) override {
    return target_.DeleteValue(key, value_name);
  }
  int32_t EnumValue(RegistryHandle key, uint32_t index, char* name, uint32_t* name_size,
                    uint32_t* type, uint8_t* data, uint32_t* data_size) override {
    return target_.EnumValue(key, index, name, name_size, type, data, data_size);
  }
  int32_t CloseKey(RegistryHandle key) override { return target_.CloseKey(key); }

 private:
  RegistryBackend& target_;
};

class FaultyRegistryPlatform : public ForwardingPlatform {
 public:
  FaultyRegistryPlatform() : backend(Platform::Default().Registry()) {}
  RegistryBackend& Registry() override { return backend; }
  FaultyBackend backend;
};

class KvoRegistryTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(reg_.CreateKey(kKey)) << reg_.GetLastError(); }

  // Writes a value of any type straight through the backend.
  void SetRaw(const std::string& name, uint32_t type, const std::string& data) {
    RegistryBackend& backend = CurrentPlatform().Registry();
    RegistryHandle key = 0;
    ASSERT_EQ(backend.OpenKey(kHkeyCurrentUser, "Software\\VeldTest", kKeyWrite, &key), 0);
    ASSERT_EQ(
        backend.SetValue(key, name.c_str(), type, reinterpret_cast<const uint8_t*>(data.data()),
                         static_cast<uint32_t>(data.size())),
        0);
    backend.CloseKey(key);
  }

  // Reads a value's type and bytes straight through the backend.
  std::pair<uint32_t, std::string> ReadRaw(const std::string& key_path, const std::string& name) {
    RegistryBackend& backend = CurrentPlatform().Registry();
    RegistryHandle key = 0;
    EXPECT_EQ(backend.OpenKey(kHkeyCurrentUser, key_path.c_str(), kKeyRead, &key), 0);
    uint32_t type = 0;
    uint32_t size = 0;
    EXPECT_EQ(backend.QueryValue(key, name.c_str(), &type, nullptr, &size), 0);
    std::string data(size, '\0');
    EXPECT_EQ(backend.QueryValue(key, name.c_str(), &type, reinterpret_cast<uint8_t*>(data.data()),
                                 &size),
              0);
    backend.CloseKey(key);
    return {type, data};
  }

  testing::ScopedTestRegistry registry_;
  KvoRegistry reg_;
};

// Key names.

TEST_F(KvoRegistryTest, LowerCaseRootAndTrailingBackslashAreAccepted) {
  EXPECT_TRUE(reg_.CreateKey("hkey_current_user\\Software\\VeldTest\\Sub\\"));
  EXPECT_EQ(reg_.GetLastError(), "");
  EXPECT_TRUE(reg_.SetStringValue("  Hkey_Current_User\\Software\\VeldTest\\Sub", "a", "b"));
  std::string value;
  EXPECT_EQ(reg_.GetStringValue("HKEY_CURRENT_USER\\software\\veldtest\\SUB\\", "A", value), 1);
  EXPECT_EQ(value, "b");
}

TEST_F(KvoRegistryTest, ShortFormRootFailsWithInvalidRegistryKeyName) {
  EXPECT_FALSE(reg_.CreateKey("HKCU\\Software\\VeldTest"));
  EXPECT_EQ(reg_.GetLastError(), "Invalid registry key name.");
  EXPECT_RAISES(reg_.RaiseLastError(), -1, "Invalid registry key name.");
}

TEST_F(KvoRegistryTest, UnknownRootFailsWithInvalidMainKeyName) {
  std::string value = "old";
  EXPECT_EQ(reg_.GetStringValue("HKEY_FOO\\Software", "a", value), -1);
  EXPECT_EQ(reg_.GetLastError(), "Invalid main key name specified - HKEY_FOO");
  EXPECT_EQ(value, "");
}

TEST_F(KvoRegistryTest, UnknownRootIsQuotedAsWrittenBeforeTheBackslash) {
  EXPECT_FALSE(reg_.DeleteKey(" hkey_foo \\Software"));
  EXPECT_EQ(reg_.GetLastError(), "Invalid main key name specified - hkey_foo ");
}

TEST_F(KvoRegistryTest, BareRootNameAddressesTheRoot) {
  EXPECT_TRUE(reg_.CreateKey("HKEY_CURRENT_USER"));
  EXPECT_TRUE(reg_.CreateKey("HKEY_LOCAL_MACHINE\\"));
  EXPECT_FALSE(reg_.DeleteKey("HKEY_CURRENT_USER"));
  EXPECT_EQ(reg_.GetLastError(), "Access denied.");
}

// Reading and writing.

TEST_F(KvoRegistryTest, ReadingMissingValueFailsWithInvalidParameter) {
  std::string value = "old";
  EXPECT_EQ(reg_.GetStringValue(kKey, "missing", value), -1);
  EXPECT_EQ(value, "");
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
  int32_t number = 5;
  EXPECT_EQ(reg_.GetDWORDValue(kKey, "missing", number), -1);
  EXPECT_EQ(number, 0);
  std::vector<uint8_t> bytes{1};
  EXPECT_EQ(reg_.GetBinaryValue(kKey, "missing", bytes), -1);
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
}

TEST_F(KvoRegistryTest, SetStringValueOnMissingKeyFailsWithoutCreatingIt) {
  EXPECT_FALSE(reg_.SetStringValue("HKEY_CURRENT_USER\\Software\\NoSuchKey", "a", "b"));
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
  EXPECT_FALSE(reg_.DeleteKey("HKEY_CURRENT_USER\\Software\\NoSuchKey"));
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
}

TEST_F(KvoRegistryTest, StringReadBackLosesLeadingBlanksOnly) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "s", "  hello  "));
  std::string value;
  EXPECT_EQ(reg_.GetStringValue(kKey, "s", value), 7);
  EXPECT_EQ(value, "hello  ");
}

TEST_F(KvoRegistryTest, StringIsStoredAsAnsiTextWithTerminator) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "s", "Grüße"));
  auto [type, data] = ReadRaw("Software\\VeldTest", "s");
  EXPECT_EQ(type, kRegSz);
  EXPECT_EQ(data, std::string("Gr\xFC\xDF"
                              "e\0",
                              6));
  std::string value;
  EXPECT_EQ(reg_.GetStringValue(kKey, "s", value), 5);
  EXPECT_EQ(value, "Grüße");
}

TEST_F(KvoRegistryTest, StoredStringWithoutTerminatorLosesItsLastCharacter) {
  SetRaw("raw", kRegBinary, "abc");
  std::string value;
  EXPECT_EQ(reg_.GetStringValue(kKey, "raw", value), 2);
  EXPECT_EQ(value, "ab");
}

TEST_F(KvoRegistryTest, EmptyStringRoundTrips) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "", ""));
  std::string value = "old";
  EXPECT_EQ(reg_.GetStringValue(kKey, "", value), 0);
  EXPECT_EQ(value, "");
  EXPECT_EQ(reg_.GetLastError(), "");
}

TEST_F(KvoRegistryTest, NumberRoundTripsWithSign) {
  ASSERT_TRUE(reg_.SetDWORDValue(kKey, "n", -123456));
  auto [type, data] = ReadRaw("Software\\VeldTest", "n");
  EXPECT_EQ(type, kRegDword);
  EXPECT_EQ(data.size(), 4u);
  int32_t number = 0;
  EXPECT_EQ(reg_.GetDWORDValue(kKey, "N", number), 0);
  EXPECT_EQ(number, -123456);
}

TEST_F(KvoRegistryTest, NumberReadOfLongerValueFailsWithBufferTooSmall) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "s", "longer text"));
  int32_t number = 9;
  EXPECT_EQ(reg_.GetDWORDValue(kKey, "s", number), -1);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(reg_.GetLastError(), "Buffer size too small to hold value.");
}

TEST_F(KvoRegistryTest, BinaryRoundTripsAndSizesTheArray) {
  ASSERT_TRUE(reg_.SetBinaryValue(kKey, "b", {0, 1, 0xFF, 0x80}));
  EXPECT_EQ(ReadRaw("Software\\VeldTest", "b").first, kRegBinary);
  std::vector<uint8_t> bytes(10, 7);
  EXPECT_EQ(reg_.GetBinaryValue(kKey, "b", bytes), 4);
  EXPECT_EQ(bytes, (std::vector<uint8_t>{0, 1, 0xFF, 0x80}));
}

TEST_F(KvoRegistryTest, BinaryOfNoBytesReadsZeroAndLeavesArray) {
  SetRaw("empty", kRegBinary, "");
  std::vector<uint8_t> bytes{4, 5};
  EXPECT_EQ(reg_.GetBinaryValue(kKey, "empty", bytes), 0);
  EXPECT_EQ(bytes, (std::vector<uint8_t>{4, 5}));
  EXPECT_EQ(reg_.GetLastError(), "");
}

TEST_F(KvoRegistryTest, EmptyByteArrayFailsWithSubscriptOutOfRange) {
  EXPECT_FALSE(reg_.SetBinaryValue(kKey, "b", {}));
  EXPECT_EQ(reg_.GetLastError(), "Subscript out of range(ERR#: 9)");
}

TEST_F(KvoRegistryTest, DeleteKeyRemovesLeafAndRefusesParent) {
  ASSERT_TRUE(reg_.CreateKey(std::string(kKey) + "\\A\\B"));
  EXPECT_FALSE(reg_.DeleteKey(std::string(kKey) + "\\A"));
  EXPECT_EQ(reg_.GetLastError(), "Access denied.");
  EXPECT_TRUE(reg_.DeleteKey(std::string(kKey) + "\\A\\B"));
  EXPECT_TRUE(reg_.DeleteKey(std::string(kKey) + "\\A"));
  EXPECT_EQ(reg_.GetLastError(), "");
}

TEST_F(KvoRegistryTest, SuccessClearsThePreviousFailure) {
  EXPECT_FALSE(reg_.CreateKey("HKCU"));
  EXPECT_NE(reg_.GetLastError(), "");
  EXPECT_TRUE(reg_.SetDWORDValue(kKey, "n", 1));
  EXPECT_EQ(reg_.GetLastError(), "");
}

TEST_F(KvoRegistryTest, ResultCodeWithoutEntryRecordsUnexpectedError) {
  if (testing::RunningOnWine()) GTEST_SKIP() << "Wine treats HKEY_DYN_DATA as writable";
  // The store refuses every call on HKEY_DYN_DATA with 6 (invalid handle).
  EXPECT_FALSE(reg_.CreateKey("HKEY_DYN_DATA\\Sub"));
  EXPECT_EQ(reg_.GetLastError(), "Unexpected error occurs(Err#: 6).");
  EXPECT_RAISES(reg_.RaiseLastError(), -1, "Unexpected error occurs(Err#: 6).");
}

TEST_F(KvoRegistryTest, ReadThroughPerformanceDataFindsNoValue) {
  if (testing::RunningOnWine()) {
    GTEST_SKIP() << "Wine 8.0 answers a query of HKEY_PERFORMANCE_DATA with data";
  }
  std::string value;
  EXPECT_EQ(reg_.GetStringValue("HKEY_PERFORMANCE_DATA", "Global", value), -1);
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
}

struct ErrorTextCase {
  int32_t code;
  const char* text;
};

class KvoRegistryErrorTextTest : public ::testing::TestWithParam<ErrorTextCase> {};

TEST_P(KvoRegistryErrorTextTest, RegistryResultCodeRecordsItsText) {
  FaultyRegistryPlatform platform;
  platform.backend.open_result = GetParam().code;
  ScopedPlatform scoped(platform);
  KvoRegistry reg;
  std::string value;
  EXPECT_EQ(reg.GetStringValue(kKey, "a", value), -1);
  EXPECT_EQ(reg.GetLastError(), GetParam().text);
  EXPECT_RAISES(reg.RaiseLastError(), -1, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    AllCodes, KvoRegistryErrorTextTest,
    ::testing::Values(ErrorTextCase{2, "Invalid parameter."}, ErrorTextCase{5, "Access denied."},
                      ErrorTextCase{14, "Out of memory."}, ErrorTextCase{87, "Invalid parameter."},
                      ErrorTextCase{234, "Buffer size too small to hold value."},
                      ErrorTextCase{259, "The buffer is too small to hold all data."},
                      ErrorTextCase{1009, "The registry database was corrupted."},
                      ErrorTextCase{1010, "Bad registry key name."},
                      ErrorTextCase{1011, "Specified key name can't be open."},
                      ErrorTextCase{1012, "Failed to read specified key value."},
                      ErrorTextCase{1013, "Failed to set specified key value."},
                      ErrorTextCase{1015, "The registry database was corrupted."},
                      ErrorTextCase{1016, "Registry database I/O error."},
                      ErrorTextCase{1018, "Specified key has been deleted."},
                      ErrorTextCase{1019, "Failed to allocate space for registry log."},
                      ErrorTextCase{6, "Unexpected error occurs(Err#: 6)."},
                      ErrorTextCase{-3, "Unexpected error occurs(Err#: -3)."}),
    [](const ::testing::TestParamInfo<ErrorTextCase>& info) {
      return info.param.code < 0 ? "CodeMinus" + std::to_string(-info.param.code)
                                 : "Code" + std::to_string(info.param.code);
    });

// Values as XML.

TEST_F(KvoRegistryTest, KeyWithStringNumberExpandAndBinaryGivesTwoOptions) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "text", "hello"));
  ASSERT_TRUE(reg_.SetDWORDValue(kKey, "number", 42));
  SetRaw("expand", kRegExpandSz, "%PATH%");
  ASSERT_TRUE(reg_.SetBinaryValue(kKey, "binary", {1, 2}));
  std::string xml;
  EXPECT_TRUE(reg_.GetKeyValuesToXml(kKey, xml));
  // Values come in the registry's order: the order of creation on Windows,
  // by name under Wine.
  EXPECT_EQ(xml, testing::RunningOnWine()
                     ? "<group id=\"general\"><option name=\"number\" value=\"42\"/>"
                       "<option name=\"text\" value=\"hello\"/></group>"
                     : "<group id=\"general\"><option name=\"text\" value=\"hello\"/>"
                       "<option name=\"number\" value=\"42\"/></group>");
  EXPECT_EQ(reg_.GetLastError(), "");
}

TEST_F(KvoRegistryTest, ValuesXmlThatWouldNotLoadIsRefused) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "control", "a\x01b"));
  std::string xml = "previous";

  EXPECT_FALSE(reg_.GetKeyValuesToXml(kKey, xml));

  EXPECT_EQ(xml, "");
  EXPECT_EQ(reg_.GetLastError(), "Registry values hold characters that XML cannot hold.");
}

TEST_F(KvoRegistryTest, ValuesXmlWithTabsAndNewlinesLoadsBack) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "text", "tab\there\nline"));
  std::string xml;
  ASSERT_TRUE(reg_.GetKeyValuesToXml(kKey, xml));

  KvoRegistry other;
  ASSERT_TRUE(other.SetKeyValuesFromXml(kKey + std::string("\\Copy"), xml));
  std::string value;
  other.GetStringValue(kKey + std::string("\\Copy"), "text", value);
  EXPECT_EQ(value, "tab\there\nline");
}

TEST_F(KvoRegistryTest, ValuesXmlUsesRootTagGroupIdAndRegistryOrder) {
  ASSERT_TRUE(reg_.SetDWORDValue(kKey, "z", -1));
  ASSERT_TRUE(reg_.SetStringValue(kKey, "a", "  x<&\"y"));
  ASSERT_TRUE(reg_.SetStringValue(kKey, "", "default is left out"));
  std::string xml;
  EXPECT_TRUE(reg_.GetKeyValuesToXml(kKey, xml, "  options ", ""));
  // Wine enumerates values by name, Windows in the order of creation.
  EXPECT_EQ(xml, testing::RunningOnWine()
                     ? "<options id=\"\"><option name=\"a\" value=\"x&lt;&amp;&quot;y\"/>"
                       "<option name=\"z\" value=\"-1\"/></options>"
                     : "<options id=\"\"><option name=\"z\" value=\"-1\"/>"
                       "<option name=\"a\" value=\"x&lt;&amp;&quot;y\"/></options>");
}

TEST_F(KvoRegistryTest, BlankRootTagFailsWithNoRootTagSpecified) {
  std::string xml = "old";
  EXPECT_FALSE(reg_.GetKeyValuesToXml(kKey, xml, "   "));
  EXPECT_EQ(xml, "");
  EXPECT_EQ(reg_.GetLastError(), "No root tag specified.");
}

TEST_F(KvoRegistryTest, ValuesXmlOfMissingKeyFails) {
  std::string xml = "old";
  EXPECT_FALSE(reg_.GetKeyValuesToXml(std::string(kKey) + "\\Missing", xml));
  EXPECT_EQ(xml, "");
  EXPECT_EQ(reg_.GetLastError(), "Invalid parameter.");
}

TEST_F(KvoRegistryTest, UnreadableValueIsWrittenEmptyAndItsFailureRecorded) {
  ASSERT_TRUE(reg_.SetStringValue(kKey, "bad", "x"));
  ASSERT_TRUE(reg_.SetDWORDValue(kKey, "badnum", 3));
  ASSERT_TRUE(reg_.SetStringValue(kKey, "good", "y"));
  FaultyRegistryPlatform platform;
  ScopedPlatform scoped(platform);
  KvoRegistry reg;
  platform.backend.failing_value = "bad";
  platform.backend.query_result = regerr::kIoFailed;
  std::string xml;
  EXPECT_TRUE(reg.GetKeyValuesToXml(kKey, xml));
  EXPECT_EQ(xml,
            "<group id=\"general\"><option name=\"bad\" value=\"\"/>"
            "<option name=\"badnum\" value=\"3\"/><option name=\"good\" value=\"y\"/></group>");
  EXPECT_EQ(reg.GetLastError(), "Registry database I/O error.");
  platform.backend.failing_value = "badnum";
  EXPECT_TRUE(reg.GetKeyValuesToXml(kKey, xml));
  EXPECT_EQ(xml,
            "<group id=\"general\"><option name=\"bad\" value=\"x\"/>"
            "<option name=\"badnum\" value=\"0\"/><option name=\"good\" value=\"y\"/></group>");
}

TEST_F(KvoRegistryTest, SetKeyValuesFromXmlCreatesMissingKeyAndWritesStrings) {
  std::string key = std::string(kKey) + "\\New\\Group";
  EXPECT_TRUE(reg_.SetKeyValuesFromXml(
      key,
      "<group id=\"g\"><option name=\"n\" value=\"42\"/><option name=\"t\" value=\"x\"/>"
      "<option name=\"novalue\"/></group>"));
  EXPECT_EQ(reg_.GetLastError(), "");
  EXPECT_EQ(ReadRaw("Software\\VeldTest\\New\\Group", "n"),
            (std::pair<uint32_t, std::string>{kRegSz, std::string("42\0", 3)}));
  std::string xml;
  EXPECT_TRUE(reg_.GetKeyValuesToXml(key, xml));
  // Wine enumerates values by name, Windows in the order of creation.
  EXPECT_EQ(xml, testing::RunningOnWine()
                     ? "<group id=\"general\"><option name=\"n\" value=\"42\"/><option "
                       "name=\"novalue\" value=\"\"/><option name=\"t\" value=\"x\"/></group>"
                     : "<group id=\"general\"><option name=\"n\" value=\"42\"/><option "
                       "name=\"t\" value=\"x\"/><option name=\"novalue\" value=\"\"/></group>");
}

TEST_F(KvoRegistryTest, OptionWithBlankNameIsSkippedAndUnnamedOptionsAreNotSelected) {
  EXPECT_TRUE(reg_.SetKeyValuesFromXml(
      kKey,
      "<group><option name=\"  \" value=\"blank\"/><option value=\"absent\"/>"
      "<option name=\"\" value=\"empty\"/><option name=\"kept\" value=\"1\"/></group>"));
  std::string xml;
  EXPECT_TRUE(reg_.GetKeyValuesToXml(kKey, xml));
  EXPECT_EQ(xml, "<group id=\"general\"><option name=\"kept\" value=\"1\"/></group>");
  std::string value;
  EXPECT_EQ(reg_.GetStringValue(kKey, "", value), -1);
}

TEST_F(KvoRegistryTest, NestedOptionsAreAcceptedAtAnyDepth) {
  EXPECT_TRUE(
      reg_.SetKeyValuesFromXml(kKey,
                               "<a><b><c><option name=\"deep\" value=\"1\">text</option></c></b>"
                               "<option name=\"shallow\" value=\"2\"/></a>"));
  std::string value;
  EXPECT_EQ(reg_.GetStringValue(kKey, "deep", value), 1);
  EXPECT_EQ(value, "1");
  EXPECT_EQ(reg_.GetStringValue(kKey, "shallow", value), 1);
  EXPECT_EQ(value, "2");
}

TEST_F(KvoRegistryTest, BlankValuesXmlFailsWithNoValuesSpecified) {
  EXPECT_FALSE(reg_.SetKeyValuesFromXml(kKey, "   "));
  EXPECT_EQ(reg_.GetLastError(), "No values specified.");
}

TEST_F(KvoRegistryTest, MalformedValuesXmlFailsWithFailedToLoad) {
  EXPECT_FALSE(reg_.SetKeyValuesFromXml(kKey, "<group><option name=\"a\"></group>"));
  EXPECT_EQ(reg_.GetLastError(), "Failed to load values from xml.");
}

TEST_F(KvoRegistryTest, FailedWriteStopsAndKeepsEarlierValues) {
  KvoRegistry& reg = reg_;
  ASSERT_TRUE(reg.SetKeyValuesFromXml(kKey, "<g><option name=\"first\" value=\"1\"/></g>"));
  // A name longer than the registry allows fails the second write.
  std::string too_long(16384, 'n');
  EXPECT_FALSE(reg.SetKeyValuesFromXml(
      kKey, "<g><option name=\"second\" value=\"2\"/><option name=\"" + too_long +
                "\" value=\"x\"/><option name=\"third\" value=\"3\"/></g>"));
  EXPECT_EQ(reg.GetLastError(), "Invalid parameter.");
  std::string value;
  EXPECT_EQ(reg.GetStringValue(kKey, "second", value), 1);
  EXPECT_EQ(reg.GetStringValue(kKey, "third", value), -1);
}

TEST_F(KvoRegistryTest, ValuesXmlOnUnusableRootFailsAtFirstWrite) {
  if (testing::RunningOnWine()) GTEST_SKIP() << "Wine treats HKEY_DYN_DATA as writable";
  EXPECT_FALSE(
      reg_.SetKeyValuesFromXml("HKEY_DYN_DATA\\X", "<g><option name=\"a\" value=\"1\"/></g>"));
  EXPECT_EQ(reg_.GetLastError(), "Unexpected error occurs(Err#: 6).");
}

}  // namespace
}  // namespace veld
