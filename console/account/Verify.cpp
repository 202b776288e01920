// How an account is made:
//   1. The run's own records are read: the list of notes, the index, the log, the audit report and
//      outcome.json. None of them is believed alone.
//   2. The folder is listed, and each file of a note, a view or the database is read in full.
//   3. Each listed note gets its fate, each file and each record is held against the others.
#include "console/account/Verify.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/account/Evidence.h"
#include "console/folder/HexDigits.h"
#include "console/folder/NoteFiles.h"
#include "console/parts/JoinParts.h"
#include "console/parts/PartFolders.h"

namespace larkspan::console {

namespace {

// Those without an ID come last; what is equal keeps its order.
template <typename Value>
void SortById(std::vector<Value>& values) {
  std::stable_sort(values.begin(), values.end(), [](const Value& a, const Value& b) {
    return std::pair(!a.id, a.id.value_or(0)) < std::pair(!b.id, b.id.value_or(0));
  });
}

std::vector<FileRecord> RecordsOf(const std::vector<ExportFile>& files) {
  std::vector<FileRecord> records;
  for (const ExportFile& file : files)
    if (!IsNoteFile(file.kind)) records.push_back({file.Name(), file.size});
  return records;
}

void GatherParts(const std::wstring& folder, Evidence& evidence) {
  for (const std::wstring& part : AllPartFolders(folder)) {
    for (const NoteLine& line : ReadRunLogFile(part).notes)
      if (line.fault != NoteFault::kPictures && !HasNoteFile(part, line.id))
        evidence.lostInParts.emplace(line.id, line);
  }
  for (const std::wstring& part : HalfJoinedFolders(folder)) {
    for (const wchar_t* name : kNoteFolders)
      VisitFiles(output::Join(part, name), L"*.*", [&](std::wstring_view file) {
        if (const auto id = ParseNoteId(file.substr(0, file.find(L'.'))))
          evidence.halfJoined.insert(*id);
      });
  }
}

// False, and why not, when it could not be done.
bool Gather(const std::wstring& folder, const FileProgress& progress, Evidence& evidence,
            Account& account, std::string& whyNot) {
  evidence.outcomeReading = ReadOutcome(folder, evidence.outcome);
  account.archive = evidence.outcomeReading == OutcomeReading::kRead ? evidence.outcome.archive
                                                                     : LooksLikeArchive(folder);
  evidence.list = ReadNoteList(folder);
  if (account.archive) evidence.index = ReadUnidIndex(folder);
  evidence.log = ReadRunLogFile(folder);
  GatherParts(folder, evidence);
  evidence.audit = ReadAuditFile(folder);
  whyNot = "The folder cannot be listed.";
  if (!ListExportFiles(folder, account.archive, evidence.list, evidence.files)) return false;
  whyNot = "The check was broken off.";
  return ReadExportFiles(folder, progress, evidence.files.files);
}

void Judge(Evidence& evidence, Account& account) {
  Verdicts verdicts(account);
  JudgeNotes(evidence, verdicts);
  JudgeFiles(evidence, verdicts);
  JudgePresence(evidence, verdicts);
  JudgeLists(evidence, verdicts);
  JudgeAudit(evidence, verdicts);
  JudgeRun(evidence, verdicts);
  SortById(account.losses);
  SortById(account.findings);
  account.folders = std::move(evidence.files.folders);
  account.audit = std::move(evidence.audit.block);
  account.records = RecordsOf(evidence.files.files);
}

std::wstring WithoutEndingSlashes(std::wstring folder) {
  while (folder.ends_with(L'\\') || folder.ends_with(L'/')) folder.pop_back();
  return folder;
}

}  // namespace

bool IsOfAnExport(const std::wstring& folder) {
  const auto exists = [&](const wchar_t* name) {
    return GetFileAttributesW(output::Join(folder, name).c_str()) != INVALID_FILE_ATTRIBUTES;
  };
  return exists(output::kIdTable) || exists(output::kAudit) || exists(kOutcomeFile);
}

std::optional<Account> VerifyFolder(const std::wstring& folder, const FileProgress& progress,
                                    std::string& whyNot) {
  const std::wstring path = WithoutEndingSlashes(folder);
  const DWORD attributes = GetFileAttributesW(folder.c_str());
  const bool isFolder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (!isFolder) {
    whyNot = "There is no such folder.";
    return std::nullopt;
  }
  if (!IsOfAnExport(path)) {
    whyNot = "This is no output folder: there is no idtable.txt, no audit.txt and no outcome.json.";
    return std::nullopt;
  }
  Evidence evidence;
  Account account;
  if (!Gather(path, progress, evidence, account, whyNot)) return std::nullopt;
  whyNot.clear();
  Judge(evidence, account);
  return account;
}

}  // namespace larkspan::console
