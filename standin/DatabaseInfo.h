// The information buffer of a database: its fields one after another, each ended with a NUL.
// Stateless; any thread may call.
#pragma once

#include <cstddef>
#include <string>

#include "standin/DatabaseProperties.h"

namespace larkspan::standin {

inline constexpr std::size_t kInfoSize = 128;

// The title and the categories, in the Notes character set, as far as they fit into the buffer; the
// NUL of the last field is left out, and at least one byte is left for it.
std::string MakeDatabaseInfo(const DatabaseProperties& properties);

}  // namespace larkspan::standin
