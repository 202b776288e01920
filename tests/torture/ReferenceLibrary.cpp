#include "tests/torture/ReferenceLibrary.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "base/Utf8.h"
#include "tests/support/StandinLibrary.h"

namespace larkspan::torture {

namespace {

using namespace notes_api;

void Need(STATUS status, const char* what) {
  if (status != 0) throw std::runtime_error(std::string("the reference cannot ") + what);
}

// The texts of the subjects are ASCII, which is the same in every character set.
std::string Narrow(const std::wstring& text) { return WideToUtf8(text); }

struct Setting {
  int property;
  int value;  // -1: the text that stands for a picture.
};

constexpr int kPictureText = -1;
char pictureText[] =
    "<run><font size='9pt' color='#CCCCCC' />&lt;Picture removed by Brevink Export&gt;</run>";

std::vector<Setting> SettingsOf(int exporter, bool archive) {
  if (exporter == kRaw) return {{30, 1}, {6, 1}};
  const bool withoutImages = exporter == kNoImages || exporter == kNoImagesNoConvert || !archive;
  const bool convert = exporter == kNoImages || (exporter == kNormal && archive);
  const int plain = archive ? 0 : 1;
  std::vector<Setting> settings = {{3, 0}, {38, plain}, {37, plain}, {36, plain}};
  settings.push_back({39, withoutImages ? 1 : 0});
  if (withoutImages) settings.push_back({14, kPictureText});
  settings.push_back({35, convert ? 1 : 0});
  return settings;
}

extern "C" STATUS LARKSPAN_NOTES_CALL TakeMatch(void* context, SearchMatch* match, ItemTable*) {
  constexpr WORD kStub = 0x8000;
  if ((match->noteClass & kStub) == 0) {
    static_cast<std::vector<NOTEID>*>(context)->push_back(match->noteId);
  }
  return 0;
}

extern "C" void LARKSPAN_NOTES_CALL TakeText(const BYTE* buffer, DWORD length, void* context) {
  static_cast<std::string*>(context)->append(reinterpret_cast<const char*>(buffer), length);
}

// Line ends are those of a text file.
std::string AsOnDisk(const std::string& text) {
  std::string bytes;
  for (const char character : text) {
    if (character == '\n') bytes += '\r';
    bytes += character;
  }
  return bytes;
}

}  // namespace

ReferenceLibrary::ReferenceLibrary(const ExportStage& stage, RefusedSettings refused)
    : stage_(stage) {
  StartRuntime();
  OpenDatabase();
  MakeExporters(refused);
}

ReferenceLibrary::~ReferenceLibrary() { ResetStandin(); }

void ReferenceLibrary::StartRuntime() {
  ResetStandin();
  std::string program = "reference";
  std::string configuration = Narrow(stage_.ConfigurationArgument());
  char* arguments[] = {program.data(), configuration.data(), nullptr};
  Need(NotesInitExtended(2, arguments), "start the runtime");
  char userName[257]{};
  Need(SECKFMSwitchToIDFile(Narrow(IdFileOf(stage_.subject())).c_str(), Narrow(kPassword).c_str(),
                            userName, 256, 8, nullptr),
       "switch to the ID file");
}

void ReferenceLibrary::OpenDatabase() {
  Need(NSFDbOpen(Narrow(stage_.subject().database).c_str(), &database_), "open the database");
  SetStandinFaults(kNoFaults);  // Those of the database have joined the plan by now.
}

void ReferenceLibrary::MakeExporters(RefusedSettings refused) {
  int call = 0;
  for (int exporter = kNormal; exporter <= kRaw; ++exporter) {
    DHANDLE handle = 0;
    Need(DXLCreateExporter(&handle), "create an exporter");
    exporters_.push_back(handle);
    for (const Setting& setting : SettingsOf(exporter, stage_.subject().archive)) {
      ++call;
      if (refused.first != 0 && call >= refused.first && call <= refused.last) continue;
      int value = setting.value;
      void* const address =
          setting.value == kPictureText ? static_cast<void*>(pictureText) : &value;
      Need(DXLSetExporterProperty(handle, setting.property, address), "set a property");
    }
  }
}

std::vector<NOTEID> ReferenceLibrary::Search(std::uint16_t classMask) {
  const auto search = LibraryFunction<SearchExtended3Function>("NSFSearchExtended3");
  std::vector<NOTEID> found;
  TIMEDATE since{};
  Need(search(database_, 0, 0, 0, nullptr, 0x10, 0, 0, 0, 0, classMask, &since, TakeMatch, &found,
              nullptr, 0),
       "search");
  std::sort(found.begin(), found.end());
  return found;
}

DHANDLE ReferenceLibrary::Open(NOTEID noteId) {
  DHANDLE note = 0;
  Need(NSFNoteOpen(database_, noteId, 0, &note), "open a note");
  return note;
}

std::string ReferenceLibrary::AclText() {
  std::string text;
  Need(DXLExportACL(exporters_[kNormal - 1], TakeText, database_, &text), "export the list");
  return AsOnDisk(text);
}

std::string ReferenceLibrary::NoteText(int exporter, DHANDLE note) {
  std::string text;
  Need(DXLExportNote(exporters_[static_cast<std::size_t>(exporter - 1)], TakeText, note, &text),
       "export a note");
  return AsOnDisk(text);
}

bool ReferenceLibrary::IsSealed(DHANDLE note) {
  BOOL isSigned = 0;
  BOOL isSealed = 0;
  NSFNoteIsSignedOrSealed(note, &isSigned, &isSealed);
  return isSealed != 0;
}

bool ReferenceLibrary::MakeReadable(DHANDLE note) {
  if (!IsSealed(note)) return true;
  HKFC file = nullptr;
  Need(SECKFMOpen(&file, Narrow(IdFileOf(stage_.subject())).c_str(), Narrow(kPassword).c_str(), 1,
                  0, nullptr),
       "open the ID file");
  const STATUS status = NSFNoteCipherDecrypt(note, file, 1, nullptr, 0, nullptr);
  Need(SECKFMClose(&file, 0, nullptr), "close the ID file");
  return status == 0;
}

}  // namespace larkspan::torture
