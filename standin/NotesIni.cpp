#include "standin/NotesIni.h"

#include <algorithm>
#include <cctype>
#include <fstream>

#include "standin/CharacterSet.h"
#include "standin/Platform.h"

namespace larkspan::standin {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string Trimmed(const std::string& text) {
  const char* const blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
    return static_cast<char>(std::tolower(character));
  });
  return text;
}

std::filesystem::path NamedFile(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i] == nullptr ? "" : argv[i];
    if (argument.size() > 1 && argument[0] == '=') {
      return PathFromUtf16(ArgumentToUtf16(argument.substr(1)));
    }
  }
  return LibraryFolder() / "notes.ini";
}

}  // namespace

std::optional<NotesIni> NotesIni::Find(int argc, const char* const* argv) {
  return Read(NamedFile(argc, argv));
}

std::optional<NotesIni> NotesIni::Read(const std::filesystem::path& file) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return std::nullopt;
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  NotesIni ini;
  ini.folder_ = std::filesystem::absolute(file).parent_path();
  std::string line;
  while (std::getline(in, line)) ini.AddLine(std::move(line));
  return ini;
}

void NotesIni::AddLine(std::string line) {
  if (line.starts_with(kByteOrderMark)) line.erase(0, kByteOrderMark.size());
  const std::size_t sign = line.find('=');
  if (sign == std::string::npos) return;
  values_[LowerCase(Trimmed(line.substr(0, sign)))] = Trimmed(line.substr(sign + 1));
}

std::string NotesIni::Value(const std::string& key) const { return Variable(key).value_or(""); }

std::optional<std::string> NotesIni::Variable(std::string_view key) const {
  const auto found = values_.find(LowerCase(std::string(key)));
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

std::filesystem::path NotesIni::PathValue(const std::string& key) const {
  const std::string value = Value(key);
  if (value.empty()) return {};
  return folder_ / PathFromUtf16(Utf8ToUtf16(value));
}

}  // namespace larkspan::standin
