#include "console/folder/RunLogFile.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "base/OutputPaths.h"
#include "console/folder/TextLines.h"

namespace larkspan::console {

namespace {

// After these the run ends at a note that no line names.
constexpr std::array<std::string_view, 2> kBreakOffs = {"Unable to export design: ",
                                                        "WriteMarkerFile failed ("};

constexpr std::string_view kAclFailure = "Error exporting ACL (";

// Keeps a log of nothing but different texts from filling the memory.
constexpr std::size_t kMostTexts = 1000;

// Texts in the order of their first coming, with how often each came.
class TextCounter {
 public:
  explicit TextCounter(std::vector<RepeatedText>& texts) : texts_(texts) {}

  // False when there are too many different ones already.
  bool Count(std::string_view text) {
    const auto known = places_.find(std::string(text));
    if (known != places_.end()) {
      ++texts_[known->second].times;
      return true;
    }
    if (texts_.size() == kMostTexts) return false;
    places_.emplace(text, texts_.size());
    texts_.push_back({std::string(text), 1});
    return true;
  }

 private:
  std::vector<RepeatedText>& texts_;
  std::unordered_map<std::string, std::size_t> places_;
};

class LogCollector {
 public:
  void Take(std::string_view line) {
    const auto message = [&](std::string_view level) -> std::optional<std::string_view> {
      if (!line.starts_with(level)) return std::nullopt;
      return line.substr(level.size());
    };
    if (const auto warning = message(kWarningLevel)) {
      TakeWarning(*warning);
    } else if (const auto error = message(kErrorLevel)) {
      TakeError(*error);
    } else if (!line.starts_with("#DEBUG# - ")) {
      ++facts_.formlessLines;
    }
  }

  RunLogFacts Facts(FileReading reading) {
    facts_.reading = reading;
    const auto byId = [](const NoteLine& a, const NoteLine& b) { return a.id < b.id; };
    std::stable_sort(facts_.notes.begin(), facts_.notes.end(), byId);
    return std::move(facts_);
  }

 private:
  void TakeWarning(std::string_view message) {
    const bool isMajor = message.starts_with("Major:");
    const bool isMinor = message.starts_with("Minor:");
    if (isMajor) ++facts_.majorLines;
    if (isMinor) ++facts_.minorLines;
    if (isMajor || isMinor) {
      TakeNoteMessage(message);
    } else if (message.starts_with(kAclFailure)) {
      facts_.aclCause = WordsInBrackets(message);
    } else if (!warnings_.Count(message)) {
      ++facts_.otherWarnings;
    }
  }

  void TakeNoteMessage(std::string_view message) {
    if (std::optional<NoteLine> line = ParseNoteMessage(message)) {
      if (IsNew(*line)) facts_.notes.push_back(std::move(*line));
      return;
    }
    if (facts_.unnamed.size() < kMostTexts) facts_.unnamed.emplace_back(message);
    ++facts_.unnamedLines;
  }

  // A worker that cannot start has the same line written again and again.
  bool IsNew(const NoteLine& line) {
    std::uint8_t& told = told_[line.id];
    const auto bit = static_cast<std::uint8_t>(1U << static_cast<unsigned>(line.fault));
    const bool isNew = (told & bit) == 0;
    told |= bit;
    return isNew;
  }

  void TakeError(std::string_view message) {
    errors_.Count(message);
    facts_.lastError = message;
    const bool breaksOff = std::any_of(kBreakOffs.begin(), kBreakOffs.end(),
                                       [&](auto begin) { return message.starts_with(begin); });
    if (breaksOff) facts_.lastBreakOff = message;
  }

  RunLogFacts facts_;
  TextCounter errors_{facts_.errors};
  TextCounter warnings_{facts_.warnings};
  std::unordered_map<std::uint32_t, std::uint8_t> told_;
};

}  // namespace

RunLogFacts ReadRunLogFile(const std::wstring& folder) {
  LogCollector collector;
  const FileReading reading = ReadTextLines(
      output::Join(folder, output::kLog), [&](const TextLine& line) { collector.Take(line.text); });
  return collector.Facts(reading);
}

}  // namespace larkspan::console
