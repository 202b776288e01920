// Calendar time as the audit report shows it.
#pragma once

#include <ctime>
#include <string>

namespace larkspan {

// Local time in the form "%c %Z", at most 100 characters; empty when the time has no local form.
std::wstring FormatLocalTime(std::time_t time);

}  // namespace larkspan
