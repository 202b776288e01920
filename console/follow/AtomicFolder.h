// An export that gets its name only when it is done: until then its folder is an attempt beside
// that name, "orders.attempt-3".
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace larkspan::console {

// Between the name and the number of an attempt.
inline constexpr std::wstring_view kAttemptSuffix = L".attempt-";

// The attempt behind the last one that is there.
std::wstring NextAttempt(const std::wstring& out);

// The last attempt that is there.
std::optional<std::wstring> LastAttempt(const std::wstring& out);

// Gives the attempt its final name, where an empty folder may be, and never one that holds
// anything. Tries for thirty seconds, since scanners hold files for a while, or until `giveUp` says
// so.
bool PlaceAttempt(const std::wstring& attempt, const std::wstring& out,
                  const std::function<bool()>& giveUp);

}  // namespace larkspan::console
