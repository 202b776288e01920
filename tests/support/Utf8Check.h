// Whether bytes are UTF-8 that nothing was broken out of.
#pragma once

#include <windows.h>

#include <string>

namespace larkspan {

// True when every character is whole and none is the replacement character.
inline bool IsWholeUtf8(const std::string& bytes) {
  if (bytes.find("\xEF\xBF\xBD") != std::string::npos) return false;
  return bytes.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, 0) != 0;
}

}  // namespace larkspan
