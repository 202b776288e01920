#include "console/account/AccountText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "console/account/TextSection.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// The words for a kind of loss, in the order of LossKind.
constexpr std::array kLossWords = {"note", "raw copy", "pictures", "index line", "ACL", "view"};

std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text;
}

std::string RightAligned(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string FoldersText(const Account& account) {
  std::string text;
  for (const FolderCount& folder : account.folders) {
    const std::string name = folder.name.empty() ? "(top)" : folder.name;
    text += "  " + Padded(name, 8) + RightAligned(GroupedText(folder.files), 10) + " files" +
            RightAligned(GroupedText(folder.bytes), 18) + " bytes\n";
  }
  return text;
}

std::string LossesText(const Account& account) {
  Section section;
  for (const Loss& loss : account.losses) {
    const char* const kind = kLossWords[static_cast<std::size_t>(loss.kind)];
    section.Add(kind, Padded(loss.id ? NoteIdText(*loss.id) : "", 10) + Padded(kind, 12) +
                          Padded(loss.stage, 10) + loss.cause);
  }
  return section.Text("Lost");
}

std::string FindingsText(const Account& account) {
  Section section;
  for (const Finding& finding : account.findings)
    section.Add(finding.kind, Padded(finding.kind + ' ', 17) + finding.text);
  return section.Text("Not as it must be");
}

std::string WarningsText(const Account& account) {
  Section section;
  for (const Warning& warning : account.warnings)
    section.Add(warning.kind, Padded(warning.kind + ' ', 14) + warning.text);
  return section.Text("Warnings");
}

std::string LossesVerdict(const Account& account) {
  const std::uint64_t lost = account.notes.lost + account.notes.notReached;
  const std::string listed = CountText(account.notes.listed, "note", "notes");
  if (lost != 0)
    return GroupedText(lost) + " of " + listed + (lost == 1 ? " is" : " are") +
           " lost; each loss is listed.";
  return "All of " + listed + " exported, with " +
         CountText(account.losses.size(), "loss that is listed.", "losses; each is listed.");
}

}  // namespace

std::string VerdictText(const Account& account) {
  switch (account.Verdict()) {
    case ExitCode::kWhole:
      return "Whole: all " + CountText(account.notes.listed, "note is", "notes are") + " exported.";
    case ExitCode::kLosses:
      return LossesVerdict(account);
    default:
      return "Not accounted for: " + CountText(account.findings.size(), "thing is", "things are") +
             " not as " + (account.findings.size() == 1 ? "it" : "they") + " must be.";
  }
}

std::string AccountText(const Account& account, const std::string& more) {
  return VerdictText(account) + "\n" + (more.empty() ? "" : more + "\n") + "\n" +
         FoldersText(account) + LossesText(account) + FindingsText(account) + WarningsText(account);
}

}  // namespace larkspan::console
