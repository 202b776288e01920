#include "console/bag/FetchList.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <string_view>
#include <vector>

#include "console/bag/BagPath.h"
#include "console/bag/Manifest.h"
#include "console/bag/TagText.h"

namespace larkspan::console {

namespace {

constexpr char kFetchFile[] = "fetch.txt";

bool IsAbsoluteAddress(std::string_view text) {
  static const std::regex form("[A-Za-z][A-Za-z0-9+.-]*:.+");
  return std::regex_match(text.begin(), text.end(), form);
}

bool IsLength(std::string_view text) {
  if (text == "-") return true;
  return !text.empty() && std::all_of(text.begin(), text.end(),
                                      [](char digit) { return digit >= '0' && digit <= '9'; });
}

// Takes a word and the blanks behind it off the text.
std::string_view TakeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find_first_of(" \t"));
  text.remove_prefix(word.size());
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  return word;
}

class FetchReader {
 public:
  FetchReader(const BagTree& tree, const Declaration& declaration, BagFaults& faults)
      : tree_(tree), declaration_(declaration), faults_(faults) {}

  std::set<std::string> Read(std::string_view text) {
    const TagLines split = SplitTagLines(text);
    for (std::size_t i = 0; i < split.lines.size(); ++i) TakeLine(split.lines[i], i + 1);
    quirks_.Tell(kFetchFile, faults_);
    return std::move(paths_);
  }

 private:
  void TakeLine(std::string_view line, std::size_t number) {
    if (WithoutBlanks(line).empty()) return quirks_.Count("nothing in it");
    const std::string_view address = TakeWord(line);
    const std::string_view length = TakeWord(line);
    if (!IsAbsoluteAddress(address) || !IsLength(length) || line.empty()) {
      return faults_.AddError(
          "fetch", kFetchFile,
          "fetch.txt, line " + std::to_string(number) + ", is no address with a length and a path");
    }
    TakePath(line, length);
  }

  void TakePath(std::string_view text, std::string_view length) {
    const std::optional<FoundPath> found =
        FindListedFile(tree_, declaration_, kFetchFile, text, quirks_, faults_);
    if (!found) return;
    if (!IsInPayload(found->path)) {
      return faults_.AddError("outside-payload", found->path,
                              "fetch.txt lists " + found->path + ", which is not below data/");
    }
    if (found->file && length != "-" &&
        length != std::to_string(tree_.files()[*found->file].size)) {
      faults_.AddWarning("fetch", "fetch.txt tells another length of " + found->path);
    }
    paths_.insert(found->path);
  }

  const BagTree& tree_;
  const Declaration& declaration_;
  BagFaults& faults_;
  LineQuirks quirks_;
  std::set<std::string> paths_;
};

}  // namespace

std::set<std::string> ReadFetchList(const BagTree& tree, const Declaration& declaration,
                                    BagFaults& faults) {
  const std::optional<std::size_t> index = FindTagFile(tree, kFetchFile, faults);
  if (!index) return {};
  const std::optional<std::string> text =
      ReadTagText(tree, tree.files()[*index], declaration.codePage, faults);
  return text ? FetchReader(tree, declaration, faults).Read(*text) : std::set<std::string>();
}

}  // namespace larkspan::console
