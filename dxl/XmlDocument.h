// An XML file of the program's own making: printed into a temporary file and, when it is complete,
// put under its final name.
#pragma once

#include <tinyxml2.h>

#include <string>

#include "base/FileSystem.h"
#include "dxl/BufferedPrinter.h"
#include "notes/Status.h"

namespace larkspan {

// A document that is let go without Save leaves nothing behind. Main thread.
class XmlDocument {
 public:
  // Writes the XML declaration into a new temporary file.
  XmlDocument();

  // Hands the printer, which indents by four spaces a level, to a function that prints the content
  // and says whether it is complete. Returns what that says. Without a temporary file, where
  // nothing that is printed would be kept, the function is not called, and true tells to go on with
  // Save, which then fails.
  template <typename PrintContent>
  bool Print(PrintContent printContent) {
    return file_ == nullptr || printContent(printer_);
  }

  // Copies the document, which must be complete, to its final path, where it replaces an earlier
  // file; every line feed becomes carriage return and line feed. On failure, which is logged,
  // returns kOutputNotWritten; an earlier file then stays as it was, unless it had to be written
  // over and could not be written in full: then there is none.
  Status Save(const std::wstring& path);

 private:
  enum class Copy { kComplete, kRefused, kFailed };

  bool IsPrinted();
  Copy CopyTo(const std::wstring& path);
  bool Place(const std::wstring& path);

  file_system::UniqueFile file_;
  BufferedPrinter printer_;
};

}  // namespace larkspan
