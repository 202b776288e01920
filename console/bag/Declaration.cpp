#include "console/bag/Declaration.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace larkspan::console {

namespace {

constexpr char kVersionLabel[] = "BagIt-Version";
constexpr char kEncodingLabel[] = "Tag-File-Character-Encoding";
constexpr BagVersion kOldest{0, 93};
constexpr BagVersion kLastBefore1{0, 97};

void AddFault(BagFaults& faults, const std::string& what) {
  faults.AddError("declaration", kDeclarationFile, std::string(kDeclarationFile) + " " + what);
}

std::optional<unsigned> NumberFrom(std::string_view text) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<BagVersion> VersionFrom(std::string_view text) {
  const std::size_t dot = text.find('.');
  if (dot == text.npos) return std::nullopt;
  const std::optional<unsigned> major = NumberFrom(text.substr(0, dot));
  const std::optional<unsigned> minor = NumberFrom(text.substr(dot + 1));
  if (!major || !minor) return std::nullopt;
  return BagVersion{*major, *minor};
}

struct DeclaredValue {
  std::string_view value;
  bool isExact = false;  // One blank behind the colon, and no other.
};

std::optional<DeclaredValue> ValueOf(std::string_view line, std::string_view label) {
  const std::size_t colon = line.find(':');
  if (colon == line.npos || WithoutBlanks(line.substr(0, colon)) != label) return std::nullopt;
  const std::string_view value = WithoutBlanks(line.substr(colon + 1));
  const bool isExact = line.starts_with(label) && line.substr(colon) == ": " + std::string(value);
  return DeclaredValue{value, isExact};
}

// The text of the file; it is UTF-8 whatever the other files are.
std::optional<std::string> ReadText(const BagTree& tree, BagFaults& faults) {
  const std::optional<std::size_t> index = FindTagFile(tree, kDeclarationFile, faults);
  if (!index) {
    AddFault(faults, "is missing");
    return std::nullopt;
  }
  const std::optional<std::string> content = tree.Read(tree.files()[*index]);
  if (!content) {
    AddFault(faults, "cannot be read");
    return std::nullopt;
  }
  const bool hasMark = content->starts_with(kByteOrderMark) || content->starts_with("\xFF\xFE") ||
                       content->starts_with("\xFE\xFF");
  if (hasMark) AddFault(faults, "begins with a byte order mark");
  std::optional<std::string> text = TextFrom(*content, kUtf8CodePage);
  if (!text) AddFault(faults, "is no UTF-8 text");
  return text;
}

void TakeVersion(const DeclaredValue& declared, Declaration& declaration, BagFaults& faults) {
  const std::optional<BagVersion> version = VersionFrom(declared.value);
  if (!version) return AddFault(faults, "has a version that is none");
  const bool isKnown = *version == kVersion1 || (*version >= kOldest && *version <= kLastBefore1);
  if (!isKnown) {
    faults.AddError("version", kDeclarationFile,
                    "version " + std::string(declared.value) + " of the form is not known");
  }
  declaration.version = *version;
}

void TakeEncoding(const DeclaredValue& declared, Declaration& declaration, BagFaults& faults) {
  declaration.encoding = declared.value;
  if (const std::optional<CodePage> codePage = CodePageOf(declared.value)) {
    declaration.codePage = *codePage;
  } else {
    faults.AddError("encoding", kDeclarationFile,
                    "Windows does not read the encoding '" + declaration.encoding + "'");
  }
}

}  // namespace

Declaration ReadDeclaration(const BagTree& tree, BagFaults& faults) {
  Declaration declaration;
  const std::optional<std::string> text = ReadText(tree, faults);
  if (!text) return declaration;
  const std::vector<std::string_view> lines = SplitTagLines(*text).lines;
  const auto line = [&](std::size_t i) { return i < lines.size() ? lines[i] : std::string_view(); };
  const std::optional<DeclaredValue> version = ValueOf(line(0), kVersionLabel);
  const std::optional<DeclaredValue> encoding = ValueOf(line(1), kEncodingLabel);
  if (version) TakeVersion(*version, declaration, faults);
  if (encoding) TakeEncoding(*encoding, declaration, faults);
  if (!version) AddFault(faults, "does not begin with the line of its version");
  if (!encoding) AddFault(faults, "does not tell the encoding in its second line");
  const bool hasText =
      std::any_of(lines.begin() + std::min<std::ptrdiff_t>(2, std::ssize(lines)), lines.end(),
                  [](std::string_view each) { return !WithoutBlanks(each).empty(); });
  const bool isExact = version && version->isExact && encoding && encoding->isExact;
  if (hasText) AddFault(faults, "has more than two lines");
  if ((version && encoding && !isExact) || (!hasText && lines.size() > 2)) {
    faults.Add(declaration.IsVersion1(), "declaration", kDeclarationFile,
               "bagit.txt has blanks or empty lines that do not belong there");
  }
  return declaration;
}

std::string DeclarationText() {
  return std::string(kVersionLabel) + ": 1.0\n" + kEncodingLabel + ": UTF-8\n";
}

}  // namespace larkspan::console
