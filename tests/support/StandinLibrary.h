// The stand-in library's entry points for tests, which no import library lists, in this process.
#pragma once

#include <string>

namespace larkspan {

// The address of an entry point of the Notes library that is loaded; throws when it lacks the name.
void* LibraryEntryPoint(const char* name);

template <typename Function>
Function LibraryFunction(const char* name) {
  return reinterpret_cast<Function>(LibraryEntryPoint(name));
}

// Ends a runtime that is still running, whatever is open; the library is then as freshly loaded.
void ResetStandin();

// Sets the fault plan, an array in JSON, which counts calls from now on. One that is set before a
// runtime is started stays in force in it.
void SetStandinFaults(const std::string& plan);

// The ledger, in JSON, of the runtime that runs or of the one that ended last.
std::string StandinLedger();

}  // namespace larkspan
