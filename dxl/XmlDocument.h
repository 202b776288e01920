// An XML file of the program's own making: printed into a temporary file and, when it is complete,
// put under its final name.
#pragma once

#include <tinyxml2.h>

#include <string>

#include "base/File.h"
#include "notes/Status.h"

namespace larkspan {

// A document that is let go without Save leaves nothing behind. Main thread.
class XmlDocument {
 public:
  // Writes the XML declaration into a new temporary file.
  XmlDocument();

  // Whether there is a temporary file. Without one Save fails, and nothing should be printed, since
  // it would all be kept in memory.
  bool HasFile() const { return file_ != nullptr; }

  // What writes the document's content, indented by four spaces a level.
  tinyxml2::XMLPrinter& printer() { return printer_; }

  // Copies the document, which must be complete, to its final path, where it replaces an earlier
  // file; every line feed becomes carriage return and line feed. On failure, which is logged,
  // returns one of the codes of dxl/StagedFile.h, and an earlier file stays as it was.
  Status Save(const std::wstring& path);

 private:
  Status CopyToStagedFile();
  Status Place(const std::wstring& path);

  UniqueFile file_;
  tinyxml2::XMLPrinter printer_;
};

}  // namespace larkspan
