#include "tests/support/standin/StandinTest.h"

#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

#include "standin/StandinHooks.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace larkspan::standin_test {

namespace {

#ifdef _WIN32

LONG WINAPI EndAtOnce(EXCEPTION_POINTERS* pointers) {
  TerminateProcess(GetCurrentProcess(), pointers->ExceptionRecord->ExceptionCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

// A crash that a test wants must not start a debugger.
void CrashWithoutADebugger() { SetUnhandledExceptionFilter(EndAtOnce); }

#else

void CrashWithoutADebugger() {}

#endif

std::filesystem::path FreshFolder() {
  std::random_device random;
  return std::filesystem::temp_directory_path() /
         ("standin-" + std::to_string(random()) + "-" + std::to_string(random()));
}

std::filesystem::path FromUtf8(const std::string& name) {
  return std::u8string(name.begin(), name.end());
}

STATUS StartWithIni(const std::filesystem::path& ini) {
  std::string program = "test";
  std::string argument = "=" + ini.string();
  char* arguments[] = {program.data(), argument.data()};
  return NotesInitExtended(2, arguments);
}

std::string Translate(WORD mode, const void* in, std::size_t length) {
  std::string out(65535, '\0');
  out.resize(OSTranslate(mode, static_cast<const char*>(in), static_cast<WORD>(length), out.data(),
                         static_cast<WORD>(out.size())));
  return out;
}

void LARKSPAN_NOTES_CALL Collect(const BYTE* buffer, DWORD length, void* context) {
  auto* const exported = static_cast<Exported*>(context);
  exported->dxl.append(reinterpret_cast<const char*>(buffer), length);
  exported->chunks.push_back(length);
}

}  // namespace

StandinTest::StandinTest() : folder_(FreshFolder()) {
  CrashWithoutADebugger();
  StandinReset();
  std::filesystem::create_directories(folder_);
}

StandinTest::~StandinTest() {
  StandinReset();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void StandinTest::WriteFile(const std::string& name, std::string_view text) const {
  const std::filesystem::path file = folder_ / FromUtf8(name);
  std::filesystem::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

std::string StandinTest::ReadFile(const std::string& name) const {
  std::stringstream text;
  text << std::ifstream(folder_ / FromUtf8(name), std::ios::binary).rdbuf();
  return text.str();
}

STATUS StandinTest::TryStart(const std::string& iniLines) const {
  WriteFile("notes.ini", "Directory=.\n" + iniLines);
  return StartWithIni(folder_ / "notes.ini");
}

void StandinTest::Start(const std::string& iniLines) const { ASSERT_EQ(TryStart(iniLines), 0); }

void StandinTest::StartWithSamples() {
  ASSERT_EQ(StartWithIni(std::filesystem::path(LARKSPAN_SAMPLES) / "notes.ini"), 0);
}

// The library reads a file only once in a runtime, so a second database needs another name.
DHANDLE StandinTest::OpenDatabase(std::string_view json) {
  const std::string name = database_ == 0 ? "test.nsf" : std::to_string(database_) + ".nsf";
  WriteFile(name, json);
  if (!std::filesystem::exists(folder_ / "notes.ini")) Start();
  EXPECT_EQ(NSFDbOpen(name.c_str(), &database_), 0);
  return database_;
}

DHANDLE StandinTest::OpenNote(NOTEID id) const {
  DHANDLE note = 0;
  EXPECT_EQ(NSFNoteOpen(database_, id, 0, &note), 0);
  return note;
}

std::string DocumentWith(const std::string& items) {
  return R"({"notes": [{"id": "0000090A", "items": [)" + items + "]}]}";
}

std::string ToNotes(std::u16string_view text) {
  return Translate(kTranslateUtf16ToNotes, text.data(), text.size() * 2);
}

std::string ToNotes(std::string_view utf8) {
  return ToNotes(std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).u16string());
}

std::string ToUtf8(std::string_view notes) {
  return Translate(kTranslateNotesToUtf8, notes.data(), notes.size());
}

Exported Export(DHANDLE note, const std::vector<Property>& properties) {
  Exported exported;
  DHANDLE exporter = 0;
  EXPECT_EQ(DXLCreateExporter(&exporter), 0);
  for (Property property : properties) {
    EXPECT_EQ(DXLSetExporterProperty(exporter, property.number, &property.value), 0);
  }
  exported.status = DXLExportNote(exporter, Collect, note, &exported);
  DXLDeleteExporter(exporter);
  return exported;
}

DHANDLE MakeNamesList(const std::string& name, DWORD authentication) {
  DHANDLE list = 0;
  EXPECT_EQ(OSMemAlloc(0, static_cast<DWORD>(name.size() + 17), &list), 0);
  auto* const bytes = static_cast<char*>(OSLockObject(list));
  const WORD count = 1;
  std::memcpy(bytes, &count, sizeof count);
  std::memset(bytes + 2, 0, 8);
  std::memcpy(bytes + 12, &authentication, sizeof authentication);
  std::memcpy(bytes + 16, name.c_str(), name.size() + 1);
  OSUnlockObject(list);
  return list;
}

nlohmann::json RecordedArguments(const std::string& entry) {
  return nlohmann::json::parse(StandinLedgerJson())["arguments"][entry];
}

}  // namespace larkspan::standin_test
