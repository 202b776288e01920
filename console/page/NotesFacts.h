// What the DXL files of an export say of their database and of its views.
#pragma once

#include <string>

namespace larkspan::console {

// From db.dxl; empty where it does not say.
struct DatabaseFacts {
  std::string title;
  std::string path;
  std::string replicaId;
};

DatabaseFacts ReadDatabaseFacts(const std::wstring& propertiesFile);

struct DesignFacts {
  std::string title;
  bool isFolder = false;
};

// From the file of a view's design note. The title is empty when the file does not tell one.
DesignFacts ReadDesignFacts(const std::wstring& designFile);

}  // namespace larkspan::console
