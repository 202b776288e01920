// Paths and comparison of texts.
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

struct Parts {
  std::string port, server, file;

  bool operator==(const Parts&) const = default;
};

Parts Parse(const std::string& path) {
  char port[256], server[256], file[256];
  EXPECT_EQ(OSPathNetParse(path.c_str(), port, server, file), 0);
  return {port, server, file};
}

int Compare(const std::string& text1, const std::string& text2) {
  return IntlTextCompare(text1.data(), static_cast<WORD>(text1.size()), text2.data(),
                         static_cast<WORD>(text2.size()), 0);
}

class Texts : public StandinTest {
 protected:
  Texts() { Start(); }
};

}  // namespace

TEST_F(Texts, PathsAreSplitIntoPortServerAndFile) {
  EXPECT_EQ(Parse("mail\\box.nsf"), (Parts{"", "", "mail\\box.nsf"}));
  EXPECT_EQ(Parse("CN=Garden/O=X!!box.nsf"), (Parts{"", "CN=Garden/O=X", "box.nsf"}));
  EXPECT_EQ(Parse("TCPIP!!!Garden!!box.nsf"), (Parts{"TCPIP", "Garden", "box.nsf"}));
  EXPECT_EQ(Parse(""), (Parts{"", "", ""}));
}

TEST_F(Texts, LongPathsAreCutBetweenCharacters) {
  const std::string umlaut = "\x01\xE4";
  std::string path = "x";
  for (int i = 0; i < 200; ++i) path += umlaut;
  EXPECT_EQ(Parse(path).file, path.substr(0, 255));
  EXPECT_EQ(Parse(path.substr(1)).file, path.substr(1, 254));
}

TEST_F(Texts, AreComparedByTheirCharacters) {
  EXPECT_EQ(Compare("$profile", "$profile"), 0);
  EXPECT_NE(Compare("$profile", "$Profile"), 0);
  EXPECT_LT(Compare("a", "b"), 0);
  EXPECT_GT(Compare("b", "a"), 0);
  EXPECT_LT(Compare("", "a"), 0);
  EXPECT_GT(Compare("\x01\xE4", "z"), 0);
}

}  // namespace larkspan::standin_test
