#include "support/testing.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <psapi.h>
// clang-format on
#else
#include <sys/resource.h>
#endif

namespace veld::testing {

TempDir::TempDir() {
#ifdef _WIN32
  // A new directory of a random name; creating it fails when it exists.
  std::random_device random;
  for (int attempt = 0; path_.empty(); ++attempt) {
    if (attempt == 100) std::abort();
    const std::filesystem::path candidate =
        std::filesystem::temp_directory_path() / ("veld-test-" + std::to_string(random()));
    std::error_code error;
    if (std::filesystem::create_directory(candidate, error)) {
      const std::u8string text = candidate.u8string();
      path_.assign(text.begin(), text.end());
    }
  }
#else
  std::string templ = (std::filesystem::temp_directory_path() / "veld-test-XXXXXX").string();
  if (mkdtemp(templ.data()) == nullptr) std::abort();
  path_ = templ;
#endif
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(Utf8Path(path_), ignored);
}

std::string TempDir::File(const std::string& name) const { return path_ + "/" + name; }

std::string TempDir::Write(const std::string& name, const std::string& content) const {
  std::string path = File(name);
  std::ofstream out(Utf8Path(path), std::ios::binary);
  out << content;
  return path;
}

std::filesystem::path Utf8Path(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

XmlDocument Loaded(const std::string& text) {
  XmlDocument doc;
  EXPECT_TRUE(doc.LoadXml(text)) << text << ": " << doc.ParseError().Reason();
  return doc;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(Utf8Path(path), std::ios::binary);
  if (!in) return "";
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void SetEnv(const std::string& name, const std::string& value) {
#ifdef _WIN32
  _putenv_s(name.c_str(), value.c_str());
#else
  setenv(name.c_str(), value.c_str(), 1);
#endif
}

void UnsetEnv(const std::string& name) {
#ifdef _WIN32
  _putenv_s(name.c_str(), "");
#else
  unsetenv(name.c_str());
#endif
}

bool RunningOnWine() {
#ifdef _WIN32
  HMODULE ntdll = ::GetModuleHandleA("ntdll.dll");
  return ntdll != nullptr && ::GetProcAddress(ntdll, "wine_get_version") != nullptr;
#else
  return false;
#endif
}

long PeakMemoryKib() {
#ifdef _WIN32
  PROCESS_MEMORY_COUNTERS counters{};
  if (!::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters)) return -1;
  return static_cast<long>(counters.PeakWorkingSetSize / 1024);
#else
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
#endif
}

}  // namespace veld::testing
