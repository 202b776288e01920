// Stands in place of the product's door to files, with a folder of the process's own behind it.
#include "tests/fuzz/windows/OutputFolder.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "app/Settings.h"
#include "base/FileSystem.h"
#include "base/SystemFiles.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

std::string appendedText;

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
  std::FILE* file = system_files::Open(InOutputFolder(name), L"wb");
  Require(file != nullptr, "the file is opened");
  Require(system_files::Write(file, bytes) == bytes.size(), "the file is written");
  Require(system_files::Close(file), "the file is closed");
}

std::string TakeAppendedText() { return std::exchange(appendedText, {}); }

}  // namespace larkspan::fuzz

namespace larkspan::file_system {

std::FILE* Open(const std::wstring& path, const wchar_t* mode) {
  return system_files::Open(path, mode);
}

std::size_t Write(std::FILE* file, std::string_view bytes) {
  return system_files::Write(file, bytes);
}

bool Close(std::FILE* file) { return system_files::Close(file); }

bool Append(const std::wstring&, std::string_view bytes) {
  fuzz::appendedText += bytes;
  return true;
}

bool Delete(const std::wstring& path) { return system_files::Delete(path); }

std::FILE* OpenTemporary() { return system_files::OpenTemporary(); }

bool Move(const std::wstring& from, const std::wstring& to, Earlier earlier) {
  return system_files::Move(from, to, earlier);
}

bool CreateFolder(const std::wstring& path) { return system_files::CreateFolder(path); }

}  // namespace larkspan::file_system
