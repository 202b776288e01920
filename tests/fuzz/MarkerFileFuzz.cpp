// The content of the marker file.
#include "app/MarkerFile.h"

#include "app/Settings.h"
#include "base/OutputPaths.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Target.h"
#include "tests/fuzz/windows/HexText.h"
#include "tests/fuzz/windows/OutputFolder.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::UseOutputFolder();
  const std::string_view content = fuzz::TextIn(fuzz::InputBytes(data, size));
  fuzz::WriteOutputFile(output::kMarker, content);
  const std::uint32_t marker = ReadMarkerFile();
  std::string_view text = fuzz::TextModeContent(content);
  fuzz::Require(
      !fuzz::HasKnownNumbers(text) || marker == fuzz::TakeHexNumber(text).value_or(kNoNoteId),
      "the marker is the number at the front of the file, or none");
  return 0;
}
