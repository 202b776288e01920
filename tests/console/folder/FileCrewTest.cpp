#include "console/folder/FileCrew.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace larkspan::console {
namespace {

using Calls = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

TEST(FileCrewTest, EachFileIsTakenOnce) {
  std::vector<std::atomic<int>> reads(1000);
  EXPECT_TRUE(
      WorkOnFiles(reads.size(), {}, [&] { return [&](std::size_t file) { ++reads[file]; }; }));
  for (const std::atomic<int>& count : reads) EXPECT_EQ(count, 1);
}

TEST(FileCrewTest, TellsTheBeginningAndTheEnd) {
  Calls calls;
  const auto progress = [&](std::uint64_t done, std::uint64_t all) {
    calls.emplace_back(done, all);
    return true;
  };
  EXPECT_TRUE(WorkOnFiles(3, progress, [] { return [](std::size_t) {}; }));
  EXPECT_EQ(calls.front(), (Calls::value_type{0, 3}));
  EXPECT_EQ(calls.back(), (Calls::value_type{3, 3}));
}

TEST(FileCrewTest, NoFilesAreTakenByNobody) {
  EXPECT_TRUE(WorkOnFiles(0, {}, []() -> FileWorker { throw std::runtime_error("nobody"); }));
}

TEST(FileCrewTest, IsBrokenOffBeforeItBegins) {
  std::atomic<int> reads = 0;
  EXPECT_FALSE(WorkOnFiles(
      5, [](std::uint64_t, std::uint64_t) { return false; },
      [&] { return [&](std::size_t) { ++reads; }; }));
  EXPECT_EQ(reads, 0);
}

TEST(FileCrewTest, IsBrokenOffOnItsWay) {
  std::atomic<std::size_t> reads = 0;
  constexpr std::size_t kFiles = 100'000;
  const auto progress = [&](std::uint64_t, std::uint64_t) { return reads == 0; };
  const auto makeWorker = [&] {
    return [&](std::size_t) {
      ++reads;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };
  };
  EXPECT_FALSE(WorkOnFiles(kFiles, progress, makeWorker));
  EXPECT_GT(reads, 0u);
  EXPECT_LT(reads, kFiles);
}

TEST(FileCrewTest, WhatAWorkerThrowsIsThrown) {
  const auto makeWorker = [] {
    return [](std::size_t file) {
      if (file == 7) throw std::runtime_error("the seventh");
    };
  };
  EXPECT_THROW(WorkOnFiles(100, {}, makeWorker), std::runtime_error);
}

}  // namespace
}  // namespace larkspan::console
