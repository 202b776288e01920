#include "console/listing/LineFaults.h"

#include "console/show/TextWidth.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

// More would hide them all.
constexpr std::uint64_t kMostSentences = 10;

// Enough to find a database by.
constexpr int kMostColumns = 200;
constexpr std::size_t kMostBytes = 1000;

}  // namespace

void LineFaults::Add(const TextLine& line, const std::string& words) {
  if (++count_ > kMostSentences) return;
  std::string sentence = "Line " + GroupedText(line.number) + " of " + file_ + " " + words;
  if (!line.text.empty())
    sentence += ": '" + CutAtTheEnd(line.text.substr(0, kMostBytes), kMostColumns) + "'";
  sentences_.push_back(std::move(sentence));
}

std::vector<std::string> LineFaults::Sentences() const {
  std::vector<std::string> sentences = sentences_;
  if (count_ > kMostSentences) {
    const std::uint64_t others = count_ - kMostSentences;
    sentences.push_back(CountText(others, "more line", "more lines") + " of " + file_ +
                        (others == 1 ? " is" : " are") + " damaged");
  }
  return sentences;
}

}  // namespace larkspan::console
