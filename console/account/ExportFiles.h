// The files of an export that are notes, views, or about the database, each with what it says of
// itself; and the entries of the folder that belong to none.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/folder/DxlReader.h"
#include "console/folder/FileProgress.h"
#include "console/folder/NoteList.h"

namespace larkspan::console {

// In the order in which a note's files stand side by side.
enum class FileKind : std::uint8_t {
  kData,
  kDesign,
  kProfile,
  kPlainNote,  // In the output folder itself.
  kRawCopy,
  kView,
  kAcl,
  kProperties,
};

bool IsNoteFile(FileKind kind);

struct ExportFile {
  FileKind kind = FileKind::kData;
  std::uint32_t id = 0;  // Of the note or view; 0 for the others.
  std::uint64_t size = 0;
  DxlFacts facts;

  std::string Name() const;  // "data/0000090A.dxl".
};

// How many files the exporter may have counted in a folder: a system puts files of its own there
// whenever somebody looks at it.
struct CountedFiles {
  std::uint64_t least = 0;
  std::uint64_t ofTheSystem = 0;
};

struct ExportFiles {
  std::vector<ExportFile> files;  // By ascending ID, then by kind.
  CountedFiles data;
  CountedFiles design;
  CountedFiles profile;
  std::vector<FolderCount> folders;
  std::vector<Finding> strangers;  // What no list knows, or cannot be looked into.

  std::span<const ExportFile> OfId(std::uint32_t id) const;
  const ExportFile* Find(FileKind kind, std::uint32_t id) const;
};

// Whether the folder looks like an archive's.
bool LooksLikeArchive(const std::wstring& folder);

// Lists the folder without opening a file. False when it cannot be listed.
bool ListExportFiles(const std::wstring& folder, bool archive, const NoteList& list,
                     ExportFiles& files);

// Reads each file, several at a time. False when it was broken off.
bool ReadExportFiles(const std::wstring& folder, const FileProgress& progress,
                     std::vector<ExportFile>& files);

}  // namespace larkspan::console
