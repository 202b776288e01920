// Calls a fuzz target with the inputs of a corpus, and then with random ones: each is made of an
// input of the corpus by a few changes. The same seed and corpus give the same inputs. The targets
// that need Windows are run so, where no fuzzer can follow the code.
//
// Arguments: corpus folder, number of random inputs, seed, file for an input that fails.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

using Input = std::string;

// What the handler of a failure needs: it runs wherever the target was.
const Input* currentInput = nullptr;
std::string failingInputPath;

void KeepInputAndExit(int) {
  std::FILE* file = std::fopen(failingInputPath.c_str(), "wb");
  if (file != nullptr) {
    std::fwrite(currentInput->data(), 1, currentInput->size(), file);
    std::fclose(file);
  }
  std::_Exit(1);
}

std::vector<Input> ReadCorpus(const std::string& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<Input> corpus;
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  Require(!corpus.empty(), "the corpus has an input");
  return corpus;
}

class Mutator {
 public:
  Mutator(std::vector<Input> corpus, std::uint64_t seed)
      : corpus_(std::move(corpus)), random_(seed) {}

  Input Next() {
    constexpr std::size_t kMostChanges = 6;
    Input input = AnyOfCorpus();
    for (std::size_t left = 1 + Below(kMostChanges); left > 0; --left) Change(input);
    return input;
  }

 private:
  // Not the library's distribution, whose numbers may differ between its versions.
  std::size_t Below(std::size_t limit) { return random_() % limit; }

  const Input& AnyOfCorpus() { return corpus_[Below(corpus_.size())]; }

  char AnyByte() { return static_cast<char>(Below(256)); }

  // A stretch of the input, which may be empty.
  std::pair<std::size_t, std::size_t> AnyStretch(const Input& input) {
    const std::size_t at = Below(input.size() + 1);
    return {at, Below(input.size() - at + 1)};
  }

  void SetByte(Input& input) {
    if (!input.empty()) input[Below(input.size())] = AnyByte();
  }

  void FlipBit(Input& input) {
    if (!input.empty()) input[Below(input.size())] ^= static_cast<char>(1 << Below(8));
  }

  void InsertByte(Input& input) {
    const char byte = AnyByte();
    input.insert(Below(input.size() + 1), 1, byte);
  }

  void Erase(Input& input) {
    const auto [at, length] = AnyStretch(input);
    input.erase(at, length);
  }

  void Repeat(Input& input) {
    const auto [at, length] = AnyStretch(input);
    input.insert(Below(input.size() + 1), input.substr(at, std::min<std::size_t>(length, 64)));
  }

  void InsertFromCorpus(Input& input) {
    const Input& other = AnyOfCorpus();
    const auto [at, length] = AnyStretch(other);
    input.insert(Below(input.size() + 1), other, at, length);
  }

  void AppendOther(Input& input) { input += AnyOfCorpus(); }

  void Change(Input& input) {
    constexpr std::size_t kMostBytes = 8192;
    constexpr std::array kChanges = {
        &Mutator::SetByte, &Mutator::FlipBit,          &Mutator::InsertByte, &Mutator::Erase,
        &Mutator::Repeat,  &Mutator::InsertFromCorpus, &Mutator::AppendOther};
    (this->*kChanges[Below(kChanges.size())])(input);
    input.resize(std::min(input.size(), kMostBytes));
  }

  std::vector<Input> corpus_;
  std::mt19937_64 random_;
};

void Run(const Input& input) {
  currentInput = &input;
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

}  // namespace larkspan::fuzz

int main(int argc, char** argv) {
  using namespace larkspan::fuzz;
  Require(argc == 5, "there are four arguments");
  const unsigned long long executions = std::strtoull(argv[2], nullptr, 10);
  failingInputPath = argv[4];
  std::signal(SIGABRT, KeepInputAndExit);
  std::signal(SIGSEGV, KeepInputAndExit);
  const std::vector<Input> corpus = ReadCorpus(argv[1]);
  for (const Input& input : corpus) Run(input);
  Mutator mutator(corpus, std::strtoull(argv[3], nullptr, 10));
  for (unsigned long long done = 0; done < executions; ++done) Run(mutator.Next());
  std::printf("stat::number_of_executed_units: %llu\n", executions + corpus.size());
  return 0;
}
