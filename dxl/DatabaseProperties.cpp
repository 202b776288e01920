// The order of the operations is the order of the attributes. The first that fails ends the
// document, which then never gets its name: half the properties would look like those of another
// database.
#include "dxl/DatabaseProperties.h"

#include <cstdint>
#include <string>
#include <string_view>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "dxl/DateTime.h"
#include "dxl/FormattedAttribute.h"
#include "dxl/XmlDocument.h"
#include "notes/NotesApi.h"
#include "notes/Properties.h"
#include "notes/Utf8Text.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// The root stands on the line of the document type.
constexpr bool kOnTheSameLine = true;

constexpr std::size_t kMaxAttributeBytes = 1023;

Status Logged(const wchar_t* format, Status status) {
  if (!status.ok()) LogStatus(LogLevel::kWarning, format, status);
  return status;
}

class PropertiesPrinter {
 public:
  PropertiesPrinter(const Database& database, tinyxml2::XMLPrinter& printer)
      : database_(database), printer_(printer) {}

  // Stops at the first operation that fails.
  Status Print() {
    printer_.PushUnknown("DOCTYPE database");
    printer_.OpenElement("database", kOnTheSameLine);
    printer_.PushAttribute("xmlns", notes_api::kDxlNamespace);
    printer_.PushAttribute("version", "12.0");
    for (const auto write : {&PropertiesPrinter::WriteReplicaId, &PropertiesPrinter::WritePath,
                             &PropertiesPrinter::WriteTitles, &PropertiesPrinter::WriteInfo}) {
      if (const Status status = (this->*write)(); !status.ok()) return status;
    }
    printer_.CloseElement();
    return Status();
  }

 private:
  Status WriteReplicaId() {
    notes_api::DatabaseId id{};
    const Status status = Logged(L"Error retrieving replicaid (%s)", GetReplicaId(database_, id));
    if (status.ok()) PushId("replicaid", id);
    return status;
  }

  Status WritePath() {
    std::string path;
    const Status status =
        Logged(L"Error retrieving database path (%s)", GetDatabasePath(database_, path));
    if (status.ok()) printer_.PushAttribute("path", ToUtf8(path).c_str());
    return status;
  }

  Status WriteTitles() {
    DatabaseInformation information;
    const Status status =
        Logged(L"Error retrieving database info (%s)", information.Get(database_));
    if (!status.ok()) return status;
    printer_.PushAttribute("title", ToUtf8(information.Title()).c_str());
    const std::string categories = ToUtf8(information.Categories());
    if (!categories.empty()) printer_.PushAttribute("categories", categories.c_str());
    return status;
  }

  Status WriteInfo() {
    printer_.OpenElement("databaseinfo");
    if (const Status status = WriteId(); !status.ok()) return status;
    if (const Status status = WriteSpaceUsage(); !status.ok()) return status;
    if (const Status status = WriteModifiedTimes(); !status.ok()) return status;
    printer_.CloseElement();
    return Status();
  }

  Status WriteId() {
    notes_api::DatabaseId id{};
    const Status status =
        Logged(L"Error retrieving database id (%s)", GetDatabaseId(database_, id));
    if (status.ok()) PushId("dbid", id);
    return status;
  }

  Status WriteSpaceUsage() {
    SpaceUsage usage;
    const Status status =
        Logged(L"Error retrieving database space usage (%s)", GetSpaceUsage(database_, usage));
    if (!status.ok()) return status;
    // The product keeps to 32 bits, so that the size of a large database wraps, as readers of this
    // document expect it.
    PushNumber("diskspace", usage.size * kBytesPerKilobyte);
    PushNumber("percentused", usage.used * 100.0 / usage.size);
    return status;
  }

  Status WriteModifiedTimes() {
    ModifiedTimes times;
    const Status status = Logged(L"Error retrieving database modified times (%s)",
                                 GetModifiedTimes(database_, times));
    if (!status.ok()) return status;
    WriteTime("datamodified", times.data);
    WriteTime("designmodified", times.other);
    return status;
  }

  void WriteTime(const char* element, const notes_api::TIMEDATE& time) {
    printer_.OpenElement(element);
    WriteDateTime(printer_, time);
    printer_.CloseElement();
  }

  void PushId(const char* attribute, const notes_api::DatabaseId& id) {
    const auto word = [&](int index) { return static_cast<unsigned long>(id.innards[index]); };
    PushFormatted(printer_, attribute, "%08lX%08lX", word(1), word(0));
  }

  void PushNumber(const char* attribute, double number) {
    PushFormatted(printer_, attribute, "%.17g", number);
  }

  // Control characters and the two code points that are no characters have no place in XML: each
  // becomes a space.
  static std::string ToUtf8(const std::string& text) {
    std::string utf8 = NotesToUtf8(text, kMaxAttributeBytes);
    ReplaceControlCharacters(utf8);
    for (const std::string_view noCharacter : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
      for (std::size_t at; (at = utf8.find(noCharacter)) != std::string::npos;) {
        utf8.replace(at, noCharacter.size(), " ");
      }
    }
    return utf8;
  }

  const Database& database_;
  tinyxml2::XMLPrinter& printer_;
};

}  // namespace

Status ExportDatabaseProperties(const Database& database) {
  XmlDocument document;
  Status status;
  const bool isComplete = document.Print([&](tinyxml2::XMLPrinter& printer) {
    status = PropertiesPrinter(database, printer).Print();
    return status.ok();
  });
  return isComplete ? document.Save(InOutputFolder(output::kProperties)) : status;
}

}  // namespace larkspan
