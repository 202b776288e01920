// The result of an operation on the Notes library.
#pragma once

#include <string>

#include "notes/NotesApi.h"

namespace larkspan {

// A status as the library returns it; code 0 is success. A type of its own, so that no count or
// length slips in where a result is meant.
class [[nodiscard]] Status {
 public:
  constexpr Status() = default;
  constexpr explicit Status(notes_api::STATUS code) : code_(code) {}

  // A status of our own, for which the library has no words that fit. They live as long as the
  // program.
  constexpr Status(notes_api::STATUS code, const wchar_t* words) : code_(code), words_(words) {}

  constexpr bool ok() const { return code_ == 0; }

  // All 16 bits, the two top bits included.
  constexpr notes_api::STATUS code() const { return code_; }

  // The error number alone, without the two top bits that say where it came from.
  constexpr notes_api::STATUS ErrorNumber() const { return code_ & notes_api::kErrorMask; }

  // Whether the error is the same, wherever it came from.
  constexpr bool IsError(Status other) const { return ErrorNumber() == other.ErrorNumber(); }

  // The words of a status that brings its own; null where the library has them.
  constexpr const wchar_t* words() const { return words_; }

  friend constexpr bool operator==(Status left, Status right) { return left.code_ == right.code_; }

 private:
  notes_api::STATUS code_ = 0;
  const wchar_t* words_ = nullptr;
};

// The words of a status that brings its own, else the Notes library's text for its error number, at
// most 255 characters.
std::wstring StatusText(Status status);

}  // namespace larkspan
