// A value of an item, which begins with its type word.
#include "dxl/ItemValue.h"

#include "dxl/NumberSettings.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/PrintedXml.h"
#include "tests/fuzz/Target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  const Bytes value = fuzz::InputBytes(data, size);
  fuzz::CheckPrinted(
      [&](tinyxml2::XMLPrinter& printer) { WriteItemValue(printer, GetNumberSettings(), value); },
      [&](const XmlNode& printed) { fuzz::CheckItemValue(printed, value); });
  return 0;
}
