#include "console/bag/TagText.h"

#include <windows.h>

#include <mlang.h>
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>
#include <iterator>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr CodePage kUtf16 = 1200;
constexpr CodePage kUtf16BigEnd = 1201;

// IID_IMultiLanguage, which not every tool chain's libraries hold.
constexpr IID kMultiLanguage = {
    0x275c23e1, 0x3747, 0x11d0, {0x9f, 0xea, 0x00, 0xaa, 0x00, 0x3f, 0x86, 0x46}};

// The library of Windows that knows the names is a component, so this thread has to take part.
class ComponentThread {
 public:
  ComponentThread() : isIn_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ~ComponentThread() {
    if (isIn_) CoUninitialize();
  }
  ComponentThread(const ComponentThread&) = delete;
  ComponentThread& operator=(const ComponentThread&) = delete;

 private:
  bool isIn_;
};

std::optional<CodePage> LookUpCodePage(const std::wstring& name) {
  const ComponentThread thread;
  IMultiLanguage* languages = nullptr;
  if (FAILED(CoCreateInstance(CLSID_CMultiLanguage, nullptr, CLSCTX_INPROC_SERVER, kMultiLanguage,
                              reinterpret_cast<void**>(&languages)))) {
    return std::nullopt;
  }
  MIMECSETINFO info{};
  const BSTR text = SysAllocString(name.c_str());
  const HRESULT result = languages->GetCharsetInfo(text, &info);
  SysFreeString(text);
  languages->Release();
  if (FAILED(result)) return std::nullopt;
  return info.uiInternetEncoding;
}

// Bytes of UTF-16. A byte order mark tells more than the name, and where there is none, the first
// letter, which in each of these files is one of ASCII.
bool HasBigEndFirst(std::string_view content, bool isNamedSo) {
  if (content.size() < 2) return isNamedSo;
  if (content.starts_with("\xFF\xFE")) return false;
  if (content.starts_with("\xFE\xFF")) return true;
  return (content[0] == '\0') == (content[1] == '\0') ? isNamedSo : content[0] == '\0';
}

std::optional<std::string> FromUtf16(std::string_view content, bool isNamedBigEnd) {
  if (content.size() % 2 != 0) return std::nullopt;
  const bool isBigEnd = HasBigEndFirst(content, isNamedBigEnd);
  std::wstring wide;
  wide.reserve(content.size() / 2);
  for (std::size_t at = 0; at < content.size(); at += 2) {
    const auto first = static_cast<unsigned char>(content[at]);
    const auto second = static_cast<unsigned char>(content[at + 1]);
    wide.push_back(static_cast<wchar_t>(isBigEnd ? first << 8 | second : second << 8 | first));
  }
  if (wide.starts_with(L'\uFEFF')) wide.erase(0, 1);
  const int length = static_cast<int>(wide.size());
  const DWORD flags = WC_ERR_INVALID_CHARS;
  if (length > 0 &&
      WideCharToMultiByte(CP_UTF8, flags, wide.data(), length, nullptr, 0, nullptr, nullptr) == 0) {
    return std::nullopt;
  }
  return WideToUtf8(wide);
}

}  // namespace

std::optional<CodePage> CodePageOf(std::string_view name) {
  const std::string lower = LowerCase(name);
  if (lower == "utf-8") return kUtf8CodePage;
  if (lower == "utf-16le") return kUtf16;
  // Without a mark the big end comes first, as the registered name has it.
  if (lower == "utf-16" || lower == "utf-16be") return kUtf16BigEnd;
  if (name.empty()) return std::nullopt;
  const std::optional<CodePage> codePage = LookUpCodePage(Utf8ToWide(name));
  if (!codePage) return std::nullopt;
  return IsValidCodePage(*codePage) ? codePage : std::nullopt;
}

std::optional<std::string> TextFrom(std::string_view content, CodePage codePage) {
  if (codePage == kUtf16 || codePage == kUtf16BigEnd)
    return FromUtf16(content, codePage == kUtf16BigEnd);
  if (codePage == kUtf8CodePage && content.starts_with(kByteOrderMark))
    content.remove_prefix(kByteOrderMark.size());
  if (content.empty()) return std::string();
  const int bytes = static_cast<int>(content.size());
  const DWORD flags = MB_ERR_INVALID_CHARS;
  const int units = MultiByteToWideChar(codePage, flags, content.data(), bytes, nullptr, 0);
  if (units <= 0) return std::nullopt;
  if (codePage == kUtf8CodePage) return std::string(content);
  std::wstring wide(static_cast<std::size_t>(units), L'\0');
  MultiByteToWideChar(codePage, flags, content.data(), bytes, wide.data(), units);
  return WideToUtf8(wide);
}

std::optional<std::string> ReadTagText(const BagTree& tree, const BagFile& file, CodePage codePage,
                                       BagFaults& faults) {
  const std::optional<std::string> content = tree.Read(file);
  if (!content) {
    faults.AddError("unreadable", file.path, file.path + " cannot be read");
    return std::nullopt;
  }
  if (codePage == kUtf8CodePage && content->starts_with(kByteOrderMark))
    faults.AddWarning("byte-order-mark", file.path + " begins with a byte order mark");
  std::optional<std::string> text = TextFrom(*content, codePage);
  if (!text) {
    faults.AddError("encoding", file.path,
                    file.path + " holds bytes that are no text in the encoding of the bag");
  }
  return text;
}

std::optional<std::size_t> FindTagFile(const BagTree& tree, const std::string& path,
                                       BagFaults& faults) {
  const std::optional<std::size_t> found = tree.FindAlike(path);
  if (found && tree.files()[*found].path != path) {
    faults.AddWarning("letter-case", tree.files()[*found].path + " should be named " + path);
  }
  return found;
}

TagLines SplitTagLines(std::string_view text) {
  TagLines split;
  std::string_view firstEnd;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of("\r\n");
    split.lines.push_back(text.substr(0, end));
    if (end == text.npos) return split;
    const std::string_view lineEnd = text.substr(end, text.substr(end).starts_with("\r\n") ? 2 : 1);
    if (firstEnd.empty()) firstEnd = lineEnd;
    split.endsDiffer = split.endsDiffer || lineEnd != firstEnd;
    text.remove_prefix(end + lineEnd.size());
  }
  return split;
}

bool IsBlank(char letter) { return letter == ' ' || letter == '\t'; }

std::string_view WithoutBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string LowerCase(std::string_view ascii) {
  std::string lower(ascii);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return lower;
}

}  // namespace larkspan::console
