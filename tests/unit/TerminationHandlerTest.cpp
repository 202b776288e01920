#include "app/TerminationHandler.h"

#include <gtest/gtest.h>

#include <string>

namespace larkspan {
namespace {

std::string order;

// One test, since a process has one body and one closing.
TEST(TerminationHandlerTest, ClosingRunsOnceAfterABodyThatReturns) {
  order.clear();
  RunWithTerminationHandler([] { order += "body "; }, [] { order += "closing "; });
  EXPECT_EQ(order, "body closing ");
}

}  // namespace
}  // namespace larkspan
