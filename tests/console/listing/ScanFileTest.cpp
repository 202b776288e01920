#include "console/listing/ScanFile.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <string>

#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

constexpr char kGarden[] =
    "Garden\r\n"
    "seeds\\exchange.nsf\tSeed exchange\t6372451848910\t6369348407295\t4692750811720056832\t"
    "C12583D0004D1A2C\r\n"
    "seeds\t\t\t\t0\t0000000000000000\r\n";

class ScanFileTest : public ::testing::Test {
 protected:
  ScanFile Read(const std::string& bytes) const {
    WriteBytes(file_, bytes);
    return ReadScanFile(file_);
  }

  // Of one line behind the first.
  ScanFile ReadLine(const std::string& line) const { return Read("S\r\n" + line + "\r\n"); }

  void ExpectDamaged(const std::string& line, const std::string& sentence) const {
    const ScanFile scan = ReadLine(line);
    EXPECT_TRUE(scan.entries.empty()) << line;
    EXPECT_EQ(scan.faults.Sentences(), std::vector<std::string>{sentence});
    EXPECT_EQ(scan.faults.Count(), 1u);
  }

  bool IsTakenForFolder(const std::string& line) const {
    const ScanFile scan = ReadLine(line);
    EXPECT_EQ(scan.entries.size(), 1u) << line;
    return !scan.entries.empty() && scan.entries[0].isFolder;
  }

  TempFolder folder_;
  const std::wstring file_ = folder_ / L"\\scan.txt";
};

TEST_F(ScanFileTest, EachFieldHasItsPlace) {
  const ScanFile scan = Read(kGarden);
  EXPECT_EQ(scan.reading, FileReading::kRead);
  EXPECT_EQ(scan.serverNamed, "Garden");
  ASSERT_EQ(scan.entries.size(), 2u);
  const ScanEntry& entry = scan.entries[0];
  EXPECT_EQ(entry.path, "seeds\\exchange.nsf");
  EXPECT_EQ(entry.title, "Seed exchange");
  EXPECT_EQ(entry.dataModified, "2020-05-06T07:08:09.10Z");
  EXPECT_EQ(entry.designModified, "2019-05-13T02:27:52.95Z");
  EXPECT_EQ(entry.bytes, 524288);
  EXPECT_EQ(entry.identifier, "C12583D0004D1A2C");
  EXPECT_FALSE(entry.isFolder);
  EXPECT_TRUE(scan.entries[1].isFolder);
  EXPECT_EQ(scan.faults.Count(), 0u);
}

TEST_F(ScanFileTest, AFolderIsALineWithoutValuesThatIsNotNamedAsADatabase) {
  EXPECT_TRUE(IsTakenForFolder("seeds\t\t\t\t0\t0000000000000000"));
  EXPECT_TRUE(IsTakenForFolder("\t\t\t\t0\t0000000000000000"));
  EXPECT_TRUE(IsTakenForFolder("nsf\t\t\t\t0\tC12583D0004D1A2C"));
  for (const char* const path : {"a.nsf", "A.NSF", "x\\b.nTf", "mail.box", ".nsf"})
    EXPECT_FALSE(IsTakenForFolder(std::string(path) + "\t\t\t\t0\t0000000000000000")) << path;
  for (const char* const told :
       {"x\tTitle\t\t\t0", "x\t\t0\t\t0", "x\t\t\ttext\t0", "x\t\t\t\t4692750811720056832"})
    EXPECT_FALSE(IsTakenForFolder(std::string(told) + "\t0000000000000000")) << told;
}

TEST_F(ScanFileTest, TheNumberIsThatOfTheBits) {
  const auto bits = [&](const std::string& field) {
    return std::bit_cast<std::uint64_t>(
        ReadLine("a.nsf\t\t\t\t" + field + "\t0000000000000000").entries.at(0).bytes);
  };
  EXPECT_EQ(bits("-4613937818241073152"), std::bit_cast<std::uint64_t>(-1.5));
  EXPECT_EQ(bits("9221120237041090561"), 0x7FF8000000000001u);
  EXPECT_EQ(bits("-9223372036854775808"), 0x8000000000000000u);
}

TEST_F(ScanFileTest, TheFirstLineIsGivenWhereItCanBeTrusted) {
  const auto named = [&](const std::string& line) { return Read(line + "\r\n").serverNamed; };
  EXPECT_EQ(named("Mill/Example"), "Mill/Example");
  EXPECT_EQ(named("Glash\xC3\xA4user"), "Glash\xC3\xA4user");
  EXPECT_EQ(named(""), std::nullopt);
  EXPECT_EQ(named("Glash\x84user"), std::nullopt);
  EXPECT_EQ(named("\x14\x01\x41rt"), std::nullopt);
  EXPECT_TRUE(Read("Glash\x84user\r\n").hasFirstLine);
}

TEST_F(ScanFileTest, AFileWithoutALineHasNoServer) {
  EXPECT_FALSE(Read("").hasFirstLine);
  EXPECT_EQ(ReadScanFile(folder_ / L"\\none.txt").reading, FileReading::kMissing);
}

TEST_F(ScanFileTest, ALineOfAnotherFormIsTold) {
  ExpectDamaged(
      "a.nsf\tTitle\t\t0\t0000000000000000",
      "Line 2 of scan.txt does not have six fields: 'a.nsf\tTitle\t\t0\t0000000000000000'");
  ExpectDamaged("a\tb.nsf\tTitle\t\t\t0\t0000000000000000",
                "Line 2 of scan.txt does not have six fields: "
                "'a\tb.nsf\tTitle\t\t\t0\t0000000000000000'");
  ExpectDamaged("", "Line 2 of scan.txt does not have six fields");
  ExpectDamaged("a.nsf\t\t\t\t\t0000000000000000",
                "Line 2 of scan.txt has no size: 'a.nsf\t\t\t\t\t0000000000000000'");
  ExpectDamaged("a.nsf\t\t\t\t9223372036854775808\t0000000000000000",
                "Line 2 of scan.txt has no size: "
                "'a.nsf\t\t\t\t9223372036854775808\t0000000000000000'");
  ExpectDamaged("a.nsf\t\t\t\t0\tC12583D0004D1A2",
                "Line 2 of scan.txt has no identifier: 'a.nsf\t\t\t\t0\tC12583D0004D1A2'");
  ExpectDamaged("a.nsf\t\t\t\t0\tc12583d0004d1a2c",
                "Line 2 of scan.txt has no identifier: 'a.nsf\t\t\t\t0\tc12583d0004d1a2c'");
  ExpectDamaged("\xFF.nsf\t\t\t\t0\t0000000000000000",
                "Line 2 of scan.txt is no UTF-8: '\xEF\xBF\xBD.nsf\t\t\t\t0\t0000000000000000'");
}

TEST_F(ScanFileTest, ALineThatIsCutOffIsTold) {
  const std::string whole = kGarden;
  // Behind the second line, so that every cut lies in the last one.
  const std::size_t last = whole.rfind("seeds\t");
  for (std::size_t end = last + 1; end < whole.size(); ++end) {
    const ScanFile scan = Read(whole.substr(0, end));
    EXPECT_EQ(scan.entries.size(), 1u) << end;
    ASSERT_EQ(scan.faults.Count(), 1u) << end;
    EXPECT_TRUE(scan.faults.Sentences()[0].starts_with("Line 3 of scan.txt is not whole")) << end;
  }
  EXPECT_FALSE(Read("Gard").hasFirstLine);
  EXPECT_EQ(Read("Gard").faults.Count(), 1u);
}

TEST_F(ScanFileTest, ALineWithoutItsCarriageReturnIsTold) {
  const ScanFile scan = Read("S\r\na.nsf\t\t\t\t0\t0000000000000000\n");
  EXPECT_TRUE(scan.entries.empty());
  EXPECT_EQ(scan.faults.Count(), 1u);
}

TEST_F(ScanFileTest, AHugeLineIsToldByItsBeginning) {
  const ScanFile scan = ReadLine("huge" + std::string(5'000'000, 'x'));
  EXPECT_TRUE(scan.entries.empty());
  ASSERT_EQ(scan.faults.Count(), 1u);
  const std::string sentence = scan.faults.Sentences()[0];
  EXPECT_TRUE(sentence.starts_with("Line 2 of scan.txt is not whole: 'hugexxx")) << sentence;
  EXPECT_LT(sentence.size(), 300u);
}

TEST_F(ScanFileTest, OfManyDamagedLinesTheFirstAreToldAndAllCounted) {
  std::string bytes = "S\r\n";
  for (int i = 0; i < 12; ++i) bytes += "x\r\n";
  const ScanFile scan = Read(bytes);
  EXPECT_EQ(scan.faults.Count(), 12u);
  const std::vector<std::string> sentences = scan.faults.Sentences();
  ASSERT_EQ(sentences.size(), 11u);
  EXPECT_EQ(sentences[9], "Line 11 of scan.txt does not have six fields: 'x'");
  EXPECT_EQ(sentences[10], "2 more lines of scan.txt are damaged");
  EXPECT_EQ(Read(bytes.substr(0, bytes.size() - 3)).faults.Sentences().at(10),
            "1 more line of scan.txt is damaged");
}

// Each line end but that of the first line ends an entry or a line that is told.
TEST_F(ScanFileTest, NoLineOfGarbageIsLost) {
  constexpr char kLetters[] = "\t\t\t\t\r\n\n0123456789ABCDEF-.nsf\xFF\xC3\xA4\x81 ";
  std::mt19937 random(815);
  for (int round = 0; round < 300; ++round) {
    std::string bytes = kGarden;
    for (int i = 0; i < 40; ++i) {
      const auto place = random() % bytes.size();
      bytes[place] =
          round % 2 == 0 ? static_cast<char>(random()) : kLetters[random() % (sizeof kLetters - 1)];
    }
    const ScanFile scan = Read(bytes);
    const auto lines = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')) +
                       (bytes.ends_with('\n') ? 0 : 1);
    EXPECT_EQ(scan.entries.size() + scan.faults.Count() + (scan.hasFirstLine ? 1 : 0), lines)
        << "round " << round;
  }
}

}  // namespace
}  // namespace larkspan::console
