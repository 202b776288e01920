#include "dxl/DxlText.h"

#include <string>

#include "dxl/FormattedAttribute.h"

namespace larkspan {

namespace {

// Both kinds of empty element stand inside the running text, without a line break before them.
constexpr bool kInline = true;

void WriteBreak(tinyxml2::XMLPrinter& printer) {
  printer.OpenElement("break", kInline);
  printer.CloseElement();
}

void WriteNonXmlCharacter(tinyxml2::XMLPrinter& printer, unsigned int code) {
  printer.OpenElement("nonxmlchar", kInline);
  PushFormatted(printer, "value", "%04X", code);
  printer.CloseElement();
}

void Flush(tinyxml2::XMLPrinter& printer, std::string& run) {
  if (!run.empty()) printer.PushText(run.c_str());
  run.clear();
}

bool IsText(unsigned char byte) { return byte >= 0x20 || byte == '\t'; }

bool IsBreak(unsigned char byte) { return byte == '\0' || byte == '\n' || byte == '\r'; }

}  // namespace

void WriteDxlText(tinyxml2::XMLPrinter& printer, const char* utf8, std::int32_t length) {
  std::string run;
  for (std::int32_t i = 0; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (IsText(byte)) {
      run.push_back(utf8[i]);
      continue;
    }
    Flush(printer, run);
    if (IsBreak(byte)) {
      WriteBreak(printer);
    } else {
      WriteNonXmlCharacter(printer, byte);
    }
  }
  Flush(printer, run);
}

}  // namespace larkspan
