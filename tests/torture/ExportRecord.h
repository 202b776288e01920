// Which exports of a run bring out any text: those that fail because of the database do not.
#pragma once

#include <map>
#include <set>
#include <string>

#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan::torture {

// The calls of an entry point, counted from 1.
using CallsByEntry = std::map<std::string, std::set<int>>;

// Records the exports of notes and access control lists in this process for as long as it lives.
// One at a time.
class ExportRecord {
 public:
  ExportRecord();

  // The calls that have handed over a piece of text so far.
  CallsByEntry CallsWithText() const;

 private:
  ReplacedEntryPoint note_;
  ReplacedEntryPoint acl_;
};

}  // namespace larkspan::torture
