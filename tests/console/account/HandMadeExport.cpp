#include "tests/console/account/HandMadeExport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>

#include "console/account/Verify.h"
#include "console/text/Utf.h"
#include "tests/support/FileBytes.h"

namespace larkspan::console {
namespace {

constexpr char kHeader[] = "<?xml version='1.0' encoding='utf-8'?>\r\n";

std::string HandMadeText(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  return text;
}

std::string CountLine(const char* label, std::size_t count) {
  std::array<char, 100> line;
  std::snprintf(line.data(), line.size(), "%s %8u", label, static_cast<unsigned>(count));
  return line.data();
}

std::filesystem::path InFolder(const std::wstring& folder, const std::string& name) {
  return std::filesystem::path(folder) / Utf8ToWide(name);
}

}  // namespace

HandMadeExport::HandMadeExport(Form form) : archive(form == Form::kArchive) {
  if (archive) {
    notes = {{.id = 0x102, .folder = L"design", .hasRawCopy = true},
             {.id = 0x106, .folder = L"design"},
             {.id = 0x902},
             {.id = 0x906},
             {.id = 0x90A},
             {.id = 0x90E, .folder = L"profile"}};
  } else {
    notes = {{.id = 0x102, .folder = L""}, {.id = 0x106, .folder = L""}};
  }
}

HandMadeNote& HandMadeExport::Note(std::uint32_t id) {
  return *std::find_if(notes.begin(), notes.end(),
                       [&](const HandMadeNote& note) { return note.id == id; });
}

Lines HandMadeExport::AuditLines() const {
  Lines lines = {"Archive started at: 11/20/26 19:31:34 UTC",
                 "Set user to: CN=Ada Quill/O=Example",
                 "Archive database server: ",
                 "Archive database path  : sample.nsf",
                 "Archive without full access admin",
                 "Database size before archive: 2097152"};
  if (cameToItsEnd) lines.push_back("Database size after archive : 2097152");
  if (!isClosed) return lines;
  const auto inFolder = [&](const wchar_t* name) {
    return static_cast<std::size_t>(std::count_if(
        notes.begin(), notes.end(),
        [&](const HandMadeNote& note) { return note.hasFile && note.folder == name; }));
  };
  const auto linesWith = [&](const char* begin) {
    return static_cast<std::size_t>(std::count_if(
        log.begin(), log.end(), [&](const std::string& line) { return line.starts_with(begin); }));
  };
  const std::size_t data = inFolder(L"data"), design = inFolder(L"design");
  const std::size_t profile = inFolder(L"profile"), all = data + design + profile;
  const std::size_t failed = linesWith("#WARNING# - Major:");
  const std::size_t warned = linesWith("#WARNING# - Minor:");
  const Lines closing = {"Archive ended at: 11/20/26 19:31:36 UTC",
                         "Total runtime (seconds): 2.00",
                         CountLine("Database total documents :", notes.size()),
                         "Exported Document Counts",
                         CountLine("Data   :", data),
                         CountLine("Design :", design),
                         CountLine("Profile:", profile),
                         CountLine("Exported total documents :", all),
                         CountLine("Failed total documents   :", failed),
                         CountLine("Total documents processed:", all + failed),
                         CountLine("Documents exported with warnings :", warned)};
  lines.insert(lines.end(), closing.begin(), closing.end());
  if (failed + warned != 0)
    lines.push_back("Some documents were not exported successfully. See log.txt for details.");
  return lines;
}

void HandMadeExport::WriteNote(const HandMadeNote& note) const {
  const std::string name = NoteIdText(note.id) + ".dxl";
  const std::string folder = WideToUtf8(note.folder);
  const std::string dxl = NoteDxl(note.id, note.text);
  if (note.hasFile) WriteFile(folder.empty() ? name : folder + "/" + name, dxl);
  if (note.hasRawCopy) WriteFile("design2/" + name, dxl);
}

void HandMadeExport::Write() const {
  std::string list;
  std::string index;
  for (const HandMadeNote& note : notes) {
    list += NoteIdText(note.id) + "\r\n";
    if (note.isIndexed) index += NoteIdText(note.id) + "," + UnidText(note.id) + "\r\n";
    WriteNote(note);
  }
  WriteFile("idtable.txt", list);
  if (archive) WriteFile("unidindex.txt", index);
  if (!log.empty()) WriteFile("log.txt", HandMadeText(log));
  WriteFile("audit.txt", HandMadeText(AuditLines()));
  WriteFile("db.dxl", std::string(kHeader) + "<database title='a'><databaseinfo/></database>");
  WriteFile("acl.dxl", std::string(kHeader) + "<acl><entry name='-Default-'/></acl>");
  if (archive && hasView) WriteFile("views/00000106.xml", std::string(kHeader) + "<view/>");
}

void HandMadeExport::WriteFile(const std::string& name, const std::string& bytes) const {
  const std::filesystem::path path = InFolder(folder(), name);
  std::filesystem::create_directories(path.parent_path());
  WriteBytes(path.wstring(), bytes);
}

std::string HandMadeExport::ReadFile(const std::string& name) const {
  return ReadBytes(InFolder(folder(), name).wstring());
}

void HandMadeExport::Remove(const std::string& name) const {
  EXPECT_TRUE(std::filesystem::remove(InFolder(folder(), name))) << name;
}

void HandMadeExport::Rename(const std::string& from, const std::string& to) const {
  std::filesystem::rename(InFolder(folder(), from), InFolder(folder(), to));
}

void HandMadeExport::Replace(const std::string& name, const std::string& text,
                             const std::string& with) const {
  std::string bytes = ReadFile(name);
  const std::size_t at = bytes.find(text);
  ASSERT_NE(at, std::string::npos) << text << " is not in " << name;
  WriteFile(name, bytes.replace(at, text.size(), with));
}

Account HandMadeExport::Verify() const {
  std::string whyNot;
  const std::optional<Account> account = VerifyFolder(folder(), nullptr, whyNot);
  EXPECT_TRUE(account) << whyNot;
  return account.value_or(Account());
}

std::string NoteDxl(std::uint32_t id, const std::string& text) {
  std::array<char, 20> noteId;
  std::snprintf(noteId.data(), noteId.size(), "%x", static_cast<unsigned>(id));
  return std::string(kHeader) +
         "<!DOCTYPE document>\r\n<document version='12.0'>\r\n<noteinfo noteid='" + noteId.data() +
         "' unid='" + UnidText(id) +
         "' sequence='1'>\r\n</noteinfo>\r\n<item name='Body'><richtext>" + text +
         "</richtext></item>\r\n</document>\r\n";
}

std::string UnidText(std::uint32_t id) { return "C12583D0004D1A2C22FD6562" + NoteIdText(id); }

Lines Told(const Account& account) {
  constexpr std::array kKinds = {"note", "raw copy", "pictures", "index line", "acl", "view"};
  Lines lines;
  for (const Loss& loss : account.losses) {
    const std::string id = loss.id ? " " + NoteIdText(*loss.id) : "";
    lines.push_back(std::string("lost ") + kKinds[static_cast<std::size_t>(loss.kind)] + id + " " +
                    loss.stage + " " + loss.cause);
  }
  for (const Finding& finding : account.findings) {
    const std::string id = finding.id ? NoteIdText(*finding.id) : "";
    lines.push_back(finding.kind + " " + (finding.file.empty() ? id : finding.file));
  }
  return lines;
}

Lines Warned(const Account& account) {
  Lines lines;
  for (const Warning& warning : account.warnings)
    lines.push_back(warning.kind + ": " + warning.text);
  return lines;
}

}  // namespace larkspan::console
