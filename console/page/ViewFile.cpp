#include "console/page/ViewFile.h"

#include <charconv>
#include <optional>
#include <utility>

#include "console/page/Html.h"
#include "console/page/XmlFile.h"

namespace larkspan::console {

namespace {

// More of a value is not looked at: no character has more than four bytes, and the one after the
// last shows that something is cut off.
constexpr std::size_t kKeptBytes = (kShownCharacters + 1) * 4;

constexpr int kEntryDepth = 2;
constexpr int kValueDepth = 3;

std::optional<EntryKind> KindOf(std::string_view name) {
  if (name == "document") return EntryKind::kDocument;
  if (name == "category") return EntryKind::kCategory;
  if (name == "total") return EntryKind::kTotal;
  if (name == "partial") return EntryKind::kPartial;
  return std::nullopt;
}

unsigned NumberOf(std::string_view text) {
  unsigned number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

bool IsLeaf(std::string_view name) {
  return name == "text" || name == "number" || name == "datetime";
}

class ViewVisitor : public XmlVisitor {
 public:
  explicit ViewVisitor(std::size_t keep) : keep_(keep) {}

  void OnStart(int depth, std::string_view name, const XmlAttributes& attributes) override {
    if (depth == kEntryDepth) {
      BeginEntry(name, attributes);
    } else if (!keeps_) {
      return;
    } else if (depth == kValueDepth) {
      value_.clear();
      isFirstOfPair_ = pairFollows_ = false;
    } else if (name == "datetimepair") {
      isFirstOfPair_ = true;
    } else if (IsLeaf(name)) {
      leaf_.emplace();
    } else if (leaf_) {
      OnText(name == "break" ? " " : "\xEF\xBF\xBD");
    }
  }

  void OnText(std::string_view text) override {
    if (leaf_ && leaf_->size() < kKeptBytes) leaf_->append(text);
  }

  void OnEnd(int depth, std::string_view name) override {
    if (!keeps_) return;
    if (depth == kValueDepth) EndValue();
    if (leaf_ && IsLeaf(name)) EndLeaf(name);
  }

  ViewContent content;

 private:
  void BeginEntry(std::string_view name, const XmlAttributes& attributes) {
    const std::optional<EntryKind> kind = KindOf(name);
    keeps_ = kind && content.first.size() < keep_;
    if (!kind) return;
    ++CountOfKind(*kind);
    const bool conflict = attributes["conflict"] == "true";
    if (conflict) ++content.conflicts;
    if (!keeps_) return;
    content.first.push_back({*kind,
                             std::string(attributes["noteId"]),
                             NumberOf(attributes["indent"]),
                             conflict,
                             {},
                             false});
  }

  std::uint64_t& CountOfKind(EntryKind kind) {
    switch (kind) {
      case EntryKind::kCategory:
        return content.categories;
      case EntryKind::kTotal:
        return content.totals;
      case EntryKind::kPartial:
        return content.partials;
      case EntryKind::kDocument:
        break;
    }
    return content.documents;
  }

  void EndLeaf(std::string_view name) {
    const std::string text = name == "datetime" ? DateTimeText(*leaf_) : *leaf_;
    leaf_.reset();
    if (value_.size() >= kKeptBytes) return;
    const char* const between = pairFollows_ ? " to " : "; ";
    if (!value_.empty()) value_ += between;
    value_ += text;
    pairFollows_ = isFirstOfPair_;
    isFirstOfPair_ = false;
  }

  void EndValue() {
    ViewEntry& entry = content.first.back();
    if (entry.values.size() < kShownValues) {
      entry.values.push_back(CutText(CleanText(value_), kShownCharacters));
    } else {
      entry.hasMoreValues = true;
    }
  }

  std::size_t keep_;
  bool keeps_ = false;               // The entry that is being read is one of the first.
  std::string value_;                // The leaves of the value that is being read.
  std::optional<std::string> leaf_;  // Inside of one.
  bool isFirstOfPair_ = false;       // The next leaf begins a range.
  bool pairFollows_ = false;         // The next leaf ends it.
};

bool AreDigits(const std::string& text, std::size_t from, std::size_t count) {
  if (text.size() < from + count) return false;
  return text.find_first_not_of("0123456789", from) >= from + count;
}

std::string TimePart(const std::string& text, std::size_t from) {
  return text.substr(from, 2) + ":" + text.substr(from + 2, 2) + ":" + text.substr(from + 4, 2);
}

}  // namespace

std::string DateTimeText(const std::string& text) {
  if (text.starts_with("T") && AreDigits(text, 1, 6)) return TimePart(text, 1);
  if (!AreDigits(text, 0, 8)) return text;
  std::string date = text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2);
  if (text.size() == 8) return date;
  if (text[8] != 'T' || !AreDigits(text, 9, 6)) return text;
  return date + " " + TimePart(text, 9) + (text.ends_with("+00") ? " UTC" : text.substr(15));
}

ViewContent ReadViewFile(const std::wstring& path, std::size_t keep) {
  ViewVisitor visitor(keep);
  visitor.content.whole = ReadXmlFile(path, visitor) == XmlEnd::kRead;
  return std::move(visitor.content);
}

}  // namespace larkspan::console
