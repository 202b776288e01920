// Tables of note IDs.
#pragma once

#include <cstdint>
#include <functional>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Creates an empty table.
Status CreateIdTable(IdTable& table);

Status InsertId(const IdTable& table, std::uint32_t noteId);

std::uint32_t CountIds(const IdTable& table);

// How a scan of a table ended.
enum class ScanEnd {
  kEndOfTable,        // Every ID was handed over.
  kStoppedByVisitor,  // The visitor wanted no more.
  kFailed,            // The library ended the scan before the table's end.
};

// Hands each note ID to the visitor, in ascending order, until it returns false.
ScanEnd ScanIds(const IdTable& table, const std::function<bool(std::uint32_t)>& visit);

}  // namespace larkspan
