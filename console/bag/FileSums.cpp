// Small files cost the opening, large ones the calculating; both go better on several threads,
// which take one file after another from the list. The calling thread waits and tells how far they
// are.
#include "console/bag/FileSums.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "base/OutputPaths.h"

namespace larkspan::console {

namespace {

class SummingCrew {
 public:
  SummingCrew(const std::wstring& folder, std::vector<FileSum>& files)
      : folder_(folder), files_(files) {}

  void Work(const VerifyProgress& progress) {
    constexpr std::size_t kMostThreads = 8;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    atWork_ = std::min({processors, kMostThreads, files_.size()});
    std::vector<std::thread> threads(atWork_);
    for (std::thread& thread : threads) thread = std::thread([this] { SumSome(); });
    Await(progress);
    for (std::thread& thread : threads) thread.join();
    if (failed_) throw std::runtime_error("The sums of the files cannot be calculated.");
  }

 private:
  void SumSome() {
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    try {
      std::vector<char> buffer(kPiece);
      for (std::size_t i = next_++; i < files_.size(); i = next_++) {
        FileSum& file = files_[i];
        file.digests = DigestsOfFile(output::Join(folder_, file.name), file.kinds, buffer);
        ++done_;
      }
    } catch (const std::exception&) {
      // Who takes the next file stops as well.
      failed_ = true;
      next_ = files_.size();
    }
    const std::lock_guard lock(mutex_);
    if (--atWork_ == 0) allDone_.notify_one();
  }

  void Await(const VerifyProgress& progress) {
    constexpr std::chrono::milliseconds kBetweenCalls{100};
    std::unique_lock lock(mutex_);
    while (!allDone_.wait_for(lock, kBetweenCalls, [&] { return atWork_ == 0; }))
      if (progress) progress(done_, files_.size());
  }

  const std::wstring& folder_;
  std::vector<FileSum>& files_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> done_ = 0;
  std::atomic<bool> failed_ = false;
  std::mutex mutex_;
  std::condition_variable allDone_;
  std::size_t atWork_ = 0;
};

}  // namespace

void CalculateSums(const std::wstring& folder, const VerifyProgress& progress,
                   std::vector<FileSum>& files) {
  if (progress) progress(0, files.size());
  if (!files.empty()) SummingCrew(folder, files).Work(progress);
  if (progress) progress(files.size(), files.size());
}

}  // namespace larkspan::console
