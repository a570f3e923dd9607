#include <unistd.h>

#include "terminal.h"

namespace veld::cli {

bool StderrIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}  // namespace veld::cli
