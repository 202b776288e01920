#include "app/TerminationHandler.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

namespace larkspan {
namespace {

std::string order;
DWORD bodyThread = 0;
constexpr unsigned int kEndedThreadCode = 44;

// One test, since a process has one body and one closing.
TEST(TerminationHandlerTest, ClosingRunsOnceAfterABodyThatReturns) {
  order.clear();
  RunWithTerminationHandler(
      [] { order += "body "; },
      {[](BodyEnd end) { order += end == BodyEnd::kReturn ? "closing" : "another closing"; },
       kEndedThreadCode});
  EXPECT_EQ(order, "body closing");
}

void TellEndAndThread(BodyEnd end) {
  std::fputs(end == BodyEnd::kCrash ? "crash, " : "exception, ", stderr);
  std::fputs(GetCurrentThreadId() == bodyThread ? "closing on the body's thread;"
                                                : "closing on another thread;",
             stderr);
  std::fflush(stderr);
}

struct Death {
  const char* name;
  void (*body)();
  DWORD exitCode;
  const char* closing;  // What it says, and nothing more.
};

// Each in a process of its own.
class TerminationHandlerDeathTest : public testing::TestWithParam<Death> {};

TEST_P(TerminationHandlerDeathTest, RunsTheClosingOnceOnTheThreadThatCan) {
  EXPECT_EXIT(RunWithTerminationHandler(
                  [] {
                    bodyThread = GetCurrentThreadId();
                    GetParam().body();
                  },
                  {TellEndAndThread, kEndedThreadCode}),
              testing::ExitedWithCode(static_cast<int>(GetParam().exitCode)),
              std::string("^") + GetParam().closing + "$");
}

void RaiseAccessViolation() { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); }

// As a throw of another compiler's code does.
void RaiseForeignException() { RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, 0, nullptr); }

void RaiseStackOverflow() { RaiseException(EXCEPTION_STACK_OVERFLOW, 0, 0, nullptr); }

INSTANTIATE_TEST_SUITE_P(
    EveryWay, TerminationHandlerDeathTest,
    testing::Values(Death{"Crash", RaiseAccessViolation, EXCEPTION_ACCESS_VIOLATION,
                          "crash, closing on the body's thread;"},
                    Death{"ForeignException", RaiseForeignException, 0xE06D7363,
                          "exception, closing on the body's thread;"},
                    Death{"StackOverflow", RaiseStackOverflow, EXCEPTION_STACK_OVERFLOW,
                          "crash, closing on another thread;"},
                    Death{"EndOfTheThread", [] { ExitThread(0); }, kEndedThreadCode,
                          "crash, closing on another thread;"}),
    [](const auto& test) { return std::string(test.param.name); });

DWORD WINAPI Crash(void*) {
  RaiseAccessViolation();
  return 0;
}

void CrashAnotherThread() { CloseHandle(CreateThread(nullptr, 0, Crash, nullptr, 0, nullptr)); }

std::atomic<int> steps{0};

void GoOn() {
  CrashAnotherThread();
  for (;;) {
    ++steps;
    Sleep(1);
  }
}

void TellWhetherTheBodyGoesOn(BodyEnd) {
  const int stepsBefore = steps;
  Sleep(200);
  std::fputs(steps == stepsBefore ? "the body is stopped;" : "the body goes on;", stderr);
  std::fflush(stderr);
}

TEST(TerminationHandlerThreadsDeathTest, ACrashOfAnotherThreadStopsTheBodyBeforeTheClosing) {
  EXPECT_EXIT(RunWithTerminationHandler(GoOn, {TellWhetherTheBodyGoesOn, kEndedThreadCode}),
              testing::ExitedWithCode(static_cast<int>(EXCEPTION_ACCESS_VIOLATION)),
              "^the body is stopped;$");
}

void CrashAnotherThreadAndGoOn(BodyEnd) {
  CrashAnotherThread();
  Sleep(200);
  std::fputs("closed;", stderr);
  std::fflush(stderr);
}

TEST(TerminationHandlerThreadsDeathTest, ACrashOfAnotherThreadDuringTheClosingWaitsForIt) {
  EXPECT_EXIT(RunWithTerminationHandler(RaiseForeignException,
                                        {CrashAnotherThreadAndGoOn, kEndedThreadCode}),
              testing::ExitedWithCode(static_cast<int>(0xE06D7363)), "^closed;$");
}

void CrashInTheClosing(BodyEnd) { RaiseAccessViolation(); }

// Waiting for the end of the closing it would end with the code of the first crash.
TEST(TerminationHandlerThreadsDeathTest, ACrashOfTheClosingItselfEndsTheProcessAtOnce) {
  EXPECT_EXIT(
      RunWithTerminationHandler(RaiseForeignException, {CrashInTheClosing, kEndedThreadCode}),
      testing::ExitedWithCode(static_cast<int>(EXCEPTION_ACCESS_VIOLATION)), "^$");
}

std::mutex lockOfTheBody;

void GoOnWithTheLock() {
  const std::lock_guard lock(lockOfTheBody);
  GoOn();
}

void CloseWithTheLock(BodyEnd) {
  const std::lock_guard lock(lockOfTheBody);
  std::fputs("never said", stderr);
}

// This test waits as long as the program does.
TEST(TerminationHandlerThreadsDeathTest, AClosingThatNeedsALockOfTheStoppedBodyEndsNevertheless) {
  EXPECT_EXIT(RunWithTerminationHandler(GoOnWithTheLock, {CloseWithTheLock, kEndedThreadCode}),
              testing::ExitedWithCode(static_cast<int>(EXCEPTION_ACCESS_VIOLATION)), "^$");
}

}  // namespace
}  // namespace larkspan
