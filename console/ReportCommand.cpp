// report: accounts for each note of an output folder, and makes a page for people of what came out.
#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/account/AccountText.h"
#include "console/account/Verify.h"
#include "console/page/Page.h"
#include "console/page/Pieces.h"
#include "console/page/WritePage.h"
#include "console/show/Output.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct ReportOptions {
  std::string folder;
  std::string file;
  bool quiet = false;
};

void Complain(const std::string& text) {
  Output(STD_ERROR_HANDLE).Write("larkspan-console: " + text + "\n");
}

ExitCode Refuse(const std::string& text) {
  Complain(text);
  return ExitCode::kCouldNotRun;
}

PageContent ContentOf(const ReportOptions& options, Account account) {
  const std::wstring folder = Utf8ToWide(options.folder);
  PageContent content;
  content.verdict = account.Verdict();
  content.account = std::move(account);
  content.outcomeReading = ReadOutcome(folder, content.outcome);
  ReadDatabaseAndViews(folder, content);
  content.folder = options.folder;
  content.made = UtcNow();
  content.version = LARKSPAN_VERSION;
  return content;
}

ExitCode RunReport(const ReportOptions& options) {
  const std::wstring folder = Utf8ToWide(options.folder);
  const std::wstring file = Utf8ToWide(options.file);
  const bool isInside = LiesInside(file, folder);
  // A slip of the hand must not cost a file of the export, which may be the only copy.
  if (isInside && !IsNamedAsPage(file))
    return Refuse(options.file + ": within the export, only a name that ends in .html is taken");
  std::string whyNot;
  std::optional<Account> account = VerifyFolder(folder, {}, whyNot);
  if (!account) return Refuse(options.folder + ": " + whyNot);
  const std::string nonce = MakeNonce();
  if (nonce.empty()) return Refuse("the system gives no random bytes");
  const std::string verdict = VerdictText(*account);
  const PageContent content = ContentOf(options, std::move(*account));
  if (!WritePage(file, RenderPage(content, nonce)))
    return Refuse(options.file + ": the page cannot be written there");
  if (isInside)
    Complain(options.file +
             " lies in the export: verify will tell of it as a file that no list knows");
  if (!options.quiet)
    Output(STD_OUTPUT_HANDLE).Write(verdict + "\nThe report is in " + options.file + "\n");
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
