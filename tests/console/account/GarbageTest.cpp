// Whatever stands in the files of a folder, there is an account, and it is not that of a whole
// export.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "tests/console/account/HandMadeExport.h"

namespace larkspan::console {
namespace {

constexpr std::array<const char*, 24> kPieces = {"\r\n",
                                                 "\n",
                                                 "\r",
                                                 "00000902",
                                                 "00000906\r\n",
                                                 ",",
                                                 "C12583D0004D1A2C22FD656200000902",
                                                 "#WARNING# - ",
                                                 "Major: Error opening note ",
                                                 "Minor: Detected corrupt document ",
                                                 "#ERROR# - ",
                                                 "Unable to export design: ",
                                                 "(",
                                                 ")",
                                                 "Archive started at: ",
                                                 "Archive ended at: ",
                                                 "Database size after archive : ",
                                                 "Data   : ",
                                                 "18446744073709551616",
                                                 "<a>",
                                                 "</a>",
                                                 "<noteinfo noteid='902'/>",
                                                 "{\"format\": 1",
                                                 "[[[["};

std::string Garbage(std::mt19937& random) {
  std::string text;
  const unsigned pieces = random() % 40;
  for (unsigned i = 0; i < pieces; ++i) {
    if (random() % 3 == 0)
      text.append(random() % 5, static_cast<char>(random() % 256));
    else
      text += kPieces[random() % kPieces.size()];
  }
  return text;
}

class GarbageTest : public ::testing::TestWithParam<const char*> {};

TEST_P(GarbageTest, IsNotTakenForAnExport) {
  HandMadeExport garbage;
  // A log is missing only where it told of something.
  if (GetParam() == std::string("log.txt")) {
    garbage.log = {"#WARNING# - Major: Incomplete run detected for note id 00000902"};
    garbage.Note(0x902).hasFile = false;
  }
  garbage.Write();
  std::mt19937 random(14);
  for (int i = 0; i < 100; ++i) {
    const std::string text = Garbage(random);
    garbage.WriteFile(GetParam(), text);
    EXPECT_NE(garbage.Verify().Verdict(), ExitCode::kWhole) << text;
  }
}

INSTANTIATE_TEST_SUITE_P(Files, GarbageTest,
                         ::testing::Values("idtable.txt", "unidindex.txt", "log.txt", "audit.txt",
                                           "outcome.json", "data/00000906.dxl", "db.dxl",
                                           "views/00000106.xml"),
                         [](const auto& test) { return "File" + std::to_string(test.index); });

}  // namespace
}  // namespace larkspan::console
