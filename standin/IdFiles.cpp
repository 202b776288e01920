#include "standin/IdFiles.h"

#include <nlohmann/json.hpp>

#include "standin/JsonValues.h"
#include "standin/StatusCodes.h"

namespace larkspan::standin {

notes_api::STATUS ReadIdFile(const std::filesystem::path& file, IdFile* idFile) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(file, ignored)) return kIdFileNotFound;
  try {
    const nlohmann::json from = ReadJsonFile(file);
    RequireKeys(from, {"name", "password", "comment"});
    *idFile = {NotesTextValue(from.at("name")), NotesTextValue(from.at("password"))};
  } catch (const std::exception&) {
    return kIdFileDamaged;
  }
  return kSuccess;
}

notes_api::STATUS UnlockIdFile(const std::filesystem::path& file, std::string_view password,
                               IdFile* idFile) {
  IdFile found;
  const notes_api::STATUS status = ReadIdFile(file, &found);
  if (status != kSuccess) return status;
  if (found.password != password) return kWrongPassword;
  *idFile = found;
  return kSuccess;
}

}  // namespace larkspan::standin
