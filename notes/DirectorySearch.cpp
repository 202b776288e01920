#include "notes/DirectorySearch.h"

#include <exception>

namespace larkspan {

namespace {

using notes_api::STATUS;

struct Visit {
  const DirectoryVisitor& visit;
  std::exception_ptr exception;
};

// The library's code stands between this function and its caller, so an exception is handed over.
extern "C" STATUS LARKSPAN_NOTES_CALL LookAtMatch(void* context, notes_api::SearchMatch* match,
                                                  notes_api::ItemTable* summary) {
  auto& visit = *static_cast<Visit*>(context);
  if (visit.exception) return 0;
  try {
    visit.visit(*match, *summary);
  } catch (...) {
    visit.exception = std::current_exception();
  }
  return 0;
}

}  // namespace

void SearchDirectory(const Database& directory, const DirectoryVisitor& visit) {
  constexpr notes_api::WORD kSearchFlags = 0x0006;
  constexpr notes_api::WORD kClassMask = 0x200A;
  Visit context{visit, nullptr};
  notes_api::NSFSearch(directory.get(), 0, nullptr, kSearchFlags, kClassMask, nullptr, LookAtMatch,
                       &context, nullptr);
  if (context.exception) std::rethrow_exception(context.exception);
}

}  // namespace larkspan
