// When an export is ended from outside, which of its processes, and how it is taken up again.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::torture {

enum class Victim { kWorker, kSupervisor, kSupervisorAndWorker };

// What is waited for before the delay begins: nothing, so many files under their final names, or
// that temp.tmp or marker.txt appeared so many times.
enum class Sight { kStart, kFinalFiles, kTemporaryFile, kMarkerFile };

struct Moment {
  Victim victim = Victim::kWorker;
  Sight sight = Sight::kStart;
  int times = 0;
  std::chrono::milliseconds delay{0};
  std::optional<std::chrono::milliseconds> nextWorkerToo;  // That one dies so long after the first.
  bool byNewRun = false;  // Also where the marker would tell a worker where to go on.
};

// Which moment of a seed: its number, and how many that came too late it stands in for.
struct MomentNumber {
  std::uint64_t seed = 1;
  std::uint64_t number = 1;
  std::uint64_t tooLate = 0;
};

// For exports of about that length with so many final files. The same arguments give the same
// moment.
Moment PickMoment(const MomentNumber& which, std::chrono::milliseconds cleanRun, int finalFiles);

std::string Describe(const Moment& moment);

// Watches an output folder for the sight of a moment without opening any of its files, since a
// file that is open somewhere cannot be deleted or moved.
class Watch {
 public:
  Watch(const std::wstring& output, const Moment& moment) : output_(output), moment_(moment) {}

  // Whether the sight was seen by now. To be asked again and again.
  bool Look();

 private:
  bool Appeared(const wchar_t* name);

  std::wstring output_;
  Moment moment_;
  bool isThere_ = false;
  int appearances_ = 0;
};

}  // namespace larkspan::torture
