// A folder of the process's own on disk.
#include "tests/fuzz/OutputFolder.h"

#include <windows.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include "base/FileSystem.h"
#include "base/Settings.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

class ProcessFolder {
 public:
  ProcessFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("larkspan-fuzz-" + std::to_string(GetCurrentProcessId()))) {
    constexpr int kAboveAllLevels = 3;
    std::filesystem::create_directories(path_);
    Settings settings;
    settings.outputFolder = path_.wstring();
    settings.minimumLogLevel = kAboveAllLevels;
    SetProcessSettings(std::move(settings));
  }
  ~ProcessFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace

void UseOutputFolder() { static const ProcessFolder folder; }

void WriteOutputFile(std::wstring_view name, std::string_view bytes) {
  file_system::UniqueFile file = file_system::Open(InOutputFolder(name), L"wb");
  Require(file != nullptr, "the file is opened");
  Require(file_system::Write(file.get(), bytes) == bytes.size(), "the file is written");
  Require(file_system::Close(std::move(file)), "the file is closed");
}

std::string TextModeContent(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find('\x1A'));
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool endsLine = bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
    if (!endsLine) text.push_back(bytes[i]);
  }
  return text;
}

}  // namespace larkspan::fuzz
