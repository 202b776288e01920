#include "console/bag/BagText.h"

#include "console/account/TextSection.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

std::string BagVerdictText(const BagVerdict& verdict) {
  if (!verdict.IsValid())
    return "The bag is not valid: " + CountText(verdict.errors.size(), "error", "errors") + ".";
  const std::string warned = verdict.warnings.empty()
                                 ? ""
                                 : "; " + CountText(verdict.warnings.size(), "warning", "warnings");
  return "The bag is valid" + warned + ".";
}

std::string BagText(const BagVerdict& verdict) {
  std::string algorithms;
  for (const std::string& algorithm : verdict.algorithms) algorithms += ", " + algorithm;
  std::string text = BagVerdictText(verdict) + "\n\n  version " + verdict.version + ", " +
                     WithoutControls(verdict.encoding) + algorithms + "\n  " +
                     CountText(verdict.payloadFiles, "file", "files") + " with " +
                     BytesText(verdict.payloadBytes) + "\n";
  Section errors;
  for (const Finding& error : verdict.errors)
    errors.Add(error.kind, error.kind + "  " + error.text);
  Section warnings;
  for (const Warning& warning : verdict.warnings)
    warnings.Add(warning.kind, warning.kind + "  " + warning.text);
  return text + errors.Text("Errors") + warnings.Text("Warnings");
}

Json BagToJson(const BagVerdict& verdict) {
  Json json = {{"valid", verdict.IsValid()},
               {"version", verdict.version},
               {"encoding", verdict.encoding},
               {"algorithms", verdict.algorithms},
               {"payload", {{"files", verdict.payloadFiles}, {"bytes", verdict.payloadBytes}}}};
  json["errors"] = Json::array();
  for (const Finding& error : verdict.errors) json["errors"].push_back(FindingToJson(error));
  json["warnings"] = Json::array();
  for (const Warning& warning : verdict.warnings)
    json["warnings"].push_back(WarningToJson(warning));
  return json;
}

}  // namespace larkspan::console
