#include "tests/torture/ExportStage.h"

#include <cwchar>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "app/RunWorker.h"
#include "app/Settings.h"
#include "app/Supervisor.h"
#include "base/Utf8.h"
#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/StandinLibrary.h"
#include "tests/torture/Numbers.h"

namespace larkspan::torture {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::OutputTree;

constexpr std::uint32_t kCrashExitCode = 0xC0000005;

// Runs workers in this process. An earlier worker, if there was one, is the first of them, and what
// it left behind is put into the output folder.
class InProcessLauncher : public WorkerLauncher {
 public:
  InProcessLauncher(std::wstring output, const OutputTree& earlierWorker)
      : output_(std::move(output)), earlierWorker_(earlierWorker) {}

  WorkerEnding RunToEnd(const std::wstring& commandLine) override {
    if (!earlierWorker_.empty() && !std::exchange(hasBegun_, true)) {
      LeaveBehind();
      return {WorkerEnding::Kind::kExited, kCrashExitCode};
    }
    const std::wstring noteId = commandLine.substr(commandLine.find_last_of(L' ') + 1);
    RunWorker(static_cast<std::uint32_t>(std::wcstoul(noteId.c_str(), nullptr, 16)));
    return {WorkerEnding::Kind::kExited, 0};
  }

 private:
  void LeaveBehind() const {
    for (const auto& [name, content] : earlierWorker_) {
      const fs::path path = fs::path(output_) / name;
      if (name.ends_with('/')) {
        fs::create_directories(path);
      } else {
        fs::create_directories(path.parent_path());
        WriteBytes(path.wstring(), content);
      }
    }
  }

  const std::wstring output_;
  const OutputTree& earlierWorker_;
  bool hasBegun_ = false;
};

std::map<std::string, int> Counts(const json& ledger, const char* member) {
  std::map<std::string, int> counts;
  const json all = ledger.value(member, json::object());
  for (const auto& [name, count] : all.items()) {
    if (count != 0) counts[name] = count;
  }
  return counts;
}

}  // namespace

Lines LinesOf(const OutputTree& tree, const std::string& name) {
  const auto found = tree.find(name);
  return found == tree.end() ? Lines() : SplitLines(found->second);
}

ExportStage::ExportStage(const Subject& subject) : subject_(subject) {
  WriteBytes(folder_ / L"\\notes.ini", "Directory=" + WideToUtf8(subject.dataFolder) + "\n");
  UseSettings();
  if (subject_.resumeAt != 0) DieAtTheResumeNote();
}

std::wstring ExportStage::ConfigurationArgument() const {
  return L"=" + (folder_ / L"\\notes.ini");
}

void ExportStage::UseSettings() {
  Settings settings;
  settings.programPath = L"larkspan.exe";
  settings.databasePath = subject_.database;
  settings.outputFolder = output_;
  settings.archive = subject_.archive;
  settings.fullAccess = subject_.fullAccess;
  settings.idFile = IdFileOf(subject_);
  settings.idPassword = kPassword;
  settings.minimumLogLevel = 0;
  settings.runtimeArguments = {ConfigurationArgument()};
  SetProcessSettings(std::move(settings));
}

// An exception out of the library ends the worker in the middle of a note, after some of its text.
void ExportStage::DieAtTheResumeNote() {
  const std::string noteId = NoteIdText(subject_.resumeAt);
  fs::create_directory(output_);
  ResetStandin();
  SetStandinFaults(R"([{"entry": "DXLExportNote", "note": ")" + noteId +
                   R"(", "chunks": 1, "action": "throw"}])");
  RunWorker(0);
  earlierWorker_ = testing::ReadOutputTree(output_);
  fs::remove_all(output_);
}

Outcome ExportStage::Export(const std::string& faultPlan) {
  const PauseRecorder nobodyWaits;
  fs::create_directory(output_);
  ResetStandin();
  SetStandinFaults(faultPlan);
  InProcessLauncher launcher(output_, earlierWorker_);
  RunSupervisor(launcher, L"larkspan.exe");
  const json ledger = json::parse(StandinLedger());
  Outcome outcome{.tree = testing::ReadOutputTree(output_),
                  .log = {},
                  .audit = {},
                  .calls = Counts(ledger, "calls"),
                  .leftOpen = Counts(ledger, "open")};
  outcome.log = LinesOf(outcome.tree, "log.txt");
  outcome.tree["audit.txt"] = testing::MaskAuditTimes(outcome.tree["audit.txt"]);
  outcome.audit = LinesOf(outcome.tree, "audit.txt");
  fs::remove_all(output_);
  return outcome;
}

}  // namespace larkspan::torture
