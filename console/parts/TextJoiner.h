// Logs, or indexes, of several workers become one.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/FileSystem.h"

namespace larkspan::console {

class TextJoiner {
 public:
  // Makes the file anew.
  explicit TextJoiner(const std::wstring& path);

  // Adds a text; nothing when it is not there.
  void AddFile(const std::wstring& path);

  // The same without what each worker says of its own end, but a run says once: that it could not
  // look how large the database is then, or that the Notes runtime did not end well. The first
  // worker has looked only at its beginning.
  void AddFileOfFirstWorker(const std::wstring& path);
  void AddFileOfLaterWorker(const std::wstring& path);

  // Of the lines that were left out the last of each kind.
  void AddLastLinesLeftOut();

  // Writes all to the disk: the texts that were joined are deleted afterwards, and a machine may
  // lose its power. False when one of them could not be read, or something not be written.
  bool End();

 private:
  template <typename Take>
  void Read(const std::wstring& path, Take take);
  void AddFileWithout(std::size_t firstKind, const std::wstring& path);
  std::size_t AddLines(std::string_view text, std::size_t firstKind);
  void AddLine(std::string_view line, std::size_t firstKind);
  void Add(std::string_view text);

  file_system::UniqueFile file_;
  std::array<std::string, 2> leftOut_;  // By kind.
  bool isGood_ = true;
};

}  // namespace larkspan::console
