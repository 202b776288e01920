// Sealed notes: only with the ID of someone who may read them.
#include "tests/support/ScopedEnvironmentVariable.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class SealedSystemTest : public SystemTest {
 protected:
  void ExportAs(const std::wstring& idFile, const std::wstring& password) {
    run_.Export(L"sealed.nsf", {L"-archive", L"-id", idFile, L"-password", password});
  }
};

std::string NotDecrypted(const std::string& noteId, const std::string& why) {
  return "#WARNING# - Major: Error decrypting note " + noteId + " (" + why + ")";
}

constexpr char kNoKey[] = "Document cannot be decrypted: the key is missing from the ID file";
constexpr char kForOthers[] = "Document is encrypted for other users";

TEST_F(SealedSystemTest, WithoutAnIdEverySealedNoteIsReportedAndSkipped) {
  run_.Export(L"sealed.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), (Lines{NotDecrypted("00000906", kNoKey), NotDecrypted("0000090A", kNoKey),
                               NotDecrypted("0000090E", kNoKey)}));
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_EQ(Calls(0, "SECKFMOpen"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SealedSystemTest, WithoutAPasswordTheIdIsNotTried) {
  run_.Export(L"sealed.nsf", {L"-archive", L"-id", L"ids\\imke.id"});
  EXPECT_EQ(LogLines().size(), 3u);
  EXPECT_EQ(Calls(0, "SECKFMOpen"), 0);
}

TEST_F(SealedSystemTest, ANoteThatIsNotExportedKeepsItsIndexLineAndCountsAsFailed) {
  run_.Export(L"sealed.nsf", {L"-archive"});
  EXPECT_EQ(OutputLines(L"unidindex.txt").size(), 4u);
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 4, .data = 1, .failed = 3}));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

TEST_F(SealedSystemTest, OneReaderGetsWhatIsSealedForHer) {
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  EXPECT_EQ(LogLines(), Lines{NotDecrypted("0000090A", kForOthers)});
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/00000906.dxl", "data/0000090E.dxl"}));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SealedSystemTest, AnotherReaderGetsWhatIsSealedForHim) {
  ExportAs(L"ids\\no\u00E9.id", L"p\u00E2querette");
  EXPECT_EQ(LogLines(), Lines{NotDecrypted("00000906", kForOthers)});
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/0000090A.dxl", "data/0000090E.dxl"}));
}

TEST_F(SealedSystemTest, ADecryptedNoteIsExportedInClear) {
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  const std::string letter = run_.OutputFile(L"data\\00000906.dxl");
  EXPECT_NE(letter.find("<paragraph>The combination of the seed safe is 4711.</paragraph>"),
            std::string::npos);
  EXPECT_EQ(letter.find("encrypted"), std::string::npos);
}

TEST_F(SealedSystemTest, ASealedPictureIsSeenAfterTheDecryption) {
  ExportAs(L"ids\\no\u00E9.id", L"p\u00E2querette");
  // The second exporter, which does not convert, is the one for documents with pictures.
  EXPECT_NE(run_.OutputFile(L"data\\0000090A.dxl").find("<!-- exporter 2;"), std::string::npos);
}

TEST_F(SealedSystemTest, FileAndNoteAreOpenedWithTheOptionsOfTheInterface) {
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  const nlohmann::json arguments = Ledger(0).at("arguments");
  EXPECT_EQ(arguments.at("SECKFMOpen"),
            nlohmann::json({{"idFile", "ids\\imke.id"}, {"options", 1}}));
  EXPECT_EQ(arguments.at("NSFNoteCipherDecrypt"), nlohmann::json({{"options", 1}}));
  EXPECT_EQ(Calls(0, "SECKFMOpen"), 3);
  EXPECT_EQ(Calls(0, "SECKFMClose"), 3);
}

TEST_F(SealedSystemTest, AnIdFileThatCannotBeOpenedAnyMoreFailsItsNotesWithThatStatus) {
  run_.SetFaults(R"([{"entry": "SECKFMOpen", "status": 6408}])");
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  EXPECT_EQ(LogLines(), (Lines{NotDecrypted("00000906", "Wrong password"),
                               NotDecrypted("0000090A", "Wrong password"),
                               NotDecrypted("0000090E", "Wrong password")}));
  EXPECT_EQ(Calls(0, "NSFNoteCipherDecrypt"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SealedSystemTest, ADecryptionThatFailsClosesTheIdFile) {
  run_.SetFaults(R"([{"entry": "NSFNoteCipherDecrypt", "status": 6403}])");
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  EXPECT_EQ(LogLines().front(), NotDecrypted("00000906", "ID file is damaged"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SealedSystemTest, ThePasswordMayComeFromTheEnvironment) {
  const ScopedEnvironmentVariable password(L"LARKSPAN_PASSWORD", L"Rittersporn");
  run_.Export(L"sealed.nsf", {L"-archive", L"-debug", L"-id", L"ids\\imke.id"});
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/00000906.dxl", "data/0000090E.dxl"}));
  for (const auto& [name, content] : run_.Tree()) {
    EXPECT_EQ(content.find("Rittersporn"), std::string::npos) << name;
  }
}

TEST_F(SealedSystemTest, ThePasswordOfTheCommandLineWins) {
  const ScopedEnvironmentVariable password(L"LARKSPAN_PASSWORD", L"wrong");
  ExportAs(L"ids\\imke.id", L"Rittersporn");
  EXPECT_EQ(FilesIn("data").size(), 3u);
}

TEST_F(SealedSystemTest, APasswordInTheEnvironmentIsNothingWithoutAnId) {
  const ScopedEnvironmentVariable password(L"LARKSPAN_PASSWORD", L"Rittersporn");
  run_.Export(L"sealed.nsf", {L"-archive"});
  EXPECT_EQ(LogLines().size(), 3u);
}

}  // namespace
}  // namespace larkspan::testing
