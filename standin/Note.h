// A note and its items as a database holds them. Names and texts are in the Notes character set;
// the value of an item is the bytes that the library hands out, type word first.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/View.h"

namespace larkspan::standin {

inline constexpr notes_api::WORD kClassDocument = 0x0001;
inline constexpr notes_api::WORD kClassForm = 0x0004;
inline constexpr notes_api::WORD kClassView = 0x0008;
inline constexpr notes_api::WORD kDeletedBit = 0x8000;

// Records of rich text: the text of a paragraph, and a picture.
inline constexpr notes_api::WORD kRecordText = 101;
inline constexpr notes_api::WORD kRecordPicture = 159;

struct Item {
  std::string name;
  notes_api::WORD flags = 0;
  std::vector<notes_api::BYTE> value;
  bool isSealed = false;  // its bytes show only after the note was decrypted

  notes_api::WORD type() const;
};

struct Note {
  notes_api::NOTEID id = 0;
  notes_api::WORD noteClass = kClassDocument;
  std::string element;  // the element that stands for the note in DXL
  notes_api::OriginatorId originatorId = {};
  notes_api::TIMEDATE created = {};
  notes_api::TIMEDATE modified = {};
  bool isSigned = false;
  std::vector<std::string> sealedFor;  // who can decrypt it; empty = not sealed
  std::vector<Item> items;
  std::shared_ptr<const View> view;  // null when the file tells nothing of its entries

  // Null when there is no item of that name.
  const Item* Find(std::string_view name) const;
};

// What a search tells of a note.
struct NoteSummary {
  notes_api::NOTEID id = 0;
  notes_api::WORD noteClass = 0;  // with kDeletedBit for the stub of a deleted note
  notes_api::OriginatorId originatorId = {};
  notes_api::TIMEDATE modified = {};
};

NoteSummary SummaryOf(const Note& note);

// The ID's 32 digits are, in order, the words file[1], file[0], note[1], note[0].
void SetUniversalId(std::string_view digits, notes_api::OriginatorId* id);
std::string UniversalIdText(const notes_api::OriginatorId& id);

}  // namespace larkspan::standin
