// Shows a run that does not take place, so that a test sees the display in a real terminal. It goes
// on at each key.
//
//   larkspan_display PATH
#include <conio.h>

#include <string>

#include "base/Utf8.h"
#include "console/show/MakeRunDisplay.h"

namespace larkspan::console {
namespace {

RunView ViewOf(const std::string& path) {
  RunView view;
  view.phase = "documents";
  view.documents = 4'567;
  view.documentsDone = 123;
  view.note = 0x90A;
  view.restarts = 1;
  view.lost = 3;
  view.server = "Mill/Example";
  view.path = path;
  return view;
}

void Show(const std::string& path) {
  const auto display = MakeRunDisplay(DisplayMode::kTerminalOrPlain);
  RunView view = ViewOf(path);
  display->Start({view.server, path, "D:\\out", "archive", {}});
  display->Update(view, 0);
  _getwch();
  view.documentsDone = 2'284;
  display->Update(view, 100);
  _getwch();
  display->Lost({LossKind::kNote, 0x90A, "open", "Note has been deleted"});
  _getwch();
  view = {};
  view.phase = "checking";
  display->Update(view, 200);
  _getwch();
  display->End({ExitCode::kStopped, "By the user.", "D:\\out", std::nullopt, 1});
}

}  // namespace
}  // namespace larkspan::console

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 1;
  larkspan::console::Show(larkspan::WideToUtf8(arguments[1]));
  return static_cast<int>(larkspan::console::ExitCode::kStopped);
}
