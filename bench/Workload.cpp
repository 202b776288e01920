#include "bench/Workload.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

namespace larkspan::bench {

namespace {

struct Field {
  std::string_view name;
  std::uint32_t Workload::*member;
};

constexpr Field kFields[] = {{"notes", &Workload::notes},
                             {"firstNote", &Workload::firstNote},
                             {"wait", &Workload::wait},
                             {"chunks", &Workload::chunks},
                             {"chunkBytes", &Workload::chunkBytes},
                             {"views", &Workload::views},
                             {"entries", &Workload::entries},
                             {"columns", &Workload::columns},
                             {"databases", &Workload::databases},
                             {"crashes", &Workload::crashes}};

[[noreturn]] void Refuse(const std::string& word) {
  std::fprintf(stderr, "LARKSPAN_WORKLOAD has '%s'\n", word.c_str());
  std::exit(2);
}

void Read(const std::string& word, Workload& workload) {
  const std::size_t equals = word.find('=');
  if (equals == word.npos) Refuse(word);
  char* end = nullptr;
  const unsigned long number = std::strtoul(word.c_str() + equals + 1, &end, 10);
  if (*end != '\0') Refuse(word);
  for (const Field& field : kFields) {
    if (field.name != std::string_view(word).substr(0, equals)) continue;
    workload.*field.member = static_cast<std::uint32_t>(number);
    return;
  }
  Refuse(word);
}

Workload ReadEnvironment() {
  Workload workload;
  const char* const text = std::getenv("LARKSPAN_WORKLOAD");
  std::istringstream words(text == nullptr ? "" : text);
  for (std::string word; words >> word;) Read(word, workload);
  return workload;
}

}  // namespace

const Workload& ProcessWorkload() {
  static const Workload workload = ReadEnvironment();
  return workload;
}

}  // namespace larkspan::bench
