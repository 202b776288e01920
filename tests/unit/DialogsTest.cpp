#include "app/Dialogs.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>

namespace larkspan {
namespace {

// Each in a process of its own, since what is suppressed stays so.
TEST(DialogsDeathTest, FaultsAndMissingDisksShowNoWindow) {
  constexpr int kBothModes = SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX;
  EXPECT_EXIT(
      {
        SetErrorMode(0);
        SuppressDialogs();
        std::_Exit(static_cast<int>(GetErrorMode()));
      },
      testing::ExitedWithCode(kBothModes), "");
}

// Also not a word on standard error.
TEST(DialogsDeathTest, AnAbortEndsTheProcessQuietly) {
  EXPECT_EXIT(
      {
        SuppressDialogs();
        std::abort();
      },
      testing::ExitedWithCode(3), "^$");
}

// The setting is asked for by a value that sets nothing.
TEST(DialogsDeathTest, MessagesOfTheRuntimeShowNoWindow) {
  EXPECT_EXIT(
      {
        SuppressDialogs();
        std::_Exit(_set_error_mode(_REPORT_ERRMODE));
      },
      testing::ExitedWithCode(_OUT_TO_STDERR), "");
}

}  // namespace
}  // namespace larkspan
