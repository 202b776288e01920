// Works on many files on several threads: small files cost the opening or the moving, large ones
// what is made of their bytes, and all of it goes better side by side.
#pragma once

#include <cstddef>
#include <functional>

#include "console/folder/FileProgress.h"

namespace larkspan::console {

// Reads, or moves, the file of this number. Each thread has one of its own.
using FileWorker = std::function<void(std::size_t file)>;

// Has each of so many files taken by one of the workers that are made. The calling thread waits and
// tells how far they are. False when it was broken off: some files are not taken then. Throws what
// a worker has thrown.
bool WorkOnFiles(std::size_t count, const FileProgress& progress,
                 const std::function<FileWorker()>& makeWorker);

}  // namespace larkspan::console
