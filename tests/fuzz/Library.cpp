#include "tests/fuzz/Library.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "notes/NotesApi.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

// The library reads its configuration only at its start, so the file is not kept.
class ShortLivedIni {
 public:
  ShortLivedIni() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("fuzz-" + std::to_string(random()) + std::to_string(random()) + ".ini");
    std::ofstream(path_) << "Directory=.\nStandinDecimalSeparator=,\n";
  }
  ~ShortLivedIni() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  std::string Argument() const { return "=" + path_.string(); }

 private:
  std::filesystem::path path_;
};

bool Start() {
  const ShortLivedIni ini;
  std::string program = "fuzz";
  std::string argument = ini.Argument();
  char* arguments[] = {program.data(), argument.data()};
  Require(notes_api::NotesInitExtended(2, arguments) == 0, "the library starts");
  return true;
}

}  // namespace

void StartLibrary() { [[maybe_unused]] static const bool isStarted = Start(); }

}  // namespace larkspan::fuzz
