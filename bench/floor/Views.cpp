#include <tinyxml2.h>

#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Content.h"
#include "bench/Workload.h"
#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

constexpr std::uint32_t kFirstView = 0x10000000;

// A value of a column as elements: the outer one, and of a list the inner ones.
struct Value {
  const char* element = nullptr;
  const char* inner = nullptr;
  std::string first;
  std::string second;
};

Value ValueOf(std::uint32_t column, std::uint32_t variant) {
  switch (KindOfColumn(column)) {
    case ValueKind::kText:
      return {"text", nullptr, TextOf(variant), {}};
    case ValueKind::kNumber:
      return {"number", nullptr, NumberTextOf(variant), {}};
    case ValueKind::kTime:
      return {"datetime", nullptr, MomentTextOf(variant), {}};
    case ValueKind::kTextList:
      break;
  }
  return {"textlist", "text", TextOf(variant), SecondTextOf(variant)};
}

using Entry = std::vector<Value>;

std::vector<Entry> MakeEntries() {
  std::vector<Entry> entries(kVariants);
  for (std::uint32_t variant = 0; variant < kVariants; ++variant) {
    for (std::uint32_t column = 0; column < ProcessWorkload().columns; ++column) {
      entries[variant].push_back(ValueOf(column, variant));
    }
  }
  return entries;
}

void PrintElement(tinyxml2::XMLPrinter& printer, const char* name, const std::string& text) {
  printer.OpenElement(name);
  printer.PushText(text.c_str());
  printer.CloseElement();
}

void PrintValue(tinyxml2::XMLPrinter& printer, const Value& value) {
  if (value.inner == nullptr) return PrintElement(printer, value.element, value.first);
  printer.OpenElement(value.element);
  PrintElement(printer, value.inner, value.first);
  PrintElement(printer, value.inner, value.second);
  printer.CloseElement();
}

void PrintEntry(tinyxml2::XMLPrinter& printer, const Entry& entry, std::uint32_t noteId) {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%08X", static_cast<unsigned int>(noteId));
  printer.OpenElement("document");
  printer.PushAttribute("noteId", digits.data());
  for (const Value& value : entry) {
    printer.OpenElement("value");
    PrintValue(printer, value);
    printer.CloseElement();
  }
  printer.CloseElement();
}

void PrintView(tinyxml2::XMLPrinter& printer, const std::vector<Entry>& entries) {
  printer.PushDeclaration("xml version='1.0' encoding='utf-8'");
  printer.OpenElement("view");
  for (std::uint32_t i = 0; i < ProcessWorkload().entries; ++i) {
    PrintEntry(printer, entries[i % kVariants], i + 1);
  }
  printer.CloseElement();
}

void PrintInto(std::FILE* file, Printing printing, const std::vector<Entry>& entries) {
  if (printing == Printing::kIntoTheFile) {
    tinyxml2::XMLPrinter printer(file);
    PrintView(printer, entries);
    return;
  }
  tinyxml2::XMLPrinter printer;
  PrintView(printer, entries);
  const std::size_t length = printer.CStrSize() - 1;
  if (std::fwrite(printer.CStr(), 1, length, file) < length) Fail("write");
}

void CopyAsText(std::FILE* source, const std::wstring& path) {
  std::FILE* const target = _wfopen(path.c_str(), L"w");
  if (target == nullptr) Fail("open");
  std::vector<char> block(65536);
  std::rewind(source);
  while (const std::size_t length = std::fread(block.data(), 1, block.size(), source)) {
    if (std::fwrite(block.data(), 1, length, target) < length) Fail("write");
  }
  if (std::fclose(target) != 0) Fail("close");
}

}  // namespace

// The temporary file lies beside the views, where any user may write.
void PrintViews(const std::wstring& folder, Printing printing) {
  const std::vector<Entry> entries = MakeEntries();
  const std::wstring views = folder + L"\\views";
  const std::wstring temporary = folder + L"\\temp.xml";
  const std::wstring stage = folder + L"\\stage.xml";
  CreateFolder(views);
  for (std::uint32_t i = 0; i < ProcessWorkload().views; ++i) {
    std::FILE* const file = _wfopen(temporary.c_str(), L"w+b");
    if (file == nullptr) Fail("open");
    PrintInto(file, printing, entries);
    CopyAsText(file, stage);
    std::fclose(file);
    Move(stage, NumberedFile(views, kFirstView + i, L".xml"));
  }
  DeleteIfThere(temporary);
}

}  // namespace larkspan::bench
