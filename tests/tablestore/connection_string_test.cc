#include "tablestore/connection_string.h"

#include <gtest/gtest.h>

#include "support/testing.h"

namespace veld {
namespace {

constexpr const char* kBadFormat = "Format of the initialization string is not valid.";

TEST(ConnectionStringTest, ReadsTheExportTemplate) {
  auto settings = ConnectionString::Parse(
      "PROVIDER=Microsoft.Jet.OLEDB.4.0;Data Source=orders.db;User ID=admin;Password=");
  EXPECT_EQ(settings.Get("Provider"), "Microsoft.Jet.OLEDB.4.0");
  EXPECT_EQ(settings.Get("data source"), "orders.db");
  EXPECT_EQ(settings.Get("USER ID"), "admin");
  EXPECT_EQ(settings.Get("Password"), "");
  EXPECT_EQ(settings.Get("Mode"), std::nullopt);
}

TEST(ConnectionStringTest, TrimsKeysAndUnquotedValues) {
  auto settings = ConnectionString::Parse("  Data Source =  my file.db  ; x=1");
  EXPECT_EQ(settings.Get("Data Source"), "my file.db");
}

TEST(ConnectionStringTest, QuotedValuesHoldSemicolonsAndDoubledQuotes) {
  auto settings = ConnectionString::Parse(
      "Data Source=\"odbc:Driver={SQLite3};Database=a.db\";Password='it''s';User ID=\"say "
      "\"\"hi\"\"\"");
  EXPECT_EQ(settings.Get("Data Source"), "odbc:Driver={SQLite3};Database=a.db");
  EXPECT_EQ(settings.Get("Password"), "it's");
  EXPECT_EQ(settings.Get("User ID"), "say \"hi\"");
}

TEST(ConnectionStringTest, UnquotedSemicolonEndsTheValue) {
  // The export puts the caller's file name into the string as it is, so a
  // ";" in it starts a new pair.
  EXPECT_RAISES(ConnectionString::Parse("Data Source=a;b.db;User ID=u"), -2147467259, kBadFormat);
  auto settings = ConnectionString::Parse("Data Source=a;b=.db;User ID=u");
  EXPECT_EQ(settings.Get("Data Source"), "a");
}

TEST(ConnectionStringTest, LastValueOfARepeatedKeyCounts) {
  auto settings = ConnectionString::Parse("User ID=a;user id=b");
  EXPECT_EQ(settings.Get("User ID"), "b");
}

TEST(ConnectionStringTest, DoubledEqualsInKeyIsLiteral) {
  auto settings = ConnectionString::Parse("a==b=c");
  EXPECT_EQ(settings.Get("a=b"), "c");
}

TEST(ConnectionStringTest, EmptyPairsAreSkipped) {
  auto settings = ConnectionString::Parse(";;Data Source=x;;");
  EXPECT_EQ(settings.Pairs().size(), 1u);
}

TEST(ConnectionStringTest, MalformedStringsRaise) {
  EXPECT_RAISES(ConnectionString::Parse("Data Source"), -2147467259, kBadFormat);
  EXPECT_RAISES(ConnectionString::Parse("=value"), -2147467259, kBadFormat);
  EXPECT_RAISES(ConnectionString::Parse("a=\"open"), -2147467259, kBadFormat);
  EXPECT_RAISES(ConnectionString::Parse("a=\"x\" y;"), -2147467259, kBadFormat);
}

}  // namespace
}  // namespace veld
