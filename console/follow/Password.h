// Where the password of an ID file comes from. It stands on no command line.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace larkspan::console {

struct PasswordSources {
  std::string file;            // Empty: none.
  bool standardInput = false;  // Its first line.
};

// Takes the password from the file, else from the environment variable LARKSPAN_PASSWORD, else
// from standard input, else from the person at the terminal. The variable is not in this program's
// environment afterwards. Empty, and `whyNot` is a sentence, when there is none.
std::wstring TakePassword(const PasswordSources& sources,
                          const std::function<std::optional<std::string>()>& nextInputLine,
                          std::string& whyNot);

// Takes the variable out of this program's environment.
void ForgetPasswordVariable();

}  // namespace larkspan::console
