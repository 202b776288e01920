// One progress line of an export worker.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace larkspan::console {

struct ProgressLine {
  enum class Kind {
    kOpening,
    kProperties,
    kViewCount,
    kView,
    kScanning,
    kDocumentCount,
    kDocument
  };

  Kind kind = Kind::kOpening;
  std::uint32_t number = 0;  // The count, or the ID of the view or note.
};

// No value for a line that is none.
std::optional<ProgressLine> ParseProgressLine(std::string_view line);

}  // namespace larkspan::console
