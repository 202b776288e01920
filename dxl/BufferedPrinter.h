// The printer of the XML files that the program writes itself. It gathers what it prints and hands
// it to the file in large pieces: an element is a dozen short texts, and each by itself would cost
// a call of the C runtime.
#pragma once

#include <tinyxml2.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

namespace larkspan {

// How much is gathered before the file gets it.
inline constexpr std::size_t kPrinterBytes = 65536;

// What is left when the printer is let go without Finish never reaches the file. Main thread.
class BufferedPrinter final : public tinyxml2::XMLPrinter {
 public:
  // Indents by four spaces a level. The file must outlive the printer; without one all that is
  // printed is dropped.
  explicit BufferedPrinter(std::FILE* file);

  // Hands on what is left. Returns whether the file has taken all that was ever printed. After a
  // failure it gets nothing more, so that it holds the document's beginning and no gap.
  bool Finish();

 protected:
  void PrintSpace(int depth) override;
  void Write(const char* data, std::size_t size) override;
  void Putc(char character) override;

 private:
  void HandOn(std::string_view text);
  void HandOnGathered();

  std::FILE* file_;
  bool isTaken_;
  std::unique_ptr<char[]> gathered_;
  std::size_t size_ = 0;
};

}  // namespace larkspan
