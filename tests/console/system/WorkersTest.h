// The base of tests in which several workers export one database.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {

class WorkersTest : public ExportTest {
 protected:
  // Everything but the console's own file; times masked.
  static testing::OutputTree WholeTree(const std::wstring& folder);

  // What it came to, without the times. The folder itself holds the report, whose length that of
  // the run decides, and with --debug the log.
  static Json AccountOf(const std::wstring& folder);

  std::wstring Alone() const { return run_.folder() + L"\\alone"; }

  // The same export by one worker, into another folder.
  std::uint32_t ExportAlone(const Words& more = {});
  void ExpectLikeAlone(const ConsoleEnd& end, const Words& more = {});

  bool HasParts() const { return Exists(out_ + L"\\parts"); }

  // From now on these notes cannot be exported, and what `faults` say, if anything, holds too.
  void FailAt(const std::vector<std::wstring>& notes, const std::string& faults = "") const;

  // What the program says of the folder as it is.
  std::uint32_t VerifyCode() const { return Run({L"verify", out_}).code; }

  // Compared with a clean export, `code` tells what is there: 0, and it is all; 3, and each note,
  // raw copy or view that is missing is told as lost; or another, and `verify` does not take it for
  // whole. In no case is there anything else, or half of anything.
  void ExpectAccountedFor(const testing::OutputTree& clean, std::uint32_t code) const;

  // The notes and views that the account tells as lost.
  std::set<std::string> ToldAsLost() const;
};

}  // namespace larkspan::console
