// Where runs over the stand-in library take place in this process: a configuration and an output
// folder.
#pragma once

#include <string>

#include "tests/support/TempFolder.h"

namespace larkspan::torture {

// A fault plan for the library in which nothing fails.
inline constexpr char kNoFaults[] = "[]";

class Stage {
 public:
  // The "=" argument that names the library's configuration.
  std::wstring ConfigurationArgument() const;

 protected:
  // Writes the library's configuration for a data folder, with a further line.
  explicit Stage(const std::wstring& dataFolder, const std::string& configuration = "");
  ~Stage() = default;

  // Makes the output folder, and the library as freshly loaded, with a fault plan.
  void Begin(const std::string& faultPlan) const;

  const std::wstring& output() const { return output_; }

 private:
  TempFolder folder_{L"larkspan-torture"};
  std::wstring output_ = folder_ / L"\\out";
};

}  // namespace larkspan::torture
