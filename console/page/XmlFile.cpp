#include "console/page/XmlFile.h"

#include <expat.h>

#include <memory>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

constexpr int kPiece = 64 * 1024;

struct ParserCloser {
  void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using UniqueParser = std::unique_ptr<XML_ParserStruct, ParserCloser>;

struct Reading {
  XML_Parser parser;
  XmlVisitor& visitor;
  int depth = 0;
  bool stopped = false;

  // The parser hands over what belongs to the same start tag even after it was stopped.
  template <typename Event>
  void Tell(Event event) {
    if (stopped) return;
    event();
    stopped = visitor.HasEnough();
    if (stopped) XML_StopParser(parser, XML_FALSE);
  }
};

void XMLCALL OnStart(void* data, const char* name, const char** attributes) {
  Reading& reading = *static_cast<Reading*>(data);
  ++reading.depth;
  reading.Tell([&] { reading.visitor.OnStart(reading.depth, name, XmlAttributes(attributes)); });
}

void XMLCALL OnText(void* data, const char* text, int length) {
  Reading& reading = *static_cast<Reading*>(data);
  reading.Tell([&] { reading.visitor.OnText({text, static_cast<std::size_t>(length)}); });
}

void XMLCALL OnEnd(void* data, const char* name) {
  Reading& reading = *static_cast<Reading*>(data);
  reading.Tell([&] { reading.visitor.OnEnd(reading.depth, name); });
  --reading.depth;
}

XmlEnd Parse(SharedFile& file, Reading& reading) {
  for (bool atEnd = false; !atEnd;) {
    void* const place = XML_GetBuffer(reading.parser, kPiece);
    if (place == nullptr) return XmlEnd::kDamaged;
    const auto bytes = file.Read({static_cast<char*>(place), std::size_t{kPiece}});
    if (!bytes) return XmlEnd::kDamaged;
    atEnd = *bytes < std::size_t{kPiece};
    const XML_Status status = XML_ParseBuffer(reading.parser, static_cast<int>(*bytes), atEnd);
    if (reading.stopped) return XmlEnd::kRead;
    if (status != XML_STATUS_OK) return XmlEnd::kDamaged;
  }
  return XmlEnd::kRead;
}

}  // namespace

std::string_view XmlAttributes::operator[](std::string_view name) const {
  for (const char** pair = pairs_; *pair != nullptr; pair += 2)
    if (name == pair[0]) return pair[1];
  return {};
}

XmlEnd ReadXmlFile(const std::wstring& path, XmlVisitor& visitor) {
  SharedFile file(path);
  if (file.state() != FileReading::kRead) return XmlEnd::kNotOpened;
  const UniqueParser parser(XML_ParserCreate("UTF-8"));
  if (!parser) return XmlEnd::kDamaged;
  Reading reading{parser.get(), visitor};
  XML_SetUserData(parser.get(), &reading);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetCharacterDataHandler(parser.get(), OnText);
  return Parse(file, reading);
}

}  // namespace larkspan::console
