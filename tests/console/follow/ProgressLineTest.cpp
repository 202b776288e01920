#include "console/follow/ProgressLine.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

struct TakenLine {
  const char* line;
  ProgressLine::Kind kind;
  std::uint32_t number;
};

constexpr TakenLine kTakenLines[] = {
    {"PROGRESS: Opening 'x.nsf' on ''", ProgressLine::Kind::kOpening, 0},
    {"PROGRESS: Opening 'it's.nsf' on 'Mill/Example'", ProgressLine::Kind::kOpening, 0},
    {"PROGRESS: Exporting database properties", ProgressLine::Kind::kProperties, 0},
    {"PROGRESS: VIEWCOUNT: 12", ProgressLine::Kind::kViewCount, 12},
    {"PROGRESS: VIEWCOUNT: 0", ProgressLine::Kind::kViewCount, 0},
    {"PROGRESS: VIEW: 0000012E", ProgressLine::Kind::kView, 0x12E},
    {"PROGRESS: Scanning documents", ProgressLine::Kind::kScanning, 0},
    {"PROGRESS: DOCCOUNT: 4294967295", ProgressLine::Kind::kDocumentCount, 4294967295u},
    {"PROGRESS: DOCUMENT: FFFFFFF2", ProgressLine::Kind::kDocument, 0xFFFFFFF2},
};

TEST(ProgressLineTest, EachLineOfAWorkerIsTaken) {
  for (const TakenLine& row : kTakenLines) {
    const std::optional<ProgressLine> taken = ParseProgressLine(row.line);
    ASSERT_TRUE(taken) << row.line;
    EXPECT_EQ(taken->kind, row.kind) << row.line;
    EXPECT_EQ(taken->number, row.number) << row.line;
  }
}

TEST(ProgressLineTest, AnythingElseIsNoLine) {
  for (const char* line :
       {"", "PROGRESS:", "PROGRESS: ", "DOCUMENT: 00000902", " PROGRESS: DOCUMENT: 00000902",
        "progress: DOCUMENT: 00000902", "PROGRESS: DOCUMENT: ", "PROGRESS: DOCUMENT: 0000090G",
        "PROGRESS: DOCUMENT: 00000902 ", "PROGRESS: DOCUMENT: 100000902", "PROGRESS: DOCCOUNT: 1A",
        "PROGRESS: DOCCOUNT: -1", "PROGRESS: DOCCOUNT: 4294967296",
        "PROGRESS: VIEWCOUNT: ", "PROGRESS: Scanning documents.", "PROGRESS: Opening x.nsf",
        "PROGRESS: Exporting database properties of x"}) {
    EXPECT_FALSE(ParseProgressLine(line)) << line;
  }
}

}  // namespace
}  // namespace larkspan::console
