// Keeps outcome.json true while a run goes on. Times are milliseconds of a clock that only grows.
#pragma once

#include <cstdint>
#include <string>

#include "console/account/Outcome.h"

namespace larkspan::console {

class OutcomeKeeper {
 public:
  static constexpr std::uint64_t kPeriod = 60'000;

  OutcomeKeeper(std::wstring folder, Outcome outcome);

  Outcome& outcome() { return outcome_; }
  const std::wstring& folder() const { return folder_; }

  // The folder has another name now.
  void MoveTo(std::wstring folder) { folder_ = std::move(folder); }

  // From now on the file is left as it is.
  void WriteNothing() { writes_ = false; }

  // Writes it. False when it cannot be written; the earlier one stays then.
  bool Write();

  // Writes it when a minute has gone since it was last written.
  void Renew(std::uint64_t now);

 private:
  std::wstring folder_;
  Outcome outcome_;
  std::uint64_t written_ = 0;
  bool writes_ = true;
};

}  // namespace larkspan::console
