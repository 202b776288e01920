// The one gate through which every call of an entry point goes: it checks that the runtime is
// started and that the right thread calls, counts the call, and lets the fault plan strike. Each
// entry point makes one Call first and returns at once when it stops.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Faults.h"
#include "standin/Runtime.h"

namespace larkspan::standin {

// What a call is about. Handles that are not open are no matter here; the entry point finds out.
struct About {
  notes_api::DHANDLE note = 0;
  notes_api::NOTEID noteId = 0;
  notes_api::DHANDLE exporter = 0;
  std::uint32_t exporterOrdinal = 0;
  notes_api::HCOLLECTION collection = 0;  // stands for the note of its view
  std::string_view item = {};
  std::string_view path = {};
  notes_api::DHANDLE directory = 0;  // stands for the path by which it was opened
};

enum class Allowed {
  kWhileStarted,
  kFromAnyThread,  // while started, also by another thread than the one that started the runtime
  kAnyTime,
  kToStart,  // faults strike only when the entry point says so, with StrikeNow
};

class Call {
 public:
  // The name is a literal. Faults may make this throw, or never return.
  explicit Call(const char* entry, const About& about = {},
                Allowed allowed = Allowed::kWhileStarted);
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  // Whether a fault wants the call to end, and with which status.
  bool stops() const { return status_ != 0; }
  notes_api::STATUS status() const { return status_; }

  void StrikeNow(const About& about);

  // For exports and searches: what faults want after so many chunks or matches were given to the
  // caller; zero to go on. Faults that wait for more than there are strike after the last one.
  notes_api::STATUS AfterPieces(std::size_t given, bool isLast);

  Runtime& runtime() const { return TheRuntime(); }

 private:
  // Names the entry point in strict messages and goes back to the one that called us back.
  class Scope {
   public:
    explicit Scope(const char* entry) : outer_(CurrentEntry()) { SetCurrentEntry(entry); }
    ~Scope() { SetCurrentEntry(outer_); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    const char* outer_;
  };

  Scope scope_;
  const char* entry_;
  notes_api::STATUS status_ = 0;
  std::vector<const Fault*> waiting_;
};

// Text that a caller handed over, for About: without any check, and empty when there is none.
std::string_view PeekText(const char* text, std::size_t size);

// Text that a caller handed over: fails when there is none or it is not shorter than the size.
std::string_view RequireText(const char* text, std::size_t size);

}  // namespace larkspan::standin
