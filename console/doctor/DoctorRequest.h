// What a person wants doctor to look at.
#pragma once

#include <cstdint>

#include "console/follow/ExportRequest.h"

namespace larkspan::console {

struct DoctorRequest {
  // The export that is to come. Without a path no database is opened, without a folder none is
  // looked at.
  ExportRequest run;

  // A process of larkspan.exe without a sign of progress for so long is ended.
  std::uint64_t timeoutMilliseconds = 120'000;
};

}  // namespace larkspan::console
