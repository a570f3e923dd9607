// What the tool needs to know about its terminal and command line.
#ifndef VELD_TOOLS_VELD_TERMINAL_H_
#define VELD_TOOLS_VELD_TERMINAL_H_

#include <string>
#include <vector>

namespace veld::cli {

// Whether standard error is a terminal: progress is drawn only then, so
// pipes and logs get plain output.
bool StderrIsTerminal();

// The words of the command line after the program's name, as UTF-8: the
// bytes given on POSIX; on Windows the UTF-16 command line converted, since
// `argv` there holds the ANSI code page's lossy rendering.
std::vector<std::string> CommandWords(int argc, char** argv);

// Makes standard output and error write bytes as given: on Windows they
// would otherwise turn every "\n" into "\r\n".
void UseBinaryStandardStreams();

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_TERMINAL_H_
