#include "tests/torture/Subject.h"

#include "tests/support/RunTexts.h"

namespace larkspan::torture {

namespace {

constexpr wchar_t kSampleData[] = L"" LARKSPAN_SAMPLE_DATA_FOLDER;

constexpr std::uint32_t kNoteInTheMiddle = 0x906;

std::vector<Subject> SmallSubjects() {
  const Subject archive{.name = "archive", .dataFolder = kOwnData, .database = L"mixed.nsf"};
  Subject plain = archive;
  plain.name = "plain";
  plain.archive = false;
  plain.fullAccess = true;
  Subject resumed = archive;
  resumed.name = "resumed";
  resumed.resumeAt = kNoteInTheMiddle;
  return {archive, plain, resumed};
}

// As an archive "damaged" has a note at which the library crashes by itself.
std::vector<Subject> SampleSubjects() {
  std::vector<Subject> subjects;
  for (const std::string name : {"sample", "damaged", "sealed", "damaged-views", "empty"}) {
    const std::wstring database = std::wstring(name.begin(), name.end()) + L".nsf";
    Subject subject{.name = name, .dataFolder = kSampleData, .database = database};
    if (name != "damaged") subjects.push_back(subject);
    subject.name += "-plain";
    subject.archive = false;
    subjects.push_back(subject);
  }
  return subjects;
}

}  // namespace

std::vector<Subject> WantedSubjects(const Options& options) {
  std::vector<Subject> subjects = options.samples ? SampleSubjects() : SmallSubjects();
  std::erase_if(subjects, [&](const Subject& each) { return !options.Wants(each.name); });
  return subjects;
}

std::string PlanOfTheEarlierWorker(const Subject& subject, const std::string& action) {
  return R"([{"entry": "DXLExportNote", "note": ")" + testing::NoteIdText(subject.resumeAt) +
         R"(", "chunks": 1, "action": ")" + action + R"("}])";
}

std::wstring IdFileOf(const Subject& subject) {
  return subject.dataFolder == kOwnData ? kIdFile : L"ids\\imke.id";
}

}  // namespace larkspan::torture
