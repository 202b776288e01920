// A file without a name.
#pragma once

#include "base/File.h"

namespace larkspan {

// Makes an empty file in the user's folder for temporary files, open for reading and writing, in
// binary mode. Nobody else can open it, and it is gone when it is closed or the process ends, in
// whatever way. Empty on failure.
UniqueFile OpenTemporaryFile();

}  // namespace larkspan
