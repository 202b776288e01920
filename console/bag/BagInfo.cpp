#include "console/bag/BagInfo.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <set>
#include <string_view>

#include "console/bag/TagText.h"

namespace larkspan::console {

namespace {

constexpr char kEarlyName[] = "package-info.txt";
constexpr BagVersion kLastWithEarlyName{0, 95};
constexpr char kOctetsLabel[] = "payload-oxum";

class BagInfoReader {
 public:
  BagInfoReader(const std::string& name, const Declaration& declaration, BagFaults& faults)
      : name_(name), declaration_(declaration), faults_(faults) {}

  std::vector<BagInfoElement> Read(std::string_view text) {
    const TagLines split = SplitTagLines(text);
    for (std::size_t i = 0; i < split.lines.size(); ++i) {
      number_ = i + 1;
      TakeLine(split.lines[i]);
    }
    return std::move(elements_);
  }

 private:
  void AddFault(bool isError, const char* what) {
    faults_.Add(isError, "bag-info", name_,
                name_ + ", line " + std::to_string(number_) + ", " + what);
  }

  void TakeLine(std::string_view line) {
    if (WithoutBlanks(line).empty()) return AddFault(false, "is empty");
    if (IsBlank(line.front())) return TakeContinuation(line);
    const std::size_t colon = line.find(':');
    if (colon == line.npos || WithoutBlanks(line.substr(0, colon)).empty())
      return AddFault(true, "is no label with a value");
    TakeElement(line.substr(0, colon), line.substr(colon + 1));
  }

  void TakeContinuation(std::string_view line) {
    if (elements_.empty()) return AddFault(true, "goes on with nothing");
    elements_.back().value += "\n" + std::string(WithoutBlanks(line));
  }

  void TakeElement(std::string_view label, std::string_view value) {
    if (declaration_.IsVersion1()) {
      if (IsBlank(label.back())) AddFault(true, "has a blank before its colon");
      if (!value.empty() && !IsBlank(value.front()))
        AddFault(true, "has no blank behind its colon");
      if (value.size() > 1 && IsBlank(value[0]) && IsBlank(value[1]))
        AddFault(false, "has more than one blank behind its colon");
    }
    elements_.push_back({std::string(WithoutBlanks(label)), std::string(WithoutBlanks(value))});
  }

  const std::string& name_;
  const Declaration& declaration_;
  BagFaults& faults_;
  std::size_t number_ = 0;
  std::vector<BagInfoElement> elements_;
};

void CheckDates(const std::string& file, const std::vector<BagInfoElement>& elements,
                BagFaults& faults) {
  static const std::regex date("[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])");
  for (const BagInfoElement& element : elements) {
    if (LowerCase(element.label) == "bagging-date" && !std::regex_match(element.value, date))
      faults.AddWarning("bag-info", file + ": the bagging date is not of the form YYYY-MM-DD");
  }
}

// Other elements may come as often as they like.
void CheckSingleOnes(const std::string& file, const std::vector<BagInfoElement>& elements,
                     BagFaults& faults) {
  const std::set<std::string> singleOnes = {"bagging-date", "bag-size", "bag-group-identifier",
                                            "bag-count"};
  std::set<std::string> seen;
  for (const BagInfoElement& element : elements) {
    const std::string label = LowerCase(element.label);
    if (singleOnes.contains(label) && !seen.insert(label).second)
      faults.AddWarning("bag-info", file + " has more than one " + element.label);
  }
}

}  // namespace

std::vector<BagInfoElement> ReadBagInfo(const BagTree& tree, const Declaration& declaration,
                                        BagFaults& faults) {
  std::optional<std::size_t> index = FindTagFile(tree, kBagInfoFile, faults);
  if (!index && declaration.version <= kLastWithEarlyName)
    index = FindTagFile(tree, kEarlyName, faults);
  if (!index) return {};
  const BagFile& file = tree.files()[*index];
  const std::optional<std::string> text = ReadTagText(tree, file, declaration.codePage, faults);
  if (!text) return {};
  std::vector<BagInfoElement> elements = BagInfoReader(file.path, declaration, faults).Read(*text);
  CheckDates(file.path, elements, faults);
  CheckSingleOnes(file.path, elements, faults);
  return elements;
}

PayloadSize PayloadSizeOf(const BagTree& tree) {
  PayloadSize size;
  for (const BagFile& file : tree.files()) {
    if (!file.IsPayload()) continue;
    size.bytes += file.size;
    ++size.files;
  }
  return size;
}

void CheckPayloadSize(const std::vector<BagInfoElement>& elements, const PayloadSize& size,
                      const Declaration& declaration, BagFaults& faults) {
  static const std::regex form("[0-9]+\\.[0-9]+");
  int count = 0;
  for (const BagInfoElement& element : elements) {
    if (LowerCase(element.label) != kOctetsLabel) continue;
    if (++count == 2) {
      faults.Add(declaration.IsVersion1(), "oxum", kBagInfoFile,
                 "the size of the payload (Payload-Oxum) is told more than once");
    }
    if (!std::regex_match(element.value, form)) {
      faults.AddError("oxum", kBagInfoFile, "the size of the payload (Payload-Oxum) is none");
    } else if (element.value != OctetsAndFiles(size)) {
      faults.AddError("oxum", kBagInfoFile,
                      "the payload has " + std::to_string(size.bytes) + " bytes in " +
                          std::to_string(size.files) + " files, and " + element.value +
                          " is told (Payload-Oxum)");
    }
  }
}

std::string OctetsAndFiles(const PayloadSize& size) {
  return std::to_string(size.bytes) + "." + std::to_string(size.files);
}

std::string BagInfoText(const std::vector<BagInfoElement>& elements) {
  std::string text;
  for (const BagInfoElement& element : elements) {
    std::string value = element.value;
    std::replace_if(
        value.begin(), value.end(),
        [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; }, ' ');
    text += element.label + ": " + value + "\n";
  }
  return text;
}

}  // namespace larkspan::console
