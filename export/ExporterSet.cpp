#include "export/ExporterSet.h"

#include <array>
#include <cstdint>

#include "app/Settings.h"
#include "base/WideFormat.h"
#include "notes/DxlExporter.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// Properties of the library's exporters, by number. Those without a name of their own are switches
// that only the library explains.
constexpr int kSwitchedOff = 3;
constexpr std::array kOnOutsideArchives = {38, 37, 36};
constexpr int kRemovePictures = 39;
constexpr int kPictureText = 14;
constexpr int kConvert = 35;
constexpr std::array kOnForRaw = {30, 6};

constexpr char kRemovedPictureRun[] =
    "<run><font size='9pt' color='#CCCCCC' />"
    "&lt;Picture removed by Brevink Export&gt;</run>";

std::int32_t AsSwitch(bool on) { return on ? 1 : 0; }

// An exporter that does not take a setting still exports; what it writes may differ from what was
// asked for, and the run log says so.
void LogIfRefused(Status status, int property) {
  if (status.ok()) return;
  const std::wstring format = FormatWide(L"Error setting DXL exporter property %d (%%s)", property);
  LogStatus(LogLevel::kWarning, format.c_str(), status);
}

void Set(const Exporter& exporter, int property, std::int32_t value) {
  LogIfRefused(SetExporterProperty(exporter, property, value), property);
}

void ConfigureExporter(const Exporter& exporter, bool removePictures, bool convert) {
  Set(exporter, kSwitchedOff, 0);
  for (const int property : kOnOutsideArchives) {
    Set(exporter, property, AsSwitch(!ProcessSettings().archive));
  }
  Set(exporter, kRemovePictures, AsSwitch(removePictures));
  if (removePictures) {
    LogIfRefused(SetExporterTextProperty(exporter, kPictureText, kRemovedPictureRun), kPictureText);
  }
  Set(exporter, kConvert, AsSwitch(convert));
}

void ConfigureRawExporter(const Exporter& exporter) {
  for (const int property : kOnForRaw) Set(exporter, property, 1);
}

bool CreateOrLog(Exporter& exporter, const wchar_t* failureFormat) {
  const Status status = CreateExporter(exporter);
  if (!status.ok()) LogStatus(LogLevel::kError, failureFormat, status);
  return status.ok();
}

}  // namespace

bool CreateExporters(ExporterSet& exporters) {
  const bool archive = ProcessSettings().archive;
  if (!CreateOrLog(exporters.normal, L"Error creating DXL Exporter (%s)")) return false;
  ConfigureExporter(exporters.normal, !archive, archive);

  if (!CreateOrLog(exporters.noConvert, L"Error creating DXL Exporter (no convert) (%s)")) {
    return false;
  }
  ConfigureExporter(exporters.noConvert, !archive, false);

  if (!CreateOrLog(exporters.noImages, L"Error creating DXL Exporter (no images) (%s)")) {
    return false;
  }
  ConfigureExporter(exporters.noImages, true, true);

  if (!CreateOrLog(exporters.noImagesNoConvert,
                   L"Error creating DXL Exporter (no images, no convert) (%s)")) {
    return false;
  }
  ConfigureExporter(exporters.noImagesNoConvert, true, false);

  if (!CreateOrLog(exporters.raw, L"Error creating DXL Exporter (raw) (%s)")) return false;
  ConfigureRawExporter(exporters.raw);
  return true;
}

}  // namespace larkspan
