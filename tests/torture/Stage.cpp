#include "tests/torture/Stage.h"

#include "base/Utf8.h"
#include "tests/support/FileBytes.h"
#include "tests/support/StandinLibrary.h"

namespace larkspan::torture {

Stage::Stage(const std::wstring& dataFolder, const std::string& configuration) {
  WriteBytes(folder_ / L"\\notes.ini",
             "Directory=" + WideToUtf8(dataFolder) + "\n" + configuration + "\n");
}

std::wstring Stage::ConfigurationArgument() const { return L"=" + (folder_ / L"\\notes.ini"); }

void Stage::Begin(const std::string& faultPlan) const {
  MakeFolder(output_);
  ResetStandin();
  SetStandinFaults(faultPlan);
}

}  // namespace larkspan::torture
