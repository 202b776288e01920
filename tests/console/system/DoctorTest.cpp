#include "tests/console/system/DoctorTest.h"

#include <windows.h>

#include <filesystem>
#include <utility>

namespace larkspan::console {

ReplacedVariable::ReplacedVariable(std::wstring name, const std::wstring& value)
    : name_(std::move(name)) {
  earlier_.resize(GetEnvironmentVariableW(name_.c_str(), nullptr, 0));
  earlier_.resize(
      GetEnvironmentVariableW(name_.c_str(), earlier_.data(), static_cast<DWORD>(earlier_.size())));
  SetEnvironmentVariableW(name_.c_str(), value.c_str());
}

ReplacedVariable::~ReplacedVariable() {
  SetEnvironmentVariableW(name_.c_str(), earlier_.empty() ? nullptr : earlier_.c_str());
}

DoctorTest::DoctorTest() { out_ = run_.folder() + L"\\Ausgabe 出力\\orders"; }

DoctorTest::~DoctorTest() {
  std::filesystem::current_path(earlierFolder_);
  EXPECT_TRUE(std::filesystem::is_empty(temporary_.path())) << "something is left";
  EXPECT_FALSE(Exists(out_)) << "the output folder was made";
}

Words DoctorTest::DoctorWords(const Words& more) const {
  const std::wstring configuration = run_.folder() + L"\\notes.ini";
  run_.WriteConfigurationTo(configuration);
  Words words = {L"doctor", L"--json", L"--notes-ini", configuration};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

void DoctorTest::Doctor(const Words& more) {
  const ConsoleEnd end = Run(DoctorWords(more));
  code_ = end.code;
  output_ = end.output;
  EXPECT_EQ(end.errors, "");
  checks_.clear();
  const Json document = Json::parse(end.output);
  EXPECT_EQ(document.at("format"), "larkspan-doctor");
  EXPECT_EQ(document.at("version"), 1);
  EXPECT_EQ(document.at("exitCode"), end.code);
  for (const Json& check : document.at("checks")) checks_[check.at("name")] = check;
}

void DoctorTest::ExpectFailed(const std::string& name, const std::string& detail,
                              const Lines& notTried) {
  EXPECT_EQ(code_, 2u);
  EXPECT_EQ(Result(name), "failed") << output_;
  EXPECT_TRUE(Holds(Detail(name), detail)) << Detail(name);
  EXPECT_NE(Advice(name), "");
  for (const std::string& other : notTried) {
    EXPECT_EQ(Result(other), "not tried") << other;
    EXPECT_EQ(Detail(other), "the check '" + name + "' failed") << other;
  }
}

void DoctorTest::UsePrograms(const std::wstring& libraryFolder) {
  const std::filesystem::path from = testing::ProgramFolder();
  const std::filesystem::path to = run_.folder() + L"\\programs";
  std::filesystem::create_directory(to);
  for (const wchar_t* name : {L"larkspan-console.exe", L"larkspan.exe"}) {
    std::filesystem::copy(from / name, to / name);
  }
  programFolder_ = to.wstring();
  std::filesystem::current_path(run_.folder());
  if (libraryFolder.empty()) return;
  std::filesystem::copy(std::filesystem::path(libraryFolder) / L"nnotes.dll", to / L"nnotes.dll");
}

}  // namespace larkspan::console
