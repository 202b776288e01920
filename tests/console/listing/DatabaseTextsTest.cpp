#include "console/listing/DatabaseTexts.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "console/show/TextWidth.h"
#include "console/text/Csv.h"

namespace larkspan::console {
namespace {

constexpr char kCsvHeader[] =
    "server,path,title,data_modified,design_modified,bytes,identifier,kind\r\n";

ScanEntry Database(const std::string& path, const std::string& title, double bytes) {
  return {
      path, title, "2020-05-06T07:08:09.10Z", "2019-05-13T02:27:52.95Z", bytes, "C12583D0004D1A2C",
      false};
}

ScanEntry Folder(const std::string& path) {
  return {path, "", "", "", 0, "0000000000000000", true};
}

class DatabaseTextsTest : public ::testing::Test {
 protected:
  std::string Csv() const { return DatabasesText("Mill/Example", scan_, ListingFormat::kCsv, 0); }
  nlohmann::json Json() const {
    return nlohmann::json::parse(DatabasesText("Mill/Example", scan_, ListingFormat::kJson, 0));
  }
  std::string Table(int width) const {
    return DatabasesText("Mill/Example", scan_, ListingFormat::kTable, width);
  }

  // Of a database of that size.
  std::string SizeInJson(double bytes) {
    scan_.entries = {Database("a.nsf", "A", bytes)};
    return Json().at("databases").at(0).at("bytes").dump();
  }

  ScanFile scan_;
};

TEST_F(DatabaseTextsTest, CsvHasALineForEach) {
  scan_.entries = {Database("seeds\\exchange.nsf", "Seed exchange", 524288), Folder("seeds")};
  EXPECT_EQ(Csv(), std::string(kCsvHeader) +
                       "Mill/Example,seeds\\exchange.nsf,Seed exchange,2020-05-06T07:08:09.10Z,"
                       "2019-05-13T02:27:52.95Z,524288,C12583D0004D1A2C,database\r\n"
                       "Mill/Example,seeds,,,,0,0000000000000000,folder\r\n");
}

TEST_F(DatabaseTextsTest, CsvQuotesWhatNeedsIt) {
  scan_.entries = {Database("a,b.nsf", "\"Quoted\" \xE6\x97\xA5\xE6\x9C\xAC", 0),
                   Database("line\nfeed\x01.nsf", "", 0)};
  const std::string csv = Csv();
  EXPECT_NE(csv.find("Mill/Example,\"a,b.nsf\",\"\"\"Quoted\"\" \xE6\x97\xA5\xE6\x9C\xAC\",2020"),
            std::string::npos)
      << csv;
  const auto rows = ParseCsv(csv);
  ASSERT_TRUE(rows);
  ASSERT_EQ(rows->size(), 3u);
  EXPECT_EQ(rows->at(2).at(1), "line\nfeed\x01.nsf");
}

TEST_F(DatabaseTextsTest, CsvOfNothingHasItsHeader) { EXPECT_EQ(Csv(), kCsvHeader); }

TEST_F(DatabaseTextsTest, JsonHasTheSameNames) {
  scan_.serverNamed = "CN=Mill/O=Example";
  scan_.entries = {Database("seeds\\exchange.nsf", "Seed \"exchange\"", 524288)};
  const nlohmann::json expected = {{"format", "larkspan-databases"},
                                   {"version", 1},
                                   {"server", "Mill/Example"},
                                   {"server_named", "CN=Mill/O=Example"},
                                   {"databases",
                                    {{{"server", "Mill/Example"},
                                      {"path", "seeds\\exchange.nsf"},
                                      {"title", "Seed \"exchange\""},
                                      {"data_modified", "2020-05-06T07:08:09.10Z"},
                                      {"design_modified", "2019-05-13T02:27:52.95Z"},
                                      {"bytes", 524288},
                                      {"identifier", "C12583D0004D1A2C"},
                                      {"kind", "database"}}}}};
  EXPECT_EQ(Json(), expected);
}

TEST_F(DatabaseTextsTest, JsonHasNullForWhatIsNotTold) {
  scan_.entries = {Folder("")};
  const nlohmann::json json = Json();
  EXPECT_TRUE(json.at("server_named").is_null());
  const nlohmann::json& entry = json.at("databases").at(0);
  for (const char* const name : {"path", "title", "data_modified", "design_modified"})
    EXPECT_TRUE(entry.at(name).is_null()) << name;
  EXPECT_EQ(entry.at("bytes"), 0);
  EXPECT_EQ(entry.at("kind"), "folder");
}

TEST_F(DatabaseTextsTest, JsonOfNothingHasAnEmptyList) {
  EXPECT_EQ(Json().at("databases"), nlohmann::json::array());
}

TEST_F(DatabaseTextsTest, SizesInJsonAreWholeNumbersAsFarAsThereAreSuch) {
  EXPECT_EQ(SizeInJson(0), "0");
  EXPECT_EQ(SizeInJson(1099511627776), "1099511627776");
  EXPECT_EQ(SizeInJson(18446744073709549568.0), "18446744073709549568");
  EXPECT_EQ(SizeInJson(-3), "-3");
  EXPECT_EQ(SizeInJson(-9223372036854775808.0), "-9223372036854775808");
  EXPECT_EQ(SizeInJson(1048576.5), "1048576.5");
  EXPECT_EQ(SizeInJson(18446744073709551616.0), "1.8446744073709552e+19");
  EXPECT_EQ(SizeInJson(-0.0), "-0.0");
  EXPECT_EQ(SizeInJson(std::numeric_limits<double>::infinity()), "\"Infinity\"");
  EXPECT_EQ(SizeInJson(std::bit_cast<double>(0x7FF8000000000001)), "\"NaN(7FF8000000000001)\"");
}

TEST_F(DatabaseTextsTest, ATableOutsideOfAWindowHasAllOfIt) {
  const std::string path = std::string(200, 'p') + ".nsf";
  scan_.entries = {Database(path, "Title", 1310720), Folder("seeds"),
                   Database("odd.nsf", "", -1.5)};
  std::istringstream lines(Table(0));
  std::vector<std::string> rows;
  for (std::string line; std::getline(lines, line);) rows.push_back(line);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0], "Path" + std::string(200, ' ') +
                         "  Title      Bytes  Data modified            Design modified          "
                         "Identifier");
  EXPECT_EQ(rows[1], path +
                         "  Title  1,310,720  2020-05-06T07:08:09.10Z  2019-05-13T02:27:52.95Z  "
                         "C12583D0004D1A2C");
  EXPECT_NE(rows[2].find("  folder  "), std::string::npos) << rows[2];
  EXPECT_NE(rows[3].find("  -1.5  "), std::string::npos) << rows[3];
}

TEST_F(DatabaseTextsTest, ATableFitsTheWindowAndLeavesOutItsLastColumns) {
  for (int i = 0; i < 20; ++i) {
    scan_.entries.push_back(Database("\xE8\xA8\x88\xE7\x94\xBB\\orders of the year.nsf",
                                     "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E of all the orders", i));
  }
  const auto columnsAt = [&](int width) {
    std::istringstream lines(Table(width));
    std::string titles;
    std::getline(lines, titles);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(ColumnsOf(line), width) << line;
    return std::string(titles.find("Identifier") != titles.npos        ? "identifier"
                       : titles.find("Design modified") != titles.npos ? "design"
                       : titles.find("Data modified") != titles.npos   ? "data"
                       : titles.find("Bytes") != titles.npos           ? "bytes"
                                                                       : "");
  };
  EXPECT_EQ(columnsAt(200), "identifier");
  EXPECT_EQ(columnsAt(119), "identifier");
  EXPECT_EQ(columnsAt(100), "design");
  EXPECT_EQ(columnsAt(79), "data");
  EXPECT_EQ(columnsAt(40), "bytes");
}

TEST_F(DatabaseTextsTest, ATableIsSafeForATerminal) {
  scan_.entries = {Database("a\x1B[31m.nsf", "", 0)};
  EXPECT_EQ(Table(0).find('\x1B'), std::string::npos);
  EXPECT_NE(Table(0).find("a?[31m.nsf"), std::string::npos);
}

}  // namespace
}  // namespace larkspan::console
