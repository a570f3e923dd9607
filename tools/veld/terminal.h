// What the tool needs to know about its terminal.
#ifndef VELD_TOOLS_VELD_TERMINAL_H_
#define VELD_TOOLS_VELD_TERMINAL_H_

namespace veld::cli {

// Whether standard error is a terminal: progress is drawn only then, so
// pipes and logs get plain output.
bool StderrIsTerminal();

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_TERMINAL_H_
