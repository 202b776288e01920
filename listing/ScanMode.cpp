#include "listing/ScanMode.h"

#include <string>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "listing/ListingRun.h"
#include "listing/ScanLine.h"
#include "notes/Database.h"
#include "notes/DirectorySearch.h"
#include "notes/Properties.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// The root of a data directory: of this machine, or of a server.
std::wstring DirectoryPath() {
  const std::wstring& server = ProcessSettings().server;
  return server == L"<Local>" ? L"" : server + L"!!";
}

// The server of the directory's path, or the whole path where it names none. Where the library does
// not tell it, it is that by which the directory was opened.
std::string ServerOf(const Database& directory, const std::string& openedPath) {
  std::string path;
  if (!GetDatabasePath(directory, path).ok()) path = openedPath;
  return path.substr(0, path.find("!!"));
}

Status OpenDirectory(std::string& path, Database& directory) {
  if (const Status status = PathToNotes(DirectoryPath(), path); !status.ok()) return status;
  return OpenDatabase(path, directory);
}

void ListDirectory(ListingFile& file) {
  std::string path;
  Database directory;
  const Status status = OpenDirectory(path, directory);
  if (!status.ok()) {
    LogStatus(LogLevel::kError, L"Error opening root directory (%s)", status);
    return;
  }
  file.WriteLine(ServerOf(directory, path));
  ScanLines lines(file);
  SearchDirectory(directory,
                  [&](const notes_api::SearchMatch& match, const notes_api::ItemTable& summary) {
                    lines.Write(match, summary);
                  });
}

}  // namespace

void RunScanMode() { RunListing(output::kScan, ListDirectory); }

}  // namespace larkspan
