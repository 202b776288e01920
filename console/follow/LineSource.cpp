#include "console/follow/LineSource.h"

#include <array>
#include <iterator>
#include <thread>
#include <utility>

#include "console/follow/LineReader.h"

namespace larkspan::console {

LineSource::LineSource(SystemHandle input) : shared_(std::make_shared<Shared>()) {
  shared_->input = std::move(input);
  std::thread([shared = shared_] { Read(shared); }).detach();
}

LineSource LineSource::StandardInput() {
  HANDLE copy = nullptr;
  DuplicateHandle(GetCurrentProcess(), GetStdHandle(STD_INPUT_HANDLE), GetCurrentProcess(), &copy,
                  0, FALSE, DUPLICATE_SAME_ACCESS);
  return LineSource(SystemHandle(copy));
}

std::vector<std::string> LineSource::Take() {
  const std::lock_guard lock(shared_->mutex);
  std::vector<std::string> taken(std::make_move_iterator(shared_->lines.begin()),
                                 std::make_move_iterator(shared_->lines.end()));
  shared_->lines.clear();
  return taken;
}

std::optional<std::string> LineSource::NextLine() {
  {
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait(lock, [this] { return !shared_->lines.empty() || shared_->ended; });
    if (shared_->lines.empty() && !shared_->rest.empty()) return std::exchange(shared_->rest, {});
  }
  return TakeOne();
}

std::optional<std::string> LineSource::TakeOne() {
  const std::lock_guard lock(shared_->mutex);
  if (shared_->lines.empty()) return std::nullopt;
  std::string line = std::move(shared_->lines.front());
  shared_->lines.pop_front();
  return line;
}

bool LineSource::HasEnded() const {
  const std::lock_guard lock(shared_->mutex);
  return shared_->ended && shared_->lines.empty();
}

// By the system: on 32 bits a timed wait of the standard library keeps a processor busy.
void LineSource::AwaitEnd(std::chrono::milliseconds longest) {
  WaitForSingleObject(shared_->endEvent.get(), static_cast<DWORD>(longest.count()));
}

void LineSource::CallAtEnd(std::function<void()> onEnd) {
  std::unique_lock lock(shared_->mutex);
  if (!shared_->ended) {
    shared_->onEnd = std::move(onEnd);
    return;
  }
  lock.unlock();
  onEnd();
}

void LineSource::Read(const std::shared_ptr<Shared>& shared) {
  LineSplitter splitter;
  std::array<char, 16384> bytes;
  DWORD count = 0;
  while (ReadFile(shared->input.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                  nullptr) &&
         count > 0) {
    const std::lock_guard lock(shared->mutex);
    for (std::string& line : splitter.Add({bytes.data(), count})) {
      shared->lines.push_back(std::move(line));
    }
    shared->changed.notify_all();
    SetEvent(shared->event.get());
  }
  std::unique_lock lock(shared->mutex);
  shared->ended = true;
  shared->rest = splitter.TakeRest();
  shared->changed.notify_all();
  SetEvent(shared->endEvent.get());
  const std::function<void()> onEnd = std::exchange(shared->onEnd, {});
  lock.unlock();
  if (onEnd) onEnd();
}

}  // namespace larkspan::console
