#include "console/page/Notices.h"

#include <algorithm>
#include <map>
#include <utility>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::string LossWord(LossKind kind) {
  switch (kind) {
    case LossKind::kRawCopy:
      return "raw-copy";
    case LossKind::kPictures:
      return "pictures";
    case LossKind::kIndexLine:
      return "index-line";
    case LossKind::kAcl:
      return "acl";
    case LossKind::kView:
      return "view";
    case LossKind::kNote:
      break;
  }
  return "note";
}

// Words that are names of files and of their parts have a label of their own. The others are made
// to be read, but for their dashes: "wrong-note" becomes "Wrong note".
std::string LabelOfWord(const std::string& word) {
  static const std::map<std::string, std::string> kLabels = {
      {"acl", "Access control list"},
      {"audit", "Audit report"},
      {"audit-differs", "Audit report differs"},
      {"idtable", "List of notes"},
      {"index", "Index of universal IDs"},
      {"log", "Run log"},
      {"error-line", "Run log, ERROR"},
      {"not-well-formed", "Not well-formed"},
      {"outcome", "Record of the run"}};
  if (const auto found = kLabels.find(word); found != kLabels.end()) return found->second;
  std::string label = word;
  std::replace(label.begin(), label.end(), '-', ' ');
  if (!label.empty() && label[0] >= 'a' && label[0] <= 'z')
    label[0] = static_cast<char>(label[0] - 'a' + 'A');
  return label;
}

std::string IdText(const std::optional<std::uint32_t>& id) { return id ? NoteIdText(*id) : ""; }

class Collector {
 public:
  void Add(NoticeGroup group, const std::string& word, const std::string& label, Notice notice) {
    notice.kind = KindIndex(group, word, label);
    ++notices.kinds[notice.kind].count;
    notices.rows.push_back(std::move(notice));
  }

  Notices notices;

 private:
  std::size_t KindIndex(NoticeGroup group, const std::string& word, const std::string& label) {
    std::vector<NoticeKind>& kinds = notices.kinds;
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const NoticeKind& kind) { return kind.word == word; });
    const auto index = static_cast<std::size_t>(found - kinds.begin());
    if (found == kinds.end()) kinds.push_back({group, word, label});
    return index;
  }
};

void AddLosses(const std::vector<Loss>& losses, Collector& collector) {
  for (const Loss& loss : losses) {
    collector.Add(NoticeGroup::kLoss, "loss." + LossWord(loss.kind), LossLabel(loss.kind),
                  {0, IdText(loss.id), loss.stage, loss.cause});
  }
}

void AddWarnings(const std::vector<Warning>& warnings, Collector& collector) {
  for (const Warning& warning : warnings) {
    collector.Add(NoticeGroup::kWarning, "warning." + warning.kind, LabelOfWord(warning.kind),
                  {0, "", "", warning.text});
  }
}

}  // namespace

std::string LossLabel(LossKind kind) {
  switch (kind) {
    case LossKind::kRawCopy:
      return "Raw copy missing";
    case LossKind::kPictures:
      return "Pictures missing";
    case LossKind::kIndexLine:
      return "Index line missing";
    case LossKind::kAcl:
      return "Access control list missing";
    case LossKind::kView:
      return "View lost";
    case LossKind::kNote:
      break;
  }
  return "Note lost";
}

Notices NoticesOf(const PageContent& content) {
  Collector collector;
  for (const Finding& finding : content.account.findings) {
    collector.Add(NoticeGroup::kFinding, "finding." + finding.kind, LabelOfWord(finding.kind),
                  {0, IdText(finding.id), finding.file, finding.text});
  }
  AddLosses(content.account.losses, collector);
  AddWarnings(content.account.warnings, collector);
  if (content.outcomeReading == OutcomeReading::kRead)
    AddWarnings(content.outcome.warnings, collector);
  return std::move(collector.notices);
}

}  // namespace larkspan::console
