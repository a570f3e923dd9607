// veld: the library's command-line tool. Each group of commands works on one
// kind of document through the library's public classes; see --help.
#include <cstdio>
#include <string>
#include <vector>

#include "veld/platform/platform.h"

#include "cli.h"
#include "commands.h"
#include "terminal.h"

namespace {

std::string TopHelp(const std::vector<veld::cli::Group>& groups) {
  std::string text =
      "usage: veld [--version | --help] COMMAND ...\n"
      "\n"
      "commands:\n";
  for (const auto& group : groups) {
    std::string left = "  " + group.name;
    if (left.size() < 14) left.resize(14, ' ');
    text += left + " " + group.summary + "\n";
  }
  text +=
      "  format       write a value through a display format (veld format --help)\n"
      "  self-check   exercise the library briefly and report each check\n"
      "\n"
      "Run 'veld COMMAND --help' for the commands of a group.\n"
      "Exit status: 0 success, 1 the library reported a failure (message on standard\n"
      "error), 2 a wrong command line.\n";
  return text;
}

int Main(const std::vector<std::string>& words) {
  using veld::cli::kExitUsage;
  if (!words.empty() && words[0] == "--version") {
    if (words.size() > 1) {
      std::fprintf(stderr, "veld: --version takes no arguments\n");
      return kExitUsage;
    }
    std::printf("veld %s (%s)\n", VELD_VERSION_STRING,
                veld::Platform::Default().ProductName().c_str());
    return veld::cli::kExitOk;
  }
  if (!words.empty() && words[0] == "self-check") {
    if (words.size() == 1) return veld::cli::SelfCheck();
    const std::string usage =
        "usage: veld self-check\n\nexercise the library briefly and report each check\n";
    if (words[1] == "--help" || words[1] == "-h") {
      veld::cli::Out(usage);
      return veld::cli::kExitOk;
    }
    const bool option = words[1].size() > 2 && words[1].compare(0, 2, "--") == 0;
    std::fprintf(stderr, "veld self-check: %s\n\n%s",
                 option ? ("unknown option " + words[1]).c_str() : "too many arguments",
                 usage.c_str());
    return kExitUsage;
  }
  if (!words.empty() && words[0] == "format") {
    return veld::cli::RunCommand("", veld::cli::FormatCommand(),
                                 std::vector<std::string>(words.begin() + 1, words.end()));
  }
  const std::vector<veld::cli::Group> groups = {
      veld::cli::ItemsCommands(),    veld::cli::OptionsCommands(), veld::cli::RegistryCommands(),
      veld::cli::DatasetsCommands(), veld::cli::XmlCommands(),     veld::cli::ViewCommands()};
  return veld::cli::Run(groups, TopHelp(groups), words);
}

}  // namespace

int main(int argc, char** argv) {
  veld::cli::UseBinaryStandardStreams();
  return veld::cli::FinishOutput(Main(veld::cli::CommandWords(argc, argv)));
}
