// Several exporters at work at once, each in a folder of its own, begun in the order of their
// notes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "console/follow/Exporter.h"

namespace larkspan::console {

struct CrewMember {
  std::wstring folder;
  std::unique_ptr<Exporter> exporter;
  std::optional<std::uint32_t> lostBefore = std::nullopt;  // Workers have died at it before.
  bool onlyOneNote = false;  // It is asked to stop when it begins a second one.
};

class Crew {
 public:
  virtual ~Crew() = default;

  // How many are at work at once, at the most.
  virtual std::size_t size() const = 0;

  // Begins the next one. None: nothing is left, or it cannot be begun.
  virtual std::optional<CrewMember> BeginNext() = 0;

  // Why the next one, or none of all, could not be begun, as the run's log has it; empty when
  // nothing went wrong.
  virtual std::string fault() const { return {}; }

  // Whether one that has ended did all that it was to do. If not, the run ends: those that began
  // later stop, and those that began before come to their own end.
  virtual bool IsDone(const CrewMember& member) = 0;
};

}  // namespace larkspan::console
