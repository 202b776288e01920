// Text between the two forms: UTF-8 inside, UTF-16 to and from the system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/Utf8.h"

namespace larkspan::console {

// Some programs begin a text in UTF-8 with it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Every character of it is whole and allowed there.
bool IsUtf8(std::string_view bytes);

// What is no UTF-8 becomes U+FFFD.
std::wstring Utf8ToWide(std::string_view text);

// Whether Windows takes both for the name of the same file: the case of letters does not count.
bool IsSameName(std::wstring_view one, std::wstring_view other);

// As the names of files are compared by; the same for two that are the same.
std::wstring UpperCase(std::wstring text);

// "0000090A".
std::string NoteIdText(std::uint32_t id);

// The time now, in UTC: "2026-11-22T07:40:55Z".
std::string UtcNow();

}  // namespace larkspan::console
