// A note is in order when one of these holds:
//   - Its file is in its folder and is, byte for byte, what the right exporter writes; a design
//     note that has a raw copy has that as well.
//   - Its file is what the exporter without images writes, and a "Minor:" line says so; or what the
//     last resort writes, after damage that the first two met.
//   - A "Major:" line says that it, or its raw copy, is missing.
//   - The run ended before it, or before its raw copy.
#include <algorithm>
#include <string_view>

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/FaultCase.h"

namespace larkspan::torture {

namespace {

using testing::OutputTree;

// Of the files of notes, but for raw copies.
constexpr const char* kNoteFolders[] = {"", "data/", "design/", "profile/"};

class NoteCheck {
 public:
  // Whether the run may have ended between the note's file and its raw copy.
  NoteCheck(const Check& check, const ReferenceNote& note, bool mayEndHere)
      : check_(check), note_(note), mayEndHere_(mayEndHere) {
    name_ = NoteIdText(note.id) + ".dxl";
    for (const std::string& line : check.run.log) {
      if (IsAbout(line, "Major", note.id)) ++majors_;
      if (IsAbout(line, "Minor", note.id)) ++minors_;
    }
  }

  // Whether there is anything of the note. A worker that cannot start leaves the line about the one
  // before it standing once more.
  bool Run() {
    const Variant* const file = FindFile();
    if (majors_ > 1 + FruitlessWorkers()) {
      Find("has more than one \"Major:\" line");
    }
    if (minors_ > 1) Find("has more than one \"Minor:\" line");
    if (file == nullptr) {
      if (majors_ == 0 && !check_.endedEarly) Find("has neither a file nor a line");
      if (check_.run.tree.contains("design2/" + name_)) Find("has a raw copy without its file");
      return majors_ != 0;
    }
    CheckFile(*file);
    CheckRawCopy(*file);
    return true;
  }

 private:
  // Those that ended where they began, up to three in a row.
  int FruitlessWorkers() const {
    const int notStarted = CountMessages(check_.run.log, message::kNoRuntime);
    const int gaveUp = CountMessages(check_.run.log, message::kGivesUp);
    return std::max(notStarted, 2 * gaveUp);
  }

  void Find(const std::string& what) const { check_.Find("note " + name_ + " " + what); }

  bool Explains(unsigned consequence) const { return check_.Explains(consequence, name_); }

  const Variant* Identify(const std::string& text) const {
    const auto found = note_.texts.find(text);
    return found == note_.texts.end() ? nullptr : &found->second;
  }

  // The one file of the note; what is under a final name has to be one of its whole texts.
  const Variant* FindFile() {
    const Variant* found = nullptr;
    for (const char* const folder : kNoteFolders) {
      const auto file = check_.run.tree.find(folder + name_);
      if (file == check_.run.tree.end()) continue;
      if (found != nullptr) Find("has two files");
      if (folder != note_.folder && !Explains(kFileElsewhere)) Find("is in another folder");
      found = Identify(file->second);
      if (found == nullptr) {
        Find("is no text of this note:\n" + file->second);
        found = &kNoText;
      }
    }
    return found;
  }

  // In a note that is still sealed nobody sees pictures. The last resort comes after two exports
  // that fail.
  bool MayBe(const Variant& file) const {
    const int right = note_.hasPictures && file.isReadable ? kNoConvert : kNormal;
    if (file.exporter == right) return true;
    if (file.exporter == kNoImages) return MayHaveFailed(1);
    if (file.exporter == kNoImagesNoConvert) return MayHaveFailed(2);
    return Explains(kOtherExporter);
  }

  bool MayHaveFailed(int exports) const {
    const int more = exports - note_.damage.exports;
    return more <= 0 || (IsDamage(check_.status) && check_.Explains(kTriedAgain, name_, more));
  }

  // Items that were to be deleted can be left; nobody saw what a failing export would have told.
  bool IsRightlyRepaired(const Variant& file) const {
    const bool isRepaired = file.deleted == note_.fieldItems;
    if (isRepaired && file.deleted == 0) return true;
    if (!note_.damage.needsRepair) {
      return file.deleted == 0 || (check_.status == kFormNeedsRepair && Explains(kRepaired) &&
                                   (isRepaired || Explains(kKeepsItems)));
    }
    return isRepaired || Explains(kKeepsItems) || (file.deleted == 0 && Explains(kRepaired));
  }

  void CheckFile(const Variant& file) const {
    if (&file == &kNoText) return;
    if (file.exporter == kNoImages ? minors_ != 1 : minors_ != 0) {
      Find("and its \"Minor:\" lines do not agree");
    } else if (!MayBe(file)) {
      Find("was written by exporter " + std::to_string(file.exporter));
    }
    if (!file.isReadable && !Explains(kStaysSealed)) Find("is still sealed");
    if (!IsRightlyRepaired(file)) Find("has other items");
  }

  void CheckRawCopy(const Variant& file) const {
    const auto copy = check_.run.tree.find("design2/" + name_);
    const bool isThere = copy != check_.run.tree.end();
    const bool isMissing = note_.wantsRawCopy && !isThere;
    if (isMissing && majors_ == 0 && !mayEndHere_ && !Explains(kNoRawCopy)) {
      Find("lacks its raw copy without a line");
    }
    if (!isMissing && majors_ != 0 && !HasCrashLine()) Find("has all its files and a line");
    if (!isThere) return;
    if (!note_.wantsRawCopy) Find("has a raw copy");
    const Variant* const text = Identify(copy->second);
    if (text == nullptr || text->exporter != kRaw) {
      Find("has a raw copy that is none:\n" + copy->second);
    } else if (text->deleted != (file.deleted | note_.rawItems) && !Explains(kKeepsItems)) {
      Find("has a raw copy with other items");
    }
  }

  // A worker can die at a note when everything of it is in place.
  bool HasCrashLine() const {
    return CountMessages(check_.run.log, message::kIncompleteRun + NoteIdText(note_.id)) != 0;
  }

  static constexpr Variant kNoText{};

  const Check& check_;
  const ReferenceNote& note_;
  const bool mayEndHere_;
  std::string name_;
  int majors_ = 0;
  int minors_ = 0;
};

}  // namespace

bool HasFileOf(const ReferenceNote& note, const Outcome& run) {
  const std::string name = NoteIdText(note.id) + ".dxl";
  return std::any_of(std::begin(kNoteFolders), std::end(kNoteFolders),
                     [&](const char* folder) { return run.tree.contains(folder + name); });
}

bool HasFileOfAny(const std::vector<ReferenceNote>& notes, const Outcome& run) {
  return std::any_of(notes.begin(), notes.end(),
                     [&](const ReferenceNote& note) { return HasFileOf(note, run); });
}

// Notes are handled in ascending order, so that an early end can only cost the last of them, and of
// those that were opened, which an archive lists, only the one at which it came.
void CheckNotes(const Check& check) {
  std::uint32_t lastThere = 0;
  for (const ReferenceNote& note : check.reference.notes) {
    if (HasFileOf(note, check.run)) lastThere = note.id;
  }
  const Lines opened = LinesOf(check.run.tree, "unidindex.txt");
  int openedInVain = 0;
  bool isBehindTheEnd = false;
  for (const ReferenceNote& note : check.reference.notes) {
    const bool mayEndHere = check.endedEarly && note.id == lastThere;
    const bool isThere = NoteCheck(check, note, mayEndHere).Run();
    if (isThere && isBehindTheEnd) check.Find("a note is missing before " + NoteIdText(note.id));
    isBehindTheEnd = isBehindTheEnd || !isThere;
    const bool isOpened = std::any_of(opened.begin(), opened.end(), [&](const std::string& line) {
      return line.starts_with(NoteIdText(note.id));
    });
    if (isOpened && !isThere) ++openedInVain;
  }
  if (openedInVain > 1) check.Find("more than one note is missing that was opened");
}

}  // namespace larkspan::torture
