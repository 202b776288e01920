#include "dxl/DatabaseProperties.h"

#include <cstdint>
#include <string>

#include "app/Settings.h"
#include "base/OutputPaths.h"
#include "dxl/DateTime.h"
#include "dxl/FormattedAttribute.h"
#include "dxl/XmlDocument.h"
#include "notes/Database.h"
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

class PropertiesDocument {
 public:
  explicit PropertiesDocument(const Database& database) : database_(database) {}

  // Stops at the first operation that fails.
  Status Write() {
    if (!document_.HasFile()) return Save();
    printer_.PushUnknown("DOCTYPE database");
    printer_.OpenElement("database", kOnTheSameLine);
    printer_.PushAttribute("xmlns", notes_api::kDxlNamespace);
    printer_.PushAttribute("version", "12.0");
    for (const auto write : {&PropertiesDocument::WriteReplicaId, &PropertiesDocument::WritePath,
                             &PropertiesDocument::WriteTitles, &PropertiesDocument::WriteInfo}) {
      if (const Status status = (this->*write)(); !status.ok()) return status;
    }
    printer_.CloseElement();
    return Save();
  }

 private:
  Status Save() { return document_.Save(InOutputFolder(output::kProperties)); }

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
    DatabaseTitles titles;
    const Status status =
        Logged(L"Error retrieving database info (%s)", GetDatabaseTitles(database_, titles));
    if (!status.ok()) return status;
    printer_.PushAttribute("title", ToUtf8(titles.title).c_str());
    const std::string categories = ToUtf8(titles.categories);
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
    constexpr std::uint32_t kBytesPerKilobyte = 1024;
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

  static std::string ToUtf8(const std::string& text) {
    return NotesToUtf8(text, kMaxAttributeBytes);
  }

  const Database& database_;
  XmlDocument document_;
  tinyxml2::XMLPrinter& printer_ = document_.printer();
};

}  // namespace

Status ExportDatabaseProperties(const Database& database) {
  return PropertiesDocument(database).Write();
}

}  // namespace larkspan
