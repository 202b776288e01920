#include "tests/system/SystemTest.h"

#include <algorithm>

#include "tests/support/FileBytes.h"

namespace larkspan::testing {

Lines SystemTest::OutputLines(const std::wstring& relativeName) const {
  return run_.HasOutputFile(relativeName) ? SplitLines(run_.OutputFile(relativeName)) : Lines();
}

Lines SystemTest::AuditLines() const {
  return SplitLines(MaskAuditTimes(run_.OutputFile(L"audit.txt")));
}

nlohmann::json SystemTest::Ledger(std::size_t runtime) const {
  return nlohmann::json::parse(run_.LedgerLines().at(runtime));
}

int SystemTest::Calls(std::size_t runtime, const std::string& entry) const {
  return Ledger(runtime).at("calls").value(entry, 0);
}

Lines SystemTest::FilesIn(const std::string& subfolder) const {
  Lines names;
  for (const auto& [name, content] : run_.Tree()) {
    if (name.starts_with(subfolder + "/") && !name.ends_with("/")) names.push_back(name);
  }
  return names;
}

UniqueSystemHandle SystemTest::Hold(const std::wstring& name) const {
  const HANDLE file = CreateFileW(Path(name).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(file, INVALID_HANDLE_VALUE);
  return UniqueSystemHandle(file);
}

// The log exists from the supervisor's first line on.
void SystemTest::AwaitLogLine(const std::string& text) const {
  for (int i = 0; i < 3000; ++i) {
    if (run_.HasOutputFile(L"log.txt") && run_.Log().find(text) != std::string::npos) return;
    Sleep(10);
  }
  ADD_FAILURE() << "the log never held: " << text;
}

bool Contains(const Lines& lines, const std::string& line) { return CountLines(lines, line) > 0; }

int CountLines(const Lines& lines, const std::string& line) {
  return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

Lines Tail(const Lines& lines, std::size_t count) {
  const std::size_t skipped = lines.size() - std::min(count, lines.size());
  return Lines(lines.begin() + static_cast<std::ptrdiff_t>(skipped), lines.end());
}

Lines Join(std::vector<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace larkspan::testing
