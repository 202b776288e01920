// Step by step:
//   1. Where the result goes is looked at before anything is asked of a server.
//   2. larkspan.exe writes its file into a temporary folder.
//   3. The file is read. Without a line of it there is nothing to show.
//   4. What was read is written, also when more was to come: then the code says so.
#include "console/listing/Listing.h"

#include "base/OutputPaths.h"
#include "console/folder/TemporaryFolder.h"
#include "console/folder/WholeFile.h"
#include "console/follow/ExporterArguments.h"
#include "console/follow/Host.h"
#include "console/follow/OutputFolder.h"
#include "console/listing/ExporterListing.h"
#include "console/show/LinePrinter.h"
#include "console/show/Output.h"
#include "console/show/Sentences.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

class Listing {
 public:
  Listing(const ListingKind& kind, const ListingRequest& request, StopRequests& stops,
          const std::wstring& password)
      : kind_(kind), request_(request), stops_(stops), password_(password) {}

  ExitCode Run() {
    if (const std::string fault = FaultOfTarget(); !fault.empty()) return Refuse(fault);
    const TemporaryFolder folder;
    if (folder.path().empty()) return Refuse("no folder for temporary files could be made");
    const ListingEnd end = RunExporter(folder.path());
    if (end.isStopped) {
      Complain("stopped by the user; nothing is shown");
      return ExitCode::kStopped;
    }
    return Judge(end, kind_.read(output::Join(folder.path(), kind_.file)));
  }

 private:
  void Complain(const std::string& sentence) { errors_.Write(ErrorText(sentence)); }

  ExitCode Refuse(const std::string& why) {
    Complain(kind_.subject + " cannot be listed: " + why);
    return ExitCode::kCouldNotRun;
  }

  // Nobody is to wait for a listing that has no place.
  std::string FaultOfTarget() const {
    if (request_.to.empty()) return {};
    const std::wstring file = WholePath(request_.to);
    if (FolderExists(file)) return "'" + request_.to + "' is a folder";
    const std::wstring folder = file.substr(0, file.find_last_of(L'\\') + 1);
    return FolderExists(folder) ? "" : "the folder of '" + request_.to + "' is not there";
  }

  std::vector<std::wstring> Arguments(const std::wstring& folder) const {
    ExportRequest exporter;
    exporter.archive = false;
    exporter.idFile = request_.idFile;
    exporter.notesIni = request_.notesIni;
    std::vector<std::wstring> arguments = ExporterArguments(exporter, folder, true);
    arguments.insert(arguments.end(), kind_.arguments.begin(), kind_.arguments.end());
    return arguments;
  }

  ListingEnd RunExporter(const std::wstring& folder) {
    LinePrinter line(errors_);
    RunView view;
    view.path = kind_.place;
    const auto watch = [&](std::uint64_t lines) {
      if (!errors_.IsTerminal() || request_.quiet) return;
      view.phase = "listing";
      if (lines > 0) view.phase += " " + CountText(lines, "line", "lines");
      line.Show(view, {}, Now());
    };
    return RunExporterListing({folder, kind_.file, Arguments(folder), password_}, stops_, watch);
  }

  ExitCode Judge(const ListingEnd& end, const ListingContent& content) {
    for (const std::string& warning : end.warnings) Complain("larkspan.exe warns: " + warning);
    for (const std::string& sentence : content.remarks) Complain(sentence);
    for (const std::string& sentence : content.faults) Complain(sentence);
    if (!end.fault.empty() && content.entries == 0) return Refuse(end.fault);
    if (!content.whyNone.empty()) return Refuse(content.whyNone);
    if (!Write(content)) return ExitCode::kCouldNotRun;
    const std::string why = WhyNotWhole(end, content);
    if (why.empty()) return ExitCode::kWhole;
    Complain("the listing is not whole: " + why);
    return ExitCode::kIncomplete;
  }

  static std::string WhyNotWhole(const ListingEnd& end, const ListingContent& content) {
    if (!end.fault.empty()) return end.fault;
    if (content.faultCount == 0) return {};
    return CountText(content.faultCount, "line is", "lines are") + " damaged";
  }

  bool Write(const ListingContent& content) {
    if (!request_.to.empty()) return WriteFile(content);
    // In the last column a terminal would begin a new line.
    std::string text =
        content.text(request_.format, output_.IsTerminal() ? output_.Width() - 1 : 0);
    if (request_.format == ListingFormat::kTable && !request_.quiet)
      text += "\n" + content.summary + "\n";
    if (output_.Write(text)) return true;
    Complain("standard output takes no more; the listing is not whole there");
    return false;
  }

  bool WriteFile(const ListingContent& content) {
    if (!WriteWholeFile(Utf8ToWide(request_.to), content.text(request_.format, 0))) {
      Complain("the listing cannot be written to '" + request_.to + "'");
      return false;
    }
    if (!request_.quiet) output_.Write(content.summary + " in " + request_.to + "\n");
    return true;
  }

  const ListingKind& kind_;
  const ListingRequest& request_;
  StopRequests& stops_;
  const std::wstring& password_;
  Output output_{STD_OUTPUT_HANDLE};
  Output errors_{STD_ERROR_HANDLE};
};

}  // namespace

ExitCode RunListing(const ListingKind& kind, const ListingRequest& request, StopRequests& stops,
                    const std::wstring& password) {
  return Listing(kind, request, stops, password).Run();
}

}  // namespace larkspan::console
