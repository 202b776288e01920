// report: accounts for each note of an output folder, and makes a page for people of what came out.
#include <CLI/CLI.hpp>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "console/CheckWatch.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/account/AccountText.h"
#include "console/bag/VerifyExport.h"
#include "console/folder/WholeFile.h"
#include "console/page/Page.h"
#include "console/page/PageFile.h"
#include "console/page/Pieces.h"
#include "console/show/Output.h"
#include "console/show/Sentences.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct ReportOptions {
  std::string folder;
  std::string file;
  bool quiet = false;
};

void Complain(const std::string& text) { Output(STD_ERROR_HANDLE).Write(ErrorText(text)); }

ExitCode Refuse(const std::string& text, ExitCode code = ExitCode::kCouldNotRun) {
  Complain(text);
  return code;
}

PageContent ContentOf(const ReportOptions& options, ExportVerdict verdict) {
  PageContent content;
  content.verdict = verdict.account.Verdict();
  content.account = std::move(verdict.account);
  content.bag = std::move(verdict.bag);
  content.outcomeReading = ReadOutcome(verdict.files, content.outcome);
  ReadDatabaseAndViews(verdict.files, content);
  content.folder = options.folder;
  content.made = UtcNow();
  content.version = LARKSPAN_VERSION;
  return content;
}

// Empty, or why the page may not lie there. A slip of the hand must not cost a file of the export,
// which may be the only copy, nor its seal.
std::string WhyNotThere(const ReportOptions& options) {
  const std::wstring folder = Utf8ToWide(options.folder);
  const std::wstring file = Utf8ToWide(options.file);
  if (!LiesInside(file, folder)) return {};
  if (!IsNamedAsPage(file))
    return options.file + ": within the export, only a name that ends in .html is taken";
  if (IsBag(folder) && LiesInside(file, ExportWithin(folder)))
    return options.file + ": a page in the payload of a sealed folder would break its seal";
  return {};
}

// No value when there is nothing to make a page of: why not is said.
std::optional<ExportVerdict> Verify(const ReportOptions& options, ExitCode& code) {
  CheckWatch watch(!options.quiet);
  std::string whyNot;
  std::optional<ExportVerdict> verdict;
  try {
    verdict = VerifyExport(Utf8ToWide(options.folder),
                           {watch.Watch("Summing"), watch.Watch("Checking")}, whyNot);
  } catch (const std::exception& exception) {
    whyNot = std::string("The folder could not be judged: ") + exception.what();
  }
  watch.Clear();
  code = watch.IsStopped() ? ExitCode::kStopped : ExitCode::kCouldNotRun;
  if (!verdict) Complain(options.folder + ": " + whyNot);
  return verdict;
}

void TellOfPageInside(const ReportOptions& options, const PageContent& content) {
  if (content.bag || !LiesInside(Utf8ToWide(options.file), Utf8ToWide(options.folder))) return;
  Complain(options.file +
           " lies in the export: verify will tell of it as a file that no list knows");
}

ExitCode RunReport(const ReportOptions& options) {
  if (const std::string fault = WhyNotThere(options); !fault.empty()) return Refuse(fault);
  ExitCode code = ExitCode::kCouldNotRun;
  std::optional<ExportVerdict> verdict = Verify(options, code);
  if (!verdict) return code;
  const std::string nonce = MakeNonce();
  if (nonce.empty()) return Refuse("the system gives no random bytes");
  const PageContent content = ContentOf(options, std::move(*verdict));
  if (!WriteWholeFile(Utf8ToWide(options.file), RenderPage(content, nonce)))
    return Refuse(options.file + ": the page cannot be written there");
  TellOfPageInside(options, content);
  if (!options.quiet)
    Output(STD_OUTPUT_HANDLE)
        .Write(VerdictText(content.account) + "\n" +
               (content.bag ? SealedText(*content.bag) + "\n" : "") + "The report is in " +
               options.file + "\n");
  return content.verdict;
}

}  // namespace

CommandRun AddReportCommand(CLI::App& app) {
  const auto options = std::make_shared<ReportOptions>();
  CLI::App* const command =
      app.add_subcommand("report", "Makes a page that shows what came out of an export");
  AddText(*command, "OUT", options->folder, "The output folder of an export")->required();
  AddText(*command, "--html", options->file,
          "The file of the page; an earlier one is replaced. Best outside of OUT")
      ->required();
  command->add_flag("--quiet", options->quiet, "No text; the exit code says it");
  command->footer(
      "Exit code: that of verify; 2 also when the page cannot be written\n"
      "Example:\n  larkspan-console report D:\\export\\ada --html D:\\export\\ada.html\n");
  return [options] { return RunReport(*options); };
}

}  // namespace larkspan::console
