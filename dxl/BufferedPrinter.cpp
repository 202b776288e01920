// The printer below it is told of no file, since it would write each text by itself; all that it
// writes passes Write and Putc.
#include "dxl/BufferedPrinter.h"

#include <cstring>

#include "base/FileSystem.h"

namespace larkspan {

namespace {

constexpr bool kNotCompact = false;

}  // namespace

BufferedPrinter::BufferedPrinter(std::FILE* file)
    : tinyxml2::XMLPrinter(nullptr, kNotCompact),
      file_(file),
      isTaken_(file != nullptr),
      gathered_(std::make_unique_for_overwrite<char[]>(kPrinterBytes)) {}

bool BufferedPrinter::Finish() {
  HandOnGathered();
  return isTaken_;
}

// The printer below would ask for the length of each level anew.
void BufferedPrinter::PrintSpace(int depth) {
  constexpr std::string_view kLevel = "    ";
  for (int i = 0; i < depth; ++i) Write(kLevel.data(), kLevel.size());
}

// What is longer than all that can be gathered needs no gathering.
void BufferedPrinter::Write(const char* data, std::size_t size) {
  if (size > kPrinterBytes - size_) HandOnGathered();
  if (size > kPrinterBytes) return HandOn({data, size});
  std::memcpy(gathered_.get() + size_, data, size);
  size_ += size;
}

void BufferedPrinter::Putc(char character) {
  if (size_ == kPrinterBytes) HandOnGathered();
  gathered_[size_++] = character;
}

void BufferedPrinter::HandOn(std::string_view text) {
  if (isTaken_) isTaken_ = file_system::Write(file_, text) == text.size();
}

void BufferedPrinter::HandOnGathered() {
  if (size_ > 0) HandOn({gathered_.get(), size_});
  size_ = 0;
}

}  // namespace larkspan
