#include "console/follow/ProgressLine.h"

#include <charconv>

namespace larkspan::console {

namespace {

using Kind = ProgressLine::Kind;

std::optional<std::uint32_t> Number(std::string_view text, int base) {
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<ProgressLine> Numbered(Kind kind, std::string_view text, int base) {
  const std::optional<std::uint32_t> number = Number(text, base);
  if (!number) return std::nullopt;
  return ProgressLine{kind, *number};
}

}  // namespace

std::optional<ProgressLine> ParseProgressLine(std::string_view line) {
  const auto skip = [&line](std::string_view prefix) {
    if (!line.starts_with(prefix)) return false;
    line.remove_prefix(prefix.size());
    return true;
  };
  if (!skip("PROGRESS: ")) return std::nullopt;
  if (skip("DOCUMENT: ")) return Numbered(Kind::kDocument, line, 16);
  if (skip("VIEW: ")) return Numbered(Kind::kView, line, 16);
  if (skip("DOCCOUNT: ")) return Numbered(Kind::kDocumentCount, line, 10);
  if (skip("VIEWCOUNT: ")) return Numbered(Kind::kViewCount, line, 10);
  if (line.starts_with("Opening '")) return ProgressLine{Kind::kOpening};
  if (line == "Exporting database properties") return ProgressLine{Kind::kProperties};
  if (line == "Scanning documents") return ProgressLine{Kind::kScanning};
  return std::nullopt;
}

}  // namespace larkspan::console
