#include "console/listing/Servers.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class ServersTest : public ::testing::Test {
 protected:
  ServersFile Read(const std::string& bytes) const {
    WriteBytes(file_, bytes);
    return ReadServersFile(file_);
  }
  ListingContent Content(const std::string& bytes) const { return ServersContent(Read(bytes)); }

  TempFolder folder_;
  const std::wstring file_ = folder_ / L"\\servers.txt";
};

using Names = std::vector<std::string>;

TEST_F(ServersTest, EachLineIsAName) {
  const ServersFile servers = Read("\xC3\x96lm\xC3\xBChle/Garten\r\nMill 9/Example\r\n");
  EXPECT_EQ(servers.names, (Names{"\xC3\x96lm\xC3\xBChle/Garten", "Mill 9/Example"}));
  EXPECT_EQ(servers.faults.Count(), 0u);
  EXPECT_FALSE(servers.beginsEmpty);
}

TEST_F(ServersTest, AnEmptyFirstLineIsARemark) {
  const ListingContent content = Content("\r\nMill\r\n");
  EXPECT_EQ(content.entries, 1u);
  EXPECT_EQ(content.faultCount, 0u);
  EXPECT_EQ(content.remarks,
            Names{"the first line of servers.txt is empty: MailServer has no name, or the Notes "
                  "library does not translate it"});
  EXPECT_EQ(Content("Mill\r\n").remarks, Names());
}

TEST_F(ServersTest, AnyOtherEmptyLineIsALoss) {
  const ListingContent content = Content("Arboretum\r\n\r\nMill\r\n");
  EXPECT_EQ(content.entries, 2u);
  EXPECT_EQ(content.faultCount, 1u);
  EXPECT_EQ(content.faults, Names{"Line 2 of servers.txt is empty: the Notes library does not "
                                  "translate that name"});
}

TEST_F(ServersTest, ADamagedLineIsALoss) {
  EXPECT_EQ(Content("Mill\r\nGard").faults, Names{"Line 2 of servers.txt is not whole: 'Gard'"});
  EXPECT_EQ(Content("\xFFMill\r\n").faults,
            Names{"Line 1 of servers.txt is no UTF-8: '\xEF\xBF\xBDMill'"});
}

TEST_F(ServersTest, WithoutALineThereIsNoListing) {
  EXPECT_EQ(Content("").whyNone, "servers.txt is empty");
  EXPECT_EQ(Content("\r\n").whyNone, "");
  EXPECT_EQ(Content("Mill\r\n").whyNone, "");
  EXPECT_EQ(ServersContent(ReadServersFile(folder_ / L"\\none.txt")).whyNone,
            "larkspan.exe has written no servers.txt");
}

TEST_F(ServersTest, TheFormatsHaveTheNames) {
  const ListingContent content = Content("Mill\r\nNorth, \"Old\"/Example\r\n");
  EXPECT_EQ(content.summary, "2 servers");
  EXPECT_EQ(content.text(ListingFormat::kCsv, 0),
            "server\r\nMill\r\n\"North, \"\"Old\"\"/Example\"\r\n");
  EXPECT_EQ(nlohmann::json::parse(content.text(ListingFormat::kJson, 0)),
            nlohmann::json({{"format", "larkspan-servers"},
                            {"version", 1},
                            {"servers", {"Mill", "North, \"Old\"/Example"}}}));
  EXPECT_EQ(content.text(ListingFormat::kTable, 0), "Server\nMill\nNorth, \"Old\"/Example\n");
  EXPECT_EQ(content.text(ListingFormat::kTable, 12), "Server\nMill\nNort...ample\n");
}

TEST_F(ServersTest, OneNameIsAListInJsonToo) {
  EXPECT_EQ(nlohmann::json::parse(Content("Mill\r\n").text(ListingFormat::kJson, 0)).at("servers"),
            nlohmann::json::array({"Mill"}));
}

}  // namespace
}  // namespace larkspan::console
