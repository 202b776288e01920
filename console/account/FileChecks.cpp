// A file's name says which note it is, and so does the element "noteinfo" within it; a universal ID
// stands there and in unidindex.txt. Files that were exchanged, or belong to another export, show.
#include "console/account/Evidence.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

class FileJudge {
 public:
  FileJudge(const Evidence& evidence, Verdicts& verdicts, const ExportFile& file)
      : evidence_(evidence), verdicts_(verdicts), file_(file), facts_(file.facts) {}

  void Judge() {
    if (!facts_.fault.empty()) {
      Find(facts_.isUnreadable ? "unreadable" : "not-well-formed",
           facts_.isUnreadable ? "cannot be read" : "is not well-formed: " + facts_.fault);
      return;
    }
    if (IsNoteFile(file_.kind) || file_.kind == FileKind::kRawCopy)
      JudgeNoteInfo();
    else if (facts_.noteInfos != 0)
      Find("wrong-note", "holds a note, where none belongs");
  }

 private:
  void JudgeNoteInfo() {
    if (facts_.noteInfos == 0) return Find("no-noteinfo", "does not say which note it is");
    if (facts_.noteInfos > 1) return Find("wrong-note", "says more than once which note it is");
    if (!facts_.noteId) {
      Find("wrong-note", "tells no note ID");
    } else if (*facts_.noteId != file_.id) {
      Find("wrong-note", "holds note " + NoteIdText(*facts_.noteId));
    }
    const UnidLine* const line = verdicts_.IsArchive() ? evidence_.index.Find(file_.id) : nullptr;
    if (line != nullptr && facts_.unid != line->unid)
      Find("wrong-note", "holds a note whose universal ID is another than in unidindex.txt");
  }

  void Find(const char* kind, const std::string& what) {
    std::optional<std::uint32_t> id = file_.id;
    if (file_.kind == FileKind::kAcl || file_.kind == FileKind::kProperties) id.reset();
    verdicts_.AddFinding(kind, id, file_.Name(), file_.Name() + " " + what);
  }

  const Evidence& evidence_;
  Verdicts& verdicts_;
  const ExportFile& file_;
  const DxlFacts& facts_;
};

}  // namespace

void JudgeFiles(const Evidence& evidence, Verdicts& verdicts) {
  for (const ExportFile& file : evidence.files.files) FileJudge(evidence, verdicts, file).Judge();
  for (const Finding& stranger : evidence.files.strangers)
    verdicts.AddFinding(stranger.kind.c_str(), stranger.id, stranger.file, stranger.text);
}

}  // namespace larkspan::console
