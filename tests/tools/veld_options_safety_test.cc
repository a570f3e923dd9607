// Option files under crashing and competing processes: a saving process
// killed at random instants, several `veld options set` processes on one
// file, and a file that an interrupted save of an earlier version left only
// as FILE.bak.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "veld/options/kvo_option.h"

#include "support/testing.h"
#include "veld_process.h"

namespace veld {
namespace {

using ::veld::testing::TempDir;

namespace fs = std::filesystem;

// Runs the built tool with `args`, output discarded; gives its exit status.
int RunVeldQuietly(const std::vector<std::string>& args) {
  const pid_t pid = testing::StartVeld(args, {}, {});
  if (pid < 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string OptionName(int n) { return "o" + std::to_string(n); }

std::vector<std::string> SetArgs(const std::string& file, int n) {
  return {"options", "set",         "--section",
          "s",       "--group",     "g",
          file,      OptionName(n), "value of " + std::to_string(n)};
}

// Hundreds of `veld options set` processes, each adding one option; most are
// killed with SIGKILL at a random instant of their run. After each, every
// option whose set exited 0 is in the file, and the file loads.
TEST(VeldOptionsCrashTest, SetsKilledAtRandomInstantsLoseNothingReported) {
  TempDir dir;
  const std::string file = dir.File("options.xml");
  using Clock = std::chrono::steady_clock;
  // One run undisturbed, to know how long a set takes here.
  const Clock::time_point start = Clock::now();
  ASSERT_EQ(RunVeldQuietly(SetArgs(file, 0)), 0);
  const auto run_time =
      std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
  std::vector<int> completed = {0};
  int killed = 0;
  std::mt19937 random(20261125);
  for (int n = 1; n < 300; ++n) {
    const pid_t pid = testing::StartVeld(SetArgs(file, n), {}, {});
    ASSERT_GT(pid, 0);
    // Anywhere in its run, or after it (then the kill finds it finished).
    std::this_thread::sleep_for(std::chrono::microseconds(random() % (run_time * 3 / 2 + 1)));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
      completed.push_back(n);
    } else {
      ASSERT_TRUE(WIFSIGNALED(status)) << "set " << n << " failed: " << status;
      ++killed;
    }
    KvoOption options;
    ASSERT_TRUE(options.LoadOption(file)) << "after set " << n << ": " << options.GetLastError();
    for (int done : completed) {
      ASSERT_EQ(options.GetOption(OptionName(done), "s", "g"), "value of " + std::to_string(done))
          << "after set " << n;
    }
  }
  // Both outcomes happened often enough to mean something.
  EXPECT_GE(static_cast<int>(completed.size()), 30);
  EXPECT_GE(killed, 30);
  // Besides the file, its copy and its lock, a set killed while writing
  // leaves only its own new file, under a name no load takes for the option
  // file.
  for (const auto& entry : fs::directory_iterator(dir.Path())) {
    const std::string name = entry.path().filename().string();
    const bool temporary = name.rfind("options.xml.~", 0) == 0 && name.size() > 4 &&
                           name.compare(name.size() - 4, 4, ".tmp") == 0;
    EXPECT_TRUE(name == "options.xml" || name == "options.xml.bak" || name == "options.xml.lock" ||
                temporary)
        << name;
  }
}

// Several processes set options in one file at once; the lock makes them take
// turns, so every set that exited 0 is in the file.
TEST(VeldOptionsConcurrencyTest, ConcurrentSetsAllLand) {
  TempDir dir;
  const std::string file = dir.File("shared.xml");
  constexpr int kWorkers = 4;
  constexpr int kSetsEach = 15;
  std::vector<pid_t> workers;
  for (int w = 0; w < kWorkers; ++w) {
    const pid_t worker = fork();
    ASSERT_GE(worker, 0);
    if (worker == 0) {
      for (int i = 0; i < kSetsEach; ++i) {
        const int n = w * kSetsEach + i;
        if (RunVeldQuietly({"options", "set", "--section", "s", "--group", "g", file, OptionName(n),
                            "value of " + std::to_string(n)}) != 0) {
          _exit(1);
        }
      }
      _exit(0);
    }
    workers.push_back(worker);
  }
  for (pid_t worker : workers) {
    int status = 0;
    waitpid(worker, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }

  KvoOption options;
  ASSERT_TRUE(options.LoadOption(file));
  for (int n = 0; n < kWorkers * kSetsEach; ++n) {
    EXPECT_EQ(options.GetOption(OptionName(n), "s", "g"), "value of " + std::to_string(n)) << n;
  }
}

TEST(VeldOptionsCrashTest, SetOnAFileLeftOnlyAsBackupKeepsItsSettings) {
  TempDir dir;
  const std::string file = dir.File("options.xml");
  dir.Write("options.xml.bak",
            "<config><section id=\"s\"><group id=\"g\"><option name=\"kept\" value=\"1\"/>"
            "</group></section></config>");

  ASSERT_EQ(
      RunVeldQuietly({"options", "set", "--section", "s", "--group", "g", file, "added", "2"}), 0);

  KvoOption options;
  ASSERT_TRUE(options.LoadOption(file));
  EXPECT_EQ(options.GetOption("kept", "s", "g"), "1");
  EXPECT_EQ(options.GetOption("added", "s", "g"), "2");
  EXPECT_FALSE(fs::exists(file + ".bak"));
}

}  // namespace
}  // namespace veld
