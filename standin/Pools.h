// The pools through which callers reach items and their values. A pool is made when a caller asks
// where an item is, and goes with the item; it holds the value at a fixed place behind some bytes
// that are none of the caller's business.
#pragma once

#include "notes/NotesApi.h"
#include "standin/OpenNote.h"
#include "standin/Runtime.h"

namespace larkspan::standin {

// Where an item and its value stand, and how long the value is.
struct ItemPlace {
  notes_api::BlockId item;
  notes_api::BlockId value;
  notes_api::WORD type = 0;
  notes_api::DWORD valueLength = 0;
};

ItemPlace PlaceItem(Runtime& runtime, const OpenNote& note, OpenItem& item);

// A strict failure when a caller still holds a lock on the pool.
void DropPool(Runtime& runtime, OpenItem& item);

// The value that a block stands for. A strict failure when the block is no value or the length is
// not the value's.
const notes_api::BYTE* ValueOfBlock(Runtime& runtime, const notes_api::BlockId& value,
                                    notes_api::DWORD length);

}  // namespace larkspan::standin
