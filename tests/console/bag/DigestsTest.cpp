// The sums of Windows against those that everybody knows.
#include "console/bag/Digests.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/ParameterName.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

struct KnownDigest {
  const char* name;
  const char* algorithm;
  const char* ofNothing;
  const char* ofAbc;
};

// The first of "", the second of "abc": examples of the standards.
const std::vector<KnownDigest> kKnownDigests = {
    {"Md5", "md5", "d41d8cd98f00b204e9800998ecf8427e", "900150983cd24fb0d6963f7d28e17f72"},
    {"Sha1", "sha1", "da39a3ee5e6b4b0d3255bfef95601890afd80709",
     "a9993e364706816aba3e25717850c26c9cd0d89d"},
    {"Sha256", "sha256", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
     "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
    {"Sha384", "sha384",
     "38b060a751ac96384cd9327eb1b1e36a21fdb71114be07434c0cc7bf63f6e1da"
     "274edebfe76f65fbd51ad2f14898b95b",
     "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed"
     "8086072ba1e7cc2358baeca134c825a7"},
    {"Sha512", "sha512",
     "cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
     "47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e",
     "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
     "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f"},
};

class DigestsTest : public ::testing::TestWithParam<KnownDigest> {
 protected:
  DigestKind kind() const { return DigestKindOf(GetParam().algorithm).value(); }
};

TEST_P(DigestsTest, IsThatOfTheStandard) {
  EXPECT_TRUE(IsOffered(kind()));
  EXPECT_STREQ(DigestName(kind()), GetParam().algorithm);
  EXPECT_EQ(DigestOfText(kind(), ""), GetParam().ofNothing);
  EXPECT_EQ(DigestOfText(kind(), "abc"), GetParam().ofAbc);
  EXPECT_EQ(DigestDigits(kind()), std::string(GetParam().ofAbc).size());
}

TEST_P(DigestsTest, OfAFileIsThatOfItsBytesInPiecesOfAnySize) {
  const TempFolder folder;
  std::string bytes(100'003, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 31);
  WriteBytes(folder / L"\\a.bin", bytes);
  for (const std::size_t size : {1000u, 100'003u, 200'000u}) {
    std::vector<char> buffer(size);
    const auto digests = DigestsOfFile(folder / L"\\a.bin", OnlyKind(kind()), buffer);
    ASSERT_TRUE(digests);
    EXPECT_EQ(digests->Of(kind()), DigestOfText(kind(), bytes)) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, DigestsTest, ::testing::ValuesIn(kKnownDigests), kNameOf);

TEST(DigestsOfFileTest, GivesSeveralSumsOfOneReading) {
  const TempFolder folder;
  WriteBytes(folder / L"\\a.bin", "abc");
  std::vector<char> buffer(16);
  const auto digests = DigestsOfFile(
      folder / L"\\a.bin", OnlyKind(DigestKind::kMd5) | OnlyKind(DigestKind::kSha512), buffer);
  ASSERT_TRUE(digests);
  EXPECT_EQ(digests->Of(DigestKind::kMd5), kKnownDigests[0].ofAbc);
  EXPECT_EQ(digests->Of(DigestKind::kSha1), "");
  EXPECT_EQ(digests->Of(DigestKind::kSha512), kKnownDigests[4].ofAbc);
}

TEST(DigestsOfFileTest, AFileThatIsNotThereHasNone) {
  const TempFolder folder;
  std::vector<char> buffer(16);
  EXPECT_FALSE(DigestsOfFile(folder / L"\\a.bin", OnlyKind(DigestKind::kMd5), buffer));
}

TEST(DigestKindTest, OnlyWhatWindowsCalculatesHasAKind) {
  EXPECT_FALSE(DigestKindOf("sha224"));
  EXPECT_FALSE(DigestKindOf(""));
}

}  // namespace
}  // namespace larkspan::console
