#include "console/bag/Digests.h"

#include <windows.h>

#include <bcrypt.h>

#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

struct Description {
  const char* name;
  const wchar_t* systemName;
  std::size_t bytes;
};

// In the order of DigestKind.
constexpr std::array<Description, kDigestKindCount> kDescriptions = {{
    {"md5", BCRYPT_MD5_ALGORITHM, 16},
    {"sha1", BCRYPT_SHA1_ALGORITHM, 20},
    {"sha256", BCRYPT_SHA256_ALGORITHM, 32},
    {"sha384", BCRYPT_SHA384_ALGORITHM, 48},
    {"sha512", BCRYPT_SHA512_ALGORITHM, 64},
}};

const Description& DescriptionOf(DigestKind kind) {
  return kDescriptions[static_cast<std::size_t>(kind)];
}

struct ProviderCloser {
  void operator()(BCRYPT_ALG_HANDLE handle) const { BCryptCloseAlgorithmProvider(handle, 0); }
};
struct HashCloser {
  void operator()(BCRYPT_HASH_HANDLE handle) const { BCryptDestroyHash(handle); }
};
using Provider = std::unique_ptr<std::remove_pointer_t<BCRYPT_ALG_HANDLE>, ProviderCloser>;
using Hash = std::unique_ptr<std::remove_pointer_t<BCRYPT_HASH_HANDLE>, HashCloser>;

// Opening one takes longer than the sum of a small file, so they stay open.
class Providers {
 public:
  Providers() {
    for (std::size_t i = 0; i < kDigestKindCount; ++i) {
      BCRYPT_ALG_HANDLE handle = nullptr;
      if (BCryptOpenAlgorithmProvider(&handle, kDescriptions[i].systemName, nullptr, 0) >= 0)
        providers_[i].reset(handle);
    }
  }

  BCRYPT_ALG_HANDLE Of(DigestKind kind) const {
    return providers_[static_cast<std::size_t>(kind)].get();
  }

 private:
  std::array<Provider, kDigestKindCount> providers_;
};

BCRYPT_ALG_HANDLE ProviderOf(DigestKind kind) {
  static const Providers providers;
  return providers.Of(kind);
}

void Require(bool done) {
  if (!done) throw std::runtime_error("The system cannot calculate a sum.");
}

std::string HexText(std::span<const UCHAR> bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const UCHAR byte : bytes) {
    text.push_back(kDigits[byte >> 4]);
    text.push_back(kDigits[byte & 0xF]);
  }
  return text;
}

class RunningDigest {
 public:
  explicit RunningDigest(DigestKind kind) : kind_(kind) {
    BCRYPT_HASH_HANDLE handle = nullptr;
    Require(BCryptCreateHash(ProviderOf(kind), &handle, nullptr, 0, nullptr, 0, 0) >= 0);
    hash_.reset(handle);
  }

  DigestKind kind() const { return kind_; }

  void Take(std::string_view piece) {
    auto* const bytes = reinterpret_cast<PUCHAR>(const_cast<char*>(piece.data()));
    Require(BCryptHashData(hash_.get(), bytes, static_cast<ULONG>(piece.size()), 0) >= 0);
  }

  std::string Finish() {
    std::array<UCHAR, 64> sum;
    const std::size_t size = DescriptionOf(kind_).bytes;
    Require(BCryptFinishHash(hash_.get(), sum.data(), static_cast<ULONG>(size), 0) >= 0);
    return HexText({sum.data(), size});
  }

 private:
  DigestKind kind_;
  Hash hash_;
};

}  // namespace

DigestKinds OnlyKind(DigestKind kind) { return DigestKinds().set(static_cast<std::size_t>(kind)); }

std::optional<DigestKind> DigestKindOf(std::string_view name) {
  for (std::size_t i = 0; i < kDigestKindCount; ++i)
    if (name == kDescriptions[i].name) return static_cast<DigestKind>(i);
  return std::nullopt;
}

const char* DigestName(DigestKind kind) { return DescriptionOf(kind).name; }

std::size_t DigestDigits(DigestKind kind) { return DescriptionOf(kind).bytes * 2; }

bool IsOffered(DigestKind kind) { return ProviderOf(kind) != nullptr; }

std::optional<Digests> DigestsOfFile(const std::wstring& path, DigestKinds kinds,
                                     std::span<char> buffer) {
  SharedFile file(path);
  if (file.state() != FileReading::kRead) return std::nullopt;
  std::vector<RunningDigest> running;
  for (std::size_t i = 0; i < kDigestKindCount; ++i)
    if (kinds.test(i)) running.emplace_back(static_cast<DigestKind>(i));
  while (true) {
    const std::optional<std::size_t> size = file.Read(buffer);
    if (!size) return std::nullopt;
    for (RunningDigest& digest : running) digest.Take({buffer.data(), *size});
    if (*size < buffer.size()) break;
  }
  Digests digests;
  for (RunningDigest& digest : running) digests.Set(digest.kind(), digest.Finish());
  return digests;
}

std::string DigestOfText(DigestKind kind, std::string_view text) {
  RunningDigest digest(kind);
  digest.Take(text);
  return digest.Finish();
}

}  // namespace larkspan::console
