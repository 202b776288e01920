// The content of the marker file.
#include "report/MarkerFile.h"

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "tests/fuzz/HexText.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/OutputFolder.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

void CheckRewritten(std::uint32_t marker) {
  Require(WriteMarkerFile(marker), "a marker is written");
  Require(ReadMarkerFile() == marker, "what was written is read");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::UseOutputFolder();
  const std::string_view content = fuzz::TextIn(fuzz::InputBytes(data, size));
  fuzz::WriteOutputFile(output::kMarker, content);
  const std::uint32_t marker = ReadMarkerFile();
  const std::string text = fuzz::TextModeContent(content);
  std::string_view rest = text;
  fuzz::Require(
      !fuzz::HasKnownNumbers(text) || marker == fuzz::TakeHexNumber(rest).value_or(kNoNoteId),
      "the marker is the number at the front of the file, or none");
  fuzz::CheckRewritten(marker);
  return 0;
}
