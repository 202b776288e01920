#include "console/batch/BatchFolders.h"

#include <windows.h>

#include <optional>
#include <set>

#include "base/FolderFiles.h"
#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/batch/SafeName.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/OutputFolder.h"

namespace larkspan::console {

namespace {

enum class Holder { kNobody, kThis, kAnother };

bool HoldsExport(const std::wstring& folder) {
  return FileExists(ExportWithin(folder) + kOutcomeFile) || IsBag(folder);
}

Holder HolderOfFolder(const std::wstring& folder, const ListedDatabase& database) {
  if (!FolderExists(folder) || IsEmptyFolder(folder)) return Holder::kNobody;
  Outcome outcome;
  if (ReadOutcome(ExportWithin(folder), outcome) != OutcomeReading::kRead) return Holder::kAnother;
  return outcome.server == database.server && outcome.path == database.path ? Holder::kThis
                                                                            : Holder::kAnother;
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
    const std::wstring key = Key(name);
    if (names_.contains(key) || above_.contains(key)) return false;
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos;
         end = key.find(L'\\', end + 1))
      if (names_.contains(key.substr(0, end))) return false;
    return true;
  }

  void Add(const std::wstring& name) {
    const std::wstring key = Key(name);
    names_.insert(key);
    for (std::size_t end = key.find(L'\\'); end != std::wstring::npos;
         end = key.find(L'\\', end + 1))
      above_.insert(key.substr(0, end));
  }

 private:
  static std::wstring Key(std::wstring name) {
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return name;
  }

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
      if (names_[index].empty()) FindFree(index);
    for (std::wstring& name : names_) name.insert(0, root_ + L"\\");
    return std::move(names_);
  }

 private:
  void KeepEarlier(std::size_t index) {
    const ListedDatabase& database = databases_[index];
    for (const std::wstring& name : {FolderNameOf(database), FolderNameWithSum(database)}) {
      if (IsRefused(name) || HolderOf(root_, name, database) != Holder::kThis) continue;
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

std::vector<std::wstring> ChooseFolders(const std::wstring& root,
                                        const std::vector<ListedDatabase>& databases) {
  return Chooser(root, databases).Choose();
}

}  // namespace larkspan::console
