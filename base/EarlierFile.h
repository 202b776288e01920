// What becomes of a file whose name another one gets.
#pragma once

namespace larkspan::file_system {

// Where the earlier file stays, the move of the other fails.
enum class Earlier { kStays, kIsReplaced };

}  // namespace larkspan::file_system
