#include "tests/standin/XmlChecker.h"

#include <cctype>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <vector>

namespace larkspan::standin_test {

namespace {

class Checker {
 public:
  explicit Checker(std::string_view document) : rest_(document) {}

  void Document() {
    Characters();
    Need("<?xml version='1.0' encoding='utf-8'?>");
    Blanks();
    Need("<!DOCTYPE ");
    const std::string type = Name();
    Need(">");
    while (Blanks(), Skip("<!--")) Comment();
    if (rest_.substr(1, type.size()) != type) Fail("the root is not the document type");
    do {
      Content();
    } while (!open_.empty());
    Blanks();
    if (!rest_.empty()) Fail("something stands behind the root");
  }

 private:
  [[noreturn]] void Fail(const std::string& message) const {
    throw std::runtime_error(message + " before: " + std::string(rest_.substr(0, 60)));
  }

  bool Skip(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  void Need(std::string_view text) {
    if (!Skip(text)) Fail("missing " + std::string(text));
  }

  void Blanks() {
    while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_[0]))) Next();
  }

  char Next() {
    if (rest_.empty()) Fail("the document ends too soon");
    const char next = rest_[0];
    rest_.remove_prefix(1);
    return next;
  }

  std::string Name() {
    std::string name;
    while (!rest_.empty() && (std::isalnum(static_cast<unsigned char>(rest_[0])) ||
                              (!name.empty() && (rest_[0] == '-' || rest_[0] == '.')))) {
      name += Next();
    }
    if (name.empty() || std::isdigit(static_cast<unsigned char>(name[0]))) Fail("no name");
    return name;
  }

  void Comment() {
    const std::size_t hyphens = rest_.find("--");
    if (hyphens == std::string_view::npos) Fail("a comment has no end");
    rest_.remove_prefix(hyphens);
    Need("-->");
  }

  // One piece: a tag, a reference or a character.
  void Content() {
    if (Skip("<!--")) return Comment();
    if (Skip("</")) return EndTag();
    if (Skip("<")) return StartTag();
    if (open_.empty()) Fail("text outside the root");
    if (Skip("&")) return Reference();
    if (Skip("]]>")) Fail("the end of a section that did not begin");
    Next();
  }

  void EndTag() {
    if (open_.empty() || Name() != open_.back()) Fail("the end tag of another element");
    open_.pop_back();
    Need(">");
  }

  void StartTag() {
    open_.push_back(Name());
    std::set<std::string> attributes;
    for (Blanks(); !Skip(">"); Blanks()) {
      if (Skip("/>")) return open_.pop_back();
      if (!attributes.insert(Name()).second) Fail("an attribute stands twice");
      Need("=");
      AttributeValue();
    }
  }

  void AttributeValue() {
    const char quote = Next();
    if (quote != '\'' && quote != '"') Fail("a value without quotation marks");
    while (!Skip({&quote, 1})) {
      if (Skip("<")) Fail("a tag in a value");
      if (Skip("&")) {
        Reference();
      } else {
        Next();
      }
    }
  }

  void Reference() {
    for (const char* known : {"amp;", "lt;", "gt;", "apos;", "quot;", "#10;", "#13;"}) {
      if (Skip(known)) return;
    }
    Fail("an unknown reference");
  }

  // All bytes are valid UTF-8 and characters that XML allows.
  void Characters() const {
    for (std::size_t i = 0; i < rest_.size(); i += CharacterLength(i)) {
      const auto byte = static_cast<unsigned char>(rest_[i]);
      if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r') Fail("a control character");
    }
  }

  std::size_t CharacterLength(std::size_t i) const {
    const auto lead = static_cast<unsigned char>(rest_[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4) Fail("no UTF-8");
    if (i + length > rest_.size()) Fail("UTF-8 that ends too soon");
    for (std::size_t k = 1; k < length; ++k) {
      if ((static_cast<unsigned char>(rest_[i + k]) & 0xC0) != 0x80) Fail("no UTF-8");
    }
    return length;
  }

  std::string_view rest_;
  std::vector<std::string> open_;
};

}  // namespace

std::string XmlFault(std::string_view document) {
  try {
    Checker(document).Document();
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

}  // namespace larkspan::standin_test
