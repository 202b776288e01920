// What a run is watched for beside its lines. Times are milliseconds of any clock that only grows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace larkspan::console {

// Progress is a progress line, or a change of what is at work on the disk.
class StallWatch {
 public:
  explicit StallWatch(std::uint64_t now) : last_(now) {}

  void Progress(std::uint64_t now) { last_ = now; }

  // A number that stands for what is at work; another one than last time is progress.
  void Look(std::uint64_t mark, std::uint64_t now) {
    if (mark != mark_) last_ = now;
    mark_ = mark;
  }

  std::uint64_t Silence(std::uint64_t now) const { return now - last_; }
  std::uint64_t last() const { return last_; }

 private:
  std::uint64_t last_;
  std::uint64_t mark_ = 0;
};

// Counts the notes that are lost in a row for the same cause. Between two that are neighbours in
// the list of notes no other was finished. Several workers lose them in any order.
class GiveUpWatch {
 public:
  // The notes in the order in which they are exported.
  explicit GiveUpWatch(const std::vector<std::uint32_t>& notes);

  // How many have been lost in a row now that this one is, with those behind it.
  std::uint32_t Lose(std::uint32_t note, const std::string& cause);

 private:
  std::unordered_map<std::uint32_t, std::size_t> places_;
  std::unordered_map<std::size_t, std::string> causes_;  // Of the lost notes, by their places.
  std::uint32_t count_ = 0;
};

// What is to be done about the room on the disk.
class SpaceWatch {
 public:
  static constexpr std::uint64_t kLeast = 64u << 20;

  enum class Verdict { kEnough, kLessThanDatabase, kTooLittle };

  // The size of the database, once it is known. kLessThanDatabase is told once.
  Verdict Look(std::uint64_t freeBytes, std::optional<std::uint64_t> databaseSize);

 private:
  bool compared_ = false;
};

}  // namespace larkspan::console
