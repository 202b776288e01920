// The threads take one file after another from the list. Who takes the next one stops when the
// reading is broken off, or when a reader has thrown.
#include "console/folder/ReadingCrew.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace larkspan::console {

namespace {

class ReadingCrew {
 public:
  ReadingCrew(std::size_t count, const std::function<FileReader()>& makeReader)
      : count_(count), makeReader_(makeReader) {}

  // False when it was broken off.
  bool Work(const VerifyProgress& progress) {
    constexpr std::size_t kMostThreads = 8;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    atWork_ = std::min({processors, kMostThreads, count_});
    {
      // Each is joined at the end of its life, also when the system gives no more of them.
      std::vector<std::jthread> threads(atWork_);
      for (std::jthread& thread : threads) thread = std::jthread([this] { ReadSome(); });
      Await(progress);
    }
    if (fault_) std::rethrow_exception(fault_);
    return !brokenOff_;
  }

 private:
  void ReadSome() {
    std::exception_ptr fault;
    try {
      const FileReader read = makeReader_();
      for (std::size_t file = next_++; file < count_; file = next_++) {
        read(file);
        ++done_;
      }
    } catch (...) {
      fault = std::current_exception();
      next_ = count_;
    }
    const std::lock_guard lock(mutex_);
    if (fault) fault_ = fault;
    if (--atWork_ == 0) allDone_.notify_one();
  }

  void Await(const VerifyProgress& progress) {
    constexpr std::chrono::milliseconds kBetweenCalls{100};
    std::unique_lock lock(mutex_);
    while (!allDone_.wait_for(lock, kBetweenCalls, [&] { return atWork_ == 0; }))
      if (progress && !progress(done_, count_)) BreakOff();
  }

  void BreakOff() {
    brokenOff_ = true;
    next_ = count_;
  }

  const std::size_t count_;
  const std::function<FileReader()>& makeReader_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> done_ = 0;
  bool brokenOff_ = false;
  std::mutex mutex_;
  std::condition_variable allDone_;
  std::size_t atWork_ = 0;
  std::exception_ptr fault_;
};

}  // namespace

bool ReadFiles(std::size_t count, const VerifyProgress& progress,
               const std::function<FileReader()>& makeReader) {
  if (progress && !progress(0, count)) return false;
  if (count > 0 && !ReadingCrew(count, makeReader).Work(progress)) return false;
  return !progress || progress(count, count);
}

}  // namespace larkspan::console
