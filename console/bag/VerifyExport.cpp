#include "console/bag/VerifyExport.h"

#include <utility>

#include "console/account/Verify.h"
#include "console/bag/BagPath.h"
#include "console/bag/BagText.h"
#include "console/bag/SealState.h"

namespace larkspan::console {

namespace {

// The export's own sentences name its files as it does; here they lie a folder deeper.
void LeadToPayload(Finding& finding) {
  if (finding.file.empty()) return;
  constexpr char kPayload[] = "data/";
  const std::size_t place = finding.text.find(finding.file);
  if (place != finding.text.npos) finding.text.insert(place, kPayload);
  finding.file.insert(0, kPayload);
}

void AddBagFaults(const BagVerdict& bag, Account& account) {
  for (const Finding& error : bag.errors)
    account.findings.push_back({"bag-" + error.kind, std::nullopt, error.file, error.text});
  for (const Warning& warning : bag.warnings)
    account.warnings.push_back({"bag-" + warning.kind, warning.text});
}

// An account of a bag whose payload is no export, or not one any more.
std::optional<Account> AccountWithoutExport(const BagVerdict& bag, std::string& whyNot) {
  if (bag.IsValid()) {
    whyNot = "The bag is valid and holds no export. 'verify --bag-only' judges any bag.";
    return std::nullopt;
  }
  Account account;
  account.findings.push_back({"missing", std::nullopt, "",
                              "there is no export below data/: no idtable.txt, no audit.txt and no "
                              "outcome.json"});
  return account;
}

std::optional<ExportVerdict> VerifySealed(const std::wstring& folder, const VerifyWatch& watch,
                                          std::string& whyNot) {
  ExportVerdict verdict;
  verdict.bag = JudgeBag(folder, watch.summing, whyNot);
  if (!verdict.bag) return std::nullopt;
  // Below data/ paths may be longer than they were when the export was made.
  verdict.files = ExportWithin(UnlimitedPath(folder));
  std::optional<Account> account = IsOfAnExport(verdict.files)
                                       ? VerifyFolder(verdict.files, watch.checking, whyNot)
                                       : AccountWithoutExport(*verdict.bag, whyNot);
  if (!account) return std::nullopt;
  verdict.account = std::move(*account);
  for (Finding& finding : verdict.account.findings) LeadToPayload(finding);
  AddBagFaults(*verdict.bag, verdict.account);
  return verdict;
}

}  // namespace

std::optional<ExportVerdict> VerifyExport(const std::wstring& folder, const VerifyWatch& watch,
                                          std::string& whyNot) {
  whyNot = WhySealIsUnfinished(folder);
  if (!whyNot.empty()) return std::nullopt;
  if (IsBag(folder)) return VerifySealed(folder, watch, whyNot);
  std::optional<Account> account = VerifyFolder(folder, watch.checking, whyNot);
  if (!account) return std::nullopt;
  return ExportVerdict{folder, std::move(*account), std::nullopt};
}

std::string SealedText(const BagVerdict& bag) {
  return "The folder is sealed. " + BagVerdictText(bag);
}

}  // namespace larkspan::console
