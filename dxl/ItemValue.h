// Item values as XML: a value chooses its elements by its type word.
#pragma once

#include <tinyxml2.h>

#include <string_view>

#include "base/ByteReader.h"
#include "notes/NotesApi.h"

namespace larkspan {

// Writes a `text` element from text in the Notes character set. Of the text at most 65,535 bytes
// are read, and at most 65,535 bytes of UTF-8 are written.
void WriteTextElement(tinyxml2::XMLPrinter& printer, std::string_view text);

// Writes the element or elements of a value that begins with its type word: `text`, `textlist`,
// `number`, `numberlist`, `datetime` or `datetimelist`; a value of another type writes nothing. A
// value that ends early is written as far as its elements are whole: a list is closed after them, a
// single number or date-time is left out.
void WriteItemValue(tinyxml2::XMLPrinter& printer, const notes_api::IntlSettings& numbers,
                    Bytes value);

}  // namespace larkspan
