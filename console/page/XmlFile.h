// Reading an XML file of any size piece by piece.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::console {

// The attributes of an element. They live as long as the call that hands them over.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}

  // Empty when there is none of this name.
  std::string_view operator[](std::string_view name) const;

 private:
  const char** pairs_;  // Name, value, name, value, and a null pointer.
};

// What a file holds, in its order. Depth 1 is the root.
class XmlVisitor {
 public:
  virtual ~XmlVisitor() = default;
  virtual void OnStart(int depth, std::string_view name, const XmlAttributes& attributes) = 0;
  virtual void OnText(std::string_view text) = 0;
  virtual void OnEnd(int depth, std::string_view name) = 0;

  // Asked after each of these; no more is handed over once it is true.
  virtual bool HasEnough() const { return false; }
};

enum class XmlEnd {
  kNotOpened,
  kRead,     // To its end, or until the visitor had enough.
  kDamaged,  // Not well-formed, or unreadable from some place on.
};

XmlEnd ReadXmlFile(const std::wstring& path, XmlVisitor& visitor);

}  // namespace larkspan::console
