// Distinguished names in short.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kDamagedName = 592;
constexpr WORD kNameLimit = 255;

class Names : public StandinTest {
 protected:
  Names() { Start(); }

  // Names in UTF-8.
  static std::string Abbreviated(const std::string& name, WORD limit = kNameLimit) {
    std::string out(limit + 2U, '#');
    WORD length = 0;
    EXPECT_EQ(DNAbbreviate(0, nullptr, ToNotes(std::string_view(name)).c_str(), out.data(), limit,
                           &length),
              0)
        << name;
    EXPECT_EQ(out.back(), '#');
    EXPECT_EQ(out[length], '\0');
    return ToUtf8(out.substr(0, length));
  }

  static STATUS StatusFor(const char* name) {
    char out[kNameLimit + 1] = {};
    return DNAbbreviate(0, nullptr, name, out, kNameLimit, nullptr);
  }
};

}  // namespace

TEST_F(Names, LoseTheWordsInFrontOfTheirParts) {
  EXPECT_EQ(Abbreviated("CN=Mill/OU=West/O=Example"), "Mill/West/Example");
  EXPECT_EQ(Abbreviated("CN=Mühle/O=Österreich"), "Mühle/Österreich");
  EXPECT_EQ(Abbreviated("CN=Mill"), "Mill");
  EXPECT_EQ(Abbreviated("CN="), "");
  EXPECT_EQ(Abbreviated("CN=/O=Example"), "/Example");
}

TEST_F(Names, WithoutSuchWordsStayAsTheyAre) {
  EXPECT_EQ(Abbreviated("Mill/West/Example"), "Mill/West/Example");
  EXPECT_EQ(Abbreviated("Garden"), "Garden");
  EXPECT_EQ(Abbreviated("Garden/"), "Garden/");
  EXPECT_EQ(Abbreviated("Mill/O=Example"), "Mill/Example");
  EXPECT_EQ(Abbreviated(""), "");
}

TEST_F(Names, MayHoldCharactersWhoseBytesLookLikeSigns) {
  EXPECT_EQ(Abbreviated("CN=\u2F3D\u3D2F/O=\u3D3D"), "\u2F3D\u3D2F/\u3D3D");
}

TEST_F(Names, ThatAreDamagedGiveAStatus) {
  EXPECT_EQ(StatusFor("CN=Two=Signs/O=Example"), kDamagedName);
  EXPECT_EQ(StatusFor("CN=Mill/=Example"), kDamagedName);
  EXPECT_EQ(StatusFor("=Mill"), kDamagedName);
  EXPECT_EQ(StatusFor("CN=Mill/O=Example"), 0);
}

TEST_F(Names, AreCutAtTheLimitAndEndedBehindIt) {
  EXPECT_EQ(Abbreviated("CN=Mill/O=Example", 12), "Mill/Example");
  EXPECT_EQ(Abbreviated("CN=Mill/O=Example", 11), "Mill/Exampl");
  EXPECT_EQ(Abbreviated("CN=Mill/O=Example", 0), "");
  EXPECT_EQ(Abbreviated("CN=Mühle", 2), "M");
}

TEST_F(Names, FailByFaults) {
  StandinSetFaults(R"([{"entry": "DNAbbreviate", "call": 2, "status": 77}])");
  EXPECT_EQ(StatusFor("A"), 0);
  EXPECT_EQ(StatusFor("A"), 77);
}

TEST_F(Names, AreRecorded) {
  StatusFor("CN=\x01\xE4");
  EXPECT_EQ(RecordedArguments("DNAbbreviate"),
            nlohmann::json({{"flags", 0}, {"name", "CN=ä"}, {"limit", 255}}));
}

}  // namespace larkspan::standin_test
