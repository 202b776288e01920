// Reads many files on several threads: small files cost the opening, large ones what is made of
// their bytes, and both go better side by side.
#pragma once

#include <cstddef>
#include <functional>

#include "console/account/VerifyProgress.h"

namespace larkspan::console {

// Reads the file of this number. Each thread has one of its own.
using FileReader = std::function<void(std::size_t file)>;

// Has each of so many files read by one of the readers that are made. The calling thread waits
// and tells how far they are. False when it was broken off: some files are not read then. Throws
// what a reader has thrown.
bool ReadFiles(std::size_t count, const VerifyProgress& progress,
               const std::function<FileReader()>& makeReader);

}  // namespace larkspan::console
