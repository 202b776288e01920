#include "tests/torture/kill/Moment.h"

#include <windows.h>

#include <random>

#include "tests/support/FileBytes.h"

namespace larkspan::torture {

namespace {

using std::chrono::milliseconds;

constexpr const char* kVictims[] = {"worker", "supervisor", "supervisor and worker"};
constexpr const char* kSights[] = {"start", "final files", "temp.tmp", "marker.txt"};

// Not the library's distribution, whose numbers may differ between its versions.
class Dice {
 public:
  explicit Dice(const MomentNumber& which) {
    std::seed_seq all{which.seed, which.number, which.tooLate};
    random_.seed(all);
  }

  int Below(int limit) { return static_cast<int>(random_() % static_cast<std::uint64_t>(limit)); }
  bool OneIn(int chances) { return Below(chances) == 0; }
  milliseconds Within(milliseconds limit) {
    return milliseconds(Below(static_cast<int>(limit.count()) + 1));
  }

 private:
  std::mt19937_64 random_;
};

// Half of the exports lose their worker, a third both processes.
Victim PickVictim(Dice& dice) {
  const int side = dice.Below(6);
  if (side < 3) return Victim::kWorker;
  return side < 5 ? Victim::kSupervisorAndWorker : Victim::kSupervisor;
}

int CountFilesIn(const std::wstring& folder) {
  WIN32_FIND_DATAW entry;
  const HANDLE listing = FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (listing == INVALID_HANDLE_VALUE) return 0;
  int files = 0;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) ++files;
  } while (FindNextFileW(listing, &entry));
  FindClose(listing);
  return files;
}

int CountFinalFiles(const std::wstring& output) {
  int files = 0;
  for (const wchar_t* name : {L"\\db.dxl", L"\\acl.dxl"}) files += Exists(output + name) ? 1 : 0;
  for (const wchar_t* name : {L"\\data", L"\\design", L"\\design2", L"\\profile", L"\\views"}) {
    files += CountFilesIn(output + name);
  }
  return files;
}

}  // namespace

Moment PickMoment(const MomentNumber& which, milliseconds cleanRun, int finalFiles) {
  constexpr milliseconds kAfterSight{25};
  constexpr int kMostAppearances = 6;  // Of the marker there is one for each note.
  Dice dice(which);
  Moment moment;
  moment.victim = PickVictim(dice);
  moment.sight = dice.OneIn(3) ? Sight::kStart : static_cast<Sight>(1 + dice.Below(3));
  moment.times = 1 + dice.Below(moment.sight == Sight::kFinalFiles ? finalFiles : kMostAppearances);
  moment.delay = dice.Within(moment.sight == Sight::kStart ? cleanRun : kAfterSight);
  if (dice.OneIn(4)) moment.nextWorkerToo = dice.Within(cleanRun / 2);
  moment.byNewRun = dice.OneIn(10);
  return moment;
}

std::string Describe(const Moment& moment) {
  std::string text = kVictims[static_cast<int>(moment.victim)];
  text += " " + std::to_string(moment.delay.count()) + " ms after ";
  if (moment.sight != Sight::kStart) text += std::to_string(moment.times) + " x ";
  text += kSights[static_cast<int>(moment.sight)];
  if (moment.victim == Victim::kWorker && moment.nextWorkerToo) {
    text += ", the next worker " + std::to_string(moment.nextWorkerToo->count()) + " ms later";
  }
  if (moment.victim != Victim::kWorker && moment.byNewRun) text += ", then a new run";
  return text;
}

bool Watch::Appeared(const wchar_t* name) {
  const bool isThere = Exists(output_ + name);
  if (isThere && !isThere_) ++appearances_;
  isThere_ = isThere;
  return appearances_ >= moment_.times;
}

bool Watch::Look() {
  switch (moment_.sight) {
    case Sight::kStart:
      return true;
    case Sight::kFinalFiles:
      return CountFinalFiles(output_) >= moment_.times;
    case Sight::kTemporaryFile:
      return Appeared(L"\\temp.tmp");
    case Sight::kMarkerFile:
      return Appeared(L"\\marker.txt");
  }
  return false;
}

}  // namespace larkspan::torture
