// Starting the built veld tool as a process, with its standard streams where
// a test wants them. VELD_CLI_PATH names the tool.
#ifndef VELD_TESTS_TOOLS_VELD_PROCESS_H_
#define VELD_TESTS_TOOLS_VELD_PROCESS_H_

#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/types.h>

extern char** environ;

namespace veld::testing {

// Where standard output or error of the tool goes: a descriptor of the
// test's (a pipe's write end), /dev/null, /dev/full, or nowhere (closed).
struct Sink {
  enum Kind { kDescriptor, kNull, kFull, kClosed } kind = kNull;
  int fd = -1;
  static Sink Descriptor(int fd) { return {kDescriptor, fd}; }
};

// Starts the tool with `args`, standard input on /dev/null; `close_in_child`
// lists descriptors the tool must not keep (a pipe's read end). Gives the
// process id, or -1 when it could not be started.
inline pid_t StartVeld(const std::vector<std::string>& args, Sink out, Sink err,
                       const std::vector<int>& close_in_child = {}) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  int target = 1;
  for (const Sink& sink : {out, err}) {
    switch (sink.kind) {
      case Sink::kDescriptor:
        posix_spawn_file_actions_adddup2(&actions, sink.fd, target);
        break;
      case Sink::kNull:
        posix_spawn_file_actions_addopen(&actions, target, "/dev/null", O_WRONLY, 0);
        break;
      case Sink::kFull:
        posix_spawn_file_actions_addopen(&actions, target, "/dev/full", O_WRONLY, 0);
        break;
      case Sink::kClosed:
        posix_spawn_file_actions_addclose(&actions, target);
        break;
    }
    ++target;
  }
  for (int fd : close_in_child) posix_spawn_file_actions_addclose(&actions, fd);
  std::vector<std::string> words = {VELD_CLI_PATH};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  const int spawned = posix_spawn(&pid, VELD_CLI_PATH, &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return spawned == 0 ? pid : -1;
}

}  // namespace veld::testing

#endif  // VELD_TESTS_TOOLS_VELD_PROCESS_H_
