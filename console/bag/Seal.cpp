// How an export becomes a bag. It may end at any of these steps, and the next call goes on:
//   1. The export is accounted for. Nothing is changed when it is not.
//   2. All of it is moved below data\ (PayloadMove.cpp). A call that finds this begun ends it, and
//      accounts for the export then.
//   3. The sums of the payload are calculated, and manifest-sha256.txt, bag-info.txt and
//      tagmanifest-sha256.txt are written, each beside its place and moved there. A call that finds
//      them without bagit.txt writes them anew.
//   4. bagit.txt comes last in the same way. Where it is, the folder is a bag, and is only judged.
#include "console/bag/Seal.h"

#include <io.h>

#include <chrono>
#include <stdexcept>
#include <utility>
#include <vector>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Retry.h"
#include "console/account/AccountText.h"
#include "console/account/Outcome.h"
#include "console/account/Verify.h"
#include "console/bag/BagInfo.h"
#include "console/bag/BagPath.h"
#include "console/bag/BagTree.h"
#include "console/bag/Declaration.h"
#include "console/bag/FileSums.h"
#include "console/bag/Manifest.h"
#include "console/bag/PayloadMove.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// A file that a machine without power would lose is no seal.
void WriteStage(const std::wstring& stage, const std::string& text) {
  file_system::UniqueFile file = file_system::Open(stage, L"wb");
  const bool isWritten = file && file_system::Write(file.get(), text) == text.size() &&
                         file_system::Flush(file.get()) && _commit(_fileno(file.get())) == 0;
  const bool isClosed = file && file_system::Close(std::move(file));
  if (!isWritten || !isClosed) throw SealFault("'" + WideToUtf8(stage) + "' cannot be written.");
}

void WriteWhole(const std::wstring& path, const std::string& text) {
  constexpr int kAttempts = 20;
  constexpr std::chrono::milliseconds kPause{250};
  const std::wstring stage = output::StageOf(path);
  WriteStage(stage, text);
  const auto place = [&] {
    return file_system::Move(stage, path, file_system::Earlier::kIsReplaced);
  };
  if (!RetryWithPause(kAttempts, kPause, place, [](int) {}))
    throw SealFault("'" + WideToUtf8(path) + "' cannot be written.");
}

// The database as a person names it: "Mill/Example!!archive\orders.nsf".
std::string DatabaseName(const AuditBlock& audit) {
  return audit.server.empty() ? audit.path : audit.server + "!!" + audit.path;
}

std::vector<BagInfoElement> InfoElements(const Account& account, const PayloadSize& size) {
  const std::string database = DatabaseName(account.audit);
  std::vector<BagInfoElement> elements = {
      {"Bag-Software-Agent", "larkspan-console " LARKSPAN_VERSION},
      {"Bagging-Date", UtcNow().substr(0, 10)},
      {"Payload-Oxum", OctetsAndFiles(size)},
      {"Bag-Size", BytesText(size.bytes)},
      {"External-Identifier", database},
      {"External-Description",
       "Export of the Notes database " + database + ". " + VerdictText(account)},
      {"Export-Server", account.audit.server},
      {"Export-Path", account.audit.path},
      {"Export-User", account.audit.user},
      {"Export-Started", account.audit.started},
      {"Notes-Listed", std::to_string(account.notes.listed)},
      {"Notes-Exported", std::to_string(account.notes.exported)},
      {"Notes-Lost", std::to_string(account.notes.lost)},
      {"Losses-Listed", std::to_string(account.losses.size())}};
  std::erase_if(elements, [](const BagInfoElement& element) { return element.value.empty(); });
  return elements;
}

class Sealing {
 public:
  Sealing(std::wstring folder, const SealWatch& watch)
      : folder_(std::move(folder)), watch_(watch) {}

  SealResult Run() {
    try {
      const SealState state = SealStateOf(folder_);
      if (state == SealState::kSealed)
        JudgeSealed();
      else if (GatherPayload(state))
        WriteLists();
    } catch (const std::runtime_error& fault) {
      End(hasChanged_ ? ExitCode::kIncomplete : ExitCode::kCouldNotRun, fault.what());
    }
    if (isStopped_) EndStopped();
    return std::move(result_);
  }

 private:
  bool End(ExitCode code, std::string reason) {
    if (!reason.ends_with('.')) reason += '.';
    result_.code = code;
    result_.reason = std::move(reason);
    return false;
  }

  void EndStopped() {
    End(ExitCode::kStopped, result_.wasSealed ? "The check was broken off."
                            : hasChanged_
                                ? "The sealing was stopped. Call it again, and it goes on."
                                : "The sealing was stopped; nothing was changed.");
  }

  // Takes down that the watch has broken off what it watched.
  FileProgress Watched(const FileProgress& progress) {
    return [this, &progress](std::uint64_t done, std::uint64_t all) {
      isStopped_ = progress && !progress(done, all);
      return !isStopped_;
    };
  }

  void Step() {
    if (watch_.beforeStep) watch_.beforeStep();
    hasChanged_ = true;
  }

  // Whether the export there is one to seal; else the result says why it is not.
  bool AccountFor(const std::wstring& folder) {
    Outcome outcome;
    if (ReadOutcome(folder, outcome) == OutcomeReading::kRead && !IsDone(outcome)) return false;
    std::string whyNot;
    result_.account = VerifyFolder(folder, Watched(watch_.checking), whyNot);
    if (!result_.account) return End(ExitCode::kCouldNotRun, whyNot);
    if (result_.account->Verdict() != ExitCode::kIncomplete) return true;
    return End(ExitCode::kIncomplete,
               "The export is not accounted for: " + result_.account->findings.front().text);
  }

  bool IsDone(const Outcome& outcome) {
    if (outcome.state == Outcome::State::kRunning) {
      return End(ExitCode::kCouldNotRun,
                 "The export has not ended: it is running, or was cut off and can be resumed.");
    }
    if (outcome.exitCode == ExitCode::kWhole || outcome.exitCode == ExitCode::kLosses) return true;
    return End(ExitCode::kIncomplete, "The export did not succeed: " + outcome.reason);
  }

  // Whether all of the export is the payload now, and accounted for.
  bool GatherPayload(SealState state) {
    if (state == SealState::kUnsealed && !AccountFor(folder_)) return false;
    if (state == SealState::kMoved) {
      RequireOnlyPayload(folder_);
    } else {
      RequireKnownEntries(folder_);
      MovePayload(folder_, [this] { Step(); });
    }
    return result_.account || AccountFor(folder_ + kPayloadFolder);
  }

  void WriteLists() {
    const std::optional<BagTree> tree = BagTree::List(folder_);
    if (!tree || !tree->links().empty() || !tree->unlisted().empty())
      throw SealFault("The folder cannot be listed in full.");
    const PayloadSize size = PayloadSizeOf(*tree);
    result_.payloadFiles = size.files;
    result_.payloadBytes = size.bytes;
    const std::string payloadName = ManifestName(false, kSealKind);
    const std::vector<std::pair<std::string, std::string>> files = {
        {kBagInfoFile, BagInfoText(InfoElements(*result_.account, size))},
        {kDeclarationFile, DeclarationText()},
        {payloadName, PayloadLines(*tree)}};
    std::string tagLines;
    for (const auto& [name, text] : files)
      tagLines += ManifestLine(DigestOfText(kSealKind, text), name);
    WriteList(payloadName, files[2].second);
    WriteList(kBagInfoFile, files[0].second);
    WriteList(ManifestName(true, kSealKind), tagLines);
    WriteList(kDeclarationFile, files[1].second);
    result_.code = result_.account->Verdict();
  }

  std::string PayloadLines(const BagTree& tree) {
    std::vector<FileSum> sums;
    std::vector<const BagFile*> files;
    for (const BagFile& file : tree.files()) {
      if (!file.IsPayload()) continue;
      files.push_back(&file);
      sums.push_back({file.name, OnlyKind(kSealKind), std::nullopt});
    }
    if (!CalculateSums(folder_, Watched(watch_.summing), sums)) throw SealFault("It was stopped.");
    std::string lines;
    for (std::size_t i = 0; i < files.size(); ++i) {
      if (!sums[i].digests || files[i]->path.empty())
        throw SealFault("'" + WideToUtf8(files[i]->name.substr(1)) + "' cannot be read.");
      lines += ManifestLine(sums[i].digests->Of(kSealKind), files[i]->path);
    }
    return lines;
  }

  void WriteList(const std::string& name, const std::string& text) {
    Step();
    WriteWhole(folder_ + L"\\" + Utf8ToWide(name), text);
  }

  void JudgeSealed() {
    result_.wasSealed = true;
    std::string whyNot;
    result_.bag = JudgeBag(folder_, Watched(watch_.summing), whyNot);
    if (!result_.bag) throw SealFault(whyNot);
    result_.payloadFiles = result_.bag->payloadFiles;
    result_.payloadBytes = result_.bag->payloadBytes;
    if (!result_.bag->IsValid()) {
      End(ExitCode::kIncomplete, "The folder is a bag with " +
                                     CountText(result_.bag->errors.size(), "error", "errors") +
                                     ": " + result_.bag->errors.front().text);
    } else if (AccountFor(folder_ + kPayloadFolder)) {
      result_.code = result_.account->Verdict();
    }
  }

  std::wstring folder_;
  const SealWatch& watch_;
  SealResult result_;
  bool hasChanged_ = false;
  bool isStopped_ = false;
};

}  // namespace

SealResult SealFolder(const std::wstring& folder, const SealWatch& watch) {
  return Sealing(UnlimitedPath(folder), watch).Run();
}

}  // namespace larkspan::console
