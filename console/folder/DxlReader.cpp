// No handler asks for external entities, so none is opened, and the parser itself ends an expansion
// that grows beyond a hundred times the file.
#include "console/folder/DxlReader.h"

#include <expat.h>

#include <charconv>
#include <new>
#include <string_view>

#include "base/PictureText.h"
#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

constexpr int kPiece = 65536;

// Finds a text in character data that comes in pieces. No beginning of the text comes again within
// it, so after a letter that differs only the text's first can go on.
class TextFinder {
 public:
  void Begin() { matched_ = 0; }

  bool Take(std::string_view piece) {
    for (const char letter : piece) {
      if (letter != kText[matched_]) matched_ = 0;
      if (letter == kText[matched_] && ++matched_ == kText.size()) {
        matched_ = 0;
        return true;
      }
    }
    return false;
  }

 private:
  static constexpr std::string_view kText = kRemovedPictureText;
  static_assert(kText.rfind(kText.front()) == 0);
  std::size_t matched_ = 0;
};

std::optional<std::uint32_t> ParseHexNumber(std::string_view text) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number, 16);
  if (fault != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

class DxlReader::Parser {
 public:
  Parser() : parser_(XML_ParserCreate(nullptr)) {
    if (parser_ == nullptr) throw std::bad_alloc();
  }

  ~Parser() { XML_ParserFree(parser_); }
  Parser(const Parser&) = delete;
  Parser& operator=(const Parser&) = delete;

  DxlFacts Read(const std::wstring& path) {
    Begin();
    SharedFile file(path);
    if (file.state() != FileReading::kRead || !ReadPieces(file)) {
      facts_.isUnreadable = true;
      facts_.fault = "cannot be read";
    }
    return std::move(facts_);
  }

 private:
  void Begin() {
    facts_ = DxlFacts();
    depth_ = 0;
    finder_.Begin();
    XML_ParserReset(parser_, nullptr);
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, &StartElement, &EndElement);
    XML_SetCharacterDataHandler(parser_, &Characters);
  }

  // False when the system refuses, or has no memory left for a single tag.
  bool ReadPieces(SharedFile& file) {
    while (true) {
      void* const buffer = XML_GetBuffer(parser_, kPiece);
      if (buffer == nullptr) return false;
      const std::optional<std::size_t> size =
          file.Read({static_cast<char*>(buffer), std::size_t{kPiece}});
      if (!size) return false;
      const bool isLast = *size < std::size_t{kPiece};
      if (XML_ParseBuffer(parser_, static_cast<int>(*size), isLast) != XML_STATUS_OK) {
        NoteFault();
        return true;
      }
      if (isLast) return true;
    }
  }

  void NoteFault() {
    facts_.fault = std::string(XML_ErrorString(XML_GetErrorCode(parser_))) + " in line " +
                   std::to_string(XML_GetCurrentLineNumber(parser_));
  }

  static void XMLCALL StartElement(void* self, const XML_Char* name, const XML_Char** attributes) {
    static_cast<Parser*>(self)->Start(name, attributes);
  }

  static void XMLCALL EndElement(void* self, const XML_Char*) {
    auto* const parser = static_cast<Parser*>(self);
    --parser->depth_;
    parser->finder_.Begin();
  }

  static void XMLCALL Characters(void* self, const XML_Char* text, int length) {
    auto* const parser = static_cast<Parser*>(self);
    if (parser->finder_.Take({text, static_cast<std::size_t>(length)}))
      parser->facts_.lacksPictures = true;
  }

  void Start(std::string_view name, const XML_Char** attributes) {
    finder_.Begin();
    const bool isChildOfRoot = ++depth_ == 2;
    if (depth_ == 1) facts_.root = name;
    if (isChildOfRoot && name == "noteinfo" && ++facts_.noteInfos == 1) TakeNoteInfo(attributes);
  }

  void TakeNoteInfo(const XML_Char** attributes) {
    for (; attributes[0] != nullptr; attributes += 2) {
      const std::string_view name = attributes[0];
      if (name == "noteid") facts_.noteId = ParseHexNumber(attributes[1]);
      if (name == "unid") facts_.unid = ParseUnid(attributes[1]);
    }
  }

  XML_Parser parser_;
  DxlFacts facts_;
  std::uint64_t depth_ = 0;
  TextFinder finder_;
};

DxlReader::DxlReader() : parser_(std::make_unique<Parser>()) {}
DxlReader::~DxlReader() = default;

DxlFacts DxlReader::Read(const std::wstring& path) { return parser_->Read(path); }

}  // namespace larkspan::console
