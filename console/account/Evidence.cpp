#include "console/account/Evidence.h"

namespace larkspan::console {

void Verdicts::AddLoss(LossKind kind, std::optional<std::uint32_t> id, const char* stage,
                       const std::string& cause) {
  account_.losses.push_back({kind, id, stage, cause});
}

void Verdicts::AddFinding(const char* kind, std::optional<std::uint32_t> id,
                          const std::string& file, const std::string& text) {
  account_.findings.push_back({kind, id, file, text});
}

void Verdicts::AddWarning(const char* kind, const std::string& text) {
  account_.warnings.push_back({kind, text});
}

}  // namespace larkspan::console
