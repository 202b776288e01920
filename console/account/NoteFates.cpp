// How a listed note gets its one fate:
//   1. It has a file. A line that says it was not exported contradicts that, but for a design note
//      without its raw copy: there the line tells of the copy. A worker that died at it died late.
//      What else is missing of it - raw copy, pictures, index line - is a loss.
//   2. The parts of several workers are joined half, and its file is still to be moved: whatever
//   the
//      log says, it is not lost, and not accounted for.
//   3. It has no file, and a line, or one of a part that is not joined, tells why: it is lost.
//   4. It has neither. After an ERROR that ends a run at a note without naming it, it was not
//      reached; otherwise nothing accounts for it.
#include <algorithm>
#include <array>
#include <span>

#include "console/account/Evidence.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::span<const NoteLine> LinesOf(const RunLogFacts& log, std::uint32_t id) {
  const auto isBefore = [](const NoteLine& line, std::uint32_t wanted) { return line.id < wanted; };
  const auto first = std::lower_bound(log.notes.begin(), log.notes.end(), id, isBefore);
  const auto last =
      std::find_if(first, log.notes.end(), [&](const NoteLine& line) { return line.id != id; });
  return {first, last};
}

const NoteLine* FindLine(std::span<const NoteLine> lines, NoteFault fault) {
  const auto found = std::find_if(lines.begin(), lines.end(),
                                  [&](const NoteLine& line) { return line.fault == fault; });
  return found == lines.end() ? nullptr : &*found;
}

// The note's own files, without its raw copy and without the view of the same ID.
std::span<const ExportFile> NoteFilesOf(const Evidence& evidence, std::uint32_t id) {
  const std::span<const ExportFile> all = evidence.files.OfId(id);
  const auto isNote = [](const ExportFile& file) { return IsNoteFile(file.kind); };
  const auto last = std::find_if_not(all.begin(), all.end(), isNote);
  return all.first(static_cast<std::size_t>(last - all.begin()));
}

class NoteJudge {
 public:
  NoteJudge(const Evidence& evidence, Verdicts& verdicts, std::uint32_t id)
      : evidence_(evidence),
        verdicts_(verdicts),
        id_(id),
        lines_(LinesOf(evidence.log, id)),
        files_(NoteFilesOf(evidence, id)),
        hasRawCopy_(evidence.files.Find(FileKind::kRawCopy, id) != nullptr),
        isHalfJoined_(evidence.halfJoined.contains(id)) {}

  Fate Judge() {
    CheckPlaces();
    const Fate fate = files_.empty() ? JudgeMissing() : JudgeThere();
    CheckIndexLine(fate);
    return fate == Fate::kExported && losesSomething_ ? Fate::kExportedWithLoss : fate;
  }

 private:
  void CheckPlaces() {
    if (files_.size() > 1)
      Find("two-files", files_[1].Name(),
           "is in " + files_[0].Name() + " and in " + files_[1].Name());
    const bool isDesign = evidence_.files.Find(FileKind::kDesign, id_) != nullptr;
    if (hasRawCopy_ && !isDesign) {
      const std::string copy = evidence_.files.Find(FileKind::kRawCopy, id_)->Name();
      Find("stray-raw-copy", copy, "has a raw copy, but no file in design");
    }
  }

  Fate JudgeThere() {
    CheckPictures();
    if (const NoteLine* const line = ContradictingLine()) {
      Find("contradiction", files_[0].Name(),
           std::string("has a file, but log.txt says that it could not be ") +
               WhatFailed(line->fault) + (line->cause.empty() ? "" : " (" + line->cause + ")"));
      return Fate::kContradicted;
    }
    if (const NoteLine* const line = FindLine(lines_, NoteFault::kExport); line && !isHalfJoined_)
      Lose(LossKind::kRawCopy, "raw copy", line->cause);
    if (FindLine(lines_, NoteFault::kDeath) == nullptr) return Fate::kExported;
    JudgeLateDeath();
    return Fate::kWholeDespiteDeath;
  }

  void JudgeLateDeath() {
    verdicts_.AddWarning("worker-death", "a worker died at note " + NoteIdText(id_) +
                                             " after its file " + files_[0].Name() + " was placed");
    if (MayLackRawCopy() && !isHalfJoined_ && FindLine(lines_, NoteFault::kExport) == nullptr)
      Lose(LossKind::kRawCopy, DeathStage(),
           "a worker died at it: its raw copy may be missing, if it was to have one");
  }

  static const char* WhatFailed(NoteFault fault) {
    return fault == NoteFault::kOpen      ? "opened"
           : fault == NoteFault::kDecrypt ? "decrypted"
                                          : "exported";
  }

  const NoteLine* ContradictingLine() const {
    if (const NoteLine* const line = FindLine(lines_, NoteFault::kOpen)) return line;
    if (const NoteLine* const line = FindLine(lines_, NoteFault::kDecrypt)) return line;
    return MayLackRawCopy() ? nullptr : FindLine(lines_, NoteFault::kExport);
  }

  bool MayLackRawCopy() const { return files_[0].kind == FileKind::kDesign && !hasRawCopy_; }

  // Outside an archive all pictures are left out on purpose.
  void CheckPictures() {
    const bool isToldSo = FindLine(lines_, NoteFault::kPictures) != nullptr;
    const bool showsIt = std::any_of(files_.begin(), files_.end(), [](const ExportFile& file) {
      return file.facts.lacksPictures;
    });
    if (isToldSo)
      Lose(LossKind::kPictures, "pictures", "damaged; exported without its pictures");
    else if (showsIt && verdicts_.IsArchive())
      Lose(LossKind::kPictures, "pictures",
           "its pictures were left out; log.txt has no line of it");
  }

  // Of a missing note; null when nothing tells of it.
  const NoteLine* FindLoss() const {
    const auto loss = std::find_if(lines_.begin(), lines_.end(), [](const NoteLine& line) {
      return line.fault != NoteFault::kPictures;
    });
    if (loss != lines_.end()) return &*loss;
    const auto inParts = evidence_.lostInParts.find(id_);
    return inParts == evidence_.lostInParts.end() ? nullptr : &inParts->second;
  }

  Fate JudgeMissing() {
    if (isHalfJoined_) return MissWithoutReason();
    if (const NoteLine* const loss = FindLoss()) {
      const bool died = loss->fault == NoteFault::kDeath;
      Lose(LossKind::kNote, died ? DeathStage() : StageOf(loss->fault),
           died ? DeathCause() : loss->cause);
      return Fate::kLost;
    }
    const std::string& breakOff = evidence_.log.lastBreakOff;
    if (breakOff.empty()) return MissWithoutReason();
    Lose(LossKind::kNote, "run", breakOff);
    return Fate::kNotReached;
  }

  Fate MissWithoutReason() {
    const std::string& error = evidence_.log.lastError;
    std::string text = isHalfJoined_ ? "is in a part that nobody has joined"
                                     : "has neither a file nor a line in log.txt";
    if (!error.empty()) text += "; the log's last ERROR is: " + error;
    verdicts_.CiteError(error);
    Find("unaccounted", "", text);
    return Fate::kUnaccounted;
  }

  // Only the run itself knows that it ended a worker that hung.
  bool HungThere() const {
    const std::vector<Restart>& restarts = evidence_.outcome.restarts;
    return std::any_of(restarts.begin(), restarts.end(), [&](const Restart& restart) {
      return restart.note == id_ && restart.cause == "stall";
    });
  }

  const char* DeathStage() const { return HungThere() ? "stall" : "crash"; }
  const char* DeathCause() const {
    return HungThere() ? "the worker hung at it and was ended" : "a worker died at it";
  }

  // What failed after it was opened has its line as well.
  void CheckIndexLine(Fate fate) {
    const bool wasOpened = !files_.empty() || FindLine(lines_, NoteFault::kDecrypt) != nullptr ||
                           FindLine(lines_, NoteFault::kExport) != nullptr;
    const bool isReadable = evidence_.index.reading != FileReading::kUnreadable;
    if (!evidence_.halfJoined.empty()) return;  // The index may be to follow.
    if (!verdicts_.IsArchive() || !wasOpened || !isReadable || fate == Fate::kNotReached) return;
    if (evidence_.index.Find(id_) == nullptr)
      Lose(LossKind::kIndexLine, "index", "unidindex.txt has no line for it");
  }

  void Lose(LossKind kind, const char* stage, const std::string& cause) {
    losesSomething_ = true;
    verdicts_.AddLoss(kind, id_, stage, cause);
  }

  void Find(const char* kind, const std::string& file, const std::string& what) {
    verdicts_.AddFinding(kind, id_, file, "note " + NoteIdText(id_) + " " + what);
  }

  const Evidence& evidence_;
  Verdicts& verdicts_;
  std::uint32_t id_;
  std::span<const NoteLine> lines_;
  std::span<const ExportFile> files_;
  bool hasRawCopy_;
  bool isHalfJoined_;
  bool losesSomething_ = false;
};

void CountFate(Fate fate, NoteCounts& counts) {
  ++counts.listed;
  switch (fate) {
    case Fate::kExported:
      ++counts.exported;
      break;
    case Fate::kExportedWithLoss:
      ++counts.exported;
      ++counts.exportedWithLoss;
      break;
    case Fate::kWholeDespiteDeath:
      ++counts.exported;
      ++counts.wholeDespiteDeath;
      break;
    case Fate::kLost:
      ++counts.lost;
      break;
    case Fate::kNotReached:
      ++counts.notReached;
      break;
    case Fate::kContradicted:
      ++counts.exported;
      ++counts.contradicted;
      break;
    case Fate::kUnaccounted:
      ++counts.unaccounted;
      break;
  }
}

}  // namespace

void JudgeNotes(const Evidence& evidence, Verdicts& verdicts) {
  for (const std::uint32_t id : evidence.list.ids)
    CountFate(NoteJudge(evidence, verdicts, id).Judge(), verdicts.counts());
  if (verdicts.counts().notReached == 0) return;
  verdicts.CiteError(evidence.log.lastBreakOff);
  verdicts.AddFinding("incomplete", std::nullopt, "log.txt",
                      "the run broke off, and " + std::to_string(verdicts.counts().notReached) +
                          " notes were not reached: " + evidence.log.lastBreakOff);
}

}  // namespace larkspan::console
