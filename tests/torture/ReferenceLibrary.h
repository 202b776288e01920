// The Notes library as the reference uses it: plain calls, in which every failure is an exception.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "notes/NotesApi.h"
#include "tests/torture/ExportStage.h"
#include "tests/torture/Reference.h"

namespace larkspan::torture {

using notes_api::DHANDLE;
using notes_api::NOTEID;

class ReferenceLibrary {
 public:
  // Starts the runtime, switches to the subject's ID file, opens its database, in which no fault
  // strikes, and makes the five exporters.
  ReferenceLibrary(const ExportStage& stage, RefusedSettings refused);
  ~ReferenceLibrary();
  ReferenceLibrary(const ReferenceLibrary&) = delete;
  ReferenceLibrary& operator=(const ReferenceLibrary&) = delete;

  // The notes of these classes that are no stubs, ascending.
  std::vector<NOTEID> Search(std::uint16_t classMask);

  DHANDLE Open(NOTEID noteId);

  // As files; the note's with the exporter of this number, from 1.
  std::string AclText();
  std::string NoteText(int exporter, DHANDLE note);

  // Whether the note was decrypted, or was not sealed.
  bool MakeReadable(DHANDLE note);
  static bool IsSealed(DHANDLE note);

 private:
  void StartRuntime();
  void OpenDatabase();
  void MakeExporters(RefusedSettings refused);

  const ExportStage& stage_;
  DHANDLE database_ = 0;
  std::vector<DHANDLE> exporters_;
};

// What a note tells of itself.
std::uint16_t ClassOf(DHANDLE note);
std::string UnidOf(DHANDLE note);
std::string TextOf(DHANDLE note, const char* item);

// Its items that a repair, or a raw copy, deletes.
std::vector<std::string> DamagingFieldItems(DHANDLE note);
std::vector<std::string> ItemsOfType(DHANDLE note, std::uint16_t type);

bool HasItem(DHANDLE note, const std::string& name, std::uint16_t* type = nullptr);
void DeleteItem(DHANDLE note, const std::string& name);

}  // namespace larkspan::torture
