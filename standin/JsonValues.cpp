#include "standin/JsonValues.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/CharacterSet.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

std::uint32_t ParseNumber(const std::string& text, int base) {
  std::size_t used = 0;
  unsigned long long number = 0;
  try {
    number = std::stoull(text, &used, base);
  } catch (const std::exception&) {
    used = 0;
  }
  if (used != text.size() || text.empty() || number > UINT32_MAX) {
    throw std::runtime_error("\"" + text + "\" is not a 32-bit number");
  }
  return static_cast<std::uint32_t>(number);
}

}  // namespace

json ReadJsonFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot be read");
  return json::parse(in);
}

std::uint32_t NumberValue(const json& value) {
  if (!value.is_string()) return value.get<std::uint32_t>();
  const auto text = value.get<std::string>();
  return ParseNumber(text, text.starts_with("0x") ? 16 : 10);
}

std::uint32_t HexadecimalValue(const json& value) {
  return ParseNumber(value.get<std::string>(), 16);
}

std::string NotesTextValue(const json& value) { return Utf8ToNotes(value.get<std::string>()); }

std::vector<std::string> NotesTextValues(const json& value) {
  std::vector<std::string> texts;
  for (const json& text : value) texts.push_back(NotesTextValue(text));
  return texts;
}

std::vector<notes_api::BYTE> BytesValue(const json& value) {
  std::string digits = value.get<std::string>();
  std::erase(digits, ' ');
  if (digits.size() % 2 != 0) throw std::runtime_error("bytes need pairs of digits");
  std::vector<notes_api::BYTE> bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    bytes.push_back(static_cast<notes_api::BYTE>(ParseNumber(digits.substr(i, 2), 16)));
  }
  return bytes;
}

void RequireKeys(const json& object, std::initializer_list<std::string_view> keys) {
  if (!object.is_object()) throw std::runtime_error("an object is needed: " + object.dump());
  for (const auto& [key, value] : object.items()) {
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      throw std::runtime_error("unknown key \"" + key + "\"");
    }
  }
}

}  // namespace larkspan::standin
