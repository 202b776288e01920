#include "tests/torture/Expectation.h"

#include <stdexcept>

#include "tests/support/LogMessages.h"

namespace larkspan::torture {

namespace {

constexpr std::string_view kNoConfiguration = "Unable to locate notes.ini";
constexpr std::string_view kNoIdSwitch = "Unable to switch ID (";
constexpr std::string_view kNoDatabase = "Error opening database (";
constexpr std::string_view kNoList = "Error retrieving notes (";
constexpr std::string_view kNoteNotOpened = "Major: Error opening note ";
constexpr std::string_view kNoteNotDecrypted = "Major: Error decrypting note ";
constexpr std::string_view kWithoutImages = "Minor: Detected corrupt document ";
constexpr std::string_view kNoDesign = "Unable to export design: ";
constexpr std::string_view kIndexStays = "Purging collection ";
constexpr std::string_view kIndexStaysWhy = "Error '";

using enum Tells;

std::vector<Expectation> OfRuntimeAndAccess() {
  return {
      {"NotesInitExtended",
       kAlways,
       {message::kNoRuntime, kNoConfiguration, message::kGivesUp, message::kIncompleteRun}},
      {"NotesTerm", kNever, {}},
      {"OSLoadString", kNever, {}},
      {"OSTranslate",
       kSometimes,
       {kNoIdSwitch, kNoDatabase, kNoteNotDecrypted},
       kViewsDiffer | kPropertiesDiffer | kAuditDiffers},
      {"OSGetIntlSettings", kNever, {}, kViewsDiffer},
      {"OSMemAlloc", kAlways, {kNoDatabase}},
      {"OSMemFree", kNever, {}, kNothing, {"memory"}},
      {"OSLockObject", kSometimes, {kNoDatabase}, kViewsDiffer},
      {"OSUnlockObject", kNever, {}, kNothing, {"lock", "memory", "note", "database"}},
      {"OSPathNetParse", kAlways, {"Unable to read database location ("}, kAuditDiffers},
      {"SECKFMSwitchToIDFile", kAlways, {kNoIdSwitch}},
      {"SECKFMGetUserName", kSometimes, {kNoDatabase}, kAuditDiffers},
      {"SECKFMOpen", kAlways, {kNoteNotDecrypted}},
      {"SECKFMClose", kNever, {}, kNothing, {"keyFile"}},
      {"NSFNoteCipherDecrypt", kAlways, {kNoteNotDecrypted}},
      {"NSFDbOpen", kAlways, {kNoDatabase}},
      {"NSFDbOpenExtended", kAlways, {kNoDatabase}},
      {"NSFDbClose", kNever, {}, kNothing, {"database"}},
  };
}

std::vector<Expectation> OfDatabaseAndNotes() {
  return {
      {"NSFDbPathGet",
       kSometimes,
       {"Unable to read database location (", "Error retrieving database path (",
        message::kNoProperties},
       kAuditDiffers},
      {"NSFDbReplicaInfoGet", kAlways, {"Error retrieving replicaid (", message::kNoProperties}},
      {"NSFDbIDGet", kAlways, {"Error retrieving database id (", message::kNoProperties}},
      {"NSFDbInfoGet", kAlways, {"Error retrieving database info (", message::kNoProperties}},
      {"NSFDbInfoParse", kNever, {}, kPropertiesDiffer},
      {"NSFDbModifiedTime",
       kAlways,
       {"Error retrieving database modified times (", message::kNoProperties}},
      {"NSFDbSpaceUsageScaled",
       kAlways,
       {"Error retrieving database space usage (", message::kNoProperties}},
      {"NSFDbQuotaGet", kAlways, {message::kNoQuota}, kAuditDiffers},
      {"NSFDbGetModifiedNoteTable", kNever, {}, kViewsDiffer, {}, kViewsDiffer},
      {"NSFSearchExtended3", kAlways, {kNoList}},
      {"IDCreateTable", kAlways, {kNoList}},
      {"IDDestroyTable", kNever, {}, kNothing, {"idTable"}},
      {"IDInsert", kAlways, {kNoList, message::kListNotRead}},
      {"IDScan",
       kSometimes,
       {message::kListNotSaved, message::kListNotRead},
       kViewsDiffer,
       {},
       kViewsDiffer},
      {"IDEntries", kNever, {}},
      {"NSFNoteOpen", kSometimes, {kNoteNotOpened}, kViewsDiffer},
      {"NSFNoteClose", kNever, {}, kNothing, {"note", "database"}},
      {"NSFNoteGetInfo", kNever, {}, kFileElsewhere | kKeepsItems | kUnidUnknown},
      {"NSFNoteIsSignedOrSealed", kNever, {}, kStaysSealed},
      {"NSFItemGetText", kNever, {}, kFileElsewhere | kViewsDiffer},
      {"NSFItemInfo", kNever, {}, kOtherExporter | kNoRawCopy | kKeepsItems | kViewsDiffer},
      {"NSFItemInfoNext", kNever, {}, kOtherExporter},
      {"NSFItemScan", kNever, {}, kKeepsItems},
      {"NSFItemDelete", kNever, {}, kKeepsItems},
      {"NSFItemGetTextListEntries", kNever, {}, kKeepsItems},
      {"NSFItemGetTextListEntry", kNever, {}, kKeepsItems},
      {"EnumCompositeBuffer", kNever, {}, kOtherExporter},
      {"ODSReadMemory", kNever, {}, kViewsDiffer},
      {"ODSLength", kNever, {}, kViewsDiffer},
      {"IntlTextCompare", kNever, {}, kFileElsewhere},
      {"DXLCreateExporter", kAlways, {"Error creating DXL Exporter "}},
      {"DXLDeleteExporter", kNever, {}, kNothing, {"exporter"}},
      {"DXLSetExporterProperty", kAlways, {"Error setting DXL exporter property "}},
      {"DXLExportNote",
       kSometimes,
       {message::kNoteNotExported, kWithoutImages, kNoDesign},
       kTriedAgain | kRepaired},
      {"DXLExportACL", kAlways, {message::kNoAcl}},
  };
}

std::vector<Expectation> OfViewsAndValues() {
  return {
      {"NIFOpenCollection", kNever, {}, kViewsDiffer},
      {"NIFCloseCollection",
       kSometimes,
       {kIndexStays, kIndexStaysWhy},
       kNothing,
       {"collection", "database"}},
      {"NIFReadEntries", kNever, {}, kViewsDiffer},
      {"NIFPurgeCollection", kAlways, {kIndexStays, kIndexStaysWhy}},
      {"NSFLocateSummaryValue", kNever, {}, kViewsDiffer},
      {"ListGetNumEntries", kNever, {}, kViewsDiffer},
      {"ListGetText", kNever, {}, kViewsDiffer},
      {"ConvertFLOATToText", kNever, {}, kViewsDiffer},
      {"TimeConstant", kNever, {}},
      {"TimeGMToLocalZone", kNever, {}, kViewsDiffer | kPropertiesDiffer | kOtherTime},
      {"TimeLocalToGM", kNever, {}},
      {"TimeExtractJulianDate", kNever, {}, kViewsDiffer | kPropertiesDiffer | kOtherTime},
      {"TimeExtractTicks", kNever, {}, kViewsDiffer | kPropertiesDiffer | kOtherTime},
  };
}

const std::vector<Expectation>& Table() {
  static const std::vector<Expectation> table = [] {
    std::vector<Expectation> all = OfRuntimeAndAccess();
    for (const auto& part : {OfDatabaseAndNotes(), OfViewsAndValues()}) {
      all.insert(all.end(), part.begin(), part.end());
    }
    return all;
  }();
  return table;
}

}  // namespace

const Expectation& FindExpectation(const std::vector<Expectation>& table,
                                   const std::string& entry) {
  for (const Expectation& expectation : table) {
    if (expectation.entry == entry) return expectation;
  }
  throw std::runtime_error("nothing is expected of " + entry);
}

const Expectation& ExpectationOf(const std::string& entry) {
  return FindExpectation(Table(), entry);
}

}  // namespace larkspan::torture
