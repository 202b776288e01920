// Which views of a database an archive must hold files of, and how much of them is left when they
// are damaged.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

namespace larkspan {

enum class Remains {
  kNothing,        // no file
  kAllEntries,     // with all values that are not damaged
  kEntriesAlone,   // without any values
  kDamagedValues,  // the values themselves are what is damaged
};

// By the title of the view, which in a database of damaged views names the damage.
Remains RemainsOf(const nlohmann::json& viewNote);

// The view notes of which there must be a file, in the order of the database.
std::vector<nlohmann::json> ExportedViews(const nlohmann::json& database);

}  // namespace larkspan
