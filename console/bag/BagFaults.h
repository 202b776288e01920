// What is wrong with a bag, while it is judged.
#pragma once

#include <string>
#include <vector>

#include "console/account/Account.h"

namespace larkspan::console {

class BagFaults {
 public:
  BagFaults(std::vector<Finding>& errors, std::vector<Warning>& warnings)
      : errors_(errors), warnings_(warnings) {}

  void AddError(const char* kind, const std::string& file, const std::string& text) {
    errors_.push_back({kind, std::nullopt, file, text});
  }
  void AddWarning(const char* kind, const std::string& text) { warnings_.push_back({kind, text}); }

  // What a later version of the form forbids and an earlier one did not.
  void Add(bool isError, const char* kind, const std::string& file, const std::string& text) {
    isError ? AddError(kind, file, text) : AddWarning(kind, text);
  }

 private:
  std::vector<Finding>& errors_;
  std::vector<Warning>& warnings_;
};

}  // namespace larkspan::console
