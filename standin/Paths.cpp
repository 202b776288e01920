#include "standin/Paths.h"

#include "standin/CharacterSet.h"
#include "standin/Platform.h"

namespace larkspan::standin {

namespace {

constexpr std::string_view kAfterPort = "!!!";
constexpr std::string_view kAfterServer = "!!";

std::filesystem::path AsPath(const std::string& notesText) {
  return PathFromUtf16(NotesToUtf16(notesText));
}

}  // namespace

NetPath SplitNetPath(std::string_view path) {
  NetPath parts;
  const std::size_t port = path.find(kAfterPort);
  if (port != std::string_view::npos) {
    parts.port = path.substr(0, port);
    path.remove_prefix(port + kAfterPort.size());
  }
  const std::size_t server = path.find(kAfterServer);
  if (server != std::string_view::npos) {
    parts.server = path.substr(0, server);
    path.remove_prefix(server + kAfterServer.size());
  }
  parts.file = path;
  return parts;
}

std::filesystem::path ServersFolder(const std::filesystem::path& dataFolder) {
  return dataFolder / "servers";
}

std::filesystem::path ServerFolder(const std::filesystem::path& dataFolder,
                                   const std::string& server) {
  return server.empty() ? dataFolder : ServersFolder(dataFolder) / AsPath(server);
}

std::filesystem::path DatabaseFile(const std::filesystem::path& dataFolder, std::string_view path) {
  const NetPath parts = SplitNetPath(path);
  if (parts.server.empty()) return dataFolder / AsPath(parts.file);
  return ServerFolder(dataFolder, parts.server) / AsPath(parts.file).relative_path();
}

}  // namespace larkspan::standin
