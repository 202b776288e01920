// The password of an ID file: each way to give it, and that it stands nowhere afterwards.
#include "base/Utf8.h"
#include "tests/console/system/ExportTest.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

constexpr wchar_t kReader[] = L"ids\\no\u00E9.id";
constexpr wchar_t kSecret[] = L"p\u00E2querette";
constexpr char kSecretBytes[] = "p\xC3\xA2querette";

class ExportPasswordTest : public ExportTest {
 protected:
  ExportPasswordTest() { database_ = L"sealed.nsf"; }

  std::wstring PasswordFile(const std::string& bytes) const {
    const std::wstring path = run_.folder() + L"\\Kennwort 日本.txt";
    WriteBytes(path, bytes);
    return path;
  }

  // The one note that is sealed for another reader is lost.
  void ExpectOpenedFor(const ConsoleEnd& end) {
    EXPECT_EQ(end.code, 3u) << end.output << end.errors;
    EXPECT_EQ(FilesIn("data"),
              (Lines{"data/00000902.dxl", "data/0000090A.dxl", "data/0000090E.dxl"}));
  }

  void ExpectSaidNowhere(const ConsoleEnd& end, const std::string& secret) {
    EXPECT_FALSE(Holds(end.output + end.errors, secret));
    for (const auto& [name, content] : testing::ReadOutputTree(out_)) {
      EXPECT_FALSE(Holds(content, secret)) << name;
    }
    for (const std::string& line : run_.LedgerLines()) {
      EXPECT_FALSE(Holds(
          Json::parse(line).at("arguments").at("NotesInitExtended").dump(-1, ' ', false), secret));
    }
  }
};

TEST_F(ExportPasswordTest, ComesFromAFile) {
  const ConsoleEnd end = Export({L"--id-file", kReader, L"--password-file",
                                 PasswordFile(std::string(kSecretBytes) + "\r\nmore"), L"--debug"});
  ExpectOpenedFor(end);
  ExpectSaidNowhere(end, kSecretBytes);
}

TEST_F(ExportPasswordTest, ComesFromTheEnvironment) {
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", kSecret);
  const ConsoleEnd end = Export({L"--id-file", kReader, L"--json", L"--debug"});
  ExpectOpenedFor(end);
  ExpectSaidNowhere(end, kSecretBytes);
}

TEST_F(ExportPasswordTest, ComesFromStandardInput) {
  const auto process = StartExport({L"--id-file", kReader, L"--password-stdin", L"--debug"});
  process->Write(std::string(kSecretBytes) + "\r\n");
  const ConsoleEnd end = process->WaitForEnd();
  ExpectOpenedFor(end);
  ExpectSaidNowhere(end, kSecretBytes);
}

TEST_F(ExportPasswordTest, ComesFromStandardInputWithoutALineEndToo) {
  const auto process = StartExport({L"--id-file", kReader, L"--password-stdin"});
  process->Write(kSecretBytes);
  process->EndInput();
  ExpectOpenedFor(process->WaitForEnd());
}

TEST_F(ExportPasswordTest, TheFileComesBeforeTheEnvironment) {
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"wrong");
  ExpectOpenedFor(Export({L"--id-file", kReader, L"--password-file", PasswordFile(kSecretBytes)}));
}

TEST_F(ExportPasswordTest, TheEnvironmentComesBeforeStandardInput) {
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", kSecret);
  const auto process = StartExport({L"--id-file", kReader, L"--password-stdin"});
  process->Write("wrong\n");
  ExpectOpenedFor(process->WaitForEnd());
}

TEST_F(ExportPasswordTest, WithoutOneTheCommandLineIsRefused) {
  const ConsoleEnd end = Export({L"--id-file", kReader});
  EXPECT_EQ(end.code, 1u);
  EXPECT_TRUE(Holds(end.errors, "--password-file")) << end.errors;
  EXPECT_FALSE(Exists(out_));
}

TEST_F(ExportPasswordTest, StandardInputThatEndsHasNone) {
  const auto process = StartExport({L"--id-file", kReader, L"--password-stdin"});
  process->EndInput();
  EXPECT_EQ(process->WaitForEnd().code, 1u);
}

TEST_F(ExportPasswordTest, AFileThatIsMissingOrEmptyIsRefused) {
  const ConsoleEnd missing =
      Export({L"--id-file", kReader, L"--password-file", run_.folder() + L"\\none"});
  EXPECT_EQ(missing.code, 1u);
  EXPECT_TRUE(Holds(missing.errors, "none' cannot be read")) << missing.errors;
  const ConsoleEnd empty =
      Export({L"--id-file", kReader, L"--password-file", PasswordFile("\r\n")});
  EXPECT_EQ(empty.code, 1u);
  EXPECT_TRUE(Holds(empty.errors, "is empty")) << empty.errors;
}

TEST_F(ExportPasswordTest, AWrongOneCouldNotRunWhicheverWayItCame) {
  const auto expectRefused = [&](const ConsoleEnd& end) {
    EXPECT_EQ(end.code, 2u);
    EXPECT_TRUE(Holds(end.output, "Unable to switch ID (")) << end.output;
    ExpectSaidNowhere(end, "sesame");
    out_ += L"+";
  };
  expectRefused(Export({L"--id-file", kReader, L"--password-file", PasswordFile("sesame")}));
  {
    const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"sesame");
    expectRefused(Export({L"--id-file", kReader}));
  }
  const auto process = StartExport({L"--id-file", kReader, L"--password-stdin"});
  process->Write("sesame\n");
  expectRefused(process->WaitForEnd());
}

// Without an ID file nobody needs it, and what the library starts shall not find it.
TEST_F(ExportPasswordTest, WithoutAnIdFileItIsHandedToNobody) {
  database_ = L"sample.nsf";
  run_.AddConfiguration("StandinProcess=1");
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", kSecret);
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 0u);
  ExpectSaidNowhere(end, kSecretBytes);
}

}  // namespace
}  // namespace larkspan::console
