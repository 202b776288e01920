#include "tests/console/page/PageTestContent.h"

namespace larkspan::console {

PageContent ContentWithLosses() {
  PageContent content;
  content.verdict = ExitCode::kLosses;
  Account& account = content.account;
  account.notes = {60, 57, 1, 0, 3, 0, 0, 0};
  account.folders = {{"", 6, 4000}, {"data", 40, 5000000}, {"design", 15, 300000}};
  account.audit = {"11/22/26 08:03:34 UTC",
                   "11/22/26 08:05:36 UTC",
                   "122.00",
                   "CN=Ada Quill/O=Example",
                   "Mill/Example",
                   "register\\plants.nsf",
                   true,
                   6291456,
                   6291456,
                   true};
  account.losses = {{LossKind::kNote, 0x206, "export", "Form holds a field"},
                    {LossKind::kPictures, 0x20A, "pictures", "damaged"},
                    {LossKind::kNote, 0x20E, "open", "Note has been deleted"},
                    {LossKind::kNote, 0x212, "crash", "a worker died at it"}};
  account.warnings = {{"log", "Unable to read database quota"}};
  content.database = {"Plant Register", "plants.nsf", "C12583D0004D1A2B"};
  content.folder = "D:\\export\\plants";
  content.made = "2026-11-22T09:00:00Z";
  content.version = "0.1.0";
  return content;
}

PageContent ContentWithManyLosses(std::size_t count) {
  PageContent content = ContentWithLosses();
  for (std::size_t i = 0; i < count; ++i) {
    content.account.losses.push_back({LossKind::kNote, static_cast<std::uint32_t>(0x10000 + 4 * i),
                                      "export", "cause number " + std::to_string(i)});
  }
  return content;
}

std::size_t TimesIn(const std::string& text, const std::string& part) {
  std::size_t times = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size()))
    ++times;
  return times;
}

}  // namespace larkspan::console
