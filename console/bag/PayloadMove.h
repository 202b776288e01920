// The first half of a sealing: everything that belongs to the export goes below data\.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

#include "console/bag/Digests.h"
#include "console/bag/SealState.h"

namespace larkspan::console {

// Why a sealing does not go on, as a sentence.
class SealFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The sum that a sealing calculates.
inline constexpr DigestKind kSealKind = DigestKind::kSha256;

// Where the payload gathers before it has its name.
inline constexpr wchar_t kPayloadStage[] = L"\\data.new";
inline constexpr wchar_t kPayloadFolder[] = L"\\data";

// Throws SealFault, before anything is changed, when something lies there that is of no export.
void RequireKnownEntries(const std::wstring& folder);

// The same where all of the export lies in data\ already, for what lies beside that.
void RequireOnlyPayload(const std::wstring& folder);

// Takes the move up wherever it is. Throws SealFault; what is done stays.
void MovePayload(const std::wstring& folder, const std::function<void()>& beforeStep);

}  // namespace larkspan::console
