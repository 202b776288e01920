#include "dxl/DxlText.h"

#include <algorithm>
#include <array>
#include <string_view>

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

// The printer takes text that ends with a NUL, in as many pieces as it comes.
void WriteRun(tinyxml2::XMLPrinter& printer, std::string_view run) {
  std::array<char, 512> piece;
  while (!run.empty()) {
    const std::size_t length = run.copy(piece.data(), piece.size() - 1);
    piece[length] = '\0';
    printer.PushText(piece.data());
    run.remove_prefix(length);
  }
}

bool IsText(unsigned char byte) { return byte >= 0x20 || byte == '\t'; }

bool IsBreak(unsigned char byte) { return byte == '\0' || byte == '\n' || byte == '\r'; }

void WriteCharacter(tinyxml2::XMLPrinter& printer, unsigned char byte) {
  if (IsBreak(byte)) {
    WriteBreak(printer);
  } else {
    WriteNonXmlCharacter(printer, byte);
  }
}

}  // namespace

void WriteDxlText(tinyxml2::XMLPrinter& printer, const char* utf8, std::int32_t length) {
  std::string_view rest(utf8, static_cast<std::size_t>(std::max<std::int32_t>(length, 0)));
  while (!rest.empty()) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), IsText);
    const auto runLength = static_cast<std::size_t>(end - rest.begin());
    WriteRun(printer, rest.substr(0, runLength));
    if (end == rest.end()) return;
    WriteCharacter(printer, static_cast<unsigned char>(*end));
    rest.remove_prefix(runLength + 1);
  }
}

}  // namespace larkspan
