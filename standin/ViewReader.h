// Reads what a view shows from the JSON of a database file. Whatever does not fit throws
// std::runtime_error (or an exception of the JSON library) with a message for the file's author.
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>

#include "standin/View.h"

namespace larkspan::standin {

std::shared_ptr<const View> ReadView(const nlohmann::json& from);

}  // namespace larkspan::standin
