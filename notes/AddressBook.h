// The servers that the user's configuration and the address books know. Names are in the Notes
// character set, at most 255 bytes each.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "notes/Status.h"

namespace larkspan {

// The user's mail server as the configuration has it. False when it has none.
bool GetMailServer(std::string& server);

// A distinguished name without the words that tell what its parts are.
Status AbbreviateName(const std::string& name, std::string& abbreviated);

// Takes the text of an item, empty when the entry has none; a failure ends the lookup.
using ItemVisitor = std::function<Status(const std::string& text)>;

// Hands over, of each entry of a name space in an address book, the named item and then a second
// one without a name, which the library is asked for as well. The address book is the local one
// when the server is null. Returns the status of the lookup, or of the visitor that failed.
Status LookUpServers(const char* server, std::string_view nameSpace, std::string_view item,
                     const ItemVisitor& visit);

}  // namespace larkspan
