// The output folder is a name in front of those of the files in memory.
#include "tests/fuzz/OutputFolder.h"

#include <utility>

#include "base/Settings.h"
#include "tests/fuzz/native/MemoryFiles.h"

namespace larkspan::fuzz {

void UseOutputFolder() {
  Settings settings;
  settings.outputFolder = L"out";
  SetProcessSettings(std::move(settings));
}

void WriteOutputFile(std::wstring_view name, std::string_view bytes) {
  SetMemoryFile(InOutputFolder(name), bytes);
}

std::string TextModeContent(std::string_view bytes) { return std::string(bytes); }

}  // namespace larkspan::fuzz
