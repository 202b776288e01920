// Messages of the run log that more than one test looks for: their beginnings, behind the level.
#pragma once

namespace larkspan::message {

inline constexpr char kIncompleteRun[] = "Major: Incomplete run detected for note id ";
inline constexpr char kNoteNotExported[] = "Major: Error exporting note ";
inline constexpr char kNoAcl[] = "Error exporting ACL (";
inline constexpr char kNoProperties[] = "Error exporting database properties (";
inline constexpr char kNoQuota[] = "Unable to read database quota (";
inline constexpr char kNoRuntime[] = "Notes initialization failed (";
inline constexpr char kGivesUp[] = "Maximum retries exceeded";
inline constexpr char kListNotSaved[] = "Unable to save document list";
inline constexpr char kListNotRead[] = "Unable to read document list";
inline constexpr char kFileNotMoved[] = "Unable to move DXL file into place";
inline constexpr char kWorkerBegins[] = "Top of Archive Main Loop with nid ";
inline constexpr char kMarkerRead[] = "ReadMarkerFile returned ";
inline constexpr char kWorkerReturned[] = "Child process returned ";
inline constexpr char kExportException[] = "The export was ended by an exception";
inline constexpr char kEndException[] = "The end of the Notes runtime was ended by an exception";
inline constexpr char kCountMismatch[] = "Document count mismatch: ";

}  // namespace larkspan::message
