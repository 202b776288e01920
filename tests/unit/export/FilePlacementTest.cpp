#include "tests/unit/export/FilePlacementTest.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::BYTE;
using notes_api::DHANDLE;
using notes_api::DWORD;
using notes_api::DxlOutputCallback;
using notes_api::STATUS;

// What the library's exporter does in the tests that script it: it hands over these chunks, calls
// the function before each but the first, and ends with this status.
std::vector<std::string> chunks;
STATUS exportStatus = 0;
std::function<void()> betweenChunks;

STATUS LARKSPAN_NOTES_CALL ScriptedExport(DHANDLE, DxlOutputCallback output, DHANDLE,
                                          void* context) {
  bool isFirst = true;
  for (const std::string& chunk : chunks) {
    if (!isFirst && betweenChunks) betweenChunks();
    isFirst = false;
    output(reinterpret_cast<const BYTE*>(chunk.data()), static_cast<DWORD>(chunk.size()), context);
  }
  return exportStatus;
}

// With an exporter that follows the script.
class ScriptedPlacementTest : public FilePlacementTest {
 protected:
  ScriptedPlacementTest() {
    chunks.clear();
    exportStatus = 0;
    betweenChunks = nullptr;
  }

  Status ExportScripted() {
    const ReplacedEntryPoint replaced("DXLExportNote", ScriptedExport);
    return ExportNote();
  }

  HANDLE HoldTemporaryFile() const {
    const HANDLE held = CreateFileW(temporary_.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(held, INVALID_HANDLE_VALUE);
    return held;
  }

  // Two chunks, before the second of which another program takes hold of the file.
  Status ExportHeld() {
    chunks = {"one", "two"};
    HANDLE held = INVALID_HANDLE_VALUE;
    betweenChunks = [&] { held = HoldTemporaryFile(); };
    const Status status = ExportScripted();
    betweenChunks = nullptr;
    CloseHandle(held);
    return status;
  }
};

TEST_F(FilePlacementTest, NoteIsPlacedUnderItsName) {
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_NE(ReadBytes(final_).find("<noteinfo noteid='902'"), std::string::npos);
  EXPECT_FALSE(Exists(temporary_));
}

TEST_F(FilePlacementTest, AclIsPlacedUnderItsName) {
  EXPECT_TRUE(ExportAclToFile(exporter_, database_).ok());
  EXPECT_TRUE(ReadBytes(PathOf(L"acl.dxl")).ends_with("</acl>\r\n"));
  EXPECT_FALSE(Exists(temporary_));
}

TEST_F(FilePlacementTest, PlacingIsNotLoggedAndNeverWaits) {
  const PauseRecorder recorder;
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(recorder.pauses().size(), 0u);
}

TEST_F(ScriptedPlacementTest, ChunksFollowOneAnother) {
  chunks = {"one ", "", "two ", "three"};
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(ReadBytes(final_), "one two three");
}

TEST_F(ScriptedPlacementTest, LineFeedsBecomeCarriageReturnAndLineFeed) {
  chunks = {"a\nb", "\n", "c\r\n"};
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(ReadBytes(final_), "a\r\nb\r\nc\r\r\n");
}

TEST_F(ScriptedPlacementTest, ChunkMayBeLarge) {
  chunks = {std::string(3000000, 'a'), "b"};
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(ReadBytes(final_), std::string(3000000, 'a') + "b");
}

std::vector<::DWORD> writes;

BOOL WINAPI RecordWrite(HANDLE file, const void* bytes, ::DWORD size, ::DWORD* written,
                        OVERLAPPED* overlapped) {
  writes.push_back(size);
  const auto original = reinterpret_cast<decltype(&WriteFile)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "WriteFile")));
  return original(file, bytes, size, written, overlapped);
}

// The C runtime writes by itself, past this program's own calls.
TEST_F(ScriptedPlacementTest, AChunkIsOneWriteOfTheSystemWhateverItsLength) {
  chunks = {"a", std::string(4097, 'b'), "c\nd", std::string(3000001, 'e')};
  writes.clear();
  const ReplacedEntryPoint replaced("KERNEL32.dll", "WriteFile", RecordWrite);
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(writes, (std::vector<::DWORD>{1, 4097, 4, 3000001}));
}

TEST_F(ScriptedPlacementTest, NothingStaysOpenBetweenChunks) {
  chunks = {"one", "two", "three"};
  int opened = 0;
  betweenChunks = [&] {
    const HANDLE alone = CreateFileW(temporary_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    if (alone == INVALID_HANDLE_VALUE) return;
    ++opened;
    CloseHandle(alone);
  };
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(opened, 2);
}

TEST_F(ScriptedPlacementTest, WrittenChunkIsOnDiskBeforeTheNext) {
  chunks = {"one ", "two"};
  std::string seen;
  betweenChunks = [&] { seen = ReadBytes(temporary_); };
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(seen, "one ");
}

TEST_F(FilePlacementTest, CallbackIsGivenTheBareName) {
  static std::wstring name;
  const ReplacedEntryPoint replaced(
      "DXLExportNote", +[](DHANDLE, DxlOutputCallback, DHANDLE, void* context) -> STATUS {
        name = static_cast<const wchar_t*>(context);
        return 1000;
      });
  EXPECT_EQ(ExportNote().code(), 1000);
  EXPECT_EQ(name, L"temp.tmp");
}

TEST_F(ScriptedPlacementTest, TemporaryFileOfACrashIsDeletedAtTheFirstAttempt) {
  const PauseRecorder recorder;
  WriteBytes(temporary_, "half a note");
  chunks = {"whole"};
  EXPECT_TRUE(ExportScripted().ok());
  EXPECT_EQ(ReadBytes(final_), "whole");
  EXPECT_EQ(recorder.pauses().size(), 0u);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(FilePlacementTest, StatusOfTheExportIsReturned) {
  SetFaults(R"([{"entry": "DXLExportNote", "status": "0x4495"}])");
  EXPECT_EQ(ExportNote().code(), 0x4495);
  SetFaults(R"([{"entry": "DXLExportACL", "status": 1000}])");
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 1000);
}

TEST_F(FilePlacementTest, ExportThatFailsLeavesNoFile) {
  SetFaults(R"([{"entry": "DXLExportNote", "chunks": 2, "status": 1173}])");
  EXPECT_EQ(ExportNote().code(), 1173);
  EXPECT_FALSE(Exists(temporary_));
  EXPECT_FALSE(Exists(final_));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ScriptedPlacementTest, ChunkThatCannotBeWrittenMakesTheExportFail) {
  EXPECT_EQ(ExportHeld().code(), 270);
}

TEST_F(ScriptedPlacementTest, ChunkThatCannotBeWrittenIsADebugLine) {
  EXPECT_FALSE(ExportHeld().ok());
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - Unable to open temp file for writing: temp.tmp"});
}

TEST_F(ScriptedPlacementTest, FurtherChunksAreDropped) {
  chunks = {"one", "two", "three", "four"};
  HANDLE held = INVALID_HANDLE_VALUE;
  betweenChunks = [&] {
    // Held for the second chunk only; the later ones could be written.
    if (held == INVALID_HANDLE_VALUE) {
      held = HoldTemporaryFile();
    } else if (held != nullptr) {
      CloseHandle(held);
      held = nullptr;
    }
  };
  EXPECT_EQ(ExportScripted().code(), 270);
  EXPECT_EQ(LogLines().size(), 1u);
  EXPECT_FALSE(Exists(temporary_));
  EXPECT_FALSE(Exists(final_));
}

TEST_F(ScriptedPlacementTest, FailingOutputWinsOverTheStatusOfTheExport) {
  chunks = {"one"};
  exportStatus = 1173;
  static std::wstring folder;
  folder = temporary_;
  const ReplacedEntryPoint replaced(
      "DXLExportNote",
      +[](DHANDLE exporter, DxlOutputCallback output, DHANDLE note, void* context) -> STATUS {
        CreateDirectoryW(folder.c_str(), nullptr);
        return ScriptedExport(exporter, output, note, context);
      });
  EXPECT_EQ(ExportNote().code(), 270);
}

TEST_F(ScriptedPlacementTest, NextExportForgetsTheFailingOutput) {
  EXPECT_EQ(ExportHeld().code(), 270);
  EXPECT_TRUE(ExportNote().ok());
}

}  // namespace
}  // namespace larkspan
