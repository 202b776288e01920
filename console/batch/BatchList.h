// The list of databases that a batch works through: what the command "databases" writes with --csv,
// or plain lines "server!!path".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace larkspan::console {

// One database as the list names it. UTF-8.
struct ListedDatabase {
  std::string server;  // Empty: this machine.
  std::string path;
  std::string title;      // Where the list tells it.
  bool isFolder = false;  // The list says that this is none.
};

struct BatchList {
  std::vector<ListedDatabase> databases;  // Each once, in the order of the list.
  std::uint64_t repeated = 0;             // Lines that named one again.
};

// Reads the file, which is UTF-8, or UTF-16 with a byte order mark. Empty, or a sentence that says
// what is wrong with it; `list` is then as it was.
std::string ReadBatchList(const std::wstring& file, BatchList& list);

// The same of its text. Lines count from 1.
std::string ParseBatchList(std::string_view text, BatchList& list);

}  // namespace larkspan::console
