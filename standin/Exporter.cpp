#include "standin/Exporter.h"

#include <algorithm>
#include <cstring>

#include "standin/CharacterSet.h"
#include "standin/StatusCodes.h"

namespace larkspan::standin {

namespace {

constexpr int kProperties[] = {3,  6,  kPropertyPictureText, kPropertyRaw, 35, 36,
                               37, 38, kPropertyOmitPictures};

std::string Property(int property, const std::string& value) {
  return " " + std::to_string(property) + "=" + value;
}

}  // namespace

bool IsTextProperty(int property) { return property == kPropertyPictureText; }

notes_api::STATUS Exporter::SetProperty(int property, const void* value) {
  if (std::find(std::begin(kProperties), std::end(kProperties), property) ==
      std::end(kProperties)) {
    return kUnknownExporterProperty;
  }
  if (IsTextProperty(property)) {
    pictureText = NotesToUtf8(static_cast<const char*>(value));
    hasPictureText = true;
  } else {
    std::memcpy(&numbers[property], value, sizeof(std::uint32_t));
  }
  return kSuccess;
}

bool Exporter::IsOn(int property) const {
  const auto found = numbers.find(property);
  return found != numbers.end() && found->second != 0;
}

std::string Exporter::Description() const {
  std::string text = "exporter " + std::to_string(ordinal) + ";";
  for (const int property : kProperties) {
    const auto found = numbers.find(property);
    if (IsTextProperty(property)) {
      text += Property(property, hasPictureText ? "'" + pictureText + "'" : "unset");
    } else {
      text += Property(property, found == numbers.end() ? "unset" : std::to_string(found->second));
    }
  }
  return text;
}

}  // namespace larkspan::standin
