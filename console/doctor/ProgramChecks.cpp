#include "console/doctor/ProgramChecks.h"

#include <array>
#include <vector>

#include "base/FolderFiles.h"
#include "console/doctor/LibrarySearch.h"
#include "console/doctor/ProgramFile.h"
#include "console/follow/Host.h"
#include "console/follow/JobProcess.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"
#include "notes/LibraryNames.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kLibrary[] = L"nnotes.dll";
constexpr char kPutTogether[] = "Put larkspan.exe and larkspan-console.exe of one build together.";

std::wstring FolderOf(const std::wstring& file) { return file.substr(0, file.find_last_of(L'\\')); }

std::string VersionText(const std::string& version) {
  return version.empty() ? "without a version" : "version " + version;
}

std::vector<std::string_view> AllNames() {
  std::vector<std::string_view> names(LinkedLibraryNames().begin(), LinkedLibraryNames().end());
  names.insert(names.end(), kLookedUpLibraryNames.begin(), kLookedUpLibraryNames.end());
  return names;
}

// Some of very many.
std::string ListText(const std::vector<std::string_view>& names) {
  constexpr std::size_t kMost = 10;
  std::string text;
  for (std::size_t i = 0; i < names.size() && i < kMost; ++i) {
    text += (i == 0 ? "" : ", ") + std::string(names[i]);
  }
  return names.size() > kMost ? text + " and " + std::to_string(names.size() - kMost) + " more"
                              : text;
}

CheckFinding JudgeLibrary(const ProgramFacts& facts, const FoundLibrary& found,
                          const ProgramFile& file) {
  const std::string what = WideToUtf8(found.file) + ", " + PlaceText(found.place) + ", ";
  if (!file.fault().empty()) {
    return Failed(what + "cannot be loaded: " + file.fault(),
                  "Install Notes anew, or take away the file if it does not belong there.");
  }
  const std::string size = WordSizeText(file.wordBits());
  const std::string wanted = WordSizeText(facts.exporterBits);
  if (file.wordBits() != facts.exporterBits || file.processor() != facts.exporterProcessor) {
    return Failed(
        what + "is " + size + ", and larkspan.exe is " + wanted +
            (size == wanted ? " for another processor" : ""),
        "Take the " + size + " build of Larkspan, or a machine with a " + wanted + " Notes.");
  }
  const std::string detail = what + VersionText(FileVersionNumbers(found.file)) + ", " + size;
  if (found.place != LibraryPlace::kCurrentFolder) return Passed(detail);
  return Warned(detail,
                "Put larkspan.exe and larkspan-console.exe into the Notes program folder: "
                "from another current folder another library is loaded, or none.");
}

}  // namespace

CheckFinding CheckExporter(ProgramFacts& facts) {
  facts.exporter = ExporterPath();
  const auto bytes = ReadProgramFile(facts.exporter);
  const std::string path = WideToUtf8(facts.exporter);
  if (!bytes) {
    const bool isThere = FileExists(facts.exporter);
    return Failed(path + (isThere ? " cannot be read" : " is not there"), kPutTogether);
  }
  const ProgramFile file(*bytes);
  if (!file.fault().empty()) return Failed(path + ": " + file.fault(), kPutTogether);
  facts.exporterBits = file.wordBits();
  facts.exporterProcessor = file.processor();
  const std::string version = FileVersion(facts.exporter);
  if (version != LARKSPAN_VERSION) {
    return Failed(path + " is " + (version.empty() ? "without a version" : "version " + version) +
                      ", and this program is version " LARKSPAN_VERSION,
                  kPutTogether);
  }
  return Passed(path + ", version " + version + ", " + WordSizeText(file.wordBits()));
}

CheckFinding CheckLibrary(ProgramFacts& facts) {
  const auto found = FindLibrary(FolderOf(facts.exporter), facts.exporterBits, kLibrary);
  if (!found) {
    return Failed("Windows finds no nnotes.dll for larkspan.exe",
                  "Put larkspan.exe and larkspan-console.exe into the Notes program folder.");
  }
  const auto bytes = ReadProgramFile(found->file);
  if (!bytes) {
    return Failed(
        WideToUtf8(found->file) + " cannot be read",
        "Give this user the right to read and run the files of the Notes program folder.");
  }
  facts.library = found->file;
  return JudgeLibrary(facts, *found, ProgramFile(*bytes));
}

CheckFinding CheckNames(const ProgramFacts& facts) {
  const std::vector<std::string_view> names = AllNames();
  const auto bytes = ReadProgramFile(facts.library);
  if (!bytes) return Failed("nnotes.dll cannot be read any more", "Call doctor once more.");
  const std::vector<std::string_view> missing = ProgramFile(*bytes).NamesMissing(names);
  if (missing.empty()) {
    return Passed("all " + std::to_string(names.size()) + " that larkspan.exe needs are there");
  }
  return Failed("of " + std::to_string(names.size()) + " that larkspan.exe needs " +
                    CountText(missing.size(), "is", "are") + " missing: " + ListText(missing),
                "Use a machine with a newer Notes: larkspan.exe cannot work with this library.");
}

}  // namespace larkspan::console
