#include "tests/console/bag/HandMadeBag.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "console/bag/Digests.h"
#include "console/text/Utf.h"
#include "tests/support/FileBytes.h"

namespace larkspan::console {
namespace {

std::filesystem::path InBag(const std::wstring& folder, const std::string& name) {
  return std::filesystem::path(folder) / Utf8ToWide(name);
}

}  // namespace

HandMadeBag::HandMadeBag(const std::string& version) {
  WriteFile("bagit.txt", "BagIt-Version: " + version + "\nTag-File-Character-Encoding: UTF-8\n");
  WriteFile("bag-info.txt", "Source-Organization: Example\nPayload-Oxum: 9.2\n");
  WriteFile("data/a.txt", "Alpha");
  WriteFile("data/b/c.txt", "Beta");
  WriteFile("manifest-sha256.txt",
            Line("sha256", "data/a.txt", "Alpha") + Line("sha256", "data/b/c.txt", "Beta"));
}

void HandMadeBag::WriteFile(const std::string& name, const std::string& bytes) const {
  const std::filesystem::path path = InBag(folder(), name);
  std::filesystem::create_directories(path.parent_path());
  WriteBytes(path.wstring(), bytes);
}

std::string HandMadeBag::ReadFile(const std::string& name) const {
  return ReadBytes(InBag(folder(), name).wstring());
}

void HandMadeBag::Append(const std::string& name, const std::string& bytes) const {
  WriteFile(name, ReadFile(name) + bytes);
}

void HandMadeBag::Remove(const std::string& name) const {
  EXPECT_GT(std::filesystem::remove_all(InBag(folder(), name)), 0u);
}

void HandMadeBag::Rename(const std::string& from, const std::string& to) const {
  std::filesystem::rename(InBag(folder(), from), InBag(folder(), to));
}

void HandMadeBag::Replace(const std::string& name, const std::string& text,
                          const std::string& with) const {
  std::string bytes = ReadFile(name);
  const std::size_t place = bytes.find(text);
  ASSERT_NE(place, bytes.npos) << name << " has no " << text;
  WriteFile(name, bytes.replace(place, text.size(), with));
}

std::string HandMadeBag::Line(const std::string& algorithm, const std::string& path,
                              const std::string& text) {
  return DigestOfText(DigestKindOf(algorithm).value(), text) + "  " + path + "\n";
}

void HandMadeBag::WriteTagManifest(const std::string& algorithm) const {
  std::string lines;
  for (const auto& entry : std::filesystem::directory_iterator(folder())) {
    const std::string name = WideToUtf8(entry.path().filename().wstring());
    if (entry.is_regular_file() && !name.starts_with("tagmanifest-"))
      lines += Line(algorithm, name, ReadFile(name));
  }
  WriteFile("tagmanifest-" + algorithm + ".txt", lines);
}

BagVerdict HandMadeBag::Judge() const {
  std::string whyNot;
  const std::optional<BagVerdict> verdict = JudgeBag(folder(), {}, whyNot);
  EXPECT_TRUE(verdict) << whyNot;
  return verdict.value_or(BagVerdict());
}

Lines HandMadeBag::Told() const {
  const BagVerdict verdict = Judge();
  Lines lines;
  for (const Finding& error : verdict.errors)
    lines.push_back(error.kind + (error.file.empty() ? "" : " " + error.file));
  for (const Warning& warning : verdict.warnings) lines.push_back("warning " + warning.kind);
  return lines;
}

}  // namespace larkspan::console
