#include "console/show/StatusLine.h"

#include <gtest/gtest.h>

#include "console/show/PlainLine.h"
#include "console/show/TextWidth.h"

namespace larkspan::console {
namespace {

constexpr Pace kUnknownPace = {};
constexpr Pace kSomePace = {31.2, 142};

RunView AmongDocuments() {
  RunView view;
  view.phase = "documents";
  view.documents = 4'567;
  view.documentsDone = 123;
  view.path = "orders.nsf";
  return view;
}

RunView WithTroubles() {
  RunView view = AmongDocuments();
  view.restarts = 1;
  view.lost = 3;
  view.note = 0x90A;
  view.elapsed = 80'999;
  view.server = "Mill/Example";
  view.path = "archive\\orders.nsf";
  return view;
}

std::string LineOf(const RunView& view, const Pace& pace, int width) {
  const StatusText line = StatusLine(view, pace, width, false);
  EXPECT_EQ(line.columns, ColumnsOf(line.text));
  EXPECT_LT(line.columns, width);
  return line.text;
}

TEST(StatusLineTest, AWideWindowHasEverything) {
  EXPECT_EQ(
      LineOf(WithTroubles(), kSomePace, 200),
      "documents 123/4,567  [----------------------------------------]  2%  31/s  2 min left  "
      "1 restart  3 lost  at 0000090A  Mill/Example!!archive\\orders.nsf");
}

TEST(StatusLineTest, SeveralWorkersHaveANoteEach) {
  RunView view = AmongDocuments();
  view.workers = {{1, 0x90A}, {2, std::nullopt}, {3, 0xA12}};
  EXPECT_NE(LineOf(view, kSomePace, 200).find("  at 0000090A - 00000A12  "), std::string::npos);
}

TEST(StatusLineTest, NotesOfSeveralWorkersAreCutInAUsualWindow) {
  RunView view = AmongDocuments();
  for (std::uint32_t number = 1; number <= 6; ++number)
    view.workers.push_back({number, 0x12A6 + 4 * number});
  EXPECT_EQ(LineOf(view, kSomePace, 80),
            "documents 123/4,567  2%  2 min left  at 12AA 12AE 12B2 12B6 12BA 12BE");
  view.workers.push_back({7, 0});
  EXPECT_EQ(LineOf(view, kSomePace, 80),
            "documents 123/4,567  2%  2 min left  at 12AA 12AE 12B2 12B6 12BA 12BE 0");
  EXPECT_EQ(LineOf(view, kSomePace, 60).find("at "), std::string::npos);
}

TEST(StatusLineTest, JoiningCountsParts) {
  RunView view = AmongDocuments();
  view.phase = "joining";
  view.parts = 40;
  view.partsDone = 10;
  EXPECT_EQ(LineOf(view, {}, 60), "joining 10/40  [#####---------------]  25%  orders.nsf");
}

TEST(StatusLineTest, AUsualWindowLeavesOutWhatMattersLeast) {
  EXPECT_EQ(LineOf(WithTroubles(), kSomePace, 80),
            "documents 123/4,567  2%  31/s  2 min left  1 restart  3 lost  Mill/Ex...ers.nsf");
  EXPECT_EQ(LineOf(AmongDocuments(), kSomePace, 80),
            "documents 123/4,567  [--------------------]  2%  31/s  2 min left  orders.nsf");
}

TEST(StatusLineTest, ANarrowWindowKeepsTheCountsAndTheLosses) {
  EXPECT_EQ(LineOf(WithTroubles(), kSomePace, 40), "documents 123/4,567  2%  3 lost");
  EXPECT_EQ(LineOf(AmongDocuments(), kSomePace, 40), "documents 123/4,567  2%  2 min left");
}

TEST(StatusLineTest, EverythingIsLeftOutInOneOrder) {
  const char* order[] = {"at 0000090A", "31/s", "nsf", "1 restart", "2 min left", "2%", "3 lost"};
  std::size_t gone = 0;
  for (int width = 200; width > 20; --width) {
    const std::string line = LineOf(WithTroubles(), kSomePace, width);
    while (gone < std::size(order) && line.find(order[gone]) == std::string::npos) ++gone;
    for (std::size_t i = 0; i < std::size(order); ++i)
      EXPECT_EQ(line.find(order[i]) == std::string::npos, i < gone) << width << ": " << line;
  }
  EXPECT_EQ(gone, std::size(order));
}

TEST(StatusLineTest, NoWindowIsTooNarrow) {
  for (int width = -1; width < 30; ++width)
    EXPECT_LT(StatusLine(WithTroubles(), kSomePace, width, false).columns, std::max(width, 2));
}

TEST(StatusLineTest, WhatIsNotKnownIsNotTold) {
  EXPECT_EQ(LineOf({}, kUnknownPace, 80), "starting");
  RunView view;
  view.phase = "views";
  EXPECT_EQ(LineOf(view, kUnknownPace, 80), "views");
  view.viewsDone = 3;
  EXPECT_EQ(LineOf(view, kUnknownPace, 80), "views 3");
  view.views = 12;
  EXPECT_EQ(LineOf(view, kUnknownPace, 60),
            "views 3/12  [##########------------------------------]  25%");
  view.phase = "documents";
  EXPECT_EQ(LineOf(view, kUnknownPace, 80), "documents");
}

TEST(StatusLineTest, AnEmptyDatabaseHasNoShare) {
  RunView view;
  view.phase = "documents";
  view.documents = 0;
  EXPECT_EQ(LineOf(view, kUnknownPace, 80), "documents 0/0");
}

TEST(StatusLineTest, AHundredPercentAreAll) {
  RunView view = AmongDocuments();
  view.documents = 1'000'000;
  view.documentsDone = 999'999;
  EXPECT_EQ(PercentOf(view), 99);
  view.documentsDone = 1'000'000;
  EXPECT_EQ(PercentOf(view), 100);
  EXPECT_EQ(LineOf(view, kUnknownPace, 80),
            "documents 1,000,000/1,000,000  [####################]  100%  orders.nsf");
}

TEST(StatusLineTest, ASlowPaceIsToldByTheMinute) {
  EXPECT_NE(LineOf(AmongDocuments(), {4.25, std::nullopt}, 80).find("  4.2/s  "),
            std::string::npos);
  EXPECT_NE(LineOf(AmongDocuments(), {0.05, std::nullopt}, 80).find("  3.0/min  "),
            std::string::npos);
  EXPECT_NE(LineOf(AmongDocuments(), {12'345.6, std::nullopt}, 80).find("  12,346/s  "),
            std::string::npos);
}

TEST(StatusLineTest, AStandstillIsToldInsteadOfThePace) {
  RunView view = WithTroubles();
  view.silence = {"14:05", 0x90A};
  EXPECT_EQ(LineOf(view, kSomePace, 120),
            "documents 123/4,567  2%  1 restart  3 lost  no progress since 14:05  at 0000090A  "
            "Mill/Example!!archive\\orders.nsf");
  EXPECT_EQ(LineOf(view, kSomePace, 40), "no progress since 14:05");
}

TEST(StatusLineTest, WhatWasAskedForIsTold) {
  RunView view = AmongDocuments();
  view.stopRequested = true;
  view.withoutViews = true;
  EXPECT_EQ(LineOf(view, kUnknownPace, 70),
            "documents 123/4,567  2%  without views  stopping  orders.nsf");
  EXPECT_EQ(LineOf(view, kUnknownPace, 40), "documents 123/4,567  2%  stopping");
}

TEST(StatusLineTest, OnThisMachineAPathNeedsNoServer) {
  RunView view;
  view.path = "orders.nsf";
  for (const char* here : {"", "<Local>"}) {
    view.server = here;
    EXPECT_EQ(LineOf(view, kUnknownPace, 80), "starting  orders.nsf");
  }
}

TEST(StatusLineTest, JapaneseNamesFitTheWindow) {
  RunView view = WithTroubles();
  view.path = "\xE5\x80\x89\xE5\xBA\xAB\\\xE6\xB3\xA8\xE6\x96\x87\xE7\xB0\xBF.nsf";
  EXPECT_EQ(LineOf(view, kSomePace, 200).find('\xE5'), LineOf(view, kSomePace, 200).find("!!") + 2);
  for (int width = 20; width < 130; ++width) LineOf(view, kSomePace, width);
}

TEST(StatusLineTest, ANameCannotCommandTheTerminal) {
  RunView view;
  view.path = "a\x1B]0;b\rc";
  EXPECT_EQ(LineOf(view, kUnknownPace, 80), "starting  a?]0;b?c");
}

TEST(StatusLineTest, LossesAreRedWhereColoursWork) {
  const StatusText line = StatusLine(WithTroubles(), kSomePace, 40, true);
  EXPECT_EQ(line.text, "documents 123/4,567  2%  \x1B[31m3 lost\x1B[0m");
  EXPECT_EQ(line.columns, 31);
}

TEST(PlainLineTest, NothingIsCut) {
  EXPECT_EQ(PlainLine(WithTroubles(), kSomePace),
            "0:01:20  documents 123/4,567  2%  31/s  2 min left  1 restart  3 lost  at 0000090A  "
            "Mill/Example!!archive\\orders.nsf");
}

TEST(PlainLineTest, WhatIsNotKnownIsNotTold) { EXPECT_EQ(PlainLine({}, {}), "0:00:00  starting"); }

}  // namespace
}  // namespace larkspan::console
