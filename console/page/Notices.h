// The rows of the page's one table: what is lost, what is not as it must be, and what is worth a
// word. Each has a kind, by which it can be chosen.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/page/PageContent.h"

namespace larkspan::console {

// In the order in which they stand in the table at first.
enum class NoticeGroup { kFinding, kLoss, kWarning };

struct NoticeKind {
  NoticeGroup group;
  std::string word;   // In a link to the page: "loss.note", "finding.unaccounted".
  std::string label;  // For a reader.
  std::size_t count = 0;
};

struct Notice {
  std::size_t kind;   // Among the kinds.
  std::string id;     // "0000090A", or nothing.
  std::string where;  // The stage of a loss, the file of a finding.
  std::string text;
};

struct Notices {
  std::vector<NoticeKind> kinds;  // Those that occur, group by group.
  std::vector<Notice> rows;
};

Notices NoticesOf(const PageContent& content);

// What a kind of loss is called: "Note lost".
std::string LossLabel(LossKind kind);

}  // namespace larkspan::console
