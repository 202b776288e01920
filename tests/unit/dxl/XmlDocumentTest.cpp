#include "dxl/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/Utf8.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan {
namespace {

constexpr char kDeclaration[] = "<?xml version='1.0' encoding='utf-8'?>";

class XmlDocumentTest : public NotesFixture {
 protected:
  XmlDocumentTest() { Start(); }

  Status Save() {
    XmlDocument document;
    document.printer().OpenElement("view");
    document.printer().OpenElement("total");
    document.printer().CloseElement();
    document.printer().CloseElement();
    return document.Save(path_);
  }

  const std::wstring path_ = PathOf(L"a.xml");
  const std::string unwritten_ = "#WARNING# - Unable to write " + WideToUtf8(PathOf(L"a.xml"));
};

const std::string kContent =
    std::string(kDeclaration) + "\r\n<view>\r\n    <total/>\r\n</view>\r\n";

TEST_F(XmlDocumentTest, LinesAreIndentedAndEndInCarriageReturnAndLineFeed) {
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(XmlDocumentTest, EarlierFileIsReplaced) {
  WriteBytes(path_, "an earlier one that is longer than what replaces it" + std::string(200, '.'));
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
}

TEST_F(XmlDocumentTest, NothingButTheFileIsLeft) {
  EXPECT_TRUE(Save().ok());
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
}

TEST_F(XmlDocumentTest, DocumentThatIsLetGoLeavesNothing) {
  { XmlDocument document; }
  EXPECT_FALSE(Exists(path_));
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
}

TEST_F(XmlDocumentTest, LeftoverOfACrashedWorkerIsTakenAway) {
  WriteBytes(PathOf(L"temp.tmp"), "half a note");
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
}

TEST_F(XmlDocumentTest, LargeDocumentIsCopiedWhole) {
  XmlDocument document;
  document.printer().OpenElement("view");
  const std::string text(200000, 'x');
  document.printer().PushText(text.c_str());
  document.printer().CloseElement();
  EXPECT_TRUE(document.Save(path_).ok());
  EXPECT_EQ(ReadBytes(path_), std::string(kDeclaration) + "\r\n<view>" + text + "</view>\r\n");
}

// No text in UTF-8 has such a byte.
TEST_F(XmlDocumentTest, CopyEndsAtTheFirstByteThatIsNoText) {
  XmlDocument document;
  document.printer().OpenElement("view");
  document.printer().PushText((std::string(70000, 'x') + "\xFFy").c_str());
  document.printer().CloseElement();
  EXPECT_TRUE(document.Save(path_).ok());
  EXPECT_EQ(ReadBytes(path_), std::string(kDeclaration) + "\r\n<view>" + std::string(70000, 'x'));
}

struct DocumentFailure {
  const char* faults;
  notes_api::STATUS code;
  Lines before;
};

std::vector<DocumentFailure> Failures() {
  const auto fourRetries = [](const std::string& what, const std::string& last) {
    Lines lines;
    for (int made = 1; made <= 4; ++made) {
      lines.push_back("#DEBUG# - Retrying " + what + ": " + std::to_string(made));
    }
    lines.push_back("#WARNING# - " + last);
    return lines;
  };
  return {{"open (temporary) * accessDenied", 270, {}},
          {"write (temporary) * diskFull", 270, {}},
          {"flush (temporary) * diskFull", 270, {}},
          {"read (temporary) * accessDenied", 270, {}},
          {"open temp.tmp * accessDenied", 270, {}},
          {"write temp.tmp * diskFull", 270, {}},
          {"write temp.tmp * diskFull 7", 270, {}},
          {"write temp.tmp * noError 7", 270, {}},
          {"close temp.tmp * diskFull", 270, {}},
          {"delete temp.tmp * sharingViolation", 260,
           fourRetries("delete DXL temporary file",
                       "Unable to delete DXL temporary file (tried retry)")},
          {"move a.xml * sharingViolation", 264,
           fourRetries("move DXL file into place",
                       "Unable to move DXL file into place (tried retry)")}};
}

class XmlDocumentFailureTest : public XmlDocumentTest,
                               public testing::WithParamInterface<DocumentFailure> {};

TEST_P(XmlDocumentFailureTest, IsLoggedAndTheEarlierFileStays) {
  const DocumentFailure& failure = GetParam();
  WriteBytes(path_, "earlier");
  const PauseRecorder recorder;
  const FileFaults faults(failure.faults);
  EXPECT_EQ(Save().code(), failure.code);
  EXPECT_EQ(ReadBytes(path_), "earlier");
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
  Lines lines = failure.before;
  lines.push_back(unwritten_);
  EXPECT_EQ(LogLines(), lines);
}

TEST_P(XmlDocumentFailureTest, LeavesNoFileWhereThereWasNone) {
  const PauseRecorder recorder;
  const FileFaults faults(GetParam().faults);
  EXPECT_FALSE(Save().ok());
  EXPECT_FALSE(Exists(path_));
}

INSTANTIATE_TEST_SUITE_P(Files, XmlDocumentFailureTest, testing::ValuesIn(Failures()));

TEST_F(XmlDocumentTest, MoveThatFailsFourTimesSucceedsAtTheFifth) {
  const PauseRecorder recorder;
  const FileFaults faults("move a.xml 1-4 sharingViolation");
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
  EXPECT_EQ(recorder.pauses(), std::vector<long long>(4, 1000));
}

}  // namespace
}  // namespace larkspan
