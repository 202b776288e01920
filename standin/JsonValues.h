// Reading single values out of JSON: numbers in decimal or hexadecimal, texts, bytes. Whatever does
// not fit throws std::runtime_error with a message for the author of the file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// The file as JSON. Throws when it cannot be read or is not JSON.
nlohmann::json ReadJsonFile(const std::filesystem::path& file);

// A number, or a text that is a number with an optional 0x in front.
std::uint32_t NumberValue(const nlohmann::json& value);

// A text of hexadecimal digits, with or without 0x.
std::uint32_t HexadecimalValue(const nlohmann::json& value);

// Text in the Notes character set.
std::string NotesTextValue(const nlohmann::json& value);
std::vector<std::string> NotesTextValues(const nlohmann::json& value);

// Bytes written as pairs of hexadecimal digits; blanks between them do not matter.
std::vector<notes_api::BYTE> BytesValue(const nlohmann::json& value);

// Fails on a key that is none of these, so that a slip of the pen is found.
void RequireKeys(const nlohmann::json& object, std::initializer_list<std::string_view> keys);

}  // namespace larkspan::standin
