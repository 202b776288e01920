#include "tests/torture/DiskExpectation.h"

#include "tests/support/LogMessages.h"

namespace larkspan::torture {

namespace {

constexpr std::string_view kMarker = "marker.txt";
constexpr std::string_view kIdTable = "idtable.txt";
constexpr std::string_view kUnidIndex = "unidindex.txt";
constexpr std::string_view kTemporary = "temp.tmp";

// Of a worker whose marker nobody could read.
constexpr std::string_view kEndedOutsideANote = "Child process returned 3221225477 outside a note";

std::vector<std::string_view> ComplaintsOf(const std::string& file) {
  if (file == kMarker) {
    return {"Retry WriteMarkerFile (", "WriteMarkerFile failed (", kEndedOutsideANote,
            message::kIncompleteRun, message::kGivesUp};
  }
  if (file == kIdTable) return {message::kListNotSaved, message::kListNotRead};
  if (file == kUnidIndex) return {};
  return {message::kNoteNotExported,
          message::kNoAcl,
          message::kNoProperties,
          "Unable to write ",
          "Unable to delete DXL temporary file",
          message::kFileNotMoved};
}

}  // namespace

// A view that is missing is looked for in the log.
Expectation DiskExpectationOf(const DiskCase& fault) {
  const bool isOutput = fault.operation == "write" || fault.operation == "close";
  const bool isNeeded = fault.file == kTemporary || fault.file == kMarker;
  return {.entry = "",
          .tells = isOutput && isNeeded ? Tells::kAlways : Tells::kSometimes,
          .complaints = ComplaintsOf(fault.file),
          .silently = kViewsDiffer};
}

bool IsReport(const std::string& file) { return file == "log.txt" || file == "audit.txt"; }

}  // namespace larkspan::torture
