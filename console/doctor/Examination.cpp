#include "console/doctor/Examination.h"

#include <algorithm>
#include <functional>
#include <optional>

#include "console/doctor/DatabaseChecks.h"
#include "console/doctor/OutputChecks.h"
#include "console/doctor/ProgramChecks.h"
#include "console/doctor/RuntimeChecks.h"
#include "console/follow/OutputFolder.h"

namespace larkspan::console {

namespace {

constexpr char kTemporaryAdvice[] =
    "See that the folder that the variable TEMP names is there, and that this user may write "
    "there.";

struct Step {
  const char* name;
  std::vector<const char*> needs;  // Earlier ones.
  std::function<CheckFinding()> look;
};

class Examination {
 public:
  Examination(const DoctorRequest& request, const std::wstring& password, StopRequests& stops,
              DoctorDisplay& display)
      : request_(request),
        stops_(stops),
        display_(display),
        around_{request, facts_.exporter, password, stops} {}

  std::vector<Check> Run() {
    for (const Step& step : Steps()) {
      display_.Begin(step.name);
      checks_.push_back({step.name, Look(step)});
      display_.Tell(checks_.back());
    }
    return std::move(checks_);
  }

 private:
  std::vector<Step> Steps() {
    return {
        {"exporter", {}, [this] { return CheckExporter(facts_); }},
        {"library", {"exporter"}, [this] { return CheckLibrary(facts_); }},
        {"names", {"library"}, [this] { return CheckNames(facts_); }},
        {"notes.ini", {}, [this] { return CheckConfiguration(request_, facts_); }},
        {"runtime", {"names"}, [this] { return LookAtRuntime(); }},
        {"user", {"runtime"}, [this] { return JudgeUser(runtime_); }},
        {"database", {"user"}, [this] { return LookAtDatabase(); }},
        {"size", {"database"}, [this] { return JudgeSize(database_); }},
        {"list", {"database"}, [this] { return JudgeList(database_, request_); }},
        {"notes", {"list"}, [this] { return CheckNotes(around_, database_.list.ids); }},
        {"folder", {}, [this] { return LookAtFolder(); }},
        {"space", {"folder"}, [this] { return CheckSpace(out_, database_.size); }},
        {"paths", {}, [this] { return LookAtPaths(); }},
    };
  }

  CheckFinding Look(const Step& step) {
    if (stops_.Count() > 0) return NotTried("stopped by the user");
    for (const char* need : step.needs) {
      const CheckFinding& earlier = FindingOf(need);
      if (earlier.result == CheckResult::kNotTried) return NotTried(earlier.detail);
      if (earlier.result == CheckResult::kFailed) {
        return NotTried(std::string("the check '") + need + "' failed");
      }
    }
    return step.look();
  }

  const CheckFinding& FindingOf(const std::string& name) const {
    return std::find_if(checks_.begin(), checks_.end(),
                        [&name](const Check& check) { return check.name == name; })
        ->finding;
  }

  CheckFinding LookAtRuntime() {
    // The library's own search is the runtime's to try; a file that is named and bad is not.
    if (FindingOf("notes.ini").result == CheckResult::kFailed) {
      return NotTried("the check 'notes.ini' failed");
    }
    std::string whyNot;
    runtime_ = TryRuntime(around_, whyNot);
    if (!whyNot.empty()) return Failed(whyNot, kTemporaryAdvice);
    return JudgeRuntime(runtime_, request_.timeoutMilliseconds);
  }

  CheckFinding LookAtDatabase() {
    if (request_.run.path.empty()) return NotTried("no --path was given");
    std::string whyNot;
    database_ = TryDatabase(around_, whyNot);
    if (!whyNot.empty()) return Failed(whyNot, kTemporaryAdvice);
    return JudgeOpening(database_, request_);
  }

  CheckFinding LookAtFolder() {
    if (request_.run.out.empty()) return NotTried("no --out was given");
    out_ = WholePath(request_.run.out);
    return CheckFolder(out_);
  }

  CheckFinding LookAtPaths() {
    if (request_.run.out.empty()) return NotTried("no --out was given");
    return CheckPaths(out_);
  }

  const DoctorRequest& request_;
  StopRequests& stops_;
  DoctorDisplay& display_;
  ProgramFacts facts_;
  TrialSurroundings around_;
  RuntimeTrial runtime_;
  DatabaseTrial database_;
  std::wstring out_;
  std::vector<Check> checks_;
};

}  // namespace

std::vector<Check> Examine(const DoctorRequest& request, const std::wstring& password,
                           StopRequests& stops, DoctorDisplay& display) {
  return Examination(request, password, stops, display).Run();
}

}  // namespace larkspan::console
