// Paths of databases as callers write them, and the files they stand for.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace larkspan::standin {

// All in the Notes character set; a part that the path lacks is empty.
struct NetPath {
  std::string port;
  std::string server;
  std::string file;
};

// Splits "file", "server!!file" or "port!!!server!!file".
NetPath SplitNetPath(std::string_view path);

// Where the files of all servers lie.
std::filesystem::path ServersFolder(const std::filesystem::path& dataFolder);

// The data directory of a server, or the data folder itself when the name is empty.
std::filesystem::path ServerFolder(const std::filesystem::path& dataFolder,
                                   const std::string& server);

// The file below the data folder: a relative one straight below it, or below servers/<server>/ when
// the path names a server. An absolute path without a server stands for itself.
std::filesystem::path DatabaseFile(const std::filesystem::path& dataFolder, std::string_view path);

}  // namespace larkspan::standin
