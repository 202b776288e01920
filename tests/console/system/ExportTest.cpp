#include "tests/console/system/ExportTest.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace larkspan::console {

using testing::BuildCommandLine;
using testing::OutputTree;

Words ExportTest::ExportWords(const Words& more) const {
  const std::wstring configuration = run_.folder() + L"\\notes.ini";
  run_.WriteConfigurationTo(configuration);
  Words words = {L"export", L"--path", database_, L"--out", out_, L"--notes-ini", configuration};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

std::unique_ptr<ConsoleProcess> ExportTest::Start(const Words& arguments) const {
  const std::wstring executable = programFolder_ + L"\\larkspan-console.exe";
  Words all = {executable};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return std::make_unique<ConsoleProcess>(executable, BuildCommandLine(all));
}

ConsoleEnd ExportTest::Run(const Words& arguments) const {
  const std::unique_ptr<ConsoleProcess> process = Start(arguments);
  ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  return end;
}

Json ExportTest::OutcomeOf(const std::wstring& folder) {
  return Json::parse(ReadBytes(folder + L"\\outcome.json"));
}

// It is replaced whole, so what is there can always be parsed; for a moment it may not be opened.
void ExportTest::AwaitOutcome(const std::wstring& folder,
                              const std::function<bool(const Json& outcome)>& condition) const {
  const bool came = AwaitCondition([&] {
    try {
      return condition(OutcomeOf(folder));
    } catch (const std::runtime_error&) {
      return false;
    }
  });
  EXPECT_TRUE(came) << "outcome.json never told it";
}

void ExportTest::AwaitFile(const std::wstring& path) const {
  EXPECT_TRUE(AwaitCondition([&] { return Exists(path); })) << "a file never came";
}

Lines ExportTest::FilesIn(const std::string& subfolder) const {
  Lines names;
  for (const auto& [name, content] : testing::ReadOutputTree(out_)) {
    if (name.starts_with(subfolder + "/") && !name.ends_with("/")) names.push_back(name);
  }
  return names;
}

OutputTree ExportTest::NotesTreeOf(const std::wstring& folder) {
  OutputTree tree = testing::ReadOutputTree(folder);
  for (const char* name : {"outcome.json", "audit.txt", "log.txt"}) tree.erase(name);
  return tree;
}

std::string ExportTest::ReadIfThere(const std::wstring& name) const {
  const std::wstring path = out_ + L"\\" + name;
  return Exists(path) ? ReadBytes(path) : std::string();
}

OutputTree ExportTest::CleanTree(const std::string& database) const {
  testing::ExportRun clean;
  clean.AddDatabase(database_, database);
  clean.Export(database_, {L"-archive"});
  return NotesTreeOf(clean.output());
}

std::vector<Json> EventsIn(const std::string& output) {
  std::vector<Json> events;
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) events.push_back(Json::parse(line));
  return events;
}

std::vector<Json> EventsOf(const std::string& output, const std::string& kind) {
  std::vector<Json> events = EventsIn(output);
  std::erase_if(events, [&](const Json& event) { return event.at("kind") != kind; });
  return events;
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace larkspan::console
