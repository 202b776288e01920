#include "tests/torture/Subject.h"

#include "tests/support/RunTexts.h"

namespace larkspan::torture {

namespace {

constexpr wchar_t kSampleData[] = L"" LARKSPAN_SAMPLE_DATA_FOLDER;

constexpr std::uint32_t kNoteInTheMiddle = 0x906;

}  // namespace

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

std::vector<Subject> SampleSubjects() {
  return {{.name = "sample", .dataFolder = kSampleData, .database = L"sample.nsf"},
          {.name = "sealed", .dataFolder = kSampleData, .database = L"sealed.nsf"},
          {.name = "damaged-views", .dataFolder = kSampleData, .database = L"damaged-views.nsf"}};
}

std::string PlanOfTheEarlierWorker(const Subject& subject, const std::string& action) {
  return R"([{"entry": "DXLExportNote", "note": ")" + testing::NoteIdText(subject.resumeAt) +
         R"(", "chunks": 1, "action": ")" + action + R"("}])";
}

std::wstring IdFileOf(const Subject& subject) {
  return subject.dataFolder == kOwnData ? kIdFile : L"ids\\imke.id";
}

}  // namespace larkspan::torture
