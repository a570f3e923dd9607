// The command groups of the veld tool.
#ifndef VELD_TOOLS_VELD_COMMANDS_H_
#define VELD_TOOLS_VELD_COMMANDS_H_

#include "cli.h"

namespace veld::cli {

Group DatasetsCommands();
Group ItemsCommands();
Group OptionsCommands();
Group RegistryCommands();
Group ViewCommands();
Group XmlCommands();

// veld format, a command of its own.
Command FormatCommand();

// Runs the library's short self-check; 0 when every check passed.
int SelfCheck();

}  // namespace veld::cli

#endif  // VELD_TOOLS_VELD_COMMANDS_H_
