// What becomes of a C++ exception that the stand-in library throws.
#pragma once

namespace larkspan::testing {

// On 64 bits the system unwinds it, through library and program. On 32 bits this compiler's runtime
// does, and each module's own knows that module alone: the exception ends the process in the
// library, like abort. One of another compiler's code is the system's, and passes on both.
constexpr bool kLibraryThrowsIntoProgram = sizeof(void*) == 8;

}  // namespace larkspan::testing
