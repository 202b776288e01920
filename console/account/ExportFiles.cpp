#include "console/account/ExportFiles.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>

#include "base/OutputPaths.h"
#include "console/account/Outcome.h"
#include "console/folder/FolderTree.h"
#include "console/folder/HexDigits.h"
#include "console/folder/SystemFile.h"
#include "console/parts/JoinParts.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// Of "\log.txt" in the output folder.
bool IsRootFile(std::wstring_view name, std::wstring_view known) {
  return IsSameName(name, known.substr(1));
}

// The ID in "0000090A.dxl".
std::optional<std::uint32_t> IdInName(std::wstring_view name, std::wstring_view extension) {
  if (!name.ends_with(extension)) return std::nullopt;
  return ParseNoteId(name.substr(0, name.size() - extension.size()));
}

std::string SlashedName(const TreeEntry& entry) {
  std::wstring path(entry.folder);
  if (!entry.name.empty()) path.append(L"\\").append(entry.name);
  std::string name = WideToUtf8(path);
  std::replace(name.begin(), name.end(), '\\', '/');
  return name.substr(std::min<std::size_t>(1, name.size()));
}

struct Subfolder {
  const wchar_t* name;
  FileKind kind;
};

constexpr std::array kArchiveFolders = {Subfolder{output::kDataFolder, FileKind::kData},
                                        Subfolder{output::kDesignFolder, FileKind::kDesign},
                                        Subfolder{output::kRawDesignFolder, FileKind::kRawCopy},
                                        Subfolder{output::kProfileFolder, FileKind::kProfile},
                                        Subfolder{output::kViewsFolder, FileKind::kView}};

// Finds for each entry of the folder what it is.
class Sorter {
 public:
  Sorter(bool archive, const NoteList& list, ExportFiles& files)
      : archive_(archive), list_(list), files_(files) {
    files_.folders.push_back({"", 0, 0});
    if (!archive) return;
    for (const Subfolder& folder : kArchiveFolders)
      files_.folders.push_back({WideToUtf8(folder.name + 1), 0, 0});
  }

  void Take(const TreeEntry& entry) {
    switch (entry.kind) {
      case TreeEntry::Kind::kFolder:
        return;
      case TreeEntry::Kind::kLink:
        return AddStranger(entry, "unknown-file", " leads elsewhere and was not followed");
      case TreeEntry::Kind::kUnlisted:
        return AddStranger(entry, "unreadable", " cannot be listed");
      case TreeEntry::Kind::kFile:
        if (IsInParts(entry.folder)) return AddPart();
        CountForAudit(entry);
        if (!IsOfTheSystem(entry.name)) TakeFile(entry);
    }
  }

 private:
  std::optional<std::size_t> ArchiveFolder(const TreeEntry& entry) const {
    for (std::size_t i = 0; archive_ && i < kArchiveFolders.size(); ++i)
      if (IsSameName(entry.folder, kArchiveFolders[i].name)) return i;
    return std::nullopt;
  }

  void CountForAudit(const TreeEntry& entry) {
    const std::optional<std::size_t> folder = ArchiveFolder(entry);
    if (!folder) return;
    const FileKind kind = kArchiveFolders[*folder].kind;
    if (!IsNoteFile(kind)) return;
    CountedFiles& counted = kind == FileKind::kData     ? files_.data
                            : kind == FileKind::kDesign ? files_.design
                                                        : files_.profile;
    ++(IsOfTheSystem(entry.name) ? counted.ofTheSystem : counted.least);
  }

  void TakeFile(const TreeEntry& entry) {
    if (entry.folder.empty()) return TakeRootFile(entry);
    const std::optional<std::size_t> folder = ArchiveFolder(entry);
    if (!folder) return AddUnknown(entry);
    const FileKind kind = kArchiveFolders[*folder].kind;
    if (kind == FileKind::kView) return TakeView(entry, *folder + 1);
    TakeNote(entry, kind, *folder + 1);
  }

  void TakeNote(const TreeEntry& entry, FileKind kind, std::size_t folder) {
    const std::optional<std::uint32_t> id = IdInName(entry.name, L".dxl");
    if (!id || !list_.Contains(*id)) return AddUnknown(entry);
    Add(entry, kind, *id, folder);
  }

  void TakeView(const TreeEntry& entry, std::size_t folder) {
    if (const auto id = IdInName(entry.name, L".xml"))
      return Add(entry, FileKind::kView, *id, folder);
    if (IdInName(entry.name, output::StageOf(L".xml"))) return AddLeftOver(entry);
    AddUnknown(entry);
  }

  void TakeRootFile(const TreeEntry& entry) {
    const auto is = [&](std::wstring_view known) { return IsRootFile(entry.name, known); };
    if (is(output::kAcl)) return Add(entry, FileKind::kAcl, 0, 0);
    if (is(output::kProperties)) return Add(entry, FileKind::kProperties, 0, 0);
    if (is(kOutcomeFile) || is(output::StageOf(kOutcomeFile))) return;
    if (is(output::kIdTable) || is(output::kLog) || is(output::kAudit) ||
        (archive_ && is(output::kUnidIndex)))
      return Count(entry, 0);
    if (is(output::kMarker) || is(output::kTemporary) || is(output::StageOf(output::kProperties)))
      return AddLeftOver(entry);
    if (archive_) return AddUnknown(entry);
    TakeNote(entry, FileKind::kPlainNote, 0);
  }

  void Add(const TreeEntry& entry, FileKind kind, std::uint32_t id, std::size_t folder) {
    files_.files.push_back({kind, id, entry.size, {}});
    Count(entry, folder);
  }

  void Count(const TreeEntry& entry, std::size_t folder) {
    ++files_.folders[folder].files;
    files_.folders[folder].bytes += entry.size;
  }

  void AddUnknown(const TreeEntry& entry) {
    AddStranger(entry, "unknown-file", " belongs to no note and no view of this export");
  }

  void AddLeftOver(const TreeEntry& entry) {
    AddStranger(entry, "left-over", " was left by a run that did not come to its end");
  }

  // There are as many files in it as notes, and none of them says more than the first.
  void AddPart() {
    if (!std::exchange(hasParts_, true))
      files_.strangers.push_back({"left-over", std::nullopt, "parts",
                                  "parts holds what several workers have exported and nobody has "
                                  "joined; take the export up again with --resume"});
  }

  void AddStranger(const TreeEntry& entry, const char* kind, const char* what) {
    const std::string name = SlashedName(entry);
    files_.strangers.push_back({kind, std::nullopt, name, name + what});
  }

  bool archive_;
  const NoteList& list_;
  ExportFiles& files_;
  bool hasParts_ = false;
};

bool IsLess(const ExportFile& a, const ExportFile& b) {
  return std::tie(a.id, a.kind) < std::tie(b.id, b.kind);
}

}  // namespace

bool IsNoteFile(FileKind kind) { return kind <= FileKind::kPlainNote; }

std::string ExportFile::Name() const {
  switch (kind) {
    case FileKind::kPlainNote:
      return NoteIdText(id) + ".dxl";
    case FileKind::kView:
      return "views/" + NoteIdText(id) + ".xml";
    case FileKind::kAcl:
      return WideToUtf8(output::kAcl + 1);
    case FileKind::kProperties:
      return WideToUtf8(output::kProperties + 1);
    default:
      break;
  }
  for (const Subfolder& folder : kArchiveFolders)
    if (folder.kind == kind) return WideToUtf8(folder.name + 1) + "/" + NoteIdText(id) + ".dxl";
  return {};
}

std::span<const ExportFile> ExportFiles::OfId(std::uint32_t id) const {
  const auto first =
      std::lower_bound(files.begin(), files.end(), ExportFile{FileKind::kData, id, 0, {}}, IsLess);
  const auto last =
      std::find_if(first, files.end(), [&](const ExportFile& file) { return file.id != id; });
  return {first, last};
}

const ExportFile* ExportFiles::Find(FileKind kind, std::uint32_t id) const {
  for (const ExportFile& file : OfId(id))
    if (file.kind == kind) return &file;
  return nullptr;
}

bool LooksLikeArchive(const std::wstring& folder) {
  const auto exists = [&](const wchar_t* name) {
    return GetFileAttributesW(output::Join(folder, name).c_str()) != INVALID_FILE_ATTRIBUTES;
  };
  return exists(output::kUnidIndex) ||
         std::any_of(output::kSubfolders.begin(), output::kSubfolders.end(), exists);
}

bool ListExportFiles(const std::wstring& folder, bool archive, const NoteList& list,
                     ExportFiles& files) {
  Sorter sorter(archive, list, files);
  if (!VisitTree(folder, [&](const TreeEntry& entry) { sorter.Take(entry); })) return false;
  std::sort(files.files.begin(), files.files.end(), IsLess);
  return true;
}

}  // namespace larkspan::console
