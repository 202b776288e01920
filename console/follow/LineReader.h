// Lines that come piece by piece.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace larkspan::console {

class LineSplitter {
 public:
  // The lines that are complete now, without their ends.
  std::vector<std::string> Add(std::string_view bytes);

  // What has come behind them.
  std::string TakeRest();

 private:
  std::string rest_;
};

// The lines that are appended to a file, read with all sharing, so that whoever appends, replaces
// or deletes it is not in the way. A file that has become shorter, or was seen to be missing, is
// read from its beginning.
class FileTail {
 public:
  explicit FileTail(std::wstring path) : path_(std::move(path)) {}

  // The lines that have been completed since the last call.
  std::vector<std::string> ReadNewLines();

 private:
  void BeginAnew();

  std::wstring path_;
  std::uint64_t position_ = 0;
  LineSplitter splitter_;
};

}  // namespace larkspan::console
