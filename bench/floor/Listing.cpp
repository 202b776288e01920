#include <cstdio>
#include <string>

#include "bench/Content.h"
#include "bench/Workload.h"
#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

std::wstring ListingIn(const std::wstring& folder) { return folder + L"\\scan.txt"; }

// Calls with each line, which ends as given.
template <typename Write>
void WriteLines(const std::string& lineEnd, Write write) {
  write("bench.nsf" + lineEnd);
  std::string line = ListingLine() + lineEnd;
  for (std::uint32_t number = 1; number <= ProcessWorkload().databases; ++number) {
    WriteDigits(number, line.data() + kDatabasePathDigits);
    write(line);
  }
}

}  // namespace

void WriteListing(const std::wstring& folder) {
  std::FILE* const file = _wfopen(ListingIn(folder).c_str(), L"w");
  if (file == nullptr) Fail("open");
  WriteLines("\n", [file](const std::string& line) {
    if (std::fwrite(line.data(), 1, line.size(), file) < line.size()) Fail("write");
    if (std::fflush(file) != 0) Fail("flush");
  });
  std::fclose(file);
}

void WriteListingBySystem(const std::wstring& folder) {
  const HANDLE file = CreateFileW(ListingIn(folder).c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                  nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) Fail("open");
  WriteLines("\r\n", [file](const std::string& line) {
    DWORD written = 0;
    const auto length = static_cast<DWORD>(line.size());
    if (WriteFile(file, line.data(), length, &written, nullptr) == 0) Fail("write");
  });
  CloseHandle(file);
}

}  // namespace larkspan::bench
