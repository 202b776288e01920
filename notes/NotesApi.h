// The C interface of the Notes library, as far as this program calls it: our own declarations of
// the types, records and entry points that nnotes.dll exports. Only the files of notes/ call the
// entry points; the stand-in library implements them.
//
// Sizes are exact and natural alignment holds, so the same declarations serve 32-bit and 64-bit
// Windows. On 32-bit Windows every entry point and callback is __stdcall; elsewhere there is one
// calling convention. Text is in the Notes character set unless a comment says otherwise. A zero
// handle is no handle. An entry point that returns a length does not end the text with a NUL.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define LARKSPAN_NOTES_CALL __stdcall
#else
#define LARKSPAN_NOTES_CALL
#endif

#if defined(_WIN32) && defined(LARKSPAN_NOTES_IMPLEMENTATION)
#define LARKSPAN_NOTES_ENTRY __declspec(dllexport)
#else
#define LARKSPAN_NOTES_ENTRY
#endif

namespace larkspan::notes_api {

using STATUS = std::uint16_t;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using BOOL = std::int32_t;
using NOTEID = DWORD;
using DHANDLE = DWORD;
using HCOLLECTION = WORD;
using HKFC = void*;

inline constexpr char kDxlNamespace[] = "http://www.lotus.com/dxl";

// Mask that leaves the error number of a status; the two top bits say where it came from.
inline constexpr STATUS kErrorMask = 0x3FFF;

// Modes of OSTranslate.
inline constexpr WORD kTranslateNotesToUtf16 = 20;
inline constexpr WORD kTranslateNotesToUtf8 = 22;
inline constexpr WORD kTranslateUtf16ToNotes = 23;

// Members of NSFNoteGetInfo.
inline constexpr WORD kNoteInfoOriginatorId = 2;  // OriginatorId
inline constexpr WORD kNoteInfoClass = 3;         // WORD

// Fields of NSFDbInfoParse.
inline constexpr WORD kInfoTitle = 0;
inline constexpr WORD kInfoCategories = 1;

// Type words of item values.
inline constexpr WORD kTypeComposite = 0x0001;
inline constexpr WORD kTypeNumber = 0x0300;
inline constexpr WORD kTypeNumberRange = 0x0301;
inline constexpr WORD kTypeTime = 0x0400;
inline constexpr WORD kTypeTimeRange = 0x0401;
inline constexpr WORD kTypeText = 0x0500;
inline constexpr WORD kTypeTextList = 0x0501;
inline constexpr WORD kTypeFormula = 0x0600;

// Kinds of ODSReadMemory and ODSLength.
inline constexpr WORD kViewTableFormat = 29;
inline constexpr WORD kViewColumnFormat = 30;

// Bit of the signal flags of NIFReadEntries: there is more to read.
inline constexpr WORD kSignalMoreToDo = 0x20;

// What the time part is of a date-time without one, and what an extraction gives for a missing
// part.
inline constexpr DWORD kNoTimePart = 0xFFFFFFFF;

// Word 0: hundredths of a second since midnight GMT, 0xFFFFFFFF without a time part. Word 1: low
// 24 bits Julian day number, 0xFFFFFF without a date part; top byte zone and daylight bits.
struct TIMEDATE {
  DWORD innards[2];
};

struct TIME {
  int year;
  int month;
  int day;
  int weekday;
  int hour;
  int minute;
  int second;
  int hundredth;
  int dst;
  int zone;
  TIMEDATE gm;
};

struct OriginatorId {
  DWORD file[2];
  DWORD note[2];
  DWORD sequence;
  TIMEDATE sequenceTime;
};

using DatabaseId = TIMEDATE;

struct ReplicaInfo {
  DatabaseId replicaId;
  WORD flags;
  WORD cutoffInterval;
  TIMEDATE cutoff;
};

// Conventions of the machine for numbers, dates and times.
struct IntlSettings {
  BYTE before[28];
  char decimalSeparator[112];  // Ended with NUL; other settings follow behind.
};

// Where a reading of a view's index stands: one tumbler a level.
struct CollectionPosition {
  WORD level;
  BYTE minLevel;
  BYTE maxLevel;
  DWORD tumbler[32];
};

// All sizes in kilobytes.
struct QuotaInfo {
  DWORD warningThreshold;
  DWORD sizeLimit;
  DWORD currentSize;
  DWORD maximumSize;
};

struct SearchMatch {
  DWORD databaseId[2];
  TIMEDATE noteTime;
  NOTEID noteId;
  OriginatorId originatorId;
  WORD noteClass;
  BYTE flags;
  BYTE privileges;
  WORD summaryLength;
};

// Head of a summary; name and value lengths, names and values follow.
struct ItemTable {
  WORD length;
  WORD itemCount;
};

struct BlockId {
  DHANDLE pool;
  WORD block;
};

static_assert(sizeof(TIMEDATE) == 8);
static_assert(sizeof(OriginatorId) == 28);
static_assert(sizeof(ReplicaInfo) == 20);
static_assert(sizeof(IntlSettings) == 140);
static_assert(sizeof(CollectionPosition) == 132);
static_assert(sizeof(QuotaInfo) == 16);
static_assert(offsetof(SearchMatch, noteId) == 16);
static_assert(offsetof(SearchMatch, originatorId) == 20);
static_assert(offsetof(SearchMatch, noteClass) == 48);
static_assert(offsetof(SearchMatch, summaryLength) == 52);
static_assert(sizeof(BlockId) == 8);

extern "C" {

using SearchCallback = STATUS(LARKSPAN_NOTES_CALL*)(void* context, SearchMatch* match,
                                                    ItemTable* summary);
using ItemCallback = STATUS(LARKSPAN_NOTES_CALL*)(WORD spare, WORD flags, char* name,
                                                  WORD nameLength, void* value, DWORD valueLength,
                                                  void* context);
using RecordCallback = STATUS(LARKSPAN_NOTES_CALL*)(char* record, WORD type, DWORD length,
                                                    void* context);
using DxlOutputCallback = void(LARKSPAN_NOTES_CALL*)(const BYTE* buffer, DWORD length,
                                                     void* context);

// Looked up by name at run time, since a library may lack them.
using SearchExtended3Function = STATUS(LARKSPAN_NOTES_CALL*)(
    DHANDLE database, DHANDLE formula, DHANDLE filter, DWORD filterFlags, char* viewTitle,
    DWORD searchFlags, DWORD searchFlags1, DWORD searchFlags2, DWORD searchFlags3,
    DWORD searchFlags4, WORD classMask, TIMEDATE* since, SearchCallback callback, void* context,
    TIMEDATE* until, DHANDLE namesList);
using PurgeCollectionFunction = STATUS(LARKSPAN_NOTES_CALL*)(DHANDLE viewDatabase,
                                                             DHANDLE dataDatabase, NOTEID view);

// Runtime, text, memory.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NotesInitExtended(int argc, char** argv);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL NotesTerm();
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL OSLoadString(DHANDLE module, STATUS code, char* out,
                                                           WORD size);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL OSTranslate(WORD mode, const char* in, WORD length,
                                                          char* out, WORD size);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL OSGetEnvironmentString(const char* name, char* out,
                                                                     WORD limit);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL OSGetIntlSettings(IntlSettings* settings, WORD size);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL OSMemAlloc(WORD type, DWORD size, DHANDLE* memory);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL OSMemFree(DHANDLE memory);
LARKSPAN_NOTES_ENTRY void* LARKSPAN_NOTES_CALL OSLockObject(DHANDLE memory);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL OSUnlockObject(DHANDLE memory);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL OSPathNetParse(const char* path, char* port,
                                                               char* server, char* file);

// Identity.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL SECKFMSwitchToIDFile(const char* idFile,
                                                                     const char* password,
                                                                     char* userName, WORD size,
                                                                     DWORD flags, void* reserved);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL SECKFMGetUserName(char* userName);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL SECKFMOpen(HKFC* keyFile, const char* idFile,
                                                           const char* password, DWORD options,
                                                           DWORD reserved1, void* reserved2);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL SECKFMClose(HKFC* keyFile, DWORD reserved1,
                                                            void* reserved2);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFNoteCipherDecrypt(DHANDLE note, HKFC keyFile,
                                                                     DWORD options, DHANDLE* key,
                                                                     DWORD reserved1,
                                                                     void* reserved2);

// Databases.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbOpen(const char* path, DHANDLE* database);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL
NSFDbOpenExtended(const char* path, WORD options, DHANDLE namesList, TIMEDATE* since,
                  DHANDLE* database, TIMEDATE* dataModified, TIMEDATE* otherModified);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbClose(DHANDLE database);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbPathGet(DHANDLE database, char* canonicalPath,
                                                             char* expandedPath);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbReplicaInfoGet(DHANDLE database,
                                                                    ReplicaInfo* info);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbIDGet(DHANDLE database, DatabaseId* id);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbInfoGet(DHANDLE database, char* info);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL NSFDbInfoParse(const char* info, WORD field,
                                                             char* out, WORD limit);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbModifiedTime(DHANDLE database, TIMEDATE* data,
                                                                  TIMEDATE* other);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbSpaceUsageScaled(DHANDLE database,
                                                                      DWORD* allocatedGranules,
                                                                      DWORD* freeGranules,
                                                                      DWORD* granuleBytes);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbQuotaGet(const char* path, QuotaInfo* quota);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFDbGetModifiedNoteTable(
    DHANDLE database, WORD classMask, TIMEDATE since, TIMEDATE* until, DHANDLE* table);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFSearch(DHANDLE database, DHANDLE formula,
                                                          char* viewTitle, WORD searchFlags,
                                                          WORD classMask, TIMEDATE* since,
                                                          SearchCallback callback, void* context,
                                                          TIMEDATE* until);

// ID tables.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL IDCreateTable(DWORD flags, DHANDLE* table);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL IDDestroyTable(DHANDLE table);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL IDInsert(DHANDLE table, NOTEID noteId,
                                                         BOOL* inserted);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL IDScan(DHANDLE table, BOOL first, NOTEID* noteId);
LARKSPAN_NOTES_ENTRY DWORD LARKSPAN_NOTES_CALL IDEntries(DHANDLE table);

// Notes and items.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFNoteOpen(DHANDLE database, NOTEID noteId,
                                                            WORD flags, DHANDLE* note);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFNoteClose(DHANDLE note);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL NSFNoteGetInfo(DHANDLE note, WORD member, void* out);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL NSFNoteIsSignedOrSealed(DHANDLE note, BOOL* isSigned,
                                                                      BOOL* isSealed);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL NSFItemGetText(DHANDLE note, const char* name,
                                                             char* out, WORD size);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFItemInfo(DHANDLE note, const char* name,
                                                            WORD nameLength, BlockId* item,
                                                            WORD* type, BlockId* value,
                                                            DWORD* valueLength);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFItemInfoNext(DHANDLE note, BlockId previous,
                                                                const char* name, WORD nameLength,
                                                                BlockId* item, WORD* type,
                                                                BlockId* value, DWORD* valueLength);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFItemScan(DHANDLE note, ItemCallback callback,
                                                            void* context);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NSFItemDelete(DHANDLE note, const char* name,
                                                              WORD nameLength);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntries(DHANDLE note,
                                                                        const char* name);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntry(DHANDLE note,
                                                                      const char* name, WORD index,
                                                                      char* out, WORD size);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL EnumCompositeBuffer(BlockId value, DWORD length,
                                                                    RecordCallback callback,
                                                                    void* context);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL ODSReadMemory(void** source, WORD kind, void* out,
                                                            WORD count);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL ODSLength(WORD kind);
LARKSPAN_NOTES_ENTRY int LARKSPAN_NOTES_CALL IntlTextCompare(const char* text1, WORD length1,
                                                             const char* text2, WORD length2,
                                                             WORD options);

// DXL exporters.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL DXLCreateExporter(DHANDLE* exporter);
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL DXLDeleteExporter(DHANDLE exporter);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL DXLSetExporterProperty(DHANDLE exporter,
                                                                       int property, void* value);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL DXLExportNote(DHANDLE exporter,
                                                              DxlOutputCallback output,
                                                              DHANDLE note, void* context);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL DXLExportACL(DHANDLE exporter,
                                                             DxlOutputCallback output,
                                                             DHANDLE database, void* context);

// Collections.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL
NIFOpenCollection(DHANDLE viewDatabase, DHANDLE dataDatabase, NOTEID view, WORD flags,
                  DHANDLE unreadList, HCOLLECTION* collection, DHANDLE* viewNote, void* viewUnid,
                  DHANDLE* collapsed, DHANDLE* selected);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NIFCloseCollection(HCOLLECTION collection);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NIFReadEntries(
    HCOLLECTION collection, CollectionPosition* position, WORD skipNavigator, DWORD skipCount,
    WORD returnNavigator, DWORD returnCount, DWORD mask, DHANDLE* buffer, WORD* bufferLength,
    DWORD* skipped, DWORD* returned, WORD* signalFlags);

// Values. A list begins with its type word or not, as the flag says.
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL NSFLocateSummaryValue(ItemTable* summary,
                                                                    const char* name, void** value,
                                                                    WORD* length, WORD* type);
LARKSPAN_NOTES_ENTRY WORD LARKSPAN_NOTES_CALL ListGetNumEntries(const void* list, BOOL hasTypeWord);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL ListGetText(const void* list, BOOL hasTypeWord,
                                                            WORD index, char** text, WORD* length);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL ConvertFLOATToText(const IntlSettings* settings,
                                                                   const void* format,
                                                                   const double* number, char* out,
                                                                   WORD size, WORD* length);

// Time. TRUE is failure.
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL TimeConstant(WORD which, TIMEDATE* time);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL TimeGMToLocalZone(TIME* time);
LARKSPAN_NOTES_ENTRY BOOL LARKSPAN_NOTES_CALL TimeLocalToGM(TIME* time);
LARKSPAN_NOTES_ENTRY DWORD LARKSPAN_NOTES_CALL TimeExtractJulianDate(const TIMEDATE* time);
LARKSPAN_NOTES_ENTRY DWORD LARKSPAN_NOTES_CALL TimeExtractTicks(const TIMEDATE* time);

// Directory. Lists of names, name spaces or items are texts one after another, each ended with NUL.
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NAMELookup(const char* server, WORD flags,
                                                           WORD nameSpaceCount,
                                                           const char* nameSpaces, WORD nameCount,
                                                           const char* names, WORD itemCount,
                                                           const char* items, DHANDLE* result);
LARKSPAN_NOTES_ENTRY void* LARKSPAN_NOTES_CALL NAMELocateNextName(void* result, void* previousName,
                                                                  WORD* matches);
LARKSPAN_NOTES_ENTRY void* LARKSPAN_NOTES_CALL NAMELocateNextMatch(void* result, void* name,
                                                                   void* previousMatch);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NAMEGetTextItem(void* match, WORD item, WORD member,
                                                                char* out, WORD limit);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL DNAbbreviate(DWORD flags, const char* nameTemplate,
                                                             const char* name, char* out,
                                                             WORD limit, WORD* length);

#ifdef LARKSPAN_NOTES_IMPLEMENTATION
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL
NSFSearchExtended3(DHANDLE database, DHANDLE formula, DHANDLE filter, DWORD filterFlags,
                   char* viewTitle, DWORD searchFlags, DWORD searchFlags1, DWORD searchFlags2,
                   DWORD searchFlags3, DWORD searchFlags4, WORD classMask, TIMEDATE* since,
                   SearchCallback callback, void* context, TIMEDATE* until, DHANDLE namesList);
LARKSPAN_NOTES_ENTRY STATUS LARKSPAN_NOTES_CALL NIFPurgeCollection(DHANDLE viewDatabase,
                                                                   DHANDLE dataDatabase,
                                                                   NOTEID view);
#endif

}  // extern "C"

}  // namespace larkspan::notes_api
