// What an export tells of itself, taken from the events that it writes.
#pragma once

#include <string>

#include "console/show/RunView.h"
#include "console/show/StatusParts.h"

namespace larkspan::console {

class EventReader {
 public:
  EventReader(const std::string& server, const std::string& path);

  // Takes a line. False when it is no event: what went wrong is told so.
  bool Take(const std::string& line);

  const RunView& view() const { return view_; }
  const Pace& pace() const { return pace_; }

  const std::string& out() const { return out_; }  // Where the export lies; empty: not told.
  const std::string& reason() const { return reason_; }
  const std::string& lastMessage() const { return lastMessage_; }  // Of the lines that are none.

 private:
  RunView view_;
  Pace pace_;
  std::string out_;
  std::string reason_;
  std::string lastMessage_;
};

}  // namespace larkspan::console
