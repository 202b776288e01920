// The lookup that the tests of address books make: every server that a book names.
#pragma once

#include <string>

#include "notes/NotesApi.h"

namespace larkspan::standin_test {

using namespace larkspan::notes_api;

// The arguments of a lookup that is well, for a test to spoil one.
struct LookupArguments {
  const char* server = nullptr;
  WORD flags = 1;
  WORD nameSpaceCount = 1;
  std::string nameSpace = "($Servers)";
  WORD nameCount = 1;
  std::string name;
  WORD itemCount = 2;
  std::string items = std::string("ServerName\0", 11);
  DHANDLE result = 0;
  DHANDLE* resultPlace = &result;
};

inline STATUS LookUp(LookupArguments* with) {
  return NAMELookup(with->server, with->flags, with->nameSpaceCount, with->nameSpace.c_str(),
                    with->nameCount, with->name.c_str(), with->itemCount, with->items.c_str(),
                    with->resultPlace);
}

}  // namespace larkspan::standin_test
