#include "tests/support/ExportRun.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "base/Utf8.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/SampleData.h"

namespace larkspan::testing {

std::wstring SampleDataFolder() { return L"" LARKSPAN_SAMPLE_DATA_FOLDER; }

ExportRun::ExportRun()
    : output_(folder_.path() + L"\\out"),
      programFolder_(ProgramFolder()),
      dataFolder_(SampleDataFolder()) {
  std::filesystem::create_directory(output_);
}

void ExportRun::AddDatabase(const std::wstring& fileName, const std::string& json) {
  dataFolder_ = folder_.path() + L"\\data";
  const std::filesystem::path file = std::filesystem::path(dataFolder_) / fileName;
  std::filesystem::create_directories(file.parent_path());
  WriteBytes(file.wstring(), json);
}

void ExportRun::SetFaults(const std::string& json) {
  hasFaultPlan_ = true;
  ChangeFaults(json);
  AddConfiguration("StandinFaults=faults.json");
}

void ExportRun::ChangeFaults(const std::string& json) const {
  if (!hasFaultPlan_) throw std::logic_error("no program would read the plan");
  // A program that starts meanwhile reads one plan or the other, and never half of one. While it
  // reads, the file cannot be replaced.
  const std::wstring plan = folder_.path() + L"\\faults.json";
  WriteBytes(plan + L".new", json);
  std::error_code error;
  for (int tries = 0; tries < 600; ++tries) {
    std::filesystem::rename(plan + L".new", plan, error);
    if (!error) return;
    Sleep(50);
  }
  throw std::system_error(error);
}

void ExportRun::AddConfiguration(const std::string& line) { configuration_.push_back(line); }

void ExportRun::UseProgramCopy(const std::wstring& folder, const std::wstring& libraryFolder) {
  std::filesystem::create_directories(folder);
  std::filesystem::copy(ProgramFolder() + L"\\larkspan.exe", folder + L"\\larkspan.exe");
  std::filesystem::copy(libraryFolder + L"\\nnotes.dll", folder + L"\\nnotes.dll");
  programFolder_ = folder;
}

void ExportRun::UseFaultyFiles(const std::string& plan) {
  ParseFileFaultPlan(plan);  // Throws here rather than in the program.
  programName_ = L"larkspan_faulty.exe";
  fileFaults_.emplace(kFileFaultsVariable, std::wstring(plan.begin(), plan.end()));
}

std::wstring ExportRun::ConfigurationArgument() const {
  const std::wstring file = folder_.path() + L"\\notes.ini";
  WriteConfigurationTo(file);
  return L"=" + file;
}

std::wstring ExportRun::CommandLine(const std::wstring& database,
                                    const std::vector<std::wstring>& arguments) const {
  std::vector<std::wstring> all = {Executable()};
  if (passConfiguration_) all.push_back(ConfigurationArgument());
  all.insert(all.end(), {L"-p", database, L"-o", output_});
  all.insert(all.end(), arguments.begin(), arguments.end());
  return BuildCommandLine(all);
}

std::wstring ExportRun::Executable() const { return programFolder_ + L"\\" + programName_; }

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

Lines ExportRun::LedgerLines() const {
  Lines lines;
  const std::wstring file = folder_.path() + L"\\ledger.txt";
  if (!std::filesystem::exists(file)) return lines;
  std::istringstream ledger(ReadBytes(file));
  for (std::string line; std::getline(ledger, line);) lines.push_back(line);
  return lines;
}

Lines ExportRun::LeftOpen(std::size_t runtime) const {
  Lines left;
  const nlohmann::json ledger = nlohmann::json::parse(LedgerLines().at(runtime));
  for (const auto& [kind, count] : ledger.at("open").items()) {
    if (count != 0) left.push_back(kind + " " + count.dump());
  }
  return left;
}

std::string ExportRun::LedgerFault(std::size_t runtimes) const {
  std::string fault;
  const std::wstring misuse = folder_.path() + L"\\misuse.txt";
  if (std::filesystem::exists(misuse)) fault += "misuse: " + ReadBytes(misuse) + "\n";
  const std::size_t ended = LedgerLines().size();
  if (ended != runtimes) {
    fault +=
        std::to_string(ended) + " runtimes ended instead of " + std::to_string(runtimes) + "\n";
  }
  for (std::size_t i = 0; i < ended; ++i) {
    for (const std::string& left : LeftOpen(i)) fault += "left open: " + left + "\n";
  }
  return fault;
}

void ExportRun::WriteConfigurationTo(const std::wstring& file) const {
  const std::string own = WideToUtf8(folder_.path());
  std::string text = "Directory=" + WideToUtf8(dataFolder_) + "\nStandinLedger=" + own +
                     "\\ledger.txt\nStandinStrictLog=" + own + "\\misuse.txt\n";
  for (const std::string& line : configuration_) text += line + "\n";
  WriteBytes(file, text);
}

}  // namespace larkspan::testing
