#include "console/batch/Summary.h"
#include "console/page/Pieces.h"
#include "console/page/WritePage.h"

namespace larkspan::console {

bool WriteSummary(const std::wstring& root, const SummaryContent& content) {
  const std::string nonce = MakeNonce();
  return !nonce.empty() && WritePage(root + kSummaryTable, SummaryTable(content.entries)) &&
         WritePage(root + kSummaryPage, SummaryPage(content, nonce));
}

}  // namespace larkspan::console
