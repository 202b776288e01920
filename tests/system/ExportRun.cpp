#include "tests/system/ExportRun.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "base/Utf8.h"
#include "tests/support/FileBytes.h"

namespace larkspan::testing {

namespace {

constexpr wchar_t kSampleData[] = L"" LARKSPAN_SAMPLE_DATA_FOLDER;

}  // namespace

ExportRun::ExportRun()
    : output_(folder_.path() + L"\\out"),
      programFolder_(ProgramFolder()),
      dataFolder_(kSampleData) {
  std::filesystem::create_directory(output_);
}

void ExportRun::AddDatabase(const std::wstring& fileName, const std::string& json) {
  dataFolder_ = folder_.path() + L"\\data";
  const std::filesystem::path file = std::filesystem::path(dataFolder_) / fileName;
  std::filesystem::create_directories(file.parent_path());
  WriteBytes(file.wstring(), json);
}

void ExportRun::SetFaults(const std::string& json) {
  WriteBytes(folder_.path() + L"\\faults.json", json);
  AddConfiguration("StandinFaults=faults.json");
}

void ExportRun::AddConfiguration(const std::string& line) { configuration_.push_back(line); }

std::wstring ExportRun::CommandLine(const std::wstring& database,
                                    const std::vector<std::wstring>& arguments) const {
  std::vector<std::wstring> all = {Executable()};
  if (passConfiguration_) all.push_back(L"=" + folder_.path() + L"\\notes.ini");
  all.insert(all.end(), {L"-p", database, L"-o", output_});
  all.insert(all.end(), arguments.begin(), arguments.end());
  WriteConfiguration();
  return BuildCommandLine(all);
}

std::wstring ExportRun::Executable() const { return programFolder_ + L"\\larkspan.exe"; }

ProgramResult ExportRun::Export(const std::wstring& database,
                                const std::vector<std::wstring>& arguments) {
  return Program(Executable(), CommandLine(database, arguments)).WaitForEnd();
}

ProgramResult ExportRun::RunArguments(const std::vector<std::wstring>& arguments) {
  std::vector<std::wstring> all = {Executable()};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return Program(Executable(), BuildCommandLine(all)).WaitForEnd();
}

std::string ExportRun::OutputFile(const std::wstring& relativeName) const {
  return ReadBytes(output_ + L"\\" + relativeName);
}

bool ExportRun::HasOutputFile(const std::wstring& relativeName) const {
  return std::filesystem::exists(output_ + L"\\" + relativeName);
}

std::vector<std::string> ExportRun::LedgerLines() const {
  std::istringstream ledger(ReadBytes(folder_.path() + L"\\ledger.txt"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(ledger, line);) lines.push_back(line);
  return lines;
}

std::string ExportRun::LedgerFault(std::size_t runtimes) const {
  std::string fault;
  const std::wstring misuse = folder_.path() + L"\\misuse.txt";
  if (std::filesystem::exists(misuse)) fault += "misuse: " + ReadBytes(misuse) + "\n";
  const std::vector<std::string> lines = LedgerLines();
  if (lines.size() != runtimes) {
    fault += std::to_string(lines.size()) + " runtimes ended instead of " +
             std::to_string(runtimes) + "\n";
  }
  for (const std::string& line : lines) {
    for (const auto& [kind, count] : nlohmann::json::parse(line).at("open").items()) {
      if (count.get<int>() != 0) fault += "left open: " + kind + " in " + line + "\n";
    }
  }
  return fault;
}

void ExportRun::WriteConfiguration() const {
  std::string text = "Directory=" + WideToUtf8(dataFolder_) +
                     "\nStandinLedger=ledger.txt\nStandinStrictLog=misuse.txt\n";
  for (const std::string& line : configuration_) text += line + "\n";
  WriteBytes(folder_.path() + L"\\notes.ini", text);
}

}  // namespace larkspan::testing
