// The words of statuses.
#include <set>

#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

std::string Text(STATUS status, WORD size = 255) {
  std::string out(size + 1U, '*');
  const WORD length = OSLoadString(0, status, out.data(), size);
  EXPECT_EQ(out.back(), '*');
  return out.substr(0, length);
}

class StatusText : public StandinTest {};

}  // namespace

TEST_F(StatusText, DiffersForEveryStatusThatProgramsReactTo) {
  const STATUS statuses[] = {0,      259,    260,    264,    270,  0x1A5, 551, 575,
                             582,    1173,   6402,   586,    588,  590,   592, 8209,
                             0x3600, 0x361F, 0x3620, 0x35FF, 6408, 6967,  6968};
  std::set<std::string> texts;
  for (const STATUS status : statuses) texts.insert(Text(status));
  EXPECT_EQ(texts.size(), std::size(statuses));
}

TEST_F(StatusText, ShowsANumberItHasNoWordsFor) { EXPECT_EQ(Text(4711), "Notes error 4711"); }

TEST_F(StatusText, IgnoresWhereTheStatusCameFrom) { EXPECT_EQ(Text(0xC000 | 259), Text(259)); }

TEST_F(StatusText, KeepsToTheSizeAndWritesNoNul) {
  EXPECT_EQ(Text(259, 4), "File");
  EXPECT_EQ(Text(259, 0), "");
}

}  // namespace larkspan::standin_test
