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

extern char** environ;

namespace veld {
namespace {

using ::veld::testing::TempDir;

namespace fs = std::filesystem;

// Runs the built tool with `args`, output discarded; gives its exit status.
int RunVeldQuietly(const std::vector<std::string>& args) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  std::vector<std::string> words = {VELD_CLI_PATH};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, VELD_CLI_PATH, &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string OptionName(int n) { return "o" + std::to_string(n); }

// The options 0..count-1 that `file` holds with their expected values.
int CountLeadingOptions(const std::string& file, int limit) {
  // Killed before its first save: there is no file yet.
  if (!fs::exists(file) && !fs::exists(file + ".bak")) return 0;
  KvoOption options;
  if (!options.LoadOption(file)) return -1;
  int count = 0;
  while (count < limit &&
         options.GetOption(OptionName(count), "s", "g") == "value of " + std::to_string(count)) {
    ++count;
  }
  return count;
}

// A child process adds one option per save, reporting each completed save on
// a pipe, and is killed at a random instant. After every kill, each option a
// completed save reported is in the file, and the file loads.
TEST(VeldOptionsCrashTest, SavesKilledAtRandomInstantsLoseNothingReported) {
  TempDir dir;
  const std::string file = dir.File("options.xml");
  std::mt19937 random(20261125);
  int reported = 0;
  int saves = 0;
  // Hundreds of saves, however fast the machine is.
  for (int round = 0; saves < 200 && round < 2000; ++round) {
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(report[0]);
      KvoOption options;
      if (fs::exists(file) || fs::exists(file + ".bak")) {
        if (!options.LoadOption(file)) _exit(3);
      }
      for (int n = reported;; ++n) {
        if (!options.SetOption(OptionName(n), "value of " + std::to_string(n), "s", "g")) _exit(4);
        if (!options.SaveOption(file)) _exit(5);
        const int done = n + 1;
        if (write(report[1], &done, sizeof done) != sizeof done) _exit(6);
      }
    }
    close(report[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 20000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the saving child stopped by itself: " << status;
    int done = 0;
    while (read(report[0], &done, sizeof done) == sizeof done) {
      saves += done > reported ? done - reported : 0;
      reported = std::max(reported, done);
    }
    close(report[0]);

    const int held = CountLeadingOptions(file, reported + 1);
    ASSERT_GE(held, reported) << "round " << round;
    // A save may have completed without being reported; take it as reported.
    reported = held;
  }
  EXPECT_GE(saves, 200);
  // Besides the file and its copy, a save killed while writing leaves only its
  // own new file, under a name no load takes for the option file.
  for (const auto& entry : fs::directory_iterator(dir.Path())) {
    const std::string name = entry.path().filename().string();
    const bool temporary = name.rfind("options.xml.~", 0) == 0 && name.size() > 4 &&
                           name.compare(name.size() - 4, 4, ".tmp") == 0;
    EXPECT_TRUE(name == "options.xml" || name == "options.xml.bak" || temporary) << name;
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
