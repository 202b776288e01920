// The names of all entry points, which fault plans and ledgers use.
#pragma once

#include <string_view>

namespace larkspan::standin {

inline constexpr std::string_view kEntryNames[] = {
    "NotesInitExtended",
    "NotesTerm",
    "OSLoadString",
    "OSTranslate",
    "OSGetEnvironmentString",
    "OSGetIntlSettings",
    "OSMemAlloc",
    "OSMemFree",
    "OSLockObject",
    "OSUnlockObject",
    "OSPathNetParse",
    "SECKFMSwitchToIDFile",
    "SECKFMGetUserName",
    "SECKFMOpen",
    "SECKFMClose",
    "NSFNoteCipherDecrypt",
    "NSFDbOpen",
    "NSFDbOpenExtended",
    "NSFDbClose",
    "NSFDbPathGet",
    "NSFDbReplicaInfoGet",
    "NSFDbIDGet",
    "NSFDbInfoGet",
    "NSFDbInfoParse",
    "NSFDbModifiedTime",
    "NSFDbSpaceUsageScaled",
    "NSFDbQuotaGet",
    "NSFDbGetModifiedNoteTable",
    "NSFSearch",
    "NSFSearchExtended3",
    "IDCreateTable",
    "IDDestroyTable",
    "IDInsert",
    "IDScan",
    "IDEntries",
    "NSFNoteOpen",
    "NSFNoteClose",
    "NSFNoteGetInfo",
    "NSFNoteIsSignedOrSealed",
    "NSFItemGetText",
    "NSFItemInfo",
    "NSFItemInfoNext",
    "NSFItemScan",
    "NSFItemDelete",
    "NSFItemGetTextListEntries",
    "NSFItemGetTextListEntry",
    "EnumCompositeBuffer",
    "ODSReadMemory",
    "ODSLength",
    "IntlTextCompare",
    "DXLCreateExporter",
    "DXLDeleteExporter",
    "DXLSetExporterProperty",
    "DXLExportNote",
    "DXLExportACL",
    "NIFOpenCollection",
    "NIFCloseCollection",
    "NIFReadEntries",
    "NIFPurgeCollection",
    "NSFLocateSummaryValue",
    "ListGetNumEntries",
    "ListGetText",
    "ConvertFLOATToText",
    "TimeConstant",
    "TimeGMToLocalZone",
    "TimeLocalToGM",
    "TimeExtractJulianDate",
    "TimeExtractTicks",
    "NAMELookup",
    "NAMELocateNextName",
    "NAMELocateNextMatch",
    "NAMEGetTextItem",
    "DNAbbreviate",
};

constexpr bool IsEntryName(std::string_view name) {
  for (const std::string_view entry : kEntryNames) {
    if (entry == name) return true;
  }
  return false;
}

}  // namespace larkspan::standin
