// Calls of the Notes library, or of the system, that a test answers by itself.
#pragma once

namespace larkspan {

// Puts a function of the test in the place of an entry point that this program imports from the
// Notes library, or from the library that is named, for as long as it lives. Throws when the
// program does not import the name. The function must have the entry point's own type; Original()
// gives the library's own.
class ReplacedEntryPoint {
 public:
  template <typename Function>
  ReplacedEntryPoint(const char* name, Function* function)
      : ReplacedEntryPoint("nnotes.dll", name, function) {}
  template <typename Function>
  ReplacedEntryPoint(const char* library, const char* name, Function* function)
      : ReplacedEntryPoint(library, name, reinterpret_cast<void*>(function)) {}
  ReplacedEntryPoint(const char* library, const char* name, void* function);
  ~ReplacedEntryPoint();
  ReplacedEntryPoint(const ReplacedEntryPoint&) = delete;
  ReplacedEntryPoint& operator=(const ReplacedEntryPoint&) = delete;

 private:
  void** slot_;
  void* original_;
};

// The library's own entry point, whatever stands in its place. The function names the type.
void* OriginalEntryPoint(const char* name);

template <typename Function>
Function* Original(const char* name, Function*) {
  return reinterpret_cast<Function*>(OriginalEntryPoint(name));
}

}  // namespace larkspan
