#include "notes/Memory.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

class MemoryTest : public NotesFixture {
 protected:
  MemoryTest() { Start(); }

  MemoryObject memory_;
};

TEST_F(MemoryTest, AllocationIsOfTypeZeroAndTheSize) {
  EXPECT_TRUE(AllocateMemory(70000, memory_).ok());
  EXPECT_EQ(Arguments("OSMemAlloc"), R"({"size":70000,"type":0})");
}

TEST_F(MemoryTest, AllocationThatFailsLeavesNoHandle) {
  SetFaults(R"([{"entry": "OSMemAlloc", "status": 273}])");
  EXPECT_EQ(AllocateMemory(10, memory_).code(), 273);
  EXPECT_EQ(memory_.get(), 0u);
}

TEST_F(MemoryTest, MemoryIsLockedForAsLongAsTheLockLives) {
  EXPECT_TRUE(AllocateMemory(10, memory_).ok());
  {
    const MemoryLock lock(memory_);
    EXPECT_EQ(LeftOpen(), R"({"lock":1,"memory":1})");
  }
  EXPECT_EQ(LeftOpen(), R"({"memory":1})");
}

TEST_F(MemoryTest, WhatIsWrittenUnderOneLockIsReadUnderTheNext) {
  EXPECT_TRUE(AllocateMemory(10, memory_).ok());
  MemoryLock(memory_).address()[9] = std::byte{0x5A};
  EXPECT_EQ(MemoryLock(memory_).address()[9], std::byte{0x5A});
}

TEST_F(MemoryTest, LockThatFailsHasNoAddressAndIsNotUndone) {
  EXPECT_TRUE(AllocateMemory(10, memory_).ok());
  SetFaults(R"([{"entry": "OSLockObject", "status": 273}])");
  EXPECT_EQ(MemoryLock(memory_).address(), nullptr);
  EXPECT_EQ(Calls("OSUnlockObject"), 0);
}

TEST_F(MemoryTest, MemoryIsFreedByLettingItGo) {
  EXPECT_TRUE(AllocateMemory(10, memory_).ok());
  memory_.reset();
  EXPECT_EQ(LeftOpen(), kNothingOpen);
}

}  // namespace
}  // namespace larkspan
