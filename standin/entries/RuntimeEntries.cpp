// Entry points that start and end the runtime.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/CharacterSet.h"
#include "standin/Platform.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

nlohmann::json RecordedArguments(int argc, char** argv) {
  nlohmann::json arguments = nlohmann::json::array();
  for (int i = 0; i < argc; ++i) {
    const char* const argument = argv[i] == nullptr ? "" : argv[i];
    arguments.push_back(Utf16ToUtf8(ArgumentToUtf16(argument)));
  }
  return {{"argc", argc}, {"argv", arguments}};
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NotesInitExtended(int argc, char** argv) {
  Call call("NotesInitExtended", {}, Allowed::kToStart);
  Runtime& runtime = call.runtime();
  Require(!runtime.isStarted, "the runtime is started already");
  Require(argc >= 0 && (argc == 0 || argv != nullptr), "the arguments are missing");
  runtime.ledger.RecordLast("NotesInitExtended", RecordedArguments(argc, argv));
  const auto ini = NotesIni::Find(argc, argv);
  if (!ini) return kNotesIniNotFound;
  runtime.Configure(*ini);
  call.StrikeNow({});
  if (call.stops()) return call.status();
  runtime.thread = std::this_thread::get_id();
  runtime.isStarted = true;
  return kSuccess;
}

void LARKSPAN_NOTES_CALL NotesTerm() {
  // A program whose own thread has crashed ends the runtime from another one.
  const Call call("NotesTerm", {}, Allowed::kFromAnyThread);
  EndRuntime();
}

// The limit counts the text alone. Without such a variable the place stays as it is.
BOOL LARKSPAN_NOTES_CALL OSGetEnvironmentString(const char* name, char* out, WORD limit) {
  const Call call("OSGetEnvironmentString", {.item = PeekText(name, kTextSize)});
  if (call.stops()) return 0;
  const std::string key = NotesToUtf8(RequireText(name, kTextSize));
  call.runtime().ledger.RecordLast("OSGetEnvironmentString", {{"name", key}, {"limit", limit}});
  Require(out != nullptr, "there is no place for the text");
  const std::optional<std::string> value = call.runtime().ini.Variable(key);
  if (!value) return 0;
  WriteTextWithNul(Utf8ToNotes(*value), out, std::size_t{limit} + 1);
  return 1;
}

}  // namespace larkspan::notes_api
