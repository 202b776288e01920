// Variables of the configuration.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr WORD kLimit = 255;

class Environment : public StandinTest {
 protected:
  // The variable's value in UTF-8, or "unset" with the place left alone.
  static std::string Variable(const char* name, WORD limit = kLimit) {
    std::string out(limit + 2U, '#');
    if (OSGetEnvironmentString(name, out.data(), limit) == 0) {
      EXPECT_EQ(out, std::string(limit + 2U, '#'));
      return "unset";
    }
    EXPECT_EQ(out.back(), '#');
    return ToUtf8(out.c_str());
  }
};

}  // namespace

TEST_F(Environment, HoldsEveryKeyOfTheConfiguration) {
  Start("MailServer=CN=Mühle/O=Example\nEmpty=\nLater = a b \n");
  EXPECT_EQ(Variable("MailServer"), "CN=Mühle/O=Example");
  EXPECT_EQ(Variable("MAILSERVER"), "CN=Mühle/O=Example");
  EXPECT_EQ(Variable("Empty"), "");
  EXPECT_EQ(Variable("Later"), "a b");
  EXPECT_EQ(Variable("Directory"), ".");
}

TEST_F(Environment, DoesNotHoldOthers) {
  Start();
  EXPECT_EQ(Variable("MailServer"), "unset");
  EXPECT_EQ(Variable(""), "unset");
}

TEST_F(Environment, CutsValuesAtTheLimitAndEndsThemBehindIt) {
  Start("MailServer=Garden\nMill=Mühle\n");
  EXPECT_EQ(Variable("MailServer", 6), "Garden");
  EXPECT_EQ(Variable("MailServer", 5), "Garde");
  EXPECT_EQ(Variable("MailServer", 0), "");
  EXPECT_EQ(Variable("Mill", 2), "M");
}

TEST_F(Environment, IsUnsetWhenAFaultSaysSo) {
  Start("MailServer=Garden\n");
  StandinSetFaults(R"([{"entry": "OSGetEnvironmentString", "item": "MailServer", "status": 1}])");
  EXPECT_EQ(Variable("MailServer"), "unset");
  EXPECT_EQ(Variable("Directory"), ".");
}

TEST_F(Environment, RecordsWhatIsAskedFor) {
  Start();
  Variable("Street", 40);
  EXPECT_EQ(RecordedArguments("OSGetEnvironmentString"),
            nlohmann::json({{"name", "Street"}, {"limit", 40}}));
}

}  // namespace larkspan::standin_test
