#include "console/bag/Manifest.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "console/bag/BagPath.h"
#include "console/bag/TagText.h"

namespace larkspan::console {

namespace {

constexpr char kPayloadStart[] = "manifest-";
constexpr char kTagStart[] = "tagmanifest-";
constexpr std::string_view kEnd = ".txt";

bool IsHexDigit(char digit) {
  return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f') ||
         (digit >= 'A' && digit <= 'F');
}

bool HasLetter(std::string_view text, char first, char last) {
  return std::any_of(text.begin(), text.end(),
                     [=](char letter) { return letter >= first && letter <= last; });
}

// "sha256" of "SHA-256".
std::string PlainAlgorithmName(std::string_view name) {
  std::string plain = LowerCase(name);
  std::erase_if(plain, [](char letter) {
    return !(letter >= 'a' && letter <= 'z') && !(letter >= '0' && letter <= '9');
  });
  return plain;
}

// What a path of a list can mean, the likeliest first, and what is then odd about it.
struct Meaning {
  std::string path;
  const char* quirk = nullptr;
};

std::vector<Meaning> MeaningsOf(std::string_view path, const Declaration& declaration) {
  constexpr char kBarePercent[] = "a percent sign that is not encoded";
  constexpr char kEncodedPercent[] = "an encoded percent sign, which came with version 1.0";
  if (path.find('%') == path.npos) return {{std::string(path), nullptr}};
  const std::string all = DecodePath(path, Encoded::kLineEndsAndPercent);
  if (declaration.IsVersion1()) return {{all, nullptr}, {std::string(path), kBarePercent}};
  return {{DecodePath(path, Encoded::kLineEnds), nullptr},
          {std::string(path), nullptr},
          {all, kEncodedPercent}};
}

// Takes off what some programs put before a path.
std::string_view WithoutPrefix(std::string_view path, LineQuirks& quirks) {
  if (path.starts_with('*')) {
    quirks.Count("a '*' before the path, as md5sum writes it");
    path.remove_prefix(1);
  }
  if (path.starts_with("./")) quirks.Count("'./' before the path");
  while (path.starts_with("./")) path.remove_prefix(2);
  return path;
}

class ManifestReader {
 public:
  ManifestReader(const BagTree& tree, const Declaration& declaration, Manifest& manifest,
                 BagFaults& faults)
      : tree_(tree), declaration_(declaration), manifest_(manifest), faults_(faults) {}

  void Read() {
    const BagFile& file = tree_.files()[manifest_.file];
    const std::optional<std::string> text =
        ReadTagText(tree_, file, declaration_.codePage, faults_);
    if (!text) return;
    const TagLines split = SplitTagLines(*text);
    for (std::size_t i = 0; i < split.lines.size(); ++i) TakeLine(split.lines[i], i + 1);
    if (split.endsDiffer) quirks_.Count("another line end than the first line");
    if (hasUpperCase_ && hasLowerCase_) quirks_.Count("digits in another letter case than others");
    quirks_.Tell(manifest_.name, faults_);
  }

 private:
  void AddBadLine(std::size_t number) {
    faults_.AddError(
        "manifest", manifest_.name,
        manifest_.name + ", line " + std::to_string(number) + ", is no sum with a path");
  }

  void TakeLine(std::string_view line, std::size_t number) {
    if (WithoutBlanks(line).empty()) return quirks_.Count("nothing in it");
    const std::string_view digest = line.substr(0, line.find_first_of(" \t"));
    std::string_view path = line.substr(digest.size());
    const std::size_t blanks = std::min(path.find_first_not_of(" \t"), path.size());
    const std::string_view separator = path.substr(0, blanks);
    path.remove_prefix(blanks);
    const bool isDigest = !digest.empty() && std::all_of(digest.begin(), digest.end(), IsHexDigit);
    const bool fits = !manifest_.isKnown || digest.size() == DigestDigits(manifest_.kind);
    if (!isDigest || !fits || path.empty()) return AddBadLine(number);
    if (separator_.empty()) separator_ = separator;
    if (separator != separator_) quirks_.Count("other blanks than the first line");
    hasUpperCase_ = hasUpperCase_ || HasLetter(digest, 'A', 'F');
    hasLowerCase_ = hasLowerCase_ || HasLetter(digest, 'a', 'f');
    TakeEntry(LowerCase(digest), path);
  }

  void TakeEntry(std::string digest, std::string_view text) {
    std::optional<FoundPath> found =
        FindListedFile(tree_, declaration_, manifest_.name, text, quirks_, faults_);
    if (!found) return;
    if (!manifest_.ofTags && !IsInPayload(found->path)) {
      return faults_.AddError(
          "outside-payload", found->path,
          manifest_.name + " lists " + found->path + ", which is not below data/");
    }
    if (IsDoubled(found->path, digest)) return;
    manifest_.entries.push_back({std::move(found->path), std::move(digest), found->file});
  }

  bool IsDoubled(const std::string& path, const std::string& digest) {
    const std::size_t next = manifest_.entries.size();
    const auto [earlier, isNew] = places_.emplace(path, next);
    if (isNew) {
      WarnOfAlike(path, next);
      return false;
    }
    const bool isSame = manifest_.entries[earlier->second].digest == digest;
    faults_.Add(!isSame || declaration_.IsVersion1(), "doubled", path,
                manifest_.name + " lists " + path + " twice, " +
                    (isSame ? "with the same sum" : "with two sums"));
    return true;
  }

  void WarnOfAlike(const std::string& path, std::size_t place) {
    const auto [first, isNew] = foldedPlaces_.emplace(FoldPath(path), place);
    if (isNew) return;
    faults_.AddWarning("alike", manifest_.name + " lists " + manifest_.entries[first->second].path +
                                    " and " + path +
                                    ", which are one file where letter case or Unicode "
                                    "normalisation does not count");
  }

  const BagTree& tree_;
  const Declaration& declaration_;
  Manifest& manifest_;
  BagFaults& faults_;
  LineQuirks quirks_;
  std::string_view separator_;
  bool hasUpperCase_ = false;
  bool hasLowerCase_ = false;
  std::unordered_map<std::string, std::size_t> places_;  // Of the entries, by path.
  std::unordered_map<std::string, std::size_t> foldedPlaces_;
};

// No value when the file is no manifest.
std::optional<Manifest> ManifestOf(const BagTree& tree, std::size_t index, BagFaults& faults) {
  const std::string& name = tree.files()[index].path;
  const std::string lower = LowerCase(name);
  const bool ofTags = lower.starts_with(kTagStart);
  const std::string_view start = ofTags ? kTagStart : kPayloadStart;
  const bool isManifest = lower.starts_with(start) && lower.ends_with(kEnd) &&
                          lower.size() > start.size() + kEnd.size() &&
                          lower.find('/') == lower.npos;
  if (!isManifest) return std::nullopt;
  const std::string algorithm = PlainAlgorithmName(
      std::string_view(lower).substr(start.size(), lower.size() - start.size() - kEnd.size()));
  const std::string usual = std::string(start) + algorithm + std::string(kEnd);
  if (name != usual) faults.AddWarning("letter-case", name + " should be named " + usual);
  const std::optional<DigestKind> kind = DigestKindOf(algorithm);
  const bool isKnown = kind && IsOffered(*kind);
  if (!isKnown) {
    faults.AddError("algorithm", name,
                    name + " cannot be checked: Windows does not calculate '" + algorithm + "'");
  }
  return Manifest{name, index, ofTags, kind.value_or(DigestKind::kSha256), isKnown, {}};
}

}  // namespace

void LineQuirks::Tell(const std::string& list, BagFaults& faults) const {
  for (const auto& [what, count] : counts_) {
    faults.AddWarning("uneven", list + ": " + std::to_string(count) +
                                    (count == 1 ? " line has " : " lines have ") + what);
  }
}

std::optional<FoundPath> FindListedFile(const BagTree& tree, const Declaration& declaration,
                                        const std::string& list, std::string_view text,
                                        LineQuirks& quirks, BagFaults& faults) {
  std::string slashed(WithoutPrefix(text, quirks));
  const bool isNetwork = slashed.starts_with("\\\\");
  if (!declaration.IsVersion1() && !isNetwork && slashed.find('\\') != slashed.npos) {
    quirks.Count("a backslash where a slash belongs");
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
  }
  const std::vector<Meaning> meanings = MeaningsOf(slashed, declaration);
  for (const Meaning& meaning : meanings) {
    const std::string why = WhyUnsafe(meaning.path);
    if (why.empty()) continue;
    // What the folder itself lists by just this name lies in it.
    if (tree.Find(meaning.path) && !NamesDevice(meaning.path)) {
      quirks.Count("a path that not every Windows program takes");
      continue;
    }
    faults.AddError("unsafe-path", meaning.path, list + ": the path " + slashed + " " + why);
    return std::nullopt;
  }
  for (const Meaning& meaning : meanings) {
    const std::optional<std::size_t> file = tree.Find(meaning.path);
    if (file && meaning.quirk != nullptr) quirks.Count(meaning.quirk);
    if (file) return FoundPath{meaning.path, file};
  }
  const std::optional<std::size_t> alike = tree.FindAlike(meanings.front().path);
  if (alike) quirks.Count("a path in another letter case or Unicode normalisation than its file");
  return FoundPath{meanings.front().path, alike};
}

std::vector<Manifest> ReadManifests(const BagTree& tree, const Declaration& declaration,
                                    BagFaults& faults) {
  std::vector<Manifest> manifests;
  for (std::size_t i = 0; i < tree.files().size(); ++i)
    if (std::optional<Manifest> manifest = ManifestOf(tree, i, faults))
      manifests.push_back(std::move(*manifest));
  for (Manifest& manifest : manifests) ManifestReader(tree, declaration, manifest, faults).Read();
  return manifests;
}

std::string ManifestName(bool ofTags, DigestKind kind) {
  return (ofTags ? kTagStart : kPayloadStart) + std::string(DigestName(kind)) + std::string(kEnd);
}

std::string ManifestLine(const std::string& digest, std::string_view path) {
  return digest + "  " + EncodePath(path) + "\n";
}

}  // namespace larkspan::console
