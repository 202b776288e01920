// The threads take one file after another from the list. Who takes the next one stops when the work
// is broken off, or when a worker has thrown.
#include "console/folder/FileCrew.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

namespace {

class FileCrew {
 public:
  FileCrew(std::size_t count, const std::function<FileWorker()>& makeWorker)
      : count_(count), makeWorker_(makeWorker) {}

  // False when it was broken off.
  bool Work(const FileProgress& progress) {
    constexpr std::size_t kMostThreads = 8;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    atWork_ = std::min({processors, kMostThreads, count_});
    {
      // Each is joined at the end of its life.
      std::vector<std::jthread> threads(atWork_);
      for (std::jthread& thread : threads) Begin(thread);
      Await(progress);
    }
    if (fault_) std::rethrow_exception(fault_);
    return !brokenOff_;
  }

 private:
  void Begin(std::jthread& thread) {
    try {
      thread = std::jthread([this] { WorkOnSome(); });
    } catch (const std::system_error&) {
      // The system gives no more of them: the calling thread takes its place.
      WorkOnSome();
    }
  }

  void WorkOnSome() {
    std::exception_ptr fault;
    try {
      const FileWorker work = makeWorker_();
      for (std::size_t file = next_++; file < count_; file = next_++) {
        work(file);
        ++done_;
      }
    } catch (...) {
      fault = std::current_exception();
      next_ = count_;
    }
    const std::lock_guard lock(mutex_);
    if (fault) fault_ = fault;
    if (--atWork_ == 0) SetEvent(allDone_.get());
  }

  void Await(const FileProgress& progress) {
    // By the system: on 32 bits a timed wait of the standard library keeps a processor busy.
    constexpr DWORD kMillisecondsBetweenCalls = 100;
    while (WaitForSingleObject(allDone_.get(), kMillisecondsBetweenCalls) == WAIT_TIMEOUT)
      if (progress && !progress(done_, count_)) BreakOff();
  }

  void BreakOff() {
    brokenOff_ = true;
    next_ = count_;
  }

  const std::size_t count_;
  const std::function<FileWorker()>& makeWorker_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> done_ = 0;
  bool brokenOff_ = false;
  std::mutex mutex_;
  const SystemHandle allDone_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
  std::size_t atWork_ = 0;
  std::exception_ptr fault_;
};

}  // namespace

bool WorkOnFiles(std::size_t count, const FileProgress& progress,
                 const std::function<FileWorker()>& makeWorker) {
  if (progress && !progress(0, count)) return false;
  if (count > 0 && !FileCrew(count, makeWorker).Work(progress)) return false;
  return !progress || progress(count, count);
}

}  // namespace larkspan::console
