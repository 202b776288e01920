#include <array>
#include <cstdio>
#include <string>

#include "bench/Content.h"
#include "bench/Workload.h"
#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

struct Paths {
  explicit Paths(const std::wstring& folder)
      : marker(folder + L"\\marker.txt"),
        index(folder + L"\\unidindex.txt"),
        temporary(folder + L"\\temp.tmp"),
        data(folder + L"\\data") {}

  std::wstring marker;
  std::wstring index;
  std::wstring temporary;
  std::wstring data;
};

template <typename... Numbers>
std::string Format(const char* format, Numbers... numbers) {
  std::array<char, 60> text{};
  std::snprintf(text.data(), text.size(), format, static_cast<unsigned int>(numbers)...);
  return text.data();
}

void WriteNote(const Paths& paths, NoteChunks& chunks, std::uint32_t note) {
  ReplaceFile(paths.marker, Format("%08X\r\n", note));
  AppendToFile(paths.index, Format("%08X,%08X%08X%08X%08X\r\n", note, note, note, note, note));
  DeleteIfThere(paths.temporary);
  chunks.Select(note);
  for (std::uint32_t i = 0; i < chunks.count(); ++i) AppendToFile(paths.temporary, chunks[i]);
  Move(paths.temporary, NumberedFile(paths.data, note, L".dxl"));
  DeleteIfThere(paths.marker);
}

}  // namespace

void WriteNotes(const std::wstring& folder, std::uint32_t behind) {
  const Paths paths(folder);
  NoteChunks chunks(ProcessWorkload().chunks, ProcessWorkload().chunkBytes, "\r\n");
  CreateFolder(paths.data);
  for (std::uint32_t note = behind + 1; note <= ProcessWorkload().notes; ++note) {
    WriteNote(paths, chunks, note);
  }
}

}  // namespace larkspan::bench
