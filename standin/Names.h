// Distinguished names of users and servers, such as "CN=Mill/OU=West/O=Example". Stateless; any
// thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace larkspan::standin {

// The name without the words that tell what its parts are: "Mill/West/Example". A part without such
// a word stays as it is. Nothing when a part has more than one sign of equality, or none in front
// of which a word stands. In the Notes character set, as the result.
std::optional<std::string> AbbreviatedName(std::string_view name);

}  // namespace larkspan::standin
