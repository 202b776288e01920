// What a person or a caller wants of one export, as the command line says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::console {

// So many losses at most, or so many in a hundred listed notes.
struct LossLimit {
  double value = 0;
  bool isPercentage = false;
};

struct ExportRequest {
  // The exporter's own settings. UTF-8.
  std::string server;
  std::string path;
  std::string out;
  std::string idFile;
  std::string notesIni;
  bool fullAccess = false;
  bool views = true;
  bool debug = false;
  bool archive = true;  // False: the plain form of design notes.

  std::uint32_t workers = 1;  // At work at once.

  bool stopOnStdinEnd = false;
  std::optional<std::uint64_t> stallMilliseconds;
  std::optional<std::uint32_t> giveUp;
  std::optional<LossLimit> maxLosses;
  bool atomic = false;
  bool confirm = false;
  bool resume = false;
};

}  // namespace larkspan::console
