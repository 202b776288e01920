// The command line of the console program: which commands there are, what they answer to a word
// that nobody knows, and what help says.
#pragma once

#include <string>
#include <vector>

#include "console/ExitCode.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace larkspan::console {

// Runs the command that the arguments (UTF-8, without the program's name) ask for. Help and the
// version go to standard output; what is wrong goes to standard error and gives kUsage.
ExitCode RunCommandLine(std::vector<std::string> arguments);

// The word of those that is nearest to this one; empty when none is near.
std::string NearestWord(const std::string& word, const std::vector<std::string>& known);

// Adds an option for one text. A text that begins with "=" is refused: the exporter would take it
// for the name of a configuration.
CLI::Option* AddText(CLI::App& command, const std::string& name, std::string& text,
                     const std::string& description);

}  // namespace larkspan::console
