// How what is left of a list is shared out, by parts that an earlier run left.
#include "console/follow/SliceCrew.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "console/folder/NoteList.h"
#include "console/show/QuietDisplay.h"
#include "console/text/Utf.h"
#include "tests/console/show/RecordedSink.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using Notes = std::vector<std::uint32_t>;

constexpr std::uint32_t kFirst = 0x902;

// Of the note with this number, from 0 on.
constexpr std::uint32_t Id(std::uint32_t number) { return kFirst + 4 * number; }

class SliceCrewTest : public ::testing::Test {
 protected:
  SliceCrewTest() {
    for (std::uint32_t number = 0; number < 60; ++number) notes_.push_back(Id(number));
    request_.out = WideToUtf8(folder_.path());
    request_.path = "there is none.nsf";
    request_.workers = 2;
  }

  // A part of the notes with these numbers, of which so many are exported.
  std::wstring AddPart(std::uint32_t begin, std::uint32_t end, std::uint32_t done) {
    const Notes notes(notes_.begin() + begin, notes_.begin() + end);
    EXPECT_TRUE(MakePart(folder_.path(), notes));
    const std::wstring part = PartFolder(folder_.path(), notes.front());
    std::string index;
    for (std::uint32_t number = begin; number < begin + done; ++number) {
      WriteBytes(part + L"\\data\\" + NameOf(Id(number)) + L".dxl", "<note/>");
      const std::wstring name = NameOf(Id(number));
      index += std::string(name.begin(), name.end()) + ",A\r\n";
    }
    WriteBytes(part + L"\\unidindex.txt", index);
    if (done == end - begin) End(part);
    return part;
  }

  // As a worker does that comes to the end of its list.
  static void End(const std::wstring& part) {
    WriteBytes(part + L"\\audit.txt", "Database size after archive : 5\r\n");
  }

  static std::wstring NameOf(std::uint32_t note) {
    return PartFolder({}, note).substr(PartFolder({}, note).rfind(L'\\') + 1);
  }

  ExportWork& Work() {
    if (!work_) work_.emplace(request_, around_);
    return *work_;
  }

  SliceCrew& Plan(FirstWorker first = {kFirst - 1}) { return crew_.emplace(Work(), notes_, first); }

  // Begins all that is left; their workers, which find no database, are ended at once.
  std::vector<std::wstring> BeginAll() {
    std::vector<std::wstring> begun;
    while (const std::optional<CrewMember> member = crew_->BeginNext())
      begun.push_back(member->folder);
    return begun;
  }

  // Of the parts that lie in the folder.
  Notes NotesOfParts() const {
    Notes notes;
    const std::optional<std::vector<Part>> parts = ReadParts(folder_.path());
    for (const Part& part : parts.value_or(std::vector<Part>()))
      notes.insert(notes.end(), part.notes.begin(), part.notes.end());
    return notes;
  }

  TempFolder folder_;
  Notes notes_;
  ExportRequest request_;
  RecordedSink sink_;
  QuietDisplay display_{sink_};
  StopRequests stops_;
  std::optional<LineSource> input_;
  std::wstring password_;
  ExportSurroundings around_{display_, stops_, input_, {}, password_};
  std::optional<ExportWork> work_;
  std::optional<SliceCrew> crew_;
};

TEST_F(SliceCrewTest, ANewListIsBegunInItsOrderAndEachSliceOnce) {
  Plan();
  EXPECT_EQ(crew_->done(), 0u);
  EXPECT_TRUE(crew_->LeadingParts().empty());
  const std::vector<std::wstring> begun = BeginAll();
  EXPECT_GT(begun.size(), 2u);
  EXPECT_TRUE(std::is_sorted(begun.begin(), begun.end()));
  EXPECT_EQ(std::set(begun.begin(), begun.end()).size(), begun.size());
  EXPECT_EQ(NotesOfParts(), notes_);
  EXPECT_FALSE(crew_->BeginNext());
  EXPECT_FALSE(crew_->IsWhole());
}

TEST_F(SliceCrewTest, OnlyTheNotesBehindTheFirstWorkerAreShared) {
  Plan({Id(9)});
  EXPECT_EQ(BeginAll().front(), PartFolder(folder_.path(), Id(10)));
  EXPECT_EQ(NotesOfParts(), Notes(notes_.begin() + 10, notes_.end()));
}

// Of an earlier run with more workers, which was cut off: one part is done, one half, and between
// them are notes that nobody has begun.
TEST_F(SliceCrewTest, PartsStayAsTheyAreAndWhatLiesBetweenIsShared) {
  for (const std::uint32_t workers : {1u, 2u, 5u, 16u}) {
    std::filesystem::remove_all(folder_ / L"\\parts");
    request_.workers = workers;
    work_.reset();
    const std::wstring done = AddPart(10, 18, 8);
    const std::wstring half = AddPart(30, 37, 3);
    const std::wstring unbegun = AddPart(50, 52, 0);
    Plan();
    EXPECT_EQ(crew_->done(), 11u);
    EXPECT_EQ(crew_->DoneFolders(), std::vector{done});
    EXPECT_TRUE(crew_->LeadingParts().empty()) << "the first notes have no part yet";
    const std::vector<std::wstring> begun = BeginAll();
    EXPECT_EQ(begun.front(), PartFolder(folder_.path(), Id(0)));
    EXPECT_TRUE(std::is_sorted(begun.begin(), begun.end()));
    EXPECT_EQ(std::count(begun.begin(), begun.end(), done), 0);
    EXPECT_EQ(std::count(begun.begin(), begun.end(), half), 1);
    EXPECT_EQ(std::count(begun.begin(), begun.end(), unbegun), 1);
    EXPECT_EQ(NotesOfParts(), notes_) << workers;
    EXPECT_EQ(crew_->fault(), "");
  }
}

TEST_F(SliceCrewTest, LeadingPartsEndWithTheFirstThatIsNotDone) {
  AddPart(0, 8, 8);
  AddPart(8, 16, 16 - 8);
  AddPart(16, 24, 2);
  AddPart(24, 60, 36);
  Plan();
  EXPECT_EQ(crew_->done(), 54u);
  std::vector<Part> leading = crew_->LeadingParts();
  ASSERT_EQ(leading.size(), 3u);
  EXPECT_EQ(leading.back().notes.front(), Id(16));
  EXPECT_EQ(BeginAll(), std::vector{PartFolder(folder_.path(), Id(16))});
  EXPECT_FALSE(crew_->IsWhole());
  End(PartFolder(folder_.path(), Id(16)));
  EXPECT_TRUE(crew_->IsWhole());
  EXPECT_EQ(crew_->LeadingParts().size(), 4u);
}

// A part behind a gap is not joined before what fills the gap.
TEST_F(SliceCrewTest, LeadingPartsEndBeforeAGap) {
  AddPart(0, 8, 8);
  AddPart(16, 60, 44);
  Plan();
  ASSERT_EQ(crew_->LeadingParts().size(), 1u);
  EXPECT_EQ(crew_->LeadingParts().front().notes.front(), Id(0));
  EXPECT_FALSE(crew_->IsWhole());
  for (const std::wstring& part : BeginAll()) End(part);
  EXPECT_TRUE(crew_->IsWhole());
}

TEST_F(SliceCrewTest, WhenAllPartsAreDoneNothingIsBegun) {
  AddPart(0, 30, 30);
  AddPart(30, 60, 30);
  Plan();
  EXPECT_EQ(crew_->done(), 60u);
  EXPECT_TRUE(BeginAll().empty());
  EXPECT_TRUE(crew_->IsWhole());
  EXPECT_EQ(crew_->LeadingParts().size(), 2u);
}

TEST_F(SliceCrewTest, APartWhoseListIsNotWholeIsMadeAnew) {
  const std::wstring part = AddPart(10, 18, 0);
  WriteBytes(part + L"\\idtable.txt", "0000092A\r\n0000");
  DeleteFileW((part + L"\\unidindex.txt").c_str());
  Plan();
  EXPECT_FALSE(Exists(part));
  BeginAll();
  EXPECT_EQ(NotesOfParts(), notes_);
}

TEST_F(SliceCrewTest, APartOfOtherNotesIsRefused) {
  for (const Notes& notes : {Notes{Id(3), Id(5)}, Notes{Id(3) + 1}, Notes{Id(60)}}) {
    std::filesystem::remove_all(folder_ / L"\\parts");
    EXPECT_TRUE(MakePart(folder_.path(), notes));
    Plan();
    EXPECT_TRUE(BeginAll().empty());
    EXPECT_NE(crew_->fault().find("is no part of idtable.txt"), std::string::npos);
    EXPECT_FALSE(crew_->IsWhole());
    EXPECT_TRUE(crew_->LeadingParts().empty());
    EXPECT_EQ(NotesOfParts(), notes);
  }
}

// It was tried once more, and ended its worker again.
TEST_F(SliceCrewTest, ANoteOfAPartThatWasTriedTwiceIsTold) {
  const std::wstring part = AddPart(10, 18, 2);
  WriteBytes(part + L"\\marker.txt", "00000932\r\n");
  WriteBytes(part + L"\\unidindex.txt", "0000092A,A\r\n0000092E,A\r\n00000932,A\r\n");
  Work().outcome().resumed.push_back({"2026-11-22T07:40:55Z", Id(12)});
  Plan({Id(9)});
  const std::optional<CrewMember> member = crew_->BeginNext();
  ASSERT_TRUE(member);
  EXPECT_EQ(member->folder, part);
  EXPECT_EQ(member->lostBefore, Id(12));
}

TEST_F(SliceCrewTest, ATryIsRecordedAtOnce) {
  const std::wstring part = AddPart(10, 18, 2);
  WriteBytes(part + L"\\marker.txt", "00000932\r\n");
  WriteBytes(part + L"\\unidindex.txt", "0000092A,A\r\n0000092E,A\r\n00000932,A\r\n");
  Plan({Id(9)});
  const std::optional<CrewMember> member = crew_->BeginNext();
  ASSERT_TRUE(member);
  EXPECT_EQ(member->lostBefore, std::nullopt);
  Outcome outcome;
  ASSERT_EQ(ReadOutcome(folder_.path(), outcome), OutcomeReading::kRead);
  ASSERT_EQ(outcome.resumed.size(), 1u);
  EXPECT_EQ(outcome.resumed[0].triedAgain, Id(12));
}

}  // namespace
}  // namespace larkspan::console
