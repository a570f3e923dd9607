// veld: the library's command-line tool. Each group of commands works on one
// kind of document through the library's public classes; see --help.
#include <cstdio>
#include <string>
#include <vector>

#include "veld/platform/platform.h"

#include "cli.h"
#include "commands.h"

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
      "  self-check   exercise the library briefly and report each check\n"
      "\n"
      "Run 'veld COMMAND --help' for the commands of a group.\n"
      "Exit status: 0 success, 1 the library reported a failure (message on standard\n"
      "error), 2 a wrong command line.\n";
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.size() == 1 && words[0] == "--version") {
    std::printf("veld %s (%s)\n", VELD_VERSION_STRING,
                veld::Platform::Default().ProductName().c_str());
    return veld::cli::kExitOk;
  }
  if (words.size() == 1 && words[0] == "self-check") return veld::cli::SelfCheck();
  const std::vector<veld::cli::Group> groups = {
      veld::cli::ItemsCommands(), veld::cli::OptionsCommands(), veld::cli::RegistryCommands(),
      veld::cli::DatasetsCommands(), veld::cli::XmlCommands()};
  return veld::cli::Run(groups, TopHelp(groups), words);
}
