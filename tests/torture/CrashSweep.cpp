// A worker that dies at a note costs that note, which is named once, and nothing else: the next one
// goes on behind it. One that dies between two notes, or before the first, leaves no marker file,
// and the run ends there; that is told by its exit code in the log and, in an archive, by counts
// that do not agree. Where the subject has an earlier worker, that one dies first.
#include "tests/torture/CrashSweep.h"

#include "tests/torture/Check.h"
#include "tests/torture/CrashCase.h"
#include "tests/torture/DocumentedMessages.h"
#include "tests/torture/ProcessRun.h"
#include "tests/torture/WorkerStories.h"

namespace larkspan::torture {

namespace {

class CrashSweep {
 public:
  CrashSweep(const Subject& subject, Report& report) : report_(report), subject_(subject) {
    ExportStage stage(subject);
    clean_ = stage.Export("[]");
    reference_ = MakeReference(stage);
    cleanFiles_ = IdentifyFiles(reference_, clean_);
  }

  void Run(const Options& options) {
    std::vector<CrashCase> cases = CrashCases(clean_.calls, options.seed);
    const std::size_t all = cases.size();
    Choose(options, cases, report_);
    for (const CrashCase& crash : cases) RunCase(crash);
    report_.PrintFigures(subject_.name, std::to_string(clean_.calls.size()) + " entry points, " +
                                            std::to_string(all) + " cases, " +
                                            std::to_string(deaths_) + " deaths");
  }

 private:
  void RunCase(const CrashCase& crash) {
    report_.Begin(subject_.name + ": " + Describe(crash));
    const ProcessRun run = RunProgram(subject_, PlanOf(crash));
    Lines findings;
    const std::vector<WorkerStory> stories = ReadStories(run.outcome.log, findings);
    CheckProcesses(run, crash, stories, findings);
    const bool endedEarly = !stories.empty() && stories.back().died();
    const Check check{.subject = subject_,
                      .reference = reference_,
                      .clean = clean_,
                      .cleanFiles = cleanFiles_,
                      .run = run.outcome,
                      .endedEarly = endedEarly,
                      .mayLeaveHalf = endedEarly,
                      .findings = findings};
    CheckExport(check);
    if (!findings.empty()) AddLines(run.outcome.log, findings);
    report_.End(findings);
  }

  void CheckProcesses(const ProcessRun& run, const CrashCase& crash,
                      const std::vector<WorkerStory>& stories, Lines& findings) {
    if (!run.exitCode) findings.push_back("does not end");
    if (run.exitCode.value_or(0) != 0) {
      findings.push_back("exit code " + std::to_string(*run.exitCode));
    }
    if (!run.misuse.empty()) findings.push_back("misuse: " + run.misuse);
    for (const std::string& line : run.outcome.log) {
      if (!documented_.Contains(line)) findings.push_back("undocumented: " + line);
    }
    // A call that fails because of the database hands nothing over after which it could end.
    const bool mayFailBefore = crash.afterAPart;
    std::vector<WorkerStory> struck = stories;
    if (subject_.resumeAt != 0) TakeOutTheEarlier(struck, findings);
    const bool someoneDied = !struck.empty() && struck.front().died();
    if (!someoneDied && !mayFailBefore) findings.push_back("nobody died");
    for (const WorkerStory& story : struck) CheckEnd(story, crash.death, findings);
    const bool lastIsWell = !stories.empty() && !stories.back().died();
    if (lastIsWell) AddLines(run.leftOpenByTheLast, findings);
  }

  void TakeOutTheEarlier(std::vector<WorkerStory>& stories, Lines& findings) const {
    if (stories.empty() || stories.front().exitCode != kCrashExitCode ||
        stories.front().marker != subject_.resumeAt) {
      findings.push_back("the earlier worker did not die at its note");
    } else {
      stories.erase(stories.begin());
    }
  }

  void CheckEnd(const WorkerStory& story, const Death& death, Lines& findings) {
    if (!story.died()) return;
    ++deaths_;
    if (!death.exitCodes.contains(story.exitCode)) {
      findings.push_back("a worker's exit code is " + std::to_string(story.exitCode));
    }
  }

  static void AddLines(const Lines& lines, Lines& findings) {
    findings.insert(findings.end(), lines.begin(), lines.end());
  }

  Report& report_;
  const Subject subject_;
  DocumentedMessages documented_;
  Outcome clean_;
  Reference reference_;
  std::map<std::uint32_t, Variant> cleanFiles_;
  int deaths_ = 0;
};

}  // namespace

void SweepCrashes(const Options& options, Report& report) {
  for (const Subject& subject : options.samples ? SampleSubjects() : SmallSubjects()) {
    if (options.Wants(subject.name)) CrashSweep(subject, report).Run(options);
  }
}

}  // namespace larkspan::torture
