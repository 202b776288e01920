// Taking over what the library gives out.
#include "notes/Handles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace larkspan {
namespace {

std::vector<notes_api::DHANDLE> closed;

void RecordClosing(notes_api::DHANDLE& handle) {
  if (handle != 0) closed.push_back(handle);
  handle = 0;
}

using Owner = UniqueHandle<notes_api::DHANDLE, RecordClosing>;
using Closed = std::vector<notes_api::DHANDLE>;

// An operation that writes the handle and returns the status.
auto Giving(notes_api::DHANDLE handle, notes_api::STATUS status) {
  return [handle, status](notes_api::DHANDLE* address) {
    *address = handle;
    return status;
  };
}

class AcquireHandleTest : public testing::Test {
 protected:
  AcquireHandleTest() { closed.clear(); }
};

TEST_F(AcquireHandleTest, HandleIsAdoptedOnSuccess) {
  Owner owner;
  EXPECT_TRUE(AcquireHandle(owner, Giving(7, 0)).ok());
  EXPECT_EQ(owner.get(), 7u);
}

TEST_F(AcquireHandleTest, StatusIsReturned) {
  Owner owner;
  EXPECT_EQ(AcquireHandle(owner, Giving(0, 0x4103)).code(), 0x4103);
}

TEST_F(AcquireHandleTest, HandleIsNotAdoptedOnFailure) {
  Owner owner;
  EXPECT_FALSE(AcquireHandle(owner, Giving(7, 259)).ok());
  EXPECT_EQ(owner.get(), 0u);
}

TEST_F(AcquireHandleTest, HandleOfAFailureIsNotClosed) {
  {
    Owner owner;
    EXPECT_FALSE(AcquireHandle(owner, Giving(7, 259)).ok());
  }
  EXPECT_EQ(closed, Closed());
}

TEST_F(AcquireHandleTest, HandleHeldBeforeIsClosedOnSuccess) {
  Owner owner(6);
  EXPECT_TRUE(AcquireHandle(owner, Giving(7, 0)).ok());
  EXPECT_EQ(closed, Closed{6});
}

TEST_F(AcquireHandleTest, HandleHeldBeforeIsClosedOnFailure) {
  Owner owner(6);
  EXPECT_FALSE(AcquireHandle(owner, Giving(7, 259)).ok());
  EXPECT_EQ(closed, Closed{6});
  EXPECT_EQ(owner.get(), 0u);
}

TEST_F(AcquireHandleTest, PlaceOfTheHandleIsEightZeroedBytes) {
  Owner owner;
  std::uint64_t seen = 1;
  EXPECT_TRUE(AcquireHandle(owner, [&](notes_api::DHANDLE* address) -> notes_api::STATUS {
                std::memcpy(&seen, address, sizeof seen);
                return 0;
              }).ok());
  EXPECT_EQ(seen, 0u);
}

TEST_F(AcquireHandleTest, WiderHandleIsReadByItsLowBits) {
  Owner owner;
  EXPECT_TRUE(AcquireHandle(owner, [](notes_api::DHANDLE* address) -> notes_api::STATUS {
                const std::uint64_t wide = 0xAAAAAAAA00000007;
                std::memcpy(address, &wide, sizeof wide);
                return 0;
              }).ok());
  EXPECT_EQ(owner.get(), 7u);
}

}  // namespace
}  // namespace larkspan
