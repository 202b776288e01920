#include "console/follow/PartWorkers.h"

#include <memory>

#include "console/follow/ExporterArguments.h"
#include "console/follow/JobProcess.h"
#include "console/follow/SupervisedWorkers.h"
#include "console/text/Utf.h"

namespace larkspan::console {

Resumption PlanPart(ExportWork& work, const std::wstring& folder) {
  // The number of all notes is that of the whole list.
  Outcome outcome = work.outcome();
  outcome.progress.documents.reset();
  return PlanResumption(folder, outcome);
}

void PreparePart(ExportWork& work, const std::wstring& folder, const Resumption& resumption) {
  if (resumption.first) PrepareResumption(folder, resumption);
  if (!resumption.triedAgain) return;
  work.outcome().resumed.push_back({UtcNow(), resumption.triedAgain});
  work.keeper.Write();
}

CrewMember StartPart(ExportWork& work, const std::wstring& folder, FirstWorker first,
                     std::optional<std::uint32_t> lostBefore) {
  const LogLevel level = work.request.debug ? LogLevel::kDebug : LogLevel::kWarning;
  auto exporter = std::make_unique<SupervisedWorkers>(
      ExporterPath(), ExporterArguments(work.request, folder, work.request.views), true,
      work.around.password, RunLog(folder, level), first, Supervision::kPart);
  return {folder, std::move(exporter), lostBefore};
}

}  // namespace larkspan::console
