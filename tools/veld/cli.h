// The command framework of the veld tool: groups of commands, each with its
// own flags, positional arguments and --help text.
//
// Exit codes: 0 success, 1 the library reported a failure (its message goes
// to standard error), 2 the command line was wrong (usage to standard error).
#ifndef VELD_TOOLS_VELD_CLI_H_
#define VELD_TOOLS_VELD_CLI_H_

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace veld::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

struct FlagSpec {
  std::string name;        // without the leading "--"
  std::string value_name;  // empty for a switch that takes no value
  std::string help;
};

// The parsed command line of one command.
class Args {
 public:
  const std::vector<std::string>& Positional() const { return positional_; }
  const std::string& At(size_t index) const { return positional_.at(index); }
  bool Has(const std::string& flag) const { return flags_.count(flag) != 0; }
  std::string Get(const std::string& flag, const std::string& fallback = "") const {
    auto found = flags_.find(flag);
    return found == flags_.end() ? fallback : found->second.back();
  }
  // Every value a repeated flag was given, in order.
  std::vector<std::string> GetAll(const std::string& flag) const {
    auto found = flags_.find(flag);
    return found == flags_.end() ? std::vector<std::string>() : found->second;
  }

 private:
  friend Args ParseArgs(const struct Command&, const std::vector<std::string>&);
  std::vector<std::string> positional_;
  std::map<std::string, std::vector<std::string>> flags_;
};

struct Command {
  std::string name;
  std::string summary;
  // The positional arguments, as shown in the usage line ("FILE [OUT]").
  std::string operands;
  size_t min_operands = 0;
  size_t max_operands = 0;
  std::vector<FlagSpec> flags;
  // Further lines of help: what the command prints, an example.
  std::string details;
  std::function<int(const Args&)> run;
};

struct Group {
  std::string name;
  std::string summary;      // one line, for the tool's --help
  std::string description;  // for the group's --help
  std::vector<Command> commands;
};

// A wrong command line: the message and the usage of the command go to
// standard error, and the tool exits with kExitUsage.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A failure the library reported: the message goes to standard error and
// the tool exits with kExitFailure.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

Args ParseArgs(const Command& command, const std::vector<std::string>& words);

// Runs the command line against the groups; `top_help` is printed for
// "veld --help". Never throws.
int Run(const std::vector<Group>& groups, const std::string& top_help,
        const std::vector<std::string>& words);

// Runs one command with the words after its name; `group` is "" for a
// command of its own ("veld format"). Never throws.
int RunCommand(const std::string& group, const Command& command,
               const std::vector<std::string>& rest);

// Writes text to standard output exactly as given.
void Out(const std::string& text);

// The file named by UTF-8 `name` (command-line words are UTF-8 on every
// platform), and whether it exists.
std::filesystem::path FilePath(const std::string& name);
bool FileExists(const std::string& name);

// Flushes standard output and gives the tool's exit status: `exit_code`, or
// kExitFailure, with the system's reason on standard error, when anything
// written to standard output (by Out or printf) was lost.
int FinishOutput(int exit_code);

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_CLI_H_
