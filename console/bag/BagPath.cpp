#include "console/bag/BagPath.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::array kDevices = {"CON", "PRN", "AUX", "NUL", "CLOCK$", "CONIN$", "CONOUT$"};
constexpr std::array kNumberedDevices = {"COM", "LPT"};

bool IsAsciiLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

char AsciiUpper(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

// The digits of COM1, of which Windows takes three superscripts too.
bool IsDeviceNumber(std::string_view text) {
  const bool isDigit = text.size() == 1 && text[0] >= '0' && text[0] <= '9';
  return isDigit || text == "\u00B9" || text == "\u00B2" || text == "\u00B3";
}

// Whatever its extension.
bool IsDevice(std::string_view component) {
  std::string name(component.substr(0, component.find('.')));
  while (name.ends_with(' ')) name.pop_back();
  std::transform(name.begin(), name.end(), name.begin(), AsciiUpper);
  if (std::find(kDevices.begin(), kDevices.end(), name) != kDevices.end()) return true;
  return std::any_of(kNumberedDevices.begin(), kNumberedDevices.end(), [&](const char* device) {
    return name.starts_with(device) && IsDeviceNumber(std::string_view(name).substr(3));
  });
}

const char* WhyUnsafeComponent(std::string_view component) {
  if (component.empty()) return "has a part without a name";
  if (component == "..") return "leads out of the bag";
  if (component == ".") return "has a part that is only a dot";
  if (component.find(':') != component.npos) return "names a stream beside a file's content";
  if (component.ends_with('.') || component.ends_with(' '))
    return "has a part that ends in a dot or a blank, which Windows leaves out";
  if (IsDevice(component)) return "names a device of Windows";
  return nullptr;
}

std::wstring Normalized(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int capacity = NormalizeString(NormalizationC, text.data(), length, nullptr, 0);
  if (capacity <= 0) return text;
  std::wstring normalized(static_cast<std::size_t>(capacity), L'\0');
  const int size =
      NormalizeString(NormalizationC, text.data(), length, normalized.data(), capacity);
  if (size <= 0) return text;
  normalized.resize(static_cast<std::size_t>(size));
  return normalized;
}

}  // namespace

std::string WhyUnsafe(std::string_view path) {
  if (path.empty()) return "names no file";
  if (path.starts_with("//") || path.starts_with("\\\\")) return "leads to another machine";
  if (path[0] == '/' || path[0] == '\\') return "leads to the root of a drive";
  if (path.size() > 1 && IsAsciiLetter(path[0]) && path[1] == ':') return "leads to a drive";
  if (path[0] == '~') return "leads to somebody's home folder";
  if (path.find('\\') != path.npos) return "has a backslash";
  if (path.find('\0') != path.npos) return "has a character that no path can have";
  while (true) {
    const std::size_t end = path.find('/');
    if (const char* why = WhyUnsafeComponent(path.substr(0, end))) return why;
    if (end == path.npos) return {};
    path.remove_prefix(end + 1);
  }
}

bool NamesDevice(std::string_view path) {
  while (true) {
    const std::size_t end = path.find('/');
    if (IsDevice(path.substr(0, end))) return true;
    if (end == path.npos) return false;
    path.remove_prefix(end + 1);
  }
}

bool IsInPayload(std::string_view path) { return path.starts_with("data/"); }

std::string DecodePath(std::string_view path, Encoded encoded) {
  std::string decoded;
  decoded.reserve(path.size());
  for (std::size_t at = 0; at < path.size();) {
    const std::string_view code = path.substr(at, 3);
    const char letter = code.size() == 3 ? AsciiUpper(code[2]) : '\0';
    const bool isLineEnd = code.starts_with("%0") && (letter == 'A' || letter == 'D');
    const bool isPercent = code == "%25" && encoded == Encoded::kLineEndsAndPercent;
    if (isLineEnd) decoded.push_back(letter == 'A' ? '\n' : '\r');
    if (isPercent) decoded.push_back('%');
    if (!isLineEnd && !isPercent) decoded.push_back(path[at]);
    at += isLineEnd || isPercent ? 3 : 1;
  }
  return decoded;
}

std::string EncodePath(std::string_view path) {
  std::string encoded;
  encoded.reserve(path.size());
  for (const char byte : path) {
    switch (byte) {
      case '\n':
        encoded += "%0A";
        break;
      case '\r':
        encoded += "%0D";
        break;
      case '%':
        encoded += "%25";
        break;
      default:
        encoded.push_back(byte);
    }
  }
  return encoded;
}

std::string FoldPath(std::string_view path) {
  if (IsAscii(path)) {
    std::string folded(path);
    std::transform(folded.begin(), folded.end(), folded.begin(), AsciiUpper);
    return folded;
  }
  std::wstring text = Normalized(Utf8ToWide(path));
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  return WideToUtf8(text);
}

std::wstring UnlimitedPath(const std::wstring& path) {
  if (path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\")) return path;
  const DWORD capacity = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring whole(capacity, L'\0');
  whole.resize(GetFullPathNameW(path.c_str(), capacity, whole.data(), nullptr));
  while (whole.ends_with(L'\\')) whole.pop_back();
  if (whole.starts_with(L"\\\\")) return L"\\\\?\\UNC" + whole.substr(1);
  return L"\\\\?\\" + whole;
}

}  // namespace larkspan::console
