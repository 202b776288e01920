// ID files: who a user is. An ID file is a JSON file with the keys "name" and "password".
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Both in the Notes character set.
struct IdFile {
  std::string name;
  std::string password;
};

// Leaves the result alone on failure.
notes_api::STATUS ReadIdFile(const std::filesystem::path& file, IdFile* idFile);

// The same, but the password has to be right as well.
notes_api::STATUS UnlockIdFile(const std::filesystem::path& file, std::string_view password,
                               IdFile* idFile);

}  // namespace larkspan::standin
