// A DXL exporter: its properties, and the DXL it makes.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "notes/NotesApi.h"

namespace larkspan::standin {

inline constexpr int kPropertyPictureText = 14;
inline constexpr int kPropertyRaw = 30;
inline constexpr int kPropertyOmitPictures = 39;

struct Exporter {
  // The value is what the entry point was given: the address of a 32-bit number, or text that ends
  // with a NUL. The status is not zero when there is no such property.
  notes_api::STATUS SetProperty(int property, const void* value);

  bool IsOn(int property) const;

  // All properties in ascending order of their numbers, as they stand in the DXL's comment:
  // "exporter 2; 3=0 6=unset 14='...' 30=unset ...".
  std::string Description() const;

  std::uint32_t ordinal = 0;  // 1 for the first exporter of a runtime
  std::map<int, std::uint32_t> numbers;
  std::string pictureText;  // UTF-8
  bool hasPictureText = false;
};

bool IsTextProperty(int property);

}  // namespace larkspan::standin
