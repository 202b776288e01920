#include "dxl/NumberSettings.h"

#include "notes/Values.h"

namespace larkspan {

namespace {

notes_api::IntlSettings numberSettings{};

}  // namespace

void FetchNumberSettings() {
  numberSettings = GetIntlSettings();
  numberSettings.decimalSeparator[0] = '.';
  numberSettings.decimalSeparator[1] = '\0';
}

const notes_api::IntlSettings& NumberSettings() { return numberSettings; }

}  // namespace larkspan
