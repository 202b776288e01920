#include "console/follow/ExportWork.h"

#include "console/follow/Host.h"
#include "console/follow/JobProcess.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

Outcome NewOutcome(const ExportRequest& request, const std::vector<std::string>& command) {
  Outcome outcome;
  outcome.command = command;
  outcome.consoleVersion = LARKSPAN_VERSION;
  outcome.larkspanVersion = FileVersion(ExporterPath());
  outcome.host = HostName();
  outcome.user = UserName();
  outcome.server = request.server;
  outcome.path = request.path;
  outcome.archive = request.archive;
  outcome.views = request.views;
  outcome.fullAccess = request.fullAccess;
  outcome.idFile = request.idFile;
  outcome.notesIni = request.notesIni;
  outcome.started = UtcNow();
  outcome.progress.phase = PhaseWord(Phase::kStarting);
  return outcome;
}

}  // namespace

ExportWork::ExportWork(const ExportRequest& asked, const ExportSurroundings& surroundings)
    : request(asked),
      around(surroundings),
      out(WholePath(asked.out)),
      keeper(out, NewOutcome(asked, surroundings.command)),
      losses(surroundings.display) {}

void ExportWork::TellEnd(const Judgement& judgement, const std::optional<Account>& account,
                         std::uint64_t milliseconds) const {
  EndEvent end;
  end.exitCode = judgement.code;
  end.reason = judgement.reason;
  end.out = WideToUtf8(folder());
  if (account) end.counts = account->notes;
  end.seconds = milliseconds / 1000;
  around.display.End(end);
}

}  // namespace larkspan::console
