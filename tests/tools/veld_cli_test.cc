#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#ifndef _WIN32
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "support/scoped_registry.h"
#include "support/sqlite_file.h"
#include "support/testing.h"
#include "veld_process.h"

namespace veld {
namespace {

using Result = testing::VeldResult;
using testing::RunVeld;

class VeldCliTest : public ::testing::Test {
 protected:
  testing::TempDir dir_;
};

TEST_F(VeldCliTest, HelpListsTheCommandsAndSucceeds) {
  Result result = RunVeld({"--help"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_NE(result.out.find("items"), std::string::npos);
  EXPECT_NE(result.out.find("self-check"), std::string::npos);
  EXPECT_EQ(result.err, "");
}

TEST_F(VeldCliTest, NoCommandIsAUsageError) {
  Result result = RunVeld({});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("usage: veld"), std::string::npos);
}

TEST_F(VeldCliTest, UnknownCommandIsAUsageError) {
  Result result = RunVeld({"frobnicate"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld: unknown command 'frobnicate'\n", 0), 0u) << result.err;
}

TEST_F(VeldCliTest, EveryLevelHasHelp) {
  for (const auto& args : std::vector<std::vector<std::string>>{
           {"items", "--help"}, {"items", "list", "--help"}, {"items", "convert", "-h"}}) {
    Result result = RunVeld(args);
    EXPECT_EQ(result.exit_code, 0) << args[1];
    EXPECT_EQ(result.out.rfind("usage: veld items", 0), 0u) << result.out;
  }
}

TEST_F(VeldCliTest, VersionNamesTheTool) {
  Result result = RunVeld({"--version"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out.rfind("veld ", 0), 0u);
}

TEST_F(VeldCliTest, ItemsListPrintsRootTagsThenItems) {
  const std::string file =
      dir_.Write("items.xml",
                 "<group id='g'><option name='a' value='1' type='int'/><option name='b'>two"
                 "</option></group>");
  Result result = RunVeld({"items", "list", file});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "@id\tg\na\t1\tint\t\nb\ttwo\ttwo\ttwo\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(VeldCliTest, ItemsConvertWritesTheLibrarysForm) {
  const std::string file =
      dir_.Write("in.xml", "<row><col name='qty'> 3 </col><col name='code' value='A'/></row>");
  Result result = RunVeld({"items", "convert", "--root=group", "--tag", "option", file});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "<group><option name=\"qty\" value=\"3\" type=\"3\" extra=\"3\"/>"
            "<option name=\"code\" value=\"A\"/></group>\n");
  const std::string out = dir_.File("out.xml");
  result = RunVeld({"items", "convert", file, out});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(testing::ReadFile(out),
            "<group><option name=\"qty\" value=\"3\" type=\"3\" extra=\"3\"/>"
            "<option name=\"code\" value=\"A\"/></group>");
}

TEST_F(VeldCliTest, MissingFileFailsWithTheLibrarysMessage) {
  const std::string missing = dir_.File("missing.xml");
  Result result = RunVeld({"items", "list", missing});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "veld items list: Failed to load items Xml. (" + missing + ")\n");
}

TEST_F(VeldCliTest, MalformedXmlFailsWithTheLibrarysMessage) {
  const std::string file = dir_.Write("bad.xml", "<group><option name='a'>");
  Result result = RunVeld({"items", "list", file});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld items list: Failed to load items Xml. (" + file + ")\n");
}

TEST_F(VeldCliTest, DuplicateNamesWithKeysFail) {
  const std::string file = dir_.Write("dup.xml", "<g><o name='A'/><o name='a'/></g>");
  Result result = RunVeld({"items", "list", "--keys", file});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "veld items list: This key is already associated with an element of this "
            "collection (" +
                file + ")\n");
  EXPECT_EQ(RunVeld({"items", "list", file}).exit_code, 0);
}

TEST_F(VeldCliTest, WrongArgumentsAreUsageErrors) {
  Result result = RunVeld({"items", "list"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld items list: missing arguments\n", 0), 0u) << result.err;
  result = RunVeld({"items", "list", "a", "b"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld items list: too many arguments\n", 0), 0u) << result.err;
  result = RunVeld({"items", "convert", "x.xml", "--root"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld items convert: option --root needs a value\n", 0), 0u);
}

TEST_F(VeldCliTest, OptionsSetGetListRemoveRoundTrip) {
  const std::string file = dir_.File("app.xml");
  const std::vector<std::string> where = {"--section", "main", "--group", "window"};
  auto with = [&](std::vector<std::string> args) {
    args.insert(args.begin() + 2, where.begin(), where.end());
    return RunVeld(args);
  };
  EXPECT_EQ(with({"options", "set", file, "width", "800"}).exit_code, 0);
  EXPECT_EQ(with({"options", "set", file, "title", "H\xC3\xA9llo & <you>"}).exit_code, 0);
  Result got = with({"options", "get", file, "title"});
  EXPECT_EQ(got.exit_code, 0) << got.err;
  EXPECT_EQ(got.out, "H\xC3\xA9llo & <you>\n");
  EXPECT_EQ(with({"options", "list", file}).out, "width\t800\ntitle\tH\xC3\xA9llo & <you>\n");
  EXPECT_EQ(with({"options", "remove", file, "--name", "width"}).exit_code, 0);
  EXPECT_EQ(with({"options", "list", file}).out, "title\tH\xC3\xA9llo & <you>\n");
  EXPECT_FALSE(std::ifstream(file + ".bak").good());
}

TEST_F(VeldCliTest, OptionsGetOfMissingOptionFailsUnlessDefaultGiven) {
  const std::string file =
      dir_.Write("app.xml",
                 "<config><section id='s'><group id='g'><option name='a' value='1'/></group>"
                 "</section></config>");
  Result result = RunVeld({"options", "get", "--section", "s", "--group", "g", file, "b"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "veld options get: Specified option not found - "
            "/*/section[@id='s']/group[@id='g']/option[@name='b']\n");
  result =
      RunVeld({"options", "get", "--section", "s", "--group", "g", "--default", "5", file, "b"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "5\n");
}

TEST_F(VeldCliTest, OptionsOfUnknownSectionFail) {
  const std::string file = dir_.Write("app.xml", "<config><section id='s'/></config>");
  Result result = RunVeld({"options", "list", "--section", "nosuch", "--group", "g", file});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "veld options list: no options in section 'nosuch', group 'g' of " + file + "\n");
}

TEST_F(VeldCliTest, OptionsOfMissingOrMalformedFileFailWithTheLibrarysMessage) {
  const std::string missing = dir_.File("missing.xml");
  Result result = RunVeld({"options", "get", missing, "x"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld options get: Option file not found - " + missing + ".\n");
  const std::string bad = dir_.Write("bad.xml", "<config><section>");
  result = RunVeld({"options", "list", "--section", "s", "--group", "g", bad});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "veld options list: Faield to load option file(Not a valid xml format?).\n");
}

TEST_F(VeldCliTest, OptionsMergeReplacesSectionsOfTheSameId) {
  const std::string source =
      dir_.Write("defaults.xml",
                 "<config><section id='a'><group id='g'><option name='x' value='new'/>"
                 "</group></section><section id='b'/></config>");
  const std::string target = dir_.Write(
      "app.xml", "<config><section id='a'><group id='old'/></section><section id='c'/></config>");
  EXPECT_EQ(RunVeld({"options", "merge", "--sections", "a", source, target}).exit_code, 0);
  EXPECT_EQ(testing::ReadFile(target),
            "<config><section id=\"c\"/><section id=\"a\"><group id=\"g\"><option name=\"x\" "
            "value=\"new\"/></group></section></config>");
}

TEST_F(VeldCliTest, OptionsEncodeAndDecodeRoundTrip) {
  Result encoded = RunVeld({"options", "encode", "p\xC3\xA4ss word"});
  EXPECT_EQ(encoded.exit_code, 0);
  ASSERT_GT(encoded.out.size(), 5u);
  EXPECT_EQ(encoded.out.rfind("-e", 0), 0u);
  const std::string text = encoded.out.substr(0, encoded.out.size() - 1);
  EXPECT_EQ(RunVeld({"options", "decode", text}).out, "p\xC3\xA4ss word\n");
  EXPECT_EQ(RunVeld({"options", "decode", "plain"}).out, "plain\n");
}

TEST_F(VeldCliTest, OptionsRemoveNeedsASection) {
  const std::string file = dir_.Write("app.xml", "<config/>");
  Result result = RunVeld({"options", "remove", file});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld options remove: --section is required\n", 0), 0u);
}

class VeldRegistryCliTest : public VeldCliTest {
 protected:
  testing::ScopedTestRegistry registry_;

  const std::string key_ = "HKEY_CURRENT_USER\\Software\\VeldCli";
};

TEST_F(VeldRegistryCliTest, ValuesOfEveryTypeRoundTrip) {
  EXPECT_EQ(RunVeld({"registry", "set", "--type", "dword", key_, "Width", "800"}).exit_code, 0);
  EXPECT_EQ(RunVeld({"registry", "get", "--type", "dword", key_, "Width"}).out, "800\n");
  EXPECT_EQ(RunVeld({"registry", "set", key_, "Title", "  Caf\xC3\xA9"}).exit_code, 0);
  // Leading blanks are not read back, as the library reads strings.
  EXPECT_EQ(RunVeld({"registry", "get", key_, "Title"}).out, "Caf\xC3\xA9\n");
  EXPECT_EQ(RunVeld({"registry", "set", "--type=binary", key_, "Blob", "00ff10"}).exit_code, 0);
  EXPECT_EQ(RunVeld({"registry", "get", "--type=binary", key_, "Blob"}).out, "00FF10\n");
  // Wine enumerates values by name, Windows in the order of creation.
  EXPECT_EQ(RunVeld({"registry", "dump", key_}).out,
            testing::RunningOnWine()
                ? "<group id=\"general\"><option name=\"Title\" value=\"Caf\xC3\xA9\"/><option "
                  "name=\"Width\" value=\"800\"/></group>\n"
                : "<group id=\"general\"><option name=\"Width\" value=\"800\"/><option "
                  "name=\"Title\" value=\"Caf\xC3\xA9\"/></group>\n");
}

TEST_F(VeldRegistryCliTest, BadKeyPathFailsWithTheLibrarysMessage) {
  Result result = RunVeld({"registry", "get", "HKEY_NOWHERE\\Software", "x"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld registry get: Invalid main key name specified - HKEY_NOWHERE\n");
}

TEST_F(VeldRegistryCliTest, MissingValueFails) {
  ASSERT_EQ(RunVeld({"registry", "set", key_, "a", "1"}).exit_code, 0);
  Result result = RunVeld({"registry", "get", key_, "nosuch"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld registry get: Invalid parameter.\n");
}

TEST_F(VeldRegistryCliTest, LoadWritesOptionElementsAsStrings) {
  const std::string file =
      dir_.Write("values.xml",
                 "<group id='general'><option name='a' value='1'/><option name='b' "
                 "value='two'/></group>");
  ASSERT_EQ(RunVeld({"registry", "load", key_, file}).exit_code, 0);
  EXPECT_EQ(RunVeld({"registry", "get", key_, "b"}).out, "two\n");
  EXPECT_EQ(RunVeld({"registry", "delete", key_}).exit_code, 0);
  EXPECT_EQ(RunVeld({"registry", "get", key_, "b"}).exit_code, 1);
}

TEST_F(VeldRegistryCliTest, OptionGroupsMirrorToAndFromAKey) {
  const std::string source =
      dir_.Write("app.xml",
                 "<config><section id='main'><group id='general'><option name='w' value='9'/>"
                 "</group></section></config>");
  ASSERT_EQ(RunVeld({"registry", "to-registry", "--section", "main", source, key_}).exit_code, 0);
  const std::string target = dir_.File("copy.xml");
  Result result = RunVeld({"registry", "from-registry", "--section", "main", target, key_});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(testing::ReadFile(target),
            "<config><section id=\"main\"><group id=\"general\"><option name=\"w\" "
            "value=\"9\"/></group></section></config>");
}

TEST_F(VeldRegistryCliTest, WrongTypeIsAUsageError) {
  Result result = RunVeld({"registry", "get", "--type", "qword", key_, "a"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld registry get: --type must be string, dword or binary\n", 0), 0u);
}

TEST_F(VeldCliTest, XmlTransformWritesTheResult) {
  const std::string input =
      dir_.Write("doc.xml", "<doc><item id='1'>one</item><item id='2'>two</item></doc>");
  const std::string sheet =
      dir_.Write("list.xsl",
                 "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                 "<xsl:template match='/'><list><xsl:for-each select='//item'><li><xsl:value-of "
                 "select='.'/></li></xsl:for-each></list></xsl:template></xsl:stylesheet>");
  Result result = RunVeld({"xml", "transform", sheet, input});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "<list><li>one</li><li>two</li></list>\n");
  const std::string out = dir_.File("out.xml");
  EXPECT_EQ(RunVeld({"xml", "transform", sheet, input, out}).exit_code, 0);
  EXPECT_EQ(testing::ReadFile(out), "<list><li>one</li><li>two</li></list>");
}

TEST_F(VeldCliTest, XmlExtractAndRemoveByXPath) {
  const std::string input =
      dir_.Write("doc.xml", "<doc><item id='1' kind='a'>one</item><item id='2'>two</item></doc>");
  EXPECT_EQ(RunVeld({"xml", "extract", input, "//item[1]"}).out,
            "<item id=\"1\" kind=\"a\">one</item>\n");
  EXPECT_EQ(RunVeld({"xml", "extract", "--attributes", input, "//item[1]"}).out,
            "id\t1\nkind\ta\n");
  EXPECT_EQ(RunVeld({"xml", "remove", input, "//item[@id='2']"}).out,
            "<doc><item id=\"1\" kind=\"a\">one</item></doc>\n");
}

TEST_F(VeldCliTest, XmlOfMalformedFileFailsWithTheLibrarysMessage) {
  const std::string bad = dir_.Write("bad.xml", "<doc>");
  Result result = RunVeld({"xml", "extract", bad, "/"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld xml extract: Failed to load data from file - " + bad + ".\n");
}

TEST_F(VeldCliTest, XmlTransformWithMissingSheetFails) {
  const std::string input = dir_.Write("doc.xml", "<doc/>");
  Result result = RunVeld({"xml", "transform", dir_.File("missing.xsl"), input});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err.rfind("veld xml transform: Failed to load XSL file - ", 0), 0u)
      << result.err;
}

const char kDataset[] =
    "<dataset><data guid='orders'><row guid='a'><col name='code' value='A'/><col name='qty' "
    "value='2'/></row><row guid='b'><col name='code' value='B'/><col name='qty' value='3'/>"
    "</row></data><data guid='empty'/></dataset>";

TEST_F(VeldCliTest, DatasetsSummaryRowsAndFind) {
  const std::string file = dir_.Write("orders.xml", kDataset);
  EXPECT_EQ(RunVeld({"datasets", "summary", file}).out, "orders\t2\nempty\t0\n");
  EXPECT_EQ(RunVeld({"datasets", "rows", "--from", "2", file, "orders"}).out,
            "<row guid=\"b\"><col name=\"code\" value=\"B\"/><col name=\"qty\" value=\"3\"/>"
            "</row>\n");
  EXPECT_EQ(RunVeld({"datasets", "find", file, "orders", "code", "A"}).out,
            "<row guid=\"a\"><col name=\"code\" value=\"A\"/><col name=\"qty\" value=\"2\"/>"
            "</row>\n");
}

TEST_F(VeldCliTest, DatasetsExportWritesTheRows) {
  const std::string file = dir_.Write("orders.xml", kDataset);
  const std::string db = dir_.File("shop.db");
  testing::SqliteExec(db, "CREATE TABLE orders (code VARCHAR(5), qty INTEGER)");
  Result result = RunVeld({"datasets", "export", "--clear", file, "orders", db, "orders"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(testing::SqliteRows(db, "SELECT code, qty FROM orders ORDER BY code"),
            (testing::SqliteRowList{{"A", "2"}, {"B", "3"}}));
}

TEST_F(VeldCliTest, DatasetsExportToTableThatDoesNotExistFails) {
  const std::string file = dir_.Write("orders.xml", kDataset);
  const std::string db = dir_.File("shop.db");
  { std::ofstream touch(db); }
  // An empty file is an SQLite database without tables.
  Result result = RunVeld({"datasets", "export", file, "orders", db, "orders"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld datasets export: no such table: orders(ERR#: -2147217865)\n");
}

TEST_F(VeldCliTest, DatasetsOfMalformedFileOrUnknownDataFail) {
  const std::string bad = dir_.Write("bad.xml", "<dataset><data>");
  Result result = RunVeld({"datasets", "summary", bad});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err.rfind("veld datasets summary: ", 0), 0u);
  const std::string file = dir_.Write("orders.xml", kDataset);
  result = RunVeld({"datasets", "rows", file, "nosuch"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld datasets rows: no data element 'nosuch'\n");
}

TEST_F(VeldCliTest, DatasetsExportOfUnknownDataOrMalformedFileLeavesTheTable) {
  const std::string db = dir_.File("shop.db");
  testing::SqliteExec(db,
                      "CREATE TABLE orders (code VARCHAR(5), qty INTEGER);"
                      "INSERT INTO orders VALUES ('OLD', 1)");
  const testing::SqliteRowList before = {{"OLD", "1"}};
  const std::string file = dir_.Write("orders.xml", kDataset);
  Result result = RunVeld({"datasets", "export", "--clear", file, "nosuch", db, "orders"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld datasets export: no data element 'nosuch'\n");
  EXPECT_EQ(testing::SqliteRows(db, "SELECT code, qty FROM orders"), before);

  std::string cut(kDataset);
  cut.resize(cut.size() - 3);
  const std::string bad = dir_.Write("cut.xml", cut);
  result = RunVeld({"datasets", "export", "--clear", bad, "orders", db, "orders"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld datasets export: Failed to load dataset file.\n");
  EXPECT_EQ(testing::SqliteRows(db, "SELECT code, qty FROM orders"), before);
}

#ifndef _WIN32  // POSIX devices and terminals; see tests/WindowsExclusions.cmake
// Runs the tool with standard output and error on a pseudo-terminal and
// returns what it wrote there.
std::string RunVeldOnTerminal(const std::vector<std::string>& args) {
  std::vector<std::string> words = {VELD_CLI_PATH};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  int terminal = -1;
  const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (pid < 0) return "";
  if (pid == 0) {
    execv(VELD_CLI_PATH, argv.data());
    _exit(127);
  }
  std::string output;
  char buffer[4096];
  for (;;) {
    const ssize_t n = read(terminal, buffer, sizeof buffer);
    if (n <= 0) break;  // EIO once the child has closed the terminal
    output.append(buffer, static_cast<size_t>(n));
  }
  close(terminal);
  int status = 0;
  waitpid(pid, &status, 0);
  return output;
}

TEST_F(VeldCliTest, ExportDrawsProgressOnATerminalOnly) {
  std::string dataset = "<dataset><data guid='d'>";
  for (int i = 0; i < 2000; ++i) {
    dataset += "<row><col name='n' value='" + std::to_string(i) + "'/></row>";
  }
  dataset += "</data></dataset>";
  const std::string file = dir_.Write("big.xml", dataset);
  const std::string db = dir_.File("t.db");
  testing::SqliteExec(db, "CREATE TABLE t (n INTEGER)");

  const std::string drawn = RunVeldOnTerminal({"datasets", "export", file, "d", db, "t"});
  EXPECT_NE(drawn.find("\r[##############################] 100% Reading rows"), std::string::npos)
      << drawn;
  EXPECT_NE(drawn.find("100% Exporting rows to t"), std::string::npos) << drawn;

  Result piped = RunVeld({"datasets", "export", "--clear", file, "d", db, "t"});
  EXPECT_EQ(piped.exit_code, 0) << piped.err;
  EXPECT_EQ(piped.err, "");
  EXPECT_EQ(piped.out, "");
}

// Runs the tool with standard output on /dev/full (`closed` false) or closed
// (`closed` true); gives the exit status and what standard error got.
Result RunVeldWithBrokenStdout(const std::vector<std::string>& args, bool closed) {
  int err_pipe[2];
  if (pipe(err_pipe) != 0) return {};
  const pid_t pid = testing::StartVeld(
      args, closed ? testing::Sink{testing::Sink::kClosed} : testing::Sink{testing::Sink::kFull},
      testing::Sink::Descriptor(err_pipe[1]), {err_pipe[0]});
  close(err_pipe[1]);
  Result result;
  char buffer[4096];
  ssize_t n;
  while ((n = read(err_pipe[0], buffer, sizeof buffer)) > 0) {
    result.err.append(buffer, static_cast<size_t>(n));
  }
  close(err_pipe[0]);
  if (pid < 0) return result;
  int status = 0;
  waitpid(pid, &status, 0);
  result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

TEST_F(VeldCliTest, OutputToAFullDiskExitsOneWithTheSystemsReason) {
  std::string items = "<items>";
  for (int i = 0; i < 5000; ++i) items += "<item name='n" + std::to_string(i) + "' value='v'/>";
  items += "</items>";
  const std::string file = dir_.Write("many.xml", items);

  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"--version"}, std::vector<std::string>{"--help"},
        std::vector<std::string>{"items", "list", file}, std::vector<std::string>{"self-check"}}) {
    Result result = RunVeldWithBrokenStdout(args, false);
    EXPECT_EQ(result.exit_code, 1) << args[0];
    EXPECT_EQ(result.err, "veld: cannot write to standard output: No space left on device\n");
  }
}

TEST_F(VeldCliTest, OutputToAClosedStdoutExitsOne) {
  Result result = RunVeldWithBrokenStdout({"--help"}, true);
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld: cannot write to standard output: Bad file descriptor\n");
}

TEST_F(VeldCliTest, CommandWithoutOutputIgnoresAClosedStdout) {
  const std::string file = dir_.File("o.xml");
  Result result = RunVeldWithBrokenStdout(
      {"options", "set", "--section", "s", "--group", "g", file, "n", "v"}, true);
  EXPECT_EQ(result.exit_code, 0) << result.err;
}

TEST_F(VeldCliTest, EndlessInputIsReadUpToALimit) {
  Result items = RunVeld({"items", "list", "/dev/zero"});
  EXPECT_EQ(items.exit_code, 1);
  EXPECT_EQ(items.err, "veld items list: Failed to load items Xml. (/dev/zero)\n");

  Result registry =
      RunVeld({"registry", "load", "HKEY_CURRENT_USER\\Software\\VeldTest", "/dev/zero"});
  EXPECT_EQ(registry.exit_code, 1);
  EXPECT_EQ(registry.err, "veld registry load: /dev/zero is larger than 64 MiB\n");
}

#endif

TEST_F(VeldCliTest, DoubleDashAfterDoubleDashIsAnOperand) {
  const std::string file = dir_.File("o.xml");
  ASSERT_EQ(RunVeld({"options", "set", "--section", "s", "--group", "g", "--", file, "n", "--"})
                .exit_code,
            0);

  Result result = RunVeld({"options", "get", "--section", "s", "--group", "g", file, "n"});
  EXPECT_EQ(result.out, "--\n");
}

TEST_F(VeldCliTest, SelfCheckBlamesAnUnknownOption) {
  Result result = RunVeld({"self-check", "--bogus"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(
      result.err.rfind("veld self-check: unknown option --bogus\n\nusage: veld self-check\n", 0),
      0u)
      << result.err;

  result = RunVeld({"self-check", "extra"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld self-check: too many arguments\n", 0), 0u) << result.err;

  result = RunVeld({"self-check", "--help"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out.rfind("usage: veld self-check\n", 0), 0u);
}

TEST_F(VeldCliTest, VersionWithArgumentsIsAWrongCommandLine) {
  Result result = RunVeld({"--version", "extra"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "veld: --version takes no arguments\n");
  EXPECT_EQ(result.out, "");
}

TEST_F(VeldCliTest, FormatWritesTheValueAsTheLocaleShowsIt) {
  Result result = RunVeld({"format", "--locale", "de-DE", "1234.5", "#,##0.00"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "1.234,50\n");
  result = RunVeld({"format", "--locale", "en-US", "1234.5", "#,##0.00"});
  EXPECT_EQ(result.out, "1,234.50\n");
  result = RunVeld({"format", "--locale=de_DE.UTF-8", "2010-12-19 18:00", "Long Date"});
  EXPECT_EQ(result.out, "Sonntag, 19. Dezember 2010\n");
  result = RunVeld({"format", "--locale", "en-US", "2010-12-19 18:00"});
  EXPECT_EQ(result.out, "12/19/2010 6:00:00 PM\n");
}

TEST_F(VeldCliTest, FormatTakesTextWhenAsked) {
  Result result = RunVeld({"format", "--locale", "de-DE", "--text", "6,90", "###,##0.00"});
  EXPECT_EQ(result.out, "6,90\n");
  result = RunVeld({"format", "--locale", "en-US", "--text", "6,90", "###,##0.00"});
  EXPECT_EQ(result.out, "690.00\n");
  result = RunVeld({"format", "--locale", "en-US", "testing", ">@@@@@@@@"});
  EXPECT_EQ(result.out, " TESTING\n");
  result = RunVeld({"format", "--locale", "en-US", "-0.001", "0.00"});
  EXPECT_EQ(result.out, "-0.00\n");
}

#ifndef _WIN32  // LANG: the POSIX process locale; see tests/WindowsExclusions.cmake
TEST_F(VeldCliTest, FormatFollowsLangWithoutLocale) {
  const char* old_lang = std::getenv("LANG");
  const std::string saved = old_lang ? old_lang : "";
  const char* old_all = std::getenv("LC_ALL");
  const std::string saved_all = old_all ? old_all : "";
  unsetenv("LC_ALL");
  setenv("LANG", "fr_FR.UTF-8", 1);
  Result result = RunVeld({"format", "2.5"});
  if (old_lang)
    setenv("LANG", saved.c_str(), 1);
  else
    unsetenv("LANG");
  if (old_all) setenv("LC_ALL", saved_all.c_str(), 1);
  EXPECT_EQ(result.out, "2,5\n");
}
#endif

TEST_F(VeldCliTest, FormatFailuresAndUsage) {
  Result result = RunVeld({"format", "--locale", "en-US", "1e9", "yyyy"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld format: Invalid procedure call or argument\n");
  result = RunVeld({"format"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld format: missing arguments\n\nusage: veld format", 0), 0u)
      << result.err;
  result = RunVeld({"format", "--help"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out.rfind("usage: veld format [options] VALUE [PATTERN]", 0), 0u);
}

const char kDepartments[] =
    "<dataset><data>"
    "<row><col name=\"id\" value=\"1\"/><col name=\"parent\" value=\"\"/><col name=\"name\" "
    "value=\"Company\"/></row>"
    "<row><col name=\"id\" value=\"2\"/><col name=\"parent\" value=\"1\"/><col name=\"name\" "
    "value=\"Sales\"/></row>"
    "<row><col name=\"id\" value=\"3\"/><col name=\"parent\" value=\"2\"/><col name=\"name\" "
    "value=\"North\"/></row>"
    "<row index=\"0\"><col name=\"id\" value=\"9\"/><col name=\"parent\" value=\"2\"/><col "
    "name=\"name\" value=\"Hidden\"/></row>"
    "<row><col name=\"id\" value=\"4\"/><col name=\"parent\" value=\"2\"/><col name=\"name\" "
    "value=\"South\"/></row>"
    "<row><col name=\"id\" value=\"5\"/><col name=\"parent\" value=\"1\"/><col name=\"name\" "
    "value=\"IT\"/></row>"
    "<row><col name=\"id\" value=\"6\"/><col name=\"parent\" value=\"\"/><col name=\"name\" "
    "value=\"Other\"/></row>"
    "</data></dataset>";

TEST_F(VeldCliTest, ViewTreeDrawsTheTreeTheHelperBuilds) {
  const std::string file = dir_.Write("departments.xml", kDepartments);
  Result result =
      RunVeld({"view", "tree", "--key", "ID", "--parent", "Parent", "--text", "name", file});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "Company\n"
            "\u251c\u2500\u2500 Sales\n"
            "\u2502   \u251c\u2500\u2500 North\n"
            "\u2502   \u2514\u2500\u2500 South\n"
            "\u2514\u2500\u2500 IT\n"
            "Other\n");
  result = RunVeld({"view", "tree", "--key", "id", "--parent", "parent", "--text", "name",
                    "--text2", "id", "--filter", "parent=", file});
  EXPECT_EQ(result.out, "[Company]   1\n[Other]   6\n");
}

TEST_F(VeldCliTest, ViewTreeFailsWithTheHelpersMessage) {
  const std::string file =
      dir_.Write("late.xml",
                 "<dataset><data><row><col name=\"id\" value=\"2\"/><col name=\"p\" value=\"1\"/>"
                 "<col name=\"t\" value=\"x\"/></row></data></dataset>");
  Result result = RunVeld({"view", "tree", "--key", "id", "--parent", "p", "--text", "t", file});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "veld view tree: Element not found(ERR#: 35601)\n");
  const std::string twice = dir_.Write(
      "twice.xml",
      "<dataset><data><row><col name=\"id\" value=\"1\"/><col name=\"t\" value=\"x\"/></row>"
      "<row><col name=\"id\" value=\"1\"/><col name=\"t\" value=\"y\"/></row></data></dataset>");
  result = RunVeld({"view", "tree", "--key", "id", "--parent", "p", "--text", "t", twice});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld view tree: Key is not unique in collection(ERR#: 35602)\n");
  result = RunVeld(
      {"view", "tree", "--key", "id", "--parent", "p", "--text", "t", dir_.File("missing.xml")});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "veld view tree: Failed to load data from file - " + dir_.File("missing.xml") + ".\n");
}

TEST_F(VeldCliTest, ViewTreeUsage) {
  Result result = RunVeld({"view", "tree", "--key", "id", "--text", "t", "f.xml"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld view tree: --parent is required\n", 0), 0u) << result.err;
  result = RunVeld({"view", "tree", "--key", "id", "--parent", "p", "--text", "t", "--filter",
                    "novalue", "f.xml"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld view tree: --filter needs FIELD=VALUE, not 'novalue'\n", 0), 0u);
}

TEST_F(VeldCliTest, ViewComboListsItemsIndentedWithTheSelectionMarked) {
  const std::string file = dir_.Write("departments.xml", kDepartments);
  Result result = RunVeld({"view", "combo", "--key", "id", "--text", "name", "--parent", "parent",
                           "--select", "4", file});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "  Company\n"
            "    Sales\n"
            "      North\n"
            "*     South\n"
            "    IT\n"
            "  Other\n");
  result = RunVeld({"view", "combo", "--key", "id", "--text", "name", "--text2", "id", "--filter",
                    "parent=2", file});
  EXPECT_EQ(result.out, "* North  3\n  South  4\n");
}

TEST_F(VeldCliTest, ViewComboFailsWithTheHelpersMessage) {
  const std::string twice = dir_.Write(
      "twice.xml",
      "<dataset><data><row><col name=\"id\" value=\"1\"/><col name=\"t\" value=\"x\"/></row>"
      "<row><col name=\"id\" value=\"1\"/><col name=\"t\" value=\"y\"/></row></data></dataset>");
  Result result = RunVeld({"view", "combo", "--key", "id", "--text", "t", twice});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld view combo: Key is not unique in collection(ERR#: 35602)\n");
  result = RunVeld({"view", "combo", "--text", "t", twice});
  EXPECT_EQ(result.exit_code, 2);
}

const char kListSpec[] =
    "<cols><col name=\"Name\" field=\"name\" type=\"text\"/>"
    "<col name=\"Qty\" field=\"qty\" type=\"integer\" align=\"right\"/>"
    "<col name=\"Price\" field=\"price\" type=\"double\" format=\"#,##0.00\" align=\"right\"/>"
    "<col name=\"Day\" field=\"day\" type=\"date\"/></cols>";

const char kListData[] =
    "<dataset><data>"
    "<row><col name=\"_guid_\" value=\"1\"/><col name=\"name\" value=\"Pears\"/><col name=\"qty\" "
    "value=\"100\"/>"
    "<col name=\"price\" value=\"1234.5\"/><col name=\"day\" value=\"2010-12-19\"/></row>"
    "<row><col name=\"_guid_\" value=\"2\"/><col name=\"name\" value=\"apples\"/><col name=\"qty\" "
    "value=\"9\"/>"
    "<col name=\"price\" value=\"3\"/><col name=\"day\" value=\"2009-01-02\"/></row>"
    "<row index=\"0\"><col name=\"_guid_\" value=\"3\"/><col name=\"name\" value=\"Hidden\"/></row>"
    "<row><col name=\"_guid_\" value=\"4\"/><col name=\"name\" value=\"Figs\"/><col name=\"qty\" "
    "value=\"10\"/></row>"
    "</data></dataset>";

TEST_F(VeldCliTest, ViewListPrintsTheCellsAsTheListShowsThem) {
  const std::string spec = dir_.Write("cols.xml", kListSpec);
  const std::string data = dir_.Write("data.xml", kListData);
  Result result = RunVeld({"view", "list", "--locale", "en-US", "--columns", spec, data});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out,
            "Name    Qty     Price  Day\n"
            "------  ---  --------  ----------\n"
            "Pears   100  1,234.50  12/19/2010\n"
            "apples    9      3.00  1/2/2009\n"
            "Figs     10\n");
  // Each --sort is one header click: the quantity ascending, then descending.
  result = RunVeld({"view", "list", "--locale", "en-US", "--columns", spec, "--sort", "2", data});
  EXPECT_EQ(result.out.substr(result.out.find("\n", result.out.find("---")) + 1),
            "apples    9      3.00  1/2/2009\n"
            "Figs     10\n"
            "Pears   100  1,234.50  12/19/2010\n");
  result = RunVeld(
      {"view", "list", "--locale", "de-DE", "--columns", spec, "--sort", "2", "--sort", "2", data});
  // Windows shows German short dates as dd.MM.yyyy; Wine's data has d.M.yyyy.
  const std::string january = testing::RunningOnWine() ? "2.1.2009" : "02.01.2009";
  EXPECT_EQ(result.out.substr(result.out.find("\n", result.out.find("---")) + 1),
            "Pears   100  12.345,00  19.12.2010\n"
            "Figs     10\n"
            "apples    9       3,00  " +
                january + "\n");
}

TEST_F(VeldCliTest, ViewListFailures) {
  const std::string spec = dir_.Write("cols.xml", kListSpec);
  const std::string data = dir_.Write("data.xml", kListData);
  Result result = RunVeld({"view", "list", data});
  EXPECT_EQ(result.exit_code, 2);
  result = RunVeld({"view", "list", "--columns", spec, "--sort", "x", data});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err.rfind("veld view list: --sort needs a column number, not 'x'\n", 0), 0u);
  const std::string empty = dir_.Write("empty.xml", "<cols/>");
  result = RunVeld({"view", "list", "--columns", empty, data});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld view list: No column defined for the list view.\n");
  result = RunVeld({"view", "list", "--columns", spec, "--sort", "0", data});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "veld view list: Index out of bounds(ERR#: 35600)\n");
}

}  // namespace
}  // namespace veld
