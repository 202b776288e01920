#include "console/account/Evidence.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

void JudgeNoteList(const NoteList& list, Verdicts& verdicts) {
  constexpr char kFile[] = "idtable.txt";
  if (list.reading == FileReading::kMissing)
    verdicts.AddFinding("missing", std::nullopt, kFile,
                        "idtable.txt is missing: nothing tells which notes the export is to hold");
  if (list.reading == FileReading::kUnreadable)
    verdicts.AddFinding("unreadable", std::nullopt, kFile, "idtable.txt cannot be read");
  if (list.faultyLines != 0)
    verdicts.AddFinding(
        "idtable", std::nullopt, kFile,
        std::to_string(list.faultyLines) +
            " lines of idtable.txt are damaged or out of order, the first is line " +
            std::to_string(list.firstFaultyLine));
}

void JudgeIndexLine(const UnidIndex& index, std::size_t i, const NoteList& list,
                    Verdicts& verdicts) {
  constexpr char kFile[] = "unidindex.txt";
  const std::uint32_t id = index.lines[i].id;
  if (i > 0 && index.lines[i - 1].id == id) {
    verdicts.AddFinding("index", id, kFile,
                        "unidindex.txt has different universal IDs for note " + NoteIdText(id));
  } else if (!list.Contains(id)) {
    verdicts.AddFinding(
        "index", id, kFile,
        "unidindex.txt names note " + NoteIdText(id) + ", which idtable.txt does not list");
  }
}

void JudgeIndex(const UnidIndex& index, const NoteList& list, Verdicts& verdicts) {
  constexpr char kFile[] = "unidindex.txt";
  if (index.reading == FileReading::kUnreadable)
    verdicts.AddFinding("unreadable", std::nullopt, kFile, "unidindex.txt cannot be read");
  if (index.faultyLines != 0)
    verdicts.AddFinding("index", std::nullopt, kFile,
                        std::to_string(index.faultyLines) +
                            " lines of unidindex.txt are damaged, the first is line " +
                            std::to_string(index.firstFaultyLine));
  for (std::size_t i = 0; i < index.lines.size(); ++i) JudgeIndexLine(index, i, list, verdicts);
}

}  // namespace

void JudgeLists(const Evidence& evidence, Verdicts& verdicts) {
  JudgeNoteList(evidence.list, verdicts);
  if (verdicts.IsArchive()) JudgeIndex(evidence.index, evidence.list, verdicts);
}

}  // namespace larkspan::console
