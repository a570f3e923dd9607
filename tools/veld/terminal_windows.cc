#include <cstdio>

#include <io.h>

#include "terminal.h"

namespace veld::cli {

bool StderrIsTerminal() { return _isatty(_fileno(stderr)) != 0; }

}  // namespace veld::cli
