#include "console/page/NotesFacts.h"

#include <cstring>

#include "console/page/XmlFile.h"

namespace larkspan::console {

namespace {

class DatabaseVisitor : public XmlVisitor {
 public:
  void OnStart(int, std::string_view, const XmlAttributes& attributes) override {
    facts = {std::string(attributes["title"]), std::string(attributes["path"]),
             std::string(attributes["replicaid"])};
    hasRoot_ = true;
  }
  void OnText(std::string_view) override {}
  void OnEnd(int, std::string_view) override {}
  bool HasEnough() const override { return hasRoot_; }

  DatabaseFacts facts;

 private:
  bool hasRoot_ = false;
};

bool IsTitleItem(std::string_view item) {
  const std::string name(item);
  return _stricmp(name.c_str(), "$Title") == 0 || _stricmp(name.c_str(), "Title") == 0;
}

// The title is the name of the root, or the first text of the title's item: a view that has
// another name in formulas has it in a further one.
class DesignVisitor : public XmlVisitor {
 public:
  void OnStart(int depth, std::string_view name, const XmlAttributes& attributes) override {
    if (depth == 1) {
      facts.isFolder = name == "folder";
      facts.title = attributes["name"];
      hasTitle_ = !facts.title.empty();
    } else if (depth == 2) {
      inTitle_ = name == "item" && IsTitleItem(attributes["name"]);
    } else if (inTitle_) {
      if (name == "text") inText_ = true;
      if (inText_ && name == "break") facts.title += ' ';
    }
  }
  void OnText(std::string_view text) override {
    if (inText_) facts.title += text;
  }
  void OnEnd(int, std::string_view name) override {
    if (inText_ && name == "text") {
      inText_ = false;
      hasTitle_ = !facts.title.empty();
    }
  }
  bool HasEnough() const override { return hasTitle_; }

  DesignFacts facts;

 private:
  bool inTitle_ = false;
  bool inText_ = false;
  bool hasTitle_ = false;
};

}  // namespace

DatabaseFacts ReadDatabaseFacts(const std::wstring& propertiesFile) {
  DatabaseVisitor visitor;
  ReadXmlFile(propertiesFile, visitor);
  return visitor.facts;
}

DesignFacts ReadDesignFacts(const std::wstring& designFile) {
  DesignVisitor visitor;
  ReadXmlFile(designFile, visitor);
  return visitor.facts;
}

}  // namespace larkspan::console
