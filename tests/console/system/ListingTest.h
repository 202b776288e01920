// The base of tests that list with the real console program.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {

class ListingTest : public ExportTest {
 protected:
  // The command with the configuration of the run, and these.
  Words ListingWords(const std::wstring& command, const Words& more) const {
    const std::wstring configuration = run_.folder() + L"\\notes.ini";
    run_.WriteConfigurationTo(configuration);
    Words words = {command, L"--notes-ini", configuration};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }

  ConsoleEnd Databases(const Words& more = {}) const {
    return Run(ListingWords(L"databases", more));
  }
  ConsoleEnd Servers(const Words& more = {}) const { return Run(ListingWords(L"servers", more)); }

  // Nothing is shown, and this is said.
  static void ExpectRefused(const ConsoleEnd& end, std::uint32_t code, const std::string& said) {
    EXPECT_EQ(end.code, code);
    EXPECT_EQ(end.output, "");
    EXPECT_TRUE(Holds(end.errors, said)) << end.errors;
    EXPECT_TRUE(end.errors.starts_with("larkspan-console: ")) << end.errors;
  }

  // Puts the console beside this program, as its larkspan.exe, and the library.
  void UseExporter(const std::wstring& name) {
    const std::filesystem::path from = testing::ProgramFolder();
    const std::filesystem::path to = run_.folder() + L"\\programs";
    std::filesystem::create_directory(to);
    for (const wchar_t* const file : {L"larkspan-console.exe", L"nnotes.dll"})
      std::filesystem::copy(from / file, to / file);
    if (!name.empty()) std::filesystem::copy(from / name, to / L"larkspan.exe");
    programFolder_ = to.wstring();
  }

  const std::wstring to_ = run_.folder() + L"\\Liste \u65E5\u672C.txt";
};

}  // namespace larkspan::console
