// What verify found, in words for a reader.
#include <algorithm>
#include <vector>

#include "console/page/Sections.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

std::size_t LossesOf(const Account& account, LossKind kind) {
  return static_cast<std::size_t>(
      std::count_if(account.losses.begin(), account.losses.end(),
                    [kind](const Loss& loss) { return loss.kind == kind; }));
}

std::string Enumerate(const std::vector<std::string>& parts) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) text += i + 1 == parts.size() ? " and " : ", ";
    text += parts[i];
  }
  return text;
}

// "9 notes, 1 raw copy and the access control list".
std::string LossWords(const Account& account) {
  std::vector<std::string> parts;
  const auto add = [&](LossKind kind, const std::string& one, const std::string& many) {
    const std::size_t count = LossesOf(account, kind);
    if (count > 0) parts.push_back(CountText(count, one, many));
  };
  add(LossKind::kNote, "note", "notes");
  add(LossKind::kRawCopy, "raw copy", "raw copies");
  add(LossKind::kPictures, "note's pictures", "notes' pictures");
  add(LossKind::kIndexLine, "index line", "index lines");
  add(LossKind::kView, "view", "views");
  if (LossesOf(account, LossKind::kAcl) > 0) parts.emplace_back("the access control list");
  return Enumerate(parts);
}

std::string WholeSentence(const Account& account) {
  const std::uint64_t listed = account.notes.listed;
  if (listed == 0) return "The database has no notes, and the folder is as it must be.";
  const std::string all =
      listed == 1 ? "The one listed note is" : "All " + GroupedText(listed) + " listed notes are";
  return all + " exported, and the folder holds all that it must.";
}

std::string IncompleteSentence(const Account& account) {
  std::string text = CountText(account.findings.size(), "thing is", "things are") +
                     " not as the export must have left " +
                     (account.findings.size() == 1 ? "it." : "them.");
  if (!account.losses.empty()) text += " Lost, and told, besides: " + LossWords(account) + ".";
  return text;
}

}  // namespace

Verdict VerdictOf(ExitCode code, const Account& account) {
  switch (code) {
    case ExitCode::kWhole:
      return {"Whole", WholeSentence(account)};
    case ExitCode::kLosses:
      return {"Done, with losses",
              "Every listed note is accounted for. Missing: " + LossWords(account) + "."};
    default:
      return {"Not accounted for", IncompleteSentence(account)};
  }
}

}  // namespace larkspan::console
