// Starting the built veld tool as a process, with its standard streams where
// a test wants them. VELD_CLI_PATH names the tool. RunVeld works on both
// platforms; StartVeld, with any sink, is POSIX only.
#ifndef VELD_TESTS_TOOLS_VELD_PROCESS_H_
#define VELD_TESTS_TOOLS_VELD_PROCESS_H_

#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;
#endif

namespace veld::testing {

// What a run of the tool gave.
struct VeldResult {
  int exit_code = -1;
  std::string out;
  std::string err;
};

#ifdef _WIN32

// Quotes one word of a Windows command line so that CommandLineToArgvW
// reads it back unchanged.
inline std::wstring QuotedWord(const std::wstring& word) {
  if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring::npos) return word;
  std::wstring quoted = L"\"";
  size_t backslashes = 0;
  for (wchar_t c : word) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    quoted.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
    backslashes = 0;
    quoted.push_back(c);
  }
  quoted.append(backslashes * 2, L'\\');
  quoted.push_back(L'"');
  return quoted;
}

inline std::wstring WideWord(const std::string& utf8) {
  if (utf8.empty()) return std::wstring();
  const int length =
      ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), wide.data(),
                        length);
  return wide;
}

// Runs the built tool with `args` (UTF-8, passed as a UTF-16 command line),
// standard input from NUL, and collects both output streams.
inline VeldResult RunVeld(const std::vector<std::string>& args) {
  VeldResult result;
  SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE out_read, out_write, err_read, err_write;
  if (!::CreatePipe(&out_read, &out_write, &inherit, 0)) return result;
  if (!::CreatePipe(&err_read, &err_write, &inherit, 0)) return result;
  ::SetHandleInformation(out_read, HANDLE_FLAG_INHERIT, 0);
  ::SetHandleInformation(err_read, HANDLE_FLAG_INHERIT, 0);
  HANDLE null_in = ::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                                 OPEN_EXISTING, 0, nullptr);
  std::wstring command = QuotedWord(WideWord(VELD_CLI_PATH));
  for (const std::string& arg : args) command += L" " + QuotedWord(WideWord(arg));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = null_in;
  startup.hStdOutput = out_write;
  startup.hStdError = err_write;
  PROCESS_INFORMATION process{};
  const BOOL started = ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &startup, &process);
  ::CloseHandle(out_write);
  ::CloseHandle(err_write);
  ::CloseHandle(null_in);
  auto drain = [](HANDLE pipe, std::string& sink) {
    char buffer[4096];
    DWORD got = 0;
    while (::ReadFile(pipe, buffer, sizeof buffer, &got, nullptr) && got > 0) {
      sink.append(buffer, got);
    }
  };
  if (started) {
    // Both pipes at once, so that neither fills up while the other is read.
    std::thread errors(drain, err_read, std::ref(result.err));
    drain(out_read, result.out);
    errors.join();
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    if (::GetExitCodeProcess(process.hProcess, &code)) result.exit_code = static_cast<int>(code);
    ::CloseHandle(process.hProcess);
    ::CloseHandle(process.hThread);
  }
  ::CloseHandle(out_read);
  ::CloseHandle(err_read);
  return result;
}

#else
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

// Runs the built tool with `args`, standard input from /dev/null, and
// collects both output streams.
inline VeldResult RunVeld(const std::vector<std::string>& args) {
  int out_pipe[2];
  int err_pipe[2];
  if (pipe(out_pipe) != 0 || pipe(err_pipe) != 0) return {};
  const pid_t pid = StartVeld(args, Sink::Descriptor(out_pipe[1]), Sink::Descriptor(err_pipe[1]),
                              {out_pipe[0], err_pipe[0]});
  close(out_pipe[1]);
  close(err_pipe[1]);
  VeldResult result;
  if (pid < 0) {
    close(out_pipe[0]);
    close(err_pipe[0]);
    return result;
  }
  pollfd fds[2] = {{out_pipe[0], POLLIN, 0}, {err_pipe[0], POLLIN, 0}};
  std::string* sinks[2] = {&result.out, &result.err};
  int open_streams = 2;
  while (open_streams > 0) {
    if (poll(fds, 2, -1) < 0) break;
    for (int i = 0; i < 2; ++i) {
      if (fds[i].fd < 0 || fds[i].revents == 0) continue;
      char buffer[4096];
      const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
      if (n > 0) {
        sinks[i]->append(buffer, static_cast<size_t>(n));
      } else {
        close(fds[i].fd);
        fds[i].fd = -1;
        --open_streams;
      }
    }
  }
  int status = 0;
  waitpid(pid, &status, 0);
  result.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

#endif

}  // namespace veld::testing

#endif  // VELD_TESTS_TOOLS_VELD_PROCESS_H_
