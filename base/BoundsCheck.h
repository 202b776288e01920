// The end of a process whose memory can no longer be trusted.
#pragma once

namespace larkspan {

// Ends this process at once, with the code that Windows itself gives for a buffer that was about to
// be overrun. For texts longer than the Notes library ever hands out: one that is means that its
// memory is damaged.
[[noreturn]] void EndForBoundsViolation();

}  // namespace larkspan
