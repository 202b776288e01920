#include "tests/torture/Reference.h"

#include <algorithm>

#include "tests/torture/ReferenceLibrary.h"

namespace larkspan::torture {

namespace {

constexpr std::uint16_t kEveryClass = 0x7FFF;
constexpr std::uint16_t kAllButDocuments = 0x7FFE;
constexpr std::uint16_t kDocument = 0x0001;
constexpr std::uint16_t kForm = 0x0004;
constexpr std::uint16_t kRawPartType = 20;

// Opens the note anew for every text, since what is deleted stays so in an open note.
class NoteReader {
 public:
  NoteReader(ReferenceLibrary& library, std::uint32_t noteId) : library_(library) {
    note_.id = noteId;
  }

  ReferenceNote Read(bool archive) {
    const DHANDLE handle = library_.Open(note_.id);
    ReadFacts(handle, archive);
    const bool isSealed = ReferenceLibrary::IsSealed(handle);
    const bool isReadable = library_.MakeReadable(handle);
    note_.hasPictures = HasPictures(library_.NoteText(kNormal, handle));
    notes_api::NSFNoteClose(handle);
    AddTexts(false, !isSealed);
    if (isSealed && isReadable) AddTexts(true, true);
    return note_;
  }

 private:
  static bool HasPictures(const std::string& text) {
    return text.find("<picture>") != std::string::npos ||
           text.find("<paragraph><run>") != std::string::npos;
  }

  void ReadFacts(DHANDLE handle, bool archive) {
    note_.noteClass = ClassOf(handle);
    note_.unid = UnidOf(handle);
    const bool isDocument = note_.noteClass == kDocument;
    const bool isProfile = TextOf(handle, "$Name").starts_with("$profile");
    if (archive) note_.folder = !isDocument ? "design/" : isProfile ? "profile/" : "data/";
    note_.wantsRawCopy =
        archive && !isDocument && (HasItem(handle, "$Body") || HasItem(handle, "$ViewFormat"));
    if (note_.noteClass == kForm) note_.fieldItems = Deletable(DamagingFieldItems(handle));
    note_.rawItems = Deletable(ItemsOfType(handle, kRawPartType));
  }

  // Items of one name are deleted together.
  unsigned Deletable(const std::vector<std::string>& names) {
    unsigned bits = 0;
    for (const std::string& name : names) {
      const auto known = std::find(deletable_.begin(), deletable_.end(), name);
      bits |= 1u << (known - deletable_.begin());
      if (known == deletable_.end()) deletable_.push_back(name);
    }
    return bits;
  }

  void AddTexts(bool decrypt, bool isReadable) {
    for (unsigned deleted = 0; deleted < 1u << deletable_.size(); ++deleted) {
      const DHANDLE handle = library_.Open(note_.id);
      if (decrypt) library_.MakeReadable(handle);
      for (std::size_t i = 0; i < deletable_.size(); ++i) {
        if ((deleted >> i & 1) != 0) DeleteItem(handle, deletable_[i]);
      }
      for (int exporter = kNormal; exporter <= kRaw; ++exporter) {
        note_.texts.try_emplace(library_.NoteText(exporter, handle),
                                Variant{exporter, deleted, isReadable});
      }
      notes_api::NSFNoteClose(handle);
    }
  }

  ReferenceLibrary& library_;
  ReferenceNote note_;
  std::vector<std::string> deletable_;
};

}  // namespace

Reference MakeReference(const ExportStage& stage, RefusedSettings refused) {
  const bool archive = stage.subject().archive;
  ReferenceLibrary library(stage, refused);
  const std::map<std::uint32_t, NoteDamage> damages = DamageIn(stage.subject());
  Reference reference;
  reference.acl = library.AclText();
  for (const NOTEID noteId : library.Search(archive ? kEveryClass : kAllButDocuments)) {
    reference.notes.push_back(NoteReader(library, noteId).Read(archive));
    const auto damage = damages.find(noteId);
    if (damage != damages.end()) reference.notes.back().damage = damage->second;
  }
  return reference;
}

}  // namespace larkspan::torture
