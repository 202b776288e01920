// The sums of files that Windows calculates, named as a bag names them. Any thread may call.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace larkspan::console {

enum class DigestKind : std::uint8_t { kMd5, kSha1, kSha256, kSha384, kSha512 };

inline constexpr std::size_t kDigestKindCount = 5;
using DigestKinds = std::bitset<kDigestKindCount>;

DigestKinds OnlyKind(DigestKind kind);

// Of "sha256"; no value for a name that is none of these.
std::optional<DigestKind> DigestKindOf(std::string_view name);

const char* DigestName(DigestKind kind);

// How many hexadecimal digits it has.
std::size_t DigestDigits(DigestKind kind);

// False where the system is told to do without that one.
bool IsOffered(DigestKind kind);

// The sums of one content, hexadecimal in lower case; of a kind that was not asked for the empty
// text.
class Digests {
 public:
  const std::string& Of(DigestKind kind) const { return texts_[static_cast<std::size_t>(kind)]; }
  void Set(DigestKind kind, std::string text) {
    texts_[static_cast<std::size_t>(kind)] = std::move(text);
  }

 private:
  std::array<std::string, kDigestKindCount> texts_;
};

// All sums of these kinds in one reading of the file, through the buffer, which is best large. No
// value when the file cannot be read. Throws std::runtime_error when the system cannot calculate
// them.
std::optional<Digests> DigestsOfFile(const std::wstring& path, DigestKinds kinds,
                                     std::span<char> buffer);

std::string DigestOfText(DigestKind kind, std::string_view text);

}  // namespace larkspan::console
