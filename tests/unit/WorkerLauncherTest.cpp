// Processes that cannot be created.
#include "app/WorkerLauncher.h"

#include <gtest/gtest.h>

#include <string>

namespace larkspan {
namespace {

TEST(ProcessLauncherTest, ACommandLineThatIsTooLongForTheSystemCreatesNoProcess) {
  ProcessLauncher launcher;
  const WorkerEnding ending = launcher.RunToEnd(std::wstring(40000, L'x'));
  EXPECT_EQ(ending.kind, WorkerEnding::Kind::kNotCreated);
  EXPECT_NE(ending.code, 0u);
}

}  // namespace
}  // namespace larkspan
