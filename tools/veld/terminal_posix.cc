#include <unistd.h>

#include "terminal.h"

namespace veld::cli {

bool StderrIsTerminal() { return isatty(STDERR_FILENO) != 0; }

std::vector<std::string> CommandWords(int argc, char** argv) {
  return std::vector<std::string>(argv + 1, argv + argc);
}

void UseBinaryStandardStreams() {}

}  // namespace veld::cli
