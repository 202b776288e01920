// Looking names up in address books.
#include <algorithm>

#include "standin/StandinHooks.h"
#include "tests/standin/LookupArguments.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kNoServer = 586;
constexpr STATUS kNoBook = 588;
constexpr STATUS kNoNameSpace = 590;
constexpr STATUS kDamagedBook = 554;
constexpr WORD kMatchLimit = 255;

using TextList = std::vector<std::string>;
using Match = std::pair<std::string, std::string>;

class Lookups : public StandinTest {
 protected:
  Lookups() { Start(); }

  void WriteBook(const std::string& folder, const std::string& servers) const {
    WriteFile(folder + "names.json", R"j({"($Servers)": [)j" + servers + "]}");
  }

  static STATUS StatusOf(const char* server) {
    LookupArguments arguments;
    arguments.server = server;
    const STATUS status = LookUp(&arguments);
    EXPECT_EQ(arguments.result != 0, status == 0);
    return status;
  }

  static std::string Text(void* match, WORD item, WORD limit = kMatchLimit) {
    std::string out(limit + 2U, '#');
    EXPECT_EQ(NAMEGetTextItem(match, item, 0, out.data(), limit), 0);
    EXPECT_EQ(out.back(), '#');
    return out.c_str();
  }

  // The result of a lookup in the local book, locked; it stays until the runtime ends.
  static void* LockedResult() {
    LookupArguments arguments;
    EXPECT_EQ(LookUp(&arguments), 0);
    return OSLockObject(arguments.result);
  }

  // Every match with its two texts.
  static std::vector<Match> Matches(const char* server = nullptr) {
    LookupArguments arguments;
    arguments.server = server;
    EXPECT_EQ(LookUp(&arguments), 0);
    void* const result = OSLockObject(arguments.result);
    std::vector<Match> matches;
    WORD count = 0;
    void* const name = NAMELocateNextName(result, nullptr, &count);
    EXPECT_NE(name, nullptr);
    void* match = nullptr;
    while ((match = NAMELocateNextMatch(result, name, match)) != nullptr) {
      matches.emplace_back(Text(match, 0), Text(match, 1));
    }
    EXPECT_EQ(matches.size(), count);
    OSUnlockObject(arguments.result);
    EXPECT_EQ(OSMemFree(arguments.result), 0);
    return matches;
  }
};

}  // namespace

TEST_F(Lookups, FindTheEntriesOfTheLocalBookAndOfThoseOfServers) {
  WriteBook("", R"({"ServerName": "Here"})");
  WriteBook("servers/Garden/", R"({"ServerName": "There"})");
  WriteBook("servers/CN=Mill/O=Example/", R"({"ServerName": "Elsewhere"})");
  EXPECT_EQ(Matches(), (std::vector<Match>{{"Here", ""}}));
  EXPECT_EQ(Matches(""), (std::vector<Match>{{"Here", ""}}));
  EXPECT_EQ(Matches("Garden"), (std::vector<Match>{{"There", ""}}));
  EXPECT_EQ(Matches("CN=Mill/O=Example"), (std::vector<Match>{{"Elsewhere", ""}}));
}

TEST_F(Lookups, GiveBothItemsAndNothingForWhatIsMissing) {
  WriteBook("", R"({"ServerName": "Mühle", "": "second"})");
  EXPECT_EQ(Matches(), (std::vector<Match>{{ToNotes(std::u16string_view(u"Mühle")), "second"}}));
  WriteBook("", R"({"": "second"})");
  EXPECT_EQ(Matches(), (std::vector<Match>{{"", "second"}}));
  WriteBook("", R"({"ServerName": null, "Other": "text"})");
  EXPECT_EQ(Matches(), (std::vector<Match>{{"", ""}}));
}

TEST_F(Lookups, GiveEveryEntryInNoHelpfulOrderButAlwaysInTheSame) {
  std::string servers;
  std::vector<Match> sorted;
  for (char name = 'A'; name <= 'J'; ++name) {
    servers += std::string(servers.empty() ? "" : ",") + R"({"ServerName": ")" + name + R"("})";
    sorted.emplace_back(std::string(1, name), "");
  }
  WriteBook("", servers);
  std::vector<Match> matches = Matches();
  EXPECT_EQ(Matches(), matches);
  EXPECT_FALSE(std::is_sorted(matches.begin(), matches.end()));
  EXPECT_FALSE(std::is_sorted(matches.rbegin(), matches.rend()));
  std::sort(matches.begin(), matches.end());
  EXPECT_EQ(matches, sorted);
}

TEST_F(Lookups, MayFindNothing) {
  WriteBook("", "");
  EXPECT_TRUE(Matches().empty());
}

TEST_F(Lookups, FailWithoutAServerABookOrANameSpace) {
  EXPECT_EQ(StatusOf(nullptr), kNoBook);
  EXPECT_EQ(StatusOf("Garden"), kNoServer);
  WriteFile("servers/Garden/a.nsf", "{}");
  EXPECT_EQ(StatusOf("Garden"), kNoBook);
  WriteFile("servers/Garden/names.json", R"({"$Connections": []})");
  EXPECT_EQ(StatusOf("Garden"), kNoNameSpace);
  WriteFile("servers/Garden/names.json", R"j({"comment": "none", "($Servers)": []})j");
  EXPECT_EQ(StatusOf("Garden"), 0);
}

TEST_F(Lookups, FailWhenTheBookMakesNoSense) {
  for (const char* json :
       {"no JSON", R"j({"($Servers)": [{"ServerName": 5}]})j", R"j({"($Servers)": [5]})j",
        R"j({"($Servers)": {"ServerName": "A"}})j", R"j({"($Servers)": 5})j", "[]"}) {
    WriteFile("names.json", json);
    EXPECT_EQ(StatusOf(nullptr), kDamagedBook) << json;
  }
}

TEST_F(Lookups, CutTextsAtTheLimitAndEndThemBehindIt) {
  WriteBook("", R"({"ServerName": "Garden"})");
  void* const result = LockedResult();
  WORD count = 0;
  void* const name = NAMELocateNextName(result, nullptr, &count);
  void* const match = NAMELocateNextMatch(result, name, nullptr);
  EXPECT_EQ(Text(match, 0, 6), "Garden");
  EXPECT_EQ(Text(match, 0, 5), "Garde");
  EXPECT_EQ(Text(match, 0, 0), "");
}

TEST_F(Lookups, AreOfOneName) {
  WriteBook("", R"({"ServerName": "A"})");
  void* const result = LockedResult();
  WORD count = 0;
  void* const name = NAMELocateNextName(result, nullptr, &count);
  EXPECT_EQ(NAMELocateNextName(result, name, &count), nullptr);
}

TEST_F(Lookups, CountAsMemoryInTheLedger) {
  WriteBook("", "");
  EXPECT_EQ(StatusOf(nullptr), 0);
  const nlohmann::json open = nlohmann::json::parse(StandinLedgerJson())["open"];
  EXPECT_EQ(open["memory"], 1);
}

TEST_F(Lookups, AreRecordedOneAfterAnother) {
  WriteBook("", "");
  StatusOf(nullptr);
  StatusOf("Garden");
  EXPECT_EQ(RecordedArguments("NAMELookup"), nlohmann::json({{{"server", nullptr},
                                                              {"flags", 1},
                                                              {"nameSpaces", {"($Servers)"}},
                                                              {"names", {""}},
                                                              {"items", {"ServerName", ""}}},
                                                             {{"server", "Garden"},
                                                              {"flags", 1},
                                                              {"nameSpaces", {"($Servers)"}},
                                                              {"names", {""}},
                                                              {"items", {"ServerName", ""}}}}));
}

TEST_F(Lookups, FailByFaults) {
  WriteBook("", R"({"ServerName": "A"})");
  StandinSetFaults(R"([{"entry": "NAMELookup", "item": "ServerName", "call": 2, "status": 77},
                       {"entry": "NAMELocateNextName", "call": 1, "status": 1},
                       {"entry": "NAMELocateNextMatch", "call": 1, "status": 1},
                       {"entry": "NAMEGetTextItem", "call": 1, "status": 78}])");
  void* const result = LockedResult();
  LookupArguments second;
  EXPECT_EQ(LookUp(&second), 77);
  WORD count = 9;
  EXPECT_EQ(NAMELocateNextName(result, nullptr, &count), nullptr);
  EXPECT_EQ(count, 9);
  void* const name = NAMELocateNextName(result, nullptr, &count);
  EXPECT_EQ(NAMELocateNextMatch(result, name, nullptr), nullptr);
  void* const match = NAMELocateNextMatch(result, name, nullptr);
  char out[8] = "left";
  EXPECT_EQ(NAMEGetTextItem(match, 0, 0, out, 7), 78);
  EXPECT_STREQ(out, "left");
}

}  // namespace larkspan::standin_test
