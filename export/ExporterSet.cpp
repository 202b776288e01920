// One row an exporter: what it is called when it cannot be created, and how its properties are set,
// in an order that the library is known to take.
#include "export/ExporterSet.h"

#include <array>
#include <span>

#include "base/PictureText.h"
#include "base/Settings.h"
#include "base/WideFormat.h"
#include "notes/DxlExporter.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// Properties of the library's exporters, by number. Those without a name of their own are switches
// that only the library explains.
constexpr int kRemovePictures = 39;
constexpr int kPictureText = 14;
constexpr int kConvert = 35;

// How a property is set: always off, always on, on in archives only, or on everywhere else.
enum class Setting { kOff, kOn, kOnInArchives, kOnOutsideArchives };

struct Property {
  int number;
  Setting setting;
};

struct ExporterRow {
  Exporter ExporterSet::*exporter;
  const wchar_t* failureFormat;
  std::span<const Property> properties;  // In the order in which they are set.
};

bool IsOn(Setting setting) {
  const bool archive = ProcessSettings().archive;
  return setting == Setting::kOn || (setting == Setting::kOnInArchives && archive) ||
         (setting == Setting::kOnOutsideArchives && !archive);
}

// An exporter that does not take a setting still exports; what it writes may differ from what was
// asked for, and the run log says so.
void LogIfRefused(Status status, int property) {
  if (status.ok()) return;
  const std::wstring format = FormatWide(L"Error setting DXL exporter property %d (%%s)", property);
  LogStatus(LogLevel::kWarning, format.c_str(), status);
}

// Where pictures are removed, a text takes their place.
void SetProperty(const Exporter& exporter, const Property& property) {
  const bool isOn = IsOn(property.setting);
  LogIfRefused(SetExporterProperty(exporter, property.number, isOn ? 1 : 0), property.number);
  if (property.number != kRemovePictures || !isOn) return;
  LogIfRefused(SetExporterTextProperty(exporter, kPictureText, kRemovedPictureRun), kPictureText);
}

bool CreateOrLog(Exporter& exporter, const wchar_t* failureFormat) {
  const Status status = CreateExporter(exporter);
  if (!status.ok()) LogStatus(LogLevel::kError, failureFormat, status);
  return status.ok();
}

constexpr std::array<Property, 6> PropertiesOf(Setting removesPictures, Setting converts) {
  constexpr Setting kOutside = Setting::kOnOutsideArchives;
  return {{{3, Setting::kOff},
           {38, kOutside},
           {37, kOutside},
           {36, kOutside},
           {kRemovePictures, removesPictures},
           {kConvert, converts}}};
}

constexpr std::array kNormal = PropertiesOf(Setting::kOnOutsideArchives, Setting::kOnInArchives);
constexpr std::array kNoConvert = PropertiesOf(Setting::kOnOutsideArchives, Setting::kOff);
constexpr std::array kNoImages = PropertiesOf(Setting::kOn, Setting::kOn);
constexpr std::array kNoImagesNoConvert = PropertiesOf(Setting::kOn, Setting::kOff);
constexpr std::array kRaw = {Property{30, Setting::kOn}, Property{6, Setting::kOn}};

const std::array kRows = {
    ExporterRow{&ExporterSet::normal, L"Error creating DXL Exporter (%s)", kNormal},
    ExporterRow{&ExporterSet::noConvert, L"Error creating DXL Exporter (no convert) (%s)",
                kNoConvert},
    ExporterRow{&ExporterSet::noImages, L"Error creating DXL Exporter (no images) (%s)", kNoImages},
    ExporterRow{&ExporterSet::noImagesNoConvert,
                L"Error creating DXL Exporter (no images, no convert) (%s)", kNoImagesNoConvert},
    ExporterRow{&ExporterSet::raw, L"Error creating DXL Exporter (raw) (%s)", kRaw},
};

}  // namespace

bool CreateExporters(ExporterSet& exporters) {
  for (const ExporterRow& row : kRows) {
    Exporter& exporter = exporters.*row.exporter;
    if (!CreateOrLog(exporter, row.failureFormat)) return false;
    for (const Property& property : row.properties) SetProperty(exporter, property);
  }
  return true;
}

}  // namespace larkspan
