#include "console/batch/Summary.h"
#include "console/folder/WholeFile.h"
#include "console/page/Pieces.h"

namespace larkspan::console {

bool WriteSummary(const std::wstring& root, const SummaryContent& content) {
  const bool hasTable = WriteWholeFile(root + kSummaryTable, SummaryTable(content.entries));
  const std::string nonce = MakeNonce();
  return !nonce.empty() && WriteWholeFile(root + kSummaryPage, SummaryPage(content, nonce)) &&
         hasTable;
}

}  // namespace larkspan::console
