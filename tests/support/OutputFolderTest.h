// The base of tests whose subject writes into the output folder.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/Settings.h"
#include "tests/support/FileBytes.h"
#include "tests/support/Lines.h"
#include "tests/support/ScopedSettings.h"
#include "tests/support/TempFolder.h"

namespace larkspan {

// Gives each test an empty output folder of its own, and settings that name it and let every line
// into the run log.
class OutputFolderTest : public testing::Test {
 protected:
  OutputFolderTest() : settings_(DebugSettings(folder_.path())) {}

  // The path of an entry of the output folder, from a name without a backslash.
  std::wstring PathOf(const std::wstring& name) const { return folder_ / (L"\\" + name); }

  // The lines of the run log; none when there is no log.
  Lines LogLines() const {
    return Exists(PathOf(L"log.txt")) ? ReadLines(PathOf(L"log.txt")) : Lines();
  }

  static void LeaveOutLinesBelow(int level) {
    ChangeSettings([level](Settings& settings) { settings.minimumLogLevel = level; });
  }

  // Drops lines below WARNING, as a run without -debug does.
  static void LeaveOutDebugLines() { LeaveOutLinesBelow(1); }

  // From here on the settings name this entry of the folder as the output folder.
  void UseOutputFolder(const std::wstring& name) const {
    ChangeSettings([&](Settings& settings) { settings.outputFolder = PathOf(name); });
  }

 private:
  static Settings DebugSettings(const std::wstring& outputFolder) {
    Settings settings;
    settings.outputFolder = outputFolder;
    settings.minimumLogLevel = 0;
    return settings;
  }

  TempFolder folder_;
  ScopedSettings settings_;
};

}  // namespace larkspan
