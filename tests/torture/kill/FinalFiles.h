// The files under final names while processes may still work in the folder.
#pragma once

#include <string>

#include "tests/torture/kill/CleanRun.h"

namespace larkspan::torture {

// Opens none but these, since a file in progress that is open here could not be deleted or moved
// there.
OutputTree ReadFinalFiles(const std::wstring& output);

}  // namespace larkspan::torture
