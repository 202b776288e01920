#include "tests/torture/ServersModel.h"

#include <sstream>
#include <stdexcept>

#include "base/Utf8.h"
#include "notes/NotesApi.h"
#include "tests/support/StandinLibrary.h"
#include "tests/torture/Listing.h"

namespace larkspan::torture {

namespace {

using namespace notes_api;

void Need(bool isGiven, const char* what) {
  if (!isGiven) throw std::runtime_error(std::string("the model has no ") + what);
}

std::string MailServer() {
  const std::string line = kListingConfiguration;
  return line.substr(line.find('=') + 1);
}

// "CN=Mill/O=Example" is listed as "Mill/Example".
std::string Abbreviated(const std::string& name) {
  std::string abbreviated;
  std::istringstream components(name);
  for (std::string component; std::getline(components, component, '/');) {
    if (!abbreviated.empty()) abbreviated += '/';
    abbreviated += component.substr(component.find('=') + 1);
  }
  return abbreviated;
}

// In UTF-8.
std::string TextOf(void* match, WORD item) {
  constexpr WORD kLimit = 255;
  char text[kLimit + 1]{};
  char utf8[3 * kLimit];
  Need(NAMEGetTextItem(match, item, 0, text, kLimit) == 0, "text");
  const std::string name = text;
  const WORD bytes = OSTranslate(kTranslateNotesToUtf8, name.data(), static_cast<WORD>(name.size()),
                                 utf8, sizeof utf8);
  return std::string(utf8, bytes);
}

void StartRuntime(const std::wstring& configurationArgument) {
  ResetStandin();
  std::string program = "model";
  std::string configuration = WideToUtf8(configurationArgument);
  char* arguments[] = {program.data(), configuration.data(), nullptr};
  Need(NotesInitExtended(2, arguments) == 0, "runtime");
}

DHANDLE LookUp(const char* server, const char* view, std::string item) {
  DHANDLE result = 0;
  item.push_back('\0');  // Behind it, an item without a name.
  Need(NAMELookup(server, 1, 1, view, 1, "", 2, item.c_str(), &result) == 0, "address book");
  return result;
}

// Counts the calls of the entry point that fails.
class Calls {
 public:
  explicit Calls(const FaultCase& fault) : fault_(fault) {}

  // Makes one call. Whether it fails.
  bool Fails(const std::string& entry) {
    if (entry != fault_.entry) return false;
    ++calls_;
    return fault_.andAllLater ? calls_ >= fault_.call : calls_ == fault_.call;
  }

 private:
  const FaultCase& fault_;
  int calls_ = 0;
};

}  // namespace

ServersModel::ServersModel(const std::wstring& configurationArgument) {
  StartRuntime(configurationArgument);
  const std::string mailServer = MailServer();
  for (const DHANDLE result : {LookUp(nullptr, "$Connections", "Destination"),
                               LookUp(mailServer.c_str(), "($Servers)", "ServerName")}) {
    std::vector<Match>& book = books_.emplace_back();
    void* const locked = OSLockObject(result);
    WORD matches = 0;
    void* const name = NAMELocateNextName(locked, nullptr, &matches);
    void* match = nullptr;
    for (WORD i = 0; i < matches; ++i) {
      match = NAMELocateNextMatch(locked, name, match);
      book.push_back({Abbreviated(TextOf(match, 0)), Abbreviated(TextOf(match, 1))});
    }
  }
  ResetStandin();
}

std::set<std::string> ServersModel::ServersWith(const FaultCase& fault) const {
  std::set<std::string> servers = {Abbreviated(MailServer())};
  Calls calls(fault);
  for (const std::vector<Match>& book : books_) {
    if (calls.Fails("NAMELocateNextName")) continue;
    for (const Match& match : book) {
      if (calls.Fails("NAMELocateNextMatch")) break;
      for (const std::string& text : match) {
        if (!calls.Fails("NAMEGetTextItem") && !text.empty()) servers.insert(text);
      }
    }
  }
  return servers;
}

}  // namespace larkspan::torture
