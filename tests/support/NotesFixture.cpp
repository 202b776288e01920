#include "tests/support/NotesFixture.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "notes/Database.h"
#include "notes/Notes.h"
#include "notes/Runtime.h"
#include "tests/support/FileBytes.h"
#include "tests/support/StandinLibrary.h"

namespace larkspan {

namespace {

using nlohmann::json;

json Ledger() { return json::parse(StandinLedger()); }

}  // namespace

// The library is told its configuration in the ANSI code page, which lacks letters of the folder's
// name, so the configuration is named as it is seen from that folder.
NotesFixture::NotesFixture() : previousFolder_(std::filesystem::current_path().wstring()) {
  ResetStandin();
  std::filesystem::current_path(dataFolder_.path());
  ChangeSettings([](Settings& settings) { settings.programPath = L"larkspan.exe"; });
}

NotesFixture::~NotesFixture() {
  EXPECT_EQ(LeftOpen(), kNothingOpen);
  EndNotesRuntime();
  ResetStandin();
  std::filesystem::current_path(previousFolder_);
}

void NotesFixture::WriteData(const std::wstring& name, std::string_view bytes) const {
  const std::filesystem::path path(dataFolder_ / (L"\\" + name));
  std::filesystem::create_directories(path.parent_path());
  WriteBytes(path.wstring(), bytes);
}

void NotesFixture::AddConfiguration(const std::string& line) { configuration_ += line + "\n"; }

void NotesFixture::Configure() {
  WriteData(L"notes.ini", "StandinTrace=1\n" + configuration_);
  ChangeSettings([](Settings& settings) { settings.runtimeArguments = {L"=notes.ini"}; });
}

void NotesFixture::Start() {
  Configure();
  const Settings& settings = ProcessSettings();
  if (!StartNotesRuntime(settings.programPath, settings.runtimeArguments).ok()) {
    throw std::runtime_error("the runtime does not start");
  }
}

Database NotesFixture::OpenTestDatabase() {
  Database database;
  if (!OpenDatabase("test.nsf", database).ok()) throw std::runtime_error("no test database");
  return database;
}

Note NotesFixture::OpenTestNote(const Database& database, std::uint32_t noteId) {
  Note note;
  if (!OpenNote(database, noteId, note).ok()) throw std::runtime_error("no such note");
  return note;
}

void NotesFixture::SetFaults(const std::string& plan) { SetStandinFaults(plan); }

int NotesFixture::Calls(const std::string& entry) {
  const json ledger = Ledger();
  return ledger.value("calls", json::object()).value(entry, 0);
}

std::string NotesFixture::Arguments(const std::string& entry) {
  const json arguments = Ledger().value("arguments", json::object());
  return arguments.contains(entry) ? arguments.at(entry).dump() : std::string();
}

std::vector<std::string> NotesFixture::Order(const std::vector<std::string>& entries) {
  auto order = Ledger().at("order").get<std::vector<std::string>>();
  std::erase_if(order, [&](const std::string& entry) {
    return std::find(entries.begin(), entries.end(), entry) == entries.end();
  });
  return order;
}

std::string NotesFixture::LeftOpen() {
  json open = json::object();
  const json counts = Ledger().value("open", json::object());
  for (const auto& [kind, count] : counts.items()) {
    if (count != 0) open[kind] = count;
  }
  return open.dump();
}

}  // namespace larkspan
