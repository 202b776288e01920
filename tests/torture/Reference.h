// What an export has to bring out, told by the library itself: every text that each note can have
// in DXL, with each exporter and each state of the note. It is made without the program.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "tests/torture/DatabaseDamage.h"
#include "tests/torture/ExportStage.h"

namespace larkspan::torture {

// How a text of a note came about.
struct Variant {
  int exporter = 0;         // In the order of their creation: 1 normal, 2 no convert, 3 no images,
                            // 4 no images and no convert, 5 raw.
  unsigned deleted = 0;     // The items that were deleted before, a bit for each deletable one.
  bool isReadable = false;  // It was not sealed, or it was decrypted.
};

inline constexpr int kNormal = 1;
inline constexpr int kNoConvert = 2;
inline constexpr int kNoImages = 3;
inline constexpr int kNoImagesNoConvert = 4;
inline constexpr int kRaw = 5;

struct ReferenceNote {
  std::uint32_t id = 0;
  std::uint16_t noteClass = 0;
  std::string unid;    // As it stands in the UNID index.
  std::string folder;  // Where its file belongs: "data/", or empty outside of an archive.
  bool hasPictures = false;
  bool wantsRawCopy = false;
  unsigned fieldItems = 0;  // The deletable items that a repaired form has lost.
  unsigned rawItems = 0;    // Those that a raw copy has lost.
  std::map<std::string, Variant> texts;
  NoteDamage damage;
};

struct Reference {
  std::vector<ReferenceNote> notes;  // Those that are to be exported, ascending.
  std::string acl;
};

// Calls of DXLSetExporterProperty that the library refuses, counted from 1.
struct RefusedSettings {
  int first = 0;  // None when zero.
  int last = 0;
};

// Starts and ends a runtime of its own.
Reference MakeReference(const ExportStage& stage, RefusedSettings refused = {});

}  // namespace larkspan::torture
