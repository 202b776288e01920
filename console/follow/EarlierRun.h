// The run that --resume takes up again.
#pragma once

#include <optional>
#include <string>

#include "console/account/Outcome.h"
#include "console/follow/ExportRequest.h"

namespace larkspan::console {

// What the run in this folder says of itself, also when it was sealed since.
OutcomeReading ReadEarlierOutcome(const std::wstring& folder, Outcome& outcome);

// Whether the run was of this database. The case of a server's letters does not count.
bool IsOfDatabase(const Outcome& outcome, const std::string& server, const std::string& path);

// Whether the run was of this database, in this form.
bool IsSameExport(const Outcome& outcome, const ExportRequest& request);

// The run is done: nothing is left to go on with.
bool IsFinished(const Outcome& outcome);

// The folder to go on in; none when there is nothing to go on with, and the export just begins.
std::optional<std::wstring> FolderToResume(const ExportRequest& request);

// Takes what the request leaves open, and the exporter's options, from the run that is taken up
// again. Empty, or a sentence that says why it cannot be.
std::string AdoptEarlierRun(ExportRequest& request);

}  // namespace larkspan::console
