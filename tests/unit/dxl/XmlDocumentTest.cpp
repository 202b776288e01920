#include "dxl/XmlDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
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
    document.Print([](tinyxml2::XMLPrinter& printer) {
      printer.OpenElement("view");
      printer.OpenElement("total");
      printer.CloseElement();
      printer.CloseElement();
      return true;
    });
    return document.Save(path_);
  }

  // The same of a view that holds a text only.
  Status SaveText(const std::string& text) {
    XmlDocument document;
    document.Print([&](tinyxml2::XMLPrinter& printer) {
      printer.OpenElement("view");
      printer.PushText(text.c_str());
      printer.CloseElement();
      return true;
    });
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
  EXPECT_FALSE(Exists(PathOf(L"a.xml.new")));
}

TEST_F(XmlDocumentTest, DocumentThatIsLetGoLeavesNothing) {
  { XmlDocument document; }
  EXPECT_FALSE(Exists(path_));
  EXPECT_FALSE(Exists(PathOf(L"a.xml.new")));
}

TEST_F(XmlDocumentTest, StageOfARunThatWasEndedIsWrittenOver) {
  WriteBytes(PathOf(L"a.xml.new"), std::string(5000, 'x'));
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
  EXPECT_FALSE(Exists(PathOf(L"a.xml.new")));
}

TEST_F(XmlDocumentTest, LargeDocumentIsCopiedWhole) {
  const std::string text(200000, 'x');
  EXPECT_TRUE(SaveText(text).ok());
  EXPECT_EQ(ReadBytes(path_), std::string(kDeclaration) + "\r\n<view>" + text + "</view>\r\n");
}

// A carriage return in front makes no difference.
TEST_F(XmlDocumentTest, EveryLineFeedGetsACarriageReturn) {
  EXPECT_TRUE(SaveText(std::string(100000, '\n') + "a\r\nb").ok());
  std::string expected;
  for (int i = 0; i < 100000; ++i) expected += "\r\n";
  EXPECT_EQ(ReadBytes(path_),
            std::string(kDeclaration) + "\r\n<view>" + expected + "a\r\r\nb</view>\r\n");
}

// What is copied at once ends before, at and behind the byte.
TEST_F(XmlDocumentTest, CopyEndsAtThatByteWhereverItStands) {
  const std::size_t before = std::string_view(kDeclaration).size() + 7;
  for (std::size_t length = 65535; length <= 65537; ++length) {
    const std::string text(length - before, 'x');
    EXPECT_TRUE(SaveText(text + "\xFF\n").ok());
    EXPECT_EQ(ReadBytes(path_), std::string(kDeclaration) + "\r\n<view>" + text);
  }
}

// No text in UTF-8 has such a byte.
TEST_F(XmlDocumentTest, CopyEndsAtTheFirstByteThatIsNoText) {
  EXPECT_TRUE(SaveText(std::string(70000, 'x') + "\xFFy").ok());
  EXPECT_EQ(ReadBytes(path_), std::string(kDeclaration) + "\r\n<view>" + std::string(70000, 'x'));
}

// It is printed in three pieces.
TEST_F(XmlDocumentTest, DocumentWithAGapIsNotSaved) {
  WriteBytes(path_, "earlier");
  for (const char* const piece : {"1", "2", "3"}) {
    const FileFaults faults(std::string("write (temporary) ") + piece + " diskFull");
    EXPECT_EQ(SaveText(std::string(200000, 'x')).code(), 270) << piece;
    EXPECT_EQ(ReadBytes(path_), "earlier") << piece;
  }
  EXPECT_EQ(LogLines(), Lines(3, unwritten_));
}

TEST_F(XmlDocumentTest, ContentThatIsNotCompleteIsTold) {
  XmlDocument document;
  EXPECT_FALSE(document.Print([](tinyxml2::XMLPrinter&) { return false; }));
}

TEST_F(XmlDocumentTest, WithoutATemporaryFileNothingIsPrinted) {
  const FileFaults faults("open (temporary) * accessDenied");
  XmlDocument document;
  EXPECT_TRUE(document.Print([](tinyxml2::XMLPrinter&) {
    ADD_FAILURE() << "the content is printed";
    return true;
  }));
  EXPECT_FALSE(document.Save(path_).ok());
}

// No name is waited for: these tests would record a pause.
class XmlDocumentPlacementTest : public XmlDocumentTest,
                                 public testing::WithParamInterface<const char*> {
 protected:
  ~XmlDocumentPlacementTest() override { EXPECT_TRUE(recorder_.pauses().empty()); }

  const std::wstring stage_ = PathOf(L"a.xml.new");
  const PauseRecorder recorder_;
};

class XmlDocumentFailureTest : public XmlDocumentPlacementTest {};

TEST_P(XmlDocumentFailureTest, IsLoggedAndTheEarlierFileStays) {
  WriteBytes(path_, "earlier");
  const FileFaults faults(GetParam());
  EXPECT_EQ(Save().code(), 270);
  EXPECT_EQ(ReadBytes(path_), "earlier");
  EXPECT_FALSE(Exists(stage_));
  EXPECT_EQ(LogLines(), Lines{unwritten_});
}

TEST_P(XmlDocumentFailureTest, LeavesNoFileWhereThereWasNone) {
  const FileFaults faults(GetParam());
  EXPECT_FALSE(Save().ok());
  EXPECT_FALSE(Exists(path_));
}

INSTANTIATE_TEST_SUITE_P(
    Files, XmlDocumentFailureTest,
    testing::Values("open (temporary) * accessDenied", "write (temporary) * diskFull",
                    "write (temporary) * diskFull 7", "write (temporary) * noError 7",
                    "flush (temporary) * diskFull", "read (temporary) * accessDenied",
                    "write a.xml.new * diskFull", "write a.xml.new * diskFull 7",
                    "write a.xml.new * noError 7", "close a.xml.new * diskFull",
                    "open a.xml.new * accessDenied; open a.xml * accessDenied",
                    "move a.xml * sharingViolation; open a.xml * sharingViolation"));

// Where there can be no stage, or where it may not take the name.
class XmlDocumentStraightTest : public XmlDocumentPlacementTest {};

TEST_P(XmlDocumentStraightTest, DocumentIsWrittenUnderItsName) {
  WriteBytes(path_, "an earlier one that is longer" + std::string(200, '.'));
  const FileFaults faults(GetParam());
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(path_), kContent);
  EXPECT_FALSE(Exists(stage_));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_P(XmlDocumentStraightTest, HalfOfADocumentIsDeleted) {
  WriteBytes(path_, "earlier");
  const FileFaults faults(std::string(GetParam()) + "; write a.xml * diskFull 7");
  EXPECT_EQ(Save().code(), 270);
  EXPECT_FALSE(Exists(path_));
  EXPECT_EQ(LogLines(), Lines{unwritten_});
}

INSTANTIATE_TEST_SUITE_P(Files, XmlDocumentStraightTest,
                         testing::Values("open a.xml.new * accessDenied",
                                         "move a.xml * sharingViolation"));

TEST_F(XmlDocumentTest, WithoutItsFolderIsNotWaitedFor) {
  const PauseRecorder recorder;
  XmlDocument document;
  EXPECT_EQ(document.Save(PathOf(L"missing\\a.xml")).code(), 270);
  EXPECT_TRUE(recorder.pauses().empty());
}

TEST_F(XmlDocumentTest, TemporaryFileOfExportsIsLeftAlone) {
  WriteBytes(PathOf(L"temp.tmp"), "half a note");
  const FileFaults faults("delete temp.tmp * sharingViolation; open temp.tmp * accessDenied");
  EXPECT_TRUE(Save().ok());
  EXPECT_EQ(ReadBytes(PathOf(L"temp.tmp")), "half a note");
}

}  // namespace
}  // namespace larkspan
