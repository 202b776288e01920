#include <algorithm>
#include <set>
#include <string_view>

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/XmlLoss.h"
#include "tests/torture/XmlWholeness.h"

namespace larkspan::torture {

namespace {

using testing::OutputTree;

class FolderCheck {
 public:
  explicit FolderCheck(const Check& check)
      : check_(check),
        tree_(check.run.tree),
        endedBeforeNotes_(check.endedEarly && !HasFileOfAny(check.reference.notes, check.run)) {}

  void Run() {
    for (const auto& [name, content] : tree_) CheckName(name, content);
    CheckProperties();
    CheckAcl();
    CheckIdTable();
    if (check_.subject.archive) CheckUnidIndex();
    for (const auto& [name, content] : check_.clean.tree) {
      if (name.starts_with("views/")) CheckCleanView(name, content);
    }
  }

 private:
  void Find(const std::string& what) const { check_.Find(what); }

  const std::string* File(const std::string& name) const {
    const auto found = tree_.find(name);
    return found == tree_.end() ? nullptr : &found->second;
  }

  // Notes' files are looked at one by one elsewhere, whichever of their folders they are in.
  bool IsNoteFile(const std::string& name) const {
    if (name.starts_with("views/")) return false;
    const std::string bare = name.substr(name.find('/') + 1);
    return std::any_of(check_.reference.notes.begin(), check_.reference.notes.end(),
                       [&](const auto& note) { return bare == NoteIdText(note.id) + ".dxl"; });
  }

  void CheckName(const std::string& name, const std::string& content) const {
    if (name == "temp.tmp" && check_.mayLeaveHalf) return;
    if (name == check_.mayStay) return;
    if (check_.clean.tree.contains(name) || IsNoteFile(name)) return;
    const bool isOtherView = name.starts_with("views/") && check_.Explains(kViewsDiffer, name);
    if (!isOtherView) {
      Find(name + " was left behind:\n" + content);
    } else if (!IsWholeXml(content)) {
      Find(name + " is not whole:\n" + content);
    }
  }

  void CheckProperties() const {
    const std::string* const file = File("db.dxl");
    if (file == nullptr) {
      if (!endedBeforeNotes_) Find("db.dxl is missing without a line");
    } else if (*file != check_.clean.tree.at("db.dxl") &&
               !IsExplained(kPropertiesDiffer, "db.dxl", *file)) {
      Find("db.dxl differs:\n" + *file);
    }
  }

  void CheckAcl() const {
    const std::string* const file = File("acl.dxl");
    const int lines = CountMessages(check_.run.log, message::kNoAcl);
    if (file != nullptr && *file != check_.reference.acl) Find("acl.dxl differs:\n" + *file);
    if (file != nullptr && lines != 0) Find("acl.dxl is there and has a line");
    if (file == nullptr && lines != 1 && !endedBeforeNotes_) Find("acl.dxl is missing");
  }

  void CheckIdTable() const {
    std::string expected;
    for (const auto& note : check_.reference.notes) expected += NoteIdText(note.id) + "\r\n";
    const std::string* const file = File("idtable.txt");
    if (file == nullptr) {
      if (!endedBeforeNotes_) Find("idtable.txt is missing without a line");
    } else if (*file != expected) {
      Find("idtable.txt differs:\n" + *file);
    }
  }

  // Each note that has a file once and in order; others that were opened may have a line too.
  void CheckUnidIndex() const {
    const Lines lines = LinesOf(tree_, "unidindex.txt");
    auto line = lines.begin();
    for (const ReferenceNote& note : check_.reference.notes) {
      const std::string id = NoteIdText(note.id) + ",";
      const bool isListed =
          line != lines.end() && (*line == id + note.unid || IsUnknown(*line, id));
      if (isListed) ++line;
      if (!isListed && HasFileOf(note, check_.run) && !check_.Explains(kNotIndexed, id)) {
        Find("unidindex.txt lacks " + id + note.unid);
      }
    }
    if (line != lines.end()) Find("unidindex.txt has a strange line: " + *line);
  }

  bool IsUnknown(const std::string& line, const std::string& id) const {
    return line == id + std::string(32, '0') && check_.Explains(kUnidUnknown, id);
  }

  void CheckCleanView(const std::string& name, const std::string& content) const {
    const std::string* const file = File(name);
    if (file == nullptr) {
      if (!endedBeforeNotes_ && !check_.Explains(kViewsDiffer, name)) Find(name + " is missing");
    } else if (*file != content && !IsExplained(kViewsDiffer, name, *file)) {
      Find(name + " differs:\n" + *file);
    }
  }

  // What a call does not tell is missing.
  bool IsExplained(unsigned consequence, const std::string& name, const std::string& text) const {
    const std::string& clean = check_.clean.tree.at(name);
    return check_.Explains(consequence, name) &&
           HasOnlyLost(text, clean, check_.Explains(kOtherTime, name));
  }

  const Check& check_;
  const OutputTree& tree_;
  const bool endedBeforeNotes_;  // What is written before the first note may be missing.
};

}  // namespace

void CheckFolder(const Check& check) { FolderCheck(check).Run(); }

}  // namespace larkspan::torture
