// Reads a DXL or XML file piece by piece: is it well-formed, which note does it say it is, and were
// its pictures taken out?
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "console/folder/UnidIndex.h"

namespace larkspan::console {

struct DxlFacts {
  std::string fault;                    // Why it is not well-formed; empty: it is.
  bool isUnreadable = false;            // The system does not let it be read, and `fault` says so.
  std::string root;                     // The name of the root element.
  std::uint32_t noteInfos = 0;          // So many elements "noteinfo" are children of the root.
  std::optional<std::uint32_t> noteId;  // Of the first of them, when it is a number.
  std::optional<Unid> unid;
  bool lacksPictures = false;
};

// One thread at a time may use it; a parser serves one file after another.
class DxlReader {
 public:
  DxlReader();
  ~DxlReader();
  DxlReader(const DxlReader&) = delete;
  DxlReader& operator=(const DxlReader&) = delete;

  DxlFacts Read(const std::wstring& path);

 private:
  class Parser;
  std::unique_ptr<Parser> parser_;
};

}  // namespace larkspan::console
