// What doctor says of a machine: its programs, its Notes library, and the start of that.
#include <filesystem>

#include "tests/console/system/DoctorTest.h"

namespace larkspan::console {
namespace {

// The word sizes of these programs and of the others.
const std::string kOwnBits = sizeof(void*) == 8 ? "64-bit" : "32-bit";
const std::string kOtherBits = sizeof(void*) == 8 ? "32-bit" : "64-bit";

const Lines kBehindTheRuntime = {"user", "database", "size", "list", "notes"};
const Lines kBehindTheNames = {"runtime", "user", "database", "size", "list", "notes"};

class DoctorMachineTest : public DoctorTest {
 protected:
  // Changes bytes of the library that lies beside the programs.
  void PatchLibrary(const std::function<void(std::string& bytes)>& change) const {
    const std::wstring file = programFolder_ + L"\\nnotes.dll";
    std::string bytes = ReadBytes(file);
    change(bytes);
    WriteBytes(file, bytes);
  }
};

TEST_F(DoctorMachineTest, AMachineWithNotesPasses) {
  run_.AddConfiguration("KeyFilename=ids\\tester.id");
  Doctor();
  EXPECT_EQ(code_, 0u) << output_;
  for (const char* name : {"exporter", "library", "names", "notes.ini", "runtime", "user"}) {
    EXPECT_EQ(Result(name), "passed") << name;
    EXPECT_EQ(Advice(name), "") << name;
  }
  EXPECT_TRUE(
      Detail("exporter").ends_with("\\larkspan.exe, version " LARKSPAN_VERSION ", " + kOwnBits))
      << Detail("exporter");
  EXPECT_TRUE(Detail("library").ends_with(
      "\\nnotes.dll, in the folder of larkspan.exe, without a version, " + kOwnBits))
      << Detail("library");
  EXPECT_EQ(Detail("names"), "all 73 that larkspan.exe needs are there");
  EXPECT_TRUE(Detail("notes.ini").ends_with("\\notes.ini"));
  EXPECT_EQ(Detail("runtime"), "it starts and ends in a process of larkspan.exe");
  EXPECT_EQ(Detail("user"), "CN=Larkspan Tester/O=Example");
}

TEST_F(DoctorMachineTest, WhatWasNotAskedForIsNotTried) {
  Doctor();
  for (const char* name : {"database", "size", "list", "notes"}) {
    EXPECT_EQ(Result(name), "not tried");
    EXPECT_EQ(Detail(name), "no --path was given");
  }
  for (const char* name : {"folder", "space", "paths"}) {
    EXPECT_EQ(Result(name), "not tried");
    EXPECT_EQ(Detail(name), "no --out was given");
  }
}

TEST_F(DoctorMachineTest, AConfigurationWithoutAnIdFileIsAWarningAndNoFailure) {
  Doctor();
  EXPECT_EQ(code_, 0u);
  EXPECT_EQ(Result("notes.ini"), "warning");
}

TEST_F(DoctorMachineTest, WithoutTheExporterNothingElseOfItIsTried) {
  UsePrograms(testing::ProgramFolder());
  std::filesystem::remove(programFolder_ + L"\\larkspan.exe");
  Doctor();
  ExpectFailed("exporter", "\\larkspan.exe is not there", {"library"});
  EXPECT_EQ(Detail("notes"), "the check 'exporter' failed");
}

TEST_F(DoctorMachineTest, AnExporterOfAnotherVersionFails) {
  UsePrograms(testing::ProgramFolder());
  std::filesystem::remove(programFolder_ + L"\\larkspan.exe");
  std::filesystem::copy(testing::ProgramFolder() + L"\\larkspan_faulty.exe",
                        programFolder_ + L"\\larkspan.exe");
  Doctor();
  ExpectFailed("exporter", " is without a version, and this program is version " LARKSPAN_VERSION,
               {"library"});
}

TEST_F(DoctorMachineTest, AMachineWithoutTheLibraryFails) {
  UsePrograms(L"");
  Doctor();
  ExpectFailed("library", "Windows finds no nnotes.dll for larkspan.exe", {"names"});
}

TEST_F(DoctorMachineTest, ALibraryOfTheOtherWordSizeFails) {
  UsePrograms(testing::ProgramFolder());
  PatchLibrary([](std::string& bytes) {
    const auto header = static_cast<unsigned char>(bytes[0x3C]);
    const bool to32 = sizeof(void*) == 8;
    bytes.replace(header + 4u, 2, to32 ? "\x4C\x01" : "\x64\x86");
    bytes.replace(header + 24u, 2, to32 ? "\x0B\x01" : "\x0B\x02");
  });
  Doctor();
  ExpectFailed("library", "is " + kOtherBits + ", and larkspan.exe is " + kOwnBits, {"names"});
  EXPECT_EQ(
      Advice("library"),
      "Take the " + kOtherBits + " build of Larkspan, or a machine with a " + kOwnBits + " Notes.");
}

TEST_F(DoctorMachineTest, ALibraryOfAnotherProcessorFails) {
  UsePrograms(testing::ProgramFolder());
  PatchLibrary([](std::string& bytes) {
    const auto header = static_cast<unsigned char>(bytes[0x3C]);
    bytes[header + 4u] = '\x64';
    bytes[header + 5u] = '\xAA';
  });
  Doctor();
  ExpectFailed("library", "for another processor", {"names"});
}

TEST_F(DoctorMachineTest, ALibraryThatIsNoneFails) {
  UsePrograms(testing::ProgramFolder());
  PatchLibrary([](std::string& bytes) { bytes = "no library"; });
  Doctor();
  ExpectFailed("library", "cannot be loaded: it is no program or library of Windows", {"names"});
}

TEST_F(DoctorMachineTest, ALibraryInTheCurrentFolderIsAWarning) {
  UsePrograms(L"");
  std::filesystem::current_path(testing::ProgramFolder());
  Doctor();
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Result("library"), "warning");
  EXPECT_TRUE(Holds(Detail("library"), "in the current folder")) << Detail("library");
  EXPECT_EQ(Result("runtime"), "passed");
}

TEST_F(DoctorMachineTest, ANameThatTheLibraryLacksIsNamed) {
  UsePrograms(testing::ProgramFolder() + L"\\lacking");
  Doctor();
  ExpectFailed("names", "of 73 that larkspan.exe needs 1 is missing: DXLExportACL", {"runtime"});
}

TEST_F(DoctorMachineTest, ANameThatIsLookedUpIsNamedToo) {
  UsePrograms(testing::ProgramFolder() + L"\\bare");
  Doctor();
  ExpectFailed("names", "1 is missing: NSFSearchExtended3", kBehindTheNames);
}

TEST_F(DoctorMachineTest, ALibraryThatCrashesWhileItIsLoadedIsAFinding) {
  UsePrograms(testing::ProgramFolder() + L"\\crashing");
  Doctor();
  EXPECT_EQ(Result("names"), "passed");
  ExpectFailed("runtime", "(C0000", kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, ALibraryThatHangsWhileItIsLoadedIsEnded) {
  UsePrograms(testing::ProgramFolder() + L"\\hanging");
  Doctor({L"--timeout", L"2s"});
  ExpectFailed("runtime", "larkspan.exe gave no sign for 2 s and was ended", kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, AStartThatFailsIsToldWithItsStatus) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "status": 422}])");
  Doctor();
  ExpectFailed("runtime", "Notes initialization failed (1A6)", kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, AStartThatCrashesIsToldWithItsCode) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "action": "accessViolation"}])");
  Doctor();
  ExpectFailed("runtime", "(C0000005, an access violation)", kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, AStartThatEndsTheProcessAsIfAllWereWellIsAFinding) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "action": "exit", "code": 0}])");
  Doctor();
  ExpectFailed("runtime", "larkspan.exe ended by itself, unexpectedly (exit code 0)",
               kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, AnEndOfTheRuntimeThatCrashesIsAWarning) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  Doctor();
  EXPECT_EQ(code_, 0u) << output_;
  EXPECT_EQ(Result("runtime"), "warning");
  EXPECT_EQ(Result("user"), "passed");
}

TEST_F(DoctorMachineTest, AConfigurationThatIsNotThereFails) {
  Doctor({});
  const ConsoleEnd end = Run({L"doctor", L"--notes-ini", run_.folder() + L"\\none.ini"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "notes.ini  failed     ")) << end.output;
  EXPECT_TRUE(Holds(end.output, "\\none.ini is not there\n")) << end.output;
  EXPECT_TRUE(Holds(end.output, "runtime    not tried  the check 'notes.ini' failed\n"))
      << end.output;
}

TEST_F(DoctorMachineTest, ALibraryThatFindsNoConfigurationFails) {
  UsePrograms(testing::ProgramFolder());
  const ConsoleEnd end = Run({L"doctor"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output, "notes.ini  not tried  none is named, and none lies beside"))
      << end.output;
  EXPECT_TRUE(Holds(end.output, "runtime    failed     the library finds no notes.ini\n"))
      << end.output;
}

TEST_F(DoctorMachineTest, TheConfigurationBesideTheLibraryIsFound) {
  UsePrograms(testing::ProgramFolder());
  run_.WriteConfigurationTo(programFolder_ + L"\\notes.ini");
  const ConsoleEnd end = Run({L"doctor"});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_TRUE(Holds(end.output, "\\notes.ini, beside nnotes.dll")) << end.output;
}

TEST_F(DoctorMachineTest, AFolderForTemporaryFilesThatIsNotThereFails) {
  const ReplacedVariable tmp(L"TMP", run_.folder() + L"\\none");
  const ReplacedVariable temp(L"TEMP", run_.folder() + L"\\none");
  Doctor();
  ExpectFailed("runtime", "no folder can be made for temporary files", kBehindTheRuntime);
}

TEST_F(DoctorMachineTest, QuietSaysWhatFailedAlone) {
  const ConsoleEnd good =
      Run({L"doctor", L"--quiet", L"--notes-ini", run_.ConfigurationArgument().substr(1)});
  EXPECT_EQ(good.code, 0u);
  EXPECT_EQ(good.output + good.errors, "");
  const ConsoleEnd bad = Run({L"doctor", L"--quiet", L"--notes-ini", L"Q:\\none.ini"});
  EXPECT_EQ(bad.code, 2u);
  EXPECT_EQ(bad.output, "");
  EXPECT_EQ(bad.errors,
            "larkspan-console: notes.ini: Q:\\none.ini is not there. Name the notes.ini of this "
            "machine's Notes with --notes-ini.\n");
}

TEST_F(DoctorMachineTest, ACommandLineWithAFaultIsRefused) {
  EXPECT_EQ(Run({L"doctor", L"--server", L"Mill"}).code, 1u);
  EXPECT_EQ(Run({L"doctor", L"--quiet", L"--json"}).code, 1u);
  EXPECT_EQ(Run({L"doctor", L"--paht", L"x.nsf"}).code, 1u);
  const ConsoleEnd end = Run({L"doctor", L"--timeout", L"soon"});
  EXPECT_EQ(end.code, 1u);
  EXPECT_EQ(end.errors, "larkspan-console: --timeout takes a time such as 90s, 10m or 2h\n");
  EXPECT_EQ(end.output, "");
}

TEST_F(DoctorMachineTest, HelpHasAnExample) {
  const ConsoleEnd end = Run({L"doctor", L"--help"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(Holds(end.output, "larkspan-console doctor --server Mill/Example")) << end.output;
}

}  // namespace
}  // namespace larkspan::console
