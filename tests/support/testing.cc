#include "support/testing.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace veld::testing {

TempDir::TempDir() {
  std::string templ = (std::filesystem::temp_directory_path() / "veld-test-XXXXXX").string();
  if (mkdtemp(templ.data()) == nullptr) std::abort();
  path_ = templ;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::File(const std::string& name) const { return path_ + "/" + name; }

std::string TempDir::Write(const std::string& name, const std::string& content) const {
  std::string path = File(name);
  std::ofstream out(path, std::ios::binary);
  out << content;
  return path;
}

XmlDocument Loaded(const std::string& text) {
  XmlDocument doc;
  EXPECT_TRUE(doc.LoadXml(text)) << text << ": " << doc.ParseError().Reason();
  return doc;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return "";
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

}  // namespace veld::testing
