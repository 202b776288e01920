// Exports that are ended from outside, at moments that a seed chooses, and taken up again. Usage:
//
//   larkspan_kill_torture [--runs=N] [--seed=N] [--lanes=N] [--only=I]
//
// Prints the moment of each run and what became of it, every finding, and figures; exit code 1 when
// there was a finding. --only=I with the same seed strikes at the moments of the I-th run again: a
// run that ends before its moment is followed by one with another. So many runs as there are lanes
// go on at the same time.
#include <atomic>
#include <cstdio>
#include <exception>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/support/WholeNumber.h"
#include "tests/torture/kill/KillRun.h"

namespace larkspan::torture {
namespace {

struct Options {
  std::uint64_t runs = 1000;
  std::uint64_t seed = 1;
  std::uint64_t lanes = 4;
  std::uint64_t only = 0;  // From 1; 0 is every one.
};

Options ReadOptions(int argc, char** argv) {
  Options options;
  const std::map<std::string, std::uint64_t Options::*> members = {{"--runs", &Options::runs},
                                                                   {"--seed", &Options::seed},
                                                                   {"--lanes", &Options::lanes},
                                                                   {"--only", &Options::only}};
  for (int i = 1; i < argc; ++i) {
    const std::string text = argv[i];
    const std::size_t equals = text.find('=');
    const auto member = members.find(text.substr(0, equals));
    if (member == members.end() || equals == std::string::npos) {
      throw std::invalid_argument("unknown option " + text);
    }
    options.*member->second = testing::WholeNumber(text.substr(equals + 1));
  }
  if (options.runs == 0 || options.lanes == 0 || options.only > options.runs) {
    throw std::invalid_argument("no run is asked for");
  }
  return options;
}

class Torture {
 public:
  explicit Torture(const Options& options)
      : options_(options), clean_(RunClean()), finalFiles_(CountFinalFiles()) {}

  bool Run() {
    std::printf("kill: seed %llu, %llu runs; a clean run has %d files and takes %lld ms\n",
                options_.seed, options_.runs, finalFiles_, clean_.duration.count());
    std::vector<std::thread> lanes;
    for (std::uint64_t i = 0; i < options_.lanes; ++i) lanes.emplace_back([this] { RunLane(); });
    for (std::thread& lane : lanes) lane.join();
    PrintFigures();
    return findings_ == 0;
  }

 private:
  int CountFinalFiles() const {
    int files = 0;
    for (const auto& [name, content] : clean_.tree) files += IsFinalName(name) ? 1 : 0;
    return files;
  }

  void RunLane() {
    for (std::uint64_t number = ++begun_; number <= options_.runs; number = ++begun_) {
      if (options_.only == 0 || options_.only == number) RunOne(number);
    }
  }

  void RunOne(std::uint64_t number) {
    constexpr std::uint64_t kMostTooLate = 20;
    KillOutcome outcome{.isKilled = false};
    MomentNumber which{.seed = options_.seed, .number = number, .tooLate = 0};
    for (; which.tooLate < kMostTooLate && !outcome.isKilled; ++which.tooLate) {
      const Moment moment = PickMoment(which, clean_.duration, finalFiles_);
      outcome = RunKilledAt(moment);
      if (!outcome.isKilled && which.tooLate == kMostTooLate - 1) {
        outcome.findings.emplace_back("each moment came too late");
      }
      Record(which, moment, outcome);
    }
  }

  KillOutcome RunKilledAt(const Moment& moment) const {
    try {
      return RunKilled(clean_, moment);
    } catch (const std::exception& error) {
      return {.findings = {error.what()}};
    }
  }

  void Record(const MomentNumber& which, const Moment& moment, const KillOutcome& outcome) {
    const std::lock_guard lock(recording_);
    std::printf("%llu.%llu: %s: %s\n", which.number, which.tooLate, Describe(moment).c_str(),
                outcome.kind.c_str());
    ++(outcome.isKilled ? kinds_ : endedBefore_)[outcome.kind];
    for (const std::string& remark : outcome.remarks) ++remarks_[remark];
    for (const std::string& finding : outcome.findings) {
      std::printf("  FINDING %s\n", finding.c_str());
      ++findings_;
    }
    std::fflush(stdout);
  }

  void PrintFigures() const {
    for (const auto& [kind, count] : kinds_) std::printf("%6d  %s\n", count, kind.c_str());
    for (const auto& [kind, count] : endedBefore_) {
      std::printf("%6d  beside these: %s\n", count, kind.c_str());
    }
    for (const auto& [remark, count] : remarks_) {
      std::printf("%6d  of these: %s\n", count, remark.c_str());
    }
    std::printf("kill: %d findings\n", findings_);
  }

  const Options options_;
  const CleanRun clean_;
  const int finalFiles_;
  std::atomic<std::uint64_t> begun_{0};
  std::mutex recording_;  // Guards what follows.
  std::map<std::string, int> kinds_;
  std::map<std::string, int> endedBefore_;
  std::map<std::string, int> remarks_;
  int findings_ = 0;
};

}  // namespace
}  // namespace larkspan::torture

int main(int argc, char** argv) {
  try {
    return larkspan::torture::Torture(larkspan::torture::ReadOptions(argc, argv)).Run() ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "larkspan_kill_torture: %s\n", error.what());
    return 1;
  }
}
