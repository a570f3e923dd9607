#include "cli.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

#include "veld/runtime/automation_error.h"

namespace veld::cli {

namespace {

std::string CommandUsage(const std::string& group, const Command& command) {
  std::string text = "usage: veld " + (group.empty() ? "" : group + " ") + command.name;
  if (!command.flags.empty()) text += " [options]";
  if (!command.operands.empty()) text += " " + command.operands;
  text += "\n\n" + command.summary + "\n";
  if (!command.flags.empty()) {
    text += "\noptions:\n";
    for (const FlagSpec& flag : command.flags) {
      std::string left =
          "  --" + flag.name + (flag.value_name.empty() ? "" : " " + flag.value_name);
      if (left.size() < 26) left.resize(26, ' ');
      text += left + " " + flag.help + "\n";
    }
  }
  if (!command.details.empty()) text += "\n" + command.details;
  if (text.back() != '\n') text += '\n';
  return text;
}

std::string GroupUsage(const Group& group) {
  std::string text = "usage: veld " + group.name + " COMMAND [options] ...\n\n" +
                     group.description + "\n\ncommands:\n";
  for (const Command& command : group.commands) {
    std::string left = "  " + command.name;
    if (left.size() < 16) left.resize(16, ' ');
    text += left + " " + command.summary + "\n";
  }
  text += "\nRun 'veld " + group.name + " COMMAND --help' for a command's options.\n";
  return text;
}

bool IsHelp(const std::string& word) { return word == "--help" || word == "-h"; }

}  // namespace

Args ParseArgs(const Command& command, const std::vector<std::string>& words) {
  Args args;
  bool operands_only = false;
  for (size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (operands_only || word.size() < 3 || word.compare(0, 2, "--") != 0) {
      // After the first "--", a "--" is an operand like any other word.
      if (!operands_only && word == "--") {
        operands_only = true;
        continue;
      }
      args.positional_.push_back(word);
      continue;
    }
    std::string name = word.substr(2);
    std::optional<std::string> value;
    if (size_t equals = name.find('='); equals != std::string::npos) {
      value = name.substr(equals + 1);
      name.resize(equals);
    }
    const FlagSpec* spec = nullptr;
    for (const FlagSpec& candidate : command.flags) {
      if (candidate.name == name) spec = &candidate;
    }
    if (spec == nullptr) throw UsageError("unknown option --" + name);
    if (spec->value_name.empty()) {
      if (value) throw UsageError("option --" + name + " takes no value");
      args.flags_[name].push_back("");
      continue;
    }
    if (!value) {
      if (i + 1 >= words.size()) throw UsageError("option --" + name + " needs a value");
      value = words[++i];
    }
    args.flags_[name].push_back(*value);
  }
  if (args.positional_.size() < command.min_operands) {
    throw UsageError("missing arguments");
  }
  if (args.positional_.size() > command.max_operands) {
    throw UsageError("too many arguments");
  }
  return args;
}

int RunCommand(const std::string& group, const Command& command,
               const std::vector<std::string>& rest) {
  for (const std::string& word : rest) {
    if (word == "--") break;
    if (IsHelp(word)) {
      Out(CommandUsage(group, command));
      return kExitOk;
    }
  }
  const std::string prefix = "veld " + (group.empty() ? "" : group + " ") + command.name + ": ";
  try {
    return command.run(ParseArgs(command, rest));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s%s\n\n%s", prefix.c_str(), error.what(),
                 CommandUsage(group, command).c_str());
    return kExitUsage;
  } catch (const Failure& error) {
    std::fprintf(stderr, "%s%s\n", prefix.c_str(), error.what());
  } catch (const AutomationError& error) {
    std::fprintf(stderr, "%s%s\n", prefix.c_str(), error.Description().c_str());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s%s\n", prefix.c_str(), error.what());
  }
  return kExitFailure;
}

int Run(const std::vector<Group>& groups, const std::string& top_help,
        const std::vector<std::string>& words) {
  if (words.empty()) {
    std::fputs(top_help.c_str(), stderr);
    return kExitUsage;
  }
  if (IsHelp(words[0])) {
    Out(top_help);
    return kExitOk;
  }
  const Group* group = nullptr;
  for (const Group& candidate : groups) {
    if (candidate.name == words[0]) group = &candidate;
  }
  if (group == nullptr) {
    std::fprintf(stderr, "veld: unknown command '%s'\n\n%s", words[0].c_str(), top_help.c_str());
    return kExitUsage;
  }
  if (words.size() < 2) {
    std::fputs(GroupUsage(*group).c_str(), stderr);
    return kExitUsage;
  }
  if (IsHelp(words[1])) {
    Out(GroupUsage(*group));
    return kExitOk;
  }
  const Command* command = nullptr;
  for (const Command& candidate : group->commands) {
    if (candidate.name == words[1]) command = &candidate;
  }
  if (command == nullptr) {
    std::fprintf(stderr, "veld %s: unknown command '%s'\n\n%s", group->name.c_str(),
                 words[1].c_str(), GroupUsage(*group).c_str());
    return kExitUsage;
  }
  return RunCommand(group->name, *command,
                    std::vector<std::string>(words.begin() + 2, words.end()));
}

namespace {

// The first failed write to standard output, as errno gave it; 0 for none.
int out_error = 0;

}  // namespace

void Out(const std::string& text) {
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && out_error == 0) {
    out_error = errno != 0 ? errno : EIO;
  }
}

int FinishOutput(int exit_code) {
  errno = 0;
  if (std::fflush(stdout) != 0 && out_error == 0) out_error = errno != 0 ? errno : EIO;
  if (out_error == 0 && std::ferror(stdout)) out_error = EIO;
  if (out_error == 0) return exit_code;
  std::fprintf(stderr, "veld: cannot write to standard output: %s\n", std::strerror(out_error));
  return exit_code == kExitOk ? kExitFailure : exit_code;
}

std::filesystem::path FilePath(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

bool FileExists(const std::string& name) {
  std::error_code error;
  return std::filesystem::exists(FilePath(name), error);
}

}  // namespace veld::cli
