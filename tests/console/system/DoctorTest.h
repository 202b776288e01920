// The base of tests that let the real program look at a machine.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "tests/console/system/ExportTest.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {

// An environment variable that every process has, with another value for a while.
class ReplacedVariable {
 public:
  ReplacedVariable(std::wstring name, const std::wstring& value);
  ~ReplacedVariable();
  ReplacedVariable(const ReplacedVariable&) = delete;
  ReplacedVariable& operator=(const ReplacedVariable&) = delete;

 private:
  std::wstring name_;
  std::wstring earlier_;
};

class DoctorTest : public ExportTest {
 protected:
  DoctorTest();

  // Nothing is left in the folder for temporary files, whatever happened.
  ~DoctorTest() override;

  // "doctor --json --notes-ini ..." and these.
  Words DoctorWords(const Words& more = {}) const;

  // Runs it to its end and takes its document.
  void Doctor(const Words& more = {});

  // The check of the run: "failed", and what is said of it.
  std::string Result(const std::string& name) const { return checks_.at(name).at("result"); }
  std::string Detail(const std::string& name) const { return checks_.at(name).at("detail"); }
  std::string Advice(const std::string& name) const { return checks_.at(name).at("advice"); }

  // The check failed so, and those were not tried because of it.
  void ExpectFailed(const std::string& name, const std::string& detail, const Lines& notTried);

  // A folder with both programs and a library from there, or with none. The current folder is
  // another one, without a library.
  void UsePrograms(const std::wstring& libraryFolder);

  std::uint32_t code_ = 0;
  std::string output_;
  std::map<std::string, Json> checks_;

 private:
  std::filesystem::path earlierFolder_ = std::filesystem::current_path();
  TempFolder temporary_{L"larkspan-temporary"};
  ReplacedVariable tmp_{L"TMP", temporary_.path()};
  ReplacedVariable temp_{L"TEMP", temporary_.path()};
};

}  // namespace larkspan::console
