#include "console/parts/PartFolders.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "base/WideFormat.h"
#include "console/folder/AuditFile.h"
#include "console/folder/NoteList.h"
#include "console/folder/SystemFile.h"
#include "console/folder/TextLines.h"
#include "console/folder/WholeFile.h"
#include "console/parts/Patience.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::array kTexts = {output::kIdTable, output::kLog, output::kAudit, output::kUnidIndex};

void DeleteFilesOfTheSystem(const std::wstring& folder) {
  std::vector<std::wstring> names;
  VisitFiles(folder, L"*.*", [&](std::wstring_view name) {
    if (IsOfTheSystem(name)) names.emplace_back(name);
  });
  for (const std::wstring& name : names) file_system::Delete(folder + L"\\" + name);
}

bool MakeFolder(const std::wstring& folder) {
  std::error_code error;
  return file_system::CreateFolder(folder) || std::filesystem::is_directory(folder, error);
}

bool IsWhole(const NoteList& list) {
  return list.reading == FileReading::kRead && list.faultyLines == 0 && !list.ids.empty();
}

// A worker may have been at work in it.
bool HoldsExport(const std::wstring& folder) {
  return FileExists(output::Join(folder, output::kLog)) ||
         !std::all_of(kNoteFolders.begin(), kNoteFolders.end(), [&](const wchar_t* name) {
           return HoldsNothing(output::Join(folder, name));
         });
}

// The list is made last, before a worker begins.
bool IsUnfinished(const std::wstring& folder, const NoteList& list) {
  return list.reading != FileReading::kUnreadable && !IsWhole(list) && !HoldsExport(folder);
}

std::optional<std::vector<std::wstring>> PartFoldersIn(const std::wstring& outputFolder) {
  const std::wstring parts = output::Join(outputFolder, kPartsFolder);
  std::optional<std::vector<std::wstring>> folders;
  Patiently([&] {
    folders = FileExists(parts) ? std::vector<std::wstring>() : FoldersIn(parts);
    return folders.has_value();
  });
  return folders;
}

bool WriteNoteList(const std::wstring& path, Slice notes) {
  std::string text;
  for (const std::uint32_t note : notes) text += NoteIdText(note) + "\r\n";
  return WriteWholeFile(path, text);
}

}  // namespace

std::wstring PartFolder(const std::wstring& outputFolder, std::uint32_t firstNote) {
  return output::Join(outputFolder, kPartsFolder) + FormatWide(L"\\%08X", firstNote);
}

bool MakePart(const std::wstring& outputFolder, Slice notes) {
  const std::wstring folder = PartFolder(outputFolder, notes.front());
  return MakeFolder(output::Join(outputFolder, kPartsFolder)) && MakeFolder(folder) &&
         !HoldsExport(folder) &&
         std::all_of(kNoteFolders.begin(), kNoteFolders.end(),
                     [&](const wchar_t* name) { return MakeFolder(output::Join(folder, name)); }) &&
         WriteNoteList(output::Join(folder, output::kIdTable), notes);
}

std::optional<std::vector<std::wstring>> FoldersIn(const std::wstring& folder) {
  std::vector<std::wstring> folders;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  if (error == std::errc::no_such_file_or_directory) return folders;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (entry->is_directory(error)) folders.push_back(entry->path().native());
  }
  if (error) return std::nullopt;
  std::sort(folders.begin(), folders.end());
  return folders;
}

NoteList ReadPartList(const std::wstring& partFolder) {
  NoteList list;
  Patiently([&] {
    list = ReadNoteList(partFolder);
    return list.reading != FileReading::kUnreadable;
  });
  return list;
}

std::optional<std::vector<Part>> ReadParts(const std::wstring& outputFolder) {
  const auto folders = PartFoldersIn(outputFolder);
  if (!folders) return std::nullopt;
  std::vector<Part> parts;
  for (const std::wstring& folder : *folders) {
    NoteList list = ReadPartList(folder);
    if (IsUnfinished(folder, list)) continue;
    if (!IsWhole(list)) return std::nullopt;
    parts.push_back({folder, std::move(list.ids)});
  }
  std::sort(parts.begin(), parts.end(), [](const Part& left, const Part& right) {
    return left.notes.front() < right.notes.front();
  });
  return parts;
}

void RemoveUnfinishedParts(const std::wstring& outputFolder) {
  const auto folders = PartFoldersIn(outputFolder);
  for (const std::wstring& folder : folders.value_or(std::vector<std::wstring>())) {
    if (IsUnfinished(folder, ReadPartList(folder))) RemovePart(folder);
  }
}

bool DeleteIfThere(const std::wstring& file) {
  return Patiently([&] { return !FileExists(file) || file_system::Delete(file); });
}

bool HoldsNothing(const std::wstring& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  if (error == std::errc::no_such_file_or_directory) return true;
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (!IsOfTheSystem(entry->path().filename().native())) return false;
  }
  return !error;
}

bool RemoveEmptyFolder(const std::wstring& folder) {
  return Patiently([&] {
    DeleteFilesOfTheSystem(folder);
    std::error_code error;
    std::filesystem::remove(folder, error);
    return !error;
  });
}

bool RemovePart(const std::wstring& partFolder) {
  const auto removeFolder = [&](const wchar_t* name) {
    return RemoveEmptyFolder(output::Join(partFolder, name));
  };
  const auto removeText = [&](const wchar_t* name) {
    const std::wstring text = output::Join(partFolder, name);
    return DeleteIfThere(text) && DeleteIfThere(output::StageOf(text));
  };
  return std::all_of(kNoteFolders.begin(), kNoteFolders.end(), removeFolder) &&
         std::all_of(kTexts.begin(), kTexts.end(), removeText) && RemoveEmptyFolder(partFolder);
}

bool IsPartDone(const Part& part) { return !SizeAfterLine(part.folder).empty(); }

std::string SizeAfterLine(const std::wstring& partFolder) {
  const std::string label = AuditLabel(AuditRow::kSizeAfter);
  std::string found;
  const auto take = [&](const TextLine& line) {
    if (line.isWhole && line.text.starts_with(label)) found = line.text;
  };
  // It has just been written, and a scanner of new files may hold it.
  Patiently([&] {
    return ReadTextLines(output::Join(partFolder, output::kAudit), take) !=
           FileReading::kUnreadable;
  });
  return found;
}

}  // namespace larkspan::console
