// The account in words, for a person.
#pragma once

#include <cstdint>
#include <string>

#include "console/account/Account.h"

namespace larkspan::console {

// What came out, in one sentence without a line end.
std::string VerdictText(const Account& account);

// The sentence, `more` as a line below it, the files by folder, and every loss, finding and warning
// on a line of its own; of very many of a kind the first twenty. Control characters that names or
// causes bring along are question marks.
std::string AccountText(const Account& account, const std::string& more = {});

}  // namespace larkspan::console
