// Tests of several workers, with a database whose slices are known.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/console/system/WorkersTest.h"

namespace larkspan::console {

// Of the note with this number, from 0 on, in a database of DocumentsJson.
inline std::string NoteText(int number) {
  std::array<char, 9> text{};
  std::snprintf(text.data(), text.size(), "%08X", 0x902 + 4 * number);
  return text.data();
}

inline std::string FaultAt(int note, const std::string& action) {
  return R"({"entry": "DXLExportNote", "note": ")" + NoteText(note) + R"(", )" + action + "}";
}

inline std::string Joined(const std::vector<std::string>& faults) {
  std::string text;
  for (const std::string& fault : faults) text += (text.empty() ? "" : ", ") + fault;
  return text;
}

inline const std::string kCrash = R"("action": "accessViolation")";
inline const std::string kHang = R"("action": "hang")";

class ExportWorkersTest : public WorkersTest {
 protected:
  // The worker that lists waits after it has said so, so that as a rule it is stopped before its
  // first note, and the slices are the same.
  void AddNotes(int count, std::vector<std::string> faults = {}) {
    AddNotesListedFor(700, count, std::move(faults));
  }

  // For tests that name a slice: on a busy machine, too, the slices are the same. A short --stall
  // would end that worker.
  void AddNotesInKnownSlices(int count, std::vector<std::string> faults = {}) {
    AddNotesListedFor(3000, count, std::move(faults));
  }

  // Keeps a run of sixty notes from its end for a while: at a note of the last slice.
  static std::string WaitNearTheEnd() { return FaultAt(55, R"("wait": 6000)"); }

  // Exports with three workers until that file is there, and ends the console program by force.
  void CutOff(const std::wstring& awaited) {
    const auto process = StartExport({L"--workers", L"3"});
    AwaitFile(out_ + awaited);
    process->EndByForce();
    process->AwaitNothingLeft();
  }

  static std::vector<std::string> PhasesIn(const std::string& output) {
    std::vector<std::string> phases;
    for (const Json& event : EventsOf(output, "phase")) phases.push_back(event.at("phase"));
    // A run whose first worker is quick is never seen there.
    std::erase(phases, "starting");
    return phases;
  }

  // The texts of the warnings that repeat an error of the log.
  static std::vector<std::string> ErrorsIn(const std::string& output) {
    std::vector<std::string> errors;
    for (const Json& event : EventsOf(output, "warning"))
      if (event.at("warning") == "error-line") errors.push_back(event.at("text"));
    return errors;
  }

  // In a later run, by outcome.json; false also while that cannot be opened.
  bool WasTriedAgain(int note) const {
    try {
      const Json resumed = Outcome().at("resumed");
      return std::any_of(resumed.begin(), resumed.end(), [note](const Json& one) {
        return one.value("triedAgain", "") == NoteText(note);
      });
    } catch (const std::runtime_error&) {
      return false;
    }
  }

  // The notes that lie in a part.
  std::vector<std::wstring> NotesInParts() const {
    std::vector<std::wstring> notes;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(out_ + L"\\parts"))
      if (entry.path().extension() == L".dxl") notes.push_back(entry.path().stem().native());
    return notes;
  }

  // The tree without the parts behind, and without the files of later notes.
  testing::OutputTree NotesUpTo(int last) const {
    testing::OutputTree tree = NotesTree();
    std::erase_if(tree, [&](const auto& entry) {
      return entry.first.starts_with("parts/") ||
             (entry.first.starts_with("data/0") && entry.first.substr(5, 8) > NoteText(last));
    });
    return tree;
  }

 private:
  void AddNotesListedFor(int milliseconds, int count, std::vector<std::string> faults) {
    faults.push_back(R"({"entry": "NSFSearchExtended3", "wait": )" + std::to_string(milliseconds) +
                     "}");
    run_.AddDatabase(database_,
                     testing::DocumentsJson(count, testing::FaultsMember(Joined(faults))));
  }
};

}  // namespace larkspan::console
