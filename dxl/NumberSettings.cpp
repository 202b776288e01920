#include "dxl/NumberSettings.h"

#include "notes/Values.h"

namespace larkspan {

notes_api::IntlSettings GetNumberSettings() {
  notes_api::IntlSettings settings = GetIntlSettings();
  settings.decimalSeparator[0] = '.';
  settings.decimalSeparator[1] = '\0';
  return settings;
}

}  // namespace larkspan
