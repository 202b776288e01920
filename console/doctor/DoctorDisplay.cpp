#include "console/doctor/DoctorDisplay.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>

#include "console/account/AccountJson.h"
#include "console/show/Sentences.h"
#include "console/show/TextWidth.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

constexpr int kNameColumns = 9;
constexpr int kResultColumns = 9;
constexpr int kGap = 2;
constexpr int kIndent = kNameColumns + kGap + kResultColumns + kGap;

// Less room than this for the details would make a narrow tower of words.
constexpr int kLeastColumns = 24;

constexpr std::array kResults = {CheckResult::kPassed, CheckResult::kWarning, CheckResult::kFailed,
                                 CheckResult::kNotTried};

std::string_view ColourOf(CheckResult result) {
  switch (result) {
    case CheckResult::kPassed:
      return "\x1B[32m";
    case CheckResult::kWarning:
      return "\x1B[33m";
    case CheckResult::kFailed:
      return "\x1B[31m";
    case CheckResult::kNotTried:
      break;
  }
  return {};
}

std::string Padded(std::string text, int columns) {
  text.resize(std::max(text.size(), static_cast<std::size_t>(columns)), ' ');
  return text;
}

std::size_t CountOf(const std::vector<Check>& checks, CheckResult result) {
  return static_cast<std::size_t>(
      std::count_if(checks.begin(), checks.end(),
                    [result](const Check& check) { return check.finding.result == result; }));
}

class DoctorTable : public DoctorDisplay {
 public:
  explicit DoctorTable(LineSink& output) : output_(output) {}

  void Begin(const std::string& name) override {
    if (!output_.IsTerminal()) return;
    // Asked where a line begins.
    colours_ = output_.TakesColours();
    output_.Write(Padded(name, kNameColumns) + "  ...");
  }

  void Tell(const Check& check) override {
    std::string text = output_.IsTerminal() ? "\r" : "";
    text += Padded(check.name, kNameColumns + kGap) + ResultText(check.finding.result);
    text += Details(check.finding.detail);
    if (!check.finding.advice.empty()) {
      text += std::string(kIndent, ' ') + Details("What to do: " + check.finding.advice);
    }
    output_.Write(text);
  }

  void End(const std::vector<Check>& checks, ExitCode /*code*/) override {
    std::string text;
    for (const CheckResult result : kResults) {
      const std::size_t count = CountOf(checks, result);
      if (count == 0) continue;
      text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + ResultWord(result) +
              (result == CheckResult::kWarning && count > 1 ? "s" : "");
    }
    output_.Write("\n" + text + "\n");
  }

 private:
  std::string ResultText(CheckResult result) const {
    const std::string padded = Padded(ResultWord(result), kResultColumns + kGap);
    const std::string_view colour = colours_ ? ColourOf(result) : std::string_view();
    return colour.empty() ? padded : std::string(colour) + padded + "\x1B[0m";
  }

  // The lines of it, of which the first goes on behind the row's first columns.
  std::string Details(const std::string& detail) const {
    // In the last column a terminal would begin a new line.
    const int room = output_.Width() - 1 - kIndent;
    const std::string safe = SafeForTerminal(detail);
    if (!output_.IsTerminal() || room < kLeastColumns) return safe + "\n";
    std::string text;
    for (const std::string& line : WrapWords(safe, room)) {
      text += (text.empty() ? "" : std::string(kIndent, ' ')) + line + "\n";
    }
    return text;
  }

  LineSink& output_;
  bool colours_ = false;
};

class DoctorJson : public DoctorDisplay {
 public:
  explicit DoctorJson(LineSink& output) : output_(output) {}

  void End(const std::vector<Check>& checks, ExitCode code) override {
    Json json = {{"format", "larkspan-doctor"}, {"version", 1}};
    json["exitCode"] = static_cast<int>(code);
    json["checks"] = Json::array();
    for (const auto& [name, finding] : checks) {
      json["checks"].push_back({{"name", name},
                                {"result", ResultWord(finding.result)},
                                {"detail", finding.detail},
                                {"advice", finding.advice}});
    }
    output_.Write(JsonText(json, 2) + "\n");
  }

 private:
  LineSink& output_;
};

class QuietDoctor : public DoctorDisplay {
 public:
  explicit QuietDoctor(LineSink& errors) : errors_(errors) {}

  void Tell(const Check& check) override {
    if (check.finding.result != CheckResult::kFailed) return;
    errors_.Write(
        ErrorText(check.name + ": " + check.finding.detail + ". " + check.finding.advice));
  }

 private:
  LineSink& errors_;
};

}  // namespace

const char* ResultWord(CheckResult result) {
  constexpr std::array kWords = {"passed", "warning", "failed", "not tried"};
  return kWords[static_cast<std::size_t>(result)];
}

std::vector<std::string> WrapWords(const std::string& text, int columns) {
  std::vector<std::string> lines(1);
  std::istringstream words(text);
  for (std::string word; std::getline(words, word, ' ');) {
    if (!lines.back().empty() && ColumnsOf(lines.back()) + 1 + ColumnsOf(word) <= columns) {
      lines.back() += " " + word;
      continue;
    }
    if (!lines.back().empty()) lines.emplace_back();
    for (; ColumnsOf(word) > columns; lines.emplace_back()) {
      lines.back() = CutAtTheEnd(word, columns);
      word.erase(0, lines.back().size());
    }
    lines.back() = word;
  }
  return lines;
}

std::unique_ptr<DoctorDisplay> MakeDoctorTable(LineSink& output) {
  return std::make_unique<DoctorTable>(output);
}

std::unique_ptr<DoctorDisplay> MakeDoctorJson(LineSink& output) {
  return std::make_unique<DoctorJson>(output);
}

std::unique_ptr<DoctorDisplay> MakeQuietDoctor(LineSink& errors) {
  return std::make_unique<QuietDoctor>(errors);
}

}  // namespace larkspan::console
