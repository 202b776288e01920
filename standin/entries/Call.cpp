#include "standin/entries/Call.h"

#include <cstring>

namespace larkspan::standin {

namespace {

CallSubject SubjectOf(const Runtime& runtime, const About& about) {
  CallSubject subject;
  subject.note = about.noteId;
  subject.exporter = about.exporterOrdinal;
  subject.item = about.item;
  subject.path = about.path;
  if (const OpenNote* note = runtime.notes.Find(about.note)) subject.note = note->note.id;
  if (const OpenCollection* collection = runtime.collections.Find(about.collection)) {
    subject.note = collection->view;
  }
  if (const OpenDatabase* directory = runtime.databases.Find(about.directory)) {
    subject.path = directory->path;
  }
  if (const Exporter* exporter = runtime.exporters.Find(about.exporter)) {
    subject.exporter = exporter->ordinal;
  }
  return subject;
}

}  // namespace

Call::Call(const char* entry, const About& about, Allowed allowed) : scope_(entry), entry_(entry) {
  Runtime& current = TheRuntime();
  if (allowed == Allowed::kWhileStarted || allowed == Allowed::kFromAnyThread) {
    Require(current.isStarted, "the runtime is not started");
  }
  if (allowed == Allowed::kWhileStarted) {
    Require(current.thread == std::this_thread::get_id(), "another thread started the runtime");
  }
  current.ledger.Count(entry);
  if (allowed != Allowed::kToStart) StrikeNow(about);
}

void Call::StrikeNow(const About& about) {
  Runtime& current = TheRuntime();
  if (!about.path.empty()) {
    std::shared_ptr<Database> database;
    current.Load(about.path, &database);
  }
  for (const Fault* fault : current.faults.Strike(entry_, SubjectOf(current, about))) {
    if (fault->pieces) {
      waiting_.push_back(fault);
    } else if (status_ == 0) {
      status_ = Act(*fault);
    }
  }
}

notes_api::STATUS Call::AfterPieces(std::size_t given, bool isLast) {
  notes_api::STATUS wanted = 0;
  std::erase_if(waiting_, [&](const Fault* fault) {
    const bool isDue = isLast || *fault->pieces <= given;
    if (isDue && wanted == 0) wanted = Act(*fault);
    return isDue;
  });
  return wanted;
}

std::string_view PeekText(const char* text, std::size_t size) {
  if (text == nullptr) return {};
  const void* const end = std::memchr(text, 0, size);
  const auto* const last = end == nullptr ? text + size : static_cast<const char*>(end);
  return {text, static_cast<std::size_t>(last - text)};
}

std::string_view RequireText(const char* text, std::size_t size) {
  Require(text != nullptr, "a text is missing");
  const std::string_view found = PeekText(text, size);
  Require(found.size() < size, "a text is too long");
  return found;
}

}  // namespace larkspan::standin
