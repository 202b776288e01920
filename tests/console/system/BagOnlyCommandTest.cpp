// verify --bag-only on the real program.
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

class BagOnlyCommandTest : public ExportTest {};

TEST_F(BagOnlyCommandTest, JudgesASealedExportAndNoticesAFlippedByte) {
  database_ = L"sample.nsf";
  ASSERT_EQ(Export().code, 0u);
  EXPECT_EQ(Run({L"verify", L"--bag-only", out_}).code, 5u);
  ASSERT_EQ(Run({L"seal", out_}).code, 0u);
  EXPECT_EQ(Run({L"verify", L"--bag-only", out_}).code, 0u);
  const std::wstring view = out_ + L"\\data\\views\\0000012E.xml";
  std::string bytes = ReadBytes(view);
  bytes[bytes.size() / 2] ^= 1;
  WriteBytes(view, bytes);
  EXPECT_EQ(Run({L"verify", L"--bag-only", out_}).code, 5u);
  EXPECT_EQ(Run({L"verify", L"--bag-only", out_ + L"none"}).code, 2u);
}

}  // namespace
}  // namespace larkspan::console
