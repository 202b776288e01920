#include "console/folder/TextLines.h"

#include <algorithm>
#include <vector>

namespace larkspan::console {

namespace {

constexpr std::size_t kPiece = 65536;

// Puts lines together from the pieces of a file.
class LineMaker {
 public:
  explicit LineMaker(const std::function<void(const TextLine&)>& visit) : visit_(visit) {}

  void Take(std::string_view piece) {
    while (!piece.empty()) {
      const std::size_t end = piece.find('\n');
      Append(piece.substr(0, end));
      if (end == piece.npos) return;
      HandOver(true);
      piece.remove_prefix(end + 1);
    }
  }

  void End() {
    if (isBegun_) HandOver(false);
  }

 private:
  void Append(std::string_view part) {
    isBegun_ = true;
    const std::size_t room = kPiece - std::min(kPiece, line_.size());
    isCut_ = isCut_ || part.size() > room;
    line_.append(part.substr(0, room));
  }

  void HandOver(bool hasLineFeed) {
    const bool hasReturn = line_.ends_with('\r');
    if (hasReturn) line_.pop_back();
    visit_({line_, ++number_, hasLineFeed && hasReturn && !isCut_});
    line_.clear();
    isBegun_ = isCut_ = false;
  }

  const std::function<void(const TextLine&)>& visit_;
  std::string line_;
  std::uint64_t number_ = 0;
  bool isBegun_ = false;
  bool isCut_ = false;
};

}  // namespace

FileReading ReadTextLines(const std::wstring& path,
                          const std::function<void(const TextLine&)>& visit) {
  SharedFile file(path);
  if (file.state() != FileReading::kRead) return file.state();
  std::vector<char> buffer(kPiece);
  LineMaker lines(visit);
  while (true) {
    const std::optional<std::size_t> size = file.Read(buffer);
    if (!size) return FileReading::kUnreadable;
    lines.Take({buffer.data(), *size});
    if (*size < buffer.size()) break;
  }
  lines.End();
  return FileReading::kRead;
}

}  // namespace larkspan::console
