// What goes wrong in every listing mode alike, around the work of the mode itself.
#include <gtest/gtest.h>

#include <string>

#include "listing/ScanMode.h"
#include "listing/ServersMode.h"
#include "tests/faults/FileFaults.h"
#include "tests/unit/listing/ListingTest.h"

namespace larkspan {
namespace {

struct Mode {
  const char* name;
  void (*run)();
  const wchar_t* file;
  const char* mainEntry;  // Of the library, where the mode's own work is done.
};

class ListingRunTest : public ListingTest, public testing::WithParamInterface<Mode> {
 protected:
  ListingRunTest() {
    LeaveOutDebugLines();
    SetServer(L"<Local>");
    AddConfiguration("MailServer=Mill");
    WriteData(L"directory.json", R"({"path": "C:\\data", "entries": []})");
    WriteData(L"names.json", "{}");
  }

  static void Run() { GetParam().run(); }

  std::string ListingBytes() const { return ReadBytes(PathOf(GetParam().file)); }
};

TEST_P(ListingRunTest, FileThatCannotBeOpenedIsAnErrorAndStartsNothing) {
  const FileFaults faults("open * 1 accessDenied");
  Configure();
  Run();
  EXPECT_EQ(OnlyError(), "Unable to open output file");
  EXPECT_EQ(Calls("NotesInitExtended"), 0);
}

TEST_P(ListingRunTest, RuntimeThatDoesNotStartIsAnErrorWithItsStatus) {
  ConfigureWithFaults(R"([{"entry": "NotesInitExtended", "status": "0x1A5"}])");
  Run();
  EXPECT_EQ(OnlyError(), "Notes initialization failed (1A5)");
  EXPECT_EQ(ListingBytes(), "");
  EXPECT_EQ(Calls("NotesTerm"), 0);
}

TEST_P(ListingRunTest, IdThatCannotBeSwitchedIsAnErrorAndEndsTheRuntime) {
  ChangeSettings([](Settings& settings) {
    settings.idFile = L"missing.id";
    settings.idPassword = L"secret";
  });
  Configure();
  Run();
  EXPECT_TRUE(OnlyError().starts_with("Unable to switch id (")) << OnlyError();
  EXPECT_EQ(ListingBytes(), "");
  EXPECT_EQ(Calls("NotesTerm"), 1);
}

TEST_P(ListingRunTest, ExceptionOutOfTheLibraryIsAnErrorAndEndsTheRuntime) {
  ConfigureWithFaults(std::string(R"([{"entry": ")") + GetParam().mainEntry +
                      R"(", "action": "throw"}])");
  EXPECT_NO_THROW(Run());
  EXPECT_EQ(OnlyError(), "The listing was ended by an exception");
  EXPECT_EQ(Calls("NotesTerm"), 1);
}

TEST_P(ListingRunTest, ExceptionOutOfTheStartOfTheRuntimeIsTheSameError) {
  ConfigureWithFaults(R"([{"entry": "NotesInitExtended", "action": "throw"}])");
  EXPECT_NO_THROW(Run());
  EXPECT_EQ(OnlyError(), "The listing was ended by an exception");
  EXPECT_EQ(Calls("NotesTerm"), 0);
}

TEST_P(ListingRunTest, ExceptionOutOfTheEndOfTheRuntimeIsAWarning) {
  ConfigureWithFaults(R"([{"entry": "NotesTerm", "call": 1, "action": "throw"}])");
  EXPECT_NO_THROW(Run());
  ASSERT_NE(LogLines(), Lines());
  EXPECT_EQ(LogLines().back(),
            "#WARNING# - The end of the Notes runtime was ended by an exception");
}

TEST_P(ListingRunTest, AnEarlierEndOfTheRuntimeIsNotThatOfALaterListing) {
  Configure();
  Run();
  ConfigureWithFaults(R"([{"entry": "NotesInitExtended", "action": "throw"}])");
  Run();
  ASSERT_NE(LogLines(), Lines());
  EXPECT_EQ(LogLines().back(), "#ERROR# - The listing was ended by an exception");
}

TEST_P(ListingRunTest, ExceptionAtTheEndAfterAnotherIsNotToldAgain) {
  ConfigureWithFaults(std::string(R"([{"entry": ")") + GetParam().mainEntry +
                      R"(", "call": 1, "action": "throw"},
                          {"entry": "NotesTerm", "call": 1, "action": "throw"}])");
  EXPECT_NO_THROW(Run());
  EXPECT_EQ(OnlyError(), "The listing was ended by an exception");
}

TEST_P(ListingRunTest, PasswordDoesNotStayInTheSettings) {
  ChangeSettings([](Settings& settings) { settings.idPassword = L"secret"; });
  Configure();
  Run();
  EXPECT_EQ(ProcessSettings().idPassword, L"");
}

INSTANTIATE_TEST_SUITE_P(Modes, ListingRunTest,
                         testing::Values(Mode{"Scan", RunScanMode, L"scan.txt", "NSFSearch"},
                                         Mode{"Servers", RunServersMode, L"servers.txt",
                                              "NAMELookup"}),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace larkspan
