#include "tests/torture/FileExpectation.h"

#include "tests/support/LogMessages.h"
#include "tests/torture/FileLines.h"
#include "tests/torture/SupervisorTraces.h"

namespace larkspan::torture {

namespace {

constexpr std::string_view kMarker = "marker.txt";
constexpr std::string_view kIdTable = "idtable.txt";
constexpr std::string_view kUnidIndex = "unidindex.txt";
constexpr std::string_view kTemporary = "temp.tmp";

// Of db.dxl and of views, until they are complete.
constexpr std::string_view kStageSuffix = ".new";

// Of a worker whose marker nobody could read.
constexpr std::string_view kEndedOutsideANote = "Child process returned 3221225477 outside a note";

// How an operation on a file that is to get a final name is tried again, and given up.
std::vector<std::string_view> TracesOf(const std::string& operation) {
  if (operation == "open") return {"Unable to open temp file for writing: "};
  if (operation == "delete") {
    return {"Retrying delete DXL temporary file: ", "Unable to delete DXL temporary file"};
  }
  // Nothing can be moved into a folder that was not made.
  if (operation == "move" || operation == "folder") {
    return {"Retrying move DXL file into place: ", message::kFileNotMoved};
  }
  return {"Only wrote ", "Unable to close temp file: "};
}

std::vector<std::string_view> ComplaintsOf(const FileCase& fault) {
  if (fault.file == kMarker) {
    return {"Retry WriteMarkerFile (", "WriteMarkerFile failed (", kEndedOutsideANote,
            message::kIncompleteRun, message::kGivesUp};
  }
  if (fault.file == kIdTable) {
    return {message::kListNotSaved, message::kListNotRead, kListNotFound, kListCutShort};
  }
  if (fault.file == kUnidIndex) return {};
  std::vector<std::string_view> complaints = TracesOf(fault.operation);
  complaints.insert(complaints.end(), {message::kNoteNotExported, message::kNoAcl,
                                       message::kNoProperties, "Unable to write "});
  return complaints;
}

bool IsIndexLineLost(const FileCase& fault) {
  return fault.file == kUnidIndex && CostsALine(fault.operation);
}

}  // namespace

// A view that is missing is looked for in the log.
Expectation FileExpectationOf(const FileCase& fault) {
  const bool isOutput =
      fault.operation == "write" || (fault.operation == "close" && !fault.closesRead);
  const bool isNeeded =
      fault.file == kTemporary || fault.file == kMarker || fault.file.ends_with(kStageSuffix);
  return {.entry = "",
          .tells = isOutput && isNeeded ? Tells::kAlways : Tells::kSometimes,
          .complaints = ComplaintsOf(fault),
          .silently = IsIndexLineLost(fault) ? kViewsDiffer | kNotIndexed : kViewsDiffer,
          .forAll = kViewsDiffer};
}

bool IsReport(const std::string& file) { return file == "log.txt" || file == "audit.txt"; }

}  // namespace larkspan::torture
