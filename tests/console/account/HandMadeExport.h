// An output folder made by hand, as an export leaves it, in which a test changes what it is about.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "tests/support/Lines.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {

struct HandMadeNote {
  std::uint32_t id = 0;
  std::wstring folder = L"data";  // Empty: the output folder itself.
  bool hasFile = true;
  bool hasRawCopy = false;
  bool isIndexed = true;
  std::string text = "Some text.";
};

class HandMadeExport {
 public:
  // An archive has three documents, a design note with and one without a raw copy, a profile and a
  // view; a plain export the same design notes.
  enum class Form { kArchive, kPlain };
  explicit HandMadeExport(Form form = Form::kArchive);

  HandMadeNote& Note(std::uint32_t id);

  // Writes the folder, all in agreement with these.
  void Write() const;

  std::vector<HandMadeNote> notes;
  Lines log;  // Whole lines without their ends.
  bool archive = true;
  bool hasView = true;
  bool cameToItsEnd = true;
  bool isClosed = true;

  const std::wstring& folder() const { return folder_.path(); }

  // Names have slashes.
  void WriteFile(const std::string& name, const std::string& bytes) const;
  std::string ReadFile(const std::string& name) const;
  void Remove(const std::string& name) const;
  void Rename(const std::string& from, const std::string& to) const;

  // In the file's first place where it stands; fails when it does not.
  void Replace(const std::string& name, const std::string& text, const std::string& with) const;

  // Fails the test when there is no account.
  Account Verify() const;

 private:
  Lines AuditLines() const;
  void WriteNote(const HandMadeNote& note) const;

  TempFolder folder_;
};

// A note as DXL, with its note ID as the library writes it.
std::string NoteDxl(std::uint32_t id, const std::string& text = "Some text.");

// Its universal ID.
std::string UnidText(std::uint32_t id);

// The losses ("lost note 0000090A open Note has been deleted"), then the findings ("unknown-file
// data/notes.txt", or with an ID where they have no file).
Lines Told(const Account& account);

// The kinds and texts of the warnings.
Lines Warned(const Account& account);

}  // namespace larkspan::console
