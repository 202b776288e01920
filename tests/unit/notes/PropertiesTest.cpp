// What the library writes into the buffers of the properties, at their limits.
#include "notes/Properties.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::WORD;

class PropertiesTest : public NotesFixture {
 protected:
  PropertiesTest() {
    WriteDatabase("{}");
    Start();
  }
};

// As many bytes as it may, and no NUL behind them.
void LARKSPAN_NOTES_CALL FillField(const char*, WORD, char* out, WORD limit) {
  std::memset(out, 'x', limit);
}

TEST_F(PropertiesTest, TitlesHaveAtMost1023Bytes) {
  const ReplacedEntryPoint replaced("NSFDbInfoParse", FillField);
  DatabaseTitles titles;
  ASSERT_TRUE(GetDatabaseTitles(OpenTestDatabase(), titles).ok());
  EXPECT_EQ(titles.title, std::string(1023, 'x'));
  EXPECT_EQ(titles.categories, std::string(1023, 'x'));
}

}  // namespace
}  // namespace larkspan
