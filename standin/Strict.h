// What happens when the library is called in a way that the real one would not survive: the process
// ends at once with a message, so that the mistake is found where it is made.
#pragma once

#include <filesystem>
#include <string>

namespace larkspan::standin {

inline constexpr int kStrictExitCode = 70;

// The file that gets a copy of the message; empty = none.
void SetStrictLog(const std::filesystem::path& path);

// The entry point being run, which the message names. Kept for the one thread that calls.
void SetCurrentEntry(const char* name);
const char* CurrentEntry();

// Writes the message to standard error and to the strict log and ends the process.
[[noreturn]] void StrictFailure(const std::string& message);

// Fails when the condition does not hold.
void Require(bool condition, const char* message);

}  // namespace larkspan::standin
