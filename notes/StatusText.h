// The words of a status.
#pragma once

#include <string>

#include "notes/Status.h"

namespace larkspan {

// The Notes library's text for the status's error number, at most 255 characters.
std::wstring StatusText(Status status);

}  // namespace larkspan
