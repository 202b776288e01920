// The entry point that looks names up in address books.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/AddressBook.h"
#include "standin/Buffers.h"
#include "standin/CharacterSet.h"
#include "standin/LookupResult.h"
#include "standin/Paths.h"
#include "standin/ReadOrReport.h"
#include "standin/Scrambler.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr WORD kLookupFlags = 1;

// What the caller wants of whom.
struct Wanted {
  std::optional<std::string> server;
  std::vector<std::string> nameSpaces;
  std::vector<std::string> names;
  std::vector<std::string> items;
};

// Texts one after another, each ended with NUL.
std::vector<std::string> ReadTexts(const char* list, WORD count) {
  std::vector<std::string> texts;
  for (WORD i = 0; i < count; ++i) {
    texts.emplace_back(RequireText(list, kNameSize));
    list += texts.back().size() + 1;
  }
  return texts;
}

nlohmann::json RecordedTexts(const std::vector<std::string>& texts) {
  nlohmann::json recorded = nlohmann::json::array();
  for (const std::string& text : texts) recorded.push_back(NotesToUtf8(text));
  return recorded;
}

void Record(Runtime& runtime, WORD flags, const Wanted& wanted) {
  nlohmann::json server;
  if (wanted.server) server = NotesToUtf8(*wanted.server);
  runtime.ledger.RecordNext("NAMELookup", {{"server", server},
                                           {"flags", flags},
                                           {"nameSpaces", RecordedTexts(wanted.nameSpaces)},
                                           {"names", RecordedTexts(wanted.names)},
                                           {"items", RecordedTexts(wanted.items)}});
}

// Programs look up all that a name space has, by an empty name, and of it one item and an empty
// one.
void RequireEverything(const Wanted& wanted) {
  Require(wanted.names[0].empty(), "the name is not empty");
  Require(!wanted.items[0].empty() && wanted.items[1].empty(),
          "the items are not one name and an empty one");
}

std::shared_ptr<AddressBook> ReadBook(const std::filesystem::path& file) {
  return std::make_shared<AddressBook>(ReadAddressBook(file));
}

// Without a server it is that of this machine, as with an empty name of one.
STATUS FindBook(const Runtime& runtime, const std::string& server,
                std::shared_ptr<AddressBook>* book) {
  const std::filesystem::path folder = ServerFolder(runtime.dataFolder, server);
  const std::filesystem::path file = folder / "names.json";
  std::error_code ignored;
  if (!std::filesystem::is_directory(folder, ignored)) return kNoServer;
  if (!std::filesystem::is_regular_file(file, ignored)) return kNoAddressBook;
  *book = ReadOrReport(file, ReadBook);
  return *book == nullptr ? kDatabaseDamaged : kSuccess;
}

LookupMatch MatchOf(const BookEntry& entry, const std::vector<std::string>& items) {
  LookupMatch match;
  for (std::size_t i = 0; i < kLookupItems; ++i) {
    const auto found = entry.find(items[i]);
    if (found != entry.end()) match[i] = found->second;
  }
  return match;
}

std::vector<LookupMatch> MatchesOf(const std::vector<BookEntry>& entries,
                                   const std::vector<std::string>& items) {
  const Scrambler order(entries.size());
  std::vector<LookupMatch> matches;
  for (std::size_t turn = 0; turn < entries.size(); ++turn) {
    matches.push_back(MatchOf(entries[order.At(turn)], items));
  }
  return matches;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NAMELookup(const char* server, WORD flags, WORD nameSpaceCount,
                                      const char* nameSpaces, WORD nameCount, const char* names,
                                      WORD itemCount, const char* items, DHANDLE* result) {
  const Call call("NAMELookup", {.item = PeekText(items, kNameSize)});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  Require(result != nullptr, "there is no place for the result");
  Require(flags == kLookupFlags, "unknown flags");
  Require(nameSpaceCount == 1, "only one name space can be looked up");
  Require(nameCount == 1, "only one name can be looked up");
  Require(itemCount == kLookupItems, "only two items can be looked up");
  Wanted wanted = {{},
                   ReadTexts(nameSpaces, nameSpaceCount),
                   ReadTexts(names, nameCount),
                   ReadTexts(items, itemCount)};
  if (server != nullptr) wanted.server = RequireText(server, kNameSize);
  Record(runtime, flags, wanted);
  RequireEverything(wanted);
  std::shared_ptr<AddressBook> book;
  const STATUS status = FindBook(runtime, wanted.server.value_or(""), &book);
  if (status != kSuccess) return status;
  const auto found = book->find(wanted.nameSpaces[0]);
  if (found == book->end()) return kNoNameSpace;
  *result = runtime.memory.Add(MakeLookupResult(MatchesOf(found->second, wanted.items)));
  return kSuccess;
}

}  // namespace larkspan::notes_api
