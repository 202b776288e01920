#include "tests/torture/ExportStage.h"

#include <cwchar>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "app/RunWorker.h"
#include "base/Settings.h"
#include "supervision/Supervisor.h"
#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/ScopedSettings.h"

namespace larkspan::torture {

namespace {

namespace fs = std::filesystem;
using testing::OutputTree;

// Runs workers in this process. An earlier worker, if there was one, is the first of them, and what
// it left behind is put into the output folder, where log and report have begun already.
class InProcessLauncher : public WorkerLauncher {
 public:
  InProcessLauncher(std::wstring output, const OutputTree& earlierWorker)
      : output_(std::move(output)), earlierWorker_(earlierWorker) {}

  WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal&) override {
    if (!earlierWorker_.empty() && !std::exchange(hasBegun_, true)) {
      LeaveBehind();
      return {WorkerEnding::Kind::kExited, kCrashExitCode};
    }
    const std::wstring noteId = commandLine.substr(commandLine.find_last_of(L' ') + 1);
    // A worker leaves no password behind; the next one has a command line of its own.
    const ScopedSettings ofThisWorker(ProcessSettings());
    RunWorker(static_cast<std::uint32_t>(std::wcstoul(noteId.c_str(), nullptr, 16)));
    return {WorkerEnding::Kind::kExited, 0, true};
  }

 private:
  void LeaveBehind() const {
    for (const auto& [name, content] : earlierWorker_) {
      const fs::path path = fs::path(output_) / name;
      if (name.ends_with('/')) {
        fs::create_directories(path);
      } else {
        fs::create_directories(path.parent_path());
        const std::string before = Exists(path.wstring()) ? ReadBytes(path.wstring()) : "";
        WriteBytes(path.wstring(), before + content);
      }
    }
  }

  const std::wstring output_;
  const OutputTree& earlierWorker_;
  bool hasBegun_ = false;
};

}  // namespace

ExportStage::ExportStage(const Subject& subject) : Stage(subject.dataFolder), subject_(subject) {
  UseSettings();
  if (subject_.resumeAt != 0) DieAtTheResumeNote();
}

void ExportStage::UseSettings() {
  Settings settings;
  settings.programPath = L"larkspan.exe";
  settings.databasePath = subject_.database;
  settings.outputFolder = output();
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
  Begin(PlanOfTheEarlierWorker(subject_, "throw"));
  const ScopedSettings ofThisWorker(ProcessSettings());
  RunWorker(0);
  earlierWorker_ = testing::ReadOutputTree(output());
  if (!earlierWorker_.contains("marker.txt") || !earlierWorker_.contains("temp.tmp")) {
    throw std::logic_error("the earlier worker did not die at note " +
                           NoteIdText(subject_.resumeAt));
  }
  fs::remove_all(output());
}

bool ExportStage::LeavesTheEarlierHalf(const testing::OutputTree& tree) const {
  const auto earlier = earlierWorker_.find("temp.tmp");
  const auto found = tree.find("temp.tmp");
  return earlier != earlierWorker_.end() && found != tree.end() && found->second == earlier->second;
}

Outcome ExportStage::Export(const std::string& faultPlan) {
  const PauseRecorder nobodyWaits;
  Begin(faultPlan);
  InProcessLauncher launcher(output(), earlierWorker_);
  RunSupervisor(launcher, L"larkspan.exe", ProcessRunLog());
  return TakeOutcome(output());
}

}  // namespace larkspan::torture
