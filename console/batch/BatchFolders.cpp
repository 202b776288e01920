#include "console/batch/BatchFolders.h"

#include <optional>
#include <set>

#include "base/FolderFiles.h"
#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/batch/SafeName.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

enum class Holder { kNobody, kThis, kAnother };

Holder HolderOfFolder(const std::wstring& folder, const ListedDatabase& database) {
  if (FileExists(folder)) return Holder::kAnother;
  if (!FolderExists(folder) || IsEmptyFolder(folder)) return Holder::kNobody;
  // In the midst of a sealing the file is on its way.
  for (const wchar_t* place : {L"", L"\\data.new", L"\\data"}) {
    Outcome outcome;
    if (ReadOutcome(folder + place, outcome) != OutcomeReading::kRead) continue;
    return IsOfDatabase(outcome, database.server, database.path) ? Holder::kThis : Holder::kAnother;
  }
  return Holder::kAnother;
}

// An attempt that was cut off before it said of what it is, is nobody's.
Holder HolderOfAttempts(const std::wstring& folder, const ListedDatabase& database) {
  const std::optional<std::wstring> attempt = LastAttempt(folder);
  if (!attempt || !FileExists(*attempt + kOutcomeFile)) return Holder::kNobody;
  return HolderOfFolder(*attempt, database);
}

Holder HolderOf(const std::wstring& root, const std::wstring& name,
                const ListedDatabase& database) {
  for (std::size_t end = name.find(L'\\'); end != std::wstring::npos;
       end = name.find(L'\\', end + 1))
    if (HoldsExport(root + L"\\" + name.substr(0, end))) return Holder::kAnother;
  const std::wstring folder = root + L"\\" + name;
  const Holder holder = HolderOfFolder(folder, database);
  return holder == Holder::kNobody ? HolderOfAttempts(folder, database) : holder;
}

// The names that are given away, and those of the folders above them.
class Claims {
 public:
  bool IsFree(const std::wstring& name) const {
    const std::wstring key = UpperCase(name);
    if (names_.contains(key) || above_.contains(key)) return false;
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos;
         end = key.find(L'\\', end + 1))
      if (names_.contains(key.substr(0, end))) return false;
    return true;
  }

  void Add(const std::wstring& name) {
    const std::wstring key = UpperCase(name);
    names_.insert(key);
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos;
         end = key.find(L'\\', end + 1))
      above_.insert(key.substr(0, end));
  }

 private:
  std::set<std::wstring> names_;
  std::set<std::wstring> above_;
};

class Chooser {
 public:
  Chooser(const std::wstring& root, const std::vector<ListedDatabase>& databases)
      : root_(root), databases_(databases), names_(databases.size()) {}

  std::vector<std::wstring> Choose() {
    for (std::size_t index = 0; index < databases_.size(); ++index) KeepEarlier(index);
    for (std::size_t index = 0; index < databases_.size(); ++index)
      if (names_[index].empty() && !databases_[index].isFolder) FindFree(index);
    for (std::wstring& name : names_)
      if (!name.empty()) name.insert(0, root_ + L"\\");
    return std::move(names_);
  }

 private:
  void KeepEarlier(std::size_t index) {
    const ListedDatabase& database = databases_[index];
    for (const std::wstring& name : {FolderNameOf(database), FolderNameWithSum(database)}) {
      if (IsRefused(name) || !claims_.IsFree(name)) continue;
      if (HolderOf(root_, name, database) != Holder::kThis) continue;
      return Take(index, name);
    }
  }

  void FindFree(std::size_t index) {
    const ListedDatabase& database = databases_[index];
    const std::wstring name = FolderNameOf(database);
    const bool isFree = !IsRefused(name) && claims_.IsFree(name) &&
                        HolderOf(root_, name, database) == Holder::kNobody;
    Take(index, isFree ? name : FolderNameWithSum(database));
  }

  void Take(std::size_t index, const std::wstring& name) {
    claims_.Add(name);
    names_[index] = name;
  }

  const std::wstring& root_;
  const std::vector<ListedDatabase>& databases_;
  std::vector<std::wstring> names_;
  Claims claims_;
};

}  // namespace

bool HoldsExport(const std::wstring& folder) {
  return FileExists(folder + kOutcomeFile) || IsBag(folder);
}

std::vector<std::wstring> ChooseFolders(const std::wstring& root,
                                        const std::vector<ListedDatabase>& databases) {
  return Chooser(root, databases).Choose();
}

}  // namespace larkspan::console
