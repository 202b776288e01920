// Most of the time goes into opening files, so several threads take one file after another from the
// list; the calling thread waits for them and tells how far they are.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <thread>

#include "console/account/ExportFiles.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::wstring PathOf(const std::wstring& folder, const ExportFile& file) {
  std::wstring name = Utf8ToWide(file.Name());
  std::replace(name.begin(), name.end(), L'/', L'\\');
  return folder + L"\\" + name;
}

class ReadingCrew {
 public:
  ReadingCrew(const std::wstring& folder, std::vector<ExportFile>& files)
      : folder_(folder), files_(files) {}

  // False when it was broken off.
  bool Work(const VerifyProgress& progress) {
    constexpr std::size_t kMostThreads = 8;
    constexpr std::size_t kFilesWorthAThread = 32;
    const std::size_t processors = std::max(1U, std::thread::hardware_concurrency());
    atWork_ = std::min({processors, kMostThreads, files_.size() / kFilesWorthAThread + 1});
    {
      // Each is joined at the end of its life, also when the system gives no more of them.
      std::vector<std::jthread> threads(atWork_);
      for (std::jthread& thread : threads) thread = std::jthread([this] { ReadSome(); });
      Await(progress);
    }
    if (failed_) throw std::bad_alloc();
    return !brokenOff_;
  }

 private:
  void ReadSome() {
    try {
      DxlReader reader;
      for (std::size_t i = next_++; i < files_.size(); i = next_++) {
        files_[i].facts = reader.Read(PathOf(folder_, files_[i]));
        ++done_;
      }
    } catch (const std::exception&) {
      // Who takes the next file stops as well, and the account is not made.
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
      if (progress && !progress(done_, files_.size())) BreakOff();
  }

  // Who takes the next file stops.
  void BreakOff() {
    brokenOff_ = true;
    next_ = files_.size();
  }

  const std::wstring& folder_;
  std::vector<ExportFile>& files_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<std::size_t> done_ = 0;
  std::atomic<bool> failed_ = false;
  bool brokenOff_ = false;
  std::mutex mutex_;
  std::condition_variable allDone_;
  std::size_t atWork_ = 0;
};

}  // namespace

bool ReadExportFiles(const std::wstring& folder, const VerifyProgress& progress,
                     std::vector<ExportFile>& files) {
  if (progress && !progress(0, files.size())) return false;
  if (!ReadingCrew(folder, files).Work(progress)) return false;
  return !progress || progress(files.size(), files.size());
}

}  // namespace larkspan::console
