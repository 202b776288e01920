#include "dxl/BufferedPrinter.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/FileSystem.h"
#include "tests/faults/FileFaults.h"

namespace larkspan {
namespace {

using Content = std::function<void(tinyxml2::XMLPrinter&)>;
using Operations = std::vector<std::string>;

// What the printer of the library gathers in memory by itself.
std::string Expected(const Content& content) {
  tinyxml2::XMLPrinter printer;
  content(printer);
  return {printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1};
}

Content Text(std::size_t length, char character = 'x') {
  return [=](tinyxml2::XMLPrinter& printer) {
    printer.OpenElement("text");
    printer.PushText(std::string(length, character).c_str());
    printer.CloseElement();
  };
}

// Three levels, attributes, and characters that are escaped; several times what can be gathered.
void PrintManyElements(tinyxml2::XMLPrinter& printer) {
  printer.PushDeclaration("xml version='1.0' encoding='utf-8'");
  printer.OpenElement("view");
  for (int i = 0; i < 5000; ++i) {
    printer.OpenElement("document");
    printer.PushAttribute("noteId", i);
    printer.OpenElement("text");
    printer.PushText("a < b & c");
    printer.CloseElement();
    printer.CloseElement();
  }
  printer.CloseElement();
}

class BufferedPrinterTest : public testing::Test {
 protected:
  bool Print(const Content& content) {
    BufferedPrinter printer(file_.get());
    content(printer);
    return printer.Finish();
  }

  std::string Printed() const {
    file_system::Flush(file_.get());
    std::rewind(file_.get());
    std::string printed;
    std::array<char, 4096> block;
    while (const std::size_t length = std::fread(block.data(), 1, block.size(), file_.get())) {
      printed.append(block.data(), length);
    }
    return printed;
  }

  const file_system::UniqueFile file_ = file_system::OpenTemporary();
};

TEST_F(BufferedPrinterTest, PrintsWhatTheLibrarysPrinterPrints) {
  EXPECT_TRUE(Print(PrintManyElements));
  EXPECT_EQ(Printed(), Expected(PrintManyElements));
}

TEST_F(BufferedPrinterTest, NothingPrintedIsNothingWritten) {
  const FileFaults record;
  EXPECT_TRUE(Print([](tinyxml2::XMLPrinter&) {}));
  EXPECT_EQ(record.Operations(), Operations());
}

TEST_F(BufferedPrinterTest, WithoutFinishWhatIsLeftIsDropped) {
  { Text(5)(*std::make_unique<BufferedPrinter>(file_.get())); }
  EXPECT_EQ(Printed(), "");
}

TEST_F(BufferedPrinterTest, FinishAgainWritesNothingMore) {
  BufferedPrinter printer(file_.get());
  Text(5)(printer);
  EXPECT_TRUE(printer.Finish());
  EXPECT_TRUE(printer.Finish());
  EXPECT_EQ(Printed(), Expected(Text(5)));
}

TEST_F(BufferedPrinterTest, GoesOnAfterFinish) {
  BufferedPrinter printer(file_.get());
  printer.OpenElement("a");
  EXPECT_TRUE(printer.Finish());
  printer.CloseElement();
  EXPECT_TRUE(printer.Finish());
  EXPECT_EQ(Printed(), "<a/>\n");
}

TEST_F(BufferedPrinterTest, WithoutAFileNothingIsTaken) {
  BufferedPrinter printer(nullptr);
  Text(3 * kPrinterBytes)(printer);
  EXPECT_FALSE(printer.Finish());
}

// The element has 14 bytes besides its text and its line end.
constexpr std::size_t kTags = 14;

TEST_F(BufferedPrinterTest, WhatFitsIsOneWrite) {
  const FileFaults record;
  EXPECT_TRUE(Print(Text(kPrinterBytes - kTags)));
  EXPECT_EQ(record.Operations(), Operations{"write (temporary)"});
}

TEST_F(BufferedPrinterTest, TextThatFillsTheRestIsOneWrite) {
  const FileFaults record;
  EXPECT_TRUE(Print([](tinyxml2::XMLPrinter& printer) {
    printer.OpenElement("text");
    printer.PushText(std::string(kPrinterBytes - std::string_view("<text>").size(), 'x').c_str());
  }));
  EXPECT_EQ(record.Operations(), Operations{"write (temporary)"});
}

TEST_F(BufferedPrinterTest, OneByteMoreIsAnotherWrite) {
  const FileFaults record;
  EXPECT_TRUE(Print(Text(kPrinterBytes - kTags + 1)));
  EXPECT_EQ(record.Operations(), Operations(2, "write (temporary)"));
}

TEST_F(BufferedPrinterTest, LongTextIsOneWriteBetweenTwo) {
  const FileFaults record;
  EXPECT_TRUE(Print(Text(5 * kPrinterBytes)));
  EXPECT_EQ(record.Operations(), Operations(3, "write (temporary)"));
}

// With every length one of the printer's writes, or a single character, meets the end of what can
// be gathered at another place.
class BufferedPrinterEdgeTest : public BufferedPrinterTest,
                                public testing::WithParamInterface<std::size_t> {};

TEST_P(BufferedPrinterEdgeTest, NoByteIsLost) {
  for (std::size_t missing = 0; missing < 40; ++missing) {
    std::rewind(file_.get());
    const std::size_t length = GetParam() - missing;
    ASSERT_TRUE(Print(Text(length)));
    ASSERT_EQ(Printed().substr(0, length + kTags), Expected(Text(length))) << length;
  }
}

TEST_P(BufferedPrinterEdgeTest, NoEscapedCharacterIsLost) {
  const Content content = [](tinyxml2::XMLPrinter& printer) {
    Text(GetParam() - 20)(printer);
    Text(40, '<')(printer);
  };
  EXPECT_TRUE(Print(content));
  EXPECT_EQ(Printed(), Expected(content));
}

INSTANTIATE_TEST_SUITE_P(Lengths, BufferedPrinterEdgeTest,
                         testing::Values(kPrinterBytes + 5, 2 * kPrinterBytes + 5));

// The document takes three writes or more; each plan strikes the second.
class BufferedPrinterFailureTest : public BufferedPrinterTest,
                                   public testing::WithParamInterface<const char*> {};

TEST_P(BufferedPrinterFailureTest, IsToldAndNothingIsWrittenBehindIt) {
  const FileFaults faults(GetParam());
  EXPECT_FALSE(Print(PrintManyElements));
  EXPECT_EQ(faults.Operations(), Operations(2, "write (temporary)"));
}

TEST_P(BufferedPrinterFailureTest, LeavesTheBeginning) {
  const std::string expected = Expected(PrintManyElements);
  const FileFaults faults(GetParam());
  EXPECT_FALSE(Print(PrintManyElements));
  const std::string printed = Printed();
  EXPECT_LT(printed.size(), kPrinterBytes + 8);
  EXPECT_EQ(printed, expected.substr(0, printed.size()));
}

TEST_P(BufferedPrinterFailureTest, StaysToldWhenAllIsPrinted) {
  const FileFaults faults(GetParam());
  BufferedPrinter printer(file_.get());
  PrintManyElements(printer);
  EXPECT_FALSE(printer.Finish());
  EXPECT_FALSE(printer.Finish());
}

INSTANTIATE_TEST_SUITE_P(Faults, BufferedPrinterFailureTest,
                         testing::Values("write (temporary) 2 diskFull",
                                         "write (temporary) 2 diskFull 7",
                                         "write (temporary) 2 noError 7",
                                         "write (temporary) 2- diskFull"));

TEST_F(BufferedPrinterTest, FailureOfTheLastWriteIsTold) {
  const FileFaults faults("write (temporary) 1 noError 7");
  EXPECT_FALSE(Print(Text(100)));
}

TEST_F(BufferedPrinterTest, FailureOfALongTextIsTold) {
  const FileFaults faults("write (temporary) 2 noError 70000");
  EXPECT_FALSE(Print(Text(2 * kPrinterBytes)));
  EXPECT_EQ(faults.Operations(), Operations(2, "write (temporary)"));
}

}  // namespace
}  // namespace larkspan
