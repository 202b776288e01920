// Memory objects.
#include <algorithm>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class MemoryObjects : public StandinTest {
 protected:
  MemoryObjects() {
    Start();
    EXPECT_EQ(OSMemAlloc(0, 40, &memory_), 0);
  }

  DHANDLE memory_ = 0;
};

}  // namespace

TEST_F(MemoryObjects, HoldGarbageAtFirst) {
  const auto* const bytes = static_cast<const BYTE*>(OSLockObject(memory_));
  EXPECT_TRUE(std::all_of(bytes, bytes + 40, [](BYTE byte) { return byte == 0xCD; }));
}

TEST_F(MemoryObjects, KeepWhatIsWrittenBetweenLocks) {
  static_cast<BYTE*>(OSLockObject(memory_))[39] = 7;
  EXPECT_EQ(OSUnlockObject(memory_), 1);
  EXPECT_EQ(static_cast<BYTE*>(OSLockObject(memory_))[39], 7);
}

TEST_F(MemoryObjects, CountLocks) {
  void* const first = OSLockObject(memory_);
  EXPECT_EQ(OSLockObject(memory_), first);
  EXPECT_EQ(StandinOpenCount(), 3U);
  OSUnlockObject(memory_);
  OSUnlockObject(memory_);
  EXPECT_EQ(OSMemFree(memory_), 0);
  EXPECT_EQ(StandinOpenCount(), 0U);
}

}  // namespace larkspan::standin_test
