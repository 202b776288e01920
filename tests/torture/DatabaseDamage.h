// What is damaged in the notes of a database, as its own fault plan says.
#pragma once

#include <cstdint>
#include <map>

#include "tests/torture/Subject.h"

namespace larkspan::torture {

struct NoteDamage {
  int exports = 0;           // So many exports of the note fail before one succeeds.
  bool needsRepair = false;  // It has fields that keep it from being exported.
};

// The notes that are damaged, by their IDs.
std::map<std::uint32_t, NoteDamage> DamageIn(const Subject& subject);

}  // namespace larkspan::torture
